#include "control/credentials.h"

#include <filesystem>

#include "control/exit_status.h"
#include "system/file_content.h"
#include "system/own_process.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Raise(const PasswordSource& source, const Text& what) {
  throw WrongUsage(source.place + ": " + what);
}

/// Others can read a file when they may, and may go through its directory.
bool OthersCanRead(const fs::path& path) {
  const auto may = [](const fs::path& what, fs::perms right) {
    return (fs::status(what).permissions() & right) != fs::perms::none;
  };
  return may(path, fs::perms::others_read) && may(path.parent_path(), fs::perms::others_exec);
}

Text ReadFile(const PasswordSource& source, const fs::path& path, bool isOfSystem) {
  std::optional<Text> content = ContentOfFile(path.string());
  if (!content) Raise(source, "the password's file " + path.string() + " is missing or cannot be read");
  if (!isOfSystem && OthersCanRead(path)) {
    Raise(source, "everybody can read the password's file " + path.string() + ": chmod o= " + path.string());
  }
  Text text = std::move(*content);
  if (text.ends_with('\n')) text.pop_back();
  if (text.ends_with('\r')) text.pop_back();
  return text;
}

Text ReadWherever(const JobFile& file, const PasswordSource& source, const Environment& environment) {
  switch (source.kind) {
    case PasswordSource::Kind::Environment: {
      const Text value = environment.Value(source.name);
      if (value.empty()) Raise(source, "the environment has no " + source.name + ", where the password is to be");
      return value;
    }
    case PasswordSource::Kind::File:
      return ReadFile(source, source.name, false);
    case PasswordSource::Kind::Credential:
      break;
  }
  const Text ofSystem = environment.Value("CREDENTIALS_DIRECTORY");
  const fs::path directory = ofSystem.empty() ? fs::path(file.directory) / "credentials" : fs::path(ofSystem);
  return ReadFile(source, directory / source.name, !ofSystem.empty());
}

}  // namespace

Environment Environment::OfProcess() {
  Environment environment;
  for (const Text& text : EnvironmentEntries()) {
    const std::size_t sign = text.find('=');
    if (sign != Text::npos) environment.variables.emplace(text.substr(0, sign), text.substr(sign + 1));
  }
  return environment;
}

Text Environment::Value(const Text& name) const {
  const auto found = variables.find(name);
  return found == variables.end() ? Text() : found->second;
}

Text ReadPassword(const JobFile& file, const PasswordSource& source, const Environment& environment) {
  Text password = ReadWherever(file, source, environment);
  if (password.empty()) Raise(source, "the password is empty");
  constexpr std::string_view kNoneOfLine("\r\n\0", 3);
  if (password.find_first_of(kNoneOfLine) != Text::npos) Raise(source, "the password is not one line of text");
  return password;
}

}  // namespace zenqay
