// What the built program makes of its command line, and of a table that it cannot or may not copy.
#include <gtest/gtest.h>

#include "e2e/program_fixture.h"

namespace zenqay {
namespace {

constexpr const char* kOneLocation = "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\nA1,North,C7\n";

std::string WithFirst(const CommandLine& line, std::size_t count) {
  std::vector<std::string> items = line.Items();
  items.resize(count);
  return Joined(items);
}

constexpr const char* kCopied =
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
    "\"Rows copied: SITE -  1\"\r\n";

TEST(CommandLineOfTheProgram, MayHaveElevenItems) {
  ProgramHome home;
  home.WriteExport("Kv40QTMtssmaLocations.csv", kOneLocation);

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(home.Report(run), kCopied);
  EXPECT_EQ(home.Sites(), "A1|North|C7|0\n");
}

TEST(CommandLineOfTheProgram, MayStandOnStandardInput) {
  for (const char* lineEnd : {"", "\n", "\r\n"}) {
    ProgramHome home;
    home.WriteExport("Kv40QTMtssmaLocations.csv", kOneLocation);

    const ProgramRun run = home.RunText("-", {.input = Joined(home.Line().Items()) + lineEnd});

    EXPECT_EQ(home.Report(run), kCopied);
    EXPECT_EQ(home.Sites(), "A1|North|C7|0\n");
  }
}

TEST(CommandLineOfTheProgram, OnStandardInputIsWhatTheArgumentsWouldBe) {
  const std::string lines[] = {"", "\n", "a{}b", "a{}b\n\n"};
  for (const std::string& line : lines) {
    ProgramHome home;
    const std::string withoutEnd = line.ends_with('\n') ? line.substr(0, line.size() - 1) : line;

    const ProgramRun run = home.RunText("-", {.input = line});
    const std::string report = home.Report(run);
    const ProgramRun same = home.RunText(withoutEnd);

    EXPECT_EQ(report, home.Report(same)) << line;
  }
}

TEST(QuestionToTheProgram, IsAnsweredOnStandardOutputAlone) {
  ProgramHome home;

  const ProgramRun version = home.RunText("--version");
  const ProgramRun help = home.RunText("--help");

  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "zenqay-dbsync " ZENQAY_VERSION "\n");
  EXPECT_EQ(version.err, "");
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.out.substr(0, help.out.find('\n')),
            "zenqay-dbsync - copy service master data from an ERP into a local database");
  EXPECT_EQ(help.err, "");
  EXPECT_EQ(home.LogNames(), std::vector<std::string>());
}

TEST(QuestionToTheProgram, IsTakenForAJobsLineBesideAnythingElse) {
  ProgramHome home;

  const ProgramRun run = home.RunText("--version x");

  EXPECT_EQ(run.status, 70);
  EXPECT_EQ(run.out, "");
}

TEST(CommandLineOfTheProgram, SwitchesTheStatusComponentOffWithATwelfthItem) {
  for (const char* twelfth : {"", "x"}) {
    SCOPED_TRACE(twelfth);
    ProgramHome home;
    home.WriteExport("Kv40QTMtssmaLocations.csv", kOneLocation);
    CommandLine line = home.Line();
    line.further = {twelfth};

    const ProgramRun run = home.Run(line);

    EXPECT_EQ(home.Report(run),
              "exit 0\n"
              "-- out\n"
              "-- err\n"
              "-- SITE_<day>.log\n"
              "Date: <date> Time: <time>\r\n"
              "\"Rows copied: SITE -  1\"\r\n");
    EXPECT_EQ(home.Sites(), "A1|North|C7|0\n");
  }
}

TEST(CommandLineOfTheProgram, KeepsTheStatusComponentWithAThirteenthItem) {
  ProgramHome home;
  home.WriteExport("Kv40QTMtssmaLocations.csv", kOneLocation);
  CommandLine line = home.Line();
  line.further = {"", ""};

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(home.Report(run), kCopied);
  EXPECT_EQ(home.Sites(), "A1|North|C7|0\n");
}

TEST(CommandLineOfTheProgram, IsRefusedWithFewerThanSevenItems) {
  for (const std::size_t count : {5U, 6U}) {
    SCOPED_TRACE(count);
    ProgramHome home;

    const ProgramRun run = home.RunText(WithFirst(home.Line(), count));

    EXPECT_EQ(home.Report(run),
              "exit 0\n"
              "-- out\n"
              "-- err\n"
              "-- ZenqayDBSync.log\n"
              "Date: <date> Time: <time>\r\n"
              "The data copy failed.\r\n"
              "Error is - 9999: The command line has too few items.\r\n"
              "The data copy cannot start. Please inform your system administrator.\r\n");
    EXPECT_EQ(home.SiteState(), "NULL|0\n");
  }
}

TEST(CommandLineOfTheProgram, IsRefusedAtTheFirstItemThatIsMissing) {
  struct Case {
    std::size_t count;
    const char* missing;
  };
  for (const auto& [count, missing] : {Case{7, "9"}, Case{8, "9"}, Case{9, "10"}, Case{10, "11"}}) {
    SCOPED_TRACE(count);
    ProgramHome home;

    const ProgramRun run = home.RunText(WithFirst(home.Line(), count));

    EXPECT_EQ(home.Report(run),
              "exit 0\n"
              "-- out\n"
              "-- err\n"
              "-- ZenqayDBSync.log\n"
              "Date: <date> Time: <time>\r\n"
              "The data copy failed.\r\n"
              "Error is - 9: Subscript out of range: the command line has no item " +
                  std::string(missing) + "\r\n");
  }
}

/// Without a fifth item there is no directory for a log: what was wrong and what ended the process stand on standard
/// error alone.
TEST(CommandLineOfTheProgram, EndsTheProcessWithoutAnItemForTheLogDirectory) {
  for (const char* commandLine : {"a{}b{}c{}d", "a", ""}) {
    SCOPED_TRACE(commandLine);
    ProgramHome home;

    const ProgramRun run = home.RunText(commandLine);

    EXPECT_EQ(home.Report(run),
              "exit 70\n"
              "-- out\n"
              "-- err\n"
              "zenqay-dbsync: error 9999 from \"Zenqa Data Copy - Start\": The command line has too few items. The "
              "data copy cannot start. Please inform your system administrator.\n"
              "zenqay-dbsync: fatal error 9: Subscript out of range: the command line has no item 5\n");
  }
}

TEST(CommandLineOfTheProgram, NamesTheStatusHandleThatIsNoNumber) {
  ProgramHome home;
  CommandLine line = home.Line();
  line.statusHandle = "none";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(home.Report(run),
            "exit 0\n"
            "-- out\n"
            "-- err\n"
            "-- ZenqayDBSync.log\n"
            "Date: <date> Time: <time>\r\n"
            "The data copy failed.\r\n"
            "Error is - 2021004: The status handle must be a number, not \"none\".\r\n"
            "The data copy cannot start. Please inform your system administrator.\r\n");
}

TEST(CommandLineOfTheProgram, NamesTheItemThatIsNoNumber) {
  struct Case {
    std::string CommandLine::*item;
    const char* name;
  };
  for (const auto& [item, name] :
       {Case{&CommandLine::syncMethod, "sync method"}, Case{&CommandLine::platform, "database platform"}}) {
    SCOPED_TRACE(name);
    ProgramHome home;
    CommandLine line = home.Line();
    line.*item = "one";

    const ProgramRun run = home.Run(line);

    EXPECT_EQ(home.Report(run),
              "exit 0\n"
              "-- out\n"
              "-- err\n"
              "-- ZenqayDBSync.log\n"
              "Date: <date> Time: <time>\r\n"
              "The data copy failed.\r\n"
              "Error is - 13: Type mismatch: the " +
                  std::string(name) + " is no number\r\n");
  }
}

TEST(CommandLineOfTheProgram, IsRefusedWithATableIdOutsideTheRegistry) {
  ProgramHome home;
  CommandLine line = home.Line();
  line.tableId = "129";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(home.Report(run),
            "exit 0\n"
            "-- out\n"
            "-- err\n"
            "-- ZenqayDBSync.log\n"
            "Date: <date> Time: <time>\r\n"
            "The data copy failed.\r\n"
            "Error is - 9: Subscript out of range\r\n");
}

TEST(CopyOfATable, ThatHasNoCopySaysSoAndChangesNothing) {
  ProgramHome home;
  home.Execute("UPDATE tstables SET tablename = 'DEPOT' WHERE tableid = 1");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(home.Report(run),
            "exit 0\n"
            "-- out\n"
            "<time>  Copy of Sites (ERP table 110) started.\n"
            "<time>  Copy of Sites (ERP table 110) complete: 0 copied, 0 updated, 0 deleted.\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  complete  <elapsed>  Copy of Sites (ERP table 110) complete: 0 copied, 0 updated, 0 deleted.\n"
            "-- err\n"
            "There is no copy for a table of this name. Please check the names in tstables.\n");
  EXPECT_EQ(home.Query("SELECT tablename, lutm, in_use, reqd FROM tstables WHERE tableid = 1"), "DEPOT|NULL|0|1\n");
}

TEST(CopyOfATable, ThatAnotherJobHoldsIsLeftAlone) {
  ProgramHome home;
  home.WriteExport("Kv40QTMtssmaLocations.csv", kOneLocation);
  home.Execute(
      "UPDATE tstables SET in_use = 1 WHERE tablename = 'SITE';"
      "INSERT INTO SITE VALUES ('B2', 'South', NULL, 1)");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(home.Report(run),
            "exit 0\n"
            "-- out\n"
            "<time>  Sites (ERP table 110) is being copied by another job. Nothing was done.\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  in use    <elapsed>  Sites (ERP table 110) is being copied by another job. Nothing was done.\n"
            "-- err\n");
  EXPECT_EQ(home.Sites(), "B2|South|NULL|1\n");
  EXPECT_EQ(home.SiteState(), "NULL|1\n");
}

TEST(CopyOfATable, UnderAnotherSyncMethodDoesNothing) {
  ProgramHome home;
  home.WriteExport("Kv40QTMtssmaLocations.csv", kOneLocation);
  CommandLine line = home.Line();
  line.syncMethod = "7";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(home.Report(run),
            "exit 0\n"
            "-- out\n"
            "<time>  Copy of Sites (ERP table 110) started.\n"
            "<time>  Copy of Sites (ERP table 110) complete: 0 copied, 0 updated, 0 deleted.\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  complete  <elapsed>  Copy of Sites (ERP table 110) complete: 0 copied, 0 updated, 0 deleted.\n"
            "-- err\n");
  EXPECT_EQ(home.Sites(), "");
}

TEST(CopyOfATable, UnderAGenerationWithoutTheEntityFails) {
  ProgramHome home;
  home.WriteExport("Kv40QTMtssmaLocations.csv", kOneLocation);
  home.Execute("INSERT INTO tstreenodes VALUES ('2', 1, 'TABLE01'); INSERT INTO SITE VALUES ('B2', 'South', NULL, 0)");
  CommandLine line = home.Line();
  line.generation = "2";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(home.Report(run),
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
            "\"ZenqayDBSync\",\"Object variable not set\"\r\n"
            "\"ZenqayDBSync\",\"Object variable not set\"\r\n");
  EXPECT_EQ(home.Sites(), "B2|South|NULL|0\n");
  EXPECT_EQ(home.SiteState(), "NULL|0\n");
}

TEST(CopyOfATable, UnderAGenerationThatNoGroupHasFindsNoTables) {
  ProgramHome home;
  CommandLine line = home.Line();
  line.generation = "03";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(home.Report(run),
            "exit 0\n"
            "-- out\n"
            "-- err\n"
            "tstables or tstreenodes table is empty .. Cannot Proceed\n"
            "zenqay-dbsync: error 100 from \"zenqa Data Copy - Start\": No tables are set up for copying. The data "
            "copy cannot start. Please inform your system administrator.\n"
            "-- ZenqayDBSync.log\n"
            "Date: <date> Time: <time>\r\n"
            "The data copy failed.\r\n"
            "Error is - 75: Path/File access error\r\n");
}

}  // namespace
}  // namespace zenqay
