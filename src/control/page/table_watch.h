// The tables of all jobs as their databases have them, looked at seldom and for all readers together.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "control/table_status.h"

namespace zenqay {

/// What the databases said at one moment.
struct TableOverview {
  std::int64_t readAt = 0;  // seconds since 1970
  JobFile file;
  Text fileFault;  // why the job file cannot be read any more; then `file` is the one before
  std::vector<TableStatus> tables;
  std::map<Text, Text> unreached;  // by job: what its database said
};

/// Looks at the databases in a thread of its own, as long as somebody asks. The job file is read anew each time.
class TableWatch {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  TableWatch(JobFile file, Environment environment, Text historyPath);
  TableWatch(const TableWatch&) = delete;
  TableWatch& operator=(const TableWatch&) = delete;
  ~TableWatch();

  /// What was seen within the last ten seconds. Where a database keeps the look waiting for longer than three, what
  /// was seen before.
  std::shared_ptr<const TableOverview> Tables();

  /// Does the deed, which opens a database, while nobody else of this process has it open: looking at an embedded
  /// database's file gives up the locks that the process has on it.
  void WithoutLook(const std::function<void()>& deed);

 private:
  void Watch();
  bool IsOver();
  std::shared_ptr<const TableOverview> Look();

  const Environment environment_;
  const Text historyPath_;
  std::mutex looking_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::shared_ptr<const TableOverview> seen_;
  Moment seenAt_;
  bool isAsked_ = false;
  bool isOver_ = false;
  std::thread thread_;
};

}  // namespace zenqay
