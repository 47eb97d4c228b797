#include "slurm_cluster.h"

#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "doubles/file_content.h"

namespace zenqay {

SlurmCluster::SlurmCluster() {
  Manage("start");
}

SlurmCluster::~SlurmCluster() {
  try {
    Manage("stop");
  } catch (const std::runtime_error&) {
    // what is left says why in its logs
  }
}

void SlurmCluster::KillController() const {
  const std::filesystem::path state = directory_.path() / "state/job_state";
  const auto writtenAt = [&] {
    std::error_code missing;
    return std::filesystem::last_write_time(state, missing);
  };
  const auto before = writtenAt();
  Say("sbatch --output=/dev/null --wrap=true");  // something to write down
  while (writtenAt() <= before) ::usleep(10000);
  Manage("kill-controller");
}

Text SlurmCluster::Say(const Text& command) const {
  const Text output = (directory_.path() / "said").string();
  const Text line = "SLURM_CONF=" + configuration() + " " + command + " >" + output + " 2>&1";
  if (std::system(line.c_str()) != 0) throw std::runtime_error(command + ": " + ContentOf(output));
  return ContentOf(output);
}

void SlurmCluster::Manage(const Text& deed, const Text& node) const {
  const Text output = (directory_.path() / "managed").string();
  const Text line = ZENQAY_LOCAL_CLUSTER " " + deed + " " + directory_.path().string() + " " + node + " >" + output +
                    " 2>&1 </dev/null";
  if (std::system(line.c_str()) != 0) throw std::runtime_error(deed + ": " + ContentOf(output));
}

}  // namespace zenqay
