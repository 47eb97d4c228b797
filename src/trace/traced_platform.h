// A log file and a platform that write the trace. They exist only while a trace is written.
#pragma once

#include <vector>

#include "contracts/platform.h"
#include "trace/trace.h"

namespace zenqay {

/// Writes a log record when its file is closed, with its lines, or when one of the three operations fails, with the
/// error.
class TracedLogFile : public LogFile {
 public:
  TracedLogFile(LogFile& inner, Trace& trace) : inner_(inner), trace_(trace) {}

  void Open(const Text& path) override;
  void WriteLine(const Text& line) override;
  void Close() override;

 private:
  template <typename Work>
  void Recorded(Work work);

  LogFile& inner_;
  Trace& trace_;
  Text path_;
  std::vector<Text> lines_;
};

/// Writes its message boxes and its log records.
class TracedPlatform : public Platform {
 public:
  TracedPlatform(Platform& inner, Trace& trace) : inner_(inner), trace_(trace), log_(inner.Log(), trace) {}

  DateTime Now() override { return inner_.Now(); }
  Text ProgramDirectory() override { return inner_.ProgramDirectory(); }
  void SetTitle(const Text& title) override { inner_.SetTitle(title); }
  void ShowMessageBox(const Text& text) override;
  LogFile& Log() override { return log_; }
  void StartLogging(const Text& target) override { inner_.StartLogging(target); }
  using Platform::NameCause;
  void NameCause(const Text& cause) override { inner_.NameCause(cause); }

 private:
  Platform& inner_;
  Trace& trace_;
  TracedLogFile log_;
};

}  // namespace zenqay
