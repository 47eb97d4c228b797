// Signals as something to wait for, so that nothing runs in the middle of anything else.
#pragma once

#include <optional>

namespace zenqay {

/// As long as it lives, the signals that ask a program to stop (SIGINT, SIGTERM, SIGHUP) and the end of a child do not
/// interrupt this process but are read from here. There is one at a time.
class SignalWatch {
 public:
  SignalWatch();
  SignalWatch(const SignalWatch&) = delete;
  SignalWatch& operator=(const SignalWatch&) = delete;
  ~SignalWatch();

  /// To wait for.
  int descriptor() const { return descriptor_; }

  /// Takes what has arrived: the number of the last signal that asks to stop, nothing when none does.
  std::optional<int> TakeStop();

 private:
  int descriptor_ = -1;
};

}  // namespace zenqay
