#include "delay_proxy.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <memory>
#include <stdexcept>

namespace zenqay::bench {
namespace {

int NewSocket() {
  const int made = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (made < 0) throw std::runtime_error("no socket");
  return made;
}

sockaddr_in Loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

void SendAtOnce(int socket) {
  const int yes = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
}

}  // namespace

DelayProxy::DelayProxy(int toPort, std::chrono::microseconds delay)
    : toPort_(toPort), delay_(delay), listener_(NewSocket()) {
  sockaddr_in address = Loopback(0);
  socklen_t length = sizeof address;
  auto* const name = reinterpret_cast<sockaddr*>(&address);
  const bool isListening = ::bind(listener_, name, length) == 0 && ::listen(listener_, 64) == 0 &&
                           ::getsockname(listener_, name, &length) == 0;
  if (!isListening) throw std::runtime_error("no port for the proxy");
  port_ = ntohs(address.sin_port);
  accepting_ = std::thread([this] { Accept(); });
}

DelayProxy::~DelayProxy() {
  ::shutdown(listener_, SHUT_RDWR);
  accepting_.join();
  ::close(listener_);
  for (std::thread& way : ways_) way.join();
}

void DelayProxy::Accept() {
  for (;;) {
    const int client = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0) return;
    const int server = NewSocket();
    const sockaddr_in address = Loopback(toPort_);
    if (::connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
      ::shutdown(client, SHUT_RDWR);
    SendAtOnce(client);
    SendAtOnce(server);
    // Either way ends both; who is last closes them.
    const auto left = std::make_shared<std::atomic<int>>(2);
    const auto hand = [this, client, server, left](int from, int to) {
      Hand(from, to);
      ::shutdown(client, SHUT_RDWR);
      ::shutdown(server, SHUT_RDWR);
      if (--*left > 0) return;
      ::close(client);
      ::close(server);
    };
    ways_.emplace_back(hand, client, server);
    ways_.emplace_back(hand, server, client);
  }
}

/// A conversation in turns: while one piece is on its way, no other one comes from the same side.
void DelayProxy::Hand(int from, int to) const {
  ::prctl(PR_SET_TIMERSLACK, 1);
  std::array<char, 65536> piece{};
  for (;;) {
    const ssize_t count = ::recv(from, piece.data(), piece.size(), 0);
    if (count <= 0) return;
    std::this_thread::sleep_until(std::chrono::steady_clock::now() + delay_);
    for (ssize_t sent = 0; sent < count;) {
      const ssize_t more = ::send(to, piece.data() + sent, static_cast<std::size_t>(count - sent), MSG_NOSIGNAL);
      if (more <= 0) return;
      sent += more;
    }
  }
}

}  // namespace zenqay::bench
