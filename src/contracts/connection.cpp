#include "contracts/connection.h"

#include "base/numbers.h"

namespace zenqay {
namespace {

const char* TextOf(DatabaseFault fault) {
  switch (fault) {
    case DatabaseFault::NoCurrentRow:
      return "Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a "
             "current record.";
    case DatabaseFault::NoSuchField:
      return "Item cannot be found in the collection corresponding to the requested name or ordinal.";
    case DatabaseFault::Closed:
      return "Operation is not allowed when the object is closed.";
    case DatabaseFault::OpenAlready:
      return "Operation is not allowed when the object is open.";
    case DatabaseFault::NoUsableConnection:
      return "The connection cannot be used to perform this operation. It is either closed or invalid in this context.";
    case DatabaseFault::NoCommandText:
      return "Command text was not set for the command object.";
  }
  return FaultText(PlatformFault::Automation);
}

std::size_t ColumnOf(const QueryRows& rows, std::string_view name) {
  const std::vector<Text>& columns = rows.columns();
  for (std::size_t column = 0; column < columns.size(); ++column) {
    if (EqualsIgnoringCase(columns[column], name)) return column;
  }
  Raise(DatabaseFault::NoSuchField, name);
}

void RequireRow(const QueryRows& rows) {
  if (!rows.atRow()) Raise(DatabaseFault::NoCurrentRow);
}

}  // namespace

void Raise(DatabaseFault fault, std::string_view about) {
  Text description = TextOf(fault);
  if (!about.empty()) description.append(": ").append(about);
  throw RuntimeError(static_cast<std::int32_t>(fault), kPlatformSource, description);
}

void Connection::Execute(const Text& statement) {
  Run(statement, Count::NotAsked);
}

void Connection::Execute(const Text& statement, std::int16_t& recordsAffected) {
  const std::int64_t rows = Run(statement, Count::Asked);
  recordsAffected = FitInt16(rows);
}

void Connection::Execute(const Text& statement, std::int32_t& recordsAffected) {
  const std::int64_t rows = Run(statement, Count::Asked);
  recordsAffected = FitInt32(rows);
}

void Connection::Execute(const Text& statement, Text& recordsAffected) {
  const std::int64_t rows = Run(statement, Count::Asked);
  recordsAffected = std::to_string(rows);
}

void Recordset::Open(const Text& source, std::shared_ptr<Connection> connection, CursorType cursor, LockType lock,
                     CommandType options) {
  if (rows_) Raise(DatabaseFault::OpenAlready);
  if (connection) connection_ = std::move(connection);
  if (!connection_) Raise(DatabaseFault::NoUsableConnection);
  std::unique_ptr<QueryRows> rows = connection_->RowsOf(source, cursor, lock, options);
  rows->Next();
  rows_ = std::move(rows);
}

std::int32_t Recordset::RecordCount() const {
  return FitInt32(Rows().count());
}

void Recordset::MoveNext() {
  RequireRow(Rows());
  rows_->Next();
}

Value Recordset::FieldValue(std::string_view name) const {
  const QueryRows& rows = Rows();
  const std::size_t column = ColumnOf(rows, name);
  RequireRow(rows);
  return rows.Field(column);
}

void Recordset::Close() {
  Rows();
  rows_.reset();
}

QueryRows& Recordset::Rows() const {
  if (!rows_) Raise(DatabaseFault::Closed);
  return *rows_;
}

Value Field::Get(std::string_view property) {
  if (EqualsIgnoringCase(property, "Value")) return Default();
  if (EqualsIgnoringCase(property, "Name")) return name_;
  RaiseNoSuchOperation(property, name_);
}

}  // namespace zenqay
