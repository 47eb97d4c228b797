// The built program between files: a home with its texts, its exports and its database, and what a run leaves behind.
//
//     ProgramHome home;
//     home.WriteExport("Kv40QTMtssmaLocations.csv", "Location:text:cloc:key\nA1\n");
//     const ProgramRun run = home.Run(home.Line());
//     EXPECT_EQ(home.Query("SELECT SITE FROM SITE"), "A1\n");
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "doubles/held_export.h"
#include "doubles/temp_directory.h"

namespace zenqay {

/// How the program ended and what it printed.
struct ProgramRun {
  int status = 0;  // the exit status; below 0 the signal that ended it
  std::string out;
  std::string err;
};

/// The circumstances of a run.
struct ProgramSettings {
  std::string program = ZENQAY_PROGRAM;
  std::string timeZone = "UTC";
  std::vector<int> closedStreams;      // descriptors of standard streams that the program does not get
  std::vector<std::string> wrapper;    // a program and its arguments that start this one
  std::optional<std::string> input;    // what standard input holds; without it, that of the tests
  std::vector<std::string> variables;  // of its environment, "NAME=value", besides those of the tests
};

/// The items of the command line, in their order.
struct CommandLine {
  std::string connectionString;
  std::string database = "SERVICE";
  std::string tableId = "1";
  std::string syncMethod = "1";
  std::string logDirectory;
  std::string businessComponent = "100";
  std::string statusHandle = "0";
  std::string freeText;
  std::string platform = "1";
  std::string instance = "0";
  std::string generation = "1";
  std::vector<std::string> further;  // a twelfth item and so on

  std::vector<std::string> Items() const;
};

/// The items with "{}" between them.
std::string Joined(const std::vector<std::string>& items);

/// A program that has been started. It is killed at the end of the scope, should it still run.
class RunningProgram {
 public:
  RunningProgram(const std::string& home, const std::string& commandLine, const ProgramSettings& settings);
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;
  ~RunningProgram();

  /// Waits for its end. To be called once.
  ProgramRun Wait();

  /// Ends it as a power cut would.
  void Kill();

  /// Sends it a signal.
  void Signal(int number) const;

  /// What a process list shows of it, its arguments separated by "\0".
  std::string ShownCommandLine() const;

  /// True once it has ended by itself; does not wait.
  bool HasEnded();

 private:
  TempDirectory streams_;
  pid_t pid_ = 0;
  int waitStatus_ = 0;
  bool ended_ = false;
};

/// The program's directory: I18nText.xml and Components.xml as they are shipped, the directories `erp` and `logs`, and
/// the database file `service.db` with the reference schema and the control rows.
class ProgramHome {
 public:
  ProgramHome();

  /// A full copy of table 1 (SITE) of generation 1 on platform 1, with a status component and a status handle.
  CommandLine Line() const;

  ProgramRun Run(const CommandLine& line, const ProgramSettings& settings = {}) const;
  ProgramRun RunText(const std::string& commandLine, const ProgramSettings& settings = {}) const;

  std::string path() const { return directory_.path().string(); }
  const TempDirectory& directory() const { return directory_; }

  /// Where the export of this name is.
  std::string Export(const std::string& name) const { return path() + "/erp/" + name; }

  void WriteExport(const std::string& name, const std::string& content) const;

  /// Makes the next runs leave a trace.
  void RequestTrace() const;

  /// Runs statements on the database file.
  void Execute(const std::string& statements) const;

  /// The rows of a query, a line each, fields separated by "|" and NULL for null.
  std::string Query(const std::string& statement) const;

  /// The rows of SITE by key: SITE, DESCRIPTION, CUSTOMER, upd_flag.
  std::string Sites() const;

  /// `lutm` and `in_use` of SITE, the time masked.
  std::string SiteState() const;

  /// The names of the log files, their day masked: "SITE_<day>.log".
  std::vector<std::string> LogNames() const;

  /// A log by its masked name, with dates and times masked; "" when there is none. A log that midnight falls into is
  /// one all the same.
  std::string Log(const std::string& maskedName) const;

  /// All that a run left for a person to read, masked: its exit status, its two streams and every log file.
  std::string Report(const ProgramRun& run) const;

  /// The text with everything in it that changes from run to run put as <home>, <day>, <moment>, <date>, <time>,
  /// <elapsed>.
  std::string Masked(const std::string& text) const;

 private:
  TempDirectory directory_;
};

/// Today in UTC as the names of the logs have it, and a moment as the database and the exports write it.
std::string DayNow(int daysAhead = 0);                              // 20040131
std::string UtcMoment(long secondsAhead, char betweenDateAndTime);  // 2004-01-31 10:11:12

}  // namespace zenqay
