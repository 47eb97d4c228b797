// What the warranty expiry is said to need, held against what it reads and writes.
#include <gtest/gtest.h>

#include <set>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"
#include "postcopy/warranty_expiry.h"

namespace zenqay {
namespace {

constexpr const char* kJoin = "SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY";

/// The columns of both tables that the expiry finds in a joined row: all but those that its statements alone name.
std::set<Text> ColumnsRead() {
  std::set<Text> columns;
  for (const ExpiryTable& table : kExpiryTables) {
    for (const char* column : table.columns) columns.insert(LowerCased(column));
  }
  columns.erase("warranty");
  columns.erase("wexpiry_date");
  return columns;
}

/// A row of the join with these columns, of a warranty of one year.
TableRow Joined(const std::set<Text>& columns, std::int32_t warrantyType) {
  const DateTime day = DateTime::FromParts({2004, 3, 15, 0, 0, 0});
  TableRow row;
  for (const Text& column : columns) row[column] = column.ends_with("_date") ? Value(day) : Value(1);
  if (row.contains("period_unit")) row["period_unit"] = 25;
  if (row.contains("warranty_type")) row["warranty_type"] = warrantyType;
  return row;
}

/// From delivery and from installation.
Text OutcomeWith(const std::set<Text>& columns) {
  CopyFixture copy("3");
  copy.database.Answer(kJoin, {Joined(columns, 5), Joined(columns, 10)});
  return Raised([&] { copy.CalculateWarrantyExpiry(); });
}

TEST(ExpiryTables, HaveAllThatTheExpiryReadsAndNoMore) {
  EXPECT_EQ(OutcomeWith(ColumnsRead()), "nothing");
  for (const Text& column : ColumnsRead()) {
    std::set<Text> others = ColumnsRead();
    others.erase(column);

    EXPECT_EQ(OutcomeWith(others).substr(0, 5), "3265 ") << column;
  }
}

TEST(ExpiryTables, HaveTheColumnsThatItsStatementsName) {
  CopyFixture copy("3");
  copy.database.Answer(kJoin, {Joined(ColumnsRead(), 5)});

  copy.CalculateWarrantyExpiry();

  EXPECT_EQ(copy.journal.Take(),
            Text("query ") + kJoin +
                "\n"
                "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'1' And "
                "OBJECT.OBJECT = N'1' And OBJECT.OBJECTNR = 1 -> 1\n"
                "close recordset\n");
}

}  // namespace
}  // namespace zenqay
