#include "control/plan/table_differences.h"

#include <gtest/gtest.h>

#include "control/plan/plan_warnings.h"
#include "doubles/temp_directory.h"
#include "engines/engine_connection.h"
#include "engines/sqlite/table_filler.h"

namespace zenqay {
namespace {

/// Two states of a table T with the key K, which is no unique one, made by statements.
class TwoStates {
 public:
  TwoStates(const std::vector<Text>& before, const std::vector<Text>& then, const Text& collation = "BINARY") {
    const Text text = "NVARCHAR(10) COLLATE " + collation;
    const Text create = "CREATE TABLE T (K " + text + ", A " + text + ", D DATETIME, upd_flag INTEGER)";
    Make("before.db", create, before);
    Make("after.db", create, before);
    connection->PutConnectionString(EmbeddedConnection(Path("after.db")));
    connection->Open();
    AttachBefore(*connection, Path("before.db"));
    for (const Text& statement : then) connection->Execute(statement);
  }

  Text Path(const Text& name) const { return (directory_.path() / name).string(); }

  /// "1+ 2~ 0-", and each example.
  Text Compared() const {
    const TableDifferences d = Compare(*connection, table, 5);
    Text text =
        std::to_string(d.inserted) + "+ " + std::to_string(d.changed) + "~ " + std::to_string(d.deleted) + "-\n";
    for (const RowDifference& row : d.examples) {
      text += row.deed == RowDeed::Insert ? "+" : row.deed == RowDeed::Change ? "~" : "-";
      for (const FieldDifference& field : row.key) text += " " + field.after.value_or(field.before.value_or("NULL"));
      for (const FieldDifference& field : row.fields) {
        text += " " + field.column + " " + field.before.value_or("NULL") + ">" + field.after.value_or("NULL");
      }
      text += "\n";
    }
    return text;
  }

  const ComparedTable table = {.name = "T", .key = {"K"}, .copied = {"K", "A", "upd_flag"}};
  const std::shared_ptr<EngineConnection> connection = std::make_shared<EngineConnection>();

 private:
  void Make(const Text& name, const Text& create, const std::vector<Text>& statements) const {
    TableFiller filler(Path(name));
    filler.Run(create);
    for (const Text& statement : statements) filler.Run(statement);
    filler.Finish();
  }

  TempDirectory directory_;
};

const std::vector<Text> kThree = {
    "INSERT INTO T VALUES ('k1', 'a', '2004-01-31', 0), ('k2', 'b', NULL, 0), "
    "('k3', NULL, NULL, 1)"};

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

/// The words of the warnings of a database's ways.
Text WaysOfRows(const Text& databaseKind) {
  const TwoStates states(kThree,
                         {"INSERT INTO T VALUES ('K1', 'x', NULL, 0), ('k2 ', '', NULL, 0), ('n', 'y', NULL, 0), "
                          "('N', 'z', NULL, 0), ('other', 'x', NULL, 0)"});
  Compare(*states.connection, states.table, 0);
  Text words;
  for (const PlanWarning& warning : WarningsOfWays(*states.connection, states.table, databaseKind)) {
    words += warning.table + ": " + warning.words + "\n";
  }
  return words;
}

TEST(PlanWarnings, TellWhatADatabaseDoesOtherwiseThanTheEmbeddedEngine) {
  EXPECT_EQ(WaysOfRows("SQLite"), "");
  EXPECT_EQ(WaysOfRows("PostgreSQL"), "");
  EXPECT_EQ(
      WaysOfRows("Microsoft SQL Server"),
      "T: rows to insert that have the key of another row but for the case of letters or blanks at the end: 3, such "
      "as K1; a database that takes such keys for the same changes that row, and the counts are others\n");
  EXPECT_EQ(WaysOfRows("Oracle"), "T: rows that get an empty text in A: 1; Oracle keeps it as NULL\n");
}

}  // namespace
}  // namespace zenqay
