#include "base/text_functions.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(Trim, TakesTheBlankOffBothEndsAndNothingElse) {
  const struct {
    const char* text;
    const char* trimmed;
  } cases[] = {
      {"", ""},
      {" ", ""},
      {"    ", ""},
      {"a", "a"},
      {"  a", "a"},
      {"a  ", "a"},
      {"  a b  ", "a b"},
      {"\ta\t", "\ta\t"},
      {" \ta\r\n ", "\ta\r\n"},
      {"\t", "\t"},
      {"\xC2\xA0"
       "a",
       "\xC2\xA0"
       "a"},  // a no-break space is no blank
      {"  é€ ", "é€"},
  };
  for (const auto& [text, trimmed] : cases) EXPECT_EQ(Trim(text), trimmed) << "\"" << text << "\"";
}

TEST(TrimLeft, TakesTheBlankOffTheStartAlone) {
  const struct {
    const char* text;
    const char* trimmed;
  } cases[] = {{"", ""}, {"   ", ""}, {"  a ", "a "}, {"a ", "a "}, {"\t a", "\t a"}, {" \ta", "\ta"}};
  for (const auto& [text, trimmed] : cases) EXPECT_EQ(TrimLeft(text), trimmed) << "\"" << text << "\"";
}

TEST(Replaced, ReplacesEveryOccurrenceFromLeftToRight) {
  const struct {
    const char* text;
    const char* mark;
    const char* replacement;
    const char* replaced;
  } cases[] = {
      {"", "%1", "x", ""},
      {"%1", "%1", "x", "x"},
      {"%1 and %1", "%1", "x", "x and x"},
      {"%1%1%1", "%1", "x", "xxx"},
      {"no mark", "%1", "x", "no mark"},
      {"%1", "%1", "", ""},
      {"%1", "%1", "%1%1", "%1%1"},  // what was put in is not searched again
      {"aaa", "aa", "b", "ba"},
      {"ABC", "b", "x", "ABC"},  // compared exactly
      {"abc", "", "x", "abc"},
      {"a%10", "%1", "x", "ax0"},
      {"a'b''c", "'", "''", "a''b''''c"},
  };
  for (const auto& [text, mark, replacement, replaced] : cases) {
    EXPECT_EQ(Replaced(text, mark, replacement), replaced) << text << " | " << mark << " | " << replacement;
  }
}

TEST(Split, GivesOnePartMoreThanThereAreMarks) {
  using Parts = std::vector<std::string_view>;

  EXPECT_EQ(Split("", ","), (Parts{""}));
  EXPECT_EQ(Split("a", ","), (Parts{"a"}));
  EXPECT_EQ(Split(",a,,b,", ","), (Parts{"", "a", "", "b", ""}));
  EXPECT_EQ(Split("a{}{b}{}", "{}"), (Parts{"a", "{b}", ""}));
}

TEST(LowerCased, LowersTheAsciiLettersAlone) {
  EXPECT_EQ(LowerCased("SerializedItem"), "serializeditem");
  EXPECT_EQ(LowerCased("AZaz@[`{09"), "azaz@[`{09");
  EXPECT_EQ(LowerCased("ÄÉ"), "ÄÉ");
  EXPECT_EQ(LowerCased(""), "");
}

TEST(EqualsIgnoringCase, LeavesTheCaseOfAsciiLettersOut) {
  EXPECT_TRUE(EqualsIgnoringCase("SetYear", "setyear"));
  EXPECT_TRUE(EqualsIgnoringCase("", ""));
  EXPECT_FALSE(EqualsIgnoringCase("setYear", "setYears"));
  EXPECT_FALSE(EqualsIgnoringCase("setYears", "setYear"));
  EXPECT_FALSE(EqualsIgnoringCase("@", "`"));
  EXPECT_FALSE(EqualsIgnoringCase("Ä", "ä"));
}

TEST(StartsWithIgnoringCase, LeavesTheCaseOfAsciiLettersOut) {
  EXPECT_TRUE(StartsWithIgnoringCase("hasDescription", "HAS"));
  EXPECT_TRUE(StartsWithIgnoringCase("has", "has"));
  EXPECT_TRUE(StartsWithIgnoringCase("has", ""));
  EXPECT_FALSE(StartsWithIgnoringCase("ha", "has"));
  EXPECT_FALSE(StartsWithIgnoringCase("getDescription", "has"));
}

TEST(IsAscii, HoldsUpToU007FForTextsOfAnyLength) {
  for (std::size_t length = 0; length < 70; ++length) {
    Text text(length, '\x7F');
    EXPECT_TRUE(IsAscii(text)) << length;
    for (char& c : text) {
      c = '\x80';
      EXPECT_FALSE(IsAscii(text)) << length;
      c = '\0';
    }
  }
}

TEST(OneLine, PutsABlankWhereALineEnds) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"a  b ", "a  b "},
      {"a\nb", "a b"},
      {"a\r\nb", "a b"},
      {"a \n\n\r b", "a b"},
      {"\r\na\r\n", "a"},
      {"\n", ""},
      {"a;\nError while executing the query", "a; Error while executing the query"},
  };
  for (const auto& [text, line] : cases) EXPECT_EQ(OneLine(text), line) << "\"" << text << "\"";
}

}  // namespace
}  // namespace zenqay
