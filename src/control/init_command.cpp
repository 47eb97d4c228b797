#include <filesystem>
#include <fstream>
#include <sstream>

#include "control/commands.h"
#include "control/exit_status.h"
#include "control/first_job_files.h"
#include "control/run_json.h"
#include "engines/databases.h"
#include "system/own_process.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kJobFile = R"(# The jobs of zenqayctl. Paths are relative to this file.
# "zenqayctl check" says what of this works, "zenqayctl run demo" runs the job below.

# A local database. The connection string is that of the job's command line, without a password.
[database.service]
connection = "Provider=SQLite;Data Source=service.db"
# connection = "Driver=PostgreSQL Unicode;Server=dbhost;Database=service;UID=zenqay;PWD={password}"
name = "SERVICE"           # the database (SQL Server) or schema (Oracle) in which the tables stand
platform = "sqlserver"     # the form of the statements; or "oracle"
# Where the password is: a file of that name in credentials/ beside this file (chmod 0600), or where systemd puts it.
# password = { credential = "service" }   # or { file = "/path" } or { env = "VARIABLE" }
parallel = 4               # so many tables at the same time, over all jobs of one run

# An ERP. Its home holds I18nText.xml and Components.xml, which names the exports or the adapter.
[erp.main]
home = "home"
generation = 3             # of its components: 1, 3 or 8
bus-component = "MAIN"     # the name of the business component, for which each component of the ERP is initialised

# A job: from which ERP into which database.
[job.demo]
database = "service"
erp = "main"
tables = "all"             # those of the generation's group, or a list: ["SITE", "OBJECT"]
method = "full"            # or "changed": only what changed since the last update
logs = "log"
# status = { component = true, handle = -1, instance = 0 }   # tells the status component of Components.xml too
retry = { times = 2, wait = "30s" }   # what a later run can heal: connection lost, table in use, ERP not reached
timeout = "2h"             # then every table is asked to stop, and ended a minute later
# sweep-limit = "10%"      # a full copy that would delete more of a table's rows deletes none and fails
# on-clock-change = "full" # the clock went forward since the last update: copy in full (or "warn")

# [history]
# keep = "400d"
)";

void Write(const fs::path& path, std::string_view content) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << content << std::flush;
  if (!file) throw RuntimeError(PlatformFault::PathAccess, path.string());
}

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
    connection_->PutConnectionString("Provider=SQLite;Data Source=\"" + Replaced(path.string(), "\"", "\"\"") + "\"");
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
      Write(root / path, content);
    }
  }
  Write(jobFile, kJobFile);
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
