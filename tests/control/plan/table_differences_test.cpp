#include "control/plan/table_differences.h"

#include <gtest/gtest.h>

#include "two_states.h"

namespace zenqay {
namespace {

TEST(TableDifferences, TellsRowsByTheirKey) {
  EXPECT_EQ(TwoStates(kThree, {}).Compared(), "0+ 0~ 0-\n");
  EXPECT_EQ(TwoStates(kThree, {"UPDATE T SET A = 'x' WHERE K = 'k1'", "DELETE FROM T WHERE K = 'k2'",
                               "INSERT INTO T VALUES ('k4', 'd', NULL, 0)", "UPDATE T SET A = 'c' WHERE K = 'k3'"})
                .Compared(),
            "1+ 2~ 1-\n+ k4 A NULL>d\n~ k1 A a>x\n~ k3 A NULL>c\n- k2 A b>NULL\n");
}

TEST(TableDifferences, LeavesTheMarkOfTheFullCopyOut) {
  EXPECT_EQ(TwoStates(kThree, {"UPDATE T SET upd_flag = 7"}).Compared(), "0+ 0~ 0-\n");
}

TEST(TableDifferences, ComparesDatesAsDates) {
  EXPECT_EQ(TwoStates(kThree, {"UPDATE T SET D = '2004-01-31 00:00:00' WHERE K = 'k1'"}).Compared(), "0+ 0~ 0-\n");
  EXPECT_EQ(TwoStates(kThree, {"UPDATE T SET D = '2004-01-31 00:00:01' WHERE K = 'k1'"}).Compared(),
            "0+ 1~ 0-\n~ k1 D 2004-01-31>2004-01-31 00:00:01\n");
}

TEST(TableDifferences, TakesARowThatIsDeletedAndInsertedAnewForTheSame) {
  EXPECT_EQ(TwoStates(kThree, {"DELETE FROM T WHERE K = 'k1'", "INSERT INTO T VALUES ('k1', 'a', '2004-01-31', 0)"})
                .Compared(),
            "0+ 0~ 0-\n");
  EXPECT_EQ(TwoStates(kThree, {"DELETE FROM T WHERE K = 'k1'", "INSERT INTO T VALUES ('k1', 'y', '2004-01-31', 0)"})
                .Compared(),
            "0+ 1~ 0-\n~ k1 A a>y\n");
  // The row id of the one that goes is that of the one that comes.
  EXPECT_EQ(
      TwoStates(kThree, {"DELETE FROM T WHERE K = 'k3'", "INSERT INTO T VALUES ('k9', NULL, NULL, 0)"}).Compared(),
      "1+ 0~ 1-\n+ k9\n- k3\n");
}

TEST(TableDifferences, TellsRowsOfOneKeyApartByWhereTheyStand) {
  const std::vector<Text> twins = {
      "INSERT INTO T VALUES ('k1', 'a', NULL, 0), ('k1', 'b', NULL, 0), "
      "(NULL, 'c', NULL, 0), (NULL, 'd', NULL, 0)"};
  EXPECT_EQ(TwoStates(twins, {"DELETE FROM T WHERE A = 'a'"}).Compared(), "0+ 0~ 1-\n- k1 A a>NULL\n");
  EXPECT_EQ(TwoStates(twins, {"UPDATE T SET A = 'x' WHERE A = 'd'"}).Compared(), "0+ 1~ 0-\n~ NULL A d>x\n");
  EXPECT_EQ(TwoStates(twins, {"DELETE FROM T",
                              "INSERT INTO T VALUES (NULL, 'd', NULL, 0), (NULL, 'c', NULL, 0), "
                              "('k1', 'b', NULL, 0), ('k1', 'a', NULL, 0)"})
                .Compared(),
            "0+ 0~ 0-\n");
}

TEST(TableDifferences, TellsHowTextsAreWrittenWhereTheColumnsDoNot) {
  EXPECT_EQ(TwoStates(kThree, {"UPDATE T SET A = 'A' WHERE K = 'K1'", "UPDATE T SET K = 'K2' WHERE K = 'k2'"}, "NOCASE")
                .Compared(),
            "0+ 2~ 0-\n~ k1 A a>A\n~ K2 K k2>K2\n");
  EXPECT_EQ(
      TwoStates(kThree, {"UPDATE T SET A = 'a ' WHERE K = 'k1'", "UPDATE T SET K = 'k2  ' WHERE K = 'k2'"}, "RTRIM")
          .Compared(),
      "0+ 2~ 0-\n~ k1 A a>a \n~ k2   K k2>k2  \n");
  EXPECT_EQ(
      TwoStates(kThree, {"DELETE FROM T WHERE K = 'k1'", "INSERT INTO T VALUES ('K1', 'a', '2004-01-31', 0)"}, "NOCASE")
          .Compared(),
      "0+ 1~ 0-\n~ K1 K k1>K1\n");
}

TEST(TableDifferences, PairsRowsOfOneKeyByHowTheyAreWritten) {
  EXPECT_EQ(TwoStates({"INSERT INTO T VALUES ('k1', 'a', NULL, 0), ('K1', 'A', NULL, 0), ('k1', 'B', NULL, 0)"},
                      {"INSERT INTO T VALUES ('k1', 'B', NULL, 0), ('k1', 'a', NULL, 0), ('K1', 'A', NULL, 0)",
                       "DELETE FROM T WHERE rowid <= 3"},
                      "NOCASE")
                .Compared(),
            "0+ 0~ 0-\n");
}

TEST(TableDifferences, CountsChangesOfColumnsThatTheCopyDoesNotWrite) {
  const TwoStates states(kThree, {"UPDATE T SET D = '2005-01-01'"});

  const TableDifferences differences = Compare(*states.connection, states.table, 0);

  EXPECT_EQ(differences.rows, 3);
  EXPECT_EQ(differences.changed, 3);
  EXPECT_EQ(differences.changedByCopy, 0);
}

}  // namespace
}  // namespace zenqay
