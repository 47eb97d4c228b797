#include "engines/odbc/utf16.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"

namespace zenqay {
namespace {

TEST(Utf16, CarriesEveryPlaneBothWays) {
  const std::pair<const char*, WideText> cases[] = {
      {"", {}}, {"A1", {0x41, 0x31}}, {"ö", {0xF6}}, {"東", {0x6771}}, {"a😀b", {0x61, 0xD83D, 0xDE00, 0x62}},
  };
  Utf16 utf16;
  for (const auto& [text, units] : cases) {
    WideText wide = {7};
    Text narrow;

    utf16.Widen(text, wide);
    utf16.AppendNarrow(units.data(), units.size(), narrow);

    EXPECT_EQ(wide, units) << text;
    EXPECT_EQ(narrow, text);
  }
}

TEST(Utf16, RefusesWhatIsNoUtf8AndGoesOn) {
  Utf16 utf16;
  WideText wide;
  for (const char* text : {"\xFF", "ab\xC3", "\xED\xA0\x80"}) {
    EXPECT_EQ(Raised([&] { utf16.Widen(text, wide); }), "-2147217913 ZenqayDBSync: The statement is not valid UTF-8.");
  }

  utf16.Widen("ö", wide);

  EXPECT_EQ(wide, WideText{0xF6});
}

TEST(Utf16, ReplacesHalfASurrogatePair) {
  const WideText wide = {0x61, 0xD83D, 0x62, 0xDE00, 0x63, 0xD83D};
  Utf16 utf16;
  Text narrow = "behind: ";

  utf16.AppendNarrow(wide.data(), wide.size(), narrow);

  EXPECT_EQ(narrow, "behind: a\uFFFDb\uFFFDc\uFFFD");
}

TEST(Utf16, CarriesALongTextWhole) {
  Text text;
  for (int i = 0; i < 5000; ++i) text += "x😀ö";
  Utf16 utf16;
  WideText wide;
  Text narrow;

  utf16.Widen(text, wide);
  utf16.AppendNarrow(wide.data(), wide.size(), narrow);

  EXPECT_EQ(wide.size(), 20000u);
  EXPECT_EQ(narrow, text);
}

}  // namespace
}  // namespace zenqay
