// Ending a statement that goes on after the job has been asked to stop.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "contracts/interruption.h"

namespace zenqay {

/// Looks from a thread of its own whether a statement of a session runs although its pass is to be broken off, and
/// cancels it ten seconds after it has seen so: most statements end by themselves in that time.
class StatementCanceller {
 public:
  explicit StatementCanceller(std::shared_ptr<Interruption> interruption);
  StatementCanceller(const StatementCanceller&) = delete;
  StatementCanceller& operator=(const StatementCanceller&) = delete;
  ~StatementCanceller();

  /// A statement that runs. A session runs one at a time.
  class Running {
   public:
    Running(StatementCanceller& canceller, void* statement) : canceller_(canceller) {
      canceller_.SetRunning(statement);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() { canceller_.SetRunning(nullptr); }

   private:
    StatementCanceller& canceller_;
  };

  /// True when the statement that runs now has been cancelled.
  bool hasCancelled();

 private:
  void SetRunning(void* statement);
  void Watch();

  std::shared_ptr<Interruption> interruption_;
  std::mutex mutex_;  // of what follows, and held while a statement is cancelled: it does not end meanwhile
  std::condition_variable ending_;
  bool ends_ = false;
  void* running_ = nullptr;
  bool hasCancelled_ = false;
  std::thread thread_;
};

}  // namespace zenqay
