#include <filesystem>
#include <sstream>

#include "control/commands.h"
#include "control/exit_status.h"
#include "control/first_job_files.h"
#include "control/run_json.h"
#include "engines/databases.h"
#include "system/file_content.h"
#include "system/own_process.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

/// Comments of the schema hold apostrophes, which the engine's reader would take for texts.
Text WithoutComments(std::string_view script) {
  Text text;
  std::istringstream lines{Text(script)};
  for (Text line; std::getline(lines, line);) {
    if (!line.starts_with("--")) text += line + "\n";
  }
  return text;
}

class DatabaseFile {
 public:
  explicit DatabaseFile(const fs::path& path) : connection_(LocalDatabases().CreateConnection()) {
    MakePrivateFile(path.string());
    connection_->PutConnectionString(EmbeddedConnection(path.string()));
    connection_->Open();
  }

  void Run(std::string_view script) { connection_->Execute(WithoutComments(script)); }

 private:
  std::shared_ptr<Connection> connection_;
};

}  // namespace

int MakeFirstJob(const Text& directory, bool json, Surroundings& surroundings) {
  const fs::path root = fs::absolute(directory).lexically_normal();
  const fs::path jobFile = root / "zenqay.toml";
  for (const char* name : {"zenqay.toml", "service.db", "home"}) {
    if (fs::exists(root / name)) throw WrongUsage((root / name).string() + " exists; nothing was changed");
  }
  fs::create_directories(root / "log");
  DatabaseFile database(fs::path(root) / "service.db");
  for (const auto& [path, content] : FirstJobFiles()) {
    if (path.starts_with("schema/")) {
      database.Run(content);
    } else {
      WriteFile((root / path).string(), content);
    }
  }
  if (json) {
    surroundings.out << JsonText({{"file", jobFile.string()}}) << std::endl;
  } else {
    surroundings.out << "Made " << jobFile.string() << ", with a database and an ERP to try it on. Next:\n\n"
                     << "    zenqayctl --file " << jobFile.string() << " run demo\n"
                     << std::flush;
  }
  return kAllComplete;
}

}  // namespace zenqay
