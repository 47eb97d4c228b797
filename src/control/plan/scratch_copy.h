// Tables of a job's database in a file of their own, on which the job can do what it likes.
#pragma once

#include "control/local_tables.h"
#include "system/private_directory.h"

namespace zenqay {

/// Something that a person should know of a table before the job runs.
struct PlanWarning {
  Text table;
  Text words;

  bool operator==(const PlanWarning&) const = default;
};

/// The tables as they were at one moment where the database can tell that, no table in use; among the temporary files,
/// as long as the object lives. The database is only read.
class ScratchCopy {
 public:
  /// Copies the tables, of which names may be given more than once. Raises what the database says.
  ScratchCopy(const DatabaseSettings& database, const DatabaseAccess& access, const std::vector<Text>& tables);

  /// The connection string of the file that a job works on, and the directory of its logs.
  Text ConnectionString() const;
  Text logs() const { return directory_.path(); }

  /// The file with the tables as they were before any job.
  const Text& before() const { return before_; }

  /// The kind of the database that the tables come from, as its session tells it.
  const Text& databaseKind() const { return databaseKind_; }

  /// What the copy cannot have, and which tables a job has taken.
  const std::vector<PlanWarning>& warnings() const { return warnings_; }

 private:
  bool Fill(const DatabaseSettings& database, const DatabaseAccess& access, const std::vector<Text>& tables);
  void Note(const Text& table, const TableSchema& schema);
  void NoteTaken(EngineConnection& connection, const std::vector<Text>& tables);

  PrivateDirectory directory_;
  Text work_;
  Text before_;
  Text databaseKind_;
  std::vector<PlanWarning> warnings_;
};

}  // namespace zenqay
