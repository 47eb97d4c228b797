#include "control/outcome_file.h"

#include "control/run_json.h"
#include "control/run_plan.h"
#include "system/file_content.h"
#include "system/replaced_file.h"

namespace zenqay {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kVersion = 1;

Json JsonOf(const TableOutcome& outcome) {
  Json json = TableJson(outcome.run);
  json["started"] = outcome.started;
  json["ended"] = outcome.ended;
  const ProcessIdentity& process = outcome.process;
  json["process"] = {{"host", process.host}, {"boot", process.boot}, {"pid", process.pid}, {"start", process.start}};
  return json;
}

Json JsonOf(const RunOutcome& outcome) {
  Json json = {{"version", kVersion}, {"restarts", outcome.restarts}};
  if (outcome.status) json["status"] = *outcome.status;
  json["tables"] = Json::array();
  for (const TableOutcome& table : outcome.tables) json["tables"].push_back(JsonOf(table));
  return json;
}

JobFailure FailureOf(const Json& json) {
  return {.time = json.value("time", ""),
          .number = json.value("number", std::int64_t{0}),
          .source = json.value("source", ""),
          .description = json.value("description", ""),
          .sqlState = json.value("sqlstate", ""),
          .native = json.value("native", ""),
          .statement = json.value("statement", ""),
          .call = json.value("call", ""),
          .rowKey = json.value("key", ""),
          .during = json.value("during", "")};
}

TableOutcome TableOf(const Json& json) {
  TableOutcome outcome{.started = json.at("started"), .ended = json.at("ended")};
  TableRun& run = outcome.run;
  run.task.job = json.at("job");
  run.task.database = json.at("database");
  run.task.table = json.at("table");
  run.task.method = MethodOfWord(json.at("method"));
  run.state = StateOfWord(json.at("state")).value();
  run.attempts = json.at("attempt");
  run.hasTakenOver = json.value("takeover", false);
  run.counts = {json.value("met", std::int64_t{0}), json.value("inserted", std::int64_t{0}),
                json.value("updated", std::int64_t{0}), json.value("deleted", std::int64_t{0})};
  run.words = json.value("words", "");
  for (const Json& failure : json.value("failures", Json::array())) run.failures.push_back(FailureOf(failure));
  const Json& process = json.at("process");
  outcome.process = {process.at("host"), process.at("boot"), process.at("pid"), process.at("start")};
  return outcome;
}

}  // namespace

std::optional<RunOutcome> ReadOutcome(const Text& path) {
  const std::optional<Text> text = ContentOfFile(path);
  if (!text) return std::nullopt;
  try {
    const Json json = Json::parse(*text);
    if (json.at("version") != kVersion) return std::nullopt;
    RunOutcome outcome{.restarts = json.at("restarts")};
    if (json.contains("status")) outcome.status = json["status"].get<int>();
    for (const Json& table : json.at("tables")) outcome.tables.push_back(TableOf(table));
    return outcome;
  } catch (const Json::exception&) {
    return std::nullopt;
  } catch (const std::bad_optional_access&) {
    return std::nullopt;
  }
}

OutcomeRecord::OutcomeRecord(Text path, Surroundings& surroundings)
    : path_(std::move(path)), surroundings_(surroundings) {
  outcome_.restarts = RestartsOf(surroundings.environment);
}

void OutcomeRecord::Begin(std::vector<TableRun>& runs) {
  outcome_.tables.resize(runs.size());
  for (std::size_t which = 0; which < runs.size(); ++which) {
    outcome_.tables[which].started = UtcText(UtcNow());
    Take(runs[which], which);
  }
  Write();
}

void OutcomeRecord::Changed(const std::vector<TableRun>& runs, std::size_t which) {
  Take(runs[which], which);
  Write();
}

void OutcomeRecord::End(int status) {
  outcome_.status = status;
  Write();
}

void OutcomeRecord::Take(const TableRun& run, std::size_t which) {
  TableOutcome& outcome = outcome_.tables[which];
  outcome.run = run;
  if (run.state == TableState::Beginning) {
    outcome.started = UtcText(UtcNow());
    outcome.process = IdentityOf(run.pid);
  }
  outcome.ended = IsEnd(run.state) ? UtcText(UtcNow()) : "";
}

void OutcomeRecord::Write() {
  if (hasFailed_) return;
  const std::optional<PlatformFault> fault = ReplaceFile(path_, JsonText(JsonOf(outcome_)) + "\n");
  if (!fault) return;
  hasFailed_ = true;
  surroundings_.err << "zenqayctl: the outcome " << path_ << " is not written: " << RuntimeError(*fault).description()
                    << std::endl;
}

}  // namespace zenqay
