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
