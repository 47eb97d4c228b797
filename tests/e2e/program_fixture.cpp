#include "e2e/program_fixture.h"

#include <fcntl.h>
#include <spawn.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <ctime>
#include <map>
#include <memory>
#include <regex>
#include <stdexcept>
#include <thread>

namespace zenqay {
namespace {

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> EnvironmentOf(const std::string& home, const ProgramSettings& settings) {
  std::vector<std::string> variables = {"ZENQAY_HOME=" + home, "TZ=" + settings.timeZone};
  variables.insert(variables.end(), settings.variables.begin(), settings.variables.end());
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string inherited = *variable;
    if (!inherited.starts_with("ZENQAY_HOME=") && !inherited.starts_with("TZ=")) variables.push_back(inherited);
  }
  return variables;
}

std::vector<char*> PointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
};
struct Finalize {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

std::unique_ptr<sqlite3, CloseDatabase> OpenDatabase(const std::string& path) {
  sqlite3* opened = nullptr;
  const int code = sqlite3_open(path.c_str(), &opened);
  std::unique_ptr<sqlite3, CloseDatabase> database(opened);
  if (code != SQLITE_OK) throw std::runtime_error(path + ": " + sqlite3_errmsg(opened));
  sqlite3_busy_timeout(opened, 60'000);
  return database;
}

std::string FieldText(sqlite3_stmt* row, int column) {
  if (sqlite3_column_type(row, column) == SQLITE_NULL) return "NULL";
  return reinterpret_cast<const char*>(sqlite3_column_text(row, column));
}

std::string Replaced(std::string text, const std::string& pattern, const std::string& by) {
  return std::regex_replace(text, std::regex(pattern), by);
}

std::string MaskedName(const std::string& fileName) {
  return Replaced(fileName, "_[0-9]{8}\\.log$", "_<day>.log");
}

std::string Formatted(const char* format, const std::tm& time) {
  char text[64];
  return std::string(text, std::strftime(text, sizeof text, format, &time));
}

}  // namespace

std::vector<std::string> CommandLine::Items() const {
  std::vector<std::string> items = {connectionString, database, tableId,  syncMethod, logDirectory, businessComponent,
                                    statusHandle,     freeText, platform, instance,   generation};
  items.insert(items.end(), further.begin(), further.end());
  return items;
}

std::string Joined(const std::vector<std::string>& items) {
  std::string line;
  for (std::size_t i = 0; i < items.size(); ++i) line += (i == 0 ? "" : "{}") + items[i];
  return line;
}

RunningProgram::RunningProgram(const std::string& home, const std::string& commandLine,
                               const ProgramSettings& settings) {
  std::vector<std::string> arguments = settings.wrapper;
  arguments.insert(arguments.end(), {settings.program, commandLine});
  std::vector<std::string> environment = EnvironmentOf(home, settings);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const auto& [descriptor, name] : {std::pair(STDOUT_FILENO, "out"), std::pair(STDERR_FILENO, "err")}) {
    const std::string file = (streams_.path() / name).string();
    posix_spawn_file_actions_addopen(&actions, descriptor, file.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  }
  if (settings.input) {
    streams_.Write("in", *settings.input);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, (streams_.path() / "in").c_str(), O_RDONLY, 0);
  }
  for (const int descriptor : settings.closedStreams) posix_spawn_file_actions_addclose(&actions, descriptor);
  const int fault = posix_spawnp(&pid_, arguments.front().c_str(), &actions, nullptr, PointersTo(arguments).data(),
                                 PointersTo(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  if (fault != 0) throw std::runtime_error("cannot start " + arguments.front());
}

RunningProgram::~RunningProgram() {
  if (!HasEnded()) Kill();
}

ProgramRun RunningProgram::Wait() {
  if (!ended_) ::waitpid(pid_, &waitStatus_, 0);
  ended_ = true;
  return {.status = WIFEXITED(waitStatus_) ? WEXITSTATUS(waitStatus_) : -WTERMSIG(waitStatus_),
          .out = streams_.Read("out"),
          .err = streams_.Read("err")};
}

void RunningProgram::Kill() {
  ::kill(pid_, SIGKILL);
  Wait();
}

void RunningProgram::Signal(int number) const {
  ::kill(pid_, number);
}

std::string RunningProgram::ShownCommandLine() const {
  return ReadFile("/proc/" + std::to_string(pid_) + "/cmdline");
}

bool RunningProgram::HasEnded() {
  if (!ended_) ended_ = ::waitpid(pid_, &waitStatus_, WNOHANG) == pid_;
  return ended_;
}

ProgramHome::ProgramHome() {
  const std::filesystem::path share = ZENQAY_SHARE;
  for (const char* name : {"I18nText.xml", "Components.xml"}) {
    std::filesystem::copy_file(share / name, directory_.path() / name);
  }
  for (const char* name : {"erp", "logs"}) std::filesystem::create_directory(directory_.path() / name);
  Execute(ReadFile(share / "schema" / "sqlite.sql"));
  Execute("BEGIN;" + ReadFile(share / "schema" / "control-rows.sql") + "COMMIT;");
}

CommandLine ProgramHome::Line() const {
  return {.connectionString = "Provider=SQLite;Data Source=" + path() + "/service.db",
          .logDirectory = path() + "/logs"};
}

ProgramRun ProgramHome::Run(const CommandLine& line, const ProgramSettings& settings) const {
  return RunText(Joined(line.Items()), settings);
}

ProgramRun ProgramHome::RunText(const std::string& commandLine, const ProgramSettings& settings) const {
  return RunningProgram(path(), commandLine, settings).Wait();
}

void ProgramHome::WriteExport(const std::string& name, const std::string& content) const {
  directory_.Write("erp/" + name, content);
}

void ProgramHome::RequestTrace() const {
  const std::string shipped = directory_.Read("Components.xml");
  directory_.Write("Components.xml", Replaced(shipped, "</COMPONENTS>", "<TRACE file=\"trace.jsonl\"/></COMPONENTS>"));
}

void ProgramHome::Execute(const std::string& statements) const {
  const auto database = OpenDatabase(path() + "/service.db");
  const int code = sqlite3_exec(database.get(), statements.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(database.get()));
}

std::string ProgramHome::Query(const std::string& statement) const {
  const auto database = OpenDatabase(path() + "/service.db");
  sqlite3_stmt* prepared = nullptr;
  const int code = sqlite3_prepare_v2(database.get(), statement.c_str(), -1, &prepared, nullptr);
  const std::unique_ptr<sqlite3_stmt, Finalize> rows(prepared);
  if (code != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(database.get()));
  std::string shown;
  while (sqlite3_step(prepared) == SQLITE_ROW) {
    for (int column = 0; column < sqlite3_column_count(prepared); ++column) {
      shown += (column == 0 ? "" : "|") + FieldText(prepared, column);
    }
    shown += "\n";
  }
  return shown;
}

std::string ProgramHome::Sites() const {
  return Query("SELECT SITE, DESCRIPTION, CUSTOMER, upd_flag FROM SITE ORDER BY SITE");
}

std::string ProgramHome::SiteState() const {
  return Masked(Query("SELECT lutm, in_use FROM tstables WHERE tablename = 'SITE'"));
}

std::vector<std::string> ProgramHome::LogNames() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(directory_.path() / "logs")) {
    names.push_back(MaskedName(entry.path().filename().string()));
  }
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

std::string ProgramHome::Log(const std::string& maskedName) const {
  std::map<std::string, std::string> byDay;
  for (const auto& entry : std::filesystem::directory_iterator(directory_.path() / "logs")) {
    const std::string name = entry.path().filename().string();
    if (MaskedName(name) == maskedName) byDay[name] = Masked(ReadFile(entry.path()));
  }
  std::string content;
  for (const auto& [name, log] : byDay) content += log;
  return content;
}

std::string ProgramHome::Report(const ProgramRun& run) const {
  std::string report =
      "exit " + std::to_string(run.status) + "\n-- out\n" + Masked(run.out) + "-- err\n" + Masked(run.err);
  for (const std::string& name : LogNames()) report += "-- " + name + "\n" + Log(name);
  return report;
}

std::string ProgramHome::Masked(const std::string& text) const {
  std::string masked = text;
  const std::string home = path();
  for (auto at = masked.find(home); at != std::string::npos; at = masked.find(home, at)) {
    masked.replace(at, home.size(), "<home>");
  }
  masked = Replaced(masked, "_[0-9]{8}\\.log", "_<day>.log");
  masked = Replaced(masked, "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}", "<moment>");
  masked = Replaced(masked, "[0-9]{1,2}/[0-9]{1,2}/[0-9]{4}", "<date>");
  masked = Replaced(masked, "[0-9]{1,2}:[0-9]{2}:[0-9]{2} [AP]M", "<time>");
  return Replaced(masked, "[0-9]+:[0-9]{2}:[0-9]{2}", "<elapsed>");
}

std::string DayNow(int daysAhead) {
  const std::time_t moment = std::time(nullptr) + daysAhead * 86'400;
  std::tm utc{};
  return Formatted("%Y%m%d", *::gmtime_r(&moment, &utc));
}

std::string UtcMoment(long secondsAhead, char betweenDateAndTime) {
  const std::time_t moment = std::time(nullptr) + secondsAhead;
  std::tm utc{};
  const std::string format = std::string("%Y-%m-%d") + betweenDateAndTime + "%H:%M:%S";
  return Formatted(format.c_str(), *::gmtime_r(&moment, &utc));
}

}  // namespace zenqay
