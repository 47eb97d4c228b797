// A table as it stands in its database, with what the history knows of it.
#pragma once

#include <ostream>

#include "control/flag_owner.h"
#include "control/local_tables.h"
#include "control/submissions.h"

namespace zenqay {

enum class LockState { NotAsked, Unknown, Free, Held };

struct TableStatus {
  Text job;
  Text database;  // its name in the job file
  LocalTable table;
  FlagOwner owner;  // of a taken table
  LockState lock = LockState::NotAsked;
  std::optional<PastTable> last;
  std::optional<BatchTask> task;  // of the last run, while the batch system has it
};

/// The tables of a job. Says on `err` what stops nothing. Raises WrongUsage where the job file asks for what there is
/// not, and what the database says.
std::vector<TableStatus> StatusOf(const JobFile& file, const JobSettings& job, History& history, const OpenTasks& tasks,
                                  const Environment& environment, std::ostream& err);

/// The table with what the history has of it by now, where the database was looked at before. What the batch system
/// said holds as long as the task has not ended.
TableStatus WithLatest(TableStatus status, History& history);

/// "free", "taken by process 7 of run 3, which lives; its lock is held"
Text StateText(const TableStatus& status);

/// The seconds since its data was current; nothing for a table that was never copied.
std::optional<std::int64_t> AgeOf(const LocalTable& table, std::int64_t now);

}  // namespace zenqay
