#include "control/plan/plan_warnings.h"

#include "control/plan/scratch_query.h"
#include "engines/table_schema.h"
#include "postcopy/warranty_expiry.h"

namespace zenqay {
namespace {

bool IsOracle(const Text& databaseKind) {
  return StartsWithIgnoringCase(databaseKind, "Oracle");
}

/// Whether texts are different texts there that differ by case or by blanks at the end, as in the embedded engine.
bool TellsTextsApart(const Text& databaseKind) {
  return databaseKind == "SQLite" || databaseKind == "PostgreSQL" || IsOracle(databaseKind);
}

Text FoldedKey(const Text& alias, const std::vector<Text>& key) {
  Text folded;
  for (const Text& column : key) {
    folded += (folded.empty() ? "" : " || char(0) || ") + ("coalesce(rtrim(lower(" + alias + "." + QuotedName(column)) +
              "), ' '), char(1))";
  }
  return folded;
}

Text ShownKey(const Text& alias, const std::vector<Text>& key) {
  Text shown;
  for (const Text& column : key) {
    shown += (shown.empty() ? "" : " || '/' || ") + ("coalesce(" + alias + "." + QuotedName(column)) + ", '')";
  }
  return shown;
}

/// Rows to insert whose key is that of another row but for the case of letters and blanks at the end.
void AddNearKeys(Connection& connection, const ComparedTable& table, std::vector<PlanWarning>& warnings) {
  const Text name = QuotedName(table.name);
  connection.Execute("DROP TABLE IF EXISTS temp.folded");
  connection.Execute("CREATE TEMP TABLE folded AS SELECT i.id AS id, " + FoldedKey("r", table.key) + " AS folded, " +
                     ShownKey("r", table.key) + " AS shown FROM temp.inserted_rows i JOIN main." + name +
                     " r ON r.rowid = i.id");
  connection.Execute("CREATE INDEX temp.folded_by ON folded (folded)");
  const Text near = " FROM (SELECT f.shown AS shown FROM before." + name +
                    " b CROSS JOIN temp.folded f ON f.folded = " + FoldedKey("b", table.key) +
                    " UNION SELECT MAX(f.shown) FROM temp.folded f GROUP BY f.folded HAVING COUNT(*) > 1)";
  const std::int64_t count = NumberIn(connection, "SELECT COUNT(*)" + near);
  if (count == 0) return;
  const auto first = RowsIn(connection, "SELECT MIN(shown)" + near);
  first->Next();
  warnings.push_back(
      {table.name,
       "rows to insert that have the key of another row but for the case of letters or blanks at the "
       "end: " +
           std::to_string(count) + ", such as " + first->Field(0).Joined() +
           "; a database that takes such keys for the same changes that row, and the counts are others"});
}

void AddEmptyTexts(Connection& connection, const ComparedTable& table, std::vector<PlanWarning>& warnings) {
  for (const Text& column : table.copied) {
    const std::int64_t count = NumberIn(connection, "SELECT COUNT(*) FROM main." + QuotedName(table.name) +
                                                        " r WHERE r." + QuotedName(column) + " = ''");
    if (count == 0) continue;
    warnings.push_back({table.name, "rows that get an empty text in " + column + ": " + std::to_string(count) +
                                        "; Oracle keeps it as NULL"});
  }
}

}  // namespace

std::vector<PlanWarning> WarningsOfWays(Connection& connection, const ComparedTable& table, const Text& databaseKind) {
  std::vector<PlanWarning> warnings;
  if (!TellsTextsApart(databaseKind)) AddNearKeys(connection, table, warnings);
  if (IsOracle(databaseKind)) AddEmptyTexts(connection, table, warnings);
  return warnings;
}

std::vector<PlanWarning> WarningsOfExpiry(Connection& connection, const Text& databaseKind) {
  if (databaseKind != "PostgreSQL" && !IsOracle(databaseKind)) return {};
  const std::int64_t count =
      NumberIn(connection, Text("SELECT COUNT(*) FROM ") + kExpiryJoin +
                               " WHERE OBJECT.WARRANTY <> WARRANTIES.WARRANTY AND lower(OBJECT.WARRANTY) = "
                               "lower(WARRANTIES.WARRANTY)");
  if (count == 0) return {};
  return {{"OBJECT", "objects that have the code of a warranty but for the case of letters: " + std::to_string(count) +
                         "; the database takes it for another, and computes no expiry for them"}};
}

std::vector<PlanWarning> WarningsOfFailures(const TableRun& run) {
  constexpr std::pair<std::string_view, std::string_view> kSaid[] = {
      {"CHECK constraint failed: ", ", and gets another value"},
      {"NOT NULL constraint failed: ", " must have a value, and gets none"},
      {"UNIQUE constraint failed: ", " must differ from row to row, and would stand twice"}};
  std::vector<PlanWarning> warnings;
  for (const JobFailure& failure : run.failures) {
    for (const auto& [said, means] : kSaid) {
      const std::size_t at = failure.description.find(said);
      if (at == Text::npos) continue;
      const Text row = failure.rowKey.empty() ? "" : " (row " + failure.rowKey + ")";
      warnings.push_back({run.task.table, failure.description.substr(at + said.size()) + Text(means) + row +
                                              ": the run would fail there"});
    }
  }
  return warnings;
}

}  // namespace zenqay
