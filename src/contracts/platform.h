// What the operating system gives the job.
#pragma once

#include "base/date_time.h"
#include "base/runtime_error.h"
#include "contracts/log_file.h"

namespace zenqay {

/// Paths are composed with "\" and stay so in every text.
class Platform {
 public:
  virtual ~Platform() = default;

  /// The local wall clock.
  virtual DateTime Now() = 0;

  /// The directory of the program, without a separator at its end.
  virtual Text ProgramDirectory() = 0;

  virtual void SetTitle(const Text& title) = 0;

  /// Shows a text and returns; there is nobody to press a button.
  virtual void ShowMessageBox(const Text& text) = 0;

  /// The one handle on which every log record is written.
  virtual LogFile& Log() = 0;

  /// Where the platform puts its own log entries from now on: the causes that are named. The job itself writes none.
  virtual void StartLogging(const Text& target) = 0;

  /// Names, for whoever reads standard error and the platform's log, the cause of a failure that the logs cannot show.
  virtual void NameCause(const Text& cause) = 0;

  /// Names an error that no log will show: its number, source and description, in one line.
  void NameCause(const RuntimeError& error);
};

}  // namespace zenqay
