// The commands of zenqayctl. Each writes to `out`, says on `err` what stops nothing, and gives the exit status.
#pragma once

#include <functional>
#include <ostream>

#include "control/credentials.h"
#include "system/terminal.h"

namespace zenqay {

/// What a command stands in.
struct Surroundings {
  Environment environment;
  Text jobProgram;  // zenqay-dbsync
  Text ctlProgram;  // zenqayctl itself, as machines that run its tasks find it too
  Text historyPath;
  std::ostream& out;
  std::ostream& err;
  std::function<TerminalSize()> terminal;  // 0 columns: plain lines
  /// The check of one job in its ERP's home: true when it could run.
  std::function<bool(const Text& home, const Text& commandLine, std::ostream& out)> check;
};

struct RunOptions {
  std::vector<Text> jobs;
  std::vector<Text> tables;      // by name or id; empty: those of the jobs
  std::optional<Method> method;  // in the place of the jobs'
  bool allowSweep = false;
  bool json = false;
  Text commandWords;  // as the history shows it
  Text outcome;       // the file that takes the place of the history; empty for none
};
int RunJobs(const JobFile& file, const RunOptions& options, Surroundings& surroundings);

struct PlanOptions {
  RunOptions run;
  int examples = 3;  // of each kind of change
  Text keep;         // the file that gets the tables as they are; empty for none
};
/// Says what the jobs would do to the tables, and writes nothing.
int PlanJobs(const JobFile& file, const PlanOptions& options, Surroundings& surroundings);

struct SubmitOptions {
  RunOptions run;
  bool all = false;           // the jobs of the file
  bool waits = false;         // until all tasks have ended
  std::vector<Text> options;  // of sbatch
};
int SubmitJobs(const JobFile& file, SubmitOptions options, Surroundings& surroundings);

int ShowStatus(const JobFile& file, const std::vector<Text>& jobs, bool json, Surroundings& surroundings);

int Unlock(const JobFile& file, const Text& job, const Text& table, bool force, bool json, Surroundings& surroundings);

struct HistoryOptions {
  std::optional<std::int64_t> run;  // one whole
  int limit = 20;
  bool json = false;
};
int ShowHistory(const HistoryOptions& options, Surroundings& surroundings);

struct ServeOptions {
  Text listen = "127.0.0.1:8930";
  std::vector<Text> hosts;  // names that the page may be asked by
  bool allowActions = false;
  Text tokenFile;
  bool json = false;
};
/// Until a signal asks it to stop.
int Serve(const JobFile& file, const ServeOptions& options, Surroundings& surroundings);

int CheckJobs(const JobFile& file, const std::vector<Text>& jobs, bool json, Surroundings& surroundings);

struct AnonymiseOptions {
  Text trace;
  Text scratch;    // the file of tables that belongs to it; empty for none
  Text directory;  // is made
  bool json = false;
};
/// Writes both anew without the customer's names, keys and texts.
int Anonymise(const AnonymiseOptions& options, Surroundings& surroundings);

int MakeFirstJob(const Text& directory, bool json, Surroundings& surroundings);

int WriteCompletion(const Text& shell, Surroundings& surroundings);

/// Writes what the units of the job and of the page must be given, below the directory of the units.
int WriteDropIns(const JobFile& file, const Text& job, const Text& directory, bool json, Surroundings& surroundings);

}  // namespace zenqay
