#include "system/paths.h"

namespace zenqay {

Text NativePath(std::string_view path) {
  const bool onDriveC = StartsWithIgnoringCase(path, "C:");
  if (onDriveC) path.remove_prefix(2);
  Text native = Replaced(path, "\\", "/");
  return onDriveC && !native.starts_with('/') ? "/" + native : native;
}

}  // namespace zenqay
