// A program that is started, listened to and ended.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// How a process ended: by a status of its own, or by a signal.
struct ProcessEnd {
  int status = 0;
  int signal = 0;  // 0 when it ended by itself

  bool operator==(const ProcessEnd&) const = default;

  /// "ended with 70", "was ended by signal 11 (Segmentation fault)"
  Text Words() const;
};

/// How a program is started.
struct ChildStart {
  Text program;
  std::vector<Text> arguments;
  Text input;  // all of its standard input; it stands in memory alone and in no list of processes
  std::map<Text, std::optional<Text>> environment;  // what differs from this process's: set, or taken out
  Text channelVariable;                             // tells the program the number of its end of the channel
  bool listensToOutput = false;                     // its standard output arrives on the channel
};

/// A process in a group of its own, so that a terminal's Ctrl-C does not reach it, which is asked to stop (SIGTERM)
/// when the thread that started it ends, with this process at the latest, in whatever way. Its standard output is
/// dropped where nobody listens to it, and it leaves no core file.
class ChildProcess {
 public:
  /// Raises 53 or 70, naming the program, when it cannot be started.
  explicit ChildProcess(const ChildStart& start);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// A process that still runs is ended at once, with all that it started.
  ~ChildProcess();

  int pid() const { return pid_; }

  /// To wait for and to read from, without ever standing still: the channel, and standard error. -1 once closed.
  int channel() const { return channel_; }
  int errors() const { return errors_; }

  /// Reads what has arrived. At the end of the stream it is closed.
  void ReadChannel(Text& into) { Read(channel_, into); }
  void ReadErrors(Text& into) { Read(errors_, into); }

  /// Asks it to stop, and ends it at once with all that it started.
  void Ask() const;
  void Kill() const;

  /// How it ended; nothing while it runs.
  std::optional<ProcessEnd> Ended();

 private:
  static void Read(int& descriptor, Text& into);

  int pid_ = -1;
  int channel_ = -1;
  int errors_ = -1;
  std::optional<ProcessEnd> end_;
};

/// What a program said, and how it ended.
struct ProgramRun {
  Text output;
  Text errors;
  ProcessEnd end;
  bool isOutOfTime = false;  // it was ended after the time given
};

/// Runs a program to its end, for so long at most. Raises as ChildProcess does.
ProgramRun RunProgram(ChildStart start, std::chrono::milliseconds atMost);

/// The first file of this name that may be run in the directories of a PATH; empty when there is none.
Text FindProgram(const Text& name, const Text& path);

/// What a deed said in a process of its own, a copy of this one, and how that ended.
struct CopyRun {
  Text output;
  ProcessEnd end;
};

/// Runs the deed, which gets the descriptor to write to and whose result becomes the status of the copy. What the copy
/// writes to its standard output is dropped.
CopyRun RunInCopy(const std::function<int(int output)>& deed);

/// Descriptors that can be read from, or have ended, of those given (-1 is passed over); none after the time given.
std::vector<int> WaitForInput(const std::vector<int>& descriptors, int milliseconds);

}  // namespace zenqay
