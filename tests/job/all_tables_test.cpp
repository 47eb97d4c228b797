// The all-tables run.
#include <gtest/gtest.h>

#include <algorithm>

#include "contracts/heard_events.h"
#include "doubles/copy_fixture.h"
#include "doubles/embedded_database.h"
#include "doubles/outcome.h"
#include "doubles/trace_text.h"
#include "trace/trace.h"

namespace zenqay {
namespace {

constexpr std::int16_t kFull = 1;
constexpr std::int16_t kOnlyChanged = 2;

constexpr const char* kLocations = "Kv40QTMtssmaLocations.LocationsManager";
constexpr const char* kGroupQuery = "SELECT tableid FROM tstreenodes WHERE groupid = '1'  AND tableid is not null";

const RuntimeError kRefused(-2147217900, "Driver", "refused");

/// What a run on SQL Server does before its first table.
const Text kOpened =
    "open\n"
    "sql SET DATEFORMAT YMD\n"
    "put DefaultDatabase SERVICE\n"
    "get DefaultDatabase\n"
    "query SELECT tableid FROM tstreenodes WHERE groupid = '1'  AND tableid is not null\n";

/// A table without an entity, id as given.
Text UnknownTable(const Text& name, const Text& id) {
  const Text journal =
      "query SELECT * FROM tstables WHERE tablename = N'%name'\n"
      "close recordset\n"
      "sql UPDATE tstables SET in_use = 1WHERE tablename = N'%name' -> 1\n"
      "event DataCopyStarted(time(10:11:12 AM), i16(%id))\n"
      "box There is no copy for a table of this name. Please check the names in tstables.\n"
      "sql UPDATE tstables SET in_use = 0WHERE tablename = N'%name' -> 1\n"
      "event DataCopyComplete(time(10:11:12 AM), field(TableID=%id), i32(0), i32(0), i32(0))\n";
  return Replaced(Replaced(journal, "%name", name), "%id", id);
}

class CopyAllTablesTest : public testing::Test {
 protected:
  Text Directory() const { return copy.directory.path().string(); }

  /// The group's tables, in their order.
  void SetGroup(const std::vector<Value>& tableIds) {
    std::vector<TableRow> rows;
    for (const Value& id : tableIds) rows.push_back({{"tableid", id}});
    copy.database.Answer(kGroupQuery, rows);
  }

  void Name(std::size_t id, const Text& name) { copy.process.TableRegistry[id].TableName = name; }

  /// A manager of the sites whose every listing gives one row, A1.
  std::shared_ptr<ScriptedObject> AddSites() {
    const auto locations = copy.AddManager(kLocations, "locations");
    locations->Does("List", [this](Arguments) {
      const Object row = copy.RowWith({{"Location", "A1"}});
      return Object(copy.components.MakeEnumeration("rows", {row}));
    });
    return locations;
  }

  void Run(std::int16_t SyncMethod = kFull) {
    copy.job.CopyAllTables("Provider=SQLOLEDB", "SERVICE", SyncMethod, Directory(), "100", std::int32_t{1});
  }

  Text RunFailing() {
    return Raised([this] { Run(); });
  }

  Text Events() {
    return copy.JournalWithout({"open", "close", "sql", "put", "get", "query", "box", "create", "session", "row",
                                "locations", "criteria", "input", "output", "period", "parameter"});
  }

  /// The run logs of the directory, in the order of their names.
  Text RunLogs() const {
    std::vector<Text> names;
    for (const auto& file : std::filesystem::directory_iterator(copy.directory.path())) {
      names.push_back(file.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    Text text;
    for (const Text& name : names) text += name + "\n";
    return text;
  }

  CopyFixture copy{"1"};
};

/// The copy of a site table with one row, the run's row of that number.
Text SiteCopied(const Text& name, const Text& id) {
  const Text journal =
      "query SELECT * FROM tstables WHERE tablename = N'%name'\n"
      "close recordset\n"
      "sql UPDATE tstables SET in_use = 1WHERE tablename = N'%name' -> 1\n"
      "event DataCopyStarted(time(10:11:12 AM), i16(%id))\n"
      "create Kv40QTMtssmaLocations.LocationsManager\n"
      "session.addManager(&<locations>)\n"
      "locations.Initialize(&\"100\")\n"
      "locations.List(\"\", high(10))\n"
      "sql UPDATE %name SET upd_flag = 1 \n"
      "rows.hasMoreElements()\n"
      "rows.nextElement()\n"
      "row%id.getLocation()\n"
      "row%id.hasDescription()\n"
      "row%id.hasCustomer()\n"
      "row%id.getLocation()\n"
      "sql UPDATE %name SET SITE = N'A1', upd_flag = 0 WHERE SITE =N'A1' -> 1\n"
      "rows.hasMoreElements()\n"
      "sql DELETE FROM %name WHERE upd_flag = 1\n"
      "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'%name' -> 1\n"
      "locations.Close()\n"
      "sql UPDATE STATISTICS %name\n"
      "sql UPDATE tstables SET in_use = 0WHERE tablename = N'%name' -> 1\n"
      "event DataCopyComplete(time(10:11:12 AM), field(TableID=%id), i32(1), i32(0), i32(0))\n";
  return Replaced(Replaced(journal, "%name", name), "%id", id);
}

TEST_F(CopyAllTablesTest, CopiesTheFourthAndFifthTableAfterTheThirdHasFailed) {
  SetGroup({1, 2, 3, 4, 5});
  Name(1, "Site");
  Name(2, " SITE ");
  Name(3, "sITE");
  Name(4, "site");
  Name(5, "SiTe");
  AddSites();
  copy.database.FailOn("UPDATE sITE SET upd_flag", kRefused, {{208, "Driver", "no such table"}});

  Run();

  EXPECT_EQ(copy.journal.Take(), kOpened + SiteCopied("Site", "1") + SiteCopied("SITE", "2") +
                                     "query SELECT * FROM tstables WHERE tablename = N'sITE'\n"
                                     "close recordset\n"
                                     "sql UPDATE tstables SET in_use = 1WHERE tablename = N'sITE' -> 1\n"
                                     "event DataCopyStarted(time(10:11:12 AM), i16(3))\n"
                                     "create Kv40QTMtssmaLocations.LocationsManager\n"
                                     "session.addManager(&<locations>)\n"
                                     "locations.Initialize(&\"100\")\n"
                                     "locations.List(\"\", high(10))\n"
                                     "sql UPDATE sITE SET upd_flag = 1 \n"
                                     "locations.Close()\n"
                                     "sql UPDATE tstables SET in_use = 0WHERE tablename = N'sITE' -> 1\n"
                                     "event DataCopyError(time(10:11:12 AM), field(TableID=3), i16(-1), \"See the log "
                                     "file " +
                                     Directory() + "\\sITE_20040131.log.\")\n" + SiteCopied("site", "4") +
                                     SiteCopied("SiTe", "5") +
                                     "close\n"
                                     "event DataCopydone()\n");
  EXPECT_EQ(RunLogs(),
            "SITE_20040131.log\n"
            "SiTe_20040131.log\n"
            "Site_20040131.log\n"
            "sITE_20040131.log\n"
            "site_20040131.log\n");
  EXPECT_EQ(copy.directory.Read("sITE_20040131.log"),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",208,\"no such table\"\r\n"
            "\"Driver\",\"refused\"\r\n"
            "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
  for (const Text name : {"Site", "SITE", "site", "SiTe"}) {
    EXPECT_EQ(copy.directory.Read(name + "_20040131.log"),
              "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
              "\"Rows copied: " +
                  name + " -  1\"\r\n");
  }
}

TEST_F(CopyAllTablesTest, OpensTheGroupsQueryWithItsOptionsOnAConnectionWithoutTimeLimits) {
  copy.database.showSettings = true;
  copy.database.showQueryOptions = true;

  Run();

  EXPECT_EQ(copy.journal.Take(),
            "put ConnectionTimeout 0\n"
            "put CommandTimeout 0\n"
            "put ConnectionString Provider=SQLOLEDB\n"
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "put DefaultDatabase SERVICE\n"
            "get DefaultDatabase\n"
            "query SELECT tableid FROM tstreenodes WHERE groupid = '1'  AND tableid is not null [keyset optimistic "
            "unspecified]\n"
            "close\n"
            "event DataCopydone()\n");
}

TEST_F(CopyAllTablesTest, OpensClosesAndIsDoneWithoutAnyTableInTheGroup) {
  const Text before = copy.RunLogPath();

  Run();

  EXPECT_EQ(copy.journal.Take(), kOpened +
                                     "close\n"
                                     "event DataCopydone()\n");
  EXPECT_EQ(copy.RunLogPath(), before);
  EXPECT_EQ(RunLogs(), "");
}

TEST_F(CopyAllTablesTest, SelectsTheGroupByTheGenerationAsAPlainLiteralOnOracleToo) {
  struct Case {
    const char* generation;
    const char* query;
  };
  const Case cases[] = {
      {"3", "query SELECT tableid FROM tstreenodes WHERE groupid = '3'  AND tableid is not null\n"},
      {"8", "query SELECT tableid FROM tstreenodes WHERE groupid = '8'  AND tableid is not null\n"},
      {"", "query SELECT tableid FROM tstreenodes WHERE groupid = ''  AND tableid is not null\n"},
      {"a'b", "query SELECT tableid FROM tstreenodes WHERE groupid = 'a'b'  AND tableid is not null\n"},
  };
  for (const Case& c : cases) {
    copy.process.ErpGeneration = c.generation;

    copy.job.CopyAllTables("Provider=MSDAORA", " SERVICE ", kFull, Directory(), "100", std::int32_t{2});

    EXPECT_EQ(copy.journal.Take(), Text("open\n"
                                        "sql Alter session set current_schema= SERVICE\n") +
                                       c.query +
                                       "close\n"
                                       "event DataCopydone()\n");
    EXPECT_EQ(copy.process.DatabasePlatform, 2);
  }
}

TEST_F(CopyAllTablesTest, GoesOnBehindATableInUse) {
  SetGroup({1, 2, 3});
  Name(1, "Site");
  Name(2, "SITE");
  Name(3, "site");
  AddSites();
  copy.database.Answer("SELECT * FROM tstables WHERE tablename = N'SITE'", {{{"in_use", 1}}});

  Run();

  const Text third = Replaced(SiteCopied("site", "3"), "row3", "row2");  // the second table read no row
  EXPECT_EQ(copy.journal.Take(), kOpened + SiteCopied("Site", "1") +
                                     "query SELECT * FROM tstables WHERE tablename = N'SITE'\n"
                                     "close recordset\n"
                                     "event DataCopyAlreadyInProgress(time(10:11:12 AM), field(TableID=2))\n" +
                                     third +
                                     "close\n"
                                     "event DataCopydone()\n");
  EXPECT_EQ(RunLogs(),
            "Site_20040131.log\n"
            "site_20040131.log\n");
}

TEST_F(CopyAllTablesTest, CopiesATableTwiceThatStandsTwiceInTheGroup) {
  SetGroup({1, 1});
  Name(1, "Site");
  AddSites();

  Run();

  const Text second = Replaced(SiteCopied("Site", "1"), "row1", "row2");
  EXPECT_EQ(copy.journal.Take(), kOpened + SiteCopied("Site", "1") + second +
                                     "close\n"
                                     "event DataCopydone()\n");
  EXPECT_EQ(copy.directory.Read("Site_20040131.log"),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  1\"\r\n"
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  1\"\r\n");
}

TEST_F(CopyAllTablesTest, FindsNothingNewInTheSecondOnlyChangedPassOverTheSameTable) {
  SetGroup({1, 1});
  Name(1, "Site");
  const Object changed = copy.RowWith({{"ActionType", "U"}, {"Location", "A1"}});
  copy.AddManager(kLocations, "locations")
      ->AnswersInTurn("NetListLocations", {Object(copy.components.MakeEnumeration("rows", {changed})),
                                           Object(copy.components.MakeEnumeration("rows", {}))});

  Run(kOnlyChanged);

  EXPECT_EQ(Events(),
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "event DataCopyComplete(time(10:11:12 AM), field(TableID=1), i32(0), i32(1), i32(0))\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "event DataCopyComplete(time(10:11:12 AM), field(TableID=1), i32(0), i32(0), i32(0))\n"
            "event DataCopydone()\n");
}

TEST_F(CopyAllTablesTest, ShowsTheMessageBoxForATableWithoutAnEntryInTheRegistry) {
  SetGroup({7});

  Run();

  EXPECT_EQ(copy.journal.Take(), kOpened + UnknownTable("", "7") +
                                     "close\n"
                                     "event DataCopydone()\n");
  EXPECT_EQ(copy.RunLogPath(), Directory() + "\\_20040131.log");
  EXPECT_EQ(RunLogs(), "");
}

TEST_F(CopyAllTablesTest, CountsEachTableByItself) {
  SetGroup({1, 2});
  Name(1, "Site");
  Name(2, "SITES");
  AddSites();

  Run();

  EXPECT_EQ(Events(),
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "event DataCopyComplete(time(10:11:12 AM), field(TableID=1), i32(1), i32(0), i32(0))\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(2))\n"
            "event DataCopyComplete(time(10:11:12 AM), field(TableID=2), i32(0), i32(0), i32(0))\n"
            "event DataCopydone()\n");
}

TEST_F(CopyAllTablesTest, TakesTheIdInAnyTypeThatReadsAsANumber) {
  SetGroup({"1", 2.0, std::int16_t{0}, 128});
  for (const std::size_t id : {0, 1, 2, 128}) Name(id, "T" + std::to_string(id));

  Run();

  EXPECT_EQ(copy.journal.Take(), kOpened + UnknownTable("T1", "1") + UnknownTable("T2", "2") + UnknownTable("T0", "0") +
                                     UnknownTable("T128", "128") +
                                     "close\n"
                                     "event DataCopydone()\n");
}

TEST_F(CopyAllTablesTest, LeavesAtATableIdOutside0To128WithoutClosingOrDone) {
  struct Case {
    Value id;
    const char* error;
  };
  const Case cases[] = {{129, "9 ZenqayDBSync: Subscript out of range"},
                        {-1, "9 ZenqayDBSync: Subscript out of range"},
                        {40'000, "9 ZenqayDBSync: Subscript out of range"},
                        {"all", "13 ZenqayDBSync: Type mismatch"},
                        {3e9, "6 ZenqayDBSync: Overflow"}};
  for (const Case& c : cases) {
    SetGroup({1, c.id, 2});
    Name(1, "T1");
    Name(2, "T2");

    EXPECT_EQ(RunFailing(), c.error);

    EXPECT_EQ(copy.journal.Take(), kOpened + UnknownTable("T1", "1"));
    EXPECT_EQ(copy.RunLogPath(), Directory() + "\\T1_20040131.log");
  }
}

TEST_F(CopyAllTablesTest, DatesTheRunLogOfEachTableWithTheDayOnWhichItsTurnCame) {
  SetGroup({1, 2, 3});
  Name(1, "Site");
  Name(2, "SITE");
  Name(3, "site");
  const auto locations = AddSites();
  copy.platform.now = DateTime::FromParts({2004, 12, 31, 23, 59, 58});
  locations->Does("Close", [this](Arguments) {  // each copy takes a second and a half
    copy.platform.now = DateTime(copy.platform.now.seconds() + 2);
    return Value();
  });

  Run();

  EXPECT_EQ(RunLogs(),
            "SITE_20050101.log\n"
            "Site_20041231.log\n"
            "site_20050101.log\n");
  EXPECT_EQ(copy.directory.Read("SITE_20050101.log"),
            "Date: 1/1/2005 Time: 12:00:00 AM\r\n"
            "\"Rows copied: SITE -  1\"\r\n");
}

TEST_F(CopyAllTablesTest, LeavesWhenTheConnectionCannotBeOpened) {
  copy.database.FailCall("open", kRefused);

  EXPECT_EQ(RunFailing(), "-2147217900 Driver: refused");

  EXPECT_EQ(copy.journal.Take(), "open\n");
  EXPECT_EQ(RunLogs(), "");
}

TEST_F(CopyAllTablesTest, LeavesWhenTheGroupsQueryFails) {
  copy.database.FailOn("tstreenodes", kRefused);

  EXPECT_EQ(RunFailing(), "-2147217900 Driver: refused");

  EXPECT_EQ(copy.journal.Take(), kOpened);
  EXPECT_EQ(RunLogs(), "");
}

TEST_F(CopyAllTablesTest, LeavesWhenTheFailurePathOfATablesCopyFails) {
  SetGroup({1, 2});
  Name(1, "T1");
  Name(2, "T2");
  copy.database.FailOn("in_use", kRefused);

  EXPECT_EQ(RunFailing(), "-2147217900 Driver: refused");

  EXPECT_EQ(copy.journal.Take(), kOpened +
                                     "query SELECT * FROM tstables WHERE tablename = N'T1'\n"
                                     "close recordset\n"
                                     "sql UPDATE tstables SET in_use = 1WHERE tablename = N'T1' -> 1\n"
                                     "sql UPDATE tstables SET in_use = 0WHERE tablename = N'T1' -> 1\n");
}

TEST_F(CopyAllTablesTest, FailsFirstOfAllForAPlatformThatIsNo16BitNumber) {
  const Text raised = Raised([&] { copy.job.CopyAllTables("", "", kFull, Directory(), "100", 40'000); });

  EXPECT_EQ(raised, "6 ZenqayDBSync: Overflow");
  EXPECT_EQ(copy.journal.Take(), "");
}

TEST_F(CopyAllTablesTest, LogsAFailedCloseInTheLastTablesRunLogAndIsDone) {
  SetGroup({1});
  Name(1, "T1");
  copy.database.FailCall("close", {3704, "Driver", "not open"});

  Run();

  EXPECT_EQ(copy.journal.Take(), kOpened + UnknownTable("T1", "1") +
                                     "close\n"
                                     "event DataCopydone()\n");
  EXPECT_EQ(copy.directory.Read("T1_20040131.log"),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",\"not open\"\r\n");
}

TEST_F(CopyAllTablesTest, IsNotDoneWhenAFailedCloseHasNoRunLogToGoTo) {
  copy.process.LogFilePath = "";  // an empty group sets none
  copy.database.FailCall("close", {3704, "Driver", "not open"});

  EXPECT_EQ(RunFailing(), "75 ZenqayDBSync: Path/File access error");

  EXPECT_EQ(copy.journal.Take(), kOpened + "close\n");
}

TEST_F(CopyAllTablesTest, ShowsTheFieldOfTheGroupInTheTrace) {
  SetGroup({1, 7});
  Name(1, "Site");
  Trace trace((copy.directory.path() / "trace.jsonl").string(), "1.2.3");
  HeardEvents events(copy,
                     [&](std::string_view name, std::span<const Value> arguments) { trace.Event(name, arguments); });
  clsDataCopy job(copy.process, events);

  job.CopyAllTables("", "", 7, Directory(), "100", 1);

  EXPECT_EQ(WithoutTimes(copy.directory.Read("trace.jsonl")),
            R"({"n":1,"kind":"event","name":"DataCopyStarted","args":["10:11:12 AM",1]})"
            "\n"
            R"({"n":2,"kind":"event","name":"DataCopyComplete","args":["10:11:12 AM",{"field":"TableID","value":1},)"
            R"(0,0,0]})"
            "\n"
            R"({"n":3,"kind":"event","name":"DataCopyStarted","args":["10:11:12 AM",7]})"
            "\n"
            R"({"n":4,"kind":"event","name":"DataCopyComplete","args":["10:11:12 AM",{"field":"TableID","value":7},)"
            R"(0,0,0]})"
            "\n"
            R"({"n":5,"kind":"event","name":"DataCopydone","args":[]})"
            "\n");
}

TEST(CopyAllTablesOnARealDatabase, LeavesOutNodesWithoutATableAndOtherGroups) {
  EmbeddedDatabase file;
  file.Run("CREATE TABLE tstreenodes (groupid TEXT, tableid INTEGER, label TEXT)");
  file.Run("CREATE TABLE tstables (tablename TEXT PRIMARY KEY, lutm DATETIME, in_use INTEGER, reqd INTEGER)");
  file.Run("INSERT INTO tstreenodes VALUES ('1', NULL, 'GROUP'), ('1', 1, 'A'), ('3', 3, 'C'), ('1', 2, 'B')");
  CopyFixture copy("1");
  modDeclarations process{.platform = copy.platform, .components = copy.components, .database = file.databases};
  process.ErpGeneration = "1";
  process.TableRegistry[1].TableName = "T1";
  process.TableRegistry[2].TableName = "T2";
  process.TableRegistry[3].TableName = "T3";
  clsDataCopy job(process, copy);

  job.CopyAllTables(file.connectionString, "", kFull, copy.directory.path().string(), "100", 1);

  EXPECT_EQ(copy.journal.Take(),
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "box There is no copy for a table of this name. Please check the names in tstables.\n"
            "event DataCopyComplete(time(10:11:12 AM), field(TableID=1), i32(0), i32(0), i32(0))\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(2))\n"
            "box There is no copy for a table of this name. Please check the names in tstables.\n"
            "event DataCopyComplete(time(10:11:12 AM), field(TableID=2), i32(0), i32(0), i32(0))\n"
            "event DataCopydone()\n");
  EXPECT_EQ(file.Rows("SELECT * FROM tstables", {"tablename", "lutm", "in_use", "reqd"}),
            "T1|1/31/2004|0|1\n"
            "T2|1/31/2004|0|1\n");
}

}  // namespace
}  // namespace zenqay
