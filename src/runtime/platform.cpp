#include "runtime/platform.h"

namespace zenqay {

void Platform::NameCause(const RuntimeError& error) {
  const Text oneLine = Replaced(Replaced(error.description(), "\r\n", " "), "\n", " ");
  NameCause("error " + std::to_string(error.number()) + " from \"" + error.source() + "\": " + oneLine);
}

Text NativePath(std::string_view path) {
  const bool onDriveC = StartsWithIgnoringCase(path, "C:");
  if (onDriveC) path.remove_prefix(2);
  Text native = Replaced(path, "\\", "/");
  return onDriveC && !native.starts_with('/') ? "/" + native : native;
}

}  // namespace zenqay
