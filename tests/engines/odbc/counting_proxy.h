// Stands between a client and a server on the loopback address and counts how often the client waits for an answer.
//
//     CountingProxy proxy(server.port());
//     Connect(proxy.port());
//     EXPECT_EQ(proxy.RoundTrips(), 1);
#pragma once

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <stdexcept>
#include <thread>

namespace zenqay {

/// Serves one connection, as long as it exists.
class CountingProxy {
 public:
  explicit CountingProxy(int serverPort) : serverPort_(serverPort), listener_(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address = Loopback(0);
    socklen_t length = sizeof address;
    auto* const name = reinterpret_cast<sockaddr*>(&address);
    const bool listens = ::bind(listener_, name, length) == 0 && ::listen(listener_, 1) == 0 &&
                         ::getsockname(listener_, name, &length) == 0;
    if (!listens) throw std::runtime_error("no free port");
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
  }
  CountingProxy(const CountingProxy&) = delete;
  CountingProxy& operator=(const CountingProxy&) = delete;
  ~CountingProxy() {
    ::shutdown(listener_, SHUT_RDWR);
    thread_.join();
    ::close(listener_);
  }

  int port() const { return port_; }

  /// Each is what the client says before the server answers.
  int RoundTrips() const { return roundTrips_; }

 private:
  static sockaddr_in Loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
  }

  void Serve() {
    const int client = ::accept(listener_, nullptr, nullptr);
    if (client < 0) return;
    const int server = ::socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address = Loopback(serverPort_);
    const bool isUp = ::connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    bool clientSpokeLast = false;
    std::array<pollfd, 2> sides = {{{client, POLLIN, 0}, {server, POLLIN, 0}}};
    while (isUp && ::poll(sides.data(), sides.size(), -1) > 0) {
      if (sides[1].revents != 0) {
        if (!Pass(server, client)) break;
        clientSpokeLast = false;
      }
      if (sides[0].revents != 0) {
        if (!Pass(client, server)) break;
        if (!clientSpokeLast) ++roundTrips_;
        clientSpokeLast = true;
      }
    }
    ::close(client);
    ::close(server);
  }

  static bool Pass(int from, int to) {
    std::array<char, 65536> piece;
    const ssize_t length = ::read(from, piece.data(), piece.size());
    return length > 0 && ::write(to, piece.data(), static_cast<std::size_t>(length)) == length;
  }

  int serverPort_;
  int listener_;
  int port_ = 0;
  std::atomic<int> roundTrips_ = 0;
  std::thread thread_;
};

}  // namespace zenqay
