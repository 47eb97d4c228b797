// Whether the components that a job creates can be created and would take its calls. Of an adapter nothing is read but
// its version, no session is opened, and the status component is told nothing.
#pragma once

#include "check/job_line.h"

namespace zenqay {

/// The components that every job needs; `line` is null when the command line could not be read.
void CheckErp(modDeclarations& process, const JobLine* line, CheckReport& report);

/// The manager of one table, with the listing that the job asks it for. Exports are read to their end; a component of
/// Java is not called.
void CheckManager(modDeclarations& process, const JobLine& line, const Text& tableName, CheckReport& report);

}  // namespace zenqay
