#include "system/file_content.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "base/runtime_error.h"

namespace zenqay {

std::optional<Text> ContentOfFile(const Text& path) {
  std::error_code ignored;
  std::ifstream file(path, std::ios::binary);
  if (!file || std::filesystem::is_directory(path, ignored)) return std::nullopt;
  Text content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  return content;
}

void WriteFile(const Text& path, std::string_view content) {
  std::error_code fault;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), fault);
  std::ofstream file(path, std::ios::binary);
  file << content << std::flush;
  if (fault || !file) throw RuntimeError(PlatformFault::PathAccess, path);
}

}  // namespace zenqay
