#include "system/posix/write_all.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

#include "doubles/child_process.h"

namespace zenqay {
namespace {

int readEnd = -1;
volatile std::sig_atomic_t signals = 0;
volatile std::sig_atomic_t bytesRead = 0;

/// Makes room in the pipe at every second signal, so that the other ones find a write that has got nowhere.
void DrainAtEverySecond(int) {
  signals = signals + 1;
  if (signals % 2 != 0) return;
  std::array<char, 4096> bytes;
  for (ssize_t count = 1; count > 0;) {
    count = ::read(readEnd, bytes.data(), bytes.size());
    if (count > 0) bytesRead = bytesRead + static_cast<int>(count);
  }
}

TEST(WriteAll, WritesAllOfALongTextWhileSignalsInterruptIt) {
  constexpr int kLength = 300'000;  // several times what a pipe takes
  const ChildRun run = RunInChild([] {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) return Text("no pipe");
    readEnd = ends[0];
    ::fcntl(readEnd, F_SETFL, O_NONBLOCK);
    struct sigaction action {};
    action.sa_handler = DrainAtEverySecond;  // without SA_RESTART
    ::sigaction(SIGALRM, &action, nullptr);
    const itimerval everyMillisecond = {{0, 1000}, {0, 1000}};
    ::setitimer(ITIMER_REAL, &everyMillisecond, nullptr);

    const int error = WriteAll(ends[1], Text(kLength, 'x'));

    const itimerval never = {};
    ::setitimer(ITIMER_REAL, &never, nullptr);
    signals = 1;
    DrainAtEverySecond(SIGALRM);  // what is left in the pipe
    return "error " + std::to_string(error) + ", " + std::to_string(bytesRead) + " bytes";
  });

  EXPECT_EQ(run.result, "error 0, 300000 bytes");
}

TEST(WriteAll, GivesTheErrorThatItStoppedAt) {
  const ChildRun run = RunInChild([] {
    const int full = ::open("/dev/full", O_WRONLY);
    const bool noSpace = WriteAll(full, "one") == ENOSPC;
    const bool closed = WriteAll(-1, "one") == EBADF;
    const bool nothing = WriteAll(-1, "") == 0;
    return Text(noSpace ? "no space, " : "") + (closed ? "closed, " : "") + (nothing ? "nothing to do" : "");
  });

  EXPECT_EQ(run.result, "no space, closed, nothing to do");
}

}  // namespace
}  // namespace zenqay
