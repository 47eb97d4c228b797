#include "system/file_lock.h"

#include <fcntl.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "system/posix/file_fault.h"

namespace zenqay {
namespace {

// NFS, SMB and CIFS, Ceph, AFS, Coda, Lustre, GPFS: as statfs knows them.
constexpr std::uint32_t kNetworkDisks[] = {0x6969,     0x517B,     0xFE534D42, 0xFF534D42, 0x00C36400,
                                           0x5346414F, 0x73757245, 0x0BD00BD0, 0x47504653};

bool IsOnNetworkDisk(int descriptor) {
  struct statfs disk {};
  if (::fstatfs(descriptor, &disk) != 0) return false;
  for (const std::uint32_t kind : kNetworkDisks) {
    if (static_cast<std::uint32_t>(disk.f_type) == kind) return true;
  }
  return false;
}

/// The byte of the file that stands for a name: its FNV hash, as far as a place in a file goes.
off_t PlaceOf(const Text& name) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char character : name) hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3;
  return static_cast<off_t>(hash >> 2);
}

struct flock LockOf(short kind, const Text& name) {
  struct flock lock {};
  lock.l_type = kind;
  lock.l_whence = SEEK_SET;
  lock.l_start = PlaceOf(name);
  lock.l_len = 1;
  return lock;
}

/// Locks belong to the open file: no other one of the process gives them up by being closed.
int SetLock(int descriptor, short kind, const Text& name) {
  struct flock lock = LockOf(kind, name);
  return ::fcntl(descriptor, F_OFD_SETLK, &lock) == 0 ? 0 : errno;
}

}  // namespace

FileLock::FileLock(const Text& path) : path_(path) {
  descriptor_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (descriptor_ < 0) throw RuntimeError(FileFault(errno), path);
  if (!IsOnNetworkDisk(descriptor_)) return;
  ::close(descriptor_);
  throw RuntimeError(PlatformFault::InvalidCall, path + ": a table lock needs a disk of this machine");
}

FileLock::~FileLock() {
  ::close(descriptor_);
}

bool FileLock::Take(const Text& name) const {
  const int error = SetLock(descriptor_, F_WRLCK, name);
  if (error == EAGAIN || error == EACCES) return false;
  if (error != 0) throw RuntimeError(PlatformFault::PathAccess, path_ + ": " + std::strerror(error));
  return true;
}

void FileLock::GiveBack(const Text& name) const {
  const int error = SetLock(descriptor_, F_UNLCK, name);
  if (error != 0) throw RuntimeError(PlatformFault::PathAccess, path_ + ": " + std::strerror(error));
}

bool FileLock::IsTaken(const Text& path, const Text& name) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0 && errno == ENOENT) return false;
  if (descriptor < 0) throw RuntimeError(FileFault(errno), path);
  struct flock lock = LockOf(F_WRLCK, name);
  const int error = ::fcntl(descriptor, F_OFD_GETLK, &lock) == 0 ? 0 : errno;
  ::close(descriptor);
  if (error != 0) throw RuntimeError(PlatformFault::PathAccess, path + ": " + std::strerror(error));
  return lock.l_type != F_UNLCK;
}

}  // namespace zenqay
