#include "control/clock_change.h"

#include "system/own_process.h"

namespace zenqay {

std::int64_t SecondsSince1970(DateTime utc) {
  constexpr std::int64_t kFromZeroDate = std::int64_t{25569} * 86400;
  return utc.seconds() - kFromZeroDate;
}

bool ClockWentForward(DateTime updatedUtc, std::int64_t now) {
  return ClockOffsetAt(now) > ClockOffsetAt(SecondsSince1970(updatedUtc));
}

}  // namespace zenqay
