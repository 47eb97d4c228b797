// The log files: the run log of a table's copy and the start-up log.
//
// Each function opens its file, writes one record and closes it. Each raises what opening or writing fails with; a
// write that failed leaves the one log handle open, so that the next record fails with 55.
#pragma once

#include "process/modDeclarations.h"

namespace zenqay {

/// Appends the summary of a table's copy to the run log.
void WriteTableRunLog(modDeclarations& process, const Text& tableName, std::int32_t icount, std::int32_t ucount,
                      std::int32_t dcount);

/// Appends a failure to the run log: what the provider reported since the last record, which is then cleared, and the
/// error itself. Where the record cannot be written, the error is named on standard error before the new one is raised.
void WriteErrorLog(modDeclarations& process, const RuntimeError& error);

/// Appends a failure to ZenqayDBSync.log in the directory; "C:" stands for a blank one. An error that cannot be written
/// is named on standard error.
void WriteStartupErrorLog(modDeclarations& process, const Text& directory, const RuntimeError& error);

}  // namespace zenqay
