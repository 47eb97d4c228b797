// A Slurm cluster of a test's own.
#pragma once

#include "base/text_functions.h"
#include "doubles/temp_directory.h"

namespace zenqay {

/// Three nodes, n1 to n3, on this machine, as long as the object lives. Needs the super-user. Throws std::runtime_error
/// when it does not come up.
class SlurmCluster {
 public:
  SlurmCluster();
  SlurmCluster(const SlurmCluster&) = delete;
  SlurmCluster& operator=(const SlurmCluster&) = delete;
  ~SlurmCluster();

  /// What names it to Slurm's commands: the value of SLURM_CONF.
  Text configuration() const { return directory_.path().string() + "/slurm.conf"; }

  /// Ends a node with all that runs on it, at once; the controller is told.
  void KillNode(const Text& node) const { Manage("kill-node", node); }

  /// Ends the controller once it has written down what it knows, which it does some seconds behind.
  void KillController() const;
  void StartController() const { Manage("start-controller"); }

  /// What one of Slurm's commands says, as a shell runs it.
  Text Say(const Text& command) const;

 private:
  void Manage(const Text& deed, const Text& node = "") const;

  TempDirectory directory_;
};

}  // namespace zenqay
