// What the entries kind="jvm" of Components.xml ask of the one Java machine that a process can have.
#pragma once

#include <filesystem>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

class JvmSettings {
 public:
  /// Appends the parts of a class path, which are separated by ":" and relative to the directory; "adapter/*.jar"
  /// stands for every archive there, in the order of their names. A part that is there already is not added again.
  /// Raises 76 for a part that does not exist, 53 for a "*.jar" without an archive.
  void AddClassPath(const std::filesystem::path& directory, const Text& classPath);

  /// Adds options, which are separated by blanks. Raises 5 for what is no option, for a class path among them, and for
  /// an option that another entry gives another value.
  void AddOptions(const Text& options);

  /// All that the machine is started with, its class path included. Where no entry speaks of them, dates read as in the
  /// United States: the form that databases read. Signals stay with the process.
  std::vector<Text> MachineOptions() const;

  /// True when dates are to read as they did before Java 9, which Java 23 and later no longer can.
  bool AsksForFormerLocales() const;

 private:
  std::vector<Text> classPath_;
  std::vector<Text> options_;
};

}  // namespace zenqay
