#include "control/plan/plan_report.h"

#include <algorithm>

#include "control/history.h"
#include "control/run_json.h"
#include "control/run_views.h"
#include "control/text_table.h"

namespace zenqay {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kPlanVersion = 1;  // grows when a key changes its meaning

Text Quoted(const std::optional<Text>& value) {
  return value ? "'" + Replaced(OneLine(*value), "'", "''") + "'" : "NULL";
}

/// The state of a row that is told by its only value: what it is, or what it was.
const std::optional<Text>& OnlyValue(const FieldDifference& field) {
  return field.after ? field.after : field.before;
}

Text Words(const RowDifference& row) {
  const char* const sign = row.deed == RowDeed::Insert ? "+ " : row.deed == RowDeed::Change ? "~ " : "- ";
  Text key;
  for (const FieldDifference& field : row.key) {
    key += (key.empty() ? "" : ", ") + field.column + "=" + Quoted(OnlyValue(field));
  }
  Text fields;
  for (const FieldDifference& field : row.fields) {
    const Text value = row.deed == RowDeed::Change ? " " + Quoted(field.before) + " -> " + Quoted(field.after)
                                                   : "=" + Quoted(OnlyValue(field));
    fields += (fields.empty() ? ": " : ", ") + field.column + value;
  }
  return sign + key + fields;
}

const char* WordOf(RowDeed deed) {
  switch (deed) {
    case RowDeed::Insert:
      return "insert";
    case RowDeed::Change:
      return "change";
    case RowDeed::Delete:
      return "delete";
  }
  return "";
}

std::int64_t CountOf(const TableDifferences& differences, RowDeed deed) {
  if (deed == RowDeed::Insert) return differences.inserted;
  return deed == RowDeed::Change ? differences.changed : differences.deleted;
}

/// "8.3%", rounded down but never to nothing.
Text ShareOf(const PlannedSweep& sweep) {
  if (sweep.of == 0 || sweep.rows == 0) return "0%";
  const std::int64_t tenths = std::max<std::int64_t>(sweep.rows * 1000 / sweep.of, 1);
  return std::to_string(tenths / 10) + (tenths % 10 == 0 ? "" : "." + std::to_string(tenths % 10)) + "%";
}

Text SweepWords(const TablePlan& table) {
  if (!table.sweep) return "";
  const Text limit = table.sweep->limit.empty() ? "" : ", limit " + table.sweep->limit;
  return ShareOf(*table.sweep) + limit + (table.sweep->isRefused ? ": refused" : "");
}

Text OutcomeOf(const TablePlan& table) {
  if (table.runs.empty()) return "by the warranty expiry";
  Text words;
  for (const TableRun& run : table.runs) {
    const Text state = StateWord(run.state);
    if (words.find(state) == Text::npos) words += (words.empty() ? "" : ", ") + state;
  }
  return words;
}

Text MethodOf(const TablePlan& table) {
  return table.runs.empty() ? "" : MethodWord(table.runs.back().task.method);
}

std::vector<Text> RowOf(const TablePlan& table, bool showsDatabase) {
  const TableDifferences& d = table.differences;
  const Text name = showsDatabase ? table.database + " " + table.table : table.table;
  return {name,
          MethodOf(table),
          std::to_string(d.rows),
          std::to_string(d.inserted),
          std::to_string(d.changed),
          std::to_string(d.deleted),
          table.rewritten ? std::to_string(*table.rewritten) : "",
          SweepWords(table),
          OutcomeOf(table)};
}

void WriteExamples(std::ostream& out, const TablePlan& table) {
  if (table.differences.examples.empty()) return;
  out << '\n' << table.table << '\n';
  for (const RowDeed deed : {RowDeed::Insert, RowDeed::Change, RowDeed::Delete}) {
    std::int64_t shown = 0;
    for (const RowDifference& row : table.differences.examples) {
      if (row.deed != deed) continue;
      out << "  " << Words(row) << '\n';
      ++shown;
    }
    const std::int64_t left = CountOf(table.differences, deed) - shown;
    if (shown > 0 && left > 0) out << "  … and " << left << " more to " << WordOf(deed) << '\n';
  }
}

void WriteFailures(std::ostream& out, const TablePlan& table) {
  for (const TableRun& run : table.runs) {
    if (run.state == TableState::Complete) continue;
    out << '\n' << table.table << ": the job would not complete: " << StateWord(run.state);
    out << (run.words.empty() ? "" : ": " + run.words) << '\n';
    for (const JobFailure& failure : run.failures) out << "    " << FailureText(failure) << '\n';
  }
  if (table.sweep && table.sweep->isRefused) {
    out << '\n'
        << table.table << ": the sweep limit of " << table.sweep->limit << " would refuse the deletion of "
        << table.sweep->rows << " of " << table.sweep->of
        << " rows: the job would fail and delete none; --allow-sweep lifts the limit\n";
  }
}

/// Whether every job came to its end.
bool IsWhole(const Plan& plan) {
  return std::ranges::all_of(plan.tables, [](const TablePlan& table) {
    return std::ranges::all_of(table.runs, [](const TableRun& run) { return run.state == TableState::Complete; });
  });
}

void WriteSum(std::ostream& out, const Plan& plan) {
  std::int64_t rows = 0;
  std::int64_t tables = 0;
  for (const TablePlan& table : plan.tables) {
    rows += table.differences.count();
    tables += table.differences.count() > 0 ? 1 : 0;
  }
  if (rows == 0) {
    if (IsWhole(plan)) out << "\nNothing would change.\n";
  } else {
    out << '\n'
        << rows << (rows == 1 ? " row" : " rows") << " would change in " << tables
        << (tables == 1 ? " table" : " tables") << ". Nothing was written.\n";
  }
}

Json ValueJson(const std::optional<Text>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json ExampleJson(const RowDifference& row) {
  Json json = {{"kind", WordOf(row.deed)}, {"key", Json::object()}, {"fields", Json::array()}};
  for (const FieldDifference& field : row.key) json["key"][field.column] = ValueJson(OnlyValue(field));
  for (const FieldDifference& field : row.fields) {
    json["fields"].push_back(
        {{"column", field.column}, {"before", ValueJson(field.before)}, {"after", ValueJson(field.after)}});
  }
  return json;
}

Json RunOfPlanJson(const TableRun& run) {
  Json json = {{"job", run.task.job}, {"method", MethodWord(run.task.method)}, {"state", StateWord(run.state)}};
  if (!run.words.empty()) json["words"] = run.words;
  json["failures"] = Json::array();
  for (const JobFailure& failure : run.failures) json["failures"].push_back(FailureJson(failure));
  return json;
}

Json TablePlanJson(const TablePlan& table) {
  const TableDifferences& d = table.differences;
  Json json = {{"database", table.database}, {"table", table.table}, {"rows", d.rows},
               {"insert", d.inserted},       {"change", d.changed},  {"delete", d.deleted}};
  if (table.rewritten) json["rewrite"] = *table.rewritten;
  if (table.sweep) {
    json["sweep"] = {{"rows", table.sweep->rows},
                     {"of", table.sweep->of},
                     {"limit", table.sweep->limit.empty() ? Json(nullptr) : Json(table.sweep->limit)},
                     {"refused", table.sweep->isRefused}};
  }
  json["runs"] = Json::array();
  for (const TableRun& run : table.runs) json["runs"].push_back(RunOfPlanJson(run));
  json["examples"] = Json::array();
  for (const RowDifference& row : d.examples) json["examples"].push_back(ExampleJson(row));
  return json;
}

}  // namespace

void WritePlan(std::ostream& out, const Plan& plan) {
  if (plan.tables.empty()) return;
  const bool showsDatabase = std::ranges::any_of(
      plan.tables, [&](const TablePlan& table) { return table.database != plan.tables.front().database; });
  std::vector<std::vector<Text>> rows = {
      {"TABLE", "METHOD", "ROWS", "INSERT", "CHANGE", "DELETE", "REWRITE", "SWEEP", "OUTCOME"}};
  for (const TablePlan& table : plan.tables) rows.push_back(RowOf(table, showsDatabase));
  WriteTextTable(out, rows);
  for (const TablePlan& table : plan.tables) WriteExamples(out, table);
  for (const TablePlan& table : plan.tables) WriteFailures(out, table);
  if (!plan.warnings.empty()) out << '\n';
  for (const PlanWarning& warning : plan.warnings) {
    out << "warning   " << warning.table << ": " << warning.words << '\n';
  }
  WriteSum(out, plan);
  out << std::flush;
}

Json PlanJson(const Plan& plan) {
  Json json = {{"plan", kPlanVersion}, {"status", ExitStatusOf(plan)}, {"tables", Json::array()}};
  for (const TablePlan& table : plan.tables) json["tables"].push_back(TablePlanJson(table));
  json["warnings"] = Json::array();
  for (const PlanWarning& warning : plan.warnings) {
    json["warnings"].push_back({{"table", warning.table}, {"words", warning.words}});
  }
  return json;
}

}  // namespace zenqay
