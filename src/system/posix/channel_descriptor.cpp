#include "system/channel_descriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace zenqay {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kPatienceWithPieces{1'000};

/// Waits until there is room or the time is over.
void AwaitRoom(int descriptor, Clock::time_point end) {
  const auto left = std::chrono::ceil<milliseconds>(end - Clock::now()).count();
  pollfd entry = {.fd = descriptor, .events = POLLOUT, .revents = 0};
  ::poll(&entry, 1, static_cast<int>(std::max<std::int64_t>(left, 0)));
}

}  // namespace

ChannelDescriptor::ChannelDescriptor(int number) : number_(number) {
  const int flags = ::fcntl(number, F_GETFL);
  isOpen_ = flags >= 0 && ::fcntl(number, F_SETFL, flags | O_NONBLOCK) == 0;
  wasOpen_ = isOpen_;
  if (wasOpen_) ::fcntl(number, F_SETFD, FD_CLOEXEC);
}

ChannelDescriptor::~ChannelDescriptor() {
  if (wasOpen_) ::close(number_);
}

ChannelDescriptor::Outcome ChannelDescriptor::Write(std::string_view bytes, milliseconds patience) const {
  Clock::time_point end = Clock::now() + patience;
  const std::size_t whole = bytes.size();
  while (!bytes.empty()) {
    const ssize_t count = ::write(number_, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
      end = std::max(end, Clock::now() + kPatienceWithPieces);
    } else if (errno == EAGAIN) {
      if (Clock::now() >= end) return bytes.size() == whole ? Outcome::NotNow : Outcome::Broken;
      AwaitRoom(number_, end);
    } else if (errno != EINTR) {
      return errno == EPIPE || errno == ECONNRESET ? Outcome::ReaderGone : Outcome::Broken;
    }
  }
  return Outcome::Written;
}

bool ChannelDescriptor::HasReader() const {
  pollfd entry = {.fd = number_, .events = 0, .revents = 0};
  return ::poll(&entry, 1, 0) < 1 || (entry.revents & (POLLERR | POLLHUP)) == 0;
}

}  // namespace zenqay
