// The built zenqayctl and the built job between files and a database of their own: a job file with one job, "demo", and
// the ERP of the demo.
//
//     JobSite site(Engine::Sqlite, {.tables = "\"SITE\""});
//     EXPECT_EQ(site.Run("run demo").status, 0);
//     EXPECT_EQ(site.Rows("SELECT SITE FROM SITE"), "A1\n");
#pragma once

#include "doubles/held_export.h"
#include "doubles/postgres_server.h"
#include "doubles/temp_directory.h"
#include "doubles/tries_all.h"
#include "engines/databases.h"
#include "system/child_process.h"

namespace zenqay {

enum class Engine { Sqlite, PostgreSql };

/// The server that the tests of this program share.
PostgresServer& SharedServer();

struct SiteSettings {
  Text generation = "1";
  Text tables = "\"SITE\"";  // as they stand in the list of the job file
  Text parallel = "4";
  Text job;  // further lines of the job
};

/// How zenqayctl ended, and what it said on both streams.
struct CtlRun {
  int status = 0;
  int signal = 0;
  Text said;
};

using Variables = std::map<Text, Text>;

/// A zenqayctl that has been started. It is killed at the end of the scope, should it still run.
class RunningCtl {
 public:
  RunningCtl(const ChildStart& start, Text output) : process_(start), output_(std::move(output)) {}

  int pid() const { return process_.pid(); }
  bool HasEnded() { return process_.Ended().has_value(); }
  CtlRun Wait();

  /// What it has said so far.
  Text Said() const;

  /// The jobs that it has started and that still run.
  std::vector<int> Jobs() const;

 private:
  ChildProcess process_;
  Text output_;
};

class JobSite {
 public:
  explicit JobSite(Engine engine, const SiteSettings& settings = {}, PostgresServer* server = nullptr);

  /// Of a command as a shell reads it, such as "run demo --json".
  RunningCtl Start(const Text& command, const Variables& variables = {}) const;
  CtlRun Run(const Text& command, const Variables& variables = {}) const;

  Text Path(const Text& name) const { return directory_.path().string() + "/" + name; }
  Text Export(const Text& name) const { return Path("home/erp/" + name); }
  const TempDirectory& directory() const { return directory_; }
  const Text& database() const { return database_; }  // its name on the server

  /// The connection string of the database, whole; a statement on it; the rows of a query, a line each, their fields
  /// separated by "|".
  Text ConnectionString() const;
  void Execute(const Text& statement) const;
  Text Rows(const Text& query) const;

  /// All rows of the tables as sets, and of each table whether it is taken and has an update time.
  Text State(const std::vector<Text>& tables) const;

  /// Writes the job file anew, as for a server that has another port.
  void WriteJobFile() const;

  /// How many homes of jobs zenqayctl has left among the temporary files.
  int HomesLeft() const;

 private:
  std::shared_ptr<Connection> Connect() const;

  Engine engine_;
  SiteSettings settings_;
  PostgresServer* server_;
  Text database_;
  TempDirectory directory_;
};

/// The jobs that are children of a process.
std::vector<int> JobsOf(int process);

/// "Sqlite", "PostgreSql"
void PrintTo(Engine engine, std::ostream* out);

}  // namespace zenqay
