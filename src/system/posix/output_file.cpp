#include "system/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <utility>

#include "system/posix/file_fault.h"
#include "system/posix/write_all.h"

namespace zenqay {

std::optional<PlatformFault> OutputFile::Open(const Text& path) {
  descriptor_ = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
  if (descriptor_ < 0) return FileFault(errno);
  return {};
}

std::optional<PlatformFault> OutputFile::OpenPrivate(const Text& path) {
  descriptor_ = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (descriptor_ < 0) return FileFault(errno);
  struct stat status {};
  const bool isFile = ::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);  // and no device of everybody's
  // A file of somebody else, or on a disk that knows no rights, stays as it is.
  if (isFile) static_cast<void>(::fchmod(descriptor_, 0600));
  return {};
}

std::optional<PlatformFault> OutputFile::Write(std::string_view bytes) {
  if (const int error = WriteAll(descriptor_, bytes)) return FileFault(error);
  return {};
}

std::optional<PlatformFault> OutputFile::WriteWhole(std::string_view bytes) {
  struct stat before {};
  const bool isFile = ::fstat(descriptor_, &before) == 0 && S_ISREG(before.st_mode);
  const int error = WriteAll(descriptor_, bytes);
  if (error == 0) return {};
  const bool isCut = isFile && ::ftruncate(descriptor_, before.st_size) == 0;
  static_cast<void>(isCut);  // what cannot be cut keeps its half line
  return FileFault(error);
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

bool DiskIsFull(const Text& path) {
  struct statvfs disk = {};
  if (::statvfs(path.c_str(), &disk) != 0 || disk.f_blocks == 0) return false;  // none, or one that counts no blocks
  const auto freeBlocks = ::geteuid() == 0 ? disk.f_bfree : disk.f_bavail;
  return freeBlocks == 0;
}

std::optional<PlatformFault> AppendFault(const Text& path) {
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored)) return PlatformFault::PathAccess;
  const Text parent = std::filesystem::absolute(path, ignored).parent_path().string();
  if (!std::filesystem::is_directory(parent, ignored)) return PlatformFault::PathNotFound;
  const bool mayWrite = std::filesystem::exists(path, ignored) ? MayWriteFile(path) : MayWriteIn(parent);
  if (!mayWrite) return PlatformFault::PermissionDenied;
  if (DiskIsFull(parent)) return PlatformFault::DiskFull;
  return {};
}

}  // namespace zenqay
