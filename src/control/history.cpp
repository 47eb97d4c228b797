#include "control/history.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "base/runtime_error.h"
#include "engines/databases.h"
#include "system/output_file.h"
#include "system/own_process.h"

namespace zenqay {
namespace {

constexpr const char* kSteps[] = {
    // 1: runs, their tables, the failure records of these
    "CREATE TABLE run (id INTEGER PRIMARY KEY, command TEXT, started TEXT, ended TEXT, outcome TEXT, host TEXT, "
    "boot TEXT, pid INTEGER, pid_start TEXT); "
    "CREATE TABLE table_run (id INTEGER PRIMARY KEY, run INTEGER, job TEXT, db TEXT, name TEXT, method TEXT, "
    "started TEXT, ended TEXT, outcome TEXT, met TEXT, inserted TEXT, updated TEXT, deleted TEXT, attempts INTEGER, "
    "words TEXT, logs TEXT, host TEXT, boot TEXT, pid INTEGER, pid_start TEXT); "
    "CREATE INDEX table_run_name ON table_run (db, name); "
    "CREATE INDEX table_run_run ON table_run (run); "
    "CREATE TABLE failure (id INTEGER PRIMARY KEY, table_run INTEGER, at TEXT, number TEXT, source TEXT, "
    "description TEXT, sqlstate TEXT, native TEXT, statement TEXT, call TEXT, row_key TEXT, during TEXT); "
    "CREATE INDEX failure_table ON failure (table_run)",
    // 2: that a table was freed behind its run
    "ALTER TABLE table_run ADD COLUMN freed TEXT",
    // 3: that a batch system has it
    "ALTER TABLE run ADD COLUMN batch TEXT; ALTER TABLE table_run ADD COLUMN task TEXT",
};

/// A text as a literal.
Text Literal(std::string_view text) {
  return "'" + Replaced(text, "'", "''") + "'";
}

Text Literals(std::initializer_list<Text> texts) {
  Text list;
  for (const Text& text : texts) list += (list.empty() ? "" : ",") + Literal(text);
  return list;
}

Text TextOf(Recordset& row, const char* field) {
  return row.FieldValue(field).Joined();
}

std::int64_t NumberOf(Recordset& row, const char* field) {
  const Text text = TextOf(row, field);
  return text.empty() ? 0 : std::stoll(text);
}

ProcessIdentity ProcessOf(Recordset& row) {
  return {.host = TextOf(row, "host"),
          .boot = TextOf(row, "boot"),
          .pid = static_cast<int>(NumberOf(row, "pid")),
          .start = TextOf(row, "pid_start")};
}

Text ProcessLiterals(const ProcessIdentity& process) {
  return Literals({process.host, process.boot}) + "," + std::to_string(process.pid) + "," + Literal(process.start);
}

std::shared_ptr<Recordset> Open(Database& databases, const std::shared_ptr<Connection>& connection, const Text& query) {
  std::shared_ptr<Recordset> rows = databases.CreateRecordset();
  rows->Open(query, connection, CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
  return rows;
}

PastRun ReadRun(Recordset& row) {
  return {.id = NumberOf(row, "id"),
          .command = TextOf(row, "command"),
          .started = TextOf(row, "started"),
          .ended = TextOf(row, "ended"),
          .outcome = TextOf(row, "outcome"),
          .batch = TextOf(row, "batch"),
          .process = ProcessOf(row)};
}

PastTable ReadTable(Recordset& row) {
  return {
      .id = NumberOf(row, "id"),
      .run = NumberOf(row, "run"),
      .job = TextOf(row, "job"),
      .database = TextOf(row, "db"),
      .table = TextOf(row, "name"),
      .method = TextOf(row, "method"),
      .started = TextOf(row, "started"),
      .ended = TextOf(row, "ended"),
      .outcome = TextOf(row, "outcome"),
      .counts = {NumberOf(row, "met"), NumberOf(row, "inserted"), NumberOf(row, "updated"), NumberOf(row, "deleted")},
      .attempts = static_cast<int>(NumberOf(row, "attempts")),
      .words = TextOf(row, "words"),
      .logs = TextOf(row, "logs"),
      .freed = TextOf(row, "freed"),
      .task = TextOf(row, "task"),
      .process = ProcessOf(row)};
}

JobFailure ReadFailure(Recordset& row) {
  return {.time = TextOf(row, "at"),
          .number = NumberOf(row, "number"),
          .source = TextOf(row, "source"),
          .description = TextOf(row, "description"),
          .sqlState = TextOf(row, "sqlstate"),
          .native = TextOf(row, "native"),
          .statement = TextOf(row, "statement"),
          .call = TextOf(row, "call"),
          .rowKey = TextOf(row, "row_key"),
          .during = TextOf(row, "during")};
}

Text CountAssignments(const RowCounts& counts) {
  return "met = '" + std::to_string(counts.met) + "', inserted = '" + std::to_string(counts.inserted) +
         "', updated = '" + std::to_string(counts.updated) + "', deleted = '" + std::to_string(counts.deleted) + "'";
}

/// What a table's line says of its counts and its end.
Text OutcomeAssignments(const TableRun& state) {
  return "outcome = " + Literal(StateWord(state.state)) + ", " + CountAssignments(state.counts) +
         ", attempts = " + std::to_string(state.attempts) + ", words = " + Literal(state.words);
}

Text ProcessAssignments(const ProcessIdentity& process) {
  return ", host = " + Literal(process.host) + ", boot = " + Literal(process.boot) +
         ", pid = " + std::to_string(process.pid) + ", pid_start = " + Literal(process.start);
}

/// All of it, or nothing. What fails is raised, also where the engine has rolled back by itself.
void InOneTransaction(Connection& connection, const std::function<void()>& deed) {
  connection.Execute("BEGIN IMMEDIATE");
  try {
    deed();
    connection.Execute("COMMIT");
  } catch (...) {
    try {
      connection.Execute("ROLLBACK");
    } catch (const RuntimeError&) {  // there is no transaction any more
    }
    throw;
  }
}

}  // namespace

Text MethodWord(Method method) {
  return method == Method::Full ? "full" : "changed";
}

Method MethodOfWord(const Text& word) {
  return word == MethodWord(Method::Full) ? Method::Full : Method::OnlyChanged;
}

std::int64_t UtcNow() {
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

Text UtcText(std::int64_t secondsSince1970) {
  const std::time_t time = secondsSince1970;
  std::tm parts{};
  ::gmtime_r(&time, &parts);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
  return text.data();
}

std::int64_t SecondsOfUtc(const Text& utc) {
  std::tm parts{};
  const char* end = ::strptime(utc.c_str(), "%Y-%m-%dT%H:%M:%SZ", &parts);
  return end == nullptr ? 0 : static_cast<std::int64_t>(::timegm(&parts));
}

History::History(const Text& path) : databases_(std::make_shared<LocalDatabases>()) {
  MakePrivateFile(path);
  connection_ = databases_->CreateConnection();
  connection_->PutConnectionString(EmbeddedConnection(path));
  connection_->Open();
  Migrate(*databases_, connection_, kSteps);
}

void History::Together(const std::function<void()>& deed) {
  InOneTransaction(*connection_, deed);
}

void History::CloseLost() {
  for (const PastRun& run : Runs(-1)) {
    if (!run.ended.empty() || !run.batch.empty() || LifeOf(run.process) != Life::Gone) continue;
    const Text end = "ended = " + Literal(UtcText(UtcNow())) + ", outcome = 'lost' WHERE ended IS NULL AND ";
    connection_->Execute("UPDATE table_run SET " + end + "run = " + std::to_string(run.id));
    connection_->Execute("UPDATE run SET " + end + "id = " + std::to_string(run.id));
  }
}

void History::Forget(Seconds keep) {
  const Text old =
      "(SELECT id FROM run WHERE ended IS NOT NULL AND started < " + Literal(UtcText(UtcNow() - keep.count())) + ")";
  connection_->Execute("DELETE FROM failure WHERE table_run IN (SELECT id FROM table_run WHERE run IN " + old + ")");
  connection_->Execute("DELETE FROM table_run WHERE run IN " + old);
  connection_->Execute("DELETE FROM run WHERE id IN " + old);
}

std::int64_t History::BeginRun(const Text& command, const ProcessIdentity& process) {
  connection_->Execute("INSERT INTO run (command,started,outcome,host,boot,pid,pid_start) VALUES (" +
                       Literals({command, UtcText(UtcNow()), "running"}) + "," + ProcessLiterals(process) + ")");
  return NewId();
}

void History::EndRun(std::int64_t run, int status) {
  connection_->Execute("UPDATE run SET ended = " + Literal(UtcText(UtcNow())) + ", outcome = '" +
                       std::to_string(status) + "' WHERE id = " + std::to_string(run));
}

std::int64_t History::BeginTable(std::int64_t run, const TableRun& table) {
  const TableTask& task = table.task;
  connection_->Execute("INSERT INTO table_run (run,job,db,name,method,started,outcome,logs) VALUES (" +
                       std::to_string(run) + "," +
                       Literals({task.job, task.database, task.table, MethodWord(task.method), UtcText(UtcNow()),
                                 StateWord(table.state), task.logs}) +
                       ")");
  return NewId();
}

void History::UpdateTable(std::int64_t table, const TableRun& state) {
  Text update = "UPDATE table_run SET " + OutcomeAssignments(state);
  if (state.state == TableState::Beginning) {
    update += ", started = " + Literal(UtcText(UtcNow())) + ProcessAssignments(IdentityOf(state.pid));
  }
  if (IsEnd(state.state)) update += ", ended = " + Literal(UtcText(UtcNow()));
  connection_->Execute(update + " WHERE id = " + std::to_string(table));
  if (IsEnd(state.state)) AddFailures(table, state.failures);
}

void History::PutOutcome(std::int64_t table, const TableOutcome& outcome) {
  const Text id = std::to_string(table);
  connection_->Execute("UPDATE table_run SET " + OutcomeAssignments(outcome.run) + ", method = " +
                       Literal(MethodWord(outcome.run.task.method)) + ", started = " + Literal(outcome.started) +
                       ", ended = " + (outcome.ended.empty() ? "NULL" : Literal(outcome.ended)) +
                       ProcessAssignments(outcome.process) + " WHERE id = " + id);
  connection_->Execute("DELETE FROM failure WHERE table_run = " + id);
  AddFailures(table, outcome.run.failures);
}

void History::NoteBatch(std::int64_t run, const Text& directory) {
  connection_->Execute("UPDATE run SET batch = " + (directory.empty() ? "NULL" : Literal(directory)) +
                       " WHERE id = " + std::to_string(run));
}

void History::NoteTask(std::int64_t table, const Text& task) {
  connection_->Execute("UPDATE table_run SET task = " + Literal(task) + " WHERE id = " + std::to_string(table));
}

void History::NoteQueued(std::int64_t table) {
  connection_->Execute("UPDATE table_run SET outcome = " + Literal(kQueued) + " WHERE outcome = " +
                       Literal(StateWord(TableState::Waiting)) + " AND id = " + std::to_string(table));
}

std::vector<PastRun> History::OpenBatches() {
  return Read<PastRun>("SELECT * FROM run WHERE batch IS NOT NULL ORDER BY id", ReadRun);
}

void History::AddFailures(std::int64_t table, const std::vector<JobFailure>& failures) {
  for (const JobFailure& f : failures) {
    connection_->Execute(
        "INSERT INTO failure (table_run,at,number,source,description,sqlstate,native,statement,call,row_key,during) "
        "VALUES (" +
        std::to_string(table) + "," +
        Literals({f.time, std::to_string(f.number), f.source, f.description, f.sqlState, f.native, f.statement, f.call,
                  f.rowKey, f.during}) +
        ")");
  }
}

void History::UpdateCounts(std::int64_t table, const RowCounts& counts) {
  connection_->Execute("UPDATE table_run SET " + CountAssignments(counts) + " WHERE id = " + std::to_string(table) +
                       " AND ended IS NULL");
}

void History::NoteFreed(const Text& database, const Text& table) {
  connection_->Execute("UPDATE table_run SET freed = " + Literal(UtcText(UtcNow())) +
                       " WHERE id = (SELECT max(id) FROM table_run WHERE db = " + Literal(database) +
                       " AND name = " + Literal(table) + ")");
}

std::int64_t History::ChangeNumber() {
  const auto rows = Open(*databases_, connection_, "PRAGMA data_version");
  return NumberOf(*rows, "data_version");
}

std::vector<PastRun> History::Runs(int atMost, std::int64_t before) {
  const Text which = before > 0 ? "WHERE id < " + std::to_string(before) + " " : "";
  return Read<PastRun>("SELECT * FROM run " + which + "ORDER BY id DESC LIMIT " + std::to_string(atMost), ReadRun);
}

std::optional<PastRun> History::Run(std::int64_t run) {
  const auto found = Read<PastRun>("SELECT * FROM run WHERE id = " + std::to_string(run), ReadRun);
  return found.empty() ? std::nullopt : std::optional(found.front());
}

std::vector<PastTable> History::TablesOf(std::int64_t run) {
  return Read<PastTable>("SELECT * FROM table_run WHERE run = " + std::to_string(run) + " ORDER BY id", ReadTable);
}

std::vector<PastTable> History::LatestTables(const Text& database, const Text& table, int atMost) {
  return Read<PastTable>("SELECT * FROM table_run WHERE db = " + Literal(database) + " AND name = " + Literal(table) +
                             " ORDER BY id DESC LIMIT " + std::to_string(atMost),
                         ReadTable);
}

std::vector<std::pair<Text, Text>> History::TableNames() {
  return Read<std::pair<Text, Text>>("SELECT DISTINCT db, name FROM table_run ORDER BY db, name",
                                     [](Recordset& row) { return std::pair(TextOf(row, "db"), TextOf(row, "name")); });
}

std::vector<JobFailure> History::FailuresOf(std::int64_t table) {
  return Read<JobFailure>("SELECT * FROM failure WHERE table_run = " + std::to_string(table) + " ORDER BY id",
                          ReadFailure);
}

Seconds History::LastDuration(const Text& database, const Text& table, Method method) {
  const auto spans = Read<Seconds>(
      "SELECT CAST(strftime('%s', ended) AS INTEGER) - CAST(strftime('%s', started) AS INTEGER) AS span FROM table_run "
      "WHERE outcome = 'complete' AND db = " +
          Literal(database) + " AND name = " + Literal(table) + " AND method = " + Literal(MethodWord(method)) +
          " ORDER BY id DESC LIMIT 1",
      [](Recordset& row) { return Seconds(NumberOf(row, "span")); });
  return spans.empty() ? Seconds(0) : spans.front();
}

template <typename Row, typename ReadRow>
std::vector<Row> History::Read(const Text& query, ReadRow readRow) {
  std::vector<Row> found;
  for (const auto rows = Open(*databases_, connection_, query); !rows->AtEnd(); rows->MoveNext()) {
    found.push_back(readRow(*rows));
  }
  return found;
}

std::int64_t History::NewId() {
  const auto rows = Open(*databases_, connection_, "SELECT last_insert_rowid() AS id");
  return NumberOf(*rows, "id");
}

void Migrate(Database& databases, const std::shared_ptr<Connection>& connection, std::span<const char* const> steps) {
  const auto stepsHad = [&] {
    const auto rows = Open(databases, connection, "PRAGMA user_version");
    return static_cast<std::size_t>(NumberOf(*rows, "user_version"));
  };
  if (stepsHad() > steps.size()) {
    throw RuntimeError(PlatformFault::InvalidCall, "the history has been changed by a later zenqayctl");
  }
  while (stepsHad() < steps.size()) {
    InOneTransaction(*connection, [&] {
      const std::size_t had = stepsHad();
      if (had >= steps.size()) return;  // another process was first
      connection->Execute(steps[had]);
      connection->Execute("PRAGMA user_version = " + std::to_string(had + 1));
    });
  }
}

Text HistoryPath() {
  const char* state = std::getenv("XDG_STATE_HOME");
  const char* home = std::getenv("HOME");
  std::filesystem::path directory = "/var/lib/zenqay";
  if (state != nullptr && *state != '\0') {
    directory = std::filesystem::path(state) / "zenqay";
  } else if (!IsSuperUser() && !MayWriteIn(directory.string()) && home != nullptr) {
    directory = std::filesystem::path(home) / ".local/state/zenqay";
  }
  std::error_code ignored;  // the file will say that it cannot be opened
  std::filesystem::create_directories(directory, ignored);
  return (directory / "history.db").string();
}

}  // namespace zenqay
