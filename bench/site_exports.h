// The exports that the benchmarks of the table Site read.
#pragma once

#include "workplace.h"

namespace zenqay::bench {

/// All locations of generation 1.
void WriteLocations(const Workplace& place, long rows);

/// Changes of a tenth of them, made now.
void WriteLocationChanges(const Workplace& place, long rows);

}  // namespace zenqay::bench
