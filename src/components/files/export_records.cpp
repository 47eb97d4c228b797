#include "components/files/export_records.h"

#include "base/runtime_error.h"
#include "base/utf8.h"

namespace zenqay {

bool ExportRecords::Read(CsvRecord& record) {
  if (!reader_.Read(record)) {
    RequireWhole();
    return false;
  }
  ++recordsRead_;
  RequireSound(record);
  return true;
}

void ExportRecords::ReadAt(std::uint64_t position, CsvRecord& record) {
  reader_.GoTo(position);
  if (!reader_.Read(record)) throw RuntimeError(PlatformFault::PathAccess, shape_->source.file, shape_->source.classId);
  RequireSound(record);
}

void ExportRecords::RequireSound(const CsvRecord& record) const {
  const ExportColumns& columns = shape_->columns;
  if (record.cells.size() < columns.size()) {
    RaiseInColumn(*shape_, record, record.cells.size(), "the record ends before this column");
  }
  if (record.cells.size() > columns.size()) {
    RaiseInColumn(*shape_, record, columns.size(), "the header has no such column");
  }
  const bool isPlain = IsPlain(record.bytes);
  for (std::size_t column = 0; column < columns.size(); ++column) {
    const std::string_view cell = record.TextOf(column);
    const std::string_view flaw = isPlain ? "" : FlawOf(cell);
    if (!flaw.empty()) RaiseInColumn(*shape_, record, column, flaw);
    if (Reads(columns[column].type, cell)) continue;
    RaiseInColumn(*shape_, record, column, Quoted(cell).append("is no ").append(NameOf(columns[column].type)));
  }
}

void ExportRecords::RequireWhole() const {
  if (!count_ || *count_ == recordsRead_) return;
  const Text about = shape_->source.file + " ends after " + std::to_string(recordsRead_) + " records in place of " +
                     std::to_string(*count_);
  throw RuntimeError(PlatformFault::TypeMismatch, about, shape_->source.classId);
}

void RaiseInColumn(const RowShape& shape, const CsvRecord& record, std::size_t column, std::string_view what) {
  const ExportColumns& columns = shape.columns;
  const Text name = column < columns.size() ? columns[column].Title() : std::to_string(column + 1);
  RaiseMismatch(shape.source, record.line, name, what);
}

}  // namespace zenqay
