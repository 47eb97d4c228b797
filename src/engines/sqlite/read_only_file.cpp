#include "engines/sqlite/read_only_file.h"

#include <array>
#include <filesystem>
#include <fstream>

namespace zenqay {
namespace {

/// The two bytes of the file's head that are 2 in WAL mode, else 1.
bool IsInWalMode(const Text& path) {
  std::array<char, 20> head{};
  std::ifstream file(path, std::ios::binary);
  file.read(head.data(), head.size());
  return file && head[18] == 2 && head[19] == 2;
}

bool Exists(const Text& path) {
  std::error_code ignored;
  return std::filesystem::exists(path, ignored);
}

/// The path with the characters that have a meaning in a URI written as codes.
Text Escaped(const Text& path) {
  return Replaced(Replaced(Replaced(path, "%", "%25"), "?", "%3f"), "#", "%23");
}

}  // namespace

ReadOnlyFile ReadOnlyFile::At(const Text& path) {
  const Text uri = "file:" + Escaped(path) + "?mode=ro";
  if (!IsInWalMode(path)) return {uri};
  if (!Exists(path + "-wal")) return {uri + "&immutable=1", false, true};
  if (Exists(path + "-shm")) return {uri + "&readonly_shm=1"};
  return {uri + "&vfs=unix-none", true, true};
}

}  // namespace zenqay
