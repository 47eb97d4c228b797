// The one file handle on which log records are written.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// A text file that is opened for appending, its lines ended by CR LF. There is one handle: opening it while it is
/// still open, as a failed write leaves it, raises 55. Lines reach the file as they are written.
class LogFile {
 public:
  virtual ~LogFile() = default;

  /// Creates the file when it is missing. `path` is as composed, with "\". Raises 75 for an empty path or one that is
  /// no file, 76 when the directory is missing, 70 without the permission.
  virtual void Open(const Text& path) = 0;

  /// Writes the text as it is; keeping passwords out of it is its writer's part. Raises 61 when the disk is full, 75
  /// for most other failures.
  virtual void WriteLine(const Text& line) = 0;

  /// Raises as WriteLine does what a network drive reports only now. The handle is free again in any case.
  virtual void Close() = 0;
};

}  // namespace zenqay
