// The one connection on which every statement of a job runs.
#pragma once

#include "process/modDeclarations.h"

namespace zenqay {

/// Opens a new LocalConnection without time limits, sets the date format and database or schema of the platform, and
/// settles CurrentDatabaseName. A failure passes to the caller, and LocalConnection may then hold a closed connection.
void OpenLocalConnection(modDeclarations& process, const Text& ConnectionString, const Text& LocalDatabase);

/// Closes LocalConnection; the object stays until the next open. A failure goes to the run log.
void CloseLocalConnection(modDeclarations& process);

/// Runs what makes a fresh connection ready on `platform`: the date format and the database on SQL Server, the schema
/// on Oracle. A blank `LocalDatabase` leaves the connection where it is.
void SelectDatabase(Connection& connection, std::int16_t platform, const Text& LocalDatabase);

}  // namespace zenqay
