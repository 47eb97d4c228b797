// Runs tables, one process each, side by side as far as they may.
#pragma once

#include <map>

#include "control/table_run.h"
#include "system/signal_watch.h"

namespace zenqay {

/// Who is told of a run as it goes.
class RunListener {
 public:
  virtual ~RunListener() = default;

  /// An attempt has been started, what there is to show has changed, or the table has come to its end or to a further
  /// attempt, which then is waiting.
  virtual void Changed(const std::vector<TableRun>& runs, std::size_t which) = 0;

  /// From time to time.
  virtual void Tick(const std::vector<TableRun>&) {}
};

/// Who writes a run down.
class RunRecord : public RunListener {
 public:
  /// Before anything is started; may tell the tables what is known of their last run.
  virtual void Begin(std::vector<TableRun>& runs) = 0;
  virtual void End(int status) = 0;
};

struct RunnerSettings {
  Text program;                  // that of the job
  std::map<Text, int> parallel;  // tables at the same time, by database
  std::vector<Text> withheld;    // variables of the environment that hold passwords
  Seconds grace{60};             // from asking a job to stop to ending it
  Seconds patience{5};           // requests within it count as one
  Seconds deadSessionWait{0};    // from the start, for a table whose lock a dead session may still hold
};

/// The waiting table that may start now, the first there is: one of its database's places is free, and no table that it
/// must follow is being copied. The places that are taken are those of all jobs.
std::optional<std::size_t> NextToStart(const std::vector<TableRun>& runs, const std::map<Text, int>& parallel,
                                       TableRun::Moment now);

/// Runs them all to their ends. Asked to stop by a signal, it asks each job once, starts nothing more, and gives the
/// signal's number; a further signal, later than the patience, is passed on, on which a job ends at once.
std::optional<int> RunTables(std::vector<TableRun>& runs, const RunnerSettings& settings, SignalWatch& signals,
                             const std::vector<RunListener*>& listeners);

}  // namespace zenqay
