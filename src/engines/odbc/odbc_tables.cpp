#include "engines/odbc/odbc_tables.h"

#include <sql.h>
#include <sqlext.h>

#include <algorithm>

namespace zenqay {
namespace {

constexpr std::int32_t kTimestampWithOffset = -155;  // SQL Server's own

/// Drivers give some thousands of millions for texts without a limit.
constexpr double kLongestLimit = 65535;

// The columns of the two results, whose order is ODBC's; their names differ by its version.
enum ColumnsResult : std::size_t {
  kSchema = 1,
  kTable,
  kColumn,
  kType,
  kTypeName,
  kSize,
  kNullable = 10,
  kDefault = 12
};
enum StatisticsResult : std::size_t { kNonUnique = 3, kIndex = 5, kIndexColumn = 8, kFilter = 12 };

ColumnKind KindOf(std::int32_t type) {
  switch (type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      return ColumnKind::Integer;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      return ColumnKind::Number;
    case SQL_TYPE_DATE:
    case SQL_DATE:
      return ColumnKind::Date;
    case SQL_TYPE_TIMESTAMP:
    case SQL_TIMESTAMP:
    case kTimestampWithOffset:
      return ColumnKind::DateTime;
    default:
      return ColumnKind::Characters;
  }
}

bool IsPadded(std::int32_t type) {
  return type == SQL_CHAR || type == SQL_WCHAR;
}

bool HasLimit(std::int32_t type) {
  return IsPadded(type) || type == SQL_VARCHAR || type == SQL_WVARCHAR;
}

double NumberAt(const RowStore& row, std::size_t column) {
  const Value value = row.Field(column);
  return value.IsNull() ? 0 : value.AsDouble();
}

/// What psqlodbc tells besides; 0 where a driver does not.
double NumberAt(const RowStore& row, std::string_view column) {
  const auto& names = row.columns();
  const auto found = std::ranges::find_if(names, [&](const Text& name) { return EqualsIgnoringCase(name, column); });
  return found == names.end() ? 0 : NumberAt(row, static_cast<std::size_t>(found - names.begin()));
}

/// psqlodbc gives a limit of its own to a text that has none, but also what the server keeps of it: -1.
bool IsUnlimited(const RowStore& row) {
  return NumberAt(row, "TYPMOD") == -1;
}

/// A column that the server numbers by itself has no default; its type tells that, or psqlodbc.
Text DefaultIn(const RowStore& row) {
  const Text typeName = LowerCased(row.Field(kTypeName).Joined());
  const bool isNumbered = typeName.find("identity") != Text::npos || NumberAt(row, "AUTO_INCREMENT") == 1;
  return isNumbered ? "identity" : row.Field(kDefault).Joined();
}

TableColumn ColumnIn(const RowStore& row) {
  const std::int32_t type = row.Field(kType).AsInt32();
  TableColumn column;
  column.name = row.Field(kColumn).Joined();
  column.kind = KindOf(type);
  column.isPadded = IsPadded(type);
  column.mayBeNull = NumberAt(row, kNullable) != SQL_NO_NULLS;
  column.defaultValue = DefaultIn(row);
  const double size = NumberAt(row, kSize);
  if (HasLimit(type) && !IsUnlimited(row) && size <= kLongestLimit) column.length = static_cast<std::int64_t>(size);
  return column;
}

}  // namespace

std::vector<Text> DescribedTable::ColumnNames() const {
  std::vector<Text> names(columns.size());
  std::ranges::transform(columns, names.begin(), &TableColumn::name);
  return names;
}

std::vector<DescribedTable> TablesIn(RowStore& columns) {
  std::vector<DescribedTable> tables;
  while (columns.Next()) {
    const Text schema = columns.Field(kSchema).Joined();
    const Text name = columns.Field(kTable).Joined();
    const bool isNext = !tables.empty() && tables.back().schema == schema && tables.back().name == name;
    if (!isNext) tables.push_back({.schema = schema, .name = name});
    tables.back().columns.push_back(ColumnIn(columns));
  }
  return tables;
}

std::vector<UniqueKey> KeysIn(RowStore& statistics, const DescribedTable& table) {
  const std::vector<Text> names = table.ColumnNames();
  std::vector<std::pair<Text, UniqueKey>> keys;
  std::vector<Text> others;
  while (statistics.Next()) {
    const Value index = statistics.Field(kIndex);
    if (index.IsNull()) continue;  // what the server knows of the table itself
    const Text name = index.Joined();
    const Text column = statistics.Field(kIndexColumn).Joined();
    const bool isKey = NumberAt(statistics, kNonUnique) == SQL_FALSE && statistics.Field(kFilter).Joined().empty() &&
                       std::ranges::find(names, column) != names.end();
    if (!isKey) others.push_back(name);
    if (keys.empty() || keys.back().first != name) keys.push_back({name, {}});
    keys.back().second.push_back(column);
  }
  std::vector<UniqueKey> unique;
  for (const auto& [name, columns] : keys) {
    if (std::ranges::find(others, name) == others.end()) unique.push_back(columns);
  }
  return unique;
}

}  // namespace zenqay
