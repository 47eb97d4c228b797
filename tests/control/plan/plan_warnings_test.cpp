#include "control/plan/plan_warnings.h"

#include <gtest/gtest.h>

#include "two_states.h"

namespace zenqay {
namespace {

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
