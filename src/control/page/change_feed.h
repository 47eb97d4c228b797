// Tells readers that something has changed in the history.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

#include "control/duration.h"

namespace zenqay {

/// Looks at the history twice a second in a thread of its own, for all readers together, as long as one waits.
class ChangeFeed {
 public:
  explicit ChangeFeed(Text historyPath);
  ChangeFeed(const ChangeFeed&) = delete;
  ChangeFeed& operator=(const ChangeFeed&) = delete;
  ~ChangeFeed();

  /// The number of changes seen so far, as soon as it is another than `known`, or after the patience.
  std::uint64_t WaitForChange(std::uint64_t known, Seconds patience);

  /// Lets all who wait go, for good.
  void End();
  bool isOver();

 private:
  void Watch();

  const Text historyPath_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::uint64_t changes_ = 1;
  int waiting_ = 0;
  bool isOver_ = false;
  std::thread thread_;
};

}  // namespace zenqay
