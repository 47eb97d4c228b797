// The platform of a real process.
#pragma once

#include "contracts/platform.h"
#include "system/append_file.h"

namespace zenqay {

class OsPlatform : public Platform {
 public:
  /// Takes the process's arguments. Standard streams that are closed are opened on the null device, so that no file of
  /// the job ever gets their numbers, and a closed pipe or a file that may not grow is an error of the write, not the
  /// end of the process.
  OsPlatform(int argc, char** argv);

  /// The arguments, joined with single blanks. They are then wiped out of the process's memory, since the connection
  /// string, with its password, would stand in every process list. Where "-" is the only one, what standard input holds
  /// to its end, less one line end there; that stands in no list at any time. Raises 75 when it cannot be read.
  Text TakeCommandLine();

  DateTime Now() override;

  /// The directory named by ZENQAY_HOME, or the one that the program stands in.
  Text ProgramDirectory() override { return programDirectory_; }

  void SetTitle(const Text& title) override;
  void ShowMessageBox(const Text& text) override;
  LogFile& Log() override { return log_; }

  /// The file is created when the first cause is named.
  void StartLogging(const Text& target) override { logTarget_ = target; }
  using Platform::NameCause;
  void NameCause(const Text& cause) override;

 private:
  void AppendToPlatformLog(const Text& cause);

  int argc_;
  char** argv_;
  char* argumentsEnd_;
  Text programDirectory_;
  AppendFile log_;
  Text logTarget_;  // empty until StartLogging
  Text lastCause_;
};

}  // namespace zenqay
