#include "base/date_time.h"
#include "control/clock_change.h"
#include "control/commands.h"
#include "control/exit_status.h"
#include "control/flag_owner.h"
#include "control/local_tables.h"
#include "control/run_json.h"
#include "control/text_table.h"

namespace zenqay {
namespace {

using Json = nlohmann::ordered_json;

struct TableStatus {
  Text job;
  LocalTable table;
  FlagOwner owner;
  std::optional<PastTable> last;
};

Text AgeText(const LocalTable& table, std::int64_t now) {
  return table.updated ? DurationText(Seconds(now - SecondsSince1970(*table.updated))) : "";
}

Text LastText(const std::optional<PastTable>& last) {
  if (!last) return "";
  return last->outcome + " (run " + std::to_string(last->run) + ")";
}

std::vector<Text> RowOf(const TableStatus& status, std::int64_t now) {
  const LocalTable& table = status.table;
  return {status.job,
          table.name,
          table.updated ? IsoText(*table.updated) : "never",
          AgeText(table, now),
          table.isTaken ? "taken by " + status.owner.Words() : "free",
          LastText(status.last)};
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

Json JsonOf(const TableStatus& status, std::int64_t now) {
  const LocalTable& table = status.table;
  Json json = {{"job", status.job}, {"table", table.name}, {"id", table.id}};
  if (table.updated) {
    const std::int64_t moment = SecondsSince1970(*table.updated);
    json["updated"] = UtcText(moment);
    json["age_seconds"] = now - moment;
  } else {
    json["updated"] = nullptr;
  }
  json["taken"] = table.isTaken;
  if (table.isTaken && status.owner.life != OwnerLife::Unknown) {
    json["owner"] = {{"host", status.owner.process.host},
                     {"pid", status.owner.process.pid},
                     {"run", status.owner.run},
                     {"alive", LifeJson(status.owner.life)}};
  }
  json["last"] = status.last ? TableJson(*status.last) : Json(nullptr);
  return json;
}

std::vector<TableStatus> StatusOf(const JobFile& file, const JobSettings& job, History& history,
                                  const Environment& environment) {
  const DatabaseSettings& database = file.DatabaseOf(job);
  const Text& generation = file.ErpOf(job).generation;
  LocalTables tables(database, AccessTo(file, database, environment), Use::Read);
  std::vector<TableStatus> all;
  for (const LocalTable& table : ChooseTables(job, generation, tables.OfGeneration(generation), {})) {
    TableStatus status = {.job = job.name, .table = table};
    if (table.isTaken) status.owner = OwnerOf(history, job.database, table.name);
    const auto latest = history.LatestTables(job.database, table.name, 1);
    if (!latest.empty()) status.last = latest.front();
    all.push_back(std::move(status));
  }
  return all;
}

}  // namespace

int ShowStatus(const JobFile& file, const std::vector<Text>& jobs, bool json, Surroundings& surroundings) {
  std::vector<Text> names = jobs;
  if (names.empty()) {
    for (const auto& [name, job] : file.jobs) names.push_back(name);
  }
  History history(surroundings.historyPath);
  history.CloseLost();
  const std::int64_t now = UtcNow();
  std::vector<std::vector<Text>> rows = {{"JOB", "TABLE", "UPDATED (UTC)", "AGE", "STATE", "LAST RUN"}};
  Json list = Json::array();
  int outcome = kAllComplete;
  for (const Text& name : names) {
    const JobSettings& job = file.Job(name);
    try {
      for (const TableStatus& status : StatusOf(file, job, history, surroundings.environment)) {
        rows.push_back(RowOf(status, now));
        list.push_back(JsonOf(status, now));
      }
    } catch (const WrongUsage&) {
      throw;
    } catch (const RuntimeError& error) {
      surroundings.err << "zenqayctl: the database of " << name << " is not reached: " << error.description()
                       << std::endl;
      outcome = kCouldNotBegin;
    }
  }
  if (json) {
    surroundings.out << JsonText(list) << std::endl;
  } else {
    WriteTextTable(surroundings.out, rows);
  }
  return outcome;
}

int Unlock(const JobFile& file, const Text& jobName, const Text& tableName, bool force, bool json,
           Surroundings& surroundings) {
  const JobSettings& job = file.Job(jobName);
  const DatabaseSettings& database = file.DatabaseOf(job);
  const Text& generation = file.ErpOf(job).generation;
  LocalTables tables(database, AccessTo(file, database, surroundings.environment), Use::Write);
  const LocalTable table = ChooseTables(job, generation, tables.OfGeneration(generation), {tableName}).front();
  const auto say = [&](const char* deed, const Text& words) {
    if (json) {
      surroundings.out << JsonText({{"table", table.name}, {"deed", deed}, {"words", words}}) << std::endl;
    } else {
      surroundings.out << table.name << ": " << words << std::endl;
    }
  };
  if (!table.isTaken) {
    say("none", "it is free");
    return kAllComplete;
  }
  History history(surroundings.historyPath);
  const Text owner = OwnerOf(history, job.database, table.name).Words();
  if (!force) {
    say("none", "it is taken by " + owner + "; once you are sure that no job copies it: zenqayctl unlock " + job.name +
                    " " + table.name + " --force");
    return kTableInUse;
  }
  tables.Free(table.name);
  say("freed", "it was taken by " + owner + ", and is free now");
  return kAllComplete;
}

}  // namespace zenqay
