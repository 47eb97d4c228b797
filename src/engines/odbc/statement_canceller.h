// Ending a statement that goes on after the job has been asked to stop.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "contracts/interruption.h"

namespace zenqay {

/// Looks from a thread of its own whether the one statement of a session runs although its pass is to be broken off,
/// and cancels it ten seconds after it has seen so: most statements end by themselves in that time.
class StatementCanceller {
 public:
  StatementCanceller(void* statement, std::shared_ptr<Interruption> interruption);
  StatementCanceller(const StatementCanceller&) = delete;
  StatementCanceller& operator=(const StatementCanceller&) = delete;
  ~StatementCanceller();

  /// A statement that runs.
  class Running {
   public:
    explicit Running(StatementCanceller& canceller) : canceller_(canceller) { canceller_.SetRunning(true); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() { canceller_.SetRunning(false); }

   private:
    StatementCanceller& canceller_;
  };

  /// True when the statement that runs now has been cancelled.
  bool hasCancelled();

 private:
  void SetRunning(bool runs);
  void Watch();

  void* statement_;
  std::shared_ptr<Interruption> interruption_;
  std::mutex mutex_;  // of what follows, and held while a statement is cancelled: it does not end meanwhile
  std::condition_variable ending_;
  bool ends_ = false;
  bool runs_ = false;
  bool hasCancelled_ = false;
  std::thread thread_;
};

}  // namespace zenqay
