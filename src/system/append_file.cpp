#include "system/append_file.h"

#include "base/windows1252.h"
#include "system/paths.h"

namespace zenqay {

void AppendFile::Open(const Text& path) {
  if (isOpen()) throw RuntimeError(PlatformFault::FileAlreadyOpen, path_);
  if (path.empty()) throw RuntimeError(PlatformFault::PathAccess);
  if (const auto fault = file_.Open(NativePath(path))) throw RuntimeError(*fault, path);
  path_ = path;
}

void AppendFile::WriteLine(const Text& line) {
  if (!isOpen()) throw RuntimeError(PlatformFault::BadFileNumber);
  if (const auto fault = file_.Write(ToWindows1252(line) + "\r\n")) throw RuntimeError(*fault, path_);
}

void AppendFile::Close() {
  if (const auto fault = file_.Close()) throw RuntimeError(*fault, path_);
}

}  // namespace zenqay
