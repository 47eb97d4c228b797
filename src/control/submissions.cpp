#include "control/submissions.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <set>

#include "control/exit_status.h"
#include "control/outcome_file.h"
#include "system/file_content.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

Text NameOf(const PastRun& run) {
  return fs::path(run.batch).filename().string();
}

/// The files of a directory. Listing it shows, on a disk of the network too, what other machines have put there.
/// Nothing for one that cannot be listed, which is said on `err`: a disk that is not mounted is no lost task.
std::optional<std::set<Text>> FilesIn(const Text& directory, std::ostream& err) {
  std::set<Text> files;
  std::error_code fault;
  for (fs::directory_iterator entry(directory, fault), end; !fault && entry != end; entry.increment(fault)) {
    files.insert(entry->path().filename().string());
  }
  if (!fault) return files;
  err << "zenqayctl: what submitted tasks have left is not known: " << directory << ": " << fault.message()
      << std::endl;
  return std::nullopt;
}

Text RestartWords(int restarts) {
  if (restarts == 0) return "";
  return restarts == 1 ? "the task was begun anew once"
                       : "the task was begun anew " + std::to_string(restarts) + " times";
}

void AddWords(Text& words, const Text& more) {
  if (!more.empty()) words += (words.empty() ? "" : "; ") + more;
}

bool IsOutOfTime(const BatchTask& task) {
  return task.state == "TIMEOUT" || task.state == "DEADLINE";
}

/// What became of a table whose task has ended without saying so. `known` is the batch system's word, as far as it has
/// one.
TableState StateOfLost(bool hasBegun, const std::optional<BatchTask>& known) {
  if (known && IsOutOfTime(*known)) return TableState::TimedOut;
  if (known && (known->state == "CANCELLED" || known->state == "PREEMPTED")) return TableState::Stopped;
  return hasBegun ? TableState::Failed : TableState::CouldNotBegin;
}

/// A submission as it stood when the batch system was asked.
struct AskedSubmission {
  AskedSubmission(History& history, const PastRun& submission) : run(submission) {
    const bool isSubmitting = LifeOf(run.process) == Life::Alive;
    for (const PastTable& table : history.TablesOf(run.id)) {
      if (!isSubmitting || table.outcome != StateWord(TableState::Waiting)) handedOver.insert(table.id);
    }
  }

  PastRun run;
  std::set<std::int64_t> handedOver;  // which of its tables the batch system had been given, if ever
  std::optional<BatchTasks> known;    // what it answered
};

/// One submission, as it is settled.
class Collection {
 public:
  Collection(History& history, const AskedSubmission& asked, std::ostream& err)
      : history_(history), asked_(asked), run_(asked.run), files_(FilesIn(run_.batch, err)) {}

  void Collect(OpenTasks& open) {
    for (const PastTable& table : history_.TablesOf(run_.id)) {
      if (table.task.empty()) continue;  // its database was not reached
      const std::optional<BatchTask> task = Known(table.task);
      const bool hasEnded = HasEnded(table, task);
      Settle(table, task, hasEnded);
      if (hasEnded) continue;
      isOpen_ = true;
      if (task) open.emplace(table.id, *task);
    }
    if (!isOpen_) history_.EndRun(run_.id, Status());
  }

  bool isOpen() const { return isOpen_; }
  bool hasLost() const { return hasLost_; }

 private:
  std::optional<BatchTask> Known(const Text& task) const {
    if (!asked_.known || !asked_.known->contains(task)) return std::nullopt;
    return asked_.known->at(task);
  }

  /// What the batch system does not know has ended, unless it was still to be handed over. Nothing is settled before
  /// both can be asked: the batch system, and the directory.
  bool HasEnded(const PastTable& table, const std::optional<BatchTask>& task) const {
    if (!asked_.known || !files_) return false;
    return task ? task->HasEnded() : asked_.handedOver.contains(table.id);
  }

  const std::optional<RunOutcome>& OutcomeOf(const Text& task) {
    const auto found = outcomes_.find(task);
    if (found != outcomes_.end()) return found->second;
    const Text file = task + ".json";
    const bool isThere = files_ && files_->contains(file);
    return outcomes_.emplace(task, isThere ? ReadOutcome(run_.batch + "/" + file) : std::nullopt).first->second;
  }

  void Settle(const PastTable& table, const std::optional<BatchTask>& task, bool hasEnded) {
    const std::optional<RunOutcome>& outcome = OutcomeOf(table.task);
    std::optional<TableOutcome> said;
    if (outcome) {
      const auto same = [&](const TableOutcome& one) {
        return one.run.task.job == table.job && one.run.task.table == table.table;
      };
      const auto found = std::ranges::find_if(outcome->tables, same);
      if (found != outcome->tables.end()) said = *found;
    }
    if (said) AddWords(said->run.words, RestartWords(outcome->restarts));
    if (said && (!hasEnded || IsEnd(said->run.state))) {
      TakeOver(table, *said, task, *outcome);
    } else if (hasEnded) {
      SettleLost(table, said, task);
    }
  }

  void TakeOver(const PastTable& table, TableOutcome& said, const std::optional<BatchTask>& task,
                const RunOutcome& outcome) {
    if (said.run.state == TableState::Stopped) {
      if (task && task->HasEnded() && IsOutOfTime(*task)) {
        said.run.state = TableState::TimedOut;
        AddWords(said.run.words, "the batch system says " + task->state);
      } else {
        stop_ = outcome.status.value_or(0) > kStoppedBySignal ? *outcome.status - kStoppedBySignal : SIGTERM;
      }
    }
    history_.PutOutcome(table.id, said);
  }

  void SettleLost(const PastTable& table, const std::optional<TableOutcome>& said,
                  const std::optional<BatchTask>& task) {
    // sbatch refused it, and nothing was heard of it since.
    if (!said && !task && table.outcome == StateWord(TableState::CouldNotBegin)) return;
    hasLost_ = true;
    TableOutcome lost = said.value_or(TableOutcome{.started = table.started});
    TableRun& run = lost.run;
    run.task.method = said ? run.task.method : MethodOfWord(table.method);
    const bool hasBegun = said && run.attempts > 0;
    run.state = StateOfLost(hasBegun, task);
    if (run.state == TableState::Stopped && !stop_) stop_ = SIGTERM;
    Text word = hasBegun ? "its task ended in the middle" : "its task left no outcome";
    word += task ? "; the batch system says " + task->state + (task->reason.empty() ? "" : " (" + task->reason + ")")
                 : Text("; the batch system does not know it any more");
    const Text log = run_.batch + "/" + table.task + ".log";
    if (const Text last = LastLine(ContentOfFile(log).value_or("")); !last.empty())
      word += "; the end of " + log + ": " + last;
    AddWords(run.words, word);
    lost.ended = UtcText(UtcNow());
    history_.PutOutcome(table.id, lost);
  }

  int Status() {
    std::vector<TableRun> runs;
    for (const PastTable& table : history_.TablesOf(run_.id)) {
      TableRun run;
      run.state = StateOfWord(table.outcome).value_or(TableState::Failed);
      runs.push_back(std::move(run));
    }
    return ExitStatusOf(runs, stop_);
  }

  History& history_;
  const AskedSubmission& asked_;
  const PastRun& run_;
  const std::optional<std::set<Text>> files_;
  std::map<Text, std::optional<RunOutcome>> outcomes_;
  std::optional<int> stop_;
  bool isOpen_ = false;
  bool hasLost_ = false;
};

void RemoveDirectory(History& history, const PastRun& run) {
  std::error_code ignored;  // what cannot be removed stays
  fs::remove_all(run.batch, ignored);
  history.NoteBatch(run.id, "");
}

/// Another zenqayctl may settle the same submission; its directory is read by one at a time.
void CollectOne(History& history, const AskedSubmission& asked, OpenTasks& open, std::ostream& err) {
  bool isDirectoryDone = false;
  history.Together([&] {
    const std::optional<PastRun> run = history.Run(asked.run.id);
    if (!run || run->batch.empty()) return;
    isDirectoryDone = !run->ended.empty();  // a zenqayctl died before it removed it
    if (isDirectoryDone) return;
    Collection collection(history, asked, err);
    collection.Collect(open);
    if (collection.isOpen()) return;
    isDirectoryDone = !collection.hasLost();
    if (collection.hasLost()) history.NoteBatch(run->id, "");
  });
  if (isDirectoryDone) RemoveDirectory(history, asked.run);
}

}  // namespace

OpenTasks CollectOutcomes(History& history, const BatchSystem& batch, std::ostream& err) {
  OpenTasks open;
  std::vector<AskedSubmission> submissions;
  std::vector<Text> names;
  for (const PastRun& run : history.OpenBatches()) {
    submissions.emplace_back(history, run);
    names.push_back(NameOf(run));
  }
  if (submissions.empty()) return open;
  try {
    // Before the files are looked at: a task has left its file when it is seen to have ended.
    std::map<Text, BatchTasks> known = batch.TasksOf(names);
    for (AskedSubmission& submission : submissions) submission.known = std::move(known[NameOf(submission.run)]);
  } catch (const RuntimeError& error) {
    err << "zenqayctl: what submitted tasks are queued and run is not known: " << error.description() << std::endl;
  }
  for (const AskedSubmission& submission : submissions) CollectOne(history, submission, open, err);
  return open;
}

void EndUnsubmitted(History& history, std::int64_t run, const Text& directory, int status) {
  history.EndRun(run, status);
  RemoveDirectory(history, {.id = run, .batch = directory});
}

}  // namespace zenqay
