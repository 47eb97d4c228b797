// The batch system that this machine belongs to: Slurm, through its commands.
#pragma once

#include "control/credentials.h"

namespace zenqay {

/// What the batch system says of a task that it still knows.
struct BatchTask {
  Text state;   // "PENDING", "RUNNING", "NODE_FAIL"
  Text node;    // empty while it has none
  Text reason;  // why it is in that state; empty for none

  /// True when nothing of the task runs and it is not begun again.
  bool HasEnded() const;

  /// "queued: Priority", "running on n2", "node_fail on n2: NodeDown"
  Text Words() const;
};

/// Its tasks, each by the number of its array and its own: "0_3".
using BatchTasks = std::map<Text, BatchTask>;

/// All raise what the command said, and that it is missing, gave no answer in time, or said what cannot be read.
/// Neither the commands nor the jobs that they hand over are given more of the environment than what jobs need to find
/// their programs, libraries and drivers: a variable may hold a password.
class BatchSystem {
 public:
  explicit BatchSystem(const Environment& environment) : environment_(environment) {}

  /// Hands over a script. The options are those of sbatch. Gives its number.
  Text Submit(const Text& script, const std::vector<Text>& options) const;

  /// The tasks of this user's jobs of these names, by name.
  std::map<Text, BatchTasks> TasksOf(const std::vector<Text>& names) const;

  /// The node that this machine is; the first, where it is several. Empty when it is none.
  Text NodeOf(const Text& host) const;

 private:
  Text Run(const Text& program, const std::vector<Text>& arguments, const Text& input, Seconds atMost) const;

  Environment environment_;
};

/// The last line that is not blank, in which a command says what matters most.
Text LastLine(const Text& text);

/// The text as one word of a shell.
Text ShellWord(const Text& text);

}  // namespace zenqay
