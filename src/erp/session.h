// The user session of the ERP's adapter.
#pragma once

#include "process/modDeclarations.h"

namespace zenqay {

/// The adapter must be newer than this.
inline constexpr double kLastRefusedVersion = 2.3;

/// The version of the installed adapter.
double AdapterVersion(modDeclarations& process);

/// Creates ErpSession unless it exists. False when the adapter is version 2.3 or older, which leaves ErpSession alone,
/// or when a step fails, which empties it and is recorded in the start-up log; a record that cannot be written raises.
bool OpenErpSession(modDeclarations& process);

/// Registers a manager, also an empty reference, with the session. Without a session nothing happens. Gives the manager
/// to go on with, which the session may have put in the place of the one that it was handed.
Object RegisterManager(modDeclarations& process, const Object& manager);

}  // namespace zenqay
