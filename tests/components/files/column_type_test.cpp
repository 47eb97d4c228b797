#include "components/files/column_type.h"

#include <gtest/gtest.h>

#include "components/files/erp_files.h"

namespace zenqay {
namespace {

TEST(Reads, TakesNullAndTheEmptyTextUnderEveryType) {
  for (const ColumnType type : {ColumnType::Plain, ColumnType::Int, ColumnType::Date, ColumnType::DateTime}) {
    EXPECT_TRUE(Reads(type, "")) << NameOf(type);
    EXPECT_TRUE(Reads(type, "\\N")) << NameOf(type);
  }
}

TEST(Reads, TakesSignAndDigitsIn32BitsAsAnInt) {
  for (const char* cell : {"0", "7", "-7", "+7", "007", "2147483647", "-2147483648"}) {
    EXPECT_TRUE(Reads(ColumnType::Int, cell)) << cell;
  }
  for (const char* cell :
       {"abc", " 7", "7 ", "7.0", "1e3", "-", "+", "+-7", "--7", "0x10", "2147483648", "-2147483649"}) {
    EXPECT_FALSE(Reads(ColumnType::Int, cell)) << cell;
  }
}

TEST(Reads, TakesDaysThatExistAsADate) {
  for (const char* cell : {"2004-02-29", "0001-01-01", "9999-12-31"}) {
    EXPECT_TRUE(Reads(ColumnType::Date, cell)) << cell;
  }
  for (const char* cell : {"2003-02-29", "2004-13-01", "2004-00-10", "2004-1-31", "04-01-31", "0000-01-01",
                           "2004-01-31 ", "2004-01-31T00:00:00", "20040131", "31.01.2004"}) {
    EXPECT_FALSE(Reads(ColumnType::Date, cell)) << cell;
  }
}

TEST(Reads, TakesTimesThatExistAsADateTime) {
  for (const char* cell : {"2004-01-31T10:11:12", "2004-01-31T00:00:00", "2004-01-31T23:59:59"}) {
    EXPECT_TRUE(Reads(ColumnType::DateTime, cell)) << cell;
  }
  for (const char* cell :
       {"2004-01-31", "2004-01-31 10:11:12", "2004-01-31T24:00:00", "2004-01-31T10:60:00", "2004-01-31T10:11:60",
        "2004-01-31T10:11:12Z", "2004-01-31T10:11", "2003-02-29T10:11:12", "20-01-31T10:11:12.5"}) {
    EXPECT_FALSE(Reads(ColumnType::DateTime, cell)) << cell;
  }
}

TEST(ValueOf, HandsOnWhatTheCellStandsFor) {
  EXPECT_EQ(Shown(ValueOf(ColumnType::Plain, " A ")), "' A '");
  EXPECT_EQ(Shown(ValueOf(ColumnType::Plain, "7")), "'7'");
  EXPECT_EQ(ValueOf(ColumnType::Int, "+007"), Value(std::int32_t{7}));
  EXPECT_EQ(ValueOf(ColumnType::Int, "-2147483648"), Value(std::int32_t{-2147483647 - 1}));
  EXPECT_EQ(Shown(ValueOf(ColumnType::Date, "2004-01-31")), "'2004-01-31'");
  EXPECT_EQ(Shown(ValueOf(ColumnType::DateTime, "2004-01-31T10:11:12")), "date 2004-1-31 10:11:12");
  for (const ColumnType type : {ColumnType::Plain, ColumnType::Int, ColumnType::Date, ColumnType::DateTime}) {
    EXPECT_EQ(Shown(ValueOf(type, "")), "''") << NameOf(type);
    EXPECT_EQ(Shown(ValueOf(type, "\\N")), "null") << NameOf(type);
  }
}

TEST(ReadUtcMoment, ReadsOneForm) {
  DateTime moment;

  EXPECT_TRUE(ReadUtcMoment("2004-01-31T10:11:12Z", moment));

  EXPECT_EQ(IsoText(moment), "2004-01-31 10:11:12");
  for (const char* text :
       {"", "Z", "2004-01-31T10:11:12", "2004-01-31T10:11:12z", "2004-01-31 10:11:12Z", "2004-01-31T10:11:12.0Z",
        "2004-01-31T10:11:12+00:00", "2004-02-30T10:11:12Z", "2004-01-31Z"}) {
    EXPECT_FALSE(ReadUtcMoment(text, moment)) << text;
  }
}

}  // namespace
}  // namespace zenqay
