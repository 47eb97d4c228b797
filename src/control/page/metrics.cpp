#include "control/page/metrics.h"

#include <algorithm>

#include "control/past_runs.h"
#include "control/run_views.h"

namespace zenqay {
namespace {

constexpr const char* kLost = "lost";

/// A table with its last run that has ended, and whether another one has it.
struct Measured {
  const TableStatus* status = nullptr;
  std::optional<PastTable> ended;
  bool isRunning = false;
};

/// A table that waits for its turn, or for the batch system's, has no job yet.
bool IsRunning(const PastTable& past) {
  return past.ended.empty() && past.outcome != kQueued && past.outcome != StateWord(TableState::Waiting);
}

Text LabelValue(const Text& text) {
  return "\"" + Replaced(Replaced(Replaced(text, "\\", "\\\\"), "\"", "\\\""), "\n", "\\n") + "\"";
}

Text LabelsOf(const TableStatus& status) {
  return "job=" + LabelValue(status.job) + ",database=" + LabelValue(status.database) +
         ",table=" + LabelValue(status.table.name);
}

std::vector<Measured> Measure(const TableOverview& overview, History& history) {
  constexpr int kLookedBack = 5;  // several zenqayctl may be at it
  std::vector<Measured> all;
  for (const TableStatus& status : overview.tables) {
    Measured measured{.status = &status};
    for (const PastTable& past : history.LatestTables(status.database, status.table.name, kLookedBack)) {
      measured.isRunning = measured.isRunning || IsRunning(past);
      if (!measured.ended && !past.ended.empty()) measured.ended = past;
    }
    all.push_back(std::move(measured));
  }
  return all;
}

class Exposition {
 public:
  /// A metric whose lines follow.
  void Begin(const Text& name, const Text& help) {
    name_ = name;
    text_ += "# HELP " + name + " " + help + "\n# TYPE " + name + " gauge\n";
  }

  void Add(const Text& labels, std::int64_t value) {
    text_ += name_ + (labels.empty() ? "" : "{" + labels + "}") + " " + std::to_string(value) + "\n";
  }

  const Text& text() const { return text_; }

 private:
  Text name_;
  Text text_;
};

template <typename ValueOf>
void AddToEach(Exposition& out, const std::vector<Measured>& tables, const Text& name, const Text& help,
               ValueOf valueOf) {
  out.Begin(name, help);
  for (const Measured& table : tables) {
    if (const std::optional<std::int64_t> value = valueOf(table)) out.Add(LabelsOf(*table.status), *value);
  }
}

void AddOutcomes(Exposition& out, const std::vector<Measured>& tables) {
  std::vector<Text> outcomes = {kLost};
  for (const TableState state : {TableState::Complete, TableState::InUse, TableState::Failed, TableState::CouldNotBegin,
                                 TableState::Stopped, TableState::TimedOut}) {
    outcomes.push_back(StateWord(state));
  }
  std::sort(outcomes.begin(), outcomes.end());
  out.Begin("zenqay_table_last_run_outcome",
            "1 for what became of the table in its last run that ended, 0 for the rest.");
  for (const Measured& table : tables) {
    if (!table.ended) continue;
    for (const Text& outcome : outcomes) {
      out.Add(LabelsOf(*table.status) + ",outcome=" + LabelValue(outcome), table.ended->outcome == outcome ? 1 : 0);
    }
  }
}

void AddRows(Exposition& out, const std::vector<Measured>& tables) {
  out.Begin("zenqay_table_last_run_rows", "Rows of the table's last run that ended, by what was done with them.");
  for (const Measured& table : tables) {
    if (!table.ended) continue;
    const RowCounts& counts = table.ended->counts;
    for (const auto& [deed, number] : {std::pair{"met", RowsOf(counts)},
                                       {"inserted", counts.inserted},
                                       {"updated", counts.updated},
                                       {"deleted", counts.deleted}}) {
      out.Add(LabelsOf(*table.status) + ",rows=" + LabelValue(deed), number);
    }
  }
}

/// Nothing as long as no database has answered.
void AddLook(Exposition& out, const TableOverview& overview) {
  if (overview.readAt == 0) return;
  out.Begin("zenqay_tables_read_timestamp_seconds", "When the databases were last looked at, in seconds since 1970.");
  out.Add("", overview.readAt);
  out.Begin("zenqay_job_database_up", "1 when the job's tables could be looked at in its database, else 0.");
  for (const auto& [name, job] : overview.file.jobs) {
    out.Add("job=" + LabelValue(name) + ",database=" + LabelValue(job.database),
            overview.unreached.contains(name) ? 0 : 1);
  }
}

}  // namespace

Text MetricsText(const TableOverview& overview, History& history, std::int64_t now) {
  using Number = std::optional<std::int64_t>;
  const std::vector<Measured> tables = Measure(overview, history);
  Exposition out;
  AddLook(out, overview);
  AddToEach(out, tables, "zenqay_table_age_seconds", "Seconds since the table's data was current.",
            [&](const Measured& table) { return AgeOf(table.status->table, now); });
  AddToEach(out, tables, "zenqay_table_copied", "1 when the table has ever been copied, else 0.",
            [](const Measured& table) { return Number(table.status->table.updated ? 1 : 0); });
  AddToEach(out, tables, "zenqay_table_taken", "1 when the table's flag says that a copy is running, else 0.",
            [](const Measured& table) { return Number(table.status->table.isTaken ? 1 : 0); });
  AddToEach(out, tables, "zenqay_table_running", "1 while a run of zenqayctl has the table, else 0.",
            [](const Measured& table) { return Number(table.isRunning ? 1 : 0); });
  AddOutcomes(out, tables);
  AddToEach(out, tables, "zenqay_table_last_run_end_timestamp_seconds",
            "When the table's last run ended, in seconds since 1970.",
            [](const Measured& table) { return table.ended ? Number(SecondsOfUtc(table.ended->ended)) : Number(); });
  AddToEach(out, tables, "zenqay_table_last_run_duration_seconds", "Seconds that the table's last run took.",
            [&](const Measured& table) { return table.ended ? SecondsOf(*table.ended, now) : Number(); });
  AddRows(out, tables);
  return out.text();
}

}  // namespace zenqay
