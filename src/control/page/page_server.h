// The page on the network.
#pragma once

#include <memory>

#include "control/page/change_feed.h"
#include "control/page/page.h"
#include "control/page/refusal_log.h"

namespace zenqay {

/// A request's head is read whole before anything looks at it, with a limit of bytes and of time; a body never is. Each
/// connection has one request. Readers of /events are at most kMostStreams, and there are more threads than that.
class PageServer {
 public:
  static constexpr int kMostStreams = 200;

  PageServer(const Page& page, ChangeFeed& feed, RefusalLog& log);
  PageServer(const PageServer&) = delete;
  PageServer& operator=(const PageServer&) = delete;
  ~PageServer();

  /// Listens, and gives the port, which the system chooses for 0. Raises 70 where it may not or somebody else listens.
  int Listen(const Text& host, int port);

  /// Answers in threads of its own, until it is stopped.
  void Start();
  void Stop();

  /// False when it has ended by itself.
  bool isRunning() const;

 private:
  class Http;
  std::unique_ptr<Http> http_;
};

}  // namespace zenqay
