#include "system/signal_watch.h"

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "base/runtime_error.h"

namespace zenqay {
namespace {

sigset_t Watched() {
  sigset_t signals;
  ::sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGCHLD}) ::sigaddset(&signals, signal);
  return signals;
}

}  // namespace

SignalWatch::SignalWatch() {
  const sigset_t signals = Watched();
  ::sigprocmask(SIG_BLOCK, &signals, nullptr);
  descriptor_ = ::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
  if (descriptor_ < 0) throw RuntimeError(PlatformFault::InvalidCall, "signals cannot be waited for");
}

SignalWatch::~SignalWatch() {
  TakeStop();  // what has been heard must not end the process afterwards
  ::close(descriptor_);
  const sigset_t signals = Watched();
  ::sigprocmask(SIG_UNBLOCK, &signals, nullptr);
}

std::optional<int> SignalWatch::TakeStop() {
  std::optional<int> stop;
  signalfd_siginfo arrived{};
  while (::read(descriptor_, &arrived, sizeof arrived) == sizeof arrived) {
    if (arrived.ssi_signo != SIGCHLD) stop = static_cast<int>(arrived.ssi_signo);
  }
  return stop;
}

}  // namespace zenqay
