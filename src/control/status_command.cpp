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

enum class LockState { NotAsked, Unknown, Free, Held };

struct TableStatus {
  Text job;
  LocalTable table;
  FlagOwner owner;
  LockState lock = LockState::NotAsked;
  std::optional<PastTable> last;
};

Text AgeText(const LocalTable& table, std::int64_t now) {
  return table.updated ? DurationText(Seconds(now - SecondsSince1970(*table.updated))) : "";
}

Text LastText(const std::optional<PastTable>& last) {
  if (!last) return "";
  return last->outcome + " (run " + std::to_string(last->run) + ")";
}

Text StateText(const TableStatus& status) {
  if (!status.table.isTaken) return "free";
  Text words = "taken by " + status.owner.Words();
  if (status.lock == LockState::Free) words += "; its lock is free";
  if (status.lock == LockState::Held) words += "; its lock is held";
  return words;
}

std::vector<Text> RowOf(const TableStatus& status, std::int64_t now) {
  const LocalTable& table = status.table;
  return {status.job,          table.name,        table.updated ? IsoText(*table.updated) : "never",
          AgeText(table, now), StateText(status), LastText(status.last)};
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
  return json;
}

/// Of a taken table alone: nobody waits for the answer about a free one, and on Oracle asking takes the lock for an
/// instant.
LockState LockOf(LocalTables& tables, const LocalTable& table, std::ostream& err) {
  if (!table.isTaken) return LockState::NotAsked;
  try {
    return tables.IsLockHeld(table.name) ? LockState::Held : LockState::Free;
  } catch (const RuntimeError& error) {
    err << "zenqayctl: warning: the lock of " << table.name << " cannot be looked at: " << error.description()
        << std::endl;
    return LockState::Unknown;
  }
}

std::vector<TableStatus> StatusOf(const JobFile& file, const JobSettings& job, History& history,
                                  const Surroundings& surroundings) {
  const DatabaseSettings& database = file.DatabaseOf(job);
  const Text& generation = file.ErpOf(job).generation;
  LocalTables tables(database, AccessTo(file, database, surroundings.environment), Use::Read);
  std::vector<TableStatus> all;
  for (const LocalTable& table : ChooseTables(job, generation, tables.OfGeneration(generation), {})) {
    TableStatus status = {.job = job.name, .table = table};
    if (table.isTaken) status.owner = OwnerOf(history, job.database, table.name);
    status.lock = LockOf(tables, table, surroundings.err);
    const auto latest = history.LatestTables(job.database, table.name, 1);
    if (!latest.empty()) status.last = latest.front();
    all.push_back(std::move(status));
  }
  return all;
}

/// What came of asking for a table's lock.
struct LockAnswer {
  bool isGot = false;
  Text words;
};

LockAnswer AskForLock(LocalTables& tables, const Text& table) {
  try {
    if (tables.TakeLock(table)) return {true, "its lock is free, but a job that does not use it may have set the flag"};
    return {false, "its lock is held by a job"};
  } catch (const RuntimeError& error) {
    return {false, error.description()};
  }
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
      for (const TableStatus& status : StatusOf(file, job, history, surroundings)) {
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
  const auto say = [&](const char* deed, const Text& words, int status) {
    if (json) {
      surroundings.out << JsonText({{"table", table.name}, {"deed", deed}, {"words", words}}) << std::endl;
    } else {
      surroundings.out << table.name << ": " << words << std::endl;
    }
    return status;
  };
  if (!table.isTaken) return say("none", "it is free", kAllComplete);

  // No job that uses the lock begins from here on, and one that ended meanwhile has freed the table.
  const LockAnswer lock = AskForLock(tables, table.name);
  History history(surroundings.historyPath);
  history.CloseLost();
  const FlagOwner owner = OwnerOf(history, job.database, table.name);
  const bool isTaken = tables.IsTaken(table);
  const bool mayFree = force || (lock.isGot && owner.HadLock());
  if (isTaken && mayFree) {
    tables.Free(table.name);
    history.NoteFreed(job.database, table.name);
  }
  if (lock.isGot) tables.GiveLockBack(table.name);

  if (!isTaken) return say("none", "it is free", kAllComplete);
  if (mayFree) return say("freed", "it was taken by " + owner.Words() + ", and is free now", kAllComplete);
  return say("none",
             "it is taken by " + owner.Words() + "; " + lock.words + "; once you are sure that no job copies it: " +
                 "zenqayctl unlock " + job.name + " " + table.name + " --force",
             kTableInUse);
}

}  // namespace zenqay
