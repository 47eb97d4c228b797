#include "base/utf8.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

using namespace std::string_view_literals;

TEST(FlawOf, IsEmptyForUtf8) {
  for (const std::string_view text :
       {""sv, "plain"sv, "\x01\x7F"sv, "\xC2\x80"sv, "\xDF\xBF"sv, "\xE0\xA0\x80"sv, "\xED\x9F\xBF"sv, "\xEE\x80\x80"sv,
        "\xEF\xBF\xBF"sv, "\xF0\x90\x80\x80"sv, "\xF4\x8F\xBF\xBF"sv, "a\xC3\xA4z"sv}) {
    EXPECT_EQ(FlawOf(text), "") << text;
  }
}

TEST(FlawOf, NamesWhatIsNoUtf8) {
  for (const std::string_view text : {
           "\x80"sv,              // nothing to continue
           "\xC3"sv,              // nothing that continues
           "\xC3("sv,             //
           "\xC0\xAF"sv,          // long forms
           "\xC1\xBF"sv,          //
           "\xE0\x9F\xBF"sv,      //
           "\xF0\x8F\xBF\xBF"sv,  //
           "\xED\xA0\x80"sv,      // a surrogate
           "\xF4\x90\x80\x80"sv,  // beyond U+10FFFF
           "\xF5\x80\x80\x80"sv,  //
           "\xE2\x82"sv,          // cut off
           "\xF0\x90\x80"sv,      //
           "\xE2\x82z"sv,         //
           "abc\xFF"sv,
       }) {
    EXPECT_EQ(FlawOf(text), "is no UTF-8 text");
  }
}

TEST(FlawOf, NamesANulByte) {
  EXPECT_EQ(FlawOf("a\0b"sv), "holds a NUL byte");
}

TEST(FlawOf, NamesWhatComesFirst) {
  EXPECT_EQ(FlawOf("a\0\xFF"sv), "holds a NUL byte");
  EXPECT_EQ(FlawOf("a\xFF\0"sv), "is no UTF-8 text");
}

TEST(Utf8Length, EndsAtTheFirstByteThatIsNoUtf8) {
  EXPECT_EQ(Utf8Length(""sv), 0u);
  EXPECT_EQ(Utf8Length("a\0\xC3\xA4"sv), 4u);
  EXPECT_EQ(Utf8Length("\xC3\xA4\xE0\x80\x80z"sv), 2u);
  EXPECT_EQ(Utf8Length("\x80\x80z"sv), 0u);
  EXPECT_EQ(Utf8Length("z\xF0\x9F\x98"sv), 1u);
}

TEST(Utf16, IsWrittenAndReadInEveryPlane) {
  using Units = std::vector<std::uint16_t>;
  const std::pair<std::string_view, Units> cases[] = {
      {"", {}},
      {"A\x7F", {0x41, 0x7F}},
      {"A\0ö"sv, {0x41, 0, 0xF6}},
      {"東\uFFFF", {0x6771, 0xFFFF}},
      {"a😀\U0010FFFF", {0x61, 0xD83D, 0xDE00, 0xDBFF, 0xDFFF}},
  };
  for (const auto& [text, units] : cases) {
    Units written(text.size());
    std::string read = "behind: ";

    const auto count = WriteUtf16(text, written.data());
    ASSERT_TRUE(count);
    written.resize(*count);

    EXPECT_EQ(written, units) << text;
    EXPECT_TRUE(AppendUtf16(units.data(), units.size(), read));
    EXPECT_EQ(read, "behind: " + std::string(text));
  }
}

TEST(Utf16, IsNotMadeOfWhatIsNoUtf8) {
  for (const std::string_view text : {"\xFF"sv, "ab\xC3"sv, "\xE0\x80\x80"sv, "\xED\xA0\x80"sv}) {
    std::uint16_t units[4];
    EXPECT_FALSE(WriteUtf16(text, units)) << text;
  }
}

TEST(Utf16, HasAReplacementForEachHalfOfAPair) {
  const std::uint16_t units[] = {0x61, 0xD83D, 0x62, 0xDE00, 0xD83D, 0xD83D};
  std::string read;

  EXPECT_FALSE(AppendUtf16(units, std::size(units), read));
  EXPECT_EQ(read, "a\uFFFDb\uFFFD\uFFFD\uFFFD");
}

TEST(IsPlain, HoldsForAsciiWithoutNulOfAnyLength) {
  for (std::size_t length = 0; length < 70; ++length) {
    std::string text(length, '\x7F');
    EXPECT_TRUE(IsPlain(text)) << length;
    for (const char other : {'\0', '\x80', '\xFF'}) {
      for (char& c : text) {
        c = other;
        EXPECT_FALSE(IsPlain(text)) << length;
        c = '\x01';
      }
    }
  }
}

}  // namespace
}  // namespace zenqay
