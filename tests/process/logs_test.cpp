#include "process/logs.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include "doubles/child_process.h"
#include "doubles/outcome.h"
#include "doubles/process_fixture.h"
#include "doubles/refusing_log_file.h"

namespace zenqay {
namespace {

constexpr const char* kTitle = "Date: 1/31/2004 Time: 10:11:12 AM\r\n";
constexpr const char* kDateLine = "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n";

const RuntimeError kError(-2147217900, "Data copy: Sites", "Sites could not be copied from the ERP (generation 1).");
constexpr const char* kErrorLine =
    "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n";

constexpr const char* kNowhere = "C:\\no\\such\\directory\\run.log";

/// A process whose log file ends on a full disk.
void FillDisk(ProcessFixture& fixture) {
  std::filesystem::create_symlink("/dev/full", fixture.directory.path() / "full.log");
  fixture.process.LogFilePath = fixture.directory.path().string() + "\\full.log";
}

// The summary of a table's copy.

TEST(WriteTableRunLog, WritesOneLineForEachCountGreaterThanZeroAndTheFirstAlways) {
  const struct {
    std::int32_t icount;
    std::int32_t ucount;
    std::int32_t dcount;
    const char* lines;
  } cases[] = {
      {0, 0, 0, "\"Rows copied: Site -  0\"\r\n"},
      {5, 0, 0, "\"Rows copied: Site -  5\"\r\n"},
      {5, 2, 0, "\"Rows copied: Site -  5\"\r\n\"Rows updated: Site -  2\"\r\n"},
      {5, 0, 1, "\"Rows copied: Site -  5\"\r\n\"Rows deleted: Site -  1\"\r\n"},
      {0, 12, 345, "\"Rows copied: Site -  0\"\r\n\"Rows updated: Site -  12\"\r\n\"Rows deleted: Site -  345\"\r\n"},
      {2147483647, 0, 0, "\"Rows copied: Site -  2147483647\"\r\n"},
  };
  for (const auto& [icount, ucount, dcount, lines] : cases) {
    ProcessFixture fixture;

    WriteTableRunLog(fixture.process, "Site", icount, ucount, dcount);

    EXPECT_EQ(fixture.RunLog(), Text(kTitle) + lines);
  }
}

TEST(WriteTableRunLog, WithAllCountsZeroHasTwoLinesAndTheCountWithItsSignColumn) {
  ProcessFixture fixture;

  WriteTableRunLog(fixture.process, "Site", 0, 0, 0);

  EXPECT_EQ(fixture.RunLog(), "Date: 1/31/2004 Time: 10:11:12 AM\r\n\"Rows copied: Site -  0\"\r\n");
}

TEST(WriteTableRunLog, LeavesANegativeUcountOrDcountOutAndWritesANegativeIcount) {
  ProcessFixture fixture;

  WriteTableRunLog(fixture.process, "Site", -7, -1, -2);

  EXPECT_EQ(fixture.RunLog(), Text(kTitle) + "\"Rows copied: Site - -7\"\r\n");
}

TEST(WriteTableRunLog, PilesTheRecordsOfADayUpInOneFile) {
  ProcessFixture fixture;
  WriteTableRunLog(fixture.process, "Site", 1, 0, 0);
  fixture.platform.now = DateTime::FromParts({2004, 1, 31, 22, 5, 0});

  WriteTableRunLog(fixture.process, "Site", 2, 0, 0);

  EXPECT_EQ(fixture.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n\"Rows copied: Site -  1\"\r\n"
            "Date: 1/31/2004 Time: 10:05:00 PM\r\n\"Rows copied: Site -  2\"\r\n");
}

TEST(WriteTableRunLog, TakesTheTableNameAsItIs) {
  ProcessFixture fixture;

  WriteTableRunLog(fixture.process, "Zürich \"東\" %1", 1, 0, 0);

  EXPECT_EQ(fixture.RunLog(), Text(kTitle) + "\"Rows copied: Z\xFCrich \"?\" %1 -  1\"\r\n");
}

TEST(WriteTableRunLog, WritesTheKeysWhereTheLabelsAreMissing) {
  TempDirectory home;
  ProcessFixture fixture(1, home.path().string());

  WriteTableRunLog(fixture.process, "Site", 1, 2, 3);

  EXPECT_EQ(fixture.RunLog(), "SLBL0143\r\n\"SLBL0375\"\r\n\"SLBL0376\"\r\n\"SLBL0377\"\r\n");
}

TEST(WriteTableRunLog, RaisesWhatOpeningFailsWithAndNamesNoCause) {
  ProcessFixture fixture;
  fixture.process.LogFilePath = kNowhere;

  EXPECT_EQ(Raised([&] { WriteTableRunLog(fixture.process, "Site", 1, 0, 0); }),
            "76 ZenqayDBSync: Path not found: C:\\no\\such\\directory\\run.log");
  EXPECT_EQ(fixture.Causes(), "");
}

// An error of the run.

TEST(WriteErrorLog, WritesTheDateLineAndTheErrorLine) {
  ProcessFixture fixture;

  WriteErrorLog(fixture.process, kError);

  EXPECT_EQ(fixture.RunLog(), Text(kDateLine) + kErrorLine);
  EXPECT_TRUE(fixture.process.RunLogDateWritten);
}

TEST(WriteErrorLog, WritesNoDateLineForTheSecondFailureOfAProcessInTheSameRunLog) {
  ProcessFixture fixture;
  WriteErrorLog(fixture.process, kError);

  WriteErrorLog(fixture.process, RuntimeError(PlatformFault::TypeMismatch));

  EXPECT_EQ(fixture.RunLog(), Text(kDateLine) + kErrorLine + "\"ZenqayDBSync\",\"Type mismatch\"\r\n");
}

TEST(WriteErrorLog, WritesNoDateLineForTheSecondFailureOfAProcessInAnotherRunLog) {
  ProcessFixture fixture;
  WriteErrorLog(fixture.process, kError);
  fixture.process.LogFilePath = fixture.directory.path().string() + "\\other.log";

  WriteErrorLog(fixture.process, kError);

  EXPECT_EQ(fixture.directory.Read("other.log"), kErrorLine);
}

TEST(WriteErrorLog, WritesTheProvidersErrorsInTheirOrderAndClearsThem) {
  ProcessFixture fixture;
  fixture.Connect();
  fixture.process.LocalErrors->Replace(
      {{-2147217900, "SQLite", "near \"WHERE\": syntax error"}, {5, "SQLite", "warning"}});

  WriteErrorLog(fixture.process, kError);

  EXPECT_EQ(fixture.RunLog(), Text(kDateLine) +
                                  "\"SQLite\",-2147217900,\"near \"WHERE\": syntax error\"\r\n"
                                  "\"SQLite\",5,\"warning\"\r\n" +
                                  kErrorLine);
  EXPECT_EQ(fixture.process.LocalErrors->count(), 0);
}

TEST(WriteErrorLog, SkipsAProviderErrorWithNumber0AndClearsTheCollectionAllTheSame) {
  ProcessFixture fixture;
  fixture.Connect();
  fixture.process.LocalErrors->Replace({{0, "driver", "changed database context"}});

  WriteErrorLog(fixture.process, kError);

  EXPECT_EQ(fixture.RunLog(), Text(kDateLine) + kErrorLine);
  EXPECT_EQ(fixture.process.LocalErrors->count(), 0);
}

TEST(WriteErrorLog, SkipsNumber0BetweenTheOthers) {
  ProcessFixture fixture;
  fixture.Connect();
  fixture.process.LocalErrors->Replace({{1, "driver", "one"}, {0, "driver", "two"}, {3, "", ""}});

  WriteErrorLog(fixture.process, kError);

  EXPECT_EQ(fixture.RunLog(), Text(kDateLine) + "\"driver\",1,\"one\"\r\n\"\",3,\"\"\r\n" + kErrorLine);
}

TEST(WriteErrorLog, WritesOnlyTheErrorLineForASecondFailureWithoutNewProviderErrors) {
  ProcessFixture fixture;
  fixture.Connect();
  fixture.process.LocalErrors->Replace({{1, "driver", "one"}});
  WriteErrorLog(fixture.process, kError);

  WriteErrorLog(fixture.process, kError);

  EXPECT_EQ(fixture.RunLog(), Text(kDateLine) + "\"driver\",1,\"one\"\r\n" + kErrorLine + kErrorLine);
}

TEST(WriteErrorLog, LeavesADoubleQuoteInsideADescriptionUnescaped) {
  ProcessFixture fixture;

  WriteErrorLog(fixture.process, RuntimeError(5, "a \"source\"", "say \"no\", or not"));

  EXPECT_EQ(fixture.RunLog(), Text(kDateLine) + "\"a \"source\"\",\"say \"no\", or not\"\r\n");
}

TEST(WriteErrorLog, WritesADescriptionOfTwoLinesAsItIs) {
  ProcessFixture fixture;

  WriteErrorLog(fixture.process, RuntimeError(100, "zenqa Data Copy - Start", "first\r\nsecond"));

  EXPECT_EQ(fixture.RunLog(), Text(kDateLine) + "\"zenqa Data Copy - Start\",\"first\r\nsecond\"\r\n");
}

TEST(WriteErrorLog, FailsOnTheOpenWithAnEmptyPathAndNamesTheErrorThatWouldBeLost) {
  ProcessFixture fixture;
  fixture.process.LogFilePath = "";

  EXPECT_EQ(Raised([&] { WriteErrorLog(fixture.process, kError); }), "75 ZenqayDBSync: Path/File access error");
  EXPECT_EQ(fixture.Causes(),
            "error -2147217900 from \"Data copy: Sites\": Sites could not be copied from the ERP (generation 1).\n");
  EXPECT_FALSE(fixture.process.RunLogDateWritten);
}

TEST(WriteErrorLog, KeepsTheProvidersErrorsWhenItCannotOpenTheFile) {
  ProcessFixture fixture;
  fixture.Connect();
  fixture.process.LocalErrors->Replace({{1, "driver", "one"}});
  fixture.process.LogFilePath = kNowhere;

  EXPECT_EQ(Raised([&] { WriteErrorLog(fixture.process, kError); }),
            "76 ZenqayDBSync: Path not found: C:\\no\\such\\directory\\run.log");
  EXPECT_EQ(fixture.process.LocalErrors->count(), 1);
}

TEST(WriteErrorLog, LeavesTheFileOpenOnAFullDiskSoThatEveryLaterWriteFailsToo) {
  ProcessFixture fixture;
  FillDisk(fixture);
  const Text full = fixture.directory.path().string() + "\\full.log";
  const Text alreadyOpen = "55 ZenqayDBSync: File already open: " + full;

  EXPECT_EQ(Raised([&] { WriteErrorLog(fixture.process, kError); }), "61 ZenqayDBSync: Disk full: " + full);
  EXPECT_FALSE(fixture.process.RunLogDateWritten);
  fixture.process.LogFilePath = fixture.directory.path().string() + "\\run.log";

  EXPECT_EQ(Raised([&] { WriteErrorLog(fixture.process, kError); }), alreadyOpen);
  EXPECT_EQ(Raised([&] { WriteTableRunLog(fixture.process, "Site", 1, 0, 0); }), alreadyOpen);
  EXPECT_EQ(Raised([&] { WriteStartupErrorLog(fixture.process, fixture.directory.path().string(), kError); }),
            alreadyOpen);
  EXPECT_EQ(fixture.RunLog(), "");
}

// An error at start.

TEST(WriteStartupErrorLog, WritesThreePlainLines) {
  ProcessFixture fixture;

  WriteStartupErrorLog(fixture.process, fixture.directory.path().string(),
                       RuntimeError(100, "Handle Data Copy", "The status component gave no object."));

  EXPECT_EQ(fixture.directory.Read("ZenqayDBSync.log"),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "The data copy failed.\r\n"
            "Error is - 100: The status component gave no object.\r\n");
  EXPECT_EQ(fixture.Causes(), "");
}

TEST(WriteStartupErrorLog, WritesNegativeNumbersQuotesAndSecondLinesAsTheyAre) {
  ProcessFixture fixture;

  WriteStartupErrorLog(fixture.process, fixture.directory.path().string(),
                       RuntimeError(-2147467259, "driver", "no \"server\"\r\nnow"));

  EXPECT_EQ(fixture.directory.Read("ZenqayDBSync.log"),
            Text(kTitle) + "The data copy failed.\r\nError is - -2147467259: no \"server\"\r\nnow\r\n");
}

TEST(WriteStartupErrorLog, TakesTheDirectoryUntrimmed) {
  ProcessFixture fixture;
  const Text directory = fixture.directory.path().string() + " ";

  EXPECT_EQ(Raised([&] { WriteStartupErrorLog(fixture.process, directory, kError); }),
            "76 ZenqayDBSync: Path not found: " + directory + "\\ZenqayDBSync.log");
  EXPECT_EQ(fixture.Causes(),
            "error -2147217900 from \"Data copy: Sites\": Sites could not be copied from the ERP (generation 1).\n");
}

TEST(WriteStartupErrorLog, TakesTheDriveForABlankDirectory) {
  const std::pair<const char*, const char*> cases[] = {{"", R"(C:\ZenqayDBSync.log)"},
                                                       {"   ", R"(C:\ZenqayDBSync.log)"},
                                                       {"C:\\logs", R"(C:\logs\ZenqayDBSync.log)"},
                                                       {"\t", "\t\\ZenqayDBSync.log"}};
  for (const auto& [directory, path] : cases) {
    ProcessFixture fixture;
    RefusingLogFile refusing;
    fixture.platform.log = &refusing;

    EXPECT_EQ(Raised([&, where = directory] { WriteStartupErrorLog(fixture.process, where, kError); }),
              Text("70 ZenqayDBSync: Permission denied: ") + path);
  }
}

TEST(WriteStartupErrorLog, PutsTheFileOfABlankDirectoryStraightUnderTheRoot) {
  ProcessFixture fixture(1, "/");
  fixture.directory.Write("I18nText.xml", "<I18NTEXT><SLBL0143>%1 %2</SLBL0143><SLBL0374>failed</SLBL0374></I18NTEXT>");

  const ChildRun run = RunInChild([&] {
    const bool allowed = ::geteuid() == 0 || ::unshare(CLONE_NEWUSER) == 0;
    if (!allowed || ::chroot(fixture.directory.path().c_str()) != 0) return Text("no other root");
    WriteStartupErrorLog(fixture.process, "  ", RuntimeError(9999, "", "too few"));
    return Text("written");
  });

  if (run.result == "no other root") GTEST_SKIP() << "this user may not change the root directory";
  EXPECT_EQ(run.result, "written");
  EXPECT_EQ(fixture.directory.Read("ZenqayDBSync.log"),
            "1/31/2004 10:11:12 AM\r\nfailed\r\nError is - 9999: too few\r\n");
}

// Passwords.

TEST(LogRecord, HasAPasswordTakenOutOfEachItemAndEndsTheItemAllTheSame) {
  ProcessFixture fixture;
  fixture.Connect();
  fixture.process.LocalErrors->Replace(
      {{18456, "driver; pwd=one", "login failed: Password=two"}, {5, "PWD = \"three\" x", "none"}});

  WriteErrorLog(fixture.process, RuntimeError(5, "source password=four", "pwd='fi;ve' and pwd=six;Server=A"));
  WriteTableRunLog(fixture.process, "pwd=seven", 1, 0, 0);
  WriteStartupErrorLog(fixture.process, fixture.directory.path().string(), RuntimeError(5, "", "password={ei}}ght} x"));

  EXPECT_EQ(fixture.RunLog(), Text(kDateLine) +
                                  "\"driver; pwd=***\",18456,\"login failed: Password=***\"\r\n"
                                  "\"PWD = *** x\",5,\"none\"\r\n"
                                  "\"source password=***\",\"pwd=*** and pwd=***;Server=A\"\r\n" +
                                  kTitle + "\"Rows copied: pwd=***\"\r\n");
  EXPECT_EQ(fixture.directory.Read("ZenqayDBSync.log"),
            Text(kTitle) + "The data copy failed.\r\nError is - 5: password=*** x\r\n");
}

// What is no RuntimeError.

/// Converts no line, since the library lacks the code page.
class ForeignLogFile : public RefusingLogFile {
 public:
  void Open(const Text&) override {}
  void WriteLine(const Text&) override { throw std::runtime_error("iconv has no WINDOWS-1252"); }
};

TEST(LogRecord, ThatALibraryStopsNamesTheErrorThatIsLostWithIt) {
  ProcessFixture fixture;
  ForeignLogFile foreign;
  fixture.platform.log = &foreign;

  EXPECT_THROW(WriteErrorLog(fixture.process, kError), std::runtime_error);
  EXPECT_THROW(WriteStartupErrorLog(fixture.process, "", RuntimeError(9999, "start", "too few")), std::runtime_error);
  EXPECT_THROW(WriteTableRunLog(fixture.process, "Site", 1, 0, 0), std::runtime_error);

  EXPECT_EQ(fixture.Causes(),
            "error -2147217900 from \"Data copy: Sites\": Sites could not be copied from the ERP (generation 1).\n"
            "error 9999 from \"start\": too few\n");
}

}  // namespace
}  // namespace zenqay
