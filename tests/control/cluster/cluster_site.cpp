#include "cluster_site.h"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace zenqay {
namespace {

namespace fs = std::filesystem;

std::shared_ptr<Connection> ConnectTo(const Text& connectionString) {
  const std::shared_ptr<Connection> connection = LocalDatabases().CreateConnection();
  connection->PutConnectionString(connectionString);
  connection->Open();
  return connection;
}

Text RowsOf(Connection& connection, const Text& query) {
  const auto rows = connection.RowsOf(query, CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
  std::multiset<Text> lines;
  while (rows->Next()) {
    Text line;
    for (std::size_t column = 0; column < rows->columns().size(); ++column) {
      const Value field = rows->Field(column);
      line += (column == 0 ? "" : "|") + (field.IsNull() ? Text("NULL") : field.Joined());
    }
    lines.insert(line + "\n");
  }
  Text all;
  for (const Text& line : lines) all += line;
  return all;
}

}  // namespace

ClusterSite::ClusterSite(const SlurmCluster& cluster, int files, int servers) {
  variables_["SLURM_CONF"] = cluster.configuration();
  fs::create_directory(Path("shared"));
  file_ = "[batch]\nshared = \"shared\"\nrequeue-wait = \"30s\"\n";
  const Text generations[] = {"1", "3", "8"};
  for (const Text& generation : generations) {
    file_ += "[erp.g" + generation + "]\nhome = \"home\"\ngeneration = " + generation + "\n";
  }
  const std::vector<Text> one[] = {{"SITE"}, {"SITE"}, {"SERIALIZEDITEM"}};
  const std::vector<Text> two[] = {{"PRODUCT", "WARRANTIES"}, {"OBJECT", "WARRANTIES"}, {"PROBLEM", "CONTRACTS"}};
  for (int database = 0; database < files; ++database) {
    const Text name = "file" + std::to_string(database);
    fs::copy_file(Path("service.db"), Path(name + ".db"));
    file_ += "[database." + name + "]\nconnection = \"Provider=SQLite;Data Source=" + name + ".db\"\nparallel = 2\n";
    const int kind = database % 3;
    AddJob(name, "g" + generations[kind], generations[kind], database % 2 == 0 ? one[kind] : two[kind],
           "Provider=SQLite;Data Source=" + Path(name + ".db"));
  }
  static int count = 0;
  for (int database = 0; database < servers; ++database) {
    const Text number = std::to_string(database);
    const Text name = "server" + number;
    const Text onServer = "cluster" + std::to_string(++count);
    SharedServer().Psql("postgres", "CREATE DATABASE " + onServer);
    const Text schema = ZENQAY_SHARE "/schema/";
    SharedServer().PsqlFiles(onServer, {schema + "postgresql.sql", schema + "control-rows.sql"});
    site_.directory().Write("password", Text(PostgresServer::kPassword) + "\n");
    fs::permissions(Path("password"), fs::perms::owner_read);
    fs::copy(Path("home"), Path("home" + number), fs::copy_options::recursive);
    const Text whole = SharedServer().ConnectionString(onServer);
    file_ += "[database." + name + "]\nconnection = \"" + whole.substr(0, whole.find(";Pwd=")) +
             "\"\npassword = { file = \"password\" }\nparallel = 10\n";
    const std::vector<Text> tables[] = {
        {"PRODUCT", "SYMPTOM"},
        {"SITE", "PROBLEM", "PRIORITY", "OBJECT", "SITECONTRACT", "CONTRACTS", "WARRANTIES"},
        {"SERIALIZEDITEM"}};
    for (int kind = 0; kind < 3; ++kind) {
      const Text erp = name + "g" + generations[kind];
      file_ += "[erp." + erp + "]\nhome = \"home" + number + "\"\ngeneration = " + generations[kind] + "\n";
      AddJob(name, erp, generations[kind], tables[kind], whole);
    }
  }
  site_.directory().Write("zenqay.toml", file_);
}

CtlRun ClusterSite::RunOn(const Text& machine, const Text& command) const {
  constexpr std::chrono::minutes kLongest{10};
  ChildStart start = {.program = "/usr/bin/unshare",
                      .arguments = {"--uts", "/bin/sh", "-c",
                                    "echo " + machine + " >/proc/sys/kernel/hostname && exec " ZENQAYCTL " --file " +
                                        Path("zenqay.toml") + " " + command + " 2>&1"},
                      .environment = {{"XDG_STATE_HOME", Path(".")}}};
  for (const auto& [name, value] : variables_) start.environment[name] = value;
  const ProgramRun run = RunProgram(start, kLongest);
  return {run.end.status, run.end.signal, run.output};
}

void ClusterSite::AddJob(const Text& database, const Text& erp, const Text& generation, const std::vector<Text>& tables,
                         const Text& connection) {
  const Text name = database + "g" + generation;
  jobs_ += " " + name;
  Text list;
  for (const Text& table : tables) {
    list += (list.empty() ? "\"" : ", \"") + table + "\"";
    copied_.push_back({connection, table});
  }
  file_ += "[job." + name + "]\ndatabase = \"" + database + "\"\nerp = \"" + erp + "\"\ntables = [" + list +
           "]\nmethod = \"full\"\nlogs = \"log\"\n";
}

Text ClusterSite::Rows() const {
  Text all;
  for (const Copied& copied : copied_) {
    const auto connection = ConnectTo(copied.connection);
    all += copied.table + " " +
           RowsOf(*connection, "SELECT in_use FROM tstables WHERE tablename = '" + copied.table + "'") +
           RowsOf(*connection, "SELECT * FROM " + copied.table);
  }
  return all;
}

Text ClusterSite::RowsWithoutSlurm() const {
  const CtlRun run = Run("run" + jobs_);
  if (run.status != 0) throw std::runtime_error(run.said);
  const Text rows = Rows();
  Empty();
  return rows;
}

void ClusterSite::Empty() const {
  for (const Copied& copied : copied_) {
    const auto connection = ConnectTo(copied.connection);
    connection->Execute("DELETE FROM " + copied.table);
    connection->Execute("UPDATE tstables SET lutm = NULL WHERE tablename = '" + copied.table + "'");
  }
}

Text ClusterSite::History(const Text& query) const {
  return RowsOf(*ConnectTo("Provider=SQLite;Data Source=" + Path("zenqay/history.db")), query);
}

Text ClusterSite::Shared() const {
  Text names;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(Path("shared"))) {
    names += entry.path().filename().string() + "\n";
  }
  return names;
}

}  // namespace zenqay
