// The process from its command line to its end.
#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "doubles/refusing_log_file.h"
#include "startup/start_fixture.h"

namespace zenqay {
namespace {

constexpr const char* kLocations = "Kv40QTMtssmaLocations.LocationsManager";
constexpr const char* kSecondLine = "The data copy cannot start. Please inform your system administrator.";

// What the journal shows of the steps, for the command line of the fixture.
constexpr const char* kRegistryLoad =
    "open\n"
    "sql SET DATEFORMAT YMD\n"
    "put DefaultDatabase SERVICE\n"
    "query SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c where "
    "a.productid = N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label\n"
    "close recordset\n"
    "close\n";
constexpr const char* kSession =
    "create java:com.korvel.k3impl.about.AdapterComponentInfo\n"
    "get info.getVersion\n"
    "create java:com.korvel.k3.kxi1.AccessForCom\n"
    "get access.kxiToolKit_getDefaultToolkit\n"
    "get toolkit.createUserSession\n";
constexpr const char* kStatusComponent =
    "create ZenqayInstHandler.InstanceHandle\n"
    "handle.getInstance(&i16(7))\n"
    "put handle.CurrentInstanceNumber = i16(7)\n";
constexpr const char* kLocalConnection =
    "open\n"
    "sql SET DATEFORMAT YMD\n"
    "put DefaultDatabase SERVICE\n"
    "get DefaultDatabase\n";
constexpr const char* kGate =
    "query SELECT * FROM tstables WHERE tablename = N'Branch'\n"
    "close recordset\n"
    "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Branch' -> 1\n";
constexpr const char* kNoCopy =
    "box There is no copy for a table of this name. Please check the names in tstables.\n"
    "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Branch' -> 1\n";

/// Everything in front of the job.
Text Start(const StartFixture& fixture) {
  return Text("require usable components\n") + kRegistryLoad + "logging " + fixture.directory.path().string() +
         "\\ZNQevtLG.txt\n" + kSession + "title Zenqay DB Sync\n";
}

/// The job of table 1, with its status component.
Text BranchJob(const Text& startedTableStatus, const Text& completeTableStatus) {
  return Text(kLocalConnection) + kGate +
         "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) started.\")\n"
         "status.UpdateSyncStatus(&i16(1), i16(1))\n" +
         startedTableStatus + kNoCopy +
         "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) complete: 0 copied, 0 "
         "updated, 0 deleted.\")\n"
         "status.UpdateSyncStatus(&i16(1), i16(2))\n" +
         completeTableStatus + "close\n";
}

Text BranchJobWithHandle(const Text& handle) {
  return BranchJob("status.UpdateStatusByTable(&i32(" + handle + "), &i16(1), i32(2), &\"\")\n",
                   "status.UpdateStatusByTable(&i32(" + handle + "), &i16(1), i32(4), &\"\")\n");
}

TEST(RunProcess, GoesThroughItsStepsInTheirOrder) {
  StartFixture fixture;
  fixture.database.showSettings = true;
  fixture.database.showQueryOptions = true;
  const auto date = fixture.components.Register(kDateClass, "date");
  for (const char* operation : {"setTime", "setDate", "setmonth", "SetYear", "setHours", "setMinutes", "setSeconds"}) {
    date->Answers(operation, Value());
  }
  fixture.components.Register(kCalendarClass, "calendar")
      ->Answers("ZONE_OFFSET", 15)
      .Answers("get", 3'600'000);  // an hour east of Greenwich

  fixture.Run();

  EXPECT_EQ(fixture.journal.Take(),
            "require usable components\n"
            "put ConnectionString Provider=SQLite;Data Source=C:\\a.db\n"
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "put DefaultDatabase SERVICE\n"
            "query SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c "
            "where a.productid = N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label [static "
            "read-only unspecified]\n"
            "close recordset\n"
            "close\n"
            "create java:java.util.Date\n"
            "create java:java.util.Date\n"
            "create java:java.util.GregorianCalendar\n"
            "get calendar.ZONE_OFFSET\n"
            "calendar.get(i32(15))\n"
            "date.setTime(i32(0))\n"
            "date.setDate(i32(1))\n"
            "date.setmonth(i32(0))\n"
            "date.SetYear(i32(70))\n"
            "date.setMinutes(i32(60))\n"
            "date.setDate(i32(19))\n"
            "date.setmonth(i32(0))\n"
            "date.SetYear(i32(138))\n"
            "date.setHours(i32(3))\n"
            "date.setMinutes(i32(74))\n"
            "date.setSeconds(i32(7))\n"
            "logging " +
                fixture.directory.path().string() +
                "\\ZNQevtLG.txt\n"
                "create java:com.korvel.k3impl.about.AdapterComponentInfo\n"
                "get info.getVersion\n"
                "create java:com.korvel.k3.kxi1.AccessForCom\n"
                "get access.kxiToolKit_getDefaultToolkit\n"
                "get toolkit.createUserSession\n"
                "title Zenqay DB Sync\n"
                "create ZenqayInstHandler.InstanceHandle\n"
                "handle.getInstance(&i16(7))\n"
                "put handle.CurrentInstanceNumber = i16(7)\n"
                "put ConnectionTimeout 0\n"
                "put CommandTimeout 0\n"
                "put ConnectionString Provider=SQLite;Data Source=C:\\a.db\n"
                "open\n"
                "sql SET DATEFORMAT YMD\n"
                "put DefaultDatabase SERVICE\n"
                "get DefaultDatabase\n"
                "put ActiveConnection 2\n"
                "query SELECT * FROM tstables WHERE tablename = N'Branch' [keyset optimistic text]\n"
                "close recordset\n"
                "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Branch' -> 1\n"
                "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) started.\")\n"
                "status.UpdateSyncStatus(&i16(1), i16(1))\n"
                "status.UpdateStatusByTable(&i32(5), &i16(1), i32(2), &\"\")\n"
                "box There is no copy for a table of this name. Please check the names in tstables.\n"
                "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Branch' -> 1\n"
                "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) complete: 0 "
                "copied, 0 updated, 0 deleted.\")\n"
                "status.UpdateSyncStatus(&i16(1), i16(2))\n"
                "status.UpdateStatusByTable(&i32(5), &i16(1), i32(4), &\"\")\n"
                "close\n");
  EXPECT_EQ(fixture.StartupLog(), "no file");
  EXPECT_EQ(fixture.Causes(), "");
}

/// The handler is there from before the session is opened, and goes with the job.
TEST(RunProcess, HasOneHandlerProcessWideForTheLengthOfTheJob) {
  StartFixture fixture;
  std::vector<bool> seen;
  fixture.info->Does("getVersion", [&](Arguments) {
    seen.push_back(fixture.process.DataCopyHandler != nullptr);
    return Value("2.4");
  });
  fixture.handle->Does("getInstance", [&](Arguments) {
    seen.push_back(fixture.process.DataCopyHandler != nullptr);
    return Value(Object(fixture.status));
  });

  EXPECT_EQ(fixture.process.DataCopyHandler, nullptr);
  fixture.Run();

  EXPECT_EQ(seen, (std::vector<bool>{true, true}));
  EXPECT_EQ(fixture.process.DataCopyHandler, nullptr);
}

TEST(RunProcessFailure, LeavesNoHandlerBehind) {
  StartFixture fixture;
  fixture.items[2] = "40000";
  const auto session = fixture.components.Make("session");
  std::weak_ptr<clsDataCopyHandler> handler;
  fixture.toolkit->Does("createUserSession", [&](Arguments) {
    handler = fixture.process.DataCopyHandler;
    return Value(Object(session));
  });

  fixture.Run();

  EXPECT_EQ(fixture.StartupLog(), StartFixture::StartupRecord("6: Overflow"));
  EXPECT_TRUE(handler.expired());
}

TEST(RunProcess, TrimsTheItemsForTheJobAndKeepsTheLogDirectoryAsGiven) {
  StartFixture fixture;
  fixture.database.showSettings = true;
  const Text directory = fixture.directory.path().string();
  fixture.items = {"  Provider=SQLite;Data Source=C:\\a.db ",
                   " SERVICE ",
                   " 1 ",
                   " 1 ",
                   " " + directory + " ",
                   " 100 ",
                   " 5 ",
                   "",
                   " 2 ",
                   " 7 ",
                   " 1 "};

  fixture.Run();

  const Text journal = fixture.journal.Take();
  EXPECT_EQ(journal.substr(0, journal.find("create ")),
            "require usable components\n"
            "put ConnectionString Provider=SQLite;Data Source=C:\\a.db\n"
            "open\n"
            "sql Alter session set current_schema= SERVICE\n"
            "query SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c "
            "where a.productid = N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label\n"
            "close recordset\n"
            "close\n"
            "logging " +
                directory + "\\ZNQevtLG.txt\n");
  EXPECT_EQ(fixture.process.LogDirectoryAsGiven, " " + directory + " ");
  EXPECT_EQ(fixture.process.LogFilePath, directory + "\\Branch_20040131.log");
  EXPECT_EQ(fixture.process.DatabasePlatform, 2);
}

TEST(RunProcess, ResetsTheLabelDocument) {
  StartFixture fixture;
  fixture.process.LabelDocumentLoaded = true;  // of an empty document
  fixture.items.resize(6);

  fixture.Run();

  EXPECT_EQ(fixture.StartupLog(),
            StartFixture::StartupRecord(Text("9999: The command line has too few items.\r\n") + kSecondLine));
}

// Counts of items, and single items.

TEST(RunProcess, WithElevenItemsAndANegativeStatusHandleCreatesTheStatusComponentAndSendsNoTableStatus) {
  StartFixture fixture;
  fixture.items[6] = "-1";
  fixture.items[9] = "0";

  fixture.Run();

  EXPECT_EQ(fixture.journal.Take(), Start(fixture) +
                                        "create ZenqayInstHandler.InstanceHandle\n"
                                        "handle.getInstance(&i16(0))\n"
                                        "put handle.CurrentInstanceNumber = i16(0)\n" +
                                        BranchJob("", ""));
  EXPECT_FALSE(fixture.process.TableStatusEnabled);
}

TEST(RunProcess, WithTwelveItemsMakesNoStatusCallAndRunsTheCopyToItsEnd) {
  for (const char* twelfth : {"x", "", " ", "0"}) {
    StartFixture fixture;
    fixture.items.push_back(twelfth);

    fixture.Run();

    EXPECT_EQ(fixture.journal.Take(), Start(fixture) + kLocalConnection + kGate + kNoCopy + "close\n");
    EXPECT_EQ(fixture.StartupLog(), "no file");
  }
}

TEST(RunProcess, WithThirteenItemsUsesTheStatusComponentAgain) {
  StartFixture fixture;
  fixture.items.insert(fixture.items.end(), {"", ""});

  fixture.Run();

  EXPECT_EQ(fixture.journal.Take(), Start(fixture) + kStatusComponent + BranchJobWithHandle("5"));
}

TEST(RunProcess, WithAStatusHandleOf0SendsTheTableStatusWithHandle0) {
  StartFixture fixture;
  fixture.items[6] = "0";

  fixture.Run();

  EXPECT_EQ(fixture.journal.Take(), Start(fixture) + kStatusComponent + BranchJobWithHandle("0"));
}

TEST(RunProcess, WithAnInstanceOfLettersAsksForInstance0) {
  StartFixture fixture;
  fixture.items[9] = "first";

  fixture.Run();

  EXPECT_EQ(fixture.journal.Take(), Start(fixture) +
                                        "create ZenqayInstHandler.InstanceHandle\n"
                                        "handle.getInstance(&i16(0))\n"
                                        "put handle.CurrentInstanceNumber = i16(0)\n" +
                                        BranchJobWithHandle("5"));
}

TEST(RunProcess, WithSyncMethod7PassesTheCheckAndCopiesNothing) {
  StartFixture fixture;
  fixture.items[2] = "2";
  fixture.items[3] = "7";
  fixture.items.push_back("");

  fixture.Run();

  EXPECT_EQ(fixture.journal.Take(), Start(fixture) + kLocalConnection +
                                        "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
                                        "close recordset\n"
                                        "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
                                        "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n"
                                        "close\n");
  EXPECT_EQ(fixture.StartupLog(), "no file");
}

TEST(RunProcess, WithTable128OrANumberThatRoundsToItRunsAllTables) {
  for (const char* tableId : {"128", "128.4", "127.5", "128x"}) {
    StartFixture fixture;
    fixture.items[2] = tableId;
    fixture.items.push_back("");
    fixture.database.Answer(kGroupQuery, {{{"tableid", std::int32_t{1}}}});

    fixture.Run();

    EXPECT_EQ(fixture.journal.Take(),
              Start(fixture) + kLocalConnection +
                  "query SELECT tableid FROM tstreenodes WHERE groupid = '1'  AND tableid is not null\n" + kGate +
                  kNoCopy + "close\n");
    EXPECT_TRUE(fixture.process.AllTablesRun) << tableId;
  }
}

TEST(RunProcess, WithAnyOtherTableClearsTheAllTablesSetting) {
  StartFixture fixture;
  fixture.process.AllTablesRun = true;

  fixture.Run();

  EXPECT_FALSE(fixture.process.AllTablesRun);
}

TEST(RunProcess, WithATableOfLettersTakesTable0WhoseEntryIsEmpty) {
  StartFixture fixture;
  fixture.items[2] = "Site";
  fixture.items.push_back("");

  fixture.Run();

  EXPECT_EQ(fixture.journal.Take(), Start(fixture) + kLocalConnection +
                                        "query SELECT * FROM tstables WHERE tablename = N''\n"
                                        "close recordset\n"
                                        "sql UPDATE tstables SET in_use = 1WHERE tablename = N'' -> 1\n"
                                        "box There is no copy for a table of this name. Please check the names in "
                                        "tstables.\n"
                                        "sql UPDATE tstables SET in_use = 0WHERE tablename = N'' -> 1\n"
                                        "close\n");
  EXPECT_EQ(fixture.process.LogFilePath, fixture.directory.path().string() + "\\_20040131.log");
}

TEST(RunProcess, WithABlankLogDirectoryLogsToABackslashAndTheFileName) {
  StartFixture fixture;
  fixture.items[4] = "  ";

  fixture.Run();

  EXPECT_EQ(fixture.platform.logTarget, "\\ZNQevtLG.txt");
  EXPECT_EQ(fixture.process.LogFilePath, "\\Branch_20040131.log");
}

// Failures in front of the job. Each is one record of the start-up log.

/// What the journal shows when the start fails, the log that it leaves, and the causes that are named.
void ExpectStartFailure(StartFixture& fixture, const Text& journal, const Text& numberAndDescription,
                        const Text& causes = "") {
  fixture.Run();

  EXPECT_EQ(fixture.journal.Take(), journal);
  EXPECT_EQ(fixture.StartupLog(), StartFixture::StartupRecord(numberAndDescription));
  EXPECT_EQ(fixture.Causes(), causes);
}

TEST(RunProcessFailure, OfSixItemsIsNumber9999) {
  StartFixture fixture;
  fixture.items.resize(6);

  ExpectStartFailure(fixture, "", Text("9999: The command line has too few items.\r\n") + kSecondLine);
}

TEST(RunProcessFailure, OfSevenToTenItemsIsTheSubscriptError) {
  for (const auto& [count, missing] : {std::pair(7, "9"), std::pair(8, "9"), std::pair(9, "10"), std::pair(10, "11")}) {
    StartFixture fixture;
    fixture.items.resize(static_cast<std::size_t>(count));

    ExpectStartFailure(fixture, "", Text("9: Subscript out of range: the command line has no item ") + missing);
  }
}

TEST(RunProcessFailure, OfASyncMethodOfLettersOrAnEmptyOneIsTheTypeMismatchAndNot2021003) {
  for (const char* method : {"full", ""}) {
    StartFixture fixture;
    fixture.items[3] = method;

    ExpectStartFailure(fixture, "", "13: Type mismatch: the sync method is no number");
  }
}

TEST(RunProcessFailure, OfAPlatformOfLettersIsTheTypeMismatchAndNot2021005) {
  StartFixture fixture;
  fixture.items[8] = "oracle";

  ExpectStartFailure(fixture, "", "13: Type mismatch: the database platform is no number");
}

TEST(RunProcessFailure, OfAStatusHandleOfLettersOrAnEmptyOneIsNumber2021004) {
  for (const char* handle : {"abc", ""}) {
    StartFixture fixture;
    fixture.items[6] = handle;

    ExpectStartFailure(fixture, "",
                       Text("2021004: The status handle must be a number, not \"") + handle + "\".\r\n" + kSecondLine);
  }
}

TEST(RunProcessFailure, OfComponentsThatAreNotUsableComesBeforeAnyDatabaseIsTouched) {
  StartFixture fixture;
  fixture.components.unusable.emplace(PlatformFault::InvalidCall, "Components.xml, line 3: unknown kind \"x\"");

  ExpectStartFailure(fixture, "require usable components\n",
                     "5: Invalid procedure call or argument: Components.xml, line 3: unknown kind \"x\"");
  EXPECT_EQ(fixture.process.LogDirectoryAsGiven, "");
}

TEST(RunProcessFailure, OfAPlatformBeyond16BitsComesBeforeAnyDatabaseIsTouched) {
  StartFixture fixture;
  fixture.items[8] = "32768";

  ExpectStartFailure(fixture, "require usable components\n", "6: Overflow");
  EXPECT_EQ(fixture.process.LogDirectoryAsGiven, fixture.directory.path().string());
}

TEST(RunProcessFailure, OfTheRegistryReportsOnlyThatItsLogCouldNotBeOpenedAndNamesTheCause) {
  StartFixture fixture;
  fixture.database.FailCall("open", RuntimeError(-2147467259, "SQLite", "unable to open database file"));

  ExpectStartFailure(fixture, "require usable components\nopen\n", "75: Path/File access error",
                     "error -2147467259 from \"SQLite\": unable to open database file\n");
}

TEST(RunProcessFailure, OfAnEmptyRegistryShowsAMessageBoxAndNamesTheCause) {
  StartFixture fixture;
  fixture.database.Answer(kRegistryQuery, {});

  ExpectStartFailure(
      fixture,
      "require usable components\n"
      "open\n"
      "sql SET DATEFORMAT YMD\n"
      "put DefaultDatabase SERVICE\n"
      "query SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c where "
      "a.productid = N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label\n"
      "box tstables or tstreenodes table is empty .. Cannot Proceed\n",
      "75: Path/File access error",
      Text("error 100 from \"zenqa Data Copy - Start\": No tables are set up for copying. ") + kSecondLine + "\n");
}

TEST(RunProcessFailure, OfTheDateLimitsLeavesLoggingAndEverythingBehindItUndone) {
  StartFixture fixture;
  fixture.components.FailCreation(kCalendarClass,
                                  RuntimeError(PlatformFault::CannotCreateObject, kCalendarClass, kCalendarClass));

  ExpectStartFailure(fixture,
                     Text("require usable components\n") + kRegistryLoad + "create java:java.util.GregorianCalendar\n",
                     "429: Component can't create object: java:java.util.GregorianCalendar");
}

TEST(RunProcessFailure, OfTheSessionReportsThatItsRecordCouldNotBeWrittenAndNamesTheCause) {
  StartFixture fixture;
  fixture.components.FailCreation(kAdapterInfoClass,
                                  RuntimeError(PlatformFault::CannotCreateObject, kAdapterInfoClass));

  ExpectStartFailure(fixture,
                     Text("require usable components\n") + kRegistryLoad + "logging " +
                         fixture.directory.path().string() +
                         "\\ZNQevtLG.txt\n"
                         "create java:com.korvel.k3impl.about.AdapterComponentInfo\n",
                     "76: Path not found: The session with the ERP adapter could not be opened.\\ZenqayDBSync.log",
                     "error 429 from \"ZenqayDBSync\": Component can't create object: "
                     "java:com.korvel.k3impl.about.AdapterComponentInfo\n");
}

TEST(RunProcessFailure, OfTheSessionIsRecordedWhereItsLabelNamesADirectoryAndTheJobGoesOn) {
  TempDirectory home;
  std::filesystem::create_directory(home.path() / "session");
  home.Write("I18nText.xml", "<I18NTEXT><SLBL0278>" + (home.path() / "session").string() +
                                 "</SLBL0278><SLBL0143>%1 %2</SLBL0143></I18NTEXT>");
  StartFixture fixture(home.path().string());
  fixture.info->Answers("getVersion", "two");
  fixture.items.push_back("");

  fixture.Run();

  EXPECT_EQ(home.Read("session/ZenqayDBSync.log"),
            "1/31/2004 10:11:12 AM\r\nSLBL0374\r\nError is - 13: Type mismatch: getVersion\r\n");
  EXPECT_EQ(fixture.journal.Take(), Text("require usable components\n") + kRegistryLoad + "logging " +
                                        fixture.directory.path().string() +
                                        "\\ZNQevtLG.txt\n"
                                        "create java:com.korvel.k3impl.about.AdapterComponentInfo\n"
                                        "get info.getVersion\n"
                                        "title SLBL0504\n" +
                                        kLocalConnection + kGate +
                                        "box SLBL0302\n"
                                        "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Branch' -> 1\n"
                                        "close\n");
  EXPECT_EQ(fixture.StartupLog(), "no file");
}

TEST(RunProcess, GoesOnWithoutASessionWhenTheAdapterIsTooOld) {
  StartFixture fixture;
  fixture.info->Answers("getVersion", "2.3");
  fixture.items.push_back("");

  fixture.Run();

  EXPECT_EQ(fixture.journal.Take(), Text("require usable components\n") + kRegistryLoad + "logging " +
                                        fixture.directory.path().string() +
                                        "\\ZNQevtLG.txt\n"
                                        "create java:com.korvel.k3impl.about.AdapterComponentInfo\n"
                                        "get info.getVersion\n"
                                        "title Zenqay DB Sync\n" +
                                        kLocalConnection + kGate + kNoCopy + "close\n");
  EXPECT_EQ(fixture.StartupLog(), "no file");
}

TEST(RunProcessFailure, OfATableBeyond16BitsIsTheOverflowErrorBehindEveryOtherStep) {
  for (const char* tableId : {"32768", "32767.5", "-32769", "1e300"}) {
    StartFixture fixture;
    fixture.items[2] = tableId;

    ExpectStartFailure(fixture, Start(fixture), "6: Overflow");
  }
}

TEST(RunProcessFailure, OfASyncMethodBeyond16BitsIsTheOverflowErrorBehindEveryOtherStep) {
  StartFixture fixture;
  fixture.items[3] = "40000";

  ExpectStartFailure(fixture, Start(fixture), "6: Overflow");
}

// Failures of the job that no table's copy catches. They too are one record of the start-up log.

TEST(RunProcessFailure, OfAStatusComponentThatCannotBeCreatedLeavesTheDatabaseAlone) {
  StartFixture fixture;
  fixture.components.FailCreation(kStatusClass, RuntimeError(PlatformFault::CannotCreateObject, kStatusClass));

  ExpectStartFailure(fixture, Start(fixture) + "create ZenqayInstHandler.InstanceHandle\n",
                     "429: Component can't create object: ZenqayInstHandler.InstanceHandle");
}

TEST(RunProcessFailure, OfAMissingStatusComponentIsNumber100WithoutASecondLine) {
  StartFixture fixture;
  fixture.handle->Answers("getInstance", Object());

  ExpectStartFailure(fixture, Start(fixture) + kStatusComponent,
                     "100: The status component gave no object for this instance.");
}

TEST(RunProcessFailure, OfTheLocalConnectionRaisesNoEventAndClosesNothing) {
  StartFixture fixture;
  fixture.database.FailCall("get DefaultDatabase", RuntimeError(-2147467259, "driver", "gone"));

  ExpectStartFailure(fixture, Start(fixture) + kStatusComponent + kLocalConnection, "-2147467259: gone");
}

TEST(RunProcessFailure, OfATableOutsideTheRegistryComesBeforeAnyConnection) {
  for (const char* tableId : {"129", "-1", "32767"}) {
    StartFixture fixture;
    fixture.items[2] = tableId;

    ExpectStartFailure(fixture, Start(fixture) + kStatusComponent, "9: Subscript out of range");
  }
}

TEST(RunProcessFailure, OfTheGroupsQueryIsRecordedAndClosesNothing) {
  StartFixture fixture;
  fixture.items[2] = "128";
  fixture.database.FailOn("tstreenodes WHERE", RuntimeError(-2147217865, "driver", "no such table"));

  ExpectStartFailure(fixture,
                     Start(fixture) + kStatusComponent + kLocalConnection +
                         "query SELECT tableid FROM tstreenodes WHERE groupid = '1'  AND tableid is not null\n",
                     "-2147217865: no such table");
}

TEST(RunProcessFailure, OfAStatusCallInAStartedEventIsTheFailureOfTheTablesCopy) {
  StartFixture fixture;
  fixture.status->Fails("UpdateSyncStatus", RuntimeError(PlatformFault::Automation, "gone", "status"));

  fixture.Run();

  EXPECT_EQ(
      fixture.journal.Take(),
      Start(fixture) + kStatusComponent + kLocalConnection + kGate +
          "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) started.\")\n"
          "status.UpdateSyncStatus(&i16(1), i16(1))\n"
          "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Branch' -> 1\n"
          "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) failed.\")\n"
          "status.WriteToAlertBox(&time(10:11:12 AM), &\"Table Branch could not be copied (-1). See the log file " +
          fixture.directory.path().string() +
          "\\Branch_20040131.log.\")\n"
          "status.UpdateSyncStatus(&i16(1), i16(3))\n");
  EXPECT_EQ(fixture.FileText("Branch_20040131.log"),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n\"status\",\"Automation error: gone: UpdateSyncStatus\"\r\n");
  EXPECT_EQ(fixture.StartupLog(), StartFixture::StartupRecord("440: Automation error: gone: UpdateSyncStatus"));
}

// Tables that are in use or fail.

TEST(RunProcess, ReportsATableInProgressWithoutASyncStatus) {
  StartFixture fixture;
  fixture.database.Answer("SELECT * FROM tstables WHERE tablename = N'Branch'", {{{"in_use", std::int16_t{1}}}});

  fixture.Run();

  EXPECT_EQ(fixture.journal.Take(),
            Start(fixture) + kStatusComponent + kLocalConnection +
                "query SELECT * FROM tstables WHERE tablename = N'Branch'\n"
                "close recordset\n"
                "status.writeToMessageBox(&time(10:11:12 AM), &\"Branches (ERP table tssma110) is being copied by "
                "another job. Nothing was done.\")\n"
                "status.UpdateStatusByTable(&i32(5), &i16(1), i32(8), &\"\")\n"
                "close\n");
}

TEST(RunProcess, ReportsAFailedTableByAMessageAnAlertAndItsStatus) {
  StartFixture fixture;
  fixture.items[2] = "2";
  fixture.components.FailCreation(kLocations, RuntimeError(PlatformFault::CannotCreateObject, kLocations, kLocations));

  fixture.Run();

  const Text runLog = fixture.directory.path().string() + "\\Site_20040131.log";
  EXPECT_EQ(fixture.journal.Take(),
            Start(fixture) + kStatusComponent + kLocalConnection +
                "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
                "close recordset\n"
                "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
                "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Sites (ERP table tssma120) started.\")\n"
                "status.UpdateSyncStatus(&i16(2), i16(1))\n"
                "status.UpdateStatusByTable(&i32(5), &i16(2), i32(2), &\"\")\n"
                "create Kv40QTMtssmaLocations.LocationsManager\n"
                "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n"
                "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Sites (ERP table tssma120) failed.\")\n"
                "status.WriteToAlertBox(&time(10:11:12 AM), &\"Table Site could not be copied (-1). See the log file " +
                runLog +
                ".\")\n"
                "status.UpdateSyncStatus(&i16(2), i16(3))\n"
                "status.UpdateStatusByTable(&i32(5), &i16(2), i32(16), &\"\")\n"
                "close\n");
  EXPECT_EQ(fixture.StartupLog(), "no file");
}

TEST(RunProcess, HandsTheFieldOfTheGroupToTheStatusComponentInAnAllTablesRun) {
  StartFixture fixture;
  fixture.items[2] = "128";
  fixture.database.Answer(kGroupQuery, {{{"tableid", std::int32_t{1}}}});

  fixture.Run();

  EXPECT_EQ(fixture.journal.Take(),
            Start(fixture) + kStatusComponent + kLocalConnection +
                "query SELECT tableid FROM tstreenodes WHERE groupid = '1'  AND tableid is not null\n" + kGate +
                "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) started.\")\n"
                "status.UpdateSyncStatus(&i16(1), i16(1))\n"
                "status.UpdateStatusByTable(&i32(5), &i16(1), i32(2), &\"\")\n" +
                kNoCopy +
                "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) complete: 0 "
                "copied, 0 updated, 0 deleted.\")\n"
                "status.UpdateSyncStatus(&field(TableID=1), i16(2))\n"
                "status.UpdateStatusByTable(&i32(5), &field(TableID=1), i32(4), &\"\")\n"
                "close\n");
}

// Ends that no log could take.

TEST(FatalEnd, OfFourItemsOrFewerIsTheSubscriptErrorAndNoLog) {
  for (std::size_t count = 0; count <= 4; ++count) {
    StartFixture fixture;
    fixture.items.resize(count);

    EXPECT_EQ(Raised([&] { fixture.Run(); }), "9 ZenqayDBSync: Subscript out of range: the command line has no item 5");
    EXPECT_EQ(fixture.journal.Take(), "");
    EXPECT_EQ(fixture.StartupLog(), "no file");
    EXPECT_EQ(fixture.Causes(), Text("error 9999 from \"Zenqa Data Copy - Start\": The command line has too few "
                                     "items. ") +
                                    kSecondLine + "\n");
  }
}

TEST(FatalEnd, OfAnEmptyCommandLineIsTheSubscriptError) {
  StartFixture fixture;

  EXPECT_EQ(Raised([&] { RunProcess(fixture.process, ""); }),
            "9 ZenqayDBSync: Subscript out of range: the command line has no item 5");
}

TEST(FatalEnd, OfALogDirectoryThatIsMissingNamesTheErrorThatWouldBeLost) {
  StartFixture fixture;
  fixture.items[3] = "full";
  fixture.items[4] = "C:\\no\\such\\directory";

  EXPECT_EQ(Raised([&] { fixture.Run(); }),
            "76 ZenqayDBSync: Path not found: C:\\no\\such\\directory\\ZenqayDBSync.log");
  EXPECT_EQ(fixture.Causes(), "error 13 from \"ZenqayDBSync\": Type mismatch: the sync method is no number\n");
}

TEST(FatalEnd, OfAFailureAtStartWithBlanksAroundTheLogDirectoryWhichItsLogTakesAsTheyAre) {
  StartFixture fixture;
  const Text directory = fixture.directory.path().string() + " ";
  fixture.items[3] = "full";
  fixture.items[4] = directory;

  EXPECT_EQ(Raised([&] { fixture.Run(); }), "76 ZenqayDBSync: Path not found: " + directory + "\\ZenqayDBSync.log");
}

TEST(FatalEnd, OfAJobWhoseLogCannotBeWrittenEither) {
  StartFixture fixture;
  fixture.items[2] = "129";
  fixture.items[4] = "C:\\no\\such\\directory";
  const Text noLog = "Path not found: C:\\no\\such\\directory\\ZenqayDBSync.log";

  EXPECT_EQ(Raised([&] { fixture.Run(); }), "76 ZenqayDBSync: " + noLog);
  EXPECT_EQ(fixture.Causes(),
            "error 9 from \"ZenqayDBSync\": Subscript out of range\nerror 76 from \"ZenqayDBSync\": " + noLog + "\n");
}

TEST(RunProcessFailure, OfAJobIsRecordedInTheTrimmedLogDirectory) {
  StartFixture fixture;
  fixture.items[2] = "129";
  fixture.items[4] = "  " + fixture.directory.path().string() + " ";

  fixture.Run();

  EXPECT_EQ(fixture.StartupLog(), StartFixture::StartupRecord("9: Subscript out of range"));
}

/// A status object that says when nobody holds it any more.
class MortalStatus : public Component {
 public:
  explicit MortalStatus(Journal& journal) : journal_(journal) {}
  MortalStatus(const MortalStatus&) = delete;
  MortalStatus& operator=(const MortalStatus&) = delete;
  ~MortalStatus() override { journal_.Line("status released"); }

  Value Call(std::string_view operation, Arguments) override { RaiseNoSuchOperation(operation, "MortalStatus"); }

 private:
  Journal& journal_;
};

/// A log file that may not be opened, and says so in the journal.
class JournaledRefusal : public RefusingLogFile {
 public:
  explicit JournaledRefusal(Journal& journal) : journal_(journal) {}

  void Open(const Text& path) override {
    journal_.Line("record refused");
    RefusingLogFile::Open(path);
  }

 private:
  Journal& journal_;
};

TEST(RunProcessFailure, ReleasesTheHandlerBeforeItIsRecorded) {
  StartFixture fixture;
  fixture.items[2] = "129";
  fixture.handle->Does("getInstance",
                       [&](Arguments) { return Object(std::make_shared<MortalStatus>(fixture.journal)); });
  JournaledRefusal refusal(fixture.journal);
  fixture.platform.log = &refusal;

  const Text raised = Raised([&] { fixture.Run(); });

  EXPECT_EQ(raised, "70 ZenqayDBSync: Permission denied: " + fixture.directory.path().string() + "\\ZenqayDBSync.log");
  const Text journal = fixture.journal.Take();
  EXPECT_EQ(journal.substr(journal.find("record refused")),  // the record of the handler, and that of the process
            "record refused\n"
            "status released\n"
            "record refused\n");
}

TEST(RunProcessFailure, WithABlankLogDirectoryIsRecordedUnderTheDrive) {
  StartFixture fixture;
  fixture.items[3] = "full";
  fixture.items[4] = " ";
  RefusingLogFile refusing;  // so that the root stays clean
  fixture.platform.log = &refusing;

  EXPECT_EQ(Raised([&] { fixture.Run(); }), R"(70 ZenqayDBSync: Permission denied: C:\ZenqayDBSync.log)");
}

TEST(RunProcessFailure, BesideALabelFileThatIsBrokenIsRecordedWithTheKeys) {
  TempDirectory home;
  home.Write("I18nText.xml", "<I18NTEXT>\n<SLBL0232>");
  StartFixture fixture(home.path().string());
  fixture.items.resize(5);

  fixture.Run();

  EXPECT_EQ(fixture.StartupLog(), "SLBL0143\r\nSLBL0374\r\nError is - 9999: SLBL0232\r\nSLBL0026\r\n");
  ASSERT_EQ(fixture.platform.causes.size(), 1u);  // for all labels
  EXPECT_EQ(fixture.platform.causes[0], (home.path() / "I18nText.xml").string() + ", line 2: Start-end tags mismatch");
}

}  // namespace
}  // namespace zenqay
