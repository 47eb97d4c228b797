#include "system/posix/file_fault.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace zenqay {
namespace {

TEST(FileFault, IsThePlatformsErrorForTheOperatingSystems) {
  const std::pair<int, PlatformFault> cases[] = {
      {ENOENT, PlatformFault::PathNotFound},     {ENOTDIR, PlatformFault::PathNotFound},
      {EACCES, PlatformFault::PermissionDenied}, {EPERM, PlatformFault::PermissionDenied},
      {ENOSPC, PlatformFault::DiskFull},         {EDQUOT, PlatformFault::DiskFull},
      {EISDIR, PlatformFault::PathAccess},       {ELOOP, PlatformFault::PathAccess},
      {ENAMETOOLONG, PlatformFault::PathAccess}, {EROFS, PlatformFault::PathAccess},
      {EIO, PlatformFault::PathAccess},          {EMFILE, PlatformFault::PathAccess},
  };
  for (const auto& [error, fault] : cases) EXPECT_EQ(FileFault(error), fault) << error;
}

}  // namespace
}  // namespace zenqay
