#include "system/client_connection.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace zenqay {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = ClientConnection::Milliseconds;

/// Waits for one event. False when the time is up.
bool WaitFor(int socket, short event, Clock::time_point until) {
  for (;;) {
    const auto left = std::chrono::ceil<Milliseconds>(until - Clock::now());
    if (left <= Milliseconds(0)) return false;
    pollfd waited{.fd = socket, .events = event, .revents = 0};
    const int ready = ::poll(&waited, 1, static_cast<int>(left.count()));
    if (ready > 0) return true;
    if (ready < 0 && errno != EINTR) return false;
  }
}

/// Where the blank line ends that the head ends with; npos when it has not arrived. Nothing before `from` is searched
/// again.
std::size_t EndOfHead(const Text& text, std::size_t from) {
  const std::size_t start = from < 3 ? 0 : from - 3;
  const std::size_t marked = text.find("\r\n\r\n", start);
  const std::size_t plain = text.find("\n\n", start);
  const std::size_t end = std::min(marked == Text::npos ? marked : marked + 4, plain == Text::npos ? plain : plain + 2);
  return end;
}

}  // namespace

ClientConnection::ClientConnection(int socket) : socket_(socket) {
  constexpr int kHeld = 64 * 1024;
  ::fcntl(socket_, F_SETFD, FD_CLOEXEC);
  ::fcntl(socket_, F_SETFL, ::fcntl(socket_, F_GETFL) | O_NONBLOCK);
  ::setsockopt(socket_, SOL_SOCKET, SO_SNDBUF, &kHeld, sizeof kHeld);
}

ClientConnection::~ClientConnection() {
  ::shutdown(socket_, SHUT_WR);
  ::close(socket_);
}

Text ClientConnection::Peer() const {
  sockaddr_storage address{};
  socklen_t length = sizeof address;
  std::array<char, NI_MAXHOST> name{};
  const bool isKnown = ::getpeername(socket_, reinterpret_cast<sockaddr*>(&address), &length) == 0 &&
                       ::getnameinfo(reinterpret_cast<sockaddr*>(&address), length, name.data(), name.size(), nullptr,
                                     0, NI_NUMERICHOST) == 0;
  return isKnown ? name.data() : "";
}

ClientConnection::Head ClientConnection::ReadHead(std::size_t atMost, Milliseconds patience) const {
  const Clock::time_point until = Clock::now() + patience;
  Head head;
  std::array<char, 4096> block{};
  for (;;) {
    const ssize_t count = ::recv(socket_, block.data(), block.size(), 0);
    if (count == 0) return head;
    if (count < 0) {
      if (errno != EAGAIN && errno != EINTR) return head;
      if (WaitFor(socket_, POLLIN, until)) continue;
      head.outcome = Head::Outcome::TooLate;
      return head;
    }
    const std::size_t before = head.text.size();
    head.text.append(block.data(), static_cast<std::size_t>(count));
    const std::size_t end = EndOfHead(head.text, before);
    if (std::min(end, head.text.size()) > atMost) {
      head.outcome = Head::Outcome::TooLong;
      return head;
    }
    if (end != Text::npos) {
      head.text.resize(end);
      head.outcome = Head::Outcome::Whole;
      return head;
    }
  }
}

bool ClientConnection::Write(std::string_view bytes, Milliseconds patience) const {
  const Clock::time_point until = Clock::now() + patience;
  while (!bytes.empty()) {
    const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno == EAGAIN) {
      if (!WaitFor(socket_, POLLOUT, until)) return false;
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

bool ClientConnection::IsGone() const {
  pollfd waited{.fd = socket_, .events = POLLIN, .revents = 0};
  if (::poll(&waited, 1, 0) <= 0) return false;
  if ((waited.revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) return true;
  char next = 0;
  return ::recv(socket_, &next, 1, MSG_PEEK) == 0;
}

void TakePortAlone(int socket) {
  constexpr int kYes = 1;
  ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &kYes, sizeof kYes);
}

void SetBacklog(int listeningSocket, int connections) {
  ::listen(listeningSocket, connections);
}

}  // namespace zenqay
