// Whether the components that a job creates can be created. Of the ERP nothing is read but the adapter's version, no
// session is opened, and the status component is told nothing.
#pragma once

#include "check/job_line.h"

namespace zenqay {

/// The components that every job needs; `line` is null when the command line could not be read.
void CheckErp(modDeclarations& process, const JobLine* line, CheckReport& report);

/// The manager of one table.
void CheckManager(modDeclarations& process, const Text& tableName, CheckReport& report);

}  // namespace zenqay
