// Files that are read or written whole.
#pragma once

#include <optional>

#include "base/text_functions.h"

namespace zenqay {

/// Byte for byte. Nothing for what is missing, is a directory or cannot be read.
std::optional<Text> ContentOfFile(const Text& path);

/// Byte for byte, in the place of what the file held; the directories above it are made. Raises 75, naming the path,
/// when it cannot be written.
void WriteFile(const Text& path, std::string_view content);

}  // namespace zenqay
