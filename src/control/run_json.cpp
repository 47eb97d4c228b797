#include "control/run_json.h"

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

}  // namespace

Text JsonText(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

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
  Json json = {{"job", run.task.job},
               {"database", run.task.database},
               {"table", run.task.table},
               {"id", run.task.tableId},
               {"method", run.task.method == Method::Full ? "full" : "changed"},
               {"state", StateWord(run.state)},
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

Json RunJson(const PastRun& run) {
  Json json = {{"run", run.id}, {"command", run.command}, {"started", run.started}};
  AddText(json, "ended", run.ended);
  json["outcome"] = OutcomeJson(run.outcome);
  json["process"] = {{"host", run.process.host}, {"pid", run.process.pid}};
  return json;
}

}  // namespace zenqay
