#include "control/run_json.h"

#include "control/past_runs.h"

namespace zenqay {
namespace {

using Json = nlohmann::ordered_json;

void AddCounts(Json& json, const RowCounts& counts) {
  json["met"] = counts.met;
  json["inserted"] = counts.inserted;
  json["updated"] = counts.updated;
  json["deleted"] = counts.deleted;
}

void AddText(Json& json, const char* key, const Text& text) {
  if (!text.empty()) json[key] = text;
}

/// The number of an outcome that is an exit status.
Json OutcomeJson(const Text& outcome) {
  const bool isNumber = !outcome.empty() && outcome.find_first_not_of("0123456789") == Text::npos;
  return isNumber ? Json(std::stoi(outcome)) : Json(outcome);
}

Json LifeJson(OwnerLife life) {
  switch (life) {
    case OwnerLife::Alive:
      return true;
    case OwnerLife::Gone:
      return false;
    default:
      return nullptr;
  }
}

Json RunJson(const PastRun& run) {
  Json json = {{"run", run.id}, {"command", run.command}, {"started", run.started}};
  AddText(json, "ended", run.ended);
  json["outcome"] = OutcomeJson(run.outcome);
  json["process"] = {{"host", run.process.host}, {"pid", run.process.pid}};
  return json;
}

}  // namespace

Json FailureJson(const JobFailure& failure) {
  Json json;
  AddText(json, "time", failure.time);
  json["number"] = failure.number;
  AddText(json, "source", failure.source);
  AddText(json, "description", failure.description);
  AddText(json, "sqlstate", failure.sqlState);
  AddText(json, "native", failure.native);
  AddText(json, "statement", failure.statement);
  AddText(json, "call", failure.call);
  AddText(json, "key", failure.rowKey);
  AddText(json, "during", failure.during);
  return json;
}

Json TableJson(const TableRun& run) {
  Json json = {{"job", run.task.job},    {"database", run.task.database},         {"table", run.task.table},
               {"id", run.task.tableId}, {"method", MethodWord(run.task.method)}, {"state", StateWord(run.state)},
               {"attempt", run.attempts}};
  if (run.hasTakenOver) json["takeover"] = true;
  if (!IsEnd(run.state)) return json;
  AddCounts(json, run.counts);
  json["seconds"] = std::chrono::duration<double>(run.ended - run.started).count();
  AddText(json, "words", run.words);
  AddText(json, "advice", AdviceFor(run));
  if (!run.failures.empty()) json["failures"] = Json::array();
  for (const JobFailure& failure : run.failures) json["failures"].push_back(FailureJson(failure));
  return json;
}

Json TableJson(const PastTable& table) {
  Json json = {{"run", table.run},         {"job", table.job},          {"database", table.database},
               {"table", table.table},     {"method", table.method},    {"started", table.started},
               {"outcome", table.outcome}, {"attempts", table.attempts}};
  AddText(json, "ended", table.ended);
  AddCounts(json, table.counts);
  AddText(json, "words", table.words);
  AddText(json, "logs", table.logs);
  AddText(json, "freed", table.freed);
  if (table.process.pid != 0) json["process"] = {{"host", table.process.host}, {"pid", table.process.pid}};
  return json;
}

Json StatusJson(const TableStatus& status, std::int64_t now) {
  const LocalTable& table = status.table;
  Json json = {{"job", status.job}, {"table", table.name}, {"id", table.id}};
  if (const auto age = AgeOf(table, now)) {
    json["updated"] = UtcText(now - *age);
    json["age_seconds"] = *age;
  } else {
    json["updated"] = nullptr;
  }
  json["taken"] = table.isTaken;
  if (status.lock == LockState::Free || status.lock == LockState::Held) {
    json["lock"] = status.lock == LockState::Held ? "held" : "free";
  }
  if (table.isTaken && status.owner.life != OwnerLife::Unknown) {
    json["owner"] = {{"host", status.owner.process.host},
                     {"pid", status.owner.process.pid},
                     {"run", status.owner.run},
                     {"alive", LifeJson(status.owner.life)}};
  }
  json["last"] = status.last ? TableJson(*status.last) : Json(nullptr);
  if (status.task) {
    json["task"] = {{"state", status.task->state}, {"node", status.task->node}, {"reason", status.task->reason}};
  }
  return json;
}

Json RunJson(const PastRun& run, const std::vector<PastTable>& tables) {
  Json json = RunJson(run);
  std::int64_t met = 0;
  for (const PastTable& table : tables) met += table.counts.met;
  json["tables"] = tables.size();
  json["met"] = met;
  return json;
}

Json WholeRunJson(History& history, const PastRun& run) {
  Json json = RunJson(run);
  json["tables"] = Json::array();
  for (const PastTable& table : history.TablesOf(run.id)) {
    Json one = TableJson(table);
    one["failures"] = Json::array();
    for (const JobFailure& failure : history.FailuresOf(table.id)) one["failures"].push_back(FailureJson(failure));
    one["run_log"] = LogTailOf(table);
    json["tables"].push_back(std::move(one));
  }
  return json;
}

}  // namespace zenqay
