// FreeTDS in front of what is no SQL Server.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <functional>
#include <thread>

#include "engines/odbc/odbc_session.h"
#include "engines/provider_errors.h"

namespace zenqay {
namespace {

/// A port of the loopback address.
class Listener {
 public:
  Listener() : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const name = reinterpret_cast<sockaddr*>(&address);
    const bool isBound = ::bind(socket_, name, length) == 0 && ::getsockname(socket_, name, &length) == 0;
    if (!isBound) throw std::runtime_error("no port");
    port_ = ntohs(address.sin_port);
  }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  ~Listener() {
    if (answering_.joinable()) answering_.join();
    ::close(socket_);
  }

  /// Accepts one connection, waits for its first bytes, gives the answer and closes it.
  void Answer(const std::string& answer) {
    ::listen(socket_, 1);
    answering_ = std::thread([this, answer] {
      const int connection = ::accept(socket_, nullptr, nullptr);
      char bytes[4096];
      const ssize_t received = ::recv(connection, bytes, sizeof bytes, 0);
      if (received > 0) ::send(connection, answer.data(), answer.size(), MSG_NOSIGNAL);
      ::close(connection);
    });
  }

  int port() const { return port_; }

 private:
  int socket_;
  int port_ = 0;
  std::thread answering_;
};

Text StringFor(int port) {
  return "Provider=SQLOLEDB;Data Source=127.0.0.1," + std::to_string(port) +
         ";Initial Catalog=SERVICE;User ID=sa;TDS_Version=7.4;Password={s;ecret}";
}

/// The failure to connect: its number and source, once all of its texts are known to be without the password.
Text FailureAt(int port) {
  try {
    OdbcSession session(StringFor(port));
  } catch (const ProviderFailure& failure) {
    Text first;
    for (const ProviderError& item : failure.items()) {
      EXPECT_EQ(item.Description.find("s;ecret"), Text::npos) << item.Description;
      EXPECT_FALSE(item.Description.empty());
      if (first.empty()) first = std::to_string(item.Number) + " " + item.Source + ": " + item.Description;
    }
    return first;
  }
  return "connected";
}

constexpr const char* kUnreachable = "-2147467259 FreeTDS: [FreeTDS][SQL Server]Unable to connect to data source";

TEST(TdsDriver, SaysThatThePortIsClosed) {
  const Listener closed;

  EXPECT_EQ(FailureAt(closed.port()),
            "-2147467259 FreeTDS: [FreeTDS][SQL Server]Unable to connect: Adaptive Server is unavailable or does not "
            "exist");
}

TEST(TdsDriver, SaysThatTheServerIsNone) {
  Listener listener;
  listener.Answer("HTTP/1.1 400 Bad Request\r\nConnection: close\r\n\r\n");

  EXPECT_EQ(FailureAt(listener.port()), kUnreachable);
}

TEST(TdsDriver, SaysThatTheServerWentAwayWithoutAWord) {
  Listener listener;
  listener.Answer("");

  EXPECT_EQ(FailureAt(listener.port()), kUnreachable);
}

}  // namespace
}  // namespace zenqay
