#include "system/own_process.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <filesystem>

#include "system/posix/file_fault.h"
#include "system/posix/write_all.h"

namespace zenqay {

void KeepMemoryPrivate() {
  ::prctl(PR_SET_DUMPABLE, 0);
  // One byte is too little for a file, and the sign for a program that takes cores over to leave this one alone.
  const rlimit limit = {1, 1};
  ::setrlimit(RLIMIT_CORE, &limit);
}

void OutliveClosedPipes() {
  std::signal(SIGPIPE, SIG_IGN);
}

bool IsSuperUser() {
  return ::geteuid() == 0;
}

std::vector<Text> EnvironmentEntries() {
  std::vector<Text> entries;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) entries.emplace_back(*entry);
  return entries;
}

Text ProgramDirectory() {
  std::error_code fault;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", fault);
  return fault ? Text(".") : program.parent_path().string();
}

void MakePrivateFile(const Text& path) {
  if (::access(path.c_str(), F_OK) == 0) return;
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  if (descriptor < 0) throw RuntimeError(FileFault(errno), path);
  ::close(descriptor);
}

bool WriteWhole(int descriptor, std::string_view text) {
  return WriteAll(descriptor, text) == 0;
}

std::int64_t ClockOffsetAt(std::int64_t moment) {
  const std::time_t time = moment;
  std::tm local{};
  ::localtime_r(&time, &local);
  return local.tm_gmtoff;
}

}  // namespace zenqay
