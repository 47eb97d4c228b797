// Several processes on one database file, processes that end early, and what a process shows to others.
#include <gtest/gtest.h>
#include <unistd.h>

#include <sstream>
#include <thread>

#include "doubles/trace_text.h"
#include "e2e/program_fixture.h"

namespace zenqay {
namespace {

constexpr const char* kLocationsFile = "Kv40QTMtssmaLocations.csv";
constexpr const char* kSiteHeader = "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n";

constexpr const char* kTableInUse =
    "exit 0\n"
    "-- out\n"
    "<time>  Sites (ERP table 110) is being copied by another job. Nothing was done.\n"
    "\n"
    "Table  State     Elapsed  Last message\n"
    "    1  in use    <elapsed>  Sites (ERP table 110) is being copied by another job. Nothing was done.\n"
    "-- err\n";

std::string Rows(const char* prefix, int count, const char* rest) {
  std::string rows;
  for (int i = 1; i <= count; ++i) rows += prefix + std::to_string(10'000 + i) + rest + "\n";
  return rows;
}

TEST(TwoProcesses, OnTwoTablesOfOneDatabaseFileBothFinish) {
  ProgramHome home;
  CommandLine problems = home.Line();
  problems.tableId = "3";
  HeldExport siteExport(home.Export(kLocationsFile));
  HeldExport problemExport(home.Export("Kv40QTMtsspfProblems.csv"));
  RunningProgram siteJob(home.path(), Joined(home.Line().Items()), {});
  RunningProgram problemJob(home.path(), Joined(problems.Items()), {});
  siteExport.WaitUntilOpened(siteJob);
  problemExport.WaitUntilOpened(problemJob);

  std::thread sites([&] {
    siteExport.Write(kSiteHeader + Rows("S", 2000, ",North,C7"));
    siteExport.Finish();
  });
  problemExport.Write("Problem:text:cprl:key,Description:text:desc\n" + Rows("P", 2000, ",leaks"));
  problemExport.Finish();
  sites.join();
  const ProgramRun siteRun = siteJob.Wait();
  const ProgramRun problemRun = problemJob.Wait();

  EXPECT_EQ(siteRun.status, 0);
  EXPECT_EQ(siteRun.err, "");
  EXPECT_EQ(problemRun.status, 0);
  EXPECT_EQ(problemRun.err, "");
  EXPECT_EQ(
      home.Query("SELECT count(*), min(SITE), max(SITE), min(DESCRIPTION), max(CUSTOMER), max(upd_flag) FROM SITE"),
      "2000|S10001|S12000|North|C7|0\n");
  EXPECT_EQ(home.Query("SELECT count(*), min(PROBLEM), max(PROBLEM), min(DESCRIPTION), max(upd_flag) FROM PROBLEM"),
            "2000|P10001|P12000|leaks|0\n");
  EXPECT_EQ(home.Masked(home.Query("SELECT tablename, lutm, in_use FROM tstables WHERE lutm IS NOT NULL ORDER BY 1")),
            "PROBLEM|<moment>|0\n"
            "SITE|<moment>|0\n");
  EXPECT_EQ(home.LogNames(), (std::vector<std::string>{"PROBLEM_<day>.log", "SITE_<day>.log"}));
  EXPECT_EQ(home.Log("SITE_<day>.log"),
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITE -  2000\"\r\n");
  EXPECT_EQ(home.Log("PROBLEM_<day>.log"),
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: PROBLEM -  2000\"\r\n");
}

TEST(TwoProcesses, OnOneTableLetTheSecondReportItInUse) {
  ProgramHome home;
  HeldExport siteExport(home.Export(kLocationsFile));
  RunningProgram first(home.path(), Joined(home.Line().Items()), {});
  siteExport.WaitUntilOpened(first);

  const ProgramRun second = home.Run(home.Line());

  EXPECT_EQ(home.Report(second), kTableInUse);
  EXPECT_EQ(home.SiteState(), "NULL|1\n");

  siteExport.Write(std::string(kSiteHeader) + "A1,North,C7\n");
  siteExport.Finish();
  EXPECT_EQ(home.Report(first.Wait()),
            "exit 0\n"
            "-- out\n"
            "<time>  Copy of Sites (ERP table 110) started.\n"
            "<time>  Copy of Sites (ERP table 110) complete: 1 copied, 0 updated, 0 deleted.\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  complete  <elapsed>  Copy of Sites (ERP table 110) complete: 1 copied, 0 updated, 0 deleted.\n"
            "-- err\n"
            "-- SITE_<day>.log\n"
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITE -  1\"\r\n");
  EXPECT_EQ(home.Sites(), "A1|North|C7|0\n");
  EXPECT_EQ(home.SiteState(), "<moment>|0\n");
}

TEST(KilledProcess, LeavesItsTableInUseForEveryLaterJob) {
  ProgramHome home;
  home.Execute("INSERT INTO SITE VALUES ('B1', 'there', NULL, 0)");
  {
    HeldExport siteExport(home.Export(kLocationsFile));
    RunningProgram job(home.path(), Joined(home.Line().Items()), {});
    siteExport.WaitUntilOpened(job);
    job.Kill();
  }
  std::filesystem::remove(home.path() + "/erp/" + kLocationsFile);
  home.WriteExport(kLocationsFile, std::string(kSiteHeader) + "A1,North,C7\n");

  const ProgramRun next = home.Run(home.Line());

  EXPECT_EQ(home.Report(next), kTableInUse);
  EXPECT_EQ(home.Sites(), "B1|there|NULL|0\n");
  EXPECT_EQ(home.SiteState(), "NULL|1\n");

  home.Execute("UPDATE tstables SET in_use = 0 WHERE tablename = 'SITE'");
  home.Run(home.Line());
  EXPECT_EQ(home.Sites(), "A1|North|C7|0\n");
}

/// The files of the job must never get the number of a closed stream: what is printed would end up in them.
TEST(ClosedStandardStreams, TakeNothingAndHarmNothing) {
  const std::vector<std::vector<int>> closings = {
      {STDOUT_FILENO}, {STDERR_FILENO}, {STDOUT_FILENO, STDERR_FILENO}, {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}};
  for (const std::vector<int>& closed : closings) {
    SCOPED_TRACE(testing::PrintToString(closed));
    ProgramHome home;
    home.RequestTrace();
    home.WriteExport(kLocationsFile, kSiteHeader + Rows("S", 200, ",North,C7") + "S9,We\"st,C8\n");

    const ProgramRun run = home.Run(home.Line(), {.closedStreams = closed});

    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(home.Log("SITE_<day>.log"),
              "\"Date-Time :<date> : <time>\"\r\n"
              "\"Kv40QTMtssmaLocations.LocationsManager\",\"Type mismatch: Kv40QTMtssmaLocations.csv, line 202, column "
              "2: broken quote: hasMoreElements\"\r\n"
              "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
    EXPECT_EQ(home.LogNames(), std::vector<std::string>{"SITE_<day>.log"});
    EXPECT_EQ(home.Query("PRAGMA integrity_check"), "ok\n");
    EXPECT_EQ(home.Query("SELECT count(*), sum(upd_flag) FROM SITE"), "200|0\n");
    std::istringstream trace(WithoutTimes(home.directory().Read("trace.jsonl")));
    for (std::string text; std::getline(trace, text);) EXPECT_EQ(text.substr(0, 5), "{\"n\":");
  }
}

TEST(ClosedStandardStreams, StillEndTheProcessWith70) {
  ProgramHome home;

  const ProgramRun run = home.RunText("a{}b", {.closedStreams = {STDOUT_FILENO, STDERR_FILENO}});

  EXPECT_EQ(run.status, 70);
}

class Password : public testing::Test {
 protected:
  static constexpr const char* kSecret = "hunter2-geheim";

  /// Every file of the home but the database, and both streams.
  std::string EverythingSaid(const ProgramRun& run) const {
    std::string said = run.out + run.err;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home.path())) {
      const std::string name = entry.path().lexically_relative(home.path()).string();
      if (entry.is_regular_file() && !name.starts_with("service.db")) said += home.directory().Read(name);
    }
    return said;
  }

  ProgramHome home;
};

TEST_F(Password, StandsInNothingThatAGoodJobSays) {
  home.RequestTrace();
  home.WriteExport(kLocationsFile, std::string(kSiteHeader) + "A1,North,C7\n");
  CommandLine line = home.Line();
  line.connectionString += std::string(";User ID=sa;Password=") + kSecret;

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(home.Sites(), "A1|North|C7|0\n");
  EXPECT_EQ(EverythingSaid(run).find(kSecret), std::string::npos);
}

TEST_F(Password, StandsInNothingThatAConnectionThatFailsSays) {
  const std::string file = home.path() + "/missing.db";
  const std::string connectionStrings[] = {
      "Provider=SQLite;Data Source=" + file + ";Password=" + kSecret,
      "Provider=SQLite;Password=" + std::string(kSecret) + ";Data Source=" + file,
      "Provider=SQLite;Data Source=" + file + " Password=" + kSecret,
      "Provider=SQLite;PWD='" + std::string(kSecret) + ";Data Source=" + file,
      "Provider=Unknown Password=" + std::string(kSecret) + ";Data Source=" + file,
      "Provider=Unknown;Password=" + std::string(kSecret),
      "Driver=Unknown;Server=localhost;PWD={" + std::string(kSecret) + "}",
      "Password=" + std::string(kSecret),
  };
  home.RequestTrace();
  for (const std::string& connectionString : connectionStrings) {
    SCOPED_TRACE(connectionString);
    CommandLine line = home.Line();
    line.connectionString = connectionString;

    const ProgramRun run = home.Run(line);

    EXPECT_EQ(run.status, 0);
    EXPECT_NE(home.Log("ZenqayDBSync.log"), "");
    EXPECT_EQ(EverythingSaid(run).find(kSecret), std::string::npos);
  }
}

/// A separator too many, and the connection string stands where a number belongs, which an error text quotes.
TEST_F(Password, StandsInNoTextAboutAnItemThatIsNoNumber) {
  home.RequestTrace();
  for (std::string CommandLine::*item :
       {&CommandLine::syncMethod, &CommandLine::statusHandle, &CommandLine::platform}) {
    CommandLine line = home.Line();
    line.*item = "Provider=SQLite;Password=" + std::string(kSecret) + ";Data Source=x.db";

    const ProgramRun run = home.Run(line);

    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(EverythingSaid(run).find(kSecret), std::string::npos);
  }
}

/// The same slip with an item that is a text: it goes on to the database, a path, a component or a query.
TEST_F(Password, StandsInNothingThatComesOfATextInTheWrongPlace) {
  home.RequestTrace();
  home.WriteExport(kLocationsFile, std::string(kSiteHeader) + "A1,North,C7\n");
  for (std::string CommandLine::*item : {&CommandLine::database, &CommandLine::logDirectory,
                                         &CommandLine::businessComponent, &CommandLine::generation}) {
    CommandLine line = home.Line();
    line.*item = "Provider=SQLite;Password=" + std::string(kSecret) + ";Data Source=x.db";

    const ProgramRun run = home.Run(line);

    EXPECT_EQ(EverythingSaid(run).find(kSecret), std::string::npos);
  }
}

TEST_F(Password, DoesNotStandInTheProcessList) {
  CommandLine line = home.Line();
  line.connectionString += std::string(";Password=") + kSecret;
  HeldExport siteExport(home.Export(kLocationsFile));
  RunningProgram job(home.path(), Joined(line.Items()), {});
  siteExport.WaitUntilOpened(job);

  const std::string shown = job.ShownCommandLine();

  EXPECT_EQ(shown.substr(0, shown.find('\0')), "Zenqay DB Sync");
  EXPECT_EQ(shown.find_first_not_of('\0', shown.find('\0')), std::string::npos);
}

}  // namespace
}  // namespace zenqay
