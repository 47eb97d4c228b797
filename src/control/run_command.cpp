#include <array>
#include <ctime>
#include <thread>

#include "control/clock_change.h"
#include "control/commands.h"
#include "control/derived_home.h"
#include "control/exit_status.h"
#include "control/history.h"
#include "control/job_command.h"
#include "control/local_tables.h"
#include "control/run_views.h"

namespace zenqay {
namespace {

/// No limit is beyond all of a table's rows.
constexpr const char* kNoSweepLimit = "100%";

Text LocalTimeOfDay() {
  const std::time_t now = std::time(nullptr);
  std::array<char, 16> text{};
  std::strftime(text.data(), text.size(), "%H:%M:%S", std::localtime(&now));
  return text.data();
}

/// Writes the run down as it goes. A history that cannot be written stops no job.
class HistoryListener : public RunListener {
 public:
  HistoryListener(const JobFile& file, const RunOptions& options, Surroundings& surroundings)
      : surroundings_(surroundings) {
    Try([&] {
      history_.emplace(surroundings.historyPath);
      history_->CloseLost();
      history_->Forget(file.keepHistory);
      run_ = history_->BeginRun(options.commandWords, OwnIdentity());
    });
  }

  void Begin(std::vector<TableRun>& runs) {
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

  void End(int status) {
    Try([&] { history_->EndRun(run_, status); });
  }

 private:
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
};

/// What is to be run, put together before anything is started.
class RunPlan {
 public:
  RunPlan(const JobFile& file, const RunOptions& options, Surroundings& surroundings)
      : file_(file), options_(options), surroundings_(surroundings) {
    for (const Text& name : options.jobs) AddJob(file.Job(name));
  }

  std::vector<TableRun> runs;

  RunnerSettings Settings() const {
    RunnerSettings settings{.program = surroundings_.jobProgram};
    for (const auto& [name, database] : file_.databases) {
      settings.parallel.emplace(name, database.parallel);
      const bool isWithheld = database.password && database.password->kind == PasswordSource::Kind::Environment;
      if (isWithheld) settings.withheld.push_back(database.password->name);
    }
    return settings;
  }

 private:
  void AddJob(const JobSettings& job) {
    const DatabaseSettings& database = file_.DatabaseOf(job);
    const ErpSettings& erp = file_.ErpOf(job);
    const DatabaseAccess access = AccessTo(file_, database, surroundings_.environment);
    homes_.push_back(std::make_unique<DerivedHome>(erp, job.sweepLimit));
    std::vector<LocalTable> known;
    try {
      known = Registered(job, database, access);
    } catch (const RuntimeError& error) {
      return AddUnreached(job, database, error.description());
    }
    for (const LocalTable& table : ChooseTables(job, erp.generation, known, options_.tables)) {
      TableRun& run = Add(job, table.name);
      run.task.tableId = table.id;
      run.task.method = MethodFor(job, table);
      run.task.commandLine = JobLineOf(file_, job, access.connection, table.id, run.task.method);
      run.task.password = access.password;
    }
  }

  /// A database that is not reached is tried again as a job is.
  std::vector<LocalTable> Registered(const JobSettings& job, const DatabaseSettings& database,
                                     const DatabaseAccess& access) {
    for (int attempt = 0;; ++attempt) {
      try {
        return LocalTables(database, access, Use::Read).OfGeneration(file_.ErpOf(job).generation);
      } catch (const RuntimeError&) {
        if (attempt == job.retryTimes) throw;
        std::this_thread::sleep_for(job.retryWait);
      }
    }
  }

  TableRun& Add(const JobSettings& job, const Text& table) {
    TableRun run;
    run.task = {.job = job.name, .database = job.database, .table = table};
    run.task.home = homes_.back()->path();
    run.task.logs = job.logs;
    run.task.method = options_.method.value_or(job.method);
    run.task.retryTimes = job.retryTimes;
    run.task.retryWait = job.retryWait;
    run.task.timeout = job.timeout;
    if (options_.allowSweep) run.task.sweepLimit = kNoSweepLimit;
    runs.push_back(std::move(run));
    return runs.back();
  }

  void AddUnreached(const JobSettings& job, const DatabaseSettings& database, const Text& reason) {
    std::vector<Text> names = options_.tables.empty() ? job.tables : options_.tables;
    if (names.empty()) names = {"all"};
    for (const Text& name : names) {
      ConcludeUnstarted(Add(job, name), "the database \"" + database.name + "\" is not reached: " + reason);
    }
  }

  Method MethodFor(const JobSettings& job, const LocalTable& table) {
    const Method method = options_.method.value_or(job.method);
    const bool isMissed = method == Method::OnlyChanged && table.updated && ClockWentForward(*table.updated, UtcNow());
    if (!isMissed) return method;
    const Text what = "the clock went forward since the last update of " + table.name +
                      ": an only-changed pass would miss changes made right after that update";
    if (job.onClockChange == ClockChange::Warn) {
      surroundings_.err << "zenqayctl: warning: " << what << std::endl;
      return method;
    }
    surroundings_.err << "zenqayctl: " << what << "; it is copied in full this time" << std::endl;
    return Method::Full;
  }

  const JobFile& file_;
  const RunOptions& options_;
  Surroundings& surroundings_;
  std::vector<std::unique_ptr<DerivedHome>> homes_;
};

}  // namespace

int RunJobs(const JobFile& file, const RunOptions& options, Surroundings& surroundings) {
  RunPlan plan(file, options, surroundings);
  SignalWatch signals;
  HistoryListener history(file, options, surroundings);
  history.Begin(plan.runs);

  PlainView plain(surroundings.out, LocalTimeOfDay);
  LiveView live(surroundings.out, surroundings.terminal);
  JsonView json(surroundings.out, [] { return UtcText(UtcNow()); });
  RunListener* people = surroundings.terminal().columns > 0 ? static_cast<RunListener*>(&live) : &plain;
  RunListener* view = options.json ? &json : people;
  for (std::size_t which = 0; which < plan.runs.size(); ++which) {
    if (IsEnd(plan.runs[which].state)) view->Changed(plan.runs, which);
  }
  const std::optional<int> signal = RunTables(plan.runs, plan.Settings(), signals, {&history, view});
  const int status = ExitStatusOf(plan.runs, signal);
  history.End(status);
  if (options.json) {
    json.End(status);
  } else {
    WriteEnd(surroundings.out, plan.runs);
  }
  return status;
}

}  // namespace zenqay
