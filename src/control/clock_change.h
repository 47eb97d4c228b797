// What a change of the clock does to an only-changed pass.
#pragma once

#include <cstdint>

#include "base/date_time.h"

namespace zenqay {

/// Seconds since 1970 of a date-time that stands in UTC.
std::int64_t SecondsSince1970(DateTime utc);

/// True when the local clock has gone forward between the two moments. An only-changed pass asks the ERP from the
/// table's update time with the zone's offset of now: the changes of as much time behind the update as the clock went
/// forward are then missed.
bool ClockWentForward(DateTime updatedUtc, std::int64_t now);

}  // namespace zenqay
