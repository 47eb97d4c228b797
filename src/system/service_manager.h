// Who started this process as a service.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// Tells the socket that NOTIFY_SOCKET names, as systemd reads it: "READY=1", "STOPPING=1". Does nothing without one.
void TellServiceManager(const Text& words);

}  // namespace zenqay
