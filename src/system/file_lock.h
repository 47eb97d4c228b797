// Locks between processes, by a file.
#pragma once

#include <cstdint>

#include "base/text_functions.h"

namespace zenqay {

/// Locks by name in one file. The operating system gives them up when the object goes or the process ends, whatever its
/// end. Another object with the same file, also in the same process, is kept out.
class FileLock {
 public:
  /// Opens the file at a path of the operating system, or creates it; it stays behind. Raises 70, 75 or 76 when it
  /// cannot be opened for writing, 5 on a disk of the network.
  explicit FileLock(const Text& path);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock();

  /// False when another has the lock of this name; does not wait. Raises 75 where there are no locks.
  bool Take(const Text& name) const;
  void GiveBack(const Text& name) const;

  /// Whether anybody has the lock of this name in the file. Takes nothing, and makes no file. Raises 70 or 75 where
  /// that cannot be found out.
  static bool IsTaken(const Text& path, const Text& name);

 private:
  Text path_;
  int descriptor_ = -1;
};

}  // namespace zenqay
