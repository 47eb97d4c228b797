// Breaking a pass off.
#pragma once

#include <atomic>

#include "base/runtime_error.h"

namespace zenqay {

/// Whether the job has been asked to stop, and whether it may be broken off where it is. Between the taking of a table
/// and its release it may: the next statement or component call raises 18. Nowhere else: a failure path and a release
/// run whole.
///
/// This one is never asked; a process that can be asked has a class of its own.
class Interruption {
 public:
  virtual ~Interruption() = default;

  /// Looked at in front of each statement and call, so it must be cheap.
  virtual bool isRequested() const { return false; }

  /// The same for one who waits, and can take the time to look further.
  virtual bool IsRequestedMeanwhile() { return isRequested(); }

  void Allow() { isAllowed_.store(true, std::memory_order_relaxed); }
  void Forbid() { isAllowed_.store(false, std::memory_order_relaxed); }

  /// Raises 18 where the pass is to be broken off.
  void Check() const {
    if (isAllowed() && isRequested()) throw RuntimeError(PlatformFault::UserInterrupt);
  }

  /// For a failure path behind which a pass goes on: raises 18 again, since nothing goes on behind that.
  static void LetThrough(const RuntimeError& error) {
    if (error.number() == static_cast<std::int32_t>(PlatformFault::UserInterrupt)) throw error;
  }

  /// True where what a statement waits for is to be waited for no longer.
  bool EndsWait() { return isAllowed() && IsRequestedMeanwhile(); }

 private:
  bool isAllowed() const { return isAllowed_.load(std::memory_order_relaxed); }

  std::atomic<bool> isAllowed_ = false;  // a statement's wait may be watched from another thread
};

}  // namespace zenqay
