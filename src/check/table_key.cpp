#include "check/table_key.h"

#include <map>

#include "engines/connection_string.h"

namespace zenqay {
namespace {

// Each gives a row for each column of each key: the key's name and the column's. %1 stands for the table.

constexpr const char* kSqliteQuery =
    "SELECT 'the primary key' AS keyname, name AS columnname FROM pragma_table_info('%1') WHERE pk > 0 UNION ALL "
    "SELECT i.name, c.name FROM pragma_index_list('%1') i, pragma_index_info(i.name) c "
    "WHERE i.\"unique\" = 1 AND i.partial = 0";

constexpr const char* kStandardQuery =
    "SELECT c.CONSTRAINT_NAME AS keyname, c.COLUMN_NAME AS columnname FROM INFORMATION_SCHEMA.TABLE_CONSTRAINTS k "
    "INNER JOIN INFORMATION_SCHEMA.KEY_COLUMN_USAGE c ON c.CONSTRAINT_SCHEMA = k.CONSTRAINT_SCHEMA "
    "AND c.CONSTRAINT_NAME = k.CONSTRAINT_NAME AND c.TABLE_NAME = k.TABLE_NAME "
    "WHERE k.CONSTRAINT_TYPE IN ('PRIMARY KEY', 'UNIQUE') AND UPPER(k.TABLE_NAME) = UPPER('%1')";

constexpr const char* kOracleQuery =
    "SELECT c.CONSTRAINT_NAME AS keyname, c.COLUMN_NAME AS columnname FROM ALL_CONSTRAINTS k "
    "INNER JOIN ALL_CONS_COLUMNS c ON c.OWNER = k.OWNER AND c.CONSTRAINT_NAME = k.CONSTRAINT_NAME "
    "WHERE k.CONSTRAINT_TYPE IN ('P', 'U') AND k.TABLE_NAME = UPPER('%1')";

using Keys = std::map<Text, std::set<Text>>;

/// Column names in lower case. Nothing where the database does not know what the query asks.
std::optional<Keys> KeysBy(const char* query, Database& database, const std::shared_ptr<Connection>& connection,
                           const Text& table) {
  Keys keys;
  try {
    const std::shared_ptr<Recordset> rows = database.CreateRecordset();
    rows->Open(Replaced(query, "%1", Replaced(table, "'", "''")), connection, CursorType::Static, LockType::ReadOnly,
               CommandType::SqlText);
    for (; !rows->AtEnd(); rows->MoveNext()) {
      const Text key = rows->FieldValue("keyname").Joined();
      const Text column = rows->FieldValue("columnname").Joined();
      keys[key].insert(LowerCased(column));
    }
    rows->Close();
  } catch (const RuntimeError&) {
    return {};
  }
  return keys;
}

}  // namespace

std::optional<bool> HasKeyOver(Database& database, const JobLine& line, const std::shared_ptr<Connection>& connection,
                               const Text& table, const std::set<Text>& columns) {
  const Text provider = ConnectionString(line.connectionString).Value("Provider");
  std::optional<Keys> keys;
  if (EqualsIgnoringCase(provider, "SQLite")) {
    keys = KeysBy(kSqliteQuery, database, connection, table);
  } else {
    keys = KeysBy(kStandardQuery, database, connection, table);
    if (!keys) keys = KeysBy(kOracleQuery, database, connection, table);
  }
  if (!keys) return {};
  std::set<Text> wanted;
  for (const Text& column : columns) wanted.insert(LowerCased(column));
  for (const auto& [name, found] : *keys) {
    if (found == wanted) return true;
  }
  return false;
}

}  // namespace zenqay
