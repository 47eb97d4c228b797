#include "system/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "base/runtime_error.h"
#include "system/own_process.h"
#include "system/posix/file_fault.h"
#include "system/posix/write_all.h"

namespace zenqay {
namespace {

constexpr int kChannel = 3;  // the first behind the standard streams

/// A descriptor that is closed with its owner.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }

  int number() const { return number_; }
  int Release() { return std::exchange(number_, -1); }

 private:
  int number_ = -1;
};

[[noreturn]] void RaiseNoRoom() {
  throw RuntimeError(FileFault(errno), "a process cannot be started: " + Text(std::strerror(errno)));
}

struct Pipe {
  Pipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) RaiseNoRoom();
    readEnd = Descriptor(ends[0]);
    writeEnd = Descriptor(ends[1]);
  }

  Descriptor readEnd;
  Descriptor writeEnd;
};

/// A file in memory, of any length, which is read from its start.
Descriptor InMemory(const Text& content) {
  Descriptor file(::memfd_create("input", MFD_CLOEXEC));
  if (file.number() < 0) RaiseNoRoom();
  if (WriteAll(file.number(), content) != 0) RaiseNoRoom();
  ::lseek(file.number(), 0, SEEK_SET);
  return file;
}

/// A list as exec takes it.
std::vector<char*> Pointers(std::vector<Text>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (Text& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::vector<Text> EnvironmentOf(const ChildStart& start) {
  auto changes = start.environment;
  if (!start.channelVariable.empty()) changes[start.channelVariable] = std::to_string(kChannel);
  std::vector<Text> all;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const Text text = *entry;
    if (!changes.contains(text.substr(0, text.find('=')))) all.push_back(text);
  }
  for (const auto& [name, value] : changes) {
    if (value) all.push_back(name + "=" + *value);
  }
  return all;
}

/// What the child needs, made before the fork: behind it nothing may ask for memory.
struct Prepared {
  const char* program;
  char** arguments;
  char** environment;
  int input;
  int output;
  int errors;
  int channel;
  int report;  // takes the errno of a start that fails
  pid_t parent;
};

void DefaultSignals() {
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  ::signal(SIGPIPE, SIG_DFL);
}

/// Puts the descriptors where the program looks for them. They all have higher numbers than these.
bool PlaceDescriptors(const Prepared& p) {
  return ::dup2(p.input, STDIN_FILENO) >= 0 && ::dup2(p.output, STDOUT_FILENO) >= 0 &&
         ::dup2(p.errors, STDERR_FILENO) >= 0 && ::dup2(p.channel, kChannel) >= 0;
}

[[noreturn]] void RunChild(const Prepared& p) {
  ::setpgid(0, 0);
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (::getppid() != p.parent) ::_exit(1);  // it has ended meanwhile
  KeepMemoryPrivate();                      // only the limit outlasts the start of the program
  DefaultSignals();
  ::close_range(kChannel + 1, ~0U, CLOSE_RANGE_CLOEXEC);  // whatever this process was started with
  if (PlaceDescriptors(p)) ::execve(p.program, p.arguments, p.environment);
  const int fault = errno;
  const ssize_t written = ::write(p.report, &fault, sizeof fault);
  ::_exit(written == sizeof fault ? 126 : 127);
}

/// Above the numbers that the child's descriptors are put to.
Descriptor OutOfTheWay(Descriptor descriptor) {
  Descriptor moved(::fcntl(descriptor.number(), F_DUPFD_CLOEXEC, 10));
  if (moved.number() < 0) RaiseNoRoom();
  return moved;
}

void ReadWithoutStandingStill(int descriptor) {
  ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

ProcessEnd EndOf(int status) {
  if (WIFSIGNALED(status)) return {.signal = WTERMSIG(status)};
  return {.status = WEXITSTATUS(status)};
}

}  // namespace

Text ProcessEnd::Words() const {
  if (signal == 0) return "ended with " + std::to_string(status);
  return "was ended by signal " + std::to_string(signal) + " (" + ::strsignal(signal) + ")";
}

ChildProcess::ChildProcess(const ChildStart& start) {
  Pipe channel;
  Pipe errors;
  Pipe report;
  const Descriptor input = OutOfTheWay(InMemory(start.input));
  const Descriptor output = OutOfTheWay(Descriptor(::open("/dev/null", O_WRONLY | O_CLOEXEC)));
  const Descriptor errorsEnd = OutOfTheWay(std::move(errors.writeEnd));
  const Descriptor channelEnd = OutOfTheWay(std::move(channel.writeEnd));
  Descriptor reportEnd = OutOfTheWay(std::move(report.writeEnd));
  std::vector<Text> argumentTexts = start.arguments;
  argumentTexts.insert(argumentTexts.begin(), start.program);
  std::vector<Text> environmentTexts = EnvironmentOf(start);
  std::vector<char*> arguments = Pointers(argumentTexts);
  std::vector<char*> environment = Pointers(environmentTexts);
  const int outputEnd = start.listensToOutput ? channelEnd.number() : output.number();
  const Prepared prepared = {start.program.c_str(), arguments.data(),    environment.data(), input.number(), outputEnd,
                             errorsEnd.number(),    channelEnd.number(), reportEnd.number(), ::getpid()};
  pid_ = ::fork();
  if (pid_ < 0) RaiseNoRoom();
  if (pid_ == 0) RunChild(prepared);
  ::setpgid(pid_, pid_);  // whoever is first
  reportEnd = Descriptor();
  int fault = 0;
  if (::read(report.readEnd.number(), &fault, sizeof fault) == sizeof fault) {
    ::waitpid(pid_, nullptr, 0);
    pid_ = -1;
    const PlatformFault found = fault == ENOENT ? PlatformFault::FileNotFound : FileFault(fault);
    throw RuntimeError(found, start.program + " (" + std::strerror(fault) + ")");
  }
  channel_ = channel.readEnd.Release();
  errors_ = errors.readEnd.Release();
  ReadWithoutStandingStill(channel_);
  ReadWithoutStandingStill(errors_);
}

ChildProcess::~ChildProcess() {
  if (!end_) {
    Kill();
    ::waitpid(pid_, nullptr, 0);
  }
  if (channel_ >= 0) ::close(channel_);
  if (errors_ >= 0) ::close(errors_);
}

void ChildProcess::Ask() const {
  if (!end_) ::kill(pid_, SIGTERM);
}

void ChildProcess::Kill() const {
  if (!end_) ::kill(-pid_, SIGKILL);
}

std::optional<ProcessEnd> ChildProcess::Ended() {
  if (end_) return end_;
  int status = 0;
  if (::waitpid(pid_, &status, WNOHANG) == pid_) end_ = EndOf(status);
  return end_;
}

void ChildProcess::Read(int& descriptor, Text& into) {
  std::array<char, 65536> block{};
  while (descriptor >= 0) {
    const ssize_t count = ::read(descriptor, block.data(), block.size());
    if (count > 0) {
      into.append(block.data(), static_cast<std::size_t>(count));
      if (static_cast<std::size_t>(count) < block.size()) return;
    } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
      ::close(std::exchange(descriptor, -1));
    } else if (errno == EAGAIN) {
      return;
    }
  }
}

ProgramRun RunProgram(ChildStart start, std::chrono::milliseconds atMost) {
  using Clock = std::chrono::steady_clock;
  start.listensToOutput = true;
  const auto until = Clock::now() + atMost;
  ChildProcess process(start);
  ProgramRun run;
  while (!process.Ended() || process.channel() >= 0 || process.errors() >= 0) {
    constexpr std::chrono::milliseconds kLook(10);  // an end is not heard where the streams are closed
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now());
    if (left.count() <= 0) {
      run.isOutOfTime = true;
      process.Kill();
      break;
    }
    const bool isSilent = process.channel() < 0 && process.errors() < 0;
    WaitForInput({process.channel(), process.errors()},
                 static_cast<int>((isSilent ? std::min(kLook, left) : left).count()));
    process.ReadChannel(run.output);
    process.ReadErrors(run.errors);
  }
  if (!run.isOutOfTime) run.end = *process.Ended();
  return run;
}

Text FindProgram(const Text& name, const Text& path) {
  for (const std::string_view directory : Split(path, ":")) {
    const Text found = Text(directory) + "/" + name;
    if (!directory.empty() && ::access(found.c_str(), X_OK) == 0) return found;
  }
  return "";
}

CopyRun RunInCopy(const std::function<int(int output)>& deed) {
  Pipe output;
  const pid_t parent = ::getpid();
  const pid_t pid = ::fork();
  if (pid < 0) RaiseNoRoom();
  if (pid == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) ::_exit(1);
    const Descriptor dropped(::open("/dev/null", O_WRONLY));
    ::dup2(dropped.number(), STDOUT_FILENO);
    ::_exit(deed(output.writeEnd.number()));
  }
  output.writeEnd = Descriptor();
  CopyRun run;
  std::array<char, 4096> block{};
  for (;;) {
    const ssize_t count = ::read(output.readEnd.number(), block.data(), block.size());
    if (count == 0 || (count < 0 && errno != EINTR)) break;
    if (count > 0) run.output.append(block.data(), static_cast<std::size_t>(count));
  }
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  run.end = EndOf(status);
  return run;
}

std::vector<int> WaitForInput(const std::vector<int>& descriptors, int milliseconds) {
  std::vector<pollfd> waited;
  for (const int descriptor : descriptors) {
    if (descriptor >= 0) waited.push_back({descriptor, POLLIN, 0});
  }
  std::vector<int> ready;
  if (::poll(waited.data(), waited.size(), milliseconds) <= 0) return ready;
  for (const pollfd& one : waited) {
    if (one.revents != 0) ready.push_back(one.fd);
  }
  return ready;
}

}  // namespace zenqay
