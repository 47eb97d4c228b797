// A connection that somebody has made to this process, and who may be slow, silent or gone.
#pragma once

#include <chrono>
#include <string_view>

#include "base/text_functions.h"

namespace zenqay {

class ClientConnection {
 public:
  using Milliseconds = std::chrono::milliseconds;

  /// What came of waiting for the head of a request: all up to its first blank line.
  struct Head {
    enum class Outcome { Whole, TooLong, TooLate, Gone };

    Outcome outcome = Outcome::Gone;
    Text text;
  };

  /// Takes the socket over and closes it. Programs that this process starts do not have it, and the system holds few
  /// bytes for a reader who does not read.
  explicit ClientConnection(int socket);
  ClientConnection(const ClientConnection&) = delete;
  ClientConnection& operator=(const ClientConnection&) = delete;
  ~ClientConnection();

  int socket() const { return socket_; }

  /// The numeric address of the other side.
  Text Peer() const;

  /// Reads no further than the head. The patience is for all of it.
  Head ReadHead(std::size_t atMost, Milliseconds patience) const;

  /// Writes all of the bytes. False when the reader does not take them within the patience, or is gone.
  bool Write(std::string_view bytes, Milliseconds patience) const;

  /// Whether the other side has closed.
  bool IsGone() const;

 private:
  int socket_;
};

/// Lets a port be listened on again right after its last listener went, but not by two at a time.
void TakePortAlone(int socket);

/// How many connections may wait for being accepted.
void SetBacklog(int listeningSocket, int connections);

}  // namespace zenqay
