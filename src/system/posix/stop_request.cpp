#include "system/stop_request.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <ctime>

namespace zenqay {
namespace {

constexpr std::int64_t kOneRequest = 5'000;  // milliseconds

/// When the first request came, on the clock that is never set; 0 before it. The one global of the program: a signal's
/// handler knows no caller.
std::atomic<std::int64_t> requestedAt = 0;
static_assert(std::atomic<std::int64_t>::is_always_lock_free);

std::int64_t MillisecondsNow() {
  std::timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1'000 + now.tv_nsec / 1'000'000 + 1;
}

/// True for the first request.
bool Request(std::int64_t now) {
  std::int64_t none = 0;
  return requestedAt.compare_exchange_strong(none, now);
}

void TakeSignal(int signal) {
  const int error = errno;
  const std::int64_t now = MillisecondsNow();
  const bool endsAtOnce = !Request(now) && now - requestedAt >= kOneRequest;
  if (endsAtOnce) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);  // comes when this handler returns
  }
  errno = error;
}

void Listen(int signal) {
  struct sigaction former {};
  ::sigaction(signal, nullptr, &former);
  if (former.sa_handler == SIG_IGN) return;
  struct sigaction action {};
  action.sa_handler = TakeSignal;
  action.sa_flags = SA_RESTART;  // what is under way goes on as if there were no signal
  sigemptyset(&action.sa_mask);
  ::sigaction(signal, &action, nullptr);
}

}  // namespace

void ListenForStopRequests() {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) Listen(signal);
}

void RequestStop() {
  Request(MillisecondsNow());
}

bool StopRequest::IsRequestedMeanwhile() {
  const bool isLeft = channel_ != nullptr && channel_->isOpen() && !channel_->HasReader();
  if (isLeft) RequestStop();
  return IsStopRequested();
}

bool IsStopRequested() {
  return requestedAt.load(std::memory_order_relaxed) != 0;
}

}  // namespace zenqay
