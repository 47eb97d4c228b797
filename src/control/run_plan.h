// What a run is made of, put together before anything is started.
#pragma once

#include "control/commands.h"
#include "control/derived_home.h"
#include "control/local_tables.h"
#include "control/runner.h"

namespace zenqay {

/// The tables of the jobs that are asked for, with all that their jobs need, as long as the object lives. A table of a
/// database that is not reached has come to its end already. Raises WrongUsage for what cannot be run.
class RunPlan {
 public:
  RunPlan(const JobFile& file, const RunOptions& options, Surroundings& surroundings);

  std::vector<TableRun> runs;

  RunnerSettings Settings() const;

 private:
  void AddJob(const JobSettings& job);
  std::vector<LocalTable> Registered(const JobSettings& job, const DatabaseSettings& database,
                                     const DatabaseAccess& access);
  TableRun& Add(const JobSettings& job, const Text& table);
  void AddUnreached(const JobSettings& job, const DatabaseSettings& database, const std::vector<Text>& asked,
                    const Text& reason);
  Method MethodFor(const JobSettings& job, const LocalTable& table);

  const JobFile& file_;
  const RunOptions& options_;
  Surroundings& surroundings_;
  std::vector<std::unique_ptr<DerivedHome>> homes_;
};

/// How often the batch system has begun this task anew; 0 the first time, and for what is no task.
int RestartsOf(const Environment& environment);

/// Variables of the environment that hold passwords of the file's databases.
std::vector<Text> PasswordVariables(const JobFile& file);

}  // namespace zenqay
