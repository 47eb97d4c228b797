// The signals that ask the job to stop.
#pragma once

#include "contracts/interruption.h"
#include "system/channel_descriptor.h"

namespace zenqay {

/// From here on SIGTERM, SIGINT and SIGHUP ask the process to stop. Those that come within five seconds of the first
/// are the same request; a later one ends the process at once, as it would have without this. A signal that the process
/// was started to ignore stays ignored.
void ListenForStopRequests();

/// Asks without a signal.
void RequestStop();

bool IsStopRequested();

/// The interruption of a process that listens. Who started it and is gone counts as having asked.
class StopRequest : public Interruption {
 public:
  bool isRequested() const override { return IsStopRequested(); }
  bool IsRequestedMeanwhile() override;

  /// The channel to who started the process; it must outlive the waits of the last statement.
  void Watch(const ChannelDescriptor& channel) { channel_ = &channel; }

 private:
  const ChannelDescriptor* channel_ = nullptr;
};

}  // namespace zenqay
