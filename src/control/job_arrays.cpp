#include "control/job_arrays.h"

#include <algorithm>

#include "check/copied_tables.h"
#include "control/batch_system.h"

namespace zenqay {

std::vector<JobArray> JobArraysOf(const std::vector<TableRun>& runs) {
  std::vector<JobArray> arrays;
  for (std::size_t which = 0; which < runs.size(); ++which) {
    if (IsEnd(runs[which].state)) continue;  // its database is not reached
    const TableTask& task = runs[which].task;
    auto array = std::ranges::find(arrays, task.database, &JobArray::database);
    if (array == arrays.end()) array = arrays.insert(arrays.end(), {.database = task.database});
    const auto mustFollow = [&](const ArrayTask& other) {
      return MustFollow(task.table, runs[other.front()].task.table);
    };
    const auto before = std::ranges::find_if(array->tasks, mustFollow);
    if (before == array->tasks.end()) {
      array->tasks.push_back({which});
    } else {
      before->push_back(which);
    }
  }
  return arrays;
}

Text ScriptOf(const JobArray& array, const std::vector<TableRun>& runs, const Text& command) {
  Text script = "#!/bin/sh\ncase $SLURM_ARRAY_TASK_ID in\n";
  for (std::size_t task = 0; task < array.tasks.size(); ++task) {
    script += std::to_string(task) + ") set --";
    std::vector<Text> jobs;
    for (const std::size_t which : array.tasks[task]) {
      const TableTask& table = runs[which].task;
      script += " --table " + ShellWord(table.job + ":" + table.table);
      if (std::ranges::find(jobs, table.job) == jobs.end()) jobs.push_back(table.job);
    }
    for (const Text& job : jobs) script += " " + ShellWord(job);
    script += " ;;\n";
  }
  return script + "esac\nexec " + command + " \"$@\"\n";
}

}  // namespace zenqay
