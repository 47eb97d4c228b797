#include "doubles/child_process.h"

#include <grp.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <stdexcept>

#include "doubles/outcome.h"

namespace zenqay {
namespace {

constexpr uid_t kNobody = 65534;

/// The two ends of a channel: what is written to the one is read from the other.
struct Channel {
  int readEnd = -1;
  int writeEnd = -1;
};

Channel MakePipe() {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
  return {ends[0], ends[1]};
}

Channel MakeTerminal() {
  Channel terminal;
  termios raw{};
  ::cfmakeraw(&raw);
  if (::openpty(&terminal.readEnd, &terminal.writeEnd, nullptr, &raw, nullptr) != 0) {
    throw std::runtime_error("no terminal");
  }
  return terminal;
}

/// A terminal ends with an error where a pipe ends with nothing.
Text ReadAll(int descriptor) {
  Text all;
  std::array<char, 4096> block{};
  for (ssize_t count = ::read(descriptor, block.data(), block.size()); count > 0;
       count = ::read(descriptor, block.data(), block.size())) {
    all.append(block.data(), static_cast<std::size_t>(count));
  }
  ::close(descriptor);
  return all;
}

[[noreturn]] void RunDeed(const std::function<Text()>& deed, int result, int out, int err) {
  ::dup2(out, STDOUT_FILENO);
  ::dup2(err, STDERR_FILENO);
  Text text;
  try {
    text = OutcomeOf(deed);
  } catch (const std::exception& failure) {
    text = Text("exception: ") + failure.what();
  }
  std::fflush(nullptr);
  const bool written = ::write(result, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  ::_exit(written ? 0 : 1);
}

}  // namespace

ChildRun RunInChild(const std::function<Text()>& deed, ChildStreams streams) {
  const bool onTerminal = streams == ChildStreams::Terminal;
  const Channel result = MakePipe();
  const Channel out = onTerminal ? MakeTerminal() : MakePipe();
  const Channel err = MakePipe();
  std::fflush(nullptr);
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("no process");
  if (child == 0) RunDeed(deed, result.writeEnd, out.writeEnd, onTerminal ? out.writeEnd : err.writeEnd);
  for (const Channel& channel : {result, out, err}) ::close(channel.writeEnd);
  ChildRun run;
  run.out = ReadAll(out.readEnd);
  run.err = ReadAll(err.readEnd);
  run.result = ReadAll(result.readEnd);
  ::waitpid(child, nullptr, 0);
  return run;
}

void DropPrivileges() {
  if (::geteuid() != 0) return;
  const bool dropped = ::setgroups(0, nullptr) == 0 && ::setgid(kNobody) == 0 && ::setuid(kNobody) == 0;
  if (!dropped) throw std::runtime_error("the super-user stays");
}

}  // namespace zenqay
