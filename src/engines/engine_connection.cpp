#include "engines/engine_connection.h"

#include "engines/connection_string.h"
#include "engines/odbc/odbc_session.h"
#include "engines/provider_errors.h"
#include "engines/sqlite/sqlite_session.h"

namespace zenqay {
namespace {

constexpr const char* kRowCommit = "Row Commit";

void RequireCommandText(const Text& statement) {
  const bool isEmpty = statement.find_first_not_of(' ') == Text::npos;
  if (isEmpty) Raise(DatabaseFault::NoCommandText);
}

/// Runs an operation. Of a failure, its items go into the error collection, and it travels with the statement that it
/// is about.
template <typename Operation>
auto Reporting(Errors& errors, const Text& statement, Operation operation) {
  try {
    return operation();
  } catch (...) {
    const RuntimeError failure = ErrorInFlight().With(statement);
    errors.Clear();
    errors.Replace(failure.items());
    throw failure;
  }
}

std::unique_ptr<EngineSession> OpenSession(const Text& connectionString, const TimeLimits& limits,
                                           const std::shared_ptr<Interruption>& interruption) {
  const ConnectionString read(connectionString);
  const bool readsOnly = EqualsIgnoringCase(read.Value("Mode"), "Read");
  const Access access = readsOnly ? Access::ReadOnly : Access::ReadWrite;
  if (EqualsIgnoringCase(read.Value("Provider"), "SQLite")) {
    return std::make_unique<SqliteSession>(read.Value("Data Source"), access, interruption);
  }
  Text driversOwn = read.Value(kRowCommit).empty() ? connectionString : WithoutEntry(connectionString, kRowCommit);
  if (readsOnly) driversOwn = WithoutEntry(driversOwn, "Mode");
  const bool waits = EqualsIgnoringCase(read.Value(kRowCommit), "AtOnce");
  return std::make_unique<OdbcSession>(driversOwn,
                                       OdbcOptions{.access = access,
                                                   .limits = limits,
                                                   .rowCommit = waits ? RowCommit::AtOnce : RowCommit::Later,
                                                   .interruption = interruption});
}

}  // namespace

void EngineConnection::Open() {
  Reporting(*errors_, "", [this] {
    if (session_) Raise(DatabaseFault::OpenAlready);
    session_ = OpenSession(connectionString_, limits_, interruption_);
  });
}

void EngineConnection::PutDefaultDatabase(const Text& name) {
  Reporting(*errors_, "", [&] { Session().PutDefaultDatabase(name); });
}

Text EngineConnection::DefaultDatabase() {
  return Reporting(*errors_, "", [this] { return Session().DefaultDatabase(); });
}

void EngineConnection::Close() {
  Reporting(*errors_, "", [this] {
    Session();
    session_.reset();
  });
}

bool EngineConnection::TakeLock(const Text& name) {
  return Reporting(*errors_, "", [&] { return Session().TakeLock(name); });
}

void EngineConnection::GiveLockBack(const Text& name) {
  Reporting(*errors_, "", [&] { Session().GiveLockBack(name); });
}

bool EngineConnection::IsLockHeld(const Text& name) {
  return Reporting(*errors_, "", [&] { return Session().IsLockHeld(name); });
}

void EngineConnection::BeginReading() {
  Reporting(*errors_, "", [this] { Session().BeginReading(); });
}

bool EngineConnection::EndReading() {
  return Reporting(*errors_, "", [this] { return Session().EndReading(); });
}

void EngineConnection::Read(const Text& query, RowSink& rows) {
  Reporting(*errors_, query, [&] { Session().Read(query, rows); });
}

TableSchema EngineConnection::SchemaOf(const Text& table) {
  return Reporting(*errors_, "", [&] { return Session().SchemaOf(table); });
}

Text EngineConnection::DatabaseKind() {
  return Reporting(*errors_, "", [this] { return Session().DatabaseKind(); });
}

std::unique_ptr<QueryRows> EngineConnection::RowsOf(const Text& query, CursorType, LockType, CommandType) {
  return Reporting(*errors_, query, [&] {
    EngineSession& session = Session();
    RequireCommandText(query);
    interruption_->Check();
    auto rows = std::make_unique<RowStore>();
    session.Query(query, *rows);
    return rows;
  });
}

std::int64_t EngineConnection::Run(const Text& statement, Count count) {
  return Reporting(*errors_, statement, [&] {
    EngineSession& session = Session();
    RequireCommandText(statement);
    interruption_->Check();
    return session.Run(statement, count != Count::NotAsked);
  });
}

EngineSession& EngineConnection::Session() {
  if (!session_) Raise(DatabaseFault::Closed);
  return *session_;
}

}  // namespace zenqay
