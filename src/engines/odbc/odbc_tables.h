// What a driver says of a table.
#pragma once

#include "engines/row_store.h"
#include "engines/table_schema.h"

namespace zenqay {

/// A table of this name in one schema; one name may stand in several.
struct DescribedTable {
  Text schema;
  Text name;
  std::vector<TableColumn> columns;

  std::vector<Text> ColumnNames() const;
};

/// The tables in the rows of SQLColumns.
std::vector<DescribedTable> TablesIn(RowStore& columns);

/// The unique keys in the rows of SQLStatistics, but for those over expressions or part of the rows.
std::vector<UniqueKey> KeysIn(RowStore& statistics, const DescribedTable& table);

}  // namespace zenqay
