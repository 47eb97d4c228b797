// The jobs of the demo inside this process, on a copy of a small database file: run, and look at what they leave.
//
// The ERP has gone on since the last full copy: rows were changed, added and deleted. The clock stands still.
#pragma once

#include <map>
#include <optional>
#include <ostream>

#include "doubles/disturbance.h"
#include "doubles/temp_directory.h"

namespace zenqay {

struct DemoJob {
  Text generation;
  Text syncMethod;       // "1" full, "2" only changed
  std::int32_t tableId;  // 128 for all tables
  Text platform = "1";   // "2" for the statements of Oracle

  Text Name() const;
};

/// How test names and failures show it.
inline void PrintTo(const DemoJob& job, std::ostream* out) {
  *out << job.Name();
}

/// All tables of each generation in both ways, and one table of one generation in both.
const std::vector<DemoJob>& DemoJobs();

/// What stands in one table.
struct TableState {
  bool isTaken = false;
  Text updateTime;  // "old", "new" or "NULL"
  Text rows;        // all of them, without OBJECT's WEXPIRY_DATE, which the pass behind objects and warranties fills
  Text log;         // its run log, "" when there is none; what the copy made of a failure stands as "the copy failed"

  bool operator==(const TableState&) const = default;
};

/// What a job left.
struct JobEnd {
  int status = 0;                     // the exit status
  std::vector<Text> heard;            // what the status component was told: "1 started", "1 failed, with an alert" …
  std::map<Text, TableState> tables;  // those of the job
  Text startupLog;
  std::vector<Text> causes;  // what standard error shows, a line each
};

/// The whole as one text, for a person and for comparison; rows as a number that stands for them.
Text Shown(const JobEnd& end);

class DemoDatabase {
 public:
  /// The ERP's exports, and a database as a full copy of an earlier time left it: its update times are all "old".
  explicit DemoDatabase(const DemoJob& job);

  /// Puts the files back to where they were.
  void Reset() const;

  /// What is done right before and right behind the job itself.
  struct Around {
    std::function<void()> before = [] {};
    std::function<void()> behind = [] {};
  };

  JobEnd Run(Disturbance& disturbance, const Around& around) const;
  JobEnd Run(Disturbance& disturbance) const { return Run(disturbance, Around()); }
  JobEnd Run() const;

  /// What a job left, and its trace without the times of its lines.
  struct TracedEnd {
    JobEnd end;
    Text trace;
  };

  /// The same with a trace, and once more with all components out of the trace that the former left.
  TracedEnd Record(Disturbance& disturbance) const;
  TracedEnd Replay(Disturbance& disturbance) const;

  /// The trace and the database from before the job as their files are, which a test may change in between.
  std::filesystem::path TracePath() const { return home_.path() / "trace.jsonl"; }
  std::filesystem::path BeforePath() const { return home_.path() / "before.db"; }
  const std::filesystem::path& home() const { return home_.path(); }

  /// What the command line names.
  Text databaseName = "SERVICE";
  Text component = "MAIN";

  /// The end as far as it stands in the files.
  JobEnd Look() const;

  /// The tables of the job, in the order of their copies.
  const std::vector<Text>& tables() const { return tables_; }
  TableState StateOf(const Text& table) const;

  /// The rows as a set, all columns: two rows alike count as one.
  Text DistinctRows(const Text& table, bool withExpiry = true) const;

  /// What an operator does about a table whose job was killed.
  void Free(const Text& table) const;

  Text LogPath(const Text& table) const;

 private:
  Text Query(const Text& statement) const;
  JobEnd EndOf(JobEnd run) const;
  void RunProcessOf(Disturbance& disturbance, const Around& around, JobEnd& end) const;
  void RunOn(ComponentHost& components, Disturbance& disturbance, const Around& around, const Text& trace,
             JobEnd& end) const;
  Text Columns(const Text& table, bool withExpiry) const;

  DemoJob job_;
  TempDirectory home_;
  std::vector<Text> tables_;
};

}  // namespace zenqay
