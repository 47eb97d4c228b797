// What the page does beside showing.
#pragma once

#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <ostream>
#include <vector>

#include "control/commands.h"
#include "control/page/table_watch.h"
#include "system/child_process.h"

namespace zenqay {

/// What became of an action: true with what was done, false with why it was not.
struct ActionEnd {
  bool isDone = false;
  Text words;
};

class PageActions {
 public:
  virtual ~PageActions() = default;

  virtual ActionEnd StartJob(const Text& job) = 0;

  /// As zenqayctl unlock without --force.
  virtual ActionEnd Unlock(const JobFile& file, const Text& job, const Text& table) = 0;
};

/// Runs are processes of their own that end with this one: when it goes they are asked to stop, and waited for. They
/// are started by the thread that attends, since a process is asked to stop when the thread that started it ends.
class StartedRuns : public PageActions {
 public:
  /// `program` is zenqayctl, `file` the job file that the runs are started with.
  StartedRuns(Text program, Text file, TableWatch& tables, const Surroundings& surroundings)
      : program_(std::move(program)), file_(std::move(file)), tables_(tables), surroundings_(surroundings) {}
  StartedRuns(const StartedRuns&) = delete;
  StartedRuns& operator=(const StartedRuns&) = delete;
  ~StartedRuns() override;

  /// One run of a job at a time. Asked for in any other thread than the one that attends, which answers it.
  ActionEnd StartJob(const Text& job) override;
  ActionEnd Unlock(const JobFile& file, const Text& job, const Text& table) override;

  /// Starts what was asked for, takes in what has ended, and passes on what the runs said on their standard error.
  void Attend();

  /// Starts nothing more, and asks the runs to stop.
  void End();

 private:
  struct Request {
    Text job;
    std::promise<ActionEnd> end;
  };

  std::vector<Request> TakeRequests();
  void Answer(Request& request);
  ActionEnd Started(const Text& job);
  bool HasEnded(const Text& job, ChildProcess& run);

  const Text program_;
  const Text file_;
  TableWatch& tables_;
  const Surroundings& surroundings_;
  std::map<Text, std::unique_ptr<ChildProcess>> runs_;
  std::mutex mutex_;  // of the two behind it
  std::vector<Request> requests_;
  bool isOver_ = false;
};

}  // namespace zenqay
