#include "control/table_status.h"

#include "control/clock_change.h"

namespace zenqay {
namespace {

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

}  // namespace

std::vector<TableStatus> StatusOf(const JobFile& file, const JobSettings& job, History& history, const OpenTasks& tasks,
                                  const Environment& environment, std::ostream& err) {
  const DatabaseSettings& database = file.DatabaseOf(job);
  const Text& generation = file.ErpOf(job).generation;
  LocalTables tables(database, AccessTo(file, database, environment), Use::Read);
  std::vector<TableStatus> all;
  for (const LocalTable& table : ChooseTables(job, generation, tables.OfGeneration(generation), {})) {
    TableStatus status = {.job = job.name, .database = job.database, .table = table};
    if (table.isTaken) status.owner = OwnerOf(history, job.database, table.name);
    status.lock = LockOf(tables, table, err);
    const auto latest = history.LatestTables(job.database, table.name, 1);
    if (!latest.empty()) status.last = latest.front();
    if (status.last && tasks.contains(status.last->id)) status.task = tasks.at(status.last->id);
    all.push_back(std::move(status));
  }
  return all;
}

TableStatus WithLatest(TableStatus status, History& history) {
  const auto latest = history.LatestTables(status.database, status.table.name, 1);
  if (latest.empty()) return status;
  const bool isTheSame = status.last && status.last->id == latest.front().id;
  if (!isTheSame || !latest.front().ended.empty()) status.task.reset();
  status.last = latest.front();
  return status;
}

Text StateText(const TableStatus& status) {
  if (!status.table.isTaken) return "free";
  Text words = "taken by " + status.owner.Words();
  if (status.lock == LockState::Free) words += "; its lock is free";
  if (status.lock == LockState::Held) words += "; its lock is held";
  return words;
}

std::optional<std::int64_t> AgeOf(const LocalTable& table, std::int64_t now) {
  if (!table.updated) return std::nullopt;
  return now - SecondsSince1970(*table.updated);
}

}  // namespace zenqay
