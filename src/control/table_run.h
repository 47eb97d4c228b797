// One table of a run: what is asked of its job, and what has become of it so far.
#pragma once

#include <chrono>

#include "control/channel_line.h"
#include "control/duration.h"
#include "control/job_file.h"
#include "system/child_process.h"

namespace zenqay {

/// What a job is started for.
struct TableTask {
  Text job;
  Text database;  // its name in the job file
  Text table;
  std::int32_t tableId = 0;
  Method method = Method::OnlyChanged;
  Text commandLine;  // holds the password
  Text password;     // is taken out of whatever the job says
  Text home;
  Text sweepLimit;  // in the place of the home's, for this run
  Text logs;
  int retryTimes = 0;
  Seconds retryWait{0};
  Seconds timeout{0};   // of all tables of the job, from the start of the run; 0: none
  Seconds expected{0};  // how long the table took the last time; 0: not known
};

enum class TableState {
  Waiting,
  Beginning,  // its process runs, the table is not taken yet
  Copying,
  Complete,
  InUse,
  Failed,
  CouldNotBegin,
  Stopped,   // asked to stop while it ran, or before it was started
  TimedOut,  // the same by the job's timeout
};

/// "could not begin"
Text StateWord(TableState state);

/// The state of a word; nothing for a word of no state.
std::optional<TableState> StateOfWord(const Text& word);

bool IsEnd(TableState state);

/// Why a job was asked to stop.
enum class Asked { No, BySignal, ByTimeout };

struct TableRun {
  using Moment = std::chrono::steady_clock::time_point;

  TableTask task;
  TableState state = TableState::Waiting;
  int attempts = 0;
  int pid = 0;
  Moment started;    // of the last attempt
  Moment ended;      // of the last attempt
  Moment notBefore;  // of the next attempt
  RowCounts counts;
  RowCounts passCounts;  // as they were told last while the pass ran, which tells rows by what became of them
  std::vector<JobFailure> failures;  // of the last attempt
  std::vector<Text> lastWords;       // the last lines of its standard error
  Text words;                        // what there is to say of its end

  // What was heard of the present attempt.
  std::optional<TableState> told;  // by an event of the job
  bool hasBegun = false;
  bool isTaken = false;
  bool hasTakenOver = false;
  bool releaseFailed = false;
};

/// Puts the table back to where an attempt starts.
void BeginAttempt(TableRun& run, TableRun::Moment now);

/// Takes in what the job says. True when there is something new to show at once.
bool Hear(TableRun& run, const ChannelLine& line);

/// Keeps the last lines of the job's standard error, without passwords.
void HearWords(TableRun& run, const Text& line);

/// Settles what became of the table when its process has ended.
void Conclude(TableRun& run, const ProcessEnd& end, Asked asked);

/// The same for a process that could not be started, and for a table whose job was never started.
void ConcludeUnstarted(TableRun& run, const Text& reason);
void ConcludeSkipped(TableRun& run, Asked asked);

/// True when a later run can succeed without anybody doing anything: the connection was lost, the table in use, the
/// ERP not reached.
bool CanHeal(const TableRun& run);

/// What to do about a table that is not complete.
Text AdviceFor(const TableRun& run);

/// "13: Type mismatch (row SITE='A1')" of a failure record.
Text FailureText(const JobFailure& failure);

/// What zenqayctl ends with after these tables. `signal` is the one that asked it to stop.
int ExitStatusOf(const std::vector<TableRun>& runs, std::optional<int> signal);

}  // namespace zenqay
