// A file that bytes are appended to, and who may write where.
#pragma once

#include <optional>

#include "base/runtime_error.h"

namespace zenqay {

/// A file that is opened for appending. Each operation gives the fault that it failed with: 61 on a full disk, 70
/// without the permission, 76 for a missing directory, 75 otherwise. The file is closed with the object.
class OutputFile {
 public:
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile() { Close(); }

  /// Creates the file when it is missing. `path` is one of the operating system. Not while a file is open.
  std::optional<PlatformFault> Open(const Text& path);

  /// As Open, but empties a file that is there, and nobody but its owner may read it from then on.
  std::optional<PlatformFault> OpenPrivate(const Text& path);

  /// Appends all of the bytes; in one piece, as far as the disk has room for it. A file that cannot take them stays
  /// open.
  std::optional<PlatformFault> Write(std::string_view bytes);

  /// As Write, and what a file could take of bytes that do not fit whole is cut off again.
  std::optional<PlatformFault> WriteWhole(std::string_view bytes);

  /// Does nothing when no file is open. None is open behind it, also when it failed.
  std::optional<PlatformFault> Close();

  bool isOpen() const { return descriptor_ >= 0; }

 private:
  int descriptor_ = -1;
};

/// True when this process may write the file, which must exist.
bool MayWriteFile(const Text& path);

/// True when this process may create files in the directory.
bool MayWriteIn(const Text& directory);

/// True when the file system that a file or directory stands on has no room left for this process.
bool DiskIsFull(const Text& path);

/// The fault that appending to the file would begin with, as far as that can be told without touching it; the file
/// itself may be missing.
std::optional<PlatformFault> AppendFault(const Text& path);

}  // namespace zenqay
