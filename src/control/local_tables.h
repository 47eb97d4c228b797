// The tables that a job's database knows, and their state there.
#pragma once

#include "base/date_time.h"
#include "control/credentials.h"
#include "engines/engine_connection.h"

namespace zenqay {

/// The way into a job's database.
struct DatabaseAccess {
  Text connection;  // whole, with the password
  Text password;    // empty when there is none
};

/// Raises WrongUsage, with the place in the job file, when the password cannot be had or cannot be put in.
DatabaseAccess AccessTo(const JobFile& file, const DatabaseSettings& database, const Environment& environment);

struct LocalTable {
  std::int32_t id = 0;
  Text name;
  std::optional<DateTime> updated;  // in UTC; nothing for a table that was never copied
  bool isTaken = false;
};

enum class Use { Read, Write };

/// One connection to a job's database. All raises what the database says.
class LocalTables {
 public:
  LocalTables(const DatabaseSettings& database, const DatabaseAccess& access, Use use);

  /// The tables of a generation's group that a job can be asked for, by their ids.
  std::vector<LocalTable> OfGeneration(const Text& generation);

  /// Whether the flag says, now, that a copy of the table is running.
  bool IsTaken(const Text& table);

  /// Takes off the flag that says that a copy is running.
  void Free(const Text& table);

  /// The lock of the table, which this connection then holds; false when a job has it.
  bool TakeLock(const Text& table) { return connection_->TakeLock(table); }
  void GiveLockBack(const Text& table) { connection_->GiveLockBack(table); }

  /// Whether a job has it; keeps no job from it.
  bool IsLockHeld(const Text& table) { return connection_->IsLockHeld(table); }

 private:
  std::shared_ptr<Database> databases_;
  std::shared_ptr<EngineConnection> connection_;
};

/// Those of the tables that are asked for: `asked`, by name or id, else those of the job, else all. Raises WrongUsage
/// for one that the job or the group does not have, that no entity serves, or that the generation has nothing for.
std::vector<LocalTable> ChooseTables(const JobSettings& job, const Text& generation,
                                     const std::vector<LocalTable>& known, const std::vector<Text>& asked);

}  // namespace zenqay
