// What zenqayctl has run: a file of the embedded database that several zenqayctl share.
#pragma once

#include <functional>
#include <memory>
#include <span>

#include "contracts/connection.h"
#include "control/table_run.h"
#include "system/process_identity.h"

namespace zenqay {

/// A moment as it is stored: ISO 8601 in UTC, "2026-01-31T10:11:12Z"; and read again, 0 for what is none.
Text UtcText(std::int64_t secondsSince1970);
std::int64_t SecondsOfUtc(const Text& utc);
std::int64_t UtcNow();

/// The outcome of a table whose task the batch system has taken, until the task says something itself.
inline constexpr const char* kQueued = "queued";

/// "full", "changed"
Text MethodWord(Method method);
Method MethodOfWord(const Text& word);

/// What is known of a table of a run that is not this process's.
struct TableOutcome {
  TableRun run;
  Text started;  // as they are stored; the end is empty while it runs
  Text ended;
  ProcessIdentity process;  // of the job; without a number when none was started
};

/// One table of a past or present run.
struct PastTable {
  std::int64_t id = 0;
  std::int64_t run = 0;
  Text job;
  Text database;
  Text table;
  Text method;
  Text started;  // of the last attempt
  Text ended;    // empty while it runs
  Text outcome;  // a StateWord; "lost" when zenqayctl died
  RowCounts counts;
  int attempts = 0;
  Text words;
  Text logs;
  Text freed;               // when the table was freed by unlock behind this run; empty when it was not
  Text task;                // of the batch system that runs it: "0_3"; empty for a table of this machine's own
  ProcessIdentity process;  // of the job; without a number when none was started
};

struct PastRun {
  std::int64_t id = 0;
  Text command;
  Text started;
  Text ended;
  Text outcome;  // "running", "lost", or the exit status
  Text batch;    // the directory of a submission that is not settled yet
  ProcessIdentity process;
};

/// Every change commits by itself; a change that another zenqayctl holds up is waited for.
class History {
 public:
  /// Opens the file, makes it when it is missing, and brings it to the present form. Raises what the database says, and
  /// a file that a later zenqayctl has changed.
  explicit History(const Text& path);

  /// Does a deed whole or not at all, and nobody else's between.
  void Together(const std::function<void()>& deed);

  /// Closes as lost what this machine's dead processes left open, but for submissions, which outlive theirs.
  void CloseLost();

  /// Forgets the runs that have ended and began longer ago than `keep`.
  void Forget(Seconds keep);

  std::int64_t BeginRun(const Text& command, const ProcessIdentity& process);
  void EndRun(std::int64_t run, int status);

  std::int64_t BeginTable(std::int64_t run, const TableRun& table);

  /// What has become of the table so far; its failure records when it has come to an end.
  void UpdateTable(std::int64_t table, const TableRun& state);

  /// How far the table has come meanwhile. One that has come to its end keeps what it has.
  void UpdateCounts(std::int64_t table, const RowCounts& counts);

  /// The same of a table that another process runs; what was noted before is forgotten.
  void PutOutcome(std::int64_t table, const TableOutcome& outcome);

  /// Notes that the run is one of the batch system, whose tasks leave their outcomes in the directory; empty: that the
  /// last of them has been taken over.
  void NoteBatch(std::int64_t run, const Text& directory);
  void NoteTask(std::int64_t table, const Text& task);
  void NoteQueued(std::int64_t table);

  /// The submissions that are not settled, the earliest first.
  std::vector<PastRun> OpenBatches();

  /// Notes that the table has been freed since its latest run.
  void NoteFreed(const Text& database, const Text& table);

  /// A number that differs once anybody else has changed something since it was last asked for.
  std::int64_t ChangeNumber();

  /// The latest first, those before the run `before` where that is not 0.
  std::vector<PastRun> Runs(int atMost, std::int64_t before = 0);
  std::vector<PastTable> TablesOf(std::int64_t run);
  std::vector<PastTable> LatestTables(const Text& database, const Text& table, int atMost);
  /// Every table that ever ran, by its database.
  std::vector<std::pair<Text, Text>> TableNames();
  std::vector<JobFailure> FailuresOf(std::int64_t table);
  std::optional<PastRun> Run(std::int64_t run);

  /// How long the table took when it last was complete; 0 when it never was.
  Seconds LastDuration(const Text& database, const Text& table, Method method);

 private:
  template <typename Row, typename ReadRow>
  std::vector<Row> Read(const Text& query, ReadRow readRow);
  std::int64_t NewId();
  void AddFailures(std::int64_t table, const std::vector<JobFailure>& failures);

  std::shared_ptr<Database> databases_;
  std::shared_ptr<Connection> connection_;
};

/// Brings an open database through the steps that it has not had yet, each whole or not at all. How many it has had is
/// its user_version. Raises 5 for a database that has had more.
void Migrate(Database& databases, const std::shared_ptr<Connection>& connection, std::span<const char* const> steps);

/// The file of this user: in $XDG_STATE_HOME/zenqay or ~/.local/state/zenqay; for the super-user, and for the user
/// whose directory it is, in /var/lib/zenqay. Its directory is made where that is possible.
Text HistoryPath();

}  // namespace zenqay
