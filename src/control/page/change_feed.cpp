#include "control/page/change_feed.h"

#include <chrono>
#include <optional>
#include <utility>

#include "control/history.h"

namespace zenqay {
namespace {

constexpr std::chrono::milliseconds kBetweenLooks{500};
constexpr int kLooksUntilLostAreClosed = 10;

/// The history, opened anew when it could not be read.
class WatchedHistory {
 public:
  explicit WatchedHistory(const Text& path) : path_(path) {}

  /// Whether anything has changed since the last look.
  bool HasChanged() {
    try {
      if (!history_) history_.emplace(path_);
      if (++looks_ % kLooksUntilLostAreClosed == 0) History(path_).CloseLost();
      const std::int64_t number = history_->ChangeNumber();
      return std::exchange(number_, number) != number;
    } catch (const std::exception&) {
      history_.reset();  // whoever reads the page is told why
      return false;
    }
  }

 private:
  Text path_;
  std::optional<History> history_;
  std::int64_t number_ = -1;
  int looks_ = 0;
};

}  // namespace

ChangeFeed::ChangeFeed(Text historyPath) : historyPath_(std::move(historyPath)), thread_([this] { Watch(); }) {}

ChangeFeed::~ChangeFeed() {
  End();
  thread_.join();
}

std::uint64_t ChangeFeed::WaitForChange(std::uint64_t known, Seconds patience) {
  std::unique_lock lock(mutex_);
  if (++waiting_ == 1) changed_.notify_all();
  changed_.wait_for(lock, patience, [&] { return changes_ != known || isOver_; });
  --waiting_;
  return changes_;
}

void ChangeFeed::End() {
  {
    const std::lock_guard lock(mutex_);
    isOver_ = true;
  }
  changed_.notify_all();
}

bool ChangeFeed::isOver() {
  const std::lock_guard lock(mutex_);
  return isOver_;
}

void ChangeFeed::Watch() {
  WatchedHistory history(historyPath_);
  std::unique_lock lock(mutex_);
  while (!isOver_) {
    changed_.wait(lock, [&] { return waiting_ > 0 || isOver_; });
    lock.unlock();
    const bool hasChanged = history.HasChanged();
    lock.lock();
    if (hasChanged) {
      ++changes_;
      changed_.notify_all();
    }
    changed_.wait_for(lock, kBetweenLooks, [&] { return isOver_; });
  }
}

}  // namespace zenqay
