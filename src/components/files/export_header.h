// The first record of an ERP file: its columns.
#pragma once

#include "components/files/column_type.h"
#include "components/files/csv_reader.h"

namespace zenqay {

/// A header cell: Name[:type[:code[:key]]].
struct ExportColumn {
  Text name;  // the accessor without its prefix; without "Old." too, which isOld stands for
  ColumnType type = ColumnType::Plain;
  Text code;  // the ERP's own name of the field, the one that the criteria use; may be empty
  bool isKey = false;
  bool isOld = false;  // holds what the column of the same name held before the change

  /// The name as it stands in the file.
  Text Title() const;
};

using ExportColumns = std::vector<ExportColumn>;

/// The column of a name, in any case, that is no "Old." column; null when there is none.
const ExportColumn* FindColumn(const ExportColumns& columns, std::string_view name);

/// 13 for the cell of a header, counted from 0.
[[noreturn]] void RaiseHeaderCell(const CsvRecord& record, const CsvSource& source, std::size_t number,
                                  std::string_view what);

/// True for the record that stands in the place of a header when a listing is to give nothing.
bool SaysNothing(const CsvRecord& record);

/// The columns of a full export. Raises 13, naming the cell, for a name that is empty or that another column has
/// (without regard to case), for an unknown type and for what does not have the form of a header cell.
ExportColumns ReadListHeader(const CsvRecord& record, const CsvSource& source);

/// The same for a file of changes. Its columns ChangedAt and ActionType are found wherever they stand.
struct ChangesHeader {
  ExportColumns columns;
  std::size_t changedAt = 0;  // its column
};

/// Raises 13 also when ChangedAt or ActionType is missing or is not a text without code and key, and for an "Old."
/// column whose own column is missing or has another type or code.
ChangesHeader ReadChangesHeader(const CsvRecord& record, const CsvSource& source);

}  // namespace zenqay
