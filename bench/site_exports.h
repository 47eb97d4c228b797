// The exports that the benchmarks of the table Site read.
#pragma once

#include "workplace.h"

namespace zenqay::bench {

/// All locations of generation 1.
void WriteLocations(const Workplace& place, long rows);

/// The same with another description each.
void WriteChangedLocations(const Workplace& place, long rows);

/// Changes of a tenth of them, made now.
void WriteLocationChanges(const Workplace& place, long rows);

/// The exports of seven tables under generation 3, of two more under 1, and of the tenth under 8. Objects and
/// warranties have a quarter of the rows.
void WriteExportsOfTenTables(const Workplace& place, long rows);

}  // namespace zenqay::bench
