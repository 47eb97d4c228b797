#include "job_site.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <ostream>
#include <set>
#include <sstream>
#include <stdexcept>

#include "doubles/file_content.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

Text WithoutPassword(const Text& connectionString) {
  return connectionString.substr(0, connectionString.find(";Pwd="));
}

}  // namespace

PostgresServer& SharedServer() {
  static PostgresServer server;
  return server;
}

CtlRun RunningCtl::Wait() {
  while (!process_.Ended()) ::usleep(1000);
  return {process_.Ended()->status, process_.Ended()->signal, Said()};
}

Text RunningCtl::Said() const {
  return ContentOf(output_);
}

std::vector<int> RunningCtl::Jobs() const {
  return JobsOf(process_.pid());
}

JobSite::JobSite(Engine engine, const SiteSettings& settings, PostgresServer* server)
    : engine_(engine), settings_(settings), server_(server) {
  fs::create_directory(Path("tmp"));
  if (Run("init " + directory_.path().string()).status != 0) throw std::runtime_error("no first job");
  if (engine_ == Engine::PostgreSql) {
    static int count = 0;
    if (server_ == nullptr) server_ = &SharedServer();
    database_ = "service" + std::to_string(++count);
    server_->Psql("postgres", "CREATE DATABASE " + database_);
    const Text schema = ZENQAY_SHARE "/schema/";
    server_->PsqlFiles(database_, {schema + "postgresql.sql", schema + "control-rows.sql"});
    directory_.Write("password", Text(PostgresServer::kPassword) + "\n");
  }
  WriteJobFile();
}

void JobSite::WriteJobFile() const {
  const Text connection = WithoutPassword(ConnectionString());
  directory_.Write("zenqay.toml", "[database.service]\nconnection = \"" + connection + "\"\n" +
                                      (database_.empty() ? "" : "password = { file = \"password\" }\n") +
                                      "parallel = " + settings_.parallel +
                                      "\n[erp.main]\nhome = \"home\"\ngeneration = " + settings_.generation +
                                      "\n[job.demo]\ndatabase = \"service\"\nerp = \"main\"\ntables = [" +
                                      settings_.tables + "]\nmethod = \"full\"\nlogs = \"log\"\n" + settings_.job);
}

RunningCtl JobSite::Start(const Text& command, const Variables& variables) const {
  static int count = 0;
  const Text output = Path("said-" + std::to_string(++count));
  ChildStart start = {
      .program = "/bin/sh",
      .arguments = {"-c", "exec " ZENQAYCTL " --file " + Path("zenqay.toml") + " " + command + " >" + output + " 2>&1"},
      .environment = {{"XDG_STATE_HOME", directory_.path().string()}, {"TMPDIR", Path("tmp")}}};
  for (const auto& [name, value] : variables) start.environment[name] = value;
  return {start, output};
}

CtlRun JobSite::Run(const Text& command, const Variables& variables) const {
  RunningCtl ctl = Start(command, variables);
  return ctl.Wait();
}

Text JobSite::ConnectionString() const {
  if (engine_ == Engine::Sqlite) return "Provider=SQLite;Data Source=" + Path("service.db");
  return server_->ConnectionString(database_);
}

std::shared_ptr<Connection> JobSite::Connect() const {
  const std::shared_ptr<Connection> connection = LocalDatabases().CreateConnection();
  connection->PutConnectionString(ConnectionString());
  connection->Open();
  return connection;
}

void JobSite::Execute(const Text& statement) const {
  Connect()->Execute(statement);
}

Text JobSite::Rows(const Text& query) const {
  const auto rows = Connect()->RowsOf(query, CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
  Text text;
  while (rows->Next()) {
    for (std::size_t column = 0; column < rows->columns().size(); ++column) {
      const Value field = rows->Field(column);
      text += (column == 0 ? "" : "|") + (field.IsNull() ? Text("NULL") : field.Joined());
    }
    text += "\n";
  }
  return text;
}

Text JobSite::State(const std::vector<Text>& tables) const {
  Text state;
  for (const Text& table : tables) {
    state += table + " " +
             Rows(
                 "SELECT in_use, CASE WHEN lutm IS NULL THEN 'never' ELSE 'copied' END FROM tstables WHERE tablename "
                 "= '" +
                 table + "'");
    std::istringstream rows(Rows("SELECT * FROM " + table));
    std::set<Text> distinct;
    for (Text row; std::getline(rows, row);) distinct.insert(row);
    for (const Text& row : distinct) state += "  " + row + "\n";
  }
  return state;
}

int JobSite::HomesLeft() const {
  return static_cast<int>(std::distance(fs::directory_iterator(Path("tmp")), fs::directory_iterator()));
}

std::vector<int> JobsOf(int process) {
  const Text tasks = "/proc/" + std::to_string(process) + "/task";
  std::vector<int> found;
  std::error_code gone;
  for (fs::directory_iterator task(tasks, gone), end; !gone && task != end; task.increment(gone)) {
    std::istringstream children(ContentOf(task->path() / "children"));
    for (int child = 0; children >> child;) {
      const Text comm = ContentOf("/proc/" + std::to_string(child) + "/comm");
      const bool isJob = comm == "zenqay-dbsync\n" || comm == "Zenqay DB Sync\n";  // as it calls itself later
      if (isJob) found.push_back(child);
    }
  }
  return found;
}

void PrintTo(Engine engine, std::ostream* out) {
  *out << (engine == Engine::Sqlite ? "Sqlite" : "PostgreSql");
}

}  // namespace zenqay
