#include <gtest/gtest.h>

#include <limits>

#include "components/dates/builtin_dates.h"
#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"
#include "job/clsDataCopy.h"

namespace zenqay {
namespace {

constexpr std::int16_t kSqlServer = 1;
constexpr std::int16_t kOracle = 2;

constexpr std::int16_t kFull = 1;
constexpr std::int16_t kOnlyChanged = 2;

constexpr const char* kLocations = "Kv40QTMtssmaLocations.LocationsManager";
constexpr const char* kUnknownTable =
    "box There is no copy for a table of this name. Please check the names in tstables.\n";

const RuntimeError kRefused(-2147217900, "Driver", "refused");

class StartDataCopyTest : public testing::Test {
 protected:
  Text Directory() const { return copy.directory.path().string(); }

  /// Starts the copy of a table that the registry has under id 5.
  void Start(const Text& tableName, std::int16_t SyncMethod, const Value& platform = std::int32_t{1}) {
    copy.process.TableRegistry[5].TableName = tableName;
    copy.job.StartDataCopy("Provider=SQLOLEDB", "SERVICE", 5, SyncMethod, Directory(), "100", platform);
  }

  Text StartFailing(const Text& tableName, std::int16_t SyncMethod, const Value& platform = std::int32_t{1}) {
    return Raised([&] { Start(tableName, SyncMethod, platform); });
  }

  CopyFixture copy{"1"};
};

/// What an operation on SQL Server does before the table's copy.
const Text kOpened =
    "open\n"
    "sql SET DATEFORMAT YMD\n"
    "put DefaultDatabase SERVICE\n"
    "get DefaultDatabase\n";

TEST_F(StartDataCopyTest, CopiesOneTableFromItsOpeningToItsClosing) {
  copy.AddManager(kLocations, "locations", {copy.RowWith({{"Location", "A1"}})});
  copy.database.showSettings = true;
  copy.database.showQueryOptions = true;

  Start(" Site ", kFull);

  EXPECT_EQ(copy.journal.Take(),
            "put ConnectionTimeout 0\n"
            "put CommandTimeout 0\n"
            "put ConnectionString Provider=SQLOLEDB\n"
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "put DefaultDatabase SERVICE\n"
            "get DefaultDatabase\n"
            "put ActiveConnection 2\n"
            "query SELECT * FROM tstables WHERE tablename = N'Site' [keyset optimistic text]\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
            "create Kv40QTMtssmaLocations.LocationsManager\n"
            "session.addManager(&<locations>)\n"
            "locations.Initialize(&\"100\")\n"
            "locations.List(\"\", high(10))\n"
            "sql UPDATE Site SET upd_flag = 1 \n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "row1.getLocation()\n"
            "row1.hasDescription()\n"
            "row1.hasCustomer()\n"
            "row1.getLocation()\n"
            "sql UPDATE Site SET SITE = N'A1', upd_flag = 0 WHERE SITE =N'A1' -> 1\n"
            "rows.hasMoreElements()\n"
            "sql DELETE FROM Site WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> "
            "1\n"
            "locations.Close()\n"
            "sql UPDATE STATISTICS Site\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n"
            "event DataCopyComplete(time(10:11:12 AM), i16(5), i32(1), i32(0), i32(0))\n"
            "event DataCopydone()\n"
            "close\n");
  EXPECT_EQ(copy.RunLogPath(), Directory() + "\\Site_20040131.log");
  EXPECT_EQ(copy.directory.Read("Site_20040131.log"),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  1\"\r\n");
}

TEST_F(StartDataCopyTest, UpdatesNoStatisticsOnOracle) {
  copy.AddManager(kLocations, "locations", {copy.RowWith({{"Location", "A1"}})});

  Start("Site", kFull, std::int32_t{2});

  EXPECT_EQ(copy.JournalWithout({"row", "locations", "create", "session"}),
            "open\n"
            "sql Alter session set current_schema= SERVICE\n"
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
            "sql UPDATE Site SET upd_flag = 1 \n"
            "sql UPDATE Site SET SITE = N'A1', upd_flag = 0 WHERE SITE =N'A1' -> 1\n"
            "sql DELETE FROM Site WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS') WHERE tablename = "
            "N'Site' -> 1\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n"
            "event DataCopyComplete(time(10:11:12 AM), i16(5), i32(1), i32(0), i32(0))\n"
            "event DataCopydone()\n"
            "close\n");
}

TEST_F(StartDataCopyTest, RaisesCompleteWithThreeZerosForAnUnknownTableBehindItsMessageBox) {
  Start("SITES", kFull);

  EXPECT_EQ(copy.journal.Take(), kOpened +
                                     "query SELECT * FROM tstables WHERE tablename = N'SITES'\n"
                                     "close recordset\n"
                                     "sql UPDATE tstables SET in_use = 1WHERE tablename = N'SITES' -> 1\n"
                                     "event DataCopyStarted(time(10:11:12 AM), i16(5))\n" +
                                     kUnknownTable +
                                     "sql UPDATE tstables SET in_use = 0WHERE tablename = N'SITES' -> 1\n"
                                     "event DataCopyComplete(time(10:11:12 AM), i16(5), i32(0), i32(0), i32(0))\n"
                                     "event DataCopydone()\n"
                                     "close\n");
  EXPECT_FALSE(std::filesystem::exists(copy.directory.path() / "SITES_20040131.log"));
}

TEST_F(StartDataCopyTest, DoesNothingButTellOnATableInUse) {
  copy.SetState({{"in_use", 1}});

  Start("Site", kFull);

  EXPECT_EQ(copy.journal.Take(), kOpened +
                                     "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
                                     "close recordset\n"
                                     "event DataCopyAlreadyInProgress(time(10:11:12 AM), i16(5))\n"
                                     "event DataCopydone()\n"
                                     "close\n");
  EXPECT_FALSE(std::filesystem::exists(copy.directory.path() / "Site_20040131.log"));
}

TEST_F(StartDataCopyTest, TellsAFailedCopyByThePathOfItsRunLog) {
  const auto locations = copy.AddManager(kLocations, "locations");
  locations->Fails("List", {-2147467259, "adapter", "no such \"component\""});

  Start("Site", kFull);

  EXPECT_EQ(copy.journal.Take(), kOpened +
                                     "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
                                     "close recordset\n"
                                     "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
                                     "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
                                     "create Kv40QTMtssmaLocations.LocationsManager\n"
                                     "session.addManager(&<locations>)\n"
                                     "locations.Initialize(&\"100\")\n"
                                     "locations.List(\"\", high(10))\n"
                                     "locations.Close()\n"
                                     "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n"
                                     "event DataCopyError(time(10:11:12 AM), i16(5), i16(-1), \"See the log file " +
                                     Directory() +
                                     "\\Site_20040131.log.\")\n"
                                     "event DataCopydone()\n"
                                     "close\n");
  EXPECT_EQ(copy.directory.Read("Site_20040131.log"),  // one record of the entity, one of the job
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"adapter\",\"no such \"component\": List\"\r\n"
            "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
}

TEST_F(StartDataCopyTest, DoesNothingForASyncMethodOtherThan1And2) {
  for (const std::int16_t method : std::initializer_list<std::int16_t>{7, 0, 3, -1}) {
    Start("Site", method);

    EXPECT_EQ(copy.journal.Take(), kOpened +
                                       "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
                                       "close recordset\n"
                                       "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
                                       "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
                                       "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n"
                                       "event DataCopyComplete(time(10:11:12 AM), i16(5), i32(0), i32(0), i32(0))\n"
                                       "event DataCopydone()\n"
                                       "close\n")
        << method;
  }
}

TEST_F(StartDataCopyTest, RunsNoPostCopyStepAfterAnOnlyChangedPassThatFoundNothing) {
  copy.AddManager(kLocations, "locations");

  Start("Site", kOnlyChanged);

  EXPECT_EQ(copy.JournalWithout(
                {"row", "locations", "create", "session", "criteria", "input", "output", "period", "parameter"}),
            kOpened +
                "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
                "close recordset\n"
                "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
                "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
                "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
                "close recordset\n"
                "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
                "N'Site' -> 1\n"
                "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n"
                "event DataCopyComplete(time(10:11:12 AM), i16(5), i32(0), i32(0), i32(0))\n"
                "event DataCopydone()\n"
                "close\n");
}

TEST_F(StartDataCopyTest, ReadsTheTimeOfEachEventAtItsRaising) {
  copy.platform.nextTimes = {DateTime::FromParts({2004, 1, 31, 9, 0, 1}),   // the run log's path
                             DateTime::FromParts({2004, 1, 31, 9, 0, 2}),   // the date of a new state row
                             DateTime::FromParts({2004, 1, 31, 12, 0, 3}),  // DataCopyStarted
                             DateTime::FromParts({2004, 1, 31, 12, 0, 4}),  // the date of a new state row
                             DateTime::FromParts({2004, 2, 1, 0, 0, 5})};   // DataCopyComplete

  Start("SITES", kFull);

  EXPECT_EQ(copy.JournalWithout({"open", "close", "sql", "put", "get", "query", "box"}),
            "event DataCopyStarted(time(12:00:03 PM), i16(5))\n"
            "event DataCopyComplete(time(12:00:05 AM), i16(5), i32(0), i32(0), i32(0))\n"
            "event DataCopydone()\n");
}

/// A platform without a label file: each look for it takes a minute.
class SlowLabels : public FakePlatform {
 public:
  using FakePlatform::FakePlatform;

  Text ProgramDirectory() override {
    now = DateTime::FromParts({2004, 1, 31, 10, ++minute_, 0});
    return FakePlatform::ProgramDirectory();
  }

 private:
  int minute_ = 0;
};

TEST_F(StartDataCopyTest, ReadsTheTimeOfAFailureWhenItsMessageIsComposed) {
  SlowLabels platform(copy.journal, Directory());
  modDeclarations process{.platform = platform, .components = copy.components, .database = copy.database};
  process.TableRegistry[5].TableName = "Site";
  clsDataCopy job(process, copy);
  copy.database.FailOn("SELECT", kRefused);

  job.StartDataCopy("", "", 5, kFull, Directory(), "100", 1);

  EXPECT_EQ(copy.JournalWithout({"open", "get", "close", "sql", "query"}),  // the second label is the message's
            "event DataCopyError(time(10:02:00 AM), i16(5), i16(-1), \"SLBL0455\")\n"
            "event DataCopydone()\n");
}

TEST_F(StartDataCopyTest, KeepsTheRunLogOfItsFirstDayWhenTheCopyRunsPastMidnight) {
  const auto locations = copy.AddManager(kLocations, "locations");
  copy.platform.now = DateTime::FromParts({2004, 1, 31, 23, 59, 59});
  locations->Does("Close", [this](Arguments) {
    copy.platform.now = DateTime::FromParts({2004, 2, 1, 0, 0, 1});
    return Value();
  });
  copy.database.FailOn("in_use = 0", kRefused);

  Start("Site", kFull);

  EXPECT_EQ(copy.RunLogPath(), Directory() + "\\Site_20040131.log");
  EXPECT_EQ(copy.directory.Read("Site_20040131.log"),
            "Date: 1/31/2004 Time: 11:59:59 PM\r\n"
            "\"Rows copied: Site -  0\"\r\n"
            "\"Date-Time :2/1/2004 : 12:00:01 AM\"\r\n"
            "\"Driver\",\"refused\"\r\n");
  EXPECT_FALSE(std::filesystem::exists(copy.directory.path() / "Site_20040201.log"));
}

TEST_F(StartDataCopyTest, FailsBeforeAnyConnectionForATableIdOutside0To128) {
  for (const std::int16_t id : std::initializer_list<std::int16_t>{129, -1, 32767, -32768}) {
    const Text before = copy.RunLogPath();

    const Text raised = Raised([&] { copy.job.StartDataCopy("", "", id, kFull, Directory(), "100", 1); });

    EXPECT_EQ(raised, "9 ZenqayDBSync: Subscript out of range");
    EXPECT_EQ(copy.journal.Take(), "");
    EXPECT_EQ(copy.RunLogPath(), before);
  }
}

TEST_F(StartDataCopyTest, TakesThePlatformAs16Bits) {
  struct Case {
    Value given;
    std::int16_t platform;
  };
  const Case cases[] = {{std::int32_t{2}, kOracle}, {"1", kSqlServer}, {1.5, kOracle},  {2.5, kOracle},
                        {std::int16_t{3}, 3},       {Value(), 0},      {-32768, -32768}};
  for (const Case& c : cases) {
    Start("SITES", kFull, c.given);

    EXPECT_EQ(copy.process.DatabasePlatform, c.platform) << Shown(c.given);
  }
}

TEST_F(StartDataCopyTest, FailsFirstOfAllForAPlatformThatIsNo16BitNumber) {
  struct Case {
    Value given;
    const char* error;
  };
  const Case cases[] = {{40'000, "6 ZenqayDBSync: Overflow"},
                        {Null(), "94 ZenqayDBSync: Invalid use of Null"},
                        {"SQL Server", "13 ZenqayDBSync: Type mismatch"}};
  for (const Case& c : cases) {
    const Text before = copy.RunLogPath();

    EXPECT_EQ(StartFailing("Site", kFull, c.given), c.error);

    EXPECT_EQ(copy.journal.Take(), "");
    EXPECT_EQ(copy.RunLogPath(), before);
    EXPECT_EQ(copy.process.DatabasePlatform, kSqlServer);
  }
}

TEST_F(StartDataCopyTest, RaisesNoEventWhenTheConnectionCannotBeOpened) {
  copy.database.FailCall("open", kRefused);

  EXPECT_EQ(StartFailing("Site", kFull), "-2147217900 Driver: refused");

  EXPECT_EQ(copy.journal.Take(), "open\n");
  EXPECT_EQ(copy.RunLogPath(), Directory() + "\\Site_20040131.log");
  EXPECT_FALSE(std::filesystem::exists(copy.directory.path() / "Site_20040131.log"));
}

TEST_F(StartDataCopyTest, LeavesTheConnectionOpenAndRaisesNothingWhenTheFailurePathOfTheCopyFails) {
  copy.database.FailOn("in_use", kRefused);

  EXPECT_EQ(StartFailing("Site", kFull), "-2147217900 Driver: refused");

  EXPECT_EQ(copy.journal.Take(), kOpened +
                                     "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
                                     "close recordset\n"
                                     "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
                                     "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.directory.Read("Site_20040131.log"),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",\"refused\"\r\n");
}

TEST_F(StartDataCopyTest, LogsAFailedCloseBehindItsEventsAndReturns) {
  copy.database.FailCall("close", {3704, "Driver", "not open"});

  Start("SITES", kFull);

  EXPECT_TRUE(copy.journal.Take().ends_with("event DataCopydone()\nclose\n"));
  EXPECT_EQ(copy.directory.Read("SITES_20040131.log"),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",\"not open\"\r\n");
}

/// The class id of the first component that the journal creates, "" when there is none.
Text FirstCreated(const Text& journal) {
  const auto line = ("\n" + journal).find("\ncreate ");
  if (line == Text::npos) return "";
  const auto name = line + Text("create ").size();
  return journal.substr(name, journal.find('\n', name) - name);
}

struct EntityCase {
  Text key;
  const char* generation;
  const char* manager;
};

const EntityCase kEntities[] = {
    {"site", "1", "Kv40QTMtssmaLocations.LocationsManager"},
    {"product", "1", "Kv40QTMtssmaInstallations.InstallationsManager"},
    {"problem", "1", "Kv40QTMtsspfProblems.ProblemsManager"},
    {"symptom", "1", "Kv40QTMtsspfSymptoms.SymptomsManager"},
    {"priority", "1", "Kv40QTMtssmaPriorities.PrioritiesManager"},
    {"object", "3", "Kv50QTMtscfgObjects.ObjectsManager"},
    {"warranties", "1", "Kv40QTMtssmaWarranties.WarrantiesManager"},
    {"sitecontract", "3", "Kv50QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager"},
    {"contracts", "1", "Kv40QTMtssmaContracts.ContractsManager"},
    {"serializeditem", "8", "Kv61QTMtscfgSerializedItems.SerializedItemsManager"},
};

/// The key in other cases and with blanks around it: "SITE", "Site", "sITE", "  site ".
std::vector<Text> FormsOf(const Text& key) {
  Text upper = key;
  for (char& c : upper) c = static_cast<char>(c - 'a' + 'A');
  return {key, upper, upper.substr(0, 1) + key.substr(1), key.substr(0, 1) + upper.substr(1), "  " + key + " "};
}

TEST(Dispatch, ReachesEachEntityByItsNameInAnyCaseAndWithBlanksAroundIt) {
  for (const EntityCase& entity : kEntities) {
    for (const Text& name : FormsOf(entity.key)) {
      CopyFixture copy(entity.generation);

      copy.CopyTable(1, name, kFull);

      EXPECT_EQ(FirstCreated(copy.journal.Take()), entity.manager) << name;
    }
  }
}

TEST(Dispatch, UsesTheNameInItsOwnCaseInTheStatements) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations");

  copy.CopyTable(1, " sItE ", kFull);

  EXPECT_EQ(copy.JournalWithout({"row", "locations", "create", "session", "event", "query", "close"}),
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'sItE' -> 1\n"
            "sql UPDATE sItE SET upd_flag = 1 \n"
            "sql DELETE FROM sItE WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'sItE' -> "
            "1\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'sItE' -> 1\n");
}

TEST(Dispatch, ShowsAMessageBoxForEveryOtherName) {
  for (const Text name : {"SITES", "sites", "sit", "", "contract", "warranty", "objects", "site contract", "site\t",
                          "serializeditems", "*"}) {
    CopyFixture copy("1");

    EXPECT_EQ(copy.CopyTable(1, name, kFull), CopyResult::Done);

    EXPECT_EQ(copy.journal.Take(), "query SELECT * FROM tstables WHERE tablename = N'" + name +
                                       "'\n"
                                       "close recordset\n"
                                       "sql UPDATE tstables SET in_use = 1WHERE tablename = N'" +
                                       name +
                                       "' -> 1\n"
                                       "event DataCopyStarted(time(10:11:12 AM), i16(1))\n" +
                                       kUnknownTable + "sql UPDATE tstables SET in_use = 0WHERE tablename = N'" + name +
                                       "' -> 1\n");
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
  }
}

TEST(Dispatch, LeavesEveryEntityAloneForSyncMethod7) {
  for (const EntityCase& entity : kEntities) {
    CopyFixture copy(entity.generation);

    EXPECT_EQ(copy.CopyTable(1, entity.key, 7), CopyResult::Done);

    EXPECT_EQ(copy.journal.Take(), "query SELECT * FROM tstables WHERE tablename = N'" + entity.key +
                                       "'\n"
                                       "close recordset\n"
                                       "sql UPDATE tstables SET in_use = 1WHERE tablename = N'" +
                                       entity.key +
                                       "' -> 1\n"
                                       "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
                                       "sql UPDATE tstables SET in_use = 0WHERE tablename = N'" +
                                       entity.key + "' -> 1\n");
    EXPECT_EQ(copy.RunLog(), "");
  }
}

TEST(CopySingleTable, ResetsTheCountersAndTakesTheRecordsetAndTheErrorsOfTheConnectionAnew) {
  CopyFixture copy("1");
  copy.SetCounters(1, 2, 3);
  copy.CopyTable(1, "SITES", kFull);
  const std::shared_ptr<Recordset> former = copy.process.LocalRecordset;
  copy.process.LocalErrors = std::make_shared<Errors>();  // those of a connection that is gone

  copy.CopyTable(2, "SITES", kFull);

  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
  EXPECT_NE(copy.process.LocalRecordset, nullptr);
  EXPECT_NE(copy.process.LocalRecordset, former);
  EXPECT_EQ(copy.process.LocalErrors, copy.process.LocalConnection->ErrorCollection());
}

TEST(CopySingleTable, ResetsTheCountersAlsoForATableInUse) {
  CopyFixture copy("1");
  copy.SetCounters(1, 2, 3);
  copy.SetState({{"in_use", 1}});

  EXPECT_EQ(copy.CopyTable(1, "Site", kFull), CopyResult::InUse);

  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n");
}

TEST(CopySingleTable, CreatesTheStateRowOfATableWithoutOne) {
  CopyFixture copy("1", kOracle);
  copy.database.AffectNext({0});

  EXPECT_EQ(copy.CopyTable(1, "SITES", kFull), CopyResult::Done);

  EXPECT_EQ(copy.journal.Take(), Text("query SELECT * FROM tstables WHERE tablename = N'SITES'\n"
                                      "close recordset\n"
                                      "sql UPDATE tstables SET in_use = 1WHERE tablename = N'SITES' -> 0\n"
                                      "sql INSERT INTO tstables(tablename,lutm,in_use, reqd) "
                                      "VALUES(N'SITES',TO_DATE( '2004-01-31 00:00:00','yyyy-mm-dd HH24:MI:SS'),1,1) -> "
                                      "1\n"
                                      "event DataCopyStarted(time(10:11:12 AM), i16(1))\n") +
                                     kUnknownTable +
                                     "sql UPDATE tstables SET in_use = 0WHERE tablename = N'SITES' -> 1\n");
}

TEST(CopySingleTable, ReleasesTheTableEvenWhenItCouldNotTellWhetherItIsInUse) {
  CopyFixture copy("1");
  copy.database.FailOn("SELECT", kRefused,
                       {{-2147217900, "Driver", "line 1"}, {0, "Driver", "a warning"}, {208, "Driver", "line 2"}});

  EXPECT_EQ(copy.CopyTable(1, "Site", kFull), CopyResult::Failed);

  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",-2147217900,\"line 1\"\r\n"
            "\"Driver\",208,\"line 2\"\r\n"
            "\"Driver\",\"refused\"\r\n"
            "\"Data Copy In Progress\",\"It could not be determined whether table Site is being copied.\"\r\n");
}

TEST(CopySingleTable, FailsWhenTheTableCannotBeTaken) {
  CopyFixture copy("1");
  copy.database.FailOn("in_use = 1", kRefused, {{-2147217900, "Driver", "line 1"}});

  EXPECT_EQ(copy.CopyTable(1, "Site", kFull), CopyResult::Failed);

  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",-2147217900,\"line 1\"\r\n"
            "\"Driver\",\"refused\"\r\n");
}

TEST(CopySingleTable, FailsWhenTheStateRowCannotBeInserted) {
  CopyFixture copy("1");
  copy.database.AffectNext({0});
  copy.database.FailOn("INSERT INTO tstables", kRefused);

  EXPECT_EQ(copy.CopyTable(1, "Site", kFull), CopyResult::Failed);

  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 0\n"
            "sql INSERT INTO tstables(tablename,lutm,in_use, reqd) VALUES(N'Site','2004-01-31 00:00:00',1,1) -> 1\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
}

TEST(CopySingleTable, OverflowsWhenTakingTheTableTouches40000Rows) {
  CopyFixture copy("1");
  copy.database.AffectNext({40'000});

  EXPECT_EQ(copy.CopyTable(1, "Site", kFull), CopyResult::Failed);

  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 40000\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Overflow\"\r\n");
}

TEST(CopySingleTable, KeepsTheCountersThatAFailedCopyReachedAndLogsWhatTheProviderReportedOnce) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations", {copy.RowWith({{"Location", "A1"}}), copy.RowWith({{"Location", "A2"}})});
  copy.database.FailOn("N'A2'", kRefused, {{547, "Driver", "conflict"}});

  EXPECT_EQ(copy.CopyTable(1, "Site", kFull), CopyResult::Failed);

  EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 0");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",547,\"conflict\"\r\n"
            "\"Driver\",\"refused\"\r\n"
            "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
  EXPECT_EQ(copy.JournalWithout({"row", "locations", "create", "session", "event", "query", "close"}),
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "sql UPDATE Site SET upd_flag = 1 \n"
            "sql UPDATE Site SET SITE = N'A1', upd_flag = 0 WHERE SITE =N'A1' -> 1\n"
            "sql UPDATE Site SET SITE = N'A2', upd_flag = 0 WHERE SITE =N'A2' -> 1\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
}

TEST(CopySingleTable, LogsAnOverflowWhenTheEntityCannotAdd100ToItsErrorsNumber) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations")->Fails("List", {2147483600, "adapter", "gone"});

  EXPECT_EQ(copy.CopyTable(1, "Site", kFull), CopyResult::Failed);

  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"adapter\",\"gone: List\"\r\n"
            "\"ZenqayDBSync\",\"Overflow\"\r\n");
}

TEST(CopySingleTable, RaisesWhatItsFailurePathFailsWith) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations")->Fails("List", {-2147467259, "adapter", "gone"});
  copy.database.FailOn("in_use = 0", kRefused);

  const Text raised = Raised([&] { copy.CopyTable(1, "Site", kFull); });

  EXPECT_EQ(raised, "-2147217900 Driver: refused");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"adapter\",\"gone: List\"\r\n"
            "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
}

TEST(CopySingleTable, DoesNotReleaseTheTableWhenItsFailureCannotBeLogged) {
  CopyFixture copy("1");
  copy.process.LogFilePath = "C:\\no-such-directory\\run.log";
  copy.database.FailOn("in_use = 1", kRefused);

  const Text raised = Raised([&] { copy.CopyTable(1, "Site", kFull); });

  EXPECT_EQ(raised, "76 ZenqayDBSync: Path not found: C:\\no-such-directory\\run.log");
  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.platform.causes, std::vector<Text>{"error -2147217900 from \"Driver\": refused"});
}

TEST(CopySingleTable, IsDoneWhenOnlyTheReleaseOfTheTableFailed) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations", {copy.RowWith({{"Location", "A1"}})});
  copy.database.FailOn("in_use = 0", kRefused, {{-2147217900, "Driver", "line 1"}});

  EXPECT_EQ(copy.CopyTable(1, "Site", kFull), CopyResult::Done);

  EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  1\"\r\n"
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",-2147217900,\"line 1\"\r\n"
            "\"Driver\",\"refused\"\r\n");
  EXPECT_TRUE(
      copy.journal.Take().ends_with("sql UPDATE STATISTICS Site\n"
                                    "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n"));
}

TEST(CopySingleTable, RaisesWhenAFailedReleaseCannotBeLogged) {
  CopyFixture copy("1");
  copy.process.LogFilePath = "C:\\no-such-directory\\run.log";
  copy.database.FailOn("in_use = 0", kRefused);

  const Text raised = Raised([&] { copy.CopyTable(1, "SITES", kFull); });

  EXPECT_EQ(raised, "76 ZenqayDBSync: Path not found: C:\\no-such-directory\\run.log");
}

TEST(CopySingleTable, LogsFailedStatisticsAndGoesOn) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations", {copy.RowWith({{"Location", "A1"}})});
  copy.database.FailOn("UPDATE STATISTICS", kRefused);

  EXPECT_EQ(copy.CopyTable(1, "Site", kFull), CopyResult::Done);

  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  1\"\r\n"
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",\"refused\"\r\n");
  EXPECT_TRUE(
      copy.journal.Take().ends_with("sql UPDATE STATISTICS Site\n"
                                    "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n"));
}

TEST(CopySingleTable, FailsWhenTheWarrantyPassFails) {
  CopyFixture copy("3");
  copy.AddManager("Kv50QTMtsctmWarranties.WarrantiesManager", "warranties", {copy.RowWith({{"Warranty", "W1"}})});
  copy.database.FailOn("INNER JOIN", kRefused);

  EXPECT_EQ(copy.CopyTable(9, "Warranties", kFull), CopyResult::Failed);

  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Warranties -  1\"\r\n"
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",\"refused\"\r\n");
  EXPECT_TRUE(copy.journal.Take().ends_with(
      "sql UPDATE STATISTICS Warranties\n"
      "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
      "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Warranties' -> 1\n"));
}

TEST(CopySingleTable, OverflowsWhenACounterCannotTakeOneMoreRow) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  CopyFixture copy("1");
  copy.SetCounters(kMost, kMost, kMost);
  copy.database.AffectNext({1, 0, 1});

  EXPECT_EQ(Raised([&] {
              copy.Apply(CopyFixture::ApplySiteRow(), {{"Location", "A1"}}, "Site");
            }),
            "6 ZenqayDBSync: Overflow");
  EXPECT_EQ(Raised([&] {
              copy.Apply(CopyFixture::ApplySiteRow(), {{"Location", "A1"}}, "Site");
            }),
            "6 ZenqayDBSync: Overflow");
  EXPECT_EQ(copy.Counters(), "ucount 2147483647, icount 2147483647, dcount 2147483647");
}

constexpr const char* kWarrantyPass =
    "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
    "close recordset\n";

TEST(RunPostCopy, UpdatesTheStatisticsOnSqlServerWhenAnyCounterIsAbove0) {
  struct Case {
    std::int32_t icount;
    std::int32_t ucount;
    std::int32_t dcount;
    bool updates;
  };
  const Case cases[] = {{0, 0, 0, false}, {1, 0, 0, true},     {0, 1, 0, true},  {0, 0, 1, true},
                        {5, 6, 7, true},  {-1, -1, -1, false}, {-1, 0, 1, true}, {0, -5, 0, false}};
  for (const Case& c : cases) {
    CopyFixture copy("1");
    copy.SetCounters(c.icount, c.ucount, c.dcount);

    copy.RunPostCopy("Site");

    EXPECT_EQ(copy.journal.Take(), c.updates ? "sql UPDATE STATISTICS Site\n" : "");
  }
}

TEST(RunPostCopy, RunsTheWarrantyPassOfGeneration3AfterObjectsAndWarranties) {
  for (const Text name : {"object", "OBJECT", "Warranties", "warranties"}) {
    CopyFixture copy("3");
    copy.SetCounters(0, 1, 0);

    copy.RunPostCopy(name);

    EXPECT_EQ(copy.journal.Take(), "sql UPDATE STATISTICS " + name + "\n" + kWarrantyPass);
  }
}

TEST(RunPostCopy, RunsNoWarrantyPassAfterAnyOtherTableOfGeneration3) {
  for (const Text name : {"Site", "Product", "SerializedItem", "Objects", "Warranty"}) {
    CopyFixture copy("3");
    copy.SetCounters(0, 1, 0);

    copy.RunPostCopy(name);

    EXPECT_EQ(copy.journal.Take(), "sql UPDATE STATISTICS " + name + "\n");
  }
}

TEST(RunPostCopy, RunsNoWarrantyPassUnderOtherGenerations) {
  for (const char* generation : {"1", "8", "", "03", " 3"}) {
    for (const Text name : {"Object", "Warranties"}) {
      CopyFixture copy(generation);
      copy.SetCounters(1, 1, 1);

      copy.RunPostCopy(name);

      EXPECT_EQ(copy.journal.Take(), "sql UPDATE STATISTICS " + name + "\n") << generation;
    }
  }
}

TEST(RunPostCopy, RunsNeitherStepOnAnotherPlatformWhateverTheCountersSay) {
  for (const std::int16_t platform : std::initializer_list<std::int16_t>{kOracle, 0, 3}) {
    CopyFixture copy("3", platform);
    copy.SetCounters(1, 2, 3);

    copy.RunPostCopy("Object");

    EXPECT_EQ(copy.journal.Take(), "") << platform;
  }
}

TEST(RunPostCopy, RunsNoWarrantyPassWhenNothingChanged) {
  CopyFixture copy("3");
  copy.SetCounters(0, 0, 0);

  copy.RunPostCopy("Object");

  EXPECT_EQ(copy.journal.Take(), "");
}

TEST(RunPostCopy, RunsTheWarrantyPassAlsoWhenTheStatisticsFailed) {
  CopyFixture copy("3");
  copy.SetCounters(1, 0, 0);
  copy.database.FailOn("UPDATE STATISTICS", kRefused);

  copy.RunPostCopy("Object");

  EXPECT_EQ(copy.journal.Take(), Text("sql UPDATE STATISTICS Object\n") + kWarrantyPass);
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",\"refused\"\r\n");
}

TEST(FormatFailedMessage, FillsTheTableBeforeTheErp) {
  CopyFixture copy("1");

  EXPECT_EQ(copy.job.FormatFailedMessage("Sites", "the ERP"), "Sites could not be copied from the ERP.");
  EXPECT_EQ(copy.job.FormatFailedMessage("Sites (%2, %2)", "ERP %1"),
            "Sites (ERP %1, ERP %1) could not be copied from ERP %1.");
  EXPECT_EQ(copy.job.FormatFailedMessage("", ""), " could not be copied from .");
}

TEST(PublicLiterals, AreThoseOfTheStatements) {
  CopyFixture copy("1", kOracle);

  EXPECT_EQ(copy.job.SQLEncodeForDate("2003-01-31"), "{d '2003-01-31'}");
  EXPECT_EQ(copy.job.SQLEncodeForDate(Value()), "NULL");
  EXPECT_EQ(copy.job.SQLEncodeForDateTime(MakeDateObject({2004, 1, 31, 22, 11, 12})), "'Jan 31, 2004 10:11:12 PM'");
}

}  // namespace
}  // namespace zenqay
