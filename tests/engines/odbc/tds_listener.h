// What FreeTDS meets instead of a SQL Server.
//
//     TdsListener listener;
//     listener.AnswerLogin(18456, "Login failed for user 'sa'.");
//     OdbcSession session("Provider=SQLOLEDB;Data Source=127.0.0.1," + std::to_string(listener.port()));
//     EXPECT_EQ(listener.Login().user, "sa");
#pragma once

#include <cstdint>
#include <string>
#include <thread>

#include "base/text_functions.h"

namespace zenqay {

/// What a login packet says.
struct TdsLogin {
  Text user;
  Text password;
  Text database;
};

/// A port of the loopback address that takes one connection at most.
class TdsListener {
 public:
  static constexpr std::uint32_t kLoopback = 0x7F000001;

  TdsListener() : TdsListener(kLoopback, 0) {}

  /// At this address and port; at any free port when it is 0.
  TdsListener(std::uint32_t address, std::uint16_t port);
  TdsListener(const TdsListener&) = delete;
  TdsListener& operator=(const TdsListener&) = delete;
  ~TdsListener();

  int port() const { return port_; }

  /// Waits for the first bytes, gives these for an answer, and closes the connection.
  void Answer(const std::string& answer);

  /// Takes the login packet and refuses it by this error of the server.
  void AnswerLogin(std::int32_t number, const Text& text);

  /// What came; empty when nothing did. Waits for the end of the answer.
  TdsLogin Login();

 private:
  void ListenWith(void (TdsListener::*talk)(int connection));
  void TalkAsGiven(int connection);
  void TalkAsServer(int connection);

  int socket_;
  int port_ = 0;
  std::thread answering_;
  std::string answer_;
  std::string login_;  // the packet behind its header
};

}  // namespace zenqay
