#include "engines/engine_connection.h"

#include "base/numbers.h"
#include "engines/connection_string.h"
#include "engines/odbc/odbc_session.h"
#include "engines/provider_errors.h"
#include "engines/sqlite/sqlite_session.h"

namespace zenqay {
namespace {

constexpr std::int32_t kNoCurrentRow = 3021;
constexpr std::int32_t kNoSuchField = 3265;
constexpr std::int32_t kClosed = 3704;
constexpr std::int32_t kOpenAlready = 3705;
constexpr std::int32_t kNoUsableConnection = 3709;
constexpr std::int32_t kNoCommandText = -2147217908;

[[noreturn]] void Raise(std::int32_t number, Text description) {
  throw RuntimeError(number, kPlatformSource, std::move(description));
}

[[noreturn]] void RaiseClosed() {
  Raise(kClosed, "Operation is not allowed when the object is closed.");
}

[[noreturn]] void RaiseOpenAlready() {
  Raise(kOpenAlready, "Operation is not allowed when the object is open.");
}

void RequireCommandText(const Text& statement) {
  const bool isEmpty = statement.find_first_not_of(' ') == Text::npos;
  if (isEmpty) Raise(kNoCommandText, "Command text was not set for the command object.");
}

/// Runs an operation and leaves in the error collection what its failure consists of.
template <typename Operation>
auto Reporting(Errors& errors, Operation operation) {
  try {
    return operation();
  } catch (const ProviderFailure& failure) {
    errors.Replace(failure.items());
    throw;
  } catch (const RuntimeError&) {
    errors.Clear();
    throw;
  }
}

void RequireRow(const RowStore& rows) {
  if (rows.atRow()) return;
  Raise(kNoCurrentRow,
        "Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a current "
        "record.");
}

std::size_t ColumnOf(const RowStore& rows, std::string_view name) {
  const std::vector<Text>& columns = rows.columns();
  for (std::size_t column = 0; column < columns.size(); ++column) {
    if (EqualsIgnoringCase(columns[column], name)) return column;
  }
  Raise(kNoSuchField,
        "Item cannot be found in the collection corresponding to the requested name or ordinal.: " + Text(name));
}

std::unique_ptr<EngineSession> OpenSession(const Text& connectionString) {
  const ConnectionString read(connectionString);
  const bool readsOnly = EqualsIgnoringCase(read.Value("Mode"), "Read");
  const Access access = readsOnly ? Access::ReadOnly : Access::ReadWrite;
  if (EqualsIgnoringCase(read.Value("Provider"), "SQLite")) {
    return std::make_unique<SqliteSession>(read.Value("Data Source"), access);
  }
  return std::make_unique<OdbcSession>(readsOnly ? WithoutEntry(connectionString, "Mode") : connectionString, access);
}

}  // namespace

void EngineConnection::Open() {
  Reporting(*errors_, [this] {
    if (session_) RaiseOpenAlready();
    session_ = OpenSession(connectionString_);
  });
}

void EngineConnection::PutDefaultDatabase(const Text& name) {
  Reporting(*errors_, [&] { Session().PutDefaultDatabase(name); });
}

Text EngineConnection::DefaultDatabase() {
  return Reporting(*errors_, [this] { return Session().DefaultDatabase(); });
}

void EngineConnection::Close() {
  Reporting(*errors_, [this] {
    Session();
    session_.reset();
  });
}

void EngineConnection::Query(const Text& source, RowStore& rows) {
  Reporting(*errors_, [&] {
    EngineSession& session = Session();
    RequireCommandText(source);
    session.Query(source, rows);
  });
}

std::int64_t EngineConnection::Run(const Text& statement, Count count) {
  return Reporting(*errors_, [&] {
    EngineSession& session = Session();
    RequireCommandText(statement);
    return session.Run(statement, count == Count::Asked);
  });
}

EngineSession& EngineConnection::Session() {
  if (!session_) RaiseClosed();
  return *session_;
}

void EngineRecordset::Open(const Text& source, std::shared_ptr<Connection> connection, CursorType, LockType,
                           CommandType) {
  if (rows_) RaiseOpenAlready();
  if (connection) connection_ = std::move(connection);
  const auto engine = std::dynamic_pointer_cast<EngineConnection>(connection_);
  if (!engine) {
    Raise(kNoUsableConnection,
          "The connection cannot be used to perform this operation. It is either closed or invalid in this context.");
  }
  auto rows = std::make_unique<RowStore>();
  engine->Query(source, *rows);
  rows->Next();
  rows_ = std::move(rows);
}

bool EngineRecordset::AtEnd() {
  return !Rows().atRow();
}

bool EngineRecordset::AtBeginning() {
  return Rows().count() == 0;
}

std::int32_t EngineRecordset::RecordCount() {
  return FitInt32(Rows().count());
}

void EngineRecordset::MoveNext() {
  RequireRow(Rows());
  rows_->Next();
}

Value EngineRecordset::FieldValue(std::string_view name) {
  const RowStore& rows = Rows();
  const std::size_t column = ColumnOf(rows, name);
  RequireRow(rows);
  return rows.Field(column);
}

void EngineRecordset::Close() {
  Rows();
  rows_.reset();
}

RowStore& EngineRecordset::Rows() {
  if (!rows_) RaiseClosed();
  return *rows_;
}

}  // namespace zenqay
