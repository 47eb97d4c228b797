// Files that are replaced whole.
#pragma once

#include <optional>

#include "base/runtime_error.h"

namespace zenqay {

/// Puts the content in the place of the file, which nobody but its owner may read then. Who opens the file, on whatever
/// machine, finds what was there before or what is there now. The fault is one of OutputFile.
std::optional<PlatformFault> ReplaceFile(const Text& path, std::string_view content);

}  // namespace zenqay
