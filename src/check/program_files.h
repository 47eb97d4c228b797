// What stands beside the program: its texts, and who serves the components.
#pragma once

#include "check/check_report.h"
#include "process/modDeclarations.h"

namespace zenqay {

/// Looks for the texts. A text that is missing stops no job: its key stands in its place.
void CheckLabels(modDeclarations& process, CheckReport& report);

/// Looks whether the component catalogue can be used. False when it cannot.
bool CheckComponents(modDeclarations& process, CheckReport& report);

/// Looks whether a job could write the trace, where one is asked for; the file stays as it is.
void CheckTrace(const Text& file, CheckReport& report);

/// Says the limits of sweeps, where there are some.
void TellSweepLimit(const SweepLimits& sweep, CheckReport& report);

}  // namespace zenqay
