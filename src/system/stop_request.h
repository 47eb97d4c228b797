// The signals that ask the job to stop.
#pragma once

#include "contracts/interruption.h"

namespace zenqay {

/// From here on SIGTERM, SIGINT and SIGHUP ask the process to stop. Those that come within five seconds of the first
/// are the same request; a later one ends the process at once, as it would have without this. A signal that the process
/// was started to ignore stays ignored.
void ListenForStopRequests();

/// Asks without a signal.
void RequestStop();

bool IsStopRequested();

/// The interruption of a process that listens.
class StopRequest : public Interruption {
 public:
  bool isRequested() const override { return IsStopRequested(); }
};

}  // namespace zenqay
