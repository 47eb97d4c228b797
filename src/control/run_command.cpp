#include "control/exit_status.h"
#include "control/history.h"
#include "control/outcome_file.h"
#include "control/run_plan.h"
#include "control/run_views.h"

namespace zenqay {
namespace {

/// Writes the run down as it goes. A history that cannot be written stops no job.
class HistoryRecord : public RunRecord {
 public:
  HistoryRecord(const JobFile& file, const RunOptions& options, Surroundings& surroundings)
      : surroundings_(surroundings) {
    Try([&] {
      history_.emplace(surroundings.historyPath);
      history_->CloseLost();
      history_->Forget(file.keepHistory);
      run_ = history_->BeginRun(options.commandWords, OwnIdentity());
    });
  }

  void Begin(std::vector<TableRun>& runs) override {
    counts_.resize(runs.size());
    for (TableRun& run : runs) {
      TableTask& task = run.task;
      Try([&] {
        task.expected = history_->LastDuration(task.database, task.table, task.method);
        tables_.push_back(history_->BeginTable(run_, run));
        if (IsEnd(run.state)) history_->UpdateTable(tables_.back(), run);
      });
    }
  }

  void Changed(const std::vector<TableRun>& runs, std::size_t which) override {
    Try([&] { history_->UpdateTable(tables_.at(which), runs[which]); });
  }

  void Tick(const std::vector<TableRun>& runs) override {
    const auto now = std::chrono::steady_clock::now();
    if (now - countsWritten_ < kBetweenCounts) return;
    countsWritten_ = now;
    for (std::size_t which = 0; which < runs.size(); ++which) {
      const TableRun& run = runs[which];
      if (run.state != TableState::Copying || run.counts == counts_[which]) continue;
      counts_[which] = run.counts;
      Try([&] { history_->UpdateCounts(tables_.at(which), run.counts); });
    }
  }

  void End(int status) override {
    Try([&] { history_->EndRun(run_, status); });
  }

 private:
  static constexpr Seconds kBetweenCounts{1};

  template <typename Deed>
  void Try(Deed deed) {
    if (hasFailed_) return;
    try {
      deed();
    } catch (const std::exception& fault) {
      hasFailed_ = true;
      surroundings_.err << "zenqayctl: the history " << surroundings_.historyPath << " is not written: " << fault.what()
                        << std::endl;
    }
  }

  Surroundings& surroundings_;
  std::optional<History> history_;
  bool hasFailed_ = false;
  std::int64_t run_ = 0;
  std::vector<std::int64_t> tables_;
  std::vector<RowCounts> counts_;  // as they were written last
  std::chrono::steady_clock::time_point countsWritten_;
};

}  // namespace

int RunJobs(const JobFile& file, const RunOptions& options, Surroundings& surroundings) {
  RunPlan plan(file, options, surroundings);
  SignalWatch signals;
  std::unique_ptr<RunRecord> record;
  if (options.outcome.empty()) {
    record = std::make_unique<HistoryRecord>(file, options, surroundings);
  } else {
    record = std::make_unique<OutcomeRecord>(options.outcome, surroundings);
  }
  record->Begin(plan.runs);
  RunView view(surroundings.out, surroundings.terminal, options.json);
  view.Begin(plan.runs);
  const std::optional<int> signal = RunTables(plan.runs, plan.Settings(), signals, {record.get(), &view});
  const int status = ExitStatusOf(plan.runs, signal);
  record->End(status);
  view.End(plan.runs, status);
  return status;
}

}  // namespace zenqay
