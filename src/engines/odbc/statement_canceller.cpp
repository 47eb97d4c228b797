#include "engines/odbc/statement_canceller.h"

#include <sql.h>

#include <chrono>
#include <optional>

namespace zenqay {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBetweenLooks{500};
constexpr std::chrono::seconds kPatience{10};

}  // namespace

StatementCanceller::StatementCanceller(std::shared_ptr<Interruption> interruption)
    : interruption_(std::move(interruption)), thread_([this] { Watch(); }) {}

StatementCanceller::~StatementCanceller() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  ending_.notify_all();
  thread_.join();
}

bool StatementCanceller::hasCancelled() {
  const std::lock_guard lock(mutex_);
  return hasCancelled_;
}

void StatementCanceller::SetRunning(void* statement) {
  const std::lock_guard lock(mutex_);
  running_ = statement;
  hasCancelled_ = false;
}

void StatementCanceller::Watch() {
  std::optional<Clock::time_point> since;
  std::unique_lock lock(mutex_);
  while (!ending_.wait_for(lock, kBetweenLooks, [this] { return ends_; })) {
    if (!interruption_->EndsWait()) {
      since.reset();
      continue;
    }
    const Clock::time_point now = Clock::now();
    if (!since) since = now;
    if (running_ == nullptr || now - *since < kPatience) continue;
    hasCancelled_ = true;
    SQLCancel(running_);
  }
}

}  // namespace zenqay
