// A run as people and programs follow it.
#pragma once

#include <functional>
#include <ostream>

#include "control/runner.h"
#include "system/terminal.h"

namespace zenqay {

/// "SITE", and "nightly SITE" where the tables of several jobs run.
Text TitleOf(const TableRun& run, bool hasSeveralJobs);
bool HaveSeveralJobs(const std::vector<TableRun>& runs);

/// The rows that a copy has come through so far: those met, until they are told those written.
std::int64_t RowsOf(const RowCounts& counts);

/// "12 rows met, 3 inserted, 2 updated, 1 deleted"
Text CountsText(const RowCounts& counts);

/// One line for each change, with the time of day.
class PlainView : public RunListener {
 public:
  PlainView(std::ostream& out, std::function<Text()> timeOfDay) : out_(out), timeOfDay_(std::move(timeOfDay)) {}

  void Changed(const std::vector<TableRun>& runs, std::size_t which) override;

 private:
  std::ostream& out_;
  std::function<Text()> timeOfDay_;
};

/// A line for each table, redrawn in place. Of more tables than there are lines, those that run are shown first.
class LiveView : public RunListener {
 public:
  LiveView(std::ostream& out, std::function<TerminalSize()> size) : out_(out), size_(std::move(size)) {}

  void Changed(const std::vector<TableRun>& runs, std::size_t) override { Draw(runs); }
  void Tick(const std::vector<TableRun>& runs) override { Draw(runs); }

 private:
  void Draw(const std::vector<TableRun>& runs);

  std::ostream& out_;
  std::function<TerminalSize()> size_;
  int drawn_ = 0;
};

/// The line of a table as it stands at a moment: state, rows, rows a second, time, and the end that is expected.
Text LiveLine(const TableRun& run, const Text& title, TableRun::Moment now);

/// A JSON object for each change, one a line.
class JsonView : public RunListener {
 public:
  JsonView(std::ostream& out, std::function<Text()> time) : out_(out), time_(std::move(time)) {}

  void Changed(const std::vector<TableRun>& runs, std::size_t which) override;

  /// The last line.
  void End(int status);

 private:
  std::ostream& out_;
  std::function<Text()> time_;
};

/// The view that serves whoever follows: JSON where it is asked for, lines that are redrawn on a terminal, plain lines
/// elsewhere.
class RunView : public RunListener {
 public:
  RunView(std::ostream& out, std::function<TerminalSize()> terminal, bool asJson);

  /// Shows the tables that have come to their end before anything was started.
  void Begin(const std::vector<TableRun>& runs);
  void Changed(const std::vector<TableRun>& runs, std::size_t which) override { view_->Changed(runs, which); }
  void Tick(const std::vector<TableRun>& runs) override { view_->Tick(runs); }
  void End(const std::vector<TableRun>& runs, int status);

 private:
  std::ostream& out_;
  JsonView json_;
  PlainView plain_;
  LiveView live_;
  RunListener* view_;
};

/// Behind the last line: what is not complete, why, what to do, and how many of each.
void WriteEnd(std::ostream& out, const std::vector<TableRun>& runs);

}  // namespace zenqay
