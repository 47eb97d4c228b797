#include "components/operation_table.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(OperationTableFind, MatchesNamesWithoutRegardToCase) {
  OperationTable table;
  table.AddAccessors("Description", 3);

  for (const char* name : {"getDescription", "GetDescription", "GETDESCRIPTION", "getdescription"}) {
    const RowOperation* found = table.Find(name);
    ASSERT_NE(found, nullptr) << name;
    EXPECT_EQ(found->verb, RowVerb::Get);
    EXPECT_EQ(found->column, 3u);
  }
}

TEST(OperationTableFind, TellsCharactersApartThatDifferInTheCaseBitAlone) {
  OperationTable table;
  table.AddAccessors("A@B", 0);
  table.AddAccessors("A`B", 1);
  table.AddAccessors("Ä", 2);
  table.AddAccessors("ä", 3);

  EXPECT_EQ(table.Find("geta@b")->column, 0u);
  EXPECT_EQ(table.Find("geta`b")->column, 1u);
  EXPECT_EQ(table.Find("getÄ")->column, 2u);
  EXPECT_EQ(table.Find("getä")->column, 3u);
}

TEST(OperationTableFind, GivesNothingForANameThatIsNotThere) {
  OperationTable table;

  EXPECT_EQ(table.Find("getA"), nullptr);

  table.AddAccessors("A", 0);
  EXPECT_EQ(table.Find("getB"), nullptr);
  EXPECT_EQ(table.Find("A"), nullptr);
  EXPECT_EQ(table.Find(""), nullptr);
}

TEST(OperationTableFind, FindsEachOfManyColumns) {
  OperationTable table;
  for (std::size_t column = 0; column < 500; ++column) table.AddAccessors("Column" + std::to_string(column), column);

  for (std::size_t column = 0; column < 500; ++column) {
    const RowOperation* found = table.Find("setcolumn" + std::to_string(column));
    ASSERT_NE(found, nullptr) << column;
    EXPECT_EQ(found->column, column);
    EXPECT_EQ(found->verb, RowVerb::Set);
  }
}

TEST(OperationTableAdd, LeavesTheFirstOfANameInItsPlace) {
  OperationTable table;
  table.Add("hasContracts", {.verb = RowVerb::HasOldValues});
  table.AddAccessors("Contracts", 4);

  EXPECT_EQ(table.Find("hasContracts")->verb, RowVerb::HasOldValues);
  EXPECT_EQ(table.Find("setContracts")->verb, RowVerb::Set);
}

}  // namespace
}  // namespace zenqay
