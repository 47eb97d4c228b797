#include "system/private_directory.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "system/posix/file_fault.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "zenqayctl-";
constexpr int kAttempts = 5;

/// The directory, locked; -1 when it is another user's, another process has it, or it is gone.
int OpenLocked(const Text& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  struct stat state {};
  const bool isOwn = descriptor >= 0 && ::fstat(descriptor, &state) == 0 && state.st_uid == ::geteuid();
  const bool isLocked = isOwn && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
  // It may have been removed between the two.
  if (isLocked && ::fstat(descriptor, &state) == 0 && state.st_nlink > 0) return descriptor;
  if (descriptor >= 0) ::close(descriptor);
  return -1;
}

void RemoveLeftBehind(const fs::path& parent) {
  std::error_code fault;
  for (fs::directory_iterator entry(parent, fault), end; !fault && entry != end; entry.increment(fault)) {
    if (!entry->path().filename().string().starts_with(kPrefix)) continue;
    const int descriptor = OpenLocked(entry->path().string());
    if (descriptor < 0) continue;
    std::error_code ignored;  // what cannot be removed stays
    fs::remove_all(entry->path(), ignored);
    ::close(descriptor);
  }
}

}  // namespace

void MakePrivateDirectory(const Text& path) {
  if (::mkdir(path.c_str(), S_IRWXU) != 0) throw RuntimeError(FileFault(errno), path);
}

Text MakeLastingDirectory(const Text& path) {
  Text made = path + "XXXXXX";
  if (::mkdtemp(made.data()) == nullptr) throw RuntimeError(FileFault(errno), made);
  return made;
}

PrivateDirectory::PrivateDirectory() {
  const fs::path parent = fs::temp_directory_path();
  RemoveLeftBehind(parent);
  // Another process, on its way through what is left behind, may be first with the lock. Where directories cannot be
  // locked nobody removes any.
  for (int attempt = 0; attempt < kAttempts && descriptor_ < 0; ++attempt) {
    path_ = MakeLastingDirectory((parent / kPrefix).string());
    descriptor_ = OpenLocked(path_);
  }
}

PrivateDirectory::~PrivateDirectory() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
  if (descriptor_ >= 0) ::close(descriptor_);
}

}  // namespace zenqay
