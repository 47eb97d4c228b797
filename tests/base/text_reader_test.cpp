#include "base/text_reader.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(TextReader, TakesMarksAndNumbersOffTheFront) {
  TextReader reader("1/31 PM");
  int month = 0;
  int day = 0;

  EXPECT_TRUE(reader.Number(1, 2, month));
  EXPECT_TRUE(reader.Mark("/"));
  EXPECT_TRUE(reader.Number(1, 2, day));
  EXPECT_FALSE(reader.atEnd());
  EXPECT_TRUE(reader.Mark(" PM"));
  EXPECT_TRUE(reader.atEnd());
  EXPECT_EQ(month, 1);
  EXPECT_EQ(day, 31);
}

TEST(TextReader, TakesNothingWhereSomethingElseStands) {
  TextReader reader("7x");
  int number = -1;

  EXPECT_FALSE(reader.Mark("x"));
  EXPECT_FALSE(reader.Mark("7x8"));
  EXPECT_FALSE(reader.Number(2, 2, number));
  EXPECT_EQ(number, -1);
  EXPECT_TRUE(reader.Number(1, 9, number));
  EXPECT_EQ(number, 7);
  EXPECT_FALSE(reader.Number(1, 1, number));
  EXPECT_TRUE(reader.Mark("x"));
}

TEST(TextReader, TakesNoMoreDigitsThanItMay) {
  TextReader reader("123456");
  int number = 0;

  EXPECT_TRUE(reader.Number(1, 4, number));
  EXPECT_EQ(number, 1234);
  EXPECT_TRUE(reader.Number(2, 2, number));
  EXPECT_EQ(number, 56);
}

}  // namespace
}  // namespace zenqay
