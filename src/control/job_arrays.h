// What the batch system is handed of a plan: a job array for each database.
#pragma once

#include "control/table_run.h"

namespace zenqay {

/// The tables, by their places in the plan, that one task copies: one, or those that must follow each other.
using ArrayTask = std::vector<std::size_t>;

struct JobArray {
  Text database;
  std::vector<ArrayTask> tasks;
  Text number;  // of the batch system; empty while it has none
};

/// In the order in which the plan first names the databases. A table that has come to its end already is in none.
std::vector<JobArray> JobArraysOf(const std::vector<TableRun>& runs);

/// A script of the shell that calls `command` with the tables and the jobs of the task whose number SLURM_ARRAY_TASK_ID
/// has.
Text ScriptOf(const JobArray& array, const std::vector<TableRun>& runs, const Text& command);

}  // namespace zenqay
