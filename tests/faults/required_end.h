// What a job must leave when it is disturbed at one step: written down from what each phase of a copy promises.
//
//   start          nothing is touched and nobody is told; the start-up log says why
//   gate, taking   the table is free again, its rows and its update time are as they were, its failure is told
//   copy           the table is free again, with the rows that were applied before; its update time stands as it was,
//                  unless it was moved already; its failure is told and stands in its log twice
//   behind         rows and update time are new; its failure is told and stands in its log once
//   release        the table stays taken when its release was not done; the copy is told as complete
//   telling        what a status component fails with ends the job behind a table that is complete
#pragma once

#include "faults/demo_job.h"

namespace zenqay {

class RequiredEnd {
 public:
  /// Runs the job undisturbed and looks at its table behind each statement.
  RequiredEnd(const DemoDatabase& database, const DemoJob& job);

  const std::vector<Step>& steps() const { return steps_; }
  std::vector<std::size_t> StepsOf(Step::Kind kind) const;

  JobEnd Undisturbed() const;

  /// The end when the step fails with `error`; not for steps of a log.
  JobEnd OfFailure(std::size_t step, When when, const RuntimeError& error) const;

  /// What stands in the files when the process is killed at a statement.
  JobEnd OfKill(std::size_t step, When when) const;

  /// The end when a step of the summary in a table's log fails. `path` is that of the log.
  JobEnd OfFailedSummary(std::size_t step, const RuntimeError& error, const Text& path) const;

  /// True when the expiry of warranties may be out of date until the next full copy: the changes that it should follow
  /// count as copied, and are not listed again.
  bool LeavesExpiryBehind(std::size_t step, When when) const;

  /// What a job must say of a table that it finds taken.
  static std::vector<Text> HeardOfTaken(const Text& table);

  /// The rows of a table behind the undisturbed job, as a set.
  const Text& DistinctRows(const Text& table, bool withExpiry) const;

  /// The table that the step belongs to; "" for none.
  Text TableAt(std::size_t step) const;

 private:
  enum class Phase {
    Registry,
    DateLimits,
    Session,
    StatusComponent,
    Opening,
    Gate,
    Taking,
    TellingStart,
    MissingManager,
    Copy,
    UpdateTimeLiteral,
    Statistics,
    Expiry,
    Release,
    TellingEnd,
    Closing,
  };
  struct Place {
    Phase phase;
    std::size_t table;  // index; of the steps behind the last table, that one
    Text rows;          // of that table, behind the step
    bool isSummaryWritten;
    bool isUpdateTimeMoved;  // behind the step
  };

  void FindPlaces();
  void FindPlacesOfTable(std::size_t& step, std::size_t table);
  void MarkUpdateTimeLiteral(std::size_t begin, std::size_t statement);
  const Place& PlaceBehind(std::size_t step, When when) const;

  /// All tables up to this one complete, the others as they were before.
  JobEnd CompleteUpTo(std::size_t tables) const;
  JobEnd StartFailure(const RuntimeError& error) const;

  const DemoDatabase& database_;
  DemoJob job_;
  std::vector<Step> steps_;
  std::vector<Text> rowsBehind_;
  std::vector<Place> places_;
  JobEnd before_;
  JobEnd undisturbed_;
  std::map<Text, Text> distinctRows_;
  std::map<Text, Text> distinctRowsWithoutExpiry_;
};

}  // namespace zenqay
