#include <array>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "control/commands.h"
#include "control/exit_status.h"
#include "control/history.h"
#include "control/run_json.h"
#include "control/run_views.h"
#include "control/text_table.h"
#include "system/own_process.h"

namespace zenqay {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kTailLines = 20;

std::int64_t MomentOf(const Text& utc) {
  std::tm parts{};
  const char* end = ::strptime(utc.c_str(), "%Y-%m-%dT%H:%M:%SZ", &parts);
  return end == nullptr ? 0 : static_cast<std::int64_t>(::timegm(&parts));
}

Text DurationOf(const Text& started, const Text& ended) {
  return ended.empty() ? Text() : DurationText(Seconds(MomentOf(ended) - MomentOf(started)));
}

Text OutcomeWords(const Text& outcome) {
  const bool isStatus = !outcome.empty() && outcome.find_first_not_of("0123456789") == Text::npos;
  if (!isStatus) return outcome;
  const int status = std::stoi(outcome);
  switch (status) {
    case kAllComplete:
      return "all complete";
    case kTableFailed:
      return "a table failed";
    case kTableInUse:
      return "a table was in use";
    case kCouldNotBegin:
      return "a job could not begin";
    case kTimedOut:
      return "timed out";
    default:
      return status > kStoppedBySignal ? "stopped by signal " + std::to_string(status - kStoppedBySignal) : outcome;
  }
}

/// A run log is in Windows-1252. What it has beyond Latin-1 is rare, and not shown.
Text FromWindows1252(const Text& bytes) {
  Text text;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    if (code < 0x80) {
      text += byte;
    } else if (code < 0xA0) {
      text += '?';
    } else {
      text += static_cast<char>(0xC0 | (code >> 6));
      text += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return text;
}

/// The run log of the day on which the table's copy began.
Text RunLogOf(const PastTable& table) {
  const std::int64_t started = MomentOf(table.started);
  const std::time_t local = started + ClockOffsetAt(started);
  std::tm parts{};
  ::gmtime_r(&local, &parts);
  std::array<char, 16> day{};
  std::strftime(day.data(), day.size(), "%Y%m%d", &parts);
  return table.logs + "/" + table.table + "_" + day.data() + ".log";
}

std::vector<Text> TailOf(const Text& path) {
  std::vector<Text> lines;
  std::ifstream file(path, std::ios::binary);
  for (Text line; std::getline(file, line);) {
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(FromWindows1252(line));
    if (lines.size() > kTailLines) lines.erase(lines.begin());
  }
  return lines;
}

void ListRuns(History& history, const HistoryOptions& options, Surroundings& surroundings) {
  std::vector<std::vector<Text>> rows = {{"RUN", "STARTED", "DURATION", "TABLES", "ROWS", "OUTCOME", "COMMAND"}};
  Json list = Json::array();
  for (const PastRun& run : history.Runs(options.limit)) {
    const std::vector<PastTable> tables = history.TablesOf(run.id);
    std::int64_t met = 0;
    for (const PastTable& table : tables) met += table.counts.met;
    rows.push_back({std::to_string(run.id), run.started, DurationOf(run.started, run.ended),
                    std::to_string(tables.size()), std::to_string(met), OutcomeWords(run.outcome), run.command});
    Json json = RunJson(run);
    json["tables"] = tables.size();
    json["met"] = met;
    list.push_back(std::move(json));
  }
  if (options.json) {
    surroundings.out << JsonText(list) << std::endl;
  } else {
    WriteTextTable(surroundings.out, rows);
  }
}

void WriteTableDetails(History& history, const PastTable& table, std::ostream& out) {
  const std::vector<JobFailure> failures = history.FailuresOf(table.id);
  if (failures.empty() && table.words.empty()) return;
  out << '\n' << table.job << ' ' << table.table << ": " << table.outcome;
  if (!table.words.empty()) out << ": " << table.words;
  out << '\n';
  for (const JobFailure& failure : failures) {
    out << "    " << FailureText(failure) << '\n';
    if (!failure.sqlState.empty()) out << "      SQLSTATE " << failure.sqlState << " " << failure.native << '\n';
    if (!failure.statement.empty()) out << "      statement: " << failure.statement << '\n';
    if (!failure.call.empty()) out << "      call: " << failure.call << '\n';
  }
  const Text log = RunLogOf(table);
  const std::vector<Text> tail = TailOf(log);
  if (tail.empty()) return;
  out << "    the end of " << log << ":\n";
  for (const Text& line : tail) out << "      " << line << '\n';
}

void ShowRun(History& history, const PastRun& run, bool asJson, std::ostream& out) {
  const std::vector<PastTable> tables = history.TablesOf(run.id);
  if (asJson) {
    Json json = RunJson(run);
    json["tables"] = Json::array();
    for (const PastTable& table : tables) {
      Json one = TableJson(table);
      one["failures"] = Json::array();
      for (const JobFailure& failure : history.FailuresOf(table.id)) one["failures"].push_back(FailureJson(failure));
      one["run_log"] = TailOf(RunLogOf(table));
      json["tables"].push_back(std::move(one));
    }
    out << JsonText(json) << std::endl;
    return;
  }
  out << "run " << run.id << ": " << run.command << "\nstarted " << run.started << " by process " << run.process.pid
      << " on " << run.process.host << ", " << OutcomeWords(run.outcome) << "\n\n";
  std::vector<std::vector<Text>> rows = {{"JOB", "TABLE", "METHOD", "STARTED", "DURATION", "OUTCOME", "ROWS"}};
  for (const PastTable& table : tables) {
    rows.push_back({table.job, table.table, table.method, table.started, DurationOf(table.started, table.ended),
                    table.outcome, CountsText(table.counts)});
  }
  WriteTextTable(out, rows);
  for (const PastTable& table : tables) WriteTableDetails(history, table, out);
  out << std::flush;
}

}  // namespace

int ShowHistory(const HistoryOptions& options, Surroundings& surroundings) {
  History history(surroundings.historyPath);
  history.CloseLost();
  if (!options.run) {
    ListRuns(history, options, surroundings);
    return kAllComplete;
  }
  const std::optional<PastRun> run = history.Run(*options.run);
  if (!run) throw WrongUsage("the history has no run " + std::to_string(*options.run));
  ShowRun(history, *run, options.json, surroundings.out);
  return kAllComplete;
}

}  // namespace zenqay
