#include "engines/odbc/odbc_session.h"

#include <random>

#include "engines/dialect/postgresql_dialect.h"
#include "engines/dialect/sql_tokens.h"
#include "engines/odbc/diagnostics.h"
#include "engines/odbc/driver_strings.h"
#include "engines/odbc/odbc_rows.h"
#include "engines/odbc/session_lock.h"
#include "engines/odbc/statement_canceller.h"

namespace zenqay {
namespace {

/// True for a statement that has a count of rows and no columns of its own.
bool ChangesRows(const Text& statement) {
  const std::string_view verb = SqlTokens(statement).Next().text;
  return EqualsIgnoringCase(verb, "UPDATE") || EqualsIgnoringCase(verb, "INSERT") || EqualsIgnoringCase(verb, "DELETE");
}

/// True for a statement that changes rows which a copy can bring again: all but those of the control table, whose
/// contents say how far a copy has come.
bool ChangesCopiedRows(const Text& statement) {
  if (!ChangesRows(statement)) return false;
  SqlTokens tokens(statement);
  tokens.Next();
  SqlToken table = tokens.Next();
  if (EqualsIgnoringCase(table.text, "INTO") || EqualsIgnoringCase(table.text, "FROM")) table = tokens.Next();
  return !EqualsIgnoringCase(table.text, "tstables");
}

constexpr std::size_t kMostShapes = 64;

/// Names that no other session has: a pooler may let several share one of the server's.
Text NamePrefix() {
  std::random_device random;
  return "zenqay_" + std::to_string(random()) + "_" + std::to_string(random()) + "_";
}

/// How ODBC takes a number as an attribute.
SQLPOINTER NumberAttribute(std::int32_t number) {
  return reinterpret_cast<SQLPOINTER>(static_cast<SQLULEN>(number));
}

}  // namespace

/// A statement that has been run. Whatever became of it, its end leaves the handle ready for the next one.
class OdbcSession::OpenStatement {
 public:
  explicit OpenStatement(void* statement) : statement_(statement) {}
  OpenStatement(const OpenStatement&) = delete;
  OpenStatement& operator=(const OpenStatement&) = delete;
  ~OpenStatement() {
    if (!isClosed_) SQLFreeStmt(statement_, SQL_CLOSE);
  }

  /// The driver closes a statement by itself when it says that there is no further result.
  void SetClosed() { isClosed_ = true; }

 private:
  void* statement_;
  bool isClosed_ = false;
};

OdbcSession::OdbcSession(const Text& connectionString, const OdbcOptions& options)
    : connectionString_(connectionString),
      interruption_(options.interruption),
      waitsForRows_(options.rowCommit == RowCommit::AtOnce),
      namePrefix_(NamePrefix()),
      shapes_(kMostShapes) {
  OpenEnvironment();
  DriverString string = DriverConnectString(connectionString, InstalledDrivers(environment_.get()));
  const OdbcDriver driver = DriverOf(string.driver, string.dataSource);
  if (driver.isPsqlodbc()) string.text = WithoutDeclareFetch(string.text);
  calls_ = CallsOf(driver.width());
  const Text source = driver.name.empty() ? "ODBC" : driver.name;
  diagnostics_ = std::make_unique<Diagnostics>(*calls_, source, PasswordsOf(connectionString));
  Connect(string.text, options.access, options.limits.connection);
  Prepare(options.limits.command);
}

OdbcSession::~OdbcSession() = default;

/// Does what may be cancelled. Of a statement that was, the driver's own words would say less.
template <typename Work>
auto OdbcSession::Cancellable(Work work) {
  if (!canceller_) return work();
  const StatementCanceller::Running running(*canceller_);
  try {
    return work();
  } catch (const RuntimeError&) {
    if (canceller_->hasCancelled()) throw RuntimeError(PlatformFault::UserInterrupt);
    throw;
  }
}

std::int64_t OdbcSession::Run(const Text& statement, bool countRows) {
  const bool isShaped = preparesShapes_ && TakeShape(statement, shape_);
  if (isShaped) {
    shapeKey_ = shape_.text;
    AppendPostgreSqlTypes(shape_, shapeKey_ += '\0');
    if (const std::optional<std::int64_t> rows = RunShaped(statement, countRows)) return *rows;
  }
  const std::int64_t rows = RunComposed(statement, countRows);
  if (isShaped) LearnShape();
  return rows;
}

std::int64_t OdbcSession::RunComposed(const Text& statement, bool countRows) {
  const Text& text = Translated(statement);
  if (text.empty()) return 0;
  return Cancellable([&] {
    ChooseCommit(text);
    return RunText(text, countRows, text);
  });
}

void OdbcSession::Query(const Text& statement, RowStore& rows) {
  const Text& text = Translated(statement);
  if (!text.empty()) Cancellable([&] { QueryText(text, rows); });
}

/// Nothing when the composed statement is to run: the shape is new, or the server refuses it or one of its values. What
/// the composed statement then does or reports is what counts; one that is refused has done nothing.
std::optional<std::int64_t> OdbcSession::RunShaped(const Text& statement, bool countRows) {
  return Cancellable([&]() -> std::optional<std::int64_t> {
    PreparedShape* const shape = ShapeToExecute();
    if (shape == nullptr) return std::nullopt;
    ChooseCommit(statement);
    ExecutionForPostgreSql(shape->name(), shape_, execution_);
    try {
      shape->CountRun();
      return RunText(execution_, countRows, statement);
    } catch (const RuntimeError& failure) {
      if (!IsRefusal(failure)) throw;
      const bool isOfItsValues = failure.items().front().SqlState.starts_with("22");
      if (!isOfItsValues) shape->SetRefused();
      return std::nullopt;
    }
  });
}

/// Null when there is none yet that takes the values. A shape that is met for the second time is prepared.
PreparedShape* OdbcSession::ShapeToExecute() {
  PreparedShape* const shape = shapes_.Find(shapeKey_);
  if (shape == nullptr || !shape->Takes(shape_)) return nullptr;
  if (shape->isDue()) PrepareShape(*shape);
  return shape->isRefused() ? nullptr : shape;
}

void OdbcSession::PrepareShape(PreparedShape& shape) {
  if (!shape.name().empty()) namesLeft_.push_back(shape.name());
  const Text name = namePrefix_ + std::to_string(++namesGiven_);
  try {
    DeallocateLeft();
    RunSetting(PreparationForPostgreSql(name, shape_));
    shape.SetPrepared(name);
    RowStore types;
    QueryText("SELECT CAST(parameter_types AS text) FROM pg_prepared_statements WHERE name = '" + name + "'", types);
    const bool isMeasured = types.Next() && AreMeasured(types.Field(0).Joined());
    if (!isMeasured) shape.SetRefused();
  } catch (const RuntimeError& failure) {
    if (!IsRefusal(failure)) throw;
    shape.SetRefused();
  }
}

/// The statement at hand has run as composed.
void OdbcSession::LearnShape() {
  if (PreparedShape* const known = shapes_.Find(shapeKey_)) return known->Learn(shape_);
  PreparedShape shape;
  shape.Learn(shape_);
  const std::optional<PreparedShape> gone = shapes_.Add(shapeKey_, std::move(shape));
  if (gone && !gone->name().empty()) namesLeft_.push_back(gone->name());
}

void OdbcSession::DeallocateLeft() {
  for (; !namesLeft_.empty(); namesLeft_.pop_back()) RunSetting("DEALLOCATE " + namesLeft_.back());
}

/// True for what says nothing of the connection: the statement does not read, or one of its values does not. What is
/// prepared is not known any more behind a pooler that changes the server's session; then nothing further is.
bool OdbcSession::IsRefusal(const RuntimeError& failure) {
  if (failure.items().empty()) return false;
  const std::string_view state = failure.items().front().SqlState;
  if (state.starts_with("26")) preparesShapes_ = false;
  return state.starts_with("26") || state.starts_with("42") || state.starts_with("22") || state.starts_with("0A");
}

/// `meant` is what the text comes to.
std::int64_t OdbcSession::RunText(const Text& text, bool countRows, const Text& meant) {
  OpenStatement open(statement_.get());
  const SQLRETURN result = calls_->ExecDirect(statement_.get(), text);
  RequireStatement(result);
  const bool asksCount = countRows && result != SQL_NO_DATA;
  const std::int64_t rows = asksCount ? TouchedRows(meant) : 0;
  while (NextResult(open)) {
  }
  return rows;
}

void OdbcSession::QueryText(const Text& text, RowStore& rows) {
  OpenStatement open(statement_.get());
  RequireStatement(calls_->ExecDirect(statement_.get(), text));
  do {
    const bool isFirstResult = rows.columns().empty() && HasColumns();
    if (isFirstResult) ReadRows(*calls_, *diagnostics_, statement_.get(), rows);
  } while (NextResult(open));
}

void OdbcSession::PutDefaultDatabase(const Text& name) {
  if (switchesCatalogs_) RequireConnection(calls_->PutCatalog(connection_.get(), name));
  defaultDatabase_ = name;
}

Text OdbcSession::DefaultDatabase() {
  if (!switchesCatalogs_ && !defaultDatabase_.empty()) return defaultDatabase_;
  Text name;
  RequireConnection(calls_->GetCatalog(connection_.get(), name));
  return name;
}

bool OdbcSession::TakeLock(const Text& name) {
  const SessionLock lock = LockOf(name);
  for (const Text& setting : lock.before) RunSetting(setting);
  if (!Get(lock, name)) return false;
  Prove(lock, name);
  return true;
}

void OdbcSession::GiveLockBack(const Text& name) {
  RowStore nothing;
  QueryText(LockOf(name).giveBack, nothing);
}

bool OdbcSession::IsLockHeld(const Text& name) {
  const SessionLock lock = LockOf(name);
  if (!lock.heldByAny.empty()) return AnswerTo(lock.heldByAny) == 1;
  if (!Get(lock, name)) return true;
  GiveLockBack(name);
  return false;
}

/// Asks for the lock, without a look at whether it keeps anybody out.
bool OdbcSession::Get(const SessionLock& lock, const Text& name) {
  const std::int32_t answer = AnswerTo(lock.take);
  if (answer == lock.got || answer == lock.notGot) return answer == lock.got;
  throw RuntimeError(
      kGeneralProviderFailure, kPlatformSource,
      "The lock of table " + name + " cannot be taken: the server answers " + std::to_string(answer) + ".");
}

SessionLock OdbcSession::LockOf(const Text& name) const {
  if (const std::optional<SessionLock> lock = SessionLockOf(dbms_, name)) return *lock;
  throw RuntimeError(kGeneralProviderFailure, kPlatformSource,
                     "No table lock is known for the database \"" + dbms_ + "\": remove LOCK from Components.xml.");
}

std::int32_t OdbcSession::AnswerTo(const Text& query) {
  RowStore rows;
  QueryText(query, rows);
  return rows.Next() ? rows.Field(0).AsInt32() : -1;
}

/// A pooler that hands each statement to whichever session of the server is free would let a second client into the
/// session that holds the lock. So a second one is made, which must not get it, and this one asked before and after.
void OdbcSession::Prove(const SessionLock& lock, const Text& name) {
  constexpr TimeLimits kLimits = {.connection = 20, .command = 20};
  bool isProved = AnswerTo(lock.held) == lock.holds;
  if (isProved) {
    OdbcSession second(connectionString_, {.limits = kLimits});
    isProved = second.AnswerTo(lock.take) == lock.notGot;
  }
  if (isProved && AnswerTo(lock.held) == lock.holds) return;
  throw RuntimeError(kGeneralProviderFailure, kPlatformSource,
                     "The lock of table " + name +
                         " excludes nobody: the statements of one connection reach several sessions of the server, as "
                         "behind a pooler in transaction mode. Connect the job to the server itself, or to a pool in "
                         "session mode.");
}

void OdbcSession::FreeEnvironment::operator()(void* environment) const {
  SQLFreeHandle(SQL_HANDLE_ENV, environment);
}

void OdbcSession::FreeConnection::operator()(void* connection) const {
  SQLDisconnect(connection);
  SQLFreeHandle(SQL_HANDLE_DBC, connection);
}

void OdbcSession::FreeStatement::operator()(void* statement) const {
  SQLFreeHandle(SQL_HANDLE_STMT, statement);
}

void OdbcSession::OpenEnvironment() {
  SQLHANDLE environment = nullptr;
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment))) {
    throw RuntimeError(kGeneralProviderFailure, kPlatformSource, "The ODBC driver manager cannot be started.");
  }
  environment_.reset(environment);
  SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
}

void OdbcSession::Connect(const Text& driverString, Access access, std::int16_t timeLimit) {
  SQLHANDLE connection = nullptr;
  const SQLRETURN made = SQLAllocHandle(SQL_HANDLE_DBC, environment_.get(), &connection);
  diagnostics_->Require(made, SQL_HANDLE_ENV, environment_.get());
  connection_.reset(connection);
  // A driver that refuses a setting has no such limit, or no such mode.
  SQLSetConnectAttr(connection, SQL_ATTR_LOGIN_TIMEOUT, NumberAttribute(timeLimit), 0);
  if (access == Access::ReadOnly) {
    SQLSetConnectAttr(connection, SQL_ATTR_ACCESS_MODE, NumberAttribute(SQL_MODE_READ_ONLY), 0);
  }
  diagnostics_->RequireConnected(calls_->DriverConnect(connection, driverString), connection);
}

/// Makes the one statement handle, and finds out what the database is.
void OdbcSession::Prepare(std::int16_t timeLimit) {
  SQLHANDLE statement = nullptr;
  RequireConnection(SQLAllocHandle(SQL_HANDLE_STMT, connection_.get(), &statement));
  statement_.reset(statement);
  SQLSetStmtAttr(statement, SQL_ATTR_QUERY_TIMEOUT, NumberAttribute(timeLimit), 0);  // as with the limit above
  if (interruption_) canceller_ = std::make_unique<StatementCanceller>(statement, interruption_);
  dbms_ = Info(SQL_DBMS_NAME);
  isPostgreSql_ = EqualsIgnoringCase(dbms_, "PostgreSQL");
  switchesCatalogs_ = !isPostgreSql_ && Info(SQL_CATALOG_NAME) == "Y";
  // A server or a user can be set to read a backslash in a literal as an escape.
  if (isPostgreSql_) Run("SET standard_conforming_strings = on", false);
  preparesShapes_ = isPostgreSql_;
}

const Text& OdbcSession::Translated(const Text& statement) {
  if (!isPostgreSql_) return statement;
  TranslateForPostgreSql(statement, translated_);
  return translated_;
}

/// A commit that waits makes all before it safe. So a lost server loses rows at most behind which nothing is noted yet.
void OdbcSession::ChooseCommit(const Text& statement) {
  if (!isPostgreSql_ || waitsForRows_) return;
  const bool waits = !ChangesCopiedRows(statement);
  if (waits == waits_) return;
  const Text setting = waits ? "DEFAULT" : "off";
  OpenStatement open(statement_.get());
  RequireStatement(calls_->ExecDirect(statement_.get(), "SET synchronous_commit TO " + setting));
  waits_ = waits;
}

Text OdbcSession::Info(std::uint16_t what) {
  Text answer;
  RequireConnection(calls_->GetInfo(connection_.get(), what, answer));
  return answer;
}

void OdbcSession::RequireConnection(std::int16_t result) {
  diagnostics_->Require(result, SQL_HANDLE_DBC, connection_.get());
}

void OdbcSession::RequireStatement(std::int16_t result) {
  diagnostics_->Require(result, SQL_HANDLE_STMT, statement_.get());
}

bool OdbcSession::HasColumns() {
  SQLSMALLINT columns = 0;
  RequireStatement(SQLNumResultCols(statement_.get(), &columns));
  return columns > 0;
}

/// A query's count is that of its rows, and a statement of another kind has -1; neither touched any. A statement that
/// tells by its verb saves the call: a job sends hardly another one.
std::int64_t OdbcSession::TouchedRows(const Text& statement) {
  SQLLEN rows = 0;
  RequireStatement(SQLRowCount(statement_.get(), &rows));
  if (rows <= 0) return 0;
  return ChangesRows(statement) || !HasColumns() ? rows : 0;
}

bool OdbcSession::NextResult(OpenStatement& open) {
  const SQLRETURN result = SQLMoreResults(statement_.get());
  RequireStatement(result);
  if (result == SQL_NO_DATA) open.SetClosed();
  return result != SQL_NO_DATA;
}

}  // namespace zenqay
