// A TCP proxy that stands for a network: what goes through arrives later.
#pragma once

#include <chrono>
#include <list>
#include <thread>

namespace zenqay::bench {

/// Listens on a port of the loopback and hands what it gets on to another one, each way `delay` later. Two threads for
/// each connection, which end with it; the object outlives them.
class DelayProxy {
 public:
  DelayProxy(int toPort, std::chrono::microseconds delay);
  DelayProxy(const DelayProxy&) = delete;
  DelayProxy& operator=(const DelayProxy&) = delete;
  ~DelayProxy();

  int port() const { return port_; }

 private:
  void Accept();
  void Hand(int from, int to) const;

  int toPort_;
  std::chrono::microseconds delay_;
  int listener_ = -1;
  int port_ = 0;
  std::list<std::thread> ways_;
  std::thread accepting_;
};

}  // namespace zenqay::bench
