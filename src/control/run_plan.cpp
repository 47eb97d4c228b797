#include "control/run_plan.h"

#include <algorithm>
#include <thread>

#include "control/clock_change.h"
#include "control/exit_status.h"
#include "control/history.h"
#include "control/job_command.h"

namespace zenqay {
namespace {

/// No limit is beyond all of a table's rows.
constexpr const char* kNoSweepLimit = "100%";

/// Says how often the batch system has begun a task anew; the first time it is missing.
constexpr const char* kRestarts = "SLURM_RESTART_COUNT";

/// "JOB:TABLE" as it is written for one of several jobs. Tables have no ":" in their names, jobs may.
struct AskedTable {
  explicit AskedTable(const Text& written) {
    const std::size_t colon = written.rfind(':');
    if (colon != Text::npos) job = written.substr(0, colon);
    table = colon == Text::npos ? written : written.substr(colon + 1);
  }

  std::optional<Text> job;
  Text table;
};

void RequireJobsOfTables(const RunOptions& options) {
  for (const Text& written : options.tables) {
    const AskedTable asked(written);
    if (!asked.job || std::ranges::find(options.jobs, *asked.job) != options.jobs.end()) continue;
    throw WrongUsage("--table " + written + ": \"" + *asked.job + "\" is not among the jobs that are asked for");
  }
}

std::vector<Text> AskedOf(const JobSettings& job, const RunOptions& options) {
  std::vector<Text> tables;
  for (const Text& written : options.tables) {
    const AskedTable asked(written);
    if (!asked.job || *asked.job == job.name) tables.push_back(asked.table);
  }
  return tables;
}

}  // namespace

RunPlan::RunPlan(const JobFile& file, const RunOptions& options, Surroundings& surroundings)
    : file_(file), options_(options), surroundings_(surroundings) {
  RequireJobsOfTables(options);
  for (const Text& name : options.jobs) AddJob(file.Job(name));
}

RunnerSettings RunPlan::Settings() const {
  RunnerSettings settings{.program = surroundings_.jobProgram, .withheld = PasswordVariables(file_)};
  for (const auto& [name, database] : file_.databases) settings.parallel.emplace(name, database.parallel);
  const bool isBegunAnew = RestartsOf(surroundings_.environment) > 0;
  if (isBegunAnew) settings.deadSessionWait = file_.batch.requeueWait;
  return settings;
}

void RunPlan::AddJob(const JobSettings& job) {
  const std::vector<Text> asked = AskedOf(job, options_);
  if (asked.empty() && !options_.tables.empty()) return;
  const DatabaseSettings& database = file_.DatabaseOf(job);
  const ErpSettings& erp = file_.ErpOf(job);
  const DatabaseAccess access = AccessTo(file_, database, surroundings_.environment);
  homes_.push_back(std::make_unique<DerivedHome>(erp, job.sweepLimit));
  std::vector<LocalTable> known;
  try {
    known = Registered(job, database, access);
  } catch (const RuntimeError& error) {
    return AddUnreached(job, database, asked, error.description());
  }
  for (const LocalTable& table : ChooseTables(job, erp.generation, known, asked)) {
    TableRun& run = Add(job, table.name);
    run.task.tableId = table.id;
    run.task.method = MethodFor(job, table);
    run.task.commandLine = JobLineOf(file_, job, access.connection, table.id, run.task.method);
    run.task.password = access.password;
  }
}

/// A database that is not reached is tried again as a job is.
std::vector<LocalTable> RunPlan::Registered(const JobSettings& job, const DatabaseSettings& database,
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

TableRun& RunPlan::Add(const JobSettings& job, const Text& table) {
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

void RunPlan::AddUnreached(const JobSettings& job, const DatabaseSettings& database, const std::vector<Text>& asked,
                           const Text& reason) {
  std::vector<Text> names = asked.empty() ? job.tables : asked;
  if (names.empty()) names = {"all"};
  for (const Text& name : names) {
    ConcludeUnstarted(Add(job, name), "the database \"" + database.name + "\" is not reached: " + reason);
  }
}

Method RunPlan::MethodFor(const JobSettings& job, const LocalTable& table) {
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

std::vector<Text> PasswordVariables(const JobFile& file) {
  std::vector<Text> names;
  for (const auto& [name, database] : file.databases) {
    const bool isVariable = database.password && database.password->kind == PasswordSource::Kind::Environment;
    if (isVariable) names.push_back(database.password->name);
  }
  return names;
}

int RestartsOf(const Environment& environment) {
  const Text count = environment.Value(kRestarts);
  const bool isNumber = !count.empty() && count.size() < 6 && count.find_first_not_of("0123456789") == Text::npos;
  return isNumber ? std::stoi(count) : 0;
}

}  // namespace zenqay
