// The one file handle on which log records are written.
#pragma once

#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// A Windows-1252 text file that is opened for appending. There is one handle: opening it while it is still open, as a
/// failed write leaves it, raises 55. Lines reach the file as they are written.
class AppendFile {
 public:
  AppendFile() = default;
  AppendFile(const AppendFile&) = delete;
  AppendFile& operator=(const AppendFile&) = delete;
  ~AppendFile();

  /// Creates the file when it is missing. `path` is as composed, with "\". Raises 75 for an empty path or one that is
  /// no file, 76 when the directory is missing, 70 without the permission.
  void Open(const Text& path);

  /// Writes the text, without passwords, and CR LF. Raises 61 when the disk is full, 75 for most other failures.
  void WriteLine(const Text& line);

  /// Raises as WriteLine does what a network drive reports only now. The handle is free again in any case.
  void Close();

  bool isOpen() const { return descriptor_ >= 0; }
  const Text& path() const { return path_; }

  /// The lines of the record since Open, as text.
  const std::vector<Text>& lines() const { return lines_; }

 private:
  int descriptor_ = -1;
  Text path_;
  std::vector<Text> lines_;
};

}  // namespace zenqay
