#include "system/os_platform.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "base/secrets.h"
#include "system/standard_streams.h"

namespace zenqay {
namespace {

void KeepStandardStreams() {
  for (int descriptor = ::open("/dev/null", O_RDWR); descriptor >= 0; descriptor = ::open("/dev/null", O_RDWR)) {
    if (descriptor <= STDERR_FILENO) continue;
    ::close(descriptor);
    return;
  }
}

Text DirectoryOfProgram() {
  const char* home = std::getenv("ZENQAY_HOME");
  if (home != nullptr && *home != '\0') return home;
  std::error_code fault;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", fault);
  return fault ? Text(".") : program.parent_path().string();
}

Text WithoutLineEnd(Text text) {
  if (text.ends_with('\n')) text.pop_back();
  if (text.ends_with('\r')) text.pop_back();
  return text;
}

Text WithoutSeparatorAtEnd(Text directory) {
  while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
  return directory;
}

}  // namespace

OsPlatform::OsPlatform(int argc, char** argv)
    : argc_(argc),
      argv_(argv),
      argumentsEnd_(argc > 0 ? argv[argc - 1] + std::strlen(argv[argc - 1]) : nullptr),
      programDirectory_(WithoutSeparatorAtEnd(DirectoryOfProgram())) {
  KeepStandardStreams();
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

Text OsPlatform::TakeCommandLine() {
  Text commandLine;
  for (int i = 1; i < argc_; ++i) {
    if (i > 1) commandLine += ' ';
    commandLine += argv_[i];
  }
  if (argc_ > 1) std::fill(argv_[1], argumentsEnd_, '\0');
  return commandLine == "-" ? WithoutLineEnd(ReadStandardInput()) : commandLine;
}

DateTime OsPlatform::Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return DateTime::FromParts({.year = local.tm_year + 1900,
                              .month = local.tm_mon + 1,
                              .day = local.tm_mday,
                              .hour = local.tm_hour,
                              .minute = local.tm_min,
                              .second = local.tm_sec});
}

void OsPlatform::SetTitle(const Text& title) {
  ::prctl(PR_SET_NAME, title.c_str());
  if (argc_ < 1) return;
  // What process lists show is the memory of the arguments.
  const auto room = static_cast<std::size_t>(argumentsEnd_ - argv_[0]);
  const std::size_t length = std::min(title.size(), room);
  std::memcpy(argv_[0], title.data(), length);
  std::fill(argv_[0] + length, argumentsEnd_, '\0');
}

void OsPlatform::ShowMessageBox(const Text& text) {
  std::fprintf(stderr, "%s\n", text.c_str());
}

void OsPlatform::NameCause(const Text& cause) {
  if (cause == lastCause_) return;
  lastCause_ = cause;
  const Text shown = WithoutSecrets(cause);
  std::fprintf(stderr, "zenqay-dbsync: %s\n", shown.c_str());
  if (!logTarget_.empty()) AppendToPlatformLog(shown);
}

void OsPlatform::AppendToPlatformLog(const Text& cause) {
  const DateTime now = Now();
  const Text oneLine = Replaced(Replaced(Replaced(cause, "\r\n", " "), "\n", " "), "\r", " ");
  try {
    AppendFile file;
    file.Open(logTarget_);
    file.WriteLine(ShortDate(now) + " " + LongTime(now) + "  " + oneLine);
    file.Close();
  } catch (const RuntimeError&) {
    // Standard error has named the cause; a log that cannot take it as well is no failure of the job.
  }
}

}  // namespace zenqay
