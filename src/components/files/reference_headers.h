// The headers of the ERP's exports: what the job reads of each class, and as which type.
#pragma once

#include <span>

#include "components/files/export_header.h"

namespace zenqay {

struct ReferenceHeader {
  std::string_view fileStem;  // the class id up to the dot
  std::string_view header;    // of the full export; a file of changes has ChangedAt and ActionType beside these
};

std::span<const ReferenceHeader> ReferenceHeaders();

/// How many keys a listing of the class is asked by, each with a lowest and a highest value; 0 for another class.
std::size_t KeyCountOf(std::string_view fileStem);

/// Holds an export's columns against the reference header of its class; a class without one passes. A missing column
/// raises 438, naming `operation`, file and column: a header that was cut off must not stand for an empty ERP. A column
/// that the reference gives as a number or a date and the export as something else raises 13, naming the cell: such
/// values go into statements as they stand, and an export is not trusted. `record` is the one that `columns` were read
/// from, cell by cell.
void RequireReferenceColumns(std::string_view fileStem, const ExportColumns& columns, std::string_view operation,
                             const CsvRecord& record, const CsvSource& source);

}  // namespace zenqay
