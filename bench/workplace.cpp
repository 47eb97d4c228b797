#include "workplace.h"

#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace zenqay::bench {
namespace {

namespace fs = std::filesystem;

constexpr const char* kCatalogue = R"(<COMPONENTS>
  <HOST prefix="java:com.korvel." kind="files" directory="erp"/>
  <HOST prefix="Kv" kind="files" directory="erp"/>
  <HOST prefix="NetListSelectionCriteria." kind="files" directory="erp"/>
  <HOST prefix="java:java.util." kind="builtin"/>
</COMPONENTS>
)";

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(file), {}};
}

void ExecuteScript(sqlite3* database, const fs::path& script) {
  const std::string statements = "BEGIN;" + ReadFile(script) + "COMMIT;";
  if (sqlite3_exec(database, statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw std::runtime_error(script.string() + ": " + sqlite3_errmsg(database));
  }
}

}  // namespace

Workplace::Workplace(const fs::path& directory) : directory_(fs::absolute(directory)) {
  fs::remove_all(directory_);
  fs::create_directories(directory_ / "erp");
  fs::create_directories(directory_ / "log");
  fs::copy_file(fs::path(ZENQAY_SHARE) / "I18nText.xml", directory_ / "I18nText.xml");
  std::ofstream(directory_ / "Components.xml") << kCatalogue;
  ::setenv("ZENQAY_HOME", directory_.c_str(), 1);
}

fs::path Workplace::CreateDatabase(const std::string& name) const {
  const fs::path path = directory_ / name;
  fs::remove(path);
  sqlite3* database = nullptr;
  if (sqlite3_open(path.c_str(), &database) != SQLITE_OK) throw std::runtime_error("cannot create " + path.string());
  sqlite3_exec(database, "PRAGMA journal_mode = WAL", nullptr, nullptr, nullptr);
  ExecuteScript(database, fs::path(ZENQAY_SHARE) / "schema" / "sqlite.sql");
  ExecuteScript(database, fs::path(ZENQAY_SHARE) / "schema" / "control-rows.sql");
  sqlite3_close(database);
  return path;
}

std::string Workplace::CommandLine(const fs::path& database, int tableId, int syncMethod,
                                   const std::string& generation) const {
  return CommandLineFor("Provider=SQLite;Data Source=" + database.string(), tableId, syncMethod, generation);
}

std::string Workplace::CommandLineFor(const std::string& connectionString, int tableId, int syncMethod,
                                      const std::string& generation) const {
  return connectionString + "{}{}" + std::to_string(tableId) + "{}" + std::to_string(syncMethod) + "{}" +
         (directory_ / "log").string() + "{}MAIN{}-1{}{}1{}0{}" + generation + "{}no status component";
}

fs::path Workplace::RecordStatements(const fs::path& database, int tableId, int syncMethod,
                                     const std::string& generation) const {
  return RecordJob(CommandLine(database, tableId, syncMethod, generation),
                   "statements-" + std::to_string(tableId) + "-" + std::to_string(syncMethod) + ".sql0");
}

fs::path Workplace::RecordJob(const std::string& commandLine, const std::string& file) const {
  const fs::path statements = directory_ / file;
  RunChild({ZENQAY_RECORDER, statements.string(), commandLine});
  return statements;
}

Measured Workplace::Measure(const fs::path& before, const fs::path& statements, int tableId, int syncMethod,
                            const std::string& generation, int times, const std::vector<std::string>& peer) const {
  const std::string database = WorkDatabase().string();
  std::vector<std::vector<std::string>> programs = {
      {ZENQAY_PROGRAM, CommandLine(database, tableId, syncMethod, generation)},
      {ZENQAY_FLOOR, database, statements.string()}};
  if (!peer.empty()) programs.push_back(peer);
  return MeasureInTurn(programs, times, [&](const std::vector<std::string>& program) {
    CopyToWork(before);
    return RunChild(program);
  });
}

void Workplace::CopyToWork(const fs::path& database) const {
  const fs::path copy = WorkDatabase();
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(copy.string() + suffix);
  fs::copy_file(database, copy);
  std::system("sync");  // what the copy left unwritten is nobody's cost
}

int RunBench(const char* name, int argc, char** argv, void (*run)(const fs::path& directory, long rows, int pairs)) {
  if (argc < 3) return 2;
  try {
    run(argv[1], std::atol(argv[2]), argc > 3 ? std::atoi(argv[3]) : 5);
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "%s: %s\n", name, fault.what());
    return 1;
  }
  return 0;
}

std::string UtcNow() {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
  return text;
}

}  // namespace zenqay::bench
