#include "system/posix/file_fault.h"

#include <cerrno>

namespace zenqay {

PlatformFault FileFault(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return PlatformFault::PathNotFound;
    case EACCES:
    case EPERM:
      return PlatformFault::PermissionDenied;
    case ENOSPC:
    case EDQUOT:
      return PlatformFault::DiskFull;
    default:
      return PlatformFault::PathAccess;
  }
}

}  // namespace zenqay
