// The check: what of a job's surroundings works, in the order in which a job meets it.
#pragma once

#include <ostream>

#include "components/component_catalogue.h"
#include "contracts/connection.h"
#include "contracts/platform.h"

namespace zenqay {

/// Checks what a job with this command line would need and writes to `out`, a line for each thing. Changes nothing:
/// neither logs nor a trace are written, and the database is only read. True when a job could run.
bool RunCheck(Platform& platform, ComponentCatalogue& catalogue, Database& database, const Text& commandLine,
              std::ostream& out);

}  // namespace zenqay
