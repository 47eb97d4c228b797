// A log file that may not be opened.
#pragma once

#include "base/runtime_error.h"
#include "contracts/log_file.h"

namespace zenqay {

/// Refuses every record with 70, whose description names the path that was asked for. Nothing is written anywhere.
class RefusingLogFile : public LogFile {
 public:
  void Open(const Text& path) override { throw RuntimeError(PlatformFault::PermissionDenied, path); }
  void WriteLine(const Text&) override {}
  void Close() override {}
};

}  // namespace zenqay
