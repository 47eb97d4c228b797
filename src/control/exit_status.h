// What zenqayctl ends with.
#pragma once

#include "base/runtime_error.h"

namespace zenqay {

/// The first that applies stands: wrong usage, a signal (128 and its number), the timeout, then what became of the
/// tables.
inline constexpr int kAllComplete = 0;
inline constexpr int kTableFailed = 1;
inline constexpr int kWrongUsage = 2;
inline constexpr int kTableInUse = 3;
inline constexpr int kCouldNotBegin = 4;
inline constexpr int kWouldChange = 5;  // of a plan alone
inline constexpr int kTimedOut = 124;
inline constexpr int kStoppedBySignal = 128;

/// The command line or the job file asks for what there is not; nothing was started.
class WrongUsage : public RuntimeError {
 public:
  explicit WrongUsage(Text description) : RuntimeError(kWrongUsage, "zenqayctl", std::move(description)) {}
};

}  // namespace zenqay
