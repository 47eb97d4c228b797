// The state of each table in `tstables`: whether a copy of it is running, and up to when its data is current.
//
// There is no atomic claim: the test and the set are two statements, so two processes that read at the same moment can
// both go on.
#pragma once

#include "process/modDeclarations.h"

namespace zenqay {

/// True when the table's row says that a copy is running. A failure is logged and raised again with 100 added to its
/// number and the table named.
bool IsCopyInProgress(modDeclarations& process, const Text& tableName);

/// Set and clear the flag; a table without a row gets one, with today's midnight as its update time. A clearing that
/// fails is named on standard error too, since the table may stay taken.
void SetCopyInProgress(modDeclarations& process, const Text& tableName);
void ReleaseCopyInProgress(modDeclarations& process, const Text& tableName);

/// Stores the update time, a literal as the date bridge makes it.
void SetLastUpdateTime(modDeclarations& process, const Text& tableName, const Text& lutm);

/// The update time as a new date object of the ERP, the shift by the time zone taken off again; 1 January 1970 at the
/// current time of day when there is none.
Object GetLastUpdateDate(modDeclarations& process, const Text& tableName);

}  // namespace zenqay
