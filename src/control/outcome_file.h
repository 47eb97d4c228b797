// What a run leaves behind for a history that is not its own: a file with what has become of its tables so far.
#pragma once

#include "control/commands.h"
#include "control/history.h"
#include "control/runner.h"

namespace zenqay {

struct RunOutcome {
  std::vector<TableOutcome> tables;
  std::optional<int> status;  // what zenqayctl ended with; nothing before its end
  int restarts = 0;           // how often the batch system has begun it anew
};

/// Nothing for a file that is missing, and for one that no run has written.
std::optional<RunOutcome> ReadOutcome(const Text& path);

/// Writes the file anew at each change. A file that cannot be written stops no job.
class OutcomeRecord : public RunRecord {
 public:
  OutcomeRecord(Text path, Surroundings& surroundings);

  void Begin(std::vector<TableRun>& runs) override;
  void Changed(const std::vector<TableRun>& runs, std::size_t which) override;
  void End(int status) override;

 private:
  void Take(const TableRun& run, std::size_t which);
  void Write();

  Text path_;
  Surroundings& surroundings_;
  RunOutcome outcome_;
  bool hasFailed_ = false;
};

}  // namespace zenqay
