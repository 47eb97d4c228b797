// What a plan on the embedded engine cannot show by itself.
#pragma once

#include "control/plan/scratch_copy.h"
#include "control/plan/table_differences.h"
#include "control/table_run.h"

namespace zenqay {

/// What a database of this kind does otherwise than the embedded engine with the rows that the job wrote: rows whose
/// keys differ by the case of letters or by blanks at the end alone, texts that are empty. To be asked right behind the
/// comparison of the table, on its connection.
std::vector<PlanWarning> WarningsOfWays(Connection& connection, const ComparedTable& table, const Text& databaseKind);

/// Objects whose warranty is found only because the embedded engine compares patterns without regard to case.
std::vector<PlanWarning> WarningsOfExpiry(Connection& connection, const Text& databaseKind);

/// What a limit that the scratch file has from the real table says of the failures of a job.
std::vector<PlanWarning> WarningsOfFailures(const TableRun& run);

}  // namespace zenqay
