#include "system/output_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "system/posix/file_fault.h"
#include "system/posix/write_all.h"

namespace zenqay {

std::optional<PlatformFault> OutputFile::Open(const Text& path) {
  descriptor_ = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
  if (descriptor_ < 0) return FileFault(errno);
  return {};
}

std::optional<PlatformFault> OutputFile::Write(std::string_view bytes) {
  if (const int error = WriteAll(descriptor_, bytes)) return FileFault(error);
  return {};
}

std::optional<PlatformFault> OutputFile::Close() {
  if (!isOpen()) return {};
  const int closed = ::close(std::exchange(descriptor_, -1));
  if (closed < 0 && errno != EINTR) return FileFault(errno);
  return {};
}

bool MayWriteFile(const Text& path) {
  return ::access(path.c_str(), W_OK) == 0;
}

bool MayWriteIn(const Text& directory) {
  return ::access(directory.c_str(), W_OK | X_OK) == 0;
}

}  // namespace zenqay
