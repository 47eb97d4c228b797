#include "faults/demo_job.h"

#include <sqlite3.h>
#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <stdexcept>

#include "base/memory_reserve.h"
#include "components/component_catalogue.h"
#include "doubles/fake_platform.h"
#include "doubles/file_content.h"
#include "doubles/trace_text.h"
#include "engines/databases.h"
#include "process/QTMDeclarations.h"
#include "startup/modStartUp.h"
#include "trace/traced_process.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

constexpr DateTimeParts kNow = {.year = 2026, .month = 2, .day = 1, .hour = 12, .minute = 0, .second = 0};
constexpr const char* kToday = "20260201";
constexpr const char* kChanged = "2026-02-01T11:00:00Z";
constexpr const char* kOld = "2026-01-01 00:00:00";

/// Keeps what it is told, call by call.
class Listener : public Component {
 public:
  explicit Listener(std::vector<Text>& heard) : heard_(heard) {}

  Value Call(std::string_view operation, Arguments arguments) override {
    if (operation == "UpdateSyncStatus") {
      heard_.push_back("sync " + arguments[0].value().AsText() + " " + arguments[1].value().AsText());
    } else if (operation == "UpdateStatusByTable") {
      heard_.push_back("table " + arguments[1].value().AsText() + " " + arguments[2].value().AsText());
    } else {
      heard_.push_back(operation == "WriteToAlertBox" ? "alert" : "message");
    }
    return {};
  }

 private:
  std::vector<Text>& heard_;
};

class ListenerCreator : public Component {
 public:
  explicit ListenerCreator(std::vector<Text>& heard) : heard_(heard) {}

  Value Call(std::string_view, Arguments) override { return Object(std::make_shared<Listener>(heard_)); }
  void Put(std::string_view, const Value&) override {}

 private:
  std::vector<Text>& heard_;
};

/// The catalogue's components, and the listener in the place of the status component.
class ListenedComponents : public ComponentHost {
 public:
  ListenedComponents(ComponentHost& inner, std::vector<Text>& heard) : inner_(inner), heard_(heard) {}

  void RequireUsable() override { inner_.RequireUsable(); }
  Object Create(const Text& classId) override {
    if (classId == kStatusClass) return Object(std::make_shared<ListenerCreator>(heard_));
    return inner_.Create(classId);
  }

 private:
  ComponentHost& inner_;
  std::vector<Text>& heard_;
};

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
};
using OpenedDatabase = std::unique_ptr<sqlite3, CloseDatabase>;

OpenedDatabase OpenFile(const fs::path& path) {
  sqlite3* opened = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  const int code = sqlite3_open_v2(path.c_str(), &opened, flags, nullptr);
  OpenedDatabase database(opened);
  if (code != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(opened));
  return database;
}

void Execute(const fs::path& path, const Text& script) {
  const OpenedDatabase database = OpenFile(path);
  if (sqlite3_exec(database.get(), script.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(database.get()));
  }
}

void TakeExports(const TempDirectory& home, const char* state) {
  for (const fs::directory_entry& file : fs::directory_iterator(fs::path(ZENQAY_SHARE) / "demo" / state)) {
    home.Write("erp/" + file.path().filename().string(), Replaced(ContentOf(file.path()), "@NOW@", kChanged));
  }
}

/// The records as one text, lines separated by "\n", and what the copy or the gate made of a failure without its words.
Text ShownLog(const fs::path& path) {
  Text shown;
  const Text content = Replaced(ContentOf(path), "\r\n", "\n");
  for (const std::string_view line : Split(content, "\n")) {
    if (line.empty()) continue;
    if (line.starts_with("\"Data copy: ")) {
      shown += "the copy failed\n";
    } else if (line.starts_with("\"Data Copy In Progress\"")) {
      shown += "the gate failed\n";
    } else {
      shown.append(line).append("\n");
    }
  }
  return shown;
}

}  // namespace

Text DemoJob::Name() const {
  return "generation " + generation + (syncMethod == "1" ? ", full copy" : ", only changed") +
         (tableId == kAllTables ? "" : ", table " + std::to_string(tableId)) +
         (platform == "1" ? "" : ", platform " + platform);
}

const std::vector<DemoJob>& DemoJobs() {
  static const std::vector<DemoJob> jobs = {{"1", "1", kAllTables}, {"1", "2", kAllTables}, {"3", "1", kAllTables},
                                            {"3", "2", kAllTables}, {"8", "1", kAllTables}, {"8", "2", kAllTables},
                                            {"3", "1", 6},          {"3", "2", 6}};
  return jobs;
}

Text Shown(const JobEnd& end) {
  Text shown = "exit " + std::to_string(end.status) + "\n";
  for (const Text& heard : end.heard) shown += "heard " + heard + "\n";
  for (const auto& [name, table] : end.tables) {
    shown += name + (table.isTaken ? " taken" : " free") + ", update time " + table.updateTime + ", rows #" +
             std::to_string(std::hash<Text>()(table.rows) % 100'000) + "\n" + table.log;
  }
  if (!end.startupLog.empty()) shown += "start-up log\n" + end.startupLog;
  for (const Text& cause : end.causes) shown += "cause " + cause + "\n";
  return shown;
}

DemoDatabase::DemoDatabase(const DemoJob& job) : job_(job) {
  ::setenv("TZ", "UTC", 1);
  ::tzset();
  for (const char* name : {"erp", "log"}) fs::create_directory(home_.path() / name);
  for (const char* name : {"I18nText.xml", "Components.xml"}) {
    fs::copy_file(fs::path(ZENQAY_SHARE) / name, home_.path() / name);
  }
  TakeExports(home_, "erp");
  const fs::path file = home_.path() / "service.db";
  Execute(file, ContentOf(fs::path(ZENQAY_SHARE) / "schema/sqlite.sql") +
                    ContentOf(fs::path(ZENQAY_SHARE) / "schema/control-rows.sql"));
  DemoJob first = {job.generation, "1", kAllTables, job.platform};
  std::swap(job_, first);
  Disturbance none;
  JobEnd end;
  RunProcessOf(none, Around(), end);
  std::swap(job_, first);
  Execute(file, Text("UPDATE tstables SET lutm = '") + kOld + "' WHERE lutm IS NOT NULL");
  fs::copy_file(file, BeforePath());
  TakeExports(home_, "end");
  TakeExports(home_, "changes");

  const Text wanted = job.tableId == kAllTables ? "" : " AND t.tableid = " + std::to_string(job.tableId);
  const Text names = Query(
      "SELECT t.tablename FROM tstreenodes n JOIN tstables t ON t.tableid = n.tableid WHERE "
      "n.groupid = '" +
      job.generation + "'" + wanted + " ORDER BY n.rowid");
  for (const std::string_view name : Split(names, "\n")) {
    if (!name.empty()) tables_.emplace_back(name);
  }
  Reset();
}

void DemoDatabase::Reset() const {
  for (const char* name : {"service.db-wal", "service.db-shm", "log"}) fs::remove_all(home_.path() / name);
  fs::create_directory(home_.path() / "log");
  fs::copy_file(BeforePath(), home_.path() / "service.db", fs::copy_options::overwrite_existing);
}

JobEnd DemoDatabase::Run(Disturbance& disturbance, const Around& around) const {
  JobEnd end;
  RunProcessOf(disturbance, around, end);
  return EndOf(std::move(end));
}

JobEnd DemoDatabase::Run() const {
  Disturbance none;
  return Run(none);
}

JobEnd DemoDatabase::EndOf(JobEnd run) const {
  JobEnd found = Look();
  found.status = run.status;
  found.heard = std::move(run.heard);
  found.causes = std::move(run.causes);
  return found;
}

DemoDatabase::TracedEnd DemoDatabase::Record(Disturbance& disturbance) const {
  JobEnd end;
  ComponentCatalogue catalogue(home_.path().string());
  ListenedComponents listened(catalogue, end.heard);
  RunOn(listened, disturbance, Around(), TracePath(), end);
  return {EndOf(std::move(end)), WithoutTimes(ContentOf(TracePath()))};
}

DemoDatabase::TracedEnd DemoDatabase::Replay(Disturbance& disturbance) const {
  JobEnd end;
  fs::create_directories(home_.path() / "replay");
  home_.Write("replay/Components.xml", "<COMPONENTS><HOST kind='replay' file='../trace.jsonl'/></COMPONENTS>");
  ComponentCatalogue catalogue((home_.path() / "replay").string());
  const fs::path trace = home_.path() / "replay/trace.jsonl";
  RunOn(catalogue, disturbance, Around(), trace, end);
  return {EndOf(std::move(end)), WithoutTimes(ContentOf(trace))};
}

void DemoDatabase::RunProcessOf(Disturbance& disturbance, const Around& around, JobEnd& end) const {
  ComponentCatalogue catalogue(home_.path().string());
  ListenedComponents listened(catalogue, end.heard);
  RunOn(listened, disturbance, around, "", end);
}

void DemoDatabase::RunOn(ComponentHost& served, Disturbance& disturbance, const Around& around, const Text& tracePath,
                         JobEnd& end) const {
  Journal journal;
  const Text home = home_.path().string();
  FakePlatform platform(journal, home);
  platform.now = DateTime::FromParts(kNow);
  DisturbedLogFile log(platform.logFile, disturbance);
  platform.log = &log;
  DisturbedComponents components(served, disturbance);
  LocalDatabases databases;
  DisturbedDatabase database(databases, disturbance);
  const Text commandLine = "Provider=SQLite;Data Source=" + home + "/service.db{}" + databaseName + "{}" +
                           std::to_string(job_.tableId) + "{}" + job_.syncMethod + "{}" + home + "/log{}" + component +
                           "{}7{}{}" + job_.platform + "{}0{}" + job_.generation;
  const auto run = [&](modDeclarations& process) {
    SetMemoryAside();
    around.before();
    try {
      RunProcess(process, commandLine);
    } catch (...) {
      ErrorInFlight();  // as the program's end does
      end.status = 70;
    }
    around.behind();
  };
  if (tracePath.empty()) {
    modDeclarations process{.platform = platform, .components = components, .database = database};
    run(process);
  } else {
    Trace trace(tracePath, "1.1.0");
    TracedProcess traced(platform, components, database, trace);
    run(traced.process);
  }
  end.causes = platform.causes;
  for (Text& cause : end.causes) {
    if (cause.find("from \"Data copy: ") != Text::npos) cause = "the copy failed";
    if (cause.find("from \"Data Copy In Progress\"") != Text::npos) cause = "the gate failed";
  }
}

JobEnd DemoDatabase::Look() const {
  JobEnd end;
  for (const Text& table : tables_) end.tables[table] = StateOf(table);
  end.startupLog = ShownLog(home_.path() / "log/ZenqayDBSync.log");
  return end;
}

TableState DemoDatabase::StateOf(const Text& table) const {
  const Text where = " FROM tstables WHERE tablename = '" + table + "'";
  const Text updateTime = Query(Text("SELECT CASE WHEN lutm IS NULL THEN 'NULL' WHEN lutm = '") + kOld +
                                "' THEN 'old' ELSE 'new' END" + where);
  return {.isTaken = Query("SELECT in_use" + where) == "1\n",
          .updateTime = updateTime.substr(0, updateTime.find('\n')),
          .rows = Query("SELECT " + Columns(table, false) + " FROM " + table + " ORDER BY rowid"),
          .log = ShownLog(home_.path() / "log" / (table + "_" + kToday + ".log"))};
}

Text DemoDatabase::DistinctRows(const Text& table, bool withExpiry) const {
  return Query("SELECT DISTINCT " + Columns(table, withExpiry) + " FROM " + table + " ORDER BY 1, 2, 3");
}

Text DemoDatabase::Columns(const Text& table, bool withExpiry) const {
  if (withExpiry || table != "OBJECT") return "*";
  return "SITE, OBJECT, OBJECTNR, OBJECTDESC, ITEM, ITEMDESC, SERIALNUMBER, WARRANTY, INSTALLATION_DATE, "
         "DELIVERY_DATE, upd_flag";
}

void DemoDatabase::Free(const Text& table) const {
  Execute(home_.path() / "service.db", "UPDATE tstables SET in_use = 0 WHERE tablename = '" + table + "'");
}

Text DemoDatabase::LogPath(const Text& table) const {
  return home_.path().string() + "/log\\" + table + "_" + kToday + ".log";
}

Text DemoDatabase::Query(const Text& statement) const {
  const OpenedDatabase database = OpenFile(home_.path() / "service.db");
  Text rows;
  const auto add = [](void* text, int count, char** fields, char**) {
    Text& all = *static_cast<Text*>(text);
    for (int i = 0; i < count; ++i) all += (i == 0 ? "" : "|") + Text(fields[i] == nullptr ? "NULL" : fields[i]);
    all += "\n";
    return 0;
  };
  if (sqlite3_exec(database.get(), statement.c_str(), add, &rows, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(database.get()));
  }
  return rows;
}

}  // namespace zenqay
