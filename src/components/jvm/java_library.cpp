#include "components/jvm/java_library.h"

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <vector>

#include "base/runtime_error.h"
#include "system/shared_library.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

constexpr const char* kRuntimesDirectory = "/usr/lib/jvm";

/// Where a runtime keeps its library, below its home: since Java 9, in a JRE of Java 8, in a JDK of Java 8.
constexpr const char* kPlaces[] = {"lib/server/libjvm.so", "lib/amd64/server/libjvm.so",
                                   "jre/lib/amd64/server/libjvm.so"};

/// The home of the `java` command, empty without one.
fs::path HomeOfCommand() {
  const char* path = ::getenv("PATH");
  std::istringstream directories(path == nullptr ? "" : path);
  for (Text directory; std::getline(directories, directory, ':');) {
    std::error_code fault;
    const fs::path command = fs::canonical(fs::path(directory) / "java", fault);
    if (!fault) return command.parent_path().parent_path();
  }
  return {};
}

std::vector<fs::path> Homes() {
  if (const char* home = ::getenv("JAVA_HOME"); home != nullptr && *home != '\0') return {home};
  std::vector<fs::path> installed;
  std::error_code fault;
  for (const fs::directory_entry& entry : fs::directory_iterator(kRuntimesDirectory, fault)) {
    installed.push_back(entry.path());
  }
  std::sort(installed.begin(), installed.end());
  installed.insert(installed.begin(), {HomeOfCommand(), fs::path(kRuntimesDirectory) / "default-java"});
  return installed;
}

/// The description alone: the host puts the class id in front of it.
[[noreturn]] void RaiseUnusable(const Text& why) {
  throw RuntimeError(static_cast<std::int32_t>(PlatformFault::CannotCreateObject), kPlatformSource, why);
}

Text FindLibrary() {
  for (const fs::path& home : Homes()) {
    for (const char* place : kPlaces) {
      std::error_code fault;
      if (!home.empty() && fs::exists(home / place, fault)) return (home / place).string();
    }
  }
  const char* home = ::getenv("JAVA_HOME");
  const Text looked = home != nullptr && *home != '\0' ? "JAVA_HOME, which is " + Text(home) + ","
                                                       : "/usr/lib/jvm, and JAVA_HOME is not set,";
  RaiseUnusable("there is no Java runtime: " + looked + " has no libjvm.so");
}

}  // namespace

CreateJavaMachine LoadJavaLibrary() {
  const LibrarySymbol create = LoadSymbol(FindLibrary(), "JNI_CreateJavaVM");
  if (create.address == nullptr) RaiseUnusable(create.fault);
  return reinterpret_cast<CreateJavaMachine>(create.address);
}

}  // namespace zenqay
