// The built program, asked to stop by signals.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <thread>

#include "e2e/program_fixture.h"

namespace zenqay {
namespace {

constexpr const char* kLocationsFile = "Kv40QTMtssmaLocations.csv";
constexpr const char* kSites = "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\nA1,North,C7\n";

constexpr const char* kBrokenOff =
    "exit 0\n"
    "-- out\n"
    "<time>  Copy of Sites (ERP table 110) started.\n"
    "<time>  Copy of Sites (ERP table 110) failed.\n"
    "\n"
    "Table  State     Elapsed  Last message\n"
    "    1  failed    <elapsed>  Copy of Sites (ERP table 110) failed.\n"
    "-- err\n"
    "<time>  Table SITE could not be copied (-1). See the log file <home>/logs\\SITE_<day>.log.\n"
    "-- SITE_<day>.log\n"
    "\"Date-Time :<date> : <time>\"\r\n"
    "\"ZenqayDBSync\",\"User interrupt occurred\"\r\n";

std::string Beginning(const std::string& text, const std::string& like) {
  return text.substr(0, like.size());
}

/// A lock on the database file that every writer waits for.
class HeldFile {
 public:
  explicit HeldFile(const ProgramHome& home) {
    sqlite3_open((home.path() + "/service.db").c_str(), &database_);
    sqlite3_exec(database_, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
  }
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;
  ~HeldFile() {
    sqlite3_exec(database_, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(database_);
  }

 private:
  sqlite3* database_ = nullptr;
};

TEST(AskedToStop, InTheMiddleOfACopyTheJobFailsItAndFreesTheTable) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    SCOPED_TRACE(signal);
    ProgramHome home;
    home.Execute("INSERT INTO SITE VALUES ('B1', 'there', NULL, 0)");
    HeldExport siteExport(home.Export(kLocationsFile));
    RunningProgram job(home.path(), Joined(home.Line().Items()), {});
    siteExport.WaitUntilOpened(job);

    job.Signal(signal);
    job.Signal(signal);  // the same request
    siteExport.Write(kSites);
    siteExport.Finish();
    const ProgramRun run = job.Wait();

    EXPECT_EQ(Beginning(home.Report(run), kBrokenOff), kBrokenOff);
    EXPECT_EQ(home.SiteState(), "NULL|0\n");
    EXPECT_EQ(home.Query("SELECT SITE FROM SITE"), "B1\n");
  }
}

TEST(AskedToStop, BeforeItTakesTheTableTheJobTakesNothing) {
  ProgramHome home;
  home.Execute("UPDATE tstables SET in_use = 0");
  home.WriteExport(kLocationsFile, kSites);
  HeldExport version(home.Export("adapter-version.txt"));
  RunningProgram job(home.path(), Joined(home.Line().Items()), {});
  version.WaitUntilOpened(job);

  job.Signal(SIGTERM);
  version.Write("2.4\n");
  version.Finish();
  const ProgramRun run = job.Wait();

  EXPECT_EQ(home.Report(run),
            "exit 0\n"
            "-- out\n"
            "-- err\n"
            "-- ZenqayDBSync.log\n"
            "Date: <date> Time: <time>\r\n"
            "The data copy failed.\r\n"
            "Error is - 18: User interrupt occurred\r\n");
  EXPECT_EQ(home.SiteState(), "NULL|0\n");
  EXPECT_EQ(home.Sites(), "");
}

TEST(AskedToStop, WhileAStatementWaitsForAnotherProcessTheJobWaitsNoLonger) {
  ProgramHome home;
  HeldExport siteExport(home.Export(kLocationsFile));
  RunningProgram job(home.path(), Joined(home.Line().Items()), {});
  siteExport.WaitUntilOpened(job);
  {
    const HeldFile file(home);
    siteExport.Write(kSites);
    siteExport.Finish();
    job.Signal(SIGTERM);
    while (home.Log("SITE_<day>.log").empty()) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  const ProgramRun run = job.Wait();

  EXPECT_EQ(Beginning(home.Report(run), kBrokenOff), kBrokenOff);
  EXPECT_EQ(home.SiteState(), "NULL|0\n");
}

TEST(StartedToIgnoreASignal, TheJobGoesOnIgnoringIt) {
  ProgramHome home;
  HeldExport siteExport(home.Export(kLocationsFile));
  RunningProgram job(home.path(), Joined(home.Line().Items()),
                     {.wrapper = {"/bin/sh", "-c", "trap '' HUP; exec \"$@\"", "sh"}});
  siteExport.WaitUntilOpened(job);

  job.Signal(SIGHUP);
  siteExport.Write(kSites);
  siteExport.Finish();
  job.Wait();

  EXPECT_EQ(home.Sites(), "A1|North|C7|0\n");
}

/// A pipe whose one end the program inherits.
class Channel {
 public:
  Channel() {
    if (::pipe(ends_) != 0) throw std::runtime_error("no pipe");
    ::fcntl(ends_[0], F_SETFD, FD_CLOEXEC);
  }
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;
  ~Channel() {
    CloseReader();
    CloseWriter();
  }

  std::vector<std::string> Variables() const { return {"ZENQAY_CONTROL_FD=" + std::to_string(ends_[1])}; }

  void CloseReader() { Close(ends_[0]); }
  void CloseWriter() { Close(ends_[1]); }

  /// The kinds of all lines, to the end.
  std::string Kinds() {
    CloseWriter();
    std::string text;
    char piece[4096];
    for (ssize_t count = ::read(ends_[0], piece, sizeof piece); count > 0;
         count = ::read(ends_[0], piece, sizeof piece)) {
      text.append(piece, static_cast<std::size_t>(count));
    }
    std::string kinds;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      kinds += nlohmann::json::parse(line)["kind"].get<std::string>() + " ";
    }
    return kinds;
  }

 private:
  static void Close(int& end) {
    if (end >= 0) ::close(end);
    end = -1;
  }

  int ends_[2] = {-1, -1};
};

TEST(ControlChannelOfTheProgram, TellsWhatBecomesOfTheTable) {
  ProgramHome home;
  home.WriteExport(kLocationsFile, kSites);
  Channel channel;

  home.Run(home.Line(), {.variables = channel.Variables()});

  EXPECT_EQ(channel.Kinds(), "begin started rows complete done end ");
}

TEST(ControlChannelOfTheProgram, WithoutAReaderIsARequestToStop) {
  ProgramHome home;
  HeldExport siteExport(home.Export(kLocationsFile));
  Channel channel;
  RunningProgram job(home.path(), Joined(home.Line().Items()), {.variables = channel.Variables()});
  siteExport.WaitUntilOpened(job);

  channel.CloseReader();
  channel.CloseWriter();
  siteExport.Write(kSites);
  siteExport.Finish();
  const ProgramRun run = job.Wait();

  EXPECT_EQ(Beginning(home.Report(run), kBrokenOff), kBrokenOff);
  EXPECT_EQ(home.SiteState(), "NULL|0\n");
}

TEST(ControlChannelOfTheProgram, ThatIsNoneIsNamedAndTheJobRuns) {
  ProgramHome home;
  home.WriteExport(kLocationsFile, kSites);

  const ProgramRun run = home.Run(home.Line(), {.variables = {"ZENQAY_CONTROL_FD=x"}});

  EXPECT_EQ(run.err, "zenqay-dbsync: ZENQAY_CONTROL_FD is no open descriptor: x\n");
  EXPECT_EQ(home.Sites(), "A1|North|C7|0\n");
}

TEST(LockOfTheProgram, LetsTheSecondOfTwoJobsFindTheTableInUse) {
  ProgramHome home;
  home.directory().Write("Components.xml",
                         std::regex_replace(home.directory().Read("Components.xml"), std::regex("</COMPONENTS>"),
                                            "<LOCK takeover=\"yes\"/></COMPONENTS>"));
  std::string left;
  {
    HeldExport siteExport(home.Export(kLocationsFile));
    RunningProgram first(home.path(), Joined(home.Line().Items()), {});
    siteExport.WaitUntilOpened(first);
    const ProgramRun second = home.Run(home.Line());
    EXPECT_NE(second.out.find("is being copied by another job"), std::string::npos);
    first.Kill();
    left = home.SiteState();
  }
  std::filesystem::remove(home.path() + "/erp/" + kLocationsFile);
  home.WriteExport(kLocationsFile, kSites);

  const ProgramRun next = home.Run(home.Line());

  EXPECT_EQ(left, "NULL|1\n");
  EXPECT_EQ(next.err,
            "zenqay-dbsync: table SITE was in use although nobody holds its lock: the flag was left behind by a job "
            "that is gone, and the copy goes on\n");
  EXPECT_EQ(home.Sites(), "A1|North|C7|0\n");
  EXPECT_EQ(home.SiteState(), "<moment>|0\n");
}

}  // namespace
}  // namespace zenqay
