#include <algorithm>
#include <filesystem>

#include "control/commands.h"
#include "control/exit_status.h"
#include "control/plan/plan_report.h"
#include "control/run_json.h"
#include "control/run_plan.h"
#include "system/output_file.h"

namespace zenqay {
namespace {

/// The tables of a run by their databases, in the order in which a run comes to them.
std::vector<std::vector<TableRun>> ByDatabase(const std::vector<TableRun>& runs) {
  std::vector<std::vector<TableRun>> groups;
  for (const TableRun& run : runs) {
    const auto group =
        std::ranges::find_if(groups, [&](const auto& one) { return one.front().task.database == run.task.database; });
    if (group == groups.end()) {
      groups.push_back({run});
    } else {
      group->push_back(run);
    }
  }
  return groups;
}

/// A table of a database that is not reached has come to its end before it began.
bool IsReached(const std::vector<TableRun>& runs) {
  return std::ranges::none_of(runs, [](const TableRun& run) { return IsEnd(run.state); });
}

void RequireKeepable(const Text& keep, std::size_t databases) {
  if (keep.empty()) return;
  if (databases > 1) throw WrongUsage("--keep: the jobs have several databases, and a file can hold one");
  std::error_code ignored;
  if (std::filesystem::exists(keep, ignored)) throw WrongUsage("--keep: " + keep + " exists; nothing was changed");
  const Text directory = std::filesystem::absolute(keep).parent_path().string();
  if (!std::filesystem::is_directory(directory, ignored)) throw WrongUsage("--keep: " + directory + " is no directory");
  if (!MayWriteIn(directory)) throw WrongUsage("--keep: " + directory + " cannot be written");
}

}  // namespace

int PlanJobs(const JobFile& file, const PlanOptions& options, Surroundings& surroundings) {
  const RunPlan asked(file, options.run, surroundings);
  const std::vector<std::vector<TableRun>> databases = ByDatabase(asked.runs);
  RequireKeepable(options.keep, databases.size());
  Plan plan;
  for (const std::vector<TableRun>& runs : databases) {
    if (!IsReached(runs)) {
      AddUnbegun(runs, plan);
      continue;
    }
    const DatabaseSettings& database = file.databases.at(runs.front().task.database);
    const DatabaseAccess access = AccessTo(file, database, surroundings.environment);
    PlanDatabase(file, runs, asked.Settings(), access, options.examples, options.keep, plan);
    if (plan.signal) break;
  }
  const int status = ExitStatusOf(plan);
  if (options.run.json) {
    surroundings.out << JsonText(PlanJson(plan)) << std::endl;
  } else if (!plan.signal) {
    WritePlan(surroundings.out, plan);
  }
  return status;
}

}  // namespace zenqay
