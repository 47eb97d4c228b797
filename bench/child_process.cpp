#include "child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace zenqay::bench {
namespace {

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// What a process holds now that no file stands behind.
double AnonymousMib(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  std::string word;
  while (status >> word) {
    double kib = 0;
    if (word == "RssAnon:" && status >> kib) return kib / 1024;
  }
  return 0;
}

/// Looks at a process until it is told to stop.
class MemoryWatch {
 public:
  explicit MemoryWatch(pid_t process)
      : thread_([this, process](const std::stop_token& stop) {
          while (!stop.stop_requested()) {
            peak_ = std::max(peak_, AnonymousMib(process));
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
          }
        }) {}

  double Peak() {
    thread_.request_stop();
    thread_.join();
    return peak_;
  }

 private:
  double peak_ = 0;
  std::jthread thread_;
};

}  // namespace

Cost RunChild(const std::vector<std::string>& arguments) {
  std::vector<char*> argv;
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  const auto start = std::chrono::steady_clock::now();
  pid_t child = 0;
  const int fault = posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (fault != 0) throw std::runtime_error("cannot start " + arguments.front());

  MemoryWatch memory(child);
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child) throw std::runtime_error("lost " + arguments.front());
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error(arguments.front() + " failed");
  return {.wallSeconds = wall.count(),
          .cpuSeconds = Seconds(usage.ru_utime) + Seconds(usage.ru_stime),
          .peakMib = static_cast<double>(usage.ru_maxrss) / 1024,
          .anonymousMib = memory.Peak()};
}

}  // namespace zenqay::bench
