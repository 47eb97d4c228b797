#include "components/files/export_enumeration.h"

#include "base/utf8.h"

namespace zenqay {

ExportRows::ExportRows(CsvReader reader, std::shared_ptr<const RowShape> shape, RowSelection selection)
    : reader_(std::move(reader)), shape_(std::move(shape)), selection_(std::move(selection)) {}

std::shared_ptr<ExportRow> ExportRows::Next() {
  while (reader_.Read(record_)) {
    ++recordsRead_;
    RequireSound();
    if (IsSelected()) return MakeRow();
  }
  RequireWhole();
  return nullptr;
}

void ExportRows::RequireWhole() const {
  if (!selection_.recordCount || *selection_.recordCount == recordsRead_) return;
  const CsvSource& source = reader_.source();
  const Text expected = std::to_string(*selection_.recordCount);
  throw RuntimeError(PlatformFault::TypeMismatch,
                     source.file + " ends after " + std::to_string(recordsRead_) + " records in place of " + expected,
                     source.classId);
}

void ExportRows::RequireSound() const {
  const ExportColumns& columns = shape_->columns;
  if (record_.cells.size() < columns.size()) RaiseInColumn(record_.cells.size(), "the record ends before this column");
  if (record_.cells.size() > columns.size()) RaiseInColumn(columns.size(), "the header has no such column");
  const bool isPlain = IsPlain(record_.bytes);
  for (std::size_t column = 0; column < columns.size(); ++column) {
    const std::string_view cell = record_.TextOf(column);
    const std::string_view flaw = isPlain ? "" : FlawOf(cell);
    if (!flaw.empty()) RaiseInColumn(column, flaw);
    if (Reads(columns[column].type, cell)) continue;
    RaiseInColumn(column, Quoted(cell).append("is no ").append(NameOf(columns[column].type)));
  }
}

bool ExportRows::IsSelected() const {
  if (selection_.period) {
    const DateTime changedAt = ChangedAt();
    if (changedAt < selection_.period->from || changedAt > selection_.period->to) return false;
  }
  for (const KeyRange& range : selection_.ranges) {
    if (!range.Admits(record_)) return false;
  }
  return true;
}

std::shared_ptr<ExportRow> ExportRows::MakeRow() {
  for (const std::size_t column : selection_.silentColumns) record_.cells[column].isAbsent = true;
  bool hasOldValues = false;
  for (const std::size_t column : selection_.oldColumns) hasOldValues |= !record_.cells[column].isAbsent;
  return std::make_shared<ExportRow>(shape_, record_, hasOldValues);
}

DateTime ExportRows::ChangedAt() const {
  const std::string_view cell = record_.TextOf(selection_.period->column);
  DateTime changedAt;
  if (!ReadUtcMoment(cell, changedAt)) {
    RaiseInColumn(selection_.period->column, Quoted(cell).append("is no time YYYY-MM-DDThh:mm:ssZ"));
  }
  return changedAt;
}

void ExportRows::RaiseInColumn(std::size_t column, std::string_view what) const {
  const ExportColumns& columns = shape_->columns;
  const Text name = column < columns.size() ? columns[column].Title() : std::to_string(column + 1);
  RaiseMismatch(reader_.source(), record_.line, name, what);
}

ExportEnumeration::ExportEnumeration(Text classId, std::optional<ExportRows> rows)
    : FileComponent(std::move(classId)), rows_(std::move(rows)) {}

Value ExportEnumeration::Call(std::string_view operation, Arguments arguments) {
  if (EqualsIgnoringCase(operation, "hasMoreElements")) {
    RequireArguments(operation, arguments, 0, classId());
    return HasMoreElements();
  }
  if (EqualsIgnoringCase(operation, "nextElement")) {
    RequireArguments(operation, arguments, 0, classId());
    return NextElement();
  }
  RaiseNoSuchOperation(operation, classId());
}

bool ExportEnumeration::HasMoreElements() {
  if (failure_) throw *failure_;
  if (next_ != nullptr || !rows_) return next_ != nullptr;
  try {
    next_ = rows_->Next();
  } catch (const RuntimeError& error) {
    failure_ = error;
    throw;
  }
  return next_ != nullptr;
}

Value ExportEnumeration::NextElement() {
  if (!HasMoreElements()) {
    throw RuntimeError(PlatformFault::InvalidCall, "nextElement behind the last row", classId());
  }
  return Object(std::move(next_));
}

}  // namespace zenqay
