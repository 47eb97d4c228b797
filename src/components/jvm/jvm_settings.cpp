#include "components/jvm/jvm_settings.h"

#include <algorithm>

#include "base/runtime_error.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFormerLocales = "-Djava.locale.providers=COMPAT";
constexpr const char* kDefaults[] = {kFormerLocales, "-Duser.language=en", "-Duser.country=US"};

std::vector<Text> PartsOf(const Text& text, const char* separator) {
  std::vector<Text> parts;
  for (const std::string_view part : Split(text, separator)) {
    if (!part.empty()) parts.emplace_back(part);
  }
  return parts;
}

std::vector<fs::path> ArchivesIn(const fs::path& directory) {
  std::vector<fs::path> archives;
  std::error_code fault;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory, fault)) {
    if (entry.path().extension() == ".jar") archives.push_back(entry.path());
  }
  if (fault) throw RuntimeError(PlatformFault::PathNotFound, "class path: " + directory.string());
  std::sort(archives.begin(), archives.end());
  return archives;
}

void AddOnce(std::vector<Text>& list, const Text& item) {
  if (std::find(list.begin(), list.end(), item) == list.end()) list.push_back(item);
}

/// What an option is about: two options about the same thing contradict each other unless they are equal.
Text SubjectOf(const Text& option) {
  for (const char* sized : {"-Xmx", "-Xms", "-Xmn", "-Xss"}) {
    if (option.starts_with(sized)) return sized;
  }
  Text subject = option.substr(0, option.find('='));
  if (subject.starts_with("-XX:+") || subject.starts_with("-XX:-")) subject.erase(4, 1);
  return option.starts_with("-D") || option.starts_with("-XX:") ? subject : option;
}

}  // namespace

void JvmSettings::AddClassPath(const fs::path& directory, const Text& classPath) {
  for (const Text& part : PartsOf(classPath, ":")) {
    const fs::path path = directory / part;
    if (path.filename() == "*.jar") {
      const std::vector<fs::path> archives = ArchivesIn(path.parent_path());
      if (archives.empty()) throw RuntimeError(PlatformFault::FileNotFound, "class path: " + path.string());
      for (const fs::path& archive : archives) AddOnce(classPath_, archive.string());
    } else if (std::error_code fault; fs::exists(path, fault)) {
      AddOnce(classPath_, path.string());
    } else {
      throw RuntimeError(PlatformFault::PathNotFound, "class path: " + path.string());
    }
  }
}

void JvmSettings::AddOptions(const Text& options) {
  for (const Text& option : PartsOf(options, " ")) {
    const Text subject = SubjectOf(option);
    if (!option.starts_with('-')) throw RuntimeError(PlatformFault::InvalidCall, "\"" + option + "\" is no option");
    if (subject == "-Djava.class.path") {
      throw RuntimeError(PlatformFault::InvalidCall, "\"" + option + "\" belongs into the attribute \"classpath\"");
    }
    for (const Text& known : options_) {
      if (known == option || SubjectOf(known) != subject) continue;
      throw RuntimeError(PlatformFault::InvalidCall, "\"" + option + "\" contradicts \"" + known +
                                                         "\": all entries kind=\"jvm\" share one Java machine");
    }
    AddOnce(options_, option);
  }
}

std::vector<Text> JvmSettings::MachineOptions() const {
  std::vector<Text> all = {"-Xrs", "-Djava.class.path="};
  for (const Text& part : classPath_) all.back().append(part == classPath_.front() ? "" : ":").append(part);
  for (const char* standard : kDefaults) {
    const bool isGiven = std::any_of(options_.begin(), options_.end(),
                                     [&](const Text& option) { return SubjectOf(option) == SubjectOf(standard); });
    if (!isGiven) all.emplace_back(standard);
  }
  for (const Text& option : options_) AddOnce(all, option);
  return all;
}

bool JvmSettings::AsksForFormerLocales() const {
  const std::vector<Text> all = MachineOptions();
  return std::find(all.begin(), all.end(), kFormerLocales) != all.end();
}

}  // namespace zenqay
