#include "engines/sqlite/sqlite_session.h"

#include <sqlite3.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <thread>

#include "base/memory_reserve.h"
#include "engines/dialect/sqlite_dialect.h"
#include "engines/dialect/translation.h"
#include "engines/provider_errors.h"
#include "engines/sqlite/read_only_file.h"
#include "engines/sqlite/row_ids.h"
#include "system/paths.h"

namespace zenqay {
namespace {

constexpr const char* kSource = "SQLite";

constexpr std::size_t kMostPrepared = 64;

/// By measurement; see docs/benchmarks.md. The cache is the greater part of a session's memory. A log that another
/// process reads from goes on growing; the limit is what is left of its file when it has been taken over after all.
constexpr const char* kSettings[] = {"PRAGMA cache_size = -8192", "PRAGMA journal_size_limit = 100663296"};
constexpr int kLongestLog = 16384;  // pages; then it is taken over into the database
constexpr int kShortLog = 1000;     // a session that ends leaves a log up to this to those that go on

/// The SQLSTATE that a result code stands for. A statement that does not read and a table that does not exist share
/// one code.
std::string_view SqlStateOf(int code, std::string_view message) {
  switch (code & 0xFF) {
    case SQLITE_ERROR:
      return message.starts_with("no such table") ? "42S02" : "42000";
    case SQLITE_CONSTRAINT:
      return "23000";
    case SQLITE_MISMATCH:
      return "22018";
    case SQLITE_TOOBIG:
      return "22001";
    default:
      return "HY000";
  }
}

[[noreturn]] void RaiseFailure(sqlite3* database) {
  if (sqlite3_errcode(database) == SQLITE_NOMEM) GiveMemoryBack();
  const Text message = sqlite3_errmsg(database);
  const int code = sqlite3_extended_errcode(database);
  RaiseReported(kSource, message, Text(SqlStateOf(code, message)), code);
}

/// Size and time of a file and of its log.
Text StateOf(const Text& path) {
  Text state;
  for (const Text& file : {path, path + "-wal"}) {
    std::error_code missing;
    const auto size = std::filesystem::file_size(file, missing);
    const auto time = std::filesystem::last_write_time(file, missing);
    state += missing ? "none;" : std::to_string(size) + "," + std::to_string(time.time_since_epoch().count()) + ";";
  }
  return state;
}

[[noreturn]] void RaiseOpenFailure(const Text& message, const Text& dataSource, int code, const Text& reason = "") {
  // What stands behind a "=" may be a password whose separator was forgotten.
  const Text file = dataSource.substr(0, dataSource.find('='));
  RaiseReported(kSource, message + ": " + file + reason, "08001", code);
}

/// SQLite gives a meaning of its own to "", ":memory:" and "file:…"; a path never starts like these.
Text FilePath(const Text& dataSource) {
  const Text path = NativePath(dataSource);
  return path.starts_with('/') ? path : "./" + path;
}

void Pause(int attempts) {
  const int milliseconds = std::min(attempts + 1, 20);
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// 0 gives up, and the statement fails as busy.
int WaitForLock(void* interruption, int attempts) {
  if (static_cast<Interruption*>(interruption)->EndsWait()) return 0;
  Pause(attempts);
  return 1;
}

/// Columns declared as DATE, TIME, DATETIME, TIMESTAMP and the like hold dates as texts.
bool IsDeclaredAsDate(sqlite3_stmt* statement, int column) {
  const char* declared = sqlite3_column_decltype(statement, column);
  if (declared == nullptr) return false;
  const Text type = LowerCased(declared);
  return type.find("date") != Text::npos || type.find("time") != Text::npos;
}

/// SQLite's rule, in which INT wins over all others.
bool IsDeclaredAsText(const char* declared) {
  const Text type = LowerCased(declared);
  const auto has = [&](const char* part) { return type.find(part) != Text::npos; };
  return !has("int") && (has("char") || has("clob") || has("text"));
}

void AddInteger(RowSink& rows, std::int64_t value) {
  const auto narrow = static_cast<std::int32_t>(value);
  if (narrow == value) {
    rows.AddInteger(narrow);
  } else {
    rows.AddDouble(static_cast<double>(value));
  }
}

void AddText(RowSink& rows, std::string_view text, bool isDate) {
  DateTime date;
  if (isDate && ReadIsoText(text, date)) {
    rows.AddDateTime(date);
  } else {
    rows.AddText(text);
  }
}

/// What stands between the quotes, as SQLite reads it: in `kept` where it is not the same.
std::string_view Unquoted(std::string_view text, Text& kept) {
  if (text.find('\'') == std::string_view::npos) return text;
  kept = Replaced(text, "''", "'");
  return kept;
}

std::string_view BoundText(const StatementValue& value, Text& kept) {
  if (value.kind == StatementValue::Kind::Literal) return Unquoted(value.text, kept);
  kept.clear();
  AppendDate(kept, value.date, value.kind == StatementValue::Kind::DateTime);
  return kept;
}

std::int64_t NumberOf(std::string_view digits) {
  std::int64_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

/// Neither a literal nor a parameter has an affinity, so one stands for the other. A text stays with the statement or
/// with `kept` until the value is bound anew.
int BindValue(sqlite3_stmt* prepared, int index, const StatementValue& value, Text& kept) {
  switch (value.kind) {
    case StatementValue::Kind::Null:
      return sqlite3_bind_null(prepared, index);
    case StatementValue::Kind::Integer:
      return sqlite3_bind_int64(prepared, index, NumberOf(value.text));
    default:
      break;
  }
  const std::string_view text = BoundText(value, kept);
  return sqlite3_bind_text64(prepared, index, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

}  // namespace

SqliteSession::SqliteSession(const Text& dataSource, Access access, std::shared_ptr<Interruption> interruption)
    : interruption_(std::move(interruption)), prepared_(kMostPrepared) {
  if (dataSource.empty())
    RaiseOpenFailure("no file to open", "the connection string has no Data Source", SQLITE_CANTOPEN);
  const Text path = path_ = FilePath(dataSource);
  const bool readsOnly = access == Access::ReadOnly;
  const ReadOnlyFile file = readsOnly ? ReadOnlyFile::At(path) : ReadOnlyFile{};
  if (readsOnly) {
    OpenFile(dataSource, file.uri.c_str(), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    isReadAsUnchanging_ = file.isUnchanging;
  } else {
    OpenFile(dataSource, path.c_str(), SQLITE_OPEN_READWRITE);
    if (sqlite3_db_readonly(database_.get(), "main") != 0) {
      RaiseOpenFailure(sqlite3_errstr(SQLITE_READONLY), dataSource, SQLITE_READONLY);
    }
  }
  try {
    if (readsOnly) {
      PrepareReading(file);
    } else {
      PrepareFile();
    }
  } catch (const RuntimeError& failure) {
    if (failure.items().empty()) throw;
    RaiseOpenFailure(failure.description(), dataSource, failure.nativeError());
  }
}

/// The end of the last session takes the log over by itself, but while others go on, none might be the last for long.
/// Nobody is waited for.
SqliteSession::~SqliteSession() {
  if (logPages_ <= kShortLog) return;
  sqlite3_busy_handler(database_.get(), nullptr, nullptr);
  sqlite3_wal_checkpoint_v2(database_.get(), nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
}

/// After each commit. What keeps the log from being taken over is no fault of the statement.
int SqliteSession::OnCommit(void* session, sqlite3* database, const char* name, int logPages) {
  static_cast<SqliteSession*>(session)->logPages_ = logPages;
  if (logPages >= kLongestLog) sqlite3_wal_checkpoint_v2(database, name, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
  return SQLITE_OK;
}

std::int64_t SqliteSession::Run(const Text& statement, bool countRows) {
  if (TakeShape(statement, shape_)) {
    if (const std::optional<std::int64_t> rows = RunShaped(countRows)) return *rows;
  }
  return RunComposed(statement, countRows);
}

std::int64_t SqliteSession::RunComposed(const Text& statement, bool countRows) {
  TranslateForSqlite(statement, translated_);
  std::int64_t rows = 0;
  for (const char* rest = translated_.c_str(); *rest != '\0';) {
    const std::int64_t before = sqlite3_total_changes64(database_.get());
    const Statement prepared = Prepare(rest);
    while (Step(prepared.get())) {
    }
    if (countRows) rows += ChangesSince(before);
  }
  return rows;
}

/// Runs the statement at hand by its shape. Nothing when SQLite does not read the shape, as it now finds the tables:
/// the composed statement is run then, and what it does or reports is what counts.
std::optional<std::int64_t> SqliteSession::RunShaped(bool countRows) {
  const Prepared* found = PreparedShape();
  if (found == nullptr) return std::nullopt;
  const bool repeatsKeys = RepeatsKeys(*found);
  sqlite3_stmt* prepared = repeatsKeys ? found->withoutKeys.get() : found->whole.get();
  {
    const std::unique_ptr<sqlite3_stmt, Reset> running(prepared);
    if (!BindValues(prepared, repeatsKeys ? found->keys : std::span<const RepeatedKeys::Key>())) return std::nullopt;
    const std::int64_t before = sqlite3_total_changes64(database_.get());
    int code = SQLITE_ROW;
    while (code == SQLITE_ROW) code = Untiring([&] { return sqlite3_step(prepared); });
    if (code == SQLITE_DONE) return countRows ? ChangesSince(before) : 0;
    const int reason = sqlite3_reset(prepared) & 0xFF;
    if (reason != SQLITE_ERROR && reason != SQLITE_SCHEMA) RaiseFailure(database_.get());
  }
  prepared_.Drop(shape_.text);
  return std::nullopt;
}

/// Null when SQLite does not read the shape, or reads it in another way than it is meant.
const SqliteSession::Prepared* SqliteSession::PreparedShape() {
  if (const Prepared* found = prepared_.Find(shape_.text)) return found;
  sqlite3_stmt* made = nullptr;
  const char* rest = nullptr;
  sqlite3_prepare_v3(database_.get(), shape_.text.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &made, &rest);
  Prepared prepared{.whole = Statement(made)};
  const bool isWhole = made != nullptr && *rest == '\0';
  if (!isWhole || sqlite3_bind_parameter_count(made) != static_cast<int>(shape_.values.size())) return nullptr;
  PrepareWithoutKeys(prepared);
  prepared_.Add(shape_.text, std::move(prepared));
  return prepared_.Find(shape_.text);
}

/// By SQLite's older call, whose statements never go over to another schema by themselves, in which the keys might
/// have to be set.
void SqliteSession::PrepareWithoutKeys(Prepared& prepared) {
  std::optional<RepeatedKeys> repeated = FindRepeatedKeys(shape_.text);
  if (!repeated || !MayKeepKeys(*repeated)) return;
  sqlite3_stmt* made = nullptr;
  sqlite3_prepare(database_.get(), repeated->without.c_str(), -1, &made, nullptr);
  prepared.withoutKeys.reset(made);
  prepared.keys = std::move(repeated->keys);
}

/// Whether setting a key to the text that it is equal to does nothing: in an ordinary table that nothing watches, where
/// equal texts are the same texts.
bool SqliteSession::MayKeepKeys(const RepeatedKeys& repeated) {
  RowStore tables;
  Query("SELECT 1 FROM main.sqlite_master WHERE type = 'table' AND name = '" + repeated.table + "' COLLATE NOCASE " +
            "AND rootpage > 0 AND instr(lower(sql), 'check') = 0 AND NOT EXISTS (SELECT 1 FROM temp.sqlite_master) " +
            "AND NOT EXISTS (SELECT 1 FROM main.sqlite_master WHERE type = 'trigger' AND tbl_name = '" +
            repeated.table + "' COLLATE NOCASE)",
        tables);
  if (!tables.Next()) return false;
  return std::all_of(repeated.keys.begin(), repeated.keys.end(), [&](const RepeatedKeys::Key& key) {
    const char* type = nullptr;
    const char* collation = nullptr;
    sqlite3_table_column_metadata(database_.get(), "main", repeated.table.c_str(), key.column.c_str(), &type,
                                  &collation, nullptr, nullptr, nullptr);
    return type != nullptr && IsDeclaredAsText(type) && collation == std::string_view("BINARY");
  });
}

bool SqliteSession::RepeatsKeys(const Prepared& prepared) const {
  return prepared.withoutKeys && std::all_of(prepared.keys.begin(), prepared.keys.end(), [&](const auto& key) {
           const StatementValue& set = shape_.values[key.set];
           const StatementValue& compared = shape_.values[key.compared];
           const bool areTexts = set.kind == StatementValue::Kind::Literal && compared.kind == set.kind;
           return areTexts && set.text == compared.text;
         });
}

/// Binds the values of the statement at hand, without those to which the keys that are left out are set.
bool SqliteSession::BindValues(sqlite3_stmt* prepared, std::span<const RepeatedKeys::Key> leftOut) {
  if (boundTexts_.size() < shape_.values.size()) boundTexts_.resize(shape_.values.size());
  int index = 0;
  for (std::size_t i = 0; i < shape_.values.size(); ++i) {
    if (!leftOut.empty() && leftOut.front().set == i) {
      leftOut = leftOut.subspan(1);
    } else if (BindValue(prepared, ++index, shape_.values[i], boundTexts_[i]) != SQLITE_OK) {
      return false;
    }
  }
  return true;
}

void SqliteSession::Query(const Text& statement, RowSink& rows) {
  TranslateForSqlite(statement, translated_);
  bool hasResult = false;
  for (const char* rest = translated_.c_str(); *rest != '\0';) {
    const Statement prepared = Prepare(rest);
    const bool isFirstResult = !hasResult && sqlite3_column_count(prepared.get()) > 0;
    if (isFirstResult) {
      hasResult = true;
      ReadRows(prepared, rows);
    } else {
      while (Step(prepared.get())) {
      }
    }
  }
}

/// A file that nobody works on is read as one that does not change. Whoever begins to work on it meanwhile makes a log
/// beside it, and changes the file at the latest when that is taken over.
void SqliteSession::BeginReading() {
  readFrom_ = StateOf(path_);
  Run("BEGIN", false);
  Run("SELECT 1 FROM sqlite_master", false);
}

bool SqliteSession::EndReading() {
  Run("COMMIT", false);
  return !isReadAsUnchanging_ || StateOf(path_) == readFrom_;
}

TableSchema SqliteSession::SchemaOf(const Text& table) {
  const Text name = "'" + Replaced(table, "'", "''") + "'";
  RowStore statements;
  Query("SELECT sql, type FROM sqlite_master WHERE tbl_name = " + name +
            " COLLATE NOCASE AND type IN ('table', 'index') AND sql IS NOT NULL ORDER BY type DESC, name",
        statements);
  TableSchema schema;
  while (statements.Next()) schema.statements.push_back(WithRowIds(statements.Field(0).Joined()));
  RowStore columns;
  Query("SELECT name FROM pragma_table_info(" + name + ")", columns);  // without those that are worked out
  while (columns.Next()) schema.columns.push_back(columns.Field(0).Joined());
  if (schema.statements.empty()) {
    RaiseReported(kSource, "no such table: " + table, Text(SqlStateOf(SQLITE_ERROR, "no such table")), SQLITE_ERROR);
  }
  return schema;
}

bool SqliteSession::TakeLock(const Text& name) {
  if (!locks_) locks_.emplace(LockPath());
  return locks_->Take(LowerCased(name));
}

void SqliteSession::GiveLockBack(const Text& name) {
  if (locks_) locks_->GiveBack(LowerCased(name));
}

bool SqliteSession::IsLockHeld(const Text& name) {
  return FileLock::IsTaken(LockPath(), LowerCased(name));
}

/// By the database's real name, however a job comes to it.
Text SqliteSession::LockPath() const {
  std::error_code ignored;
  return std::filesystem::canonical(path_, ignored).string() + "-lock";
}

void SqliteSession::CloseDatabase::operator()(sqlite3* database) const {
  sqlite3_close(database);
}

void SqliteSession::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

void SqliteSession::Reset::operator()(sqlite3_stmt* statement) const {
  sqlite3_reset(statement);
}

void SqliteSession::OpenFile(const Text& dataSource, const char* name, int flags) {
  sqlite3* database = nullptr;
  const int code = sqlite3_open_v2(name, &database, flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
  database_.reset(database);
  if (code == SQLITE_OK) return;
  const Text reason = std::generic_category().message(sqlite3_system_errno(database));
  RaiseOpenFailure(sqlite3_errmsg(database), dataSource, code, " (" + reason + ")");
}

/// The rows that a statement touched, of which there were so many changes on the connection before. The count of
/// changes is that of the last statement that can change rows, which need not be this one.
std::int64_t SqliteSession::ChangesSince(std::int64_t before) const {
  const bool hasChanged = sqlite3_total_changes64(database_.get()) != before;
  return hasChanged ? sqlite3_changes64(database_.get()) : 0;
}

/// The first statement also finds out whether the file is a database at all.
void SqliteSession::PrepareFile() {
  sqlite3_busy_handler(database_.get(), WaitForLock, interruption_.get());
  RowStore journalMode;
  Query("PRAGMA journal_mode", journalMode);
  journalMode.Next();
  if (journalMode.Field(0) != Value("wal")) Run("PRAGMA journal_mode = WAL", false);
  Run("PRAGMA synchronous = NORMAL", false);
  for (const char* setting : kSettings) Run(setting, false);
  sqlite3_wal_hook(database_.get(), OnCommit, this);
}

void SqliteSession::PrepareReading(const ReadOnlyFile& file) {
  sqlite3_busy_handler(database_.get(), WaitForLock, interruption_.get());
  // The end of the last session would take the log over into the file.
  sqlite3_db_config(database_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  if (file.isAlone) Run("PRAGMA locking_mode = EXCLUSIVE", false);
  Run("SELECT 1 FROM sqlite_master", false);
}

/// Tries again while the file is busy. The busy handler is asked for most locks, but not for all: of two processes that
/// switch a file to WAL, one fails at once. In a transaction that a statement itself began, waiting would not help.
template <typename Attempt>
int SqliteSession::Untiring(Attempt attempt) {
  for (int attempts = 0;; ++attempts) {
    const int code = attempt();
    const bool isBusy = (code & 0xFF) == SQLITE_BUSY && sqlite3_get_autocommit(database_.get()) != 0;
    if (!isBusy) return code;
    if (interruption_->EndsWait()) throw RuntimeError(PlatformFault::UserInterrupt);
    Pause(attempts);
  }
}

/// Takes one statement off the front of `rest`. Nothing when there are only blanks and comments.
SqliteSession::Statement SqliteSession::Prepare(const char*& rest) {
  sqlite3_stmt* prepared = nullptr;
  const char* from = rest;
  const int code = Untiring([&] { return sqlite3_prepare_v2(database_.get(), from, -1, &prepared, &rest); });
  if (code != SQLITE_OK) RaiseFailure(database_.get());
  return Statement(prepared);
}

/// True when there is a row. A lock is met before the first row or not at all, so trying again repeats none.
bool SqliteSession::Step(sqlite3_stmt* prepared) {
  if (prepared == nullptr) return false;
  const int code = Untiring([&] { return sqlite3_step(prepared); });
  if (code != SQLITE_ROW && code != SQLITE_DONE) RaiseFailure(database_.get());
  return code == SQLITE_ROW;
}

void SqliteSession::ReadRows(const Statement& prepared, RowSink& rows) {
  std::vector<Text> names;
  std::vector<bool> areDates;
  for (int column = 0; column < sqlite3_column_count(prepared.get()); ++column) {
    names.emplace_back(sqlite3_column_name(prepared.get(), column));
    areDates.push_back(IsDeclaredAsDate(prepared.get(), column));
  }
  rows.PutColumns(std::move(names));
  while (Step(prepared.get())) {
    for (std::size_t column = 0; column < areDates.size(); ++column) {
      AddField(prepared, static_cast<int>(column), areDates[column], rows);
    }
    rows.EndRow();
  }
}

void SqliteSession::AddField(const Statement& prepared, int column, bool isDate, RowSink& rows) {
  sqlite3_stmt* row = prepared.get();
  switch (sqlite3_column_type(row, column)) {
    case SQLITE_NULL:
      rows.AddNull();
      return;
    case SQLITE_INTEGER:
      AddInteger(rows, sqlite3_column_int64(row, column));
      return;
    case SQLITE_FLOAT:
      rows.AddDouble(sqlite3_column_double(row, column));
      return;
    default:
      break;
  }
  const unsigned char* text = sqlite3_column_text(row, column);
  if (text == nullptr) RaiseFailure(database_.get());
  const auto length = static_cast<std::size_t>(sqlite3_column_bytes(row, column));
  AddText(rows, std::string_view(reinterpret_cast<const char*>(text), length), isDate);
}

}  // namespace zenqay
