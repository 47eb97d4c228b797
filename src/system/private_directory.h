// A directory for what a process needs while it runs.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// A new directory below the one for temporary files, named zenqayctl-…, closed to everybody else, that goes with the
/// object. Making one removes those that processes of this user have left behind: the operating system gives up a lock
/// on the directory with the process, whatever its end.
class PrivateDirectory {
 public:
  /// Raises 61, 70, 75 or 76, naming the directory, when it cannot be made.
  PrivateDirectory();
  PrivateDirectory(const PrivateDirectory&) = delete;
  PrivateDirectory& operator=(const PrivateDirectory&) = delete;
  ~PrivateDirectory();

  const Text& path() const { return path_; }

 private:
  Text path_;
  int descriptor_ = -1;
};

/// Makes a directory of this name, closed to everybody else, that stays. Raises as above, and 75 where the name is
/// taken.
void MakePrivateDirectory(const Text& path);

/// A new directory of this name and six characters behind it, closed to everybody else, that stays. Raises as above.
Text MakeLastingDirectory(const Text& path);

}  // namespace zenqay
