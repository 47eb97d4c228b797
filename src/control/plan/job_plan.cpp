#include "control/plan/job_plan.h"

#include <algorithm>
#include <filesystem>

#include "check/copied_tables.h"
#include "check/undated_objects.h"
#include "components/safeguard_elements.h"
#include "control/derived_home.h"
#include "control/exit_status.h"
#include "control/job_command.h"
#include "engines/databases.h"
#include "system/signal_watch.h"

namespace zenqay {
namespace {

/// The limits that the home of a job names.
SweepLimits LimitsIn(const Text& home) {
  const Text path = home + "/Components.xml";
  pugi::xml_document components;
  if (!ReadXmlFile(path, components)) return {};
  const pugi::xml_node sweep = components.document_element().child("SWEEP");
  return sweep ? ReadSweep(CatalogueElement(home, path, sweep)) : SweepLimits{};
}

/// The jobs of one database, and where they work.
class DatabasePlan {
 public:
  DatabasePlan(const JobFile& file, std::vector<TableRun> runs, const DatabaseAccess& access)
      : file_(file),
        runs_(std::move(runs)),
        platform_(DatabaseOf(runs_.front()).platform),
        scratch_(DatabaseOf(runs_.front()), access, TablesNamed()) {}

  const Text& before() const { return scratch_.before(); }

  /// Limits are those of the homes that a run would have.
  std::optional<int> Run(RunnerSettings settings) {
    settings.parallel = {{runs_.front().task.database, 1}};
    for (TableRun& run : runs_) PutOnScratch(run);
    SignalWatch signals;
    return RunTables(runs_, settings, signals, {});
  }

  void Report(int examples, Plan& plan) {
    const auto connection = std::make_shared<EngineConnection>();
    connection->PutConnectionString(scratch_.ConnectionString());
    connection->Open();
    AttachBefore(*connection, scratch_.before());
    Add(scratch_.warnings(), plan);
    for (const Text& table : Compared()) AddTable(*connection, table, examples, plan);
    for (const TableRun& run : runs_) Add(WarningsOfFailures(run), plan);
    if (std::ranges::any_of(runs_, [this](const TableRun& run) { return EndsInExpiry(run); })) {
      Add(WarningsOfExpiry(*connection, scratch_.databaseKind()), plan);
      AddUndated(connection, plan);
    }
  }

 private:
  const JobSettings& JobOf(const TableRun& run) const { return file_.Job(run.task.job); }
  const DatabaseSettings& DatabaseOf(const TableRun& run) const { return file_.databases.at(run.task.database); }
  const ErpSettings& ErpOf(const TableRun& run) const { return file_.ErpOf(JobOf(run)); }

  bool EndsInExpiry(const TableRun& run) const {
    return EndsInWarrantyExpiry(run.task.table, ErpOf(run).generation, platform_);
  }

  std::vector<Text> TablesNamed() const {
    std::vector<Text> tables;
    for (const TableRun& run : runs_) {
      for (const Text& table : TablesNamedBy(run.task.table, ErpOf(run).generation, platform_)) tables.push_back(table);
    }
    return tables;
  }

  /// The same job with the copy for its database, and nothing else that anybody would see.
  void PutOnScratch(TableRun& run) {
    const JobSettings& job = JobOf(run);
    limits_.push_back(run.task.sweepLimit.empty() ? LimitsIn(run.task.home) : SweepLimits{});
    homes_.push_back(std::make_unique<DerivedHome>(file_.ErpOf(job)));
    JobSettings quiet = job;
    quiet.logs = scratch_.logs();
    quiet.hasStatusComponent = false;
    run.task.home = homes_.back()->path();
    run.task.logs = quiet.logs;
    run.task.sweepLimit.clear();
    run.task.commandLine = JobLineOf(file_, quiet, scratch_.ConnectionString(), run.task.tableId, run.task.method);
  }

  /// Tables that are copied into, and those that the expiry changes, once each, in the order of the jobs.
  std::vector<Text> Compared() const {
    std::vector<Text> tables;
    const auto add = [&](const Text& table) {
      const auto isSame = [&](const Text& other) { return EqualsIgnoringCase(table, other); };
      if (HasCopy(table) && std::ranges::none_of(tables, isSame)) tables.push_back(table);
    };
    for (const TableRun& run : runs_) add(run.task.table);
    for (const Text& table : TablesNamed()) add(table);
    return tables;
  }

  /// That of the job that copies into the table, else of one whose ERP has what it is copied from.
  Text GenerationOf(const Text& table) const {
    const auto copies = [&](const TableRun& run) { return EqualsIgnoringCase(run.task.table, table); };
    const auto knows = [&](const TableRun& run) { return HasCopy(table, ErpOf(run).generation); };
    auto found = std::ranges::find_if(runs_, copies);
    if (found == runs_.end()) found = std::ranges::find_if(runs_, knows);
    return found == runs_.end() ? "" : ErpOf(*found).generation;
  }

  void AddTable(Connection& connection, const Text& table, int examples, Plan& plan) {
    TablePlan planned{.database = runs_.front().task.database, .table = table};
    const Text generation = GenerationOf(table);
    const ComparedTable compared = {
        .name = table, .key = KeyColumnsOf(table, generation), .copied = CopiedColumnsOf(table, generation)};
    planned.differences = Compare(connection, compared, examples);
    for (std::size_t i = 0; i < runs_.size(); ++i) {
      if (EqualsIgnoringCase(runs_[i].task.table, table)) AddRun(runs_[i], limits_[i], planned);
    }
    planned.rewritten = RewrittenIn(planned);
    if (planned.runs.empty() && planned.differences.count() == 0) return;
    Add(WarningsOfWays(connection, compared, scratch_.databaseKind()), plan);
    plan.tables.push_back(std::move(planned));
  }

  /// A pass that fails has not come to its sweep, or the sweep itself has failed.
  static void AddRun(const TableRun& run, const SweepLimits& limits, TablePlan& planned) {
    const bool sweeps = run.task.method == Method::Full && run.state == TableState::Complete;
    if (sweeps) planned.sweep = SweepOf(run, limits, planned.differences.rows);
    planned.runs.push_back(run);
  }

  /// A pass that fails has not come to all of its rows.
  static std::optional<std::int64_t> RewrittenIn(const TablePlan& planned) {
    std::int64_t updated = 0;
    for (const TableRun& run : planned.runs) {
      if (run.state != TableState::Complete) return {};
      updated += run.passCounts.updated;
    }
    return std::max<std::int64_t>(updated - planned.differences.changedByCopy, 0);
  }

  static PlannedSweep SweepOf(const TableRun& run, const SweepLimits& limits, std::int64_t before) {
    PlannedSweep sweep = {.rows = run.passCounts.deleted, .of = before};
    if (const SweepLimit* limit = limits.For(run.task.table)) {
      sweep.limit = limit->text();
      sweep.isRefused = sweep.rows >= limits.from && limit->IsExceededBy(sweep.rows, before);
    }
    return sweep;
  }

  void AddUndated(const std::shared_ptr<Connection>& connection, Plan& plan) const {
    LocalDatabases databases;
    const Text undated = UndatedObjects(databases, connection);
    if (!undated.empty()) plan.warnings.push_back({"OBJECT", undated});
  }

  static void Add(const std::vector<PlanWarning>& warnings, Plan& plan) {
    plan.warnings.insert(plan.warnings.end(), warnings.begin(), warnings.end());
  }

  const JobFile& file_;
  std::vector<TableRun> runs_;
  const std::int16_t platform_;
  ScratchCopy scratch_;
  std::vector<std::unique_ptr<DerivedHome>> homes_;
  std::vector<SweepLimits> limits_;  // those of the runs
};

bool IsRefused(const TablePlan& table) {
  return table.sweep && table.sweep->isRefused;
}

/// Others are not to read it, as they may not read the database.
void Keep(const Text& before, const Text& keep) {
  namespace fs = std::filesystem;
  fs::permissions(before, fs::perms::owner_read | fs::perms::owner_write);
  std::error_code fault;
  fs::copy_file(before, keep, fault);
  if (!fault) return;
  std::error_code ignored;
  if (fault != std::errc::file_exists) fs::remove(keep, ignored);  // nobody needs a half of it
  throw RuntimeError(PlatformFault::PathAccess, keep + ": " + fault.message());
}

}  // namespace

void PlanDatabase(const JobFile& file, std::vector<TableRun> runs, RunnerSettings settings,
                  const DatabaseAccess& access, int examples, const Text& keep, Plan& plan) {
  std::optional<DatabasePlan> database;
  try {
    database.emplace(file, runs, access);
  } catch (const RuntimeError& error) {
    for (TableRun& run : runs) ConcludeUnstarted(run, "its tables cannot be read: " + error.description());
    AddUnbegun(runs, plan);
    return;
  }
  if (!keep.empty()) Keep(database->before(), keep);
  plan.signal = database->Run(std::move(settings));
  if (!plan.signal) database->Report(examples, plan);
}

void AddUnbegun(const std::vector<TableRun>& runs, Plan& plan) {
  for (const TableRun& run : runs) {
    plan.tables.push_back({.database = run.task.database, .table = run.task.table, .runs = {run}});
  }
}

int ExitStatusOf(const Plan& plan) {
  std::vector<TableRun> runs;
  for (const TablePlan& table : plan.tables) runs.insert(runs.end(), table.runs.begin(), table.runs.end());
  const int status = ExitStatusOf(runs, plan.signal);
  if (status != kAllComplete) return status;
  if (std::ranges::any_of(plan.tables, IsRefused)) return kTableFailed;
  const bool changes = std::ranges::any_of(plan.tables, [](const TablePlan& t) { return t.differences.count() > 0; });
  return changes ? kWouldChange : kAllComplete;
}

}  // namespace zenqay
