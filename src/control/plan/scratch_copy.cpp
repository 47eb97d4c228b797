#include "control/plan/scratch_copy.h"

#include <algorithm>
#include <filesystem>

#include "engines/databases.h"
#include "engines/sqlite/table_filler.h"
#include "localdb/local_connection.h"

namespace zenqay {
namespace {

constexpr int kMostAttempts = 3;

bool HasName(const std::vector<Text>& names, const Text& name) {
  return std::ranges::any_of(names, [&](const Text& other) { return EqualsIgnoringCase(name, other); });
}

std::vector<Text> WithoutRepeats(const std::vector<Text>& names) {
  std::vector<Text> once;
  for (const Text& name : names) {
    if (!HasName(once, name)) once.push_back(name);
  }
  return once;
}

Text SelectionOf(const Text& table, const TableSchema& schema) {
  Text columns;
  for (const Text& column : schema.columns) columns += (columns.empty() ? "" : ", ") + QuotedName(column);
  return "SELECT " + columns + " FROM " + table;
}

}  // namespace

ScratchCopy::ScratchCopy(const DatabaseSettings& database, const DatabaseAccess& access,
                         const std::vector<Text>& tables)
    : work_(directory_.path() + "/work.db"), before_(directory_.path() + "/before.db") {
  const std::vector<Text> once = WithoutRepeats(tables);
  try {
    for (int attempt = 1; !Fill(database, access, once); ++attempt) {
      if (attempt == kMostAttempts) {
        throw RuntimeError(PlatformFault::PermissionDenied,
                           "the database was written to each time while its tables were read");
      }
    }
  } catch (const RuntimeError& error) {
    if (access.password.empty()) throw;
    throw RuntimeError(error.number(), error.source(), Replaced(error.description(), access.password, "***"));
  }
  std::filesystem::copy_file(before_, work_);
}

Text ScratchCopy::ConnectionString() const {
  return EmbeddedConnection(work_);
}

/// False when a writer came in between unseen.
bool ScratchCopy::Fill(const DatabaseSettings& database, const DatabaseAccess& access,
                       const std::vector<Text>& tables) {
  std::filesystem::remove(before_);
  warnings_.clear();
  EngineConnection connection;
  connection.PutConnectionString(access.connection + ";Mode=Read");
  connection.Open();
  SelectDatabase(connection, database.platform, database.catalogue);
  databaseKind_ = connection.DatabaseKind();
  connection.BeginReading();
  TableFiller filler(before_);
  for (const Text& table : tables) {
    const TableSchema schema = connection.SchemaOf(table);
    RowSink& rows = filler.Begin(table, schema);
    connection.Read(SelectionOf(table, schema), rows);
    Note(table, schema);
  }
  NoteTaken(connection, tables);
  if (!connection.EndReading()) return false;
  filler.Run("UPDATE tstables SET in_use = 0");
  filler.Finish();
  return true;
}

void ScratchCopy::Note(const Text& table, const TableSchema& schema) {
  for (const Text& column : schema.computed) {
    warnings_.push_back({table, column +
                                    " gets its value from the server where a row is inserted without one: the plan "
                                    "shows none"});
  }
}

void ScratchCopy::NoteTaken(EngineConnection& connection, const std::vector<Text>& tables) {
  RowStore taken;
  connection.Read("SELECT tablename FROM tstables WHERE in_use = 1 ORDER BY tablename", taken);
  while (taken.Next()) {
    const Text name = Trim(taken.Field(0).Joined());
    if (!HasName(tables, name)) continue;
    warnings_.push_back({name,
                         "a copy of it is running, or died and left it taken: what it has yet to do is no part of the "
                         "plan"});
  }
}

}  // namespace zenqay
