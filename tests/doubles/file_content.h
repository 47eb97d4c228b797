// What a file holds.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace zenqay {

/// Byte for byte; nothing for a file that is missing.
inline std::string ContentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace zenqay
