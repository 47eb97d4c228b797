#include "engines/sqlite/sqlite_session.h"

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <thread>

#include "base/memory_reserve.h"
#include "engines/dialect/sqlite_dialect.h"
#include "engines/provider_errors.h"
#include "engines/sqlite/read_only_file.h"
#include "system/paths.h"

namespace zenqay {
namespace {

constexpr const char* kSource = "SQLite";

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

void AddInteger(RowStore& rows, std::int64_t value) {
  const auto narrow = static_cast<std::int32_t>(value);
  if (narrow == value) {
    rows.AddInteger(narrow);
  } else {
    rows.AddDouble(static_cast<double>(value));
  }
}

void AddText(RowStore& rows, std::string_view text, bool isDate) {
  DateTime date;
  if (isDate && ReadIsoText(text, date)) {
    rows.AddDateTime(date);
  } else {
    rows.AddText(text);
  }
}

}  // namespace

SqliteSession::SqliteSession(const Text& dataSource, Access access, std::shared_ptr<Interruption> interruption)
    : interruption_(std::move(interruption)) {
  if (dataSource.empty())
    RaiseOpenFailure("no file to open", "the connection string has no Data Source", SQLITE_CANTOPEN);
  const Text path = path_ = FilePath(dataSource);
  const bool readsOnly = access == Access::ReadOnly;
  const ReadOnlyFile file = readsOnly ? ReadOnlyFile::At(path) : ReadOnlyFile{};
  if (readsOnly) {
    OpenFile(dataSource, file.uri.c_str(), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
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

std::int64_t SqliteSession::Run(const Text& statement, bool countRows) {
  TranslateForSqlite(statement, translated_);
  std::int64_t rows = 0;
  for (const char* rest = translated_.c_str(); *rest != '\0';) {
    const std::int64_t before = sqlite3_total_changes64(database_.get());
    const Statement prepared = Prepare(rest);
    while (Step(prepared)) {
    }
    // The count of changes is that of the last statement that can change rows, which need not be this one.
    const bool hasChanged = countRows && sqlite3_total_changes64(database_.get()) != before;
    if (hasChanged) rows += sqlite3_changes64(database_.get());
  }
  return rows;
}

void SqliteSession::Query(const Text& statement, RowStore& rows) {
  TranslateForSqlite(statement, translated_);
  for (const char* rest = translated_.c_str(); *rest != '\0';) {
    const Statement prepared = Prepare(rest);
    const bool isFirstResult = rows.columns().empty() && sqlite3_column_count(prepared.get()) > 0;
    if (isFirstResult) {
      ReadRows(prepared, rows);
    } else {
      while (Step(prepared)) {
      }
    }
  }
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

void SqliteSession::OpenFile(const Text& dataSource, const char* name, int flags) {
  sqlite3* database = nullptr;
  const int code = sqlite3_open_v2(name, &database, flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
  database_.reset(database);
  if (code == SQLITE_OK) return;
  const Text reason = std::generic_category().message(sqlite3_system_errno(database));
  RaiseOpenFailure(sqlite3_errmsg(database), dataSource, code, " (" + reason + ")");
}

/// The first statement also finds out whether the file is a database at all.
void SqliteSession::PrepareFile() {
  sqlite3_busy_handler(database_.get(), WaitForLock, interruption_.get());
  RowStore journalMode;
  Query("PRAGMA journal_mode", journalMode);
  journalMode.Next();
  if (journalMode.Field(0) != Value("wal")) Run("PRAGMA journal_mode = WAL", false);
  Run("PRAGMA synchronous = NORMAL", false);
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
bool SqliteSession::Step(const Statement& prepared) {
  if (!prepared) return false;
  const int code = Untiring([&] { return sqlite3_step(prepared.get()); });
  if (code != SQLITE_ROW && code != SQLITE_DONE) RaiseFailure(database_.get());
  return code == SQLITE_ROW;
}

void SqliteSession::ReadRows(const Statement& prepared, RowStore& rows) {
  std::vector<Text> names;
  std::vector<bool> areDates;
  for (int column = 0; column < sqlite3_column_count(prepared.get()); ++column) {
    names.emplace_back(sqlite3_column_name(prepared.get(), column));
    areDates.push_back(IsDeclaredAsDate(prepared.get(), column));
  }
  rows.PutColumns(std::move(names));
  while (Step(prepared)) {
    for (std::size_t column = 0; column < areDates.size(); ++column) {
      AddField(prepared, static_cast<int>(column), areDates[column], rows);
    }
    rows.EndRow();
  }
}

void SqliteSession::AddField(const Statement& prepared, int column, bool isDate, RowStore& rows) {
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
