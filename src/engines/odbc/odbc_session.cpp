#include "engines/odbc/odbc_session.h"

#include <algorithm>
#include <utility>

#include "engines/dialect/postgresql_dialect.h"
#include "engines/dialect/sql_tokens.h"
#include "engines/odbc/diagnostics.h"
#include "engines/odbc/driver_strings.h"
#include "engines/odbc/odbc_rows.h"
#include "engines/odbc/odbc_tables.h"
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

std::string_view StateOf(const RuntimeError& failure) {
  return failure.items().empty() ? "" : std::string_view(failure.items().front().SqlState);
}

/// How ODBC takes a number as an attribute.
SQLPOINTER NumberAttribute(std::int32_t number) {
  return reinterpret_cast<SQLPOINTER>(static_cast<SQLULEN>(number));
}

/// Passes the rows of one cursor on, which come a piece at a time.
class CountingSink : public RowSink {
 public:
  explicit CountingSink(RowSink& rows) : rows_(rows) {}

  bool MayHaveMore() const { return count_ == kPiece; }
  Text Fetch() {
    count_ = 0;
    return "FETCH " + std::to_string(kPiece) + " FROM zenqay_rows";
  }

  void PutColumns(std::vector<Text> names) override {
    if (!std::exchange(hasColumns_, true)) rows_.PutColumns(std::move(names));
  }
  void AddNull() override { rows_.AddNull(); }
  void AddInteger(std::int32_t value) override { rows_.AddInteger(value); }
  void AddDouble(double value) override { rows_.AddDouble(value); }
  void AddText(std::string_view value) override { rows_.AddText(value); }
  void AddDateTime(DateTime value) override { rows_.AddDateTime(value); }
  void EndRow() override {
    ++count_;
    rows_.EndRow();
  }

 private:
  static constexpr int kPiece = 2000;

  RowSink& rows_;
  int count_ = kPiece;
  bool hasColumns_ = false;
};

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
      commandLimit_(options.limits.command),
      interruption_(options.interruption),
      waitsForRows_(options.rowCommit == RowCommit::AtOnce),
      shapes_(kMostShapes) {
  OpenEnvironment();
  DriverString string = DriverConnectString(connectionString, InstalledDrivers(environment_.get()));
  const OdbcDriver driver = DriverOf(string.driver, string.dataSource);
  if (driver.isPsqlodbc()) string.text = WithoutDeclareFetch(string.text);
  calls_ = CallsOf(driver.width());
  const Text source = driver.name.empty() ? "ODBC" : driver.name;
  diagnostics_ = std::make_unique<Diagnostics>(*calls_, source, PasswordsOf(connectionString));
  Connect(string.text, options.access, options.limits.connection);
  Prepare();
}

OdbcSession::~OdbcSession() = default;

/// Does what may be cancelled. Of a statement that was, the driver's own words would say less. A connection that is
/// lost gets every further statement as composed, since the driver names the call that found it so.
template <typename Work>
auto OdbcSession::Cancellable(void* statement, Work work) {
  std::optional<StatementCanceller::Running> running;
  if (canceller_) running.emplace(*canceller_, statement);
  try {
    return work();
  } catch (const RuntimeError& failure) {
    const std::string_view state = StateOf(failure);
    if (state.starts_with("08") || state.starts_with("57P")) preparesShapes_ = false;
    if (canceller_ && canceller_->hasCancelled()) throw RuntimeError(PlatformFault::UserInterrupt);
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
  ChooseCommit(text);
  return Cancellable(statement_.get(), [&] { return RunText(text, countRows); });
}

void OdbcSession::Query(const Text& statement, RowSink& rows) {
  const Text& text = Translated(statement);
  if (!text.empty()) Cancellable(statement_.get(), [&] { QueryText(text, rows); });
}

/// Nothing when the composed statement is to run: the shape is new, or the server refuses it or one of its values. What
/// the composed statement then does or reports is what counts; one that is refused has done nothing.
std::optional<std::int64_t> OdbcSession::RunShaped(const Text& statement, bool countRows) {
  PreparedShape* const shape = ShapeToExecute();
  if (shape == nullptr) return std::nullopt;
  ChooseCommit(statement);
  PreparedStatement& prepared = *shape->statement();
  for (std::size_t i = 0; i < shape_.values.size(); ++i) {
    PreparedStatement::Parameter& parameter = prepared.parameters()[i];
    parameter.isNull = !ParameterForPostgreSql(shape_.values[i], parameter.text);
  }
  try {
    shape->CountRun();
    return Cancellable(prepared.handle(), [&] { return Execute(prepared, countRows); });
  } catch (const RuntimeError& failure) {
    if (!IsRefusal(failure)) throw;
    const bool isOfItsValues = StateOf(failure).starts_with("22");
    if (!isOfItsValues) shape->SetRefused();
    return std::nullopt;
  }
}

/// Null when there is none yet that takes the values. A shape that is met for the second time is prepared.
PreparedShape* OdbcSession::ShapeToExecute() {
  PreparedShape* const shape = shapes_.Find(shapeKey_);
  if (shape == nullptr || !shape->Takes(shape_)) return nullptr;
  if (shape->isDue()) Cancellable(statement_.get(), [&] { PrepareShape(*shape); });
  return shape->statement() == nullptr ? nullptr : shape;
}

void OdbcSession::PrepareShape(PreparedShape& shape) {
  Drop(shape);
  shape.Forget();
  if (!IsMeasured()) return shape.SetRefused();
  void* const statement = AllocateStatement();
  RequireStatement(calls_->Prepare(statement, ParametrizedForPostgreSql(shape_, ParameterMark::Question)), statement);
  shape.SetPrepared(std::make_unique<PreparedStatement>(statement, shape_.values.size()));
}

/// The server is asked before the driver prepares anything, which it does when it first executes it.
bool OdbcSession::IsMeasured() {
  const Text name = "zenqay_shape";
  RowStore types;
  try {
    QueryText("PREPARE " + name + " AS " + ParametrizedForPostgreSql(shape_, ParameterMark::Number) +
                  ";SELECT CAST(parameter_types AS text) FROM pg_prepared_statements WHERE name = '" + name +
                  "';DEALLOCATE " + name,
              types);
  } catch (const RuntimeError& failure) {
    if (!IsRefusal(failure)) throw;
    return false;
  }
  return types.Next() && AreMeasured(types.Field(0).Joined());
}

/// A prepared statement is a single one, so there is no further result.
std::int64_t OdbcSession::Execute(PreparedStatement& statement, bool countRows) {
  const SQLRETURN result = statement.Execute();
  RequireStatement(result, statement.handle());
  const bool asksCount = countRows && result != SQL_NO_DATA;
  return asksCount ? CountOf(statement.handle()) : 0;
}

/// The statement at hand has run as composed.
void OdbcSession::LearnShape() {
  if (PreparedShape* const known = shapes_.Find(shapeKey_)) return known->Learn(shape_);
  PreparedShape shape;
  shape.Learn(shape_);
  if (const std::optional<PreparedShape> gone = shapes_.Add(shapeKey_, std::move(shape))) Drop(*gone);
}

/// What is not dropped goes with the connection.
void OdbcSession::Drop(const PreparedShape& shape) {
  if (shape.statement() != nullptr) SQLFreeHandle(SQL_HANDLE_STMT, shape.statement()->handle());
}

/// True for what says nothing of the connection: the statement does not read, or one of its values does not. What is
/// prepared is not known any more behind a pooler that changes the server's session; then nothing further is.
bool OdbcSession::IsRefusal(const RuntimeError& failure) {
  const std::string_view state = StateOf(failure);
  if (state.starts_with("26")) preparesShapes_ = false;
  return state.starts_with("26") || state.starts_with("42") || state.starts_with("22") || state.starts_with("0A");
}

std::int64_t OdbcSession::RunText(const Text& text, bool countRows) {
  OpenStatement open(statement_.get());
  const SQLRETURN result = calls_->ExecDirect(statement_.get(), text);
  RequireStatement(result);
  const bool asksCount = countRows && result != SQL_NO_DATA;
  const std::int64_t rows = asksCount ? TouchedRows(text) : 0;
  while (NextResult(open)) {
  }
  return rows;
}

void OdbcSession::QueryText(const Text& text, RowSink& rows) {
  OpenStatement open(statement_.get());
  bool hasResult = false;
  RequireStatement(calls_->ExecDirect(statement_.get(), text));
  do {
    if (hasResult || !HasColumns()) continue;
    hasResult = true;
    ReadRows(*calls_, *diagnostics_, statement_.get(), rows);
  } while (NextResult(open));
}

void OdbcSession::BeginReading() {
  if (isPostgreSql_) RunSetting("BEGIN ISOLATION LEVEL REPEATABLE READ, READ ONLY");
}

bool OdbcSession::EndReading() {
  if (isPostgreSql_) RunSetting("COMMIT");
  return true;
}

/// PostgreSQL's driver would read all rows into memory before it gives the first.
void OdbcSession::Read(const Text& query, RowSink& rows) {
  if (!isPostgreSql_) return Query(query, rows);
  RunSetting("DECLARE zenqay_rows NO SCROLL CURSOR FOR " + Translated(query));
  CountingSink counted(rows);
  while (counted.MayHaveMore()) Cancellable(statement_.get(), [&] { QueryText(counted.Fetch(), counted); });
  RunSetting("CLOSE zenqay_rows");
}

TableSchema OdbcSession::SchemaOf(const Text& table) {
  const DescribedTable described = TableLike(table);
  RowStore indexes;
  const SQLRETURN result = calls_->UniqueIndexes(statement_.get(), described.schema, described.name);
  ReadCatalogue(result, indexes);
  return SchemaFor(table, described.columns, KeysIn(indexes, described), WaysOf(dbms_));
}

/// The table that statements mean by the name: of those that are called so, in any case of letters, the one that has
/// the columns that a query finds.
DescribedTable OdbcSession::TableLike(const Text& table) {
  RowStore none;
  Query("SELECT * FROM " + table + " WHERE 1 = 0", none);
  for (const Text& name : {table, LowerCased(table), UpperCased(table)}) {
    RowStore columns;
    const SQLRETURN result = calls_->Columns(statement_.get(), name);
    ReadCatalogue(result, columns);
    for (const DescribedTable& described : TablesIn(columns)) {
      if (described.ColumnNames() == none.columns()) return described;
    }
  }
  throw RuntimeError(kGeneralProviderFailure, kPlatformSource,
                     "The driver does not describe the columns of table " + table + ".");
}

void OdbcSession::ReadCatalogue(std::int16_t result, RowSink& rows) {
  OpenStatement open(statement_.get());
  RequireStatement(result);
  ReadRows(*calls_, *diagnostics_, statement_.get(), rows);
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

/// Makes the statement handle for all but shapes, and finds out what the database is.
void OdbcSession::Prepare() {
  statement_.reset(AllocateStatement());
  if (interruption_) canceller_ = std::make_unique<StatementCanceller>(interruption_);
  dbms_ = Info(SQL_DBMS_NAME);
  isPostgreSql_ = EqualsIgnoringCase(dbms_, "PostgreSQL");
  switchesCatalogs_ = !isPostgreSql_ && Info(SQL_CATALOG_NAME) == "Y";
  // A server or a user can be set to read a backslash in a literal as an escape.
  if (isPostgreSql_) Run("SET standard_conforming_strings = on", false);
  preparesShapes_ = isPostgreSql_;
}

void* OdbcSession::AllocateStatement() {
  SQLHANDLE statement = nullptr;
  RequireConnection(SQLAllocHandle(SQL_HANDLE_STMT, connection_.get(), &statement));
  SQLSetStmtAttr(statement, SQL_ATTR_QUERY_TIMEOUT, NumberAttribute(commandLimit_), 0);  // as with the limit above
  return statement;
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
  Cancellable(statement_.get(), [&] {
    OpenStatement open(statement_.get());
    RequireStatement(calls_->ExecDirect(statement_.get(), "SET synchronous_commit TO " + setting));
  });
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

void OdbcSession::RequireStatement(std::int16_t result, void* statement) {
  diagnostics_->Require(result, SQL_HANDLE_STMT, statement);
}

bool OdbcSession::HasColumns() {
  SQLSMALLINT columns = 0;
  RequireStatement(SQLNumResultCols(statement_.get(), &columns));
  return columns > 0;
}

/// A query's count is that of its rows, and a statement of another kind has -1; neither touched any. A statement that
/// tells by its verb saves the call: a job sends hardly another one.
std::int64_t OdbcSession::TouchedRows(const Text& statement) {
  const std::int64_t rows = CountOf(statement_.get());
  if (rows == 0) return 0;
  return ChangesRows(statement) || !HasColumns() ? rows : 0;
}

std::int64_t OdbcSession::CountOf(void* statement) {
  SQLLEN rows = 0;
  RequireStatement(SQLRowCount(statement, &rows), statement);
  return std::max<std::int64_t>(rows, 0);
}

bool OdbcSession::NextResult(OpenStatement& open) {
  const SQLRETURN result = SQLMoreResults(statement_.get());
  RequireStatement(result);
  if (result == SQL_NO_DATA) open.SetClosed();
  return result != SQL_NO_DATA;
}

}  // namespace zenqay
