#include "components/files/export_enumeration.h"

namespace zenqay {

ExportRows::ExportRows(std::unique_ptr<RecordSource> records, std::shared_ptr<const RowShape> shape,
                       RowSelection selection)
    : records_(std::move(records)), shape_(std::move(shape)), selection_(std::move(selection)) {}

std::shared_ptr<ExportRow> ExportRows::Next() {
  while (records_->Read(record_)) {
    if (IsSelected()) return MakeRow();
  }
  return nullptr;
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
    RaiseInColumn(*shape_, record_, selection_.period->column, Quoted(cell).append("is no time YYYY-MM-DDThh:mm:ssZ"));
  }
  return changedAt;
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
