// Failures of the operating system's file calls as the platform's errors.
#pragma once

#include "base/runtime_error.h"

namespace zenqay {

/// The fault that an errno of opening or writing a file stands for: 61 on a full disk, 70 without the permission, 76
/// for a missing directory, 75 otherwise.
PlatformFault FileFault(int error);

}  // namespace zenqay
