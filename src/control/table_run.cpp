#include "control/table_run.h"

#include <algorithm>

#include "base/secrets.h"
#include "contracts/control_channel.h"
#include "control/exit_status.h"

namespace zenqay {
namespace {

constexpr std::int64_t kSweepLimitExceeded = 20211;
constexpr std::size_t kMostWords = 20;
constexpr std::size_t kMostFailures = 100;

/// A class of SQLSTATEs in which the server could not be reached or went away.
bool IsConnectionLost(const Text& sqlState) {
  return sqlState.starts_with("08") || sqlState.starts_with("57P0") || sqlState.starts_with("HYT0");
}

/// A component call that failed before any table was copied, but for those that fail the same way each time: a class
/// or an operation that does not exist.
bool IsErpUnreached(const JobFailure& failure) {
  constexpr std::int64_t kLasting[] = {13, 429, 438, 450};
  const bool isCallAtStart = failure.during == channel::kDuringStart && !failure.call.empty();
  return isCallAtStart && std::find(std::begin(kLasting), std::end(kLasting), failure.number) == std::end(kLasting);
}

bool HasFailure(const TableRun& run, std::int64_t number) {
  return std::any_of(run.failures.begin(), run.failures.end(),
                     [&](const JobFailure& failure) { return failure.number == number; });
}

bool IsUnreached(const TableRun& run) {
  return std::any_of(run.failures.begin(), run.failures.end(), [](const JobFailure& failure) {
    return IsConnectionLost(failure.sqlState) || IsErpUnreached(failure);
  });
}

/// The best that is known of why: the first record, which is the nearest to the cause, else what was said last.
Text CauseOf(const TableRun& run) {
  if (!run.failures.empty()) return FailureText(run.failures.front());
  return run.lastWords.empty() ? Text() : run.lastWords.back();
}

Text WithCause(const Text& words, const TableRun& run) {
  const Text cause = CauseOf(run);
  if (words.empty() || cause.empty()) return words + cause;
  return words + ": " + cause;
}

Text WithoutPassword(const TableRun& run, const Text& text) {
  return Replaced(text, run.task.password, "***");
}

JobFailure WithoutPassword(const TableRun& run, JobFailure failure) {
  for (Text* text : {&failure.source, &failure.description, &failure.statement, &failure.call, &failure.rowKey}) {
    *text = WithoutPassword(run, *text);
  }
  return failure;
}

bool IsCrash(const ProcessEnd& end) {
  return end.signal != 0 || end.status != 0;
}

void ConcludeAsked(TableRun& run, const ProcessEnd& end, Asked asked) {
  run.state = asked == Asked::ByTimeout ? TableState::TimedOut : TableState::Stopped;
  if (!run.isTaken) {
    run.words = "nothing was copied";
  } else if (end.signal == 0) {
    run.words = "the copy was broken off";
  } else {
    run.words = "the job " + end.Words() + " before it freed the table";
  }
}

void ConcludeUnasked(TableRun& run, const ProcessEnd& end) {
  if (IsCrash(end)) {
    run.state = run.isTaken || run.told ? TableState::Failed : TableState::CouldNotBegin;
    run.words = WithCause("the job " + end.Words(), run);
  } else if (run.told == TableState::Complete && run.releaseFailed) {
    run.state = TableState::Failed;
    run.words = WithCause("the copy is complete, but the table could not be freed", run);
  } else if (run.told) {
    run.state = *run.told;
    if (run.state == TableState::Failed) run.words = WithCause("", run);
  } else if (run.isTaken) {
    run.state = TableState::Failed;
    run.words = WithCause("the job ended without a word on what became of the table", run);
  } else {
    run.state = TableState::CouldNotBegin;
    run.words = WithCause(run.hasBegun ? "" : "the job ended without a word", run);
    if (run.words.empty()) run.words = "the job ended before it took the table";
  }
}

bool AnyIs(const std::vector<TableRun>& runs, TableState state) {
  return std::any_of(runs.begin(), runs.end(), [&](const TableRun& run) { return run.state == state; });
}

}  // namespace

Text StateWord(TableState state) {
  switch (state) {
    case TableState::Waiting:
      return "waiting";
    case TableState::Beginning:
      return "beginning";
    case TableState::Copying:
      return "copying";
    case TableState::Complete:
      return "complete";
    case TableState::InUse:
      return "in use";
    case TableState::Failed:
      return "failed";
    case TableState::CouldNotBegin:
      return "could not begin";
    case TableState::Stopped:
      return "stopped";
    case TableState::TimedOut:
      return "timed out";
  }
  return "";
}

std::optional<TableState> StateOfWord(const Text& word) {
  constexpr TableState kAll[] = {TableState::Waiting,       TableState::Beginning, TableState::Copying,
                                 TableState::Complete,      TableState::InUse,     TableState::Failed,
                                 TableState::CouldNotBegin, TableState::Stopped,   TableState::TimedOut};
  const auto* const found = std::ranges::find(kAll, word, StateWord);
  return found == std::end(kAll) ? std::nullopt : std::optional(*found);
}

bool IsEnd(TableState state) {
  return state != TableState::Waiting && state != TableState::Beginning && state != TableState::Copying;
}

void BeginAttempt(TableRun& run, TableRun::Moment now) {
  run.state = TableState::Beginning;
  ++run.attempts;
  run.started = now;
  run.ended = now;
  run.counts = {};
  run.passCounts = {};
  run.failures.clear();
  run.lastWords.clear();
  run.words.clear();
  run.told.reset();
  run.hasBegun = run.isTaken = run.hasTakenOver = run.releaseFailed = false;
}

bool Hear(TableRun& run, const ChannelLine& line) {
  if (line.kind == channel::kBegin) {
    run.hasBegun = true;
    if (line.channelVersion > channel::kVersion) {
      HearWords(run, "the job speaks version " + std::to_string(line.channelVersion) +
                         " of the control channel, zenqayctl reads version " + std::to_string(channel::kVersion));
    }
  } else if (line.kind == channel::kStarted) {
    run.state = TableState::Copying;
    run.isTaken = true;
    return true;
  } else if (line.kind == channel::kTakeover) {
    run.hasTakenOver = true;
    return true;
  } else if (line.kind == channel::kRows) {
    run.counts = line.counts;
    run.passCounts = line.counts;
  } else if (line.kind == channel::kFailure) {
    if (run.failures.size() < kMostFailures) run.failures.push_back(WithoutPassword(run, line.failure));
    if (line.failure.during == channel::kDuringRelease) run.releaseFailed = true;
  } else if (line.kind == channel::kInUse) {
    run.told = TableState::InUse;
  } else if (line.kind == channel::kError) {
    run.told = TableState::Failed;
  } else if (line.kind == channel::kComplete) {
    run.told = TableState::Complete;
    run.counts.inserted = line.counts.inserted;
    run.counts.updated = line.counts.updated;
    run.counts.deleted = std::max(run.counts.deleted, line.counts.deleted);
  }
  return false;
}

void HearWords(TableRun& run, const Text& line) {
  if (Trim(line).empty()) return;
  run.lastWords.push_back(WithoutSecrets(WithoutPassword(run, line)));
  if (run.lastWords.size() > kMostWords) run.lastWords.erase(run.lastWords.begin());
}

void Conclude(TableRun& run, const ProcessEnd& end, Asked asked) {
  const bool endedAsItWould = run.told == TableState::Complete || run.told == TableState::InUse;
  if (asked != Asked::No && !(endedAsItWould && !IsCrash(end))) {
    ConcludeAsked(run, end, asked);
  } else {
    ConcludeUnasked(run, end);
  }
}

void ConcludeUnstarted(TableRun& run, const Text& reason) {
  run.state = TableState::CouldNotBegin;
  run.words = reason;
}

void ConcludeSkipped(TableRun& run, Asked asked) {
  run.state = asked == Asked::ByTimeout ? TableState::TimedOut : TableState::Stopped;
  run.words = "its job was not started";
}

bool CanHeal(const TableRun& run) {
  if (run.state == TableState::InUse) return true;
  const bool hasFailed = run.state == TableState::Failed || run.state == TableState::CouldNotBegin;
  return hasFailed && IsUnreached(run);
}

Text AdviceFor(const TableRun& run) {
  const Text job = run.task.job;
  const Text again = "zenqayctl run " + job + " --table " + run.task.table;
  switch (run.state) {
    case TableState::InUse:
      return "zenqayctl status " + job + " says who has it, and whether that job still holds its lock; once it does " +
             "not: " + again;
    case TableState::CouldNotBegin:
      return "zenqayctl check " + job + " says what to mend; then: " + again;
    case TableState::Failed:
      if (HasFailure(run, kSweepLimitExceeded)) {
        return "compare what the ERP lists with the table; if the rows are to go: " + again + " --full --allow-sweep";
      }
      if (IsUnreached(run)) return "zenqayctl check " + job + " says what cannot be reached; then: " + again;
      return "the records stand in " + run.task.logs + "/" + run.task.table +
             "_*.log and in zenqayctl history; then: " + again;
    case TableState::Stopped:
      return "to go on: " + again;
    case TableState::TimedOut:
      return "to go on: " + again + " (or a longer timeout in the job file)";
    default:
      return "";
  }
}

Text FailureText(const JobFailure& failure) {
  const Text row = failure.rowKey.empty() ? "" : " (row " + failure.rowKey + ")";
  const Text oneLine = Replaced(Replaced(failure.description, "\r\n", " "), "\n", " ");
  return std::to_string(failure.number) + ": " + oneLine + row;
}

int ExitStatusOf(const std::vector<TableRun>& runs, std::optional<int> signal) {
  if (signal) return kStoppedBySignal + *signal;
  if (AnyIs(runs, TableState::TimedOut)) return kTimedOut;
  if (AnyIs(runs, TableState::CouldNotBegin)) return kCouldNotBegin;
  if (AnyIs(runs, TableState::Failed)) return kTableFailed;
  return AnyIs(runs, TableState::InUse) ? kTableInUse : kAllComplete;
}

}  // namespace zenqay
