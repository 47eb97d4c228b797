#include "control/commands.h"
#include "control/exit_status.h"
#include "control/past_runs.h"
#include "control/run_json.h"
#include "control/run_views.h"
#include "control/submissions.h"
#include "control/text_table.h"

namespace zenqay {
namespace {

using Json = nlohmann::ordered_json;

void ListRuns(History& history, const HistoryOptions& options, Surroundings& surroundings) {
  std::vector<std::vector<Text>> rows = {{"RUN", "STARTED", "DURATION", "TABLES", "ROWS", "OUTCOME", "COMMAND"}};
  Json list = Json::array();
  for (const PastRun& run : history.Runs(options.limit)) {
    const std::vector<PastTable> tables = history.TablesOf(run.id);
    std::int64_t met = 0;
    for (const PastTable& table : tables) met += table.counts.met;
    rows.push_back({std::to_string(run.id), run.started, DurationOf(run.started, run.ended),
                    std::to_string(tables.size()), std::to_string(met), OutcomeWords(run.outcome), run.command});
    list.push_back(RunJson(run, tables));
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
  const std::vector<Text> tail = LogTailOf(table);
  if (tail.empty()) return;
  out << "    the end of " << RunLogOf(table) << ":\n";
  for (const Text& line : tail) out << "      " << line << '\n';
}

void ShowRun(History& history, const PastRun& run, bool asJson, std::ostream& out) {
  if (asJson) {
    out << JsonText(WholeRunJson(history, run)) << std::endl;
    return;
  }
  const std::vector<PastTable> tables = history.TablesOf(run.id);
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
  CollectOutcomes(history, BatchSystem(surroundings.environment), surroundings.err);
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
