#include "control/commands.h"
#include "control/exit_status.h"
#include "control/run_json.h"
#include "control/submissions.h"
#include "control/table_status.h"
#include "control/text_table.h"

namespace zenqay {
namespace {

using Json = nlohmann::ordered_json;

Text AgeText(const LocalTable& table, std::int64_t now) {
  const auto age = AgeOf(table, now);
  return age ? DurationText(Seconds(*age)) : "";
}

Text LastText(const TableStatus& status) {
  if (!status.last) return "";
  const Text words = status.task ? status.task->Words() : status.last->outcome;
  return words + " (run " + std::to_string(status.last->run) + ")";
}

std::vector<Text> RowOf(const TableStatus& status, std::int64_t now) {
  const LocalTable& table = status.table;
  return {status.job,          table.name,        table.updated ? IsoText(*table.updated) : "never",
          AgeText(table, now), StateText(status), LastText(status)};
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
  const OpenTasks tasks = CollectOutcomes(history, BatchSystem(surroundings.environment), surroundings.err);
  const std::int64_t now = UtcNow();
  std::vector<std::vector<Text>> rows = {{"JOB", "TABLE", "UPDATED (UTC)", "AGE", "STATE", "LAST RUN"}};
  Json list = Json::array();
  int outcome = kAllComplete;
  for (const Text& name : names) {
    const JobSettings& job = file.Job(name);
    try {
      for (const TableStatus& status :
           StatusOf(file, job, history, tasks, surroundings.environment, surroundings.err)) {
        rows.push_back(RowOf(status, now));
        list.push_back(StatusJson(status, now));
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
  const bool isTaken = tables.IsTaken(table.name);
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
