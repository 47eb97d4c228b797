#include "base/windows1252.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(ToWindows1252, LeavesAsciiAsItIs) {
  EXPECT_EQ(ToWindows1252(""), "");
  EXPECT_EQ(ToWindows1252("Date: 1/31/2004 \"quoted\"\t\x7F"), "Date: 1/31/2004 \"quoted\"\t\x7F");
}

TEST(ToWindows1252, HasOneByteForWhatThePageHolds) {
  const std::pair<const char*, const char*> cases[] = {
      {"é", "\xE9"},
      {"ÿ", "\xFF"},
      {"\xC2\xA0", "\xA0"},
      {"\xC2\xAD", "\xAD"},
      {"€", "\x80"},
      {"ž", "\x9E"},
      {"Ÿ", "\x9F"},
      {"Œ", "\x8C"},
      {"™", "\x99"},
      {"“q”", "\x93q\x94"},
      {"„–—", "\x84\x96\x97"},
      {"Zürich, Łódź",
       "Z\xFCrich, ?\xF3"
       "d?"},
  };
  for (const auto& [text, bytes] : cases) EXPECT_EQ(ToWindows1252(text), bytes) << text;
}

TEST(FromWindows1252, HasALetterForEachByteButFive) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"Date: 1/31/2004 \"quoted\"\t\x7F", "Date: 1/31/2004 \"quoted\"\t\x7F"},
      {"\xE9\xFF\xA0\xAD", "éÿ\xC2\xA0\xC2\xAD"},
      {"\x80\x82\x83\x84\x85\x86\x87", "€‚ƒ„…†‡"},
      {"\x88\x89\x8A\x8B\x8C\x8E", "ˆ‰Š‹ŒŽ"},
      {"\x91\x92\x93\x94\x95\x96\x97", "‘’“”•–—"},
      {"\x98\x99\x9A\x9B\x9C\x9E\x9F", "˜™š›œžŸ"},
      {"a\x81\x8D\x8F\x90\x9Dz", "a?????z"},
      {"nicht \x84none\x93, Z\xFCrich", "nicht „none“, Zürich"},
  };
  for (const auto& [bytes, text] : cases) EXPECT_EQ(FromWindows1252(bytes), text) << text;
}

TEST(ToWindows1252, PutsOneQuestionMarkForEachCodePointThatThePageLacks) {
  const std::pair<const char*, const char*> cases[] = {
      {"東", "?"},
      {"東京", "??"},
      {"😀", "?"},
      {"a😀b", "a?b"},
      {"\xC2\x81", "?"},  // U+0081: the five places that the page leaves open
      {"\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D", "????"},
      {"\xC2\x80\xC2\x9F", "??"},  // controls whose bytes stand for other letters
      {"e\xCC\x81", "e?"},         // a combining accent is a code point of its own
      {"\xEF\xBB\xBF"
       "x",
       "?x"},                         // a byte-order mark too
      {"a\xF3\xA0\x81\x81z", "a?z"},  // and a tag of a flag
      {"Ω≠ł", "???"},
      {"\xF4\x8F\xBF\xBF", "?"},  // U+10FFFF
  };
  for (const auto& [text, bytes] : cases) EXPECT_EQ(ToWindows1252(text), bytes) << text;
}

TEST(ToWindows1252, PutsOneQuestionMarkForEachByteThatIsNoUtf8) {
  const std::pair<const char*, const char*> cases[] = {
      {"\xFF", "?"},
      {"\x80", "?"},
      {"a\xE9z", "a?z"},  // é of another code page
      {"\xC3", "?"},      // cut off at the end
      {"\xE2\x82", "??"},
      {"\xE2\x82"
       "A",
       "??A"},
      {"\xF0\x9F\x98", "???"},
      {"\xC0\xAF", "??"},  // longer than it must be
      {"\xE0\x80\x80", "???"},
      {"\xF0\x8F\xBF\xBF", "????"},
      {"\xED\xA0\x80", "???"},         // a surrogate
      {"\xF4\x90\x80\x80z", "????z"},  // beyond U+10FFFF
      {"\xF8\x88\x80\x80\x80", "?????"},
      {"é\xFF€", "\xE9?\x80"},
  };
  for (const auto& [text, bytes] : cases) EXPECT_EQ(ToWindows1252(text), bytes);
}

TEST(ToWindows1252, ConvertsALongText) {
  Text text;
  Text bytes;
  for (int i = 0; i < 10'000; ++i) {
    text += "x€東";
    bytes += "x\x80?";
  }

  EXPECT_EQ(ToWindows1252(text), bytes);
}

}  // namespace
}  // namespace zenqay
