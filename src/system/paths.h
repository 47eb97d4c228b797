// Paths on their way to the operating system.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// The path as the operating system opens it: "\" becomes "/", and the drive "C:" is the root directory. The one place
/// that maps paths; every text keeps them as they were composed.
Text NativePath(std::string_view path);

}  // namespace zenqay
