#include "engines/row_store.h"

#include <gtest/gtest.h>

#include <limits>

namespace zenqay {
namespace {

constexpr std::size_t kNothingInMemory = 0;

/// Row `number` of a small table of two columns.
void AddRow(RowStore& rows, std::int32_t number) {
  rows.AddInteger(number);
  rows.AddText("row " + std::to_string(number));
  rows.EndRow();
}

void ExpectRows(RowStore& rows, std::int32_t count) {
  EXPECT_EQ(rows.count(), count);
  for (std::int32_t number = 0; number < count; ++number) {
    ASSERT_TRUE(rows.Next()) << number;
    ASSERT_EQ(rows.Field(0), Value(number));
    ASSERT_EQ(rows.Field(1), Value("row " + std::to_string(number)));
  }
  EXPECT_FALSE(rows.Next());
  EXPECT_FALSE(rows.atRow());
}

TEST(RowStore, GivesBackEachTypeOfValue) {
  const DateTime date = DateTime::FromParts({.year = 2004, .month = 1, .day = 31, .hour = 10});
  const std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
  const Text withZero("a\0b", 3);
  RowStore rows;
  rows.PutColumns({"a", "b", "c", "d", "e", "f", "g"});

  rows.AddNull();
  rows.AddInteger(lowest);
  rows.AddDouble(-1.5);
  rows.AddText("Größe");
  rows.AddDateTime(date);
  rows.AddText("");
  rows.AddText(withZero);
  rows.EndRow();

  ASSERT_TRUE(rows.Next());
  EXPECT_EQ(rows.Field(0), Value(Null()));
  EXPECT_EQ(rows.Field(1), Value(lowest));
  EXPECT_EQ(rows.Field(2), Value(-1.5));
  EXPECT_EQ(rows.Field(3), Value("Größe"));
  EXPECT_EQ(rows.Field(4), Value(date));
  EXPECT_EQ(rows.Field(5), Value(""));
  EXPECT_EQ(rows.Field(6), Value(withZero));
}

TEST(RowStore, GivesBackTextsOfEveryLength) {
  const std::size_t lengths[] = {0, 1, 127, 128, 16383, 16384, 65535, 65536, 3000000};
  for (const std::size_t limit : {kNothingInMemory, RowStore::kMemoryLimit}) {
    RowStore rows(limit);
    rows.PutColumns({"text"});
    for (const std::size_t length : lengths) {
      rows.AddText(Text(length, 'x'));
      rows.EndRow();
    }

    for (const std::size_t length : lengths) {
      ASSERT_TRUE(rows.Next());
      EXPECT_EQ(rows.Field(0), Value(Text(length, 'x'))) << length;
    }
    EXPECT_FALSE(rows.Next());
  }
}

TEST(RowStore, IsAtNoRowWhenItIsEmpty) {
  RowStore rows;
  rows.PutColumns({"a"});

  EXPECT_EQ(rows.count(), 0);
  EXPECT_FALSE(rows.Next());
  EXPECT_FALSE(rows.atRow());
}

TEST(RowStore, KeepsTheOrderOfTheRows) {
  RowStore rows;
  rows.PutColumns({"number", "text"});
  for (std::int32_t number = 0; number < 50000; ++number) AddRow(rows, number);

  ExpectRows(rows, 50000);
}

TEST(RowStore, KeepsTheOrderWhenAllRowsAreInTheFile) {
  RowStore rows(kNothingInMemory);
  rows.PutColumns({"number", "text"});
  for (std::int32_t number = 0; number < 50000; ++number) AddRow(rows, number);

  ExpectRows(rows, 50000);
}

TEST(RowStore, KeepsTheOrderWhenTheFirstRowsAreInMemoryAndTheOthersInTheFile) {
  RowStore rows(200000);
  rows.PutColumns({"number", "text"});
  for (std::int32_t number = 0; number < 50000; ++number) AddRow(rows, number);

  ExpectRows(rows, 50000);
}

TEST(RowStore, KeepsTheOrderWhenASmallBlockFollowsOneThatWentToTheFile) {
  RowStore rows(100000);
  rows.PutColumns({"number", "text"});
  const Text large(90000, 'x');
  for (std::int32_t number = 0; number < 2; ++number) {
    rows.AddInteger(number);
    rows.AddText(large);
    rows.EndRow();
  }
  AddRow(rows, 2);

  for (std::int32_t number = 0; number < 3; ++number) {
    ASSERT_TRUE(rows.Next());
    EXPECT_EQ(rows.Field(0), Value(number));
  }
  EXPECT_FALSE(rows.Next());
}

}  // namespace
}  // namespace zenqay
