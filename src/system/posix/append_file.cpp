#include "system/append_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "base/secrets.h"
#include "base/windows1252.h"
#include "system/paths.h"
#include "system/posix/file_fault.h"

namespace zenqay {

AppendFile::~AppendFile() {
  if (isOpen()) ::close(descriptor_);
}

void AppendFile::Open(const Text& path) {
  if (isOpen()) throw RuntimeError(PlatformFault::FileAlreadyOpen, path_);
  if (path.empty()) throw RuntimeError(PlatformFault::PathAccess);
  const Text native = NativePath(path);
  descriptor_ = ::open(native.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
  if (descriptor_ < 0) throw RuntimeError(FileFault(errno), path);
  path_ = path;
  lines_.clear();
}

void AppendFile::WriteLine(const Text& line) {
  if (!isOpen()) throw RuntimeError(PlatformFault::BadFileNumber);
  lines_.push_back(WithoutSecrets(line));
  const Text bytes = ToWindows1252(lines_.back()) + "\r\n";
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count = ::write(descriptor_, bytes.data() + written, bytes.size() - written);
    if (count > 0) {
      written += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      throw RuntimeError(FileFault(errno), path_);
    }
  }
}

void AppendFile::Close() {
  if (!isOpen()) return;
  const int closed = ::close(std::exchange(descriptor_, -1));
  if (closed < 0 && errno != EINTR) throw RuntimeError(FileFault(errno), path_);
}

}  // namespace zenqay
