#include <algorithm>
#include <filesystem>

#include "control/commands.h"
#include "control/erp_home.h"
#include "control/exit_status.h"
#include "control/run_json.h"
#include "engines/connection_string.h"
#include "system/file_content.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFileOfUnits = "/etc/zenqay/zenqay.toml";

/// Each once, in the order in which they were named.
class Paths {
 public:
  void Add(const Text& path) {
    if (!Has(path)) paths_.push_back(path);
  }
  void AddDirectoryOf(const Text& file) { Add(fs::path(file).parent_path().string()); }

  bool Has(const Text& path) const { return std::find(paths_.begin(), paths_.end(), path) != paths_.end(); }
  const std::vector<Text>& all() const { return paths_; }

 private:
  std::vector<Text> paths_;
};

/// What a job needs of a system that is closed to it otherwise.
struct JobNeeds {
  Paths written;  // directories
  Paths read;     // directories and files
  std::map<Text, Text> credentials;
  bool writesCode = false;  // as a Java machine does
};

void AddDatabase(const JobFile& file, const DatabaseSettings& database, JobNeeds& needs) {
  const ConnectionString connection(database.connection);
  if (database.isEmbedded) needs.written.AddDirectoryOf(connection.Value("Data Source"));
  for (const char* key : {"Server", "Servername"}) {
    const Text server = connection.Value(key);
    if (server.starts_with('/')) needs.read.Add(server);  // a directory of sockets
  }
  if (!database.password) return;
  const Text& name = database.password->name;
  if (database.password->kind == PasswordSource::Kind::File) needs.read.Add(name);
  if (database.password->kind != PasswordSource::Kind::Credential) return;
  needs.credentials.emplace(name, (fs::path(file.directory) / "credentials" / name).string());
}

void AddErp(const ErpSettings& erp, JobNeeds& needs) {
  needs.read.Add(erp.home);
  pugi::xml_document components;
  ReadComponents(erp, components);
  for (const pugi::xml_node element : components.document_element().children()) {
    if (const auto exports = element.attribute("directory")) needs.read.Add(exports.value());
    if (const auto file = element.attribute("file")) needs.written.AddDirectoryOf(file.value());
    for (const Text& part : ClassPathParts(element.attribute("classpath").value())) {
      needs.read.AddDirectoryOf(part);
    }
    if (Text(element.attribute("kind").value()) == "jvm") needs.writesCode = true;
  }
}

JobNeeds NeedsOf(const JobFile& file, const JobSettings& job) {
  JobNeeds needs;
  needs.read.Add(file.directory);
  AddDatabase(file, file.DatabaseOf(job), needs);
  AddErp(file.ErpOf(job), needs);
  needs.written.Add(job.logs);
  if (!file.batch.shared.empty()) needs.written.Add(file.batch.shared);  // whoever looks at the history collects there
  return needs;
}

/// A path as it stands in a unit. Raises WrongUsage for one that the units' form has no way to write everywhere.
Text UnitPath(const Text& path) {
  const bool isWritable = std::none_of(path.begin(), path.end(), [](char byte) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == '"' || byte == '\\' || byte == ':';
  });
  if (!isWritable) throw WrongUsage("a unit of systemd cannot name the path " + path);
  return Replaced(path, "%", "%%");
}

Text Quoted(const Text& path) {
  const Text written = UnitPath(path);
  return written.find(' ') == Text::npos ? written : "\"" + written + "\"";
}

bool IsBelow(const Text& path, std::initializer_list<const char*> trees) {
  return std::any_of(trees.begin(), trees.end(),
                     [&](const Text& tree) { return path == tree || path.starts_with(tree + "/"); });
}

bool IsInAHome(const Text& path) {
  return IsBelow(path, {"/home", "/root", "/run/user"});
}

/// The units have a /tmp of their own and no homes: what is there is bound in.
bool IsHidden(const Text& path) {
  return IsInAHome(path) || IsBelow(path, {"/tmp", "/var/tmp"});
}

Text Words(const std::vector<Text>& paths) {
  Text words;
  for (const Text& path : paths) words += (words.empty() ? "" : " ") + Quoted(path);
  return words;
}

/// A setting with those of the paths for which the condition holds; nothing without any.
template <typename Condition>
Text Setting(const char* name, const Paths& paths, Condition holds) {
  std::vector<Text> chosen;
  std::copy_if(paths.all().begin(), paths.all().end(), std::back_inserter(chosen), holds);
  return chosen.empty() ? Text() : Text(name) + "=" + Words(chosen) + "\n";
}

Text DropIn(const JobFile& file, const JobSettings& job) {
  const JobNeeds needs = NeedsOf(file, job);
  Paths all = needs.written;
  for (const Text& path : needs.read.all()) all.Add(path);
  Text text = "# Made by \"zenqayctl systemd " + job.name + "\" from " + file.path +
              ".\n[Unit]\nRequiresMountsFor=" + Words(all.all()) + "\n\n[Service]\n";
  if (file.path != kFileOfUnits) text += "Environment=\"ZENQAY_FILE=" + UnitPath(file.path) + "\"\n";
  for (const auto& [name, path] : needs.credentials) text += "LoadCredential=" + name + ":" + UnitPath(path) + "\n";
  text += Setting("ReadWritePaths", needs.written, [](const Text& path) { return !IsHidden(path); });
  if (std::any_of(all.all().begin(), all.all().end(), IsInAHome)) text += "ProtectHome=tmpfs\n";
  text += Setting("BindPaths", needs.written, IsHidden);
  text += Setting("BindReadOnlyPaths", needs.read,
                  [&](const Text& path) { return IsHidden(path) && !needs.written.Has(path); });
  if (needs.writesCode) text += "MemoryDenyWriteExecute=no\n";
  return text;
}

void RequireNameOfAnInstance(const Text& job) {
  constexpr const char* kOthers = ":-_.";
  const bool isName = std::all_of(job.begin(), job.end(), [&](char letter) {
    const bool isLetter = (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
    return isLetter || (letter >= '0' && letter <= '9') || Text(kOthers).find(letter) != Text::npos;
  });
  if (isName) return;
  throw WrongUsage("no unit of systemd can be named after the job \"" + job +
                   "\": use letters, digits, \"-\", \"_\", \".\" and \":\"");
}

}  // namespace

int WriteDropIns(const JobFile& file, const Text& jobName, const Text& directory, bool json,
                 Surroundings& surroundings) {
  const JobSettings& job = file.Job(jobName);
  RequireNameOfAnInstance(jobName);
  const Text dropIn = DropIn(file, job);
  const fs::path units = fs::absolute(directory).lexically_normal();
  const Text ofJob = units / ("zenqay@" + jobName + ".service.d") / "zenqay.conf";
  const Text ofPage = units / "zenqay-page.service.d" / ("zenqay-" + jobName + ".conf");
  for (const Text& path : {ofJob, ofPage}) WriteFile(path, dropIn);
  if (json) {
    surroundings.out << JsonText({{"files", {ofJob, ofPage}}}) << std::endl;
    return kAllComplete;
  }
  surroundings.out << "Made " << ofJob << "\nand " << ofPage << ". Next:\n\n"
                   << "    systemctl daemon-reload\n"
                   << "    systemctl start zenqay@" << jobName << ".service          runs the job\n"
                   << "    systemctl enable --now zenqay@" << jobName << ".timer     runs it every night\n"
                   << std::flush;
  return kAllComplete;
}

}  // namespace zenqay
