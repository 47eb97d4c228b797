// What jobs would do to the tables of one database.
#pragma once

#include "control/plan/plan_warnings.h"
#include "control/runner.h"
#include "process/safeguards.h"

namespace zenqay {

/// What the sweep of a full copy would take.
struct PlannedSweep {
  std::int64_t rows = 0;
  std::int64_t of = 0;  // rows before the copy
  Text limit;           // in force for the table; empty without one
  bool isRefused = false;
};

/// A table and what its jobs would do to it.
struct TablePlan {
  Text database;  // its name in the job file
  Text table;
  std::vector<TableRun> runs;  // of the jobs that copy into it; none for one that only the warranty expiry changes
  TableDifferences differences;
  std::optional<std::int64_t> rewritten;  // rows that are written as they are; nothing where a run is not complete
  std::optional<PlannedSweep> sweep;      // of the last full copy that is complete
};

struct Plan {
  std::vector<TablePlan> tables;
  std::vector<PlanWarning> warnings;
  std::optional<int> signal;  // that broke it off
};

/// Runs the tables' jobs one after another on a copy of what they use, and adds what they changed to the plan. `runs`
/// are those of one database; where it does not give its tables they could not begin. A file that `keep` names gets the
/// tables as they are. Raises what the file system says.
void PlanDatabase(const JobFile& file, std::vector<TableRun> runs, RunnerSettings settings,
                  const DatabaseAccess& access, int examples, const Text& keep, Plan& plan);

/// Adds the tables of jobs that have come to their end before they began.
void AddUnbegun(const std::vector<TableRun>& runs, Plan& plan);

/// What zenqayctl ends with.
int ExitStatusOf(const Plan& plan);

}  // namespace zenqay
