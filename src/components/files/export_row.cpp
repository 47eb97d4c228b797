#include "components/files/export_row.h"

#include "base/runtime_error.h"

namespace zenqay {

std::shared_ptr<const RowShape> MakeRowShape(const CsvSource& source, ExportColumns columns, const Text& plural) {
  auto shape = std::make_shared<RowShape>();
  shape->source = source;
  shape->operations.Add("has" + plural, {.verb = RowVerb::HasOldValues});
  shape->operations.Add("get" + plural, {.verb = RowVerb::GetOldValues});
  for (std::size_t column = 0; column < columns.size(); ++column) {
    OperationTable& table = columns[column].isOld ? shape->oldOperations : shape->operations;
    table.AddAccessors(columns[column].name, column);
  }
  shape->columns = std::move(columns);
  return shape;
}

ExportRow::ExportRow(std::shared_ptr<const RowShape> shape, CsvRecord record, bool hasOldValues)
    : shape_(std::move(shape)), record_(std::move(record)), hasOldValues_(hasOldValues) {}

Value ExportRow::Call(std::string_view operation, Arguments arguments) {
  return Perform(shape_->operations.Find(operation), operation, arguments, false);
}

Value ExportRow::OldValues::Call(std::string_view operation, Arguments arguments) {
  return row_.Perform(row_.shape_->oldOperations.Find(operation), operation, arguments, true);
}

Value ExportRow::Get(std::string_view property) {
  RaiseNoSuchOperation(property, shape_->source.classId);
}

void ExportRow::Put(std::string_view property, const Value&) {
  RaiseNoSuchOperation(property, shape_->source.classId);
}

Value ExportRow::Perform(const RowOperation* found, std::string_view operation, Arguments arguments, bool onOldValues) {
  if (found == nullptr) RaiseNoColumn(operation, onOldValues);
  RequireArguments(operation, arguments, found->verb == RowVerb::Set ? 1 : 0, shape_->source.classId);
  switch (found->verb) {
    case RowVerb::Has:
      return IsPresent(found->column);
    case RowVerb::Get:
      return Field(found->column);
    case RowVerb::Set:
      Keep(found->column, arguments[0].value());
      break;
    case RowVerb::HasOldValues:
      return hasOldValues_;
    case RowVerb::GetOldValues:
      return OldValuesObject();
  }
  return {};
}

bool ExportRow::IsPresent(std::size_t column) const {
  return !record_.cells[column].isAbsent || FindKept(column) != nullptr;
}

Value ExportRow::Field(std::size_t column) {
  if (const Value* kept = FindKept(column)) return *kept;
  if (record_.cells[column].isAbsent) return {};
  Value value = ValueOf(shape_->columns[column].type, record_.TextOf(column));
  if (value.Is<Object>()) Keep(column, value);
  return value;
}

Value ExportRow::OldValuesObject() {
  if (!hasOldValues_) return Object();
  return Object(std::shared_ptr<Component>(shared_from_this(), &oldValues_));
}

void ExportRow::Keep(std::size_t column, const Value& value) {
  std::erase_if(kept_, [&](const Kept& kept) { return kept.column == column; });
  kept_.push_back({column, value});
}

const Value* ExportRow::FindKept(std::size_t column) const {
  for (const Kept& kept : kept_) {
    if (kept.column == column) return &kept.value;
  }
  return nullptr;
}

void ExportRow::RaiseNoColumn(std::string_view operation, bool onOldValues) const {
  Text about(operation);
  for (const std::string_view prefix : {"has", "get", "set"}) {
    if (!StartsWithIgnoringCase(operation, prefix)) continue;
    const ExportColumn missing{.name = Text(operation.substr(prefix.size())), .isOld = onOldValues};
    about += " (" + shape_->source.file + " has no column " + missing.Title() + ")";
  }
  RaiseNoSuchOperation(about, shape_->source.classId);
}

}  // namespace zenqay
