#include "localdb/table_registry.h"

#include <gtest/gtest.h>

#include <limits>

#include "doubles/embedded_database.h"
#include "doubles/outcome.h"
#include "doubles/process_fixture.h"

namespace zenqay {
namespace {

constexpr std::int16_t kSqlServer = 1;
constexpr std::int16_t kOracle = 2;

const RuntimeError kRefused(-2147467259, "Driver", "refused");

/// At its place in a process, the registry is loaded before there is a run log.
constexpr const char* kLogCannotBeOpened = "75 ZenqayDBSync: Path/File access error";

TableRow RegistryRow(const Value& tableId, const Value& erpTableId, const Value& name, const Value& caption) {
  return {{"erptableid", erpTableId}, {"tableid", tableId}, {"tablename", name}, {"text", caption}};
}

/// "ERP table|name|caption" of each entry that is not empty, behind its id.
Text Entries(const modDeclarations& process) {
  Text text;
  for (std::size_t id = 0; id < process.TableRegistry.size(); ++id) {
    const TableEntry& entry = process.TableRegistry[id];
    const Text fields = entry.ERPTableID + "|" + entry.TableName + "|" + entry.Text;
    if (fields != "||") text += std::to_string(id) + ": " + fields + "\n";
  }
  return text;
}

class LoadTableRegistryTest : public testing::Test {
 protected:
  /// Loads from these rows.
  void Load(const std::vector<TableRow>& rows) {
    fixture.database.Answer("", rows);
    LoadTableRegistry(fixture.process, "", "", kSqlServer);
  }

  ProcessFixture fixture;
};

TEST_F(LoadTableRegistryTest, ReadsOnAConnectionOfItsOwnThatHasNoTimeoutsSet) {
  fixture.process.DatabasePlatform = 0;  // not known yet: the argument counts
  fixture.database.showSettings = true;
  fixture.database.showQueryOptions = true;
  fixture.database.Answer("", {RegistryRow(1, "110", "Site", "Sites")});

  LoadTableRegistry(fixture.process, "Provider=SQLOLEDB;Data Source=ERP01", "SERVICE", kSqlServer);

  EXPECT_EQ(fixture.journal.Take(),
            "put ConnectionString Provider=SQLOLEDB;Data Source=ERP01\n"
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "put DefaultDatabase SERVICE\n"
            "query SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c "
            "where a.productid = N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label "
            "[static read-only unspecified]\n"
            "close recordset\n"
            "close\n");
  EXPECT_EQ(Entries(fixture.process), "1: 110|Site|Sites\n");
  EXPECT_EQ(fixture.process.LocalConnection, nullptr);
  EXPECT_EQ(fixture.process.CurrentDatabaseName, "");
  EXPECT_EQ(fixture.RunLog(), "");
}

TEST_F(LoadTableRegistryTest, KeepsItsConnectionAndItsQueryUntilItsFailureIsRecorded) {
  fixture.database.showReleases = true;
  fixture.platform.showClock = true;

  Load({RegistryRow(129, "110", "Site", "Sites")});

  EXPECT_EQ(fixture.journal.Take(),
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "query SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c "
            "where a.productid = N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label\n"
            "now\n"  // of the record
            "release recordset\n"
            "release connection\n");
}

TEST_F(LoadTableRegistryTest, SelectsTheTrimmedSchemaOfOracle) {
  fixture.database.showSettings = true;
  fixture.database.showQueryOptions = true;
  fixture.database.Answer("", {RegistryRow(1, "110", "Site", "Sites")});

  LoadTableRegistry(fixture.process, "Provider=MSDAORA", " SERVICE  ", kOracle);

  EXPECT_EQ(fixture.journal.Take(),
            "put ConnectionString Provider=MSDAORA\n"
            "open\n"
            "sql Alter session set current_schema= SERVICE\n"
            "query SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c "
            "where a.productid = N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label "
            "[static read-only unspecified]\n"
            "close recordset\n"
            "close\n");
}

TEST_F(LoadTableRegistryTest, CarriesTheDatabaseOfSqlServerWithTheBlanksAroundIt) {
  fixture.database.Answer("", {RegistryRow(1, "110", "Site", "Sites")});

  LoadTableRegistry(fixture.process, "", " SERVICE  ", kSqlServer);

  EXPECT_EQ(fixture.journal.Take(),
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "put DefaultDatabase  SERVICE  \n"
            "query SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c "
            "where a.productid = N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label\n"
            "close recordset\n"
            "close\n");
}

TEST_F(LoadTableRegistryTest, SelectsNoDatabaseWhenTheNameIsBlank) {
  constexpr const char* kQuery =
      "query SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c where "
      "a.productid = N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label\n"
      "close recordset\n"
      "close\n";
  struct Case {
    std::int16_t platform;
    Text expected;
  };
  const Case cases[] = {{kSqlServer, "open\nsql SET DATEFORMAT YMD\n"}, {kOracle, "open\n"}, {3, "open\n"}};
  fixture.database.Answer("", {RegistryRow(1, "110", "Site", "Sites")});
  for (const Case& c : cases) {
    LoadTableRegistry(fixture.process, "", "  ", c.platform);

    EXPECT_EQ(fixture.journal.Take(), c.expected + kQuery);
  }
}

TEST_F(LoadTableRegistryTest, AsksForTheGroupOfTheGenerationAsItWasGiven) {
  fixture.process.ErpGeneration = " 3 ";

  Load({RegistryRow(1, "110", "Site", "Sites")});

  EXPECT_EQ(fixture.journal.Take(),
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "query SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c "
            "where a.productid = N'4010' AND b.groupid = N' 3 ' AND a.tableid = b.tableid AND b.label = c.label\n"
            "close recordset\n"
            "close\n");
}

TEST_F(LoadTableRegistryTest, SpansAllGroupsWhenTheGenerationIsBlank) {
  for (const char* blank : {"", "   "}) {
    fixture.process.ErpGeneration = blank;

    Load({RegistryRow(1, "110", "Site", "Sites")});

    EXPECT_EQ(fixture.journal.Take(),
              "open\n"
              "sql SET DATEFORMAT YMD\n"
              "query SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c "
              "where a.productid = N'4010' AND a.tableid = b.tableid AND b.label = c.label\n"
              "close recordset\n"
              "close\n");
  }
}

TEST_F(LoadTableRegistryTest, StoresEachRowAtItsTableIdWithItsTextsAsTheyAre) {
  Load({RegistryRow(std::int16_t{0}, " 110 ", "  Site ", " Sites "), RegistryRow("7", 330, "Problem", "Problems"),
        RegistryRow(128.0, "x", "y", "z")});

  EXPECT_EQ(Entries(fixture.process),
            "0:  110 |  Site | Sites \n"
            "7: 330|Problem|Problems\n"
            "128: x|y|z\n");
}

TEST_F(LoadTableRegistryTest, ReadsTheTableIdThenTheErpTableThenTheNameThenTheCaption) {
  const TableRow whole = RegistryRow(5, "E5", "Five", "Fives");
  TableRow row;
  for (const char* field : {"TableID", "ERPTableID", "TableName", "Text"}) {
    SCOPED_TRACE(field);
    ProcessFixture process;
    process.database.Answer("", {row});

    LoadTableRegistry(process.process, "", "", kSqlServer);

    EXPECT_EQ(
        process.RunLog(),
        Text("\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n\"ZenqayDBSync\",\"Item cannot be found in the collection "
             "corresponding to the requested name or ordinal.: ") +
            field + "\"\r\n");
    row[LowerCased(field)] = whole.at(LowerCased(field));
  }
}

TEST_F(LoadTableRegistryTest, FillsTheLastEntryFromTableId128) {
  Load({RegistryRow(128, "E128", "Last", "The last")});

  EXPECT_EQ(Entries(fixture.process), "128: E128|Last|The last\n");
  EXPECT_EQ(fixture.RunLog(), "");
}

TEST_F(LoadTableRegistryTest, EndsByItsFailurePathAtATableIdOf129OrMinus1AndKeepsWhatWasStored) {
  for (const std::int32_t outside : {129, -1}) {
    ProcessFixture process;
    process.database.Answer("", {RegistryRow(5, "E5", "Five", "Fives"), RegistryRow(outside, "E", "T", "C"),
                                 RegistryRow(6, "E6", "Six", "Sixes")});

    LoadTableRegistry(process.process, "", "", kSqlServer);

    EXPECT_EQ(Entries(process.process), "5: E5|Five|Fives\n");
    EXPECT_EQ(process.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Subscript out of range\"\r\n");
    EXPECT_EQ(process.journal.Take(),  // neither the recordset nor the connection is closed
              "open\n"
              "sql SET DATEFORMAT YMD\n"
              "query SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c "
              "where a.productid = N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label\n");
  }
}

TEST_F(LoadTableRegistryTest, StoresEmptyTextsForNullFields) {
  fixture.process.TableRegistry[5] = {"before", "before", "before"};

  Load({RegistryRow(5, Null(), "Five", "Fives"), RegistryRow(6, "E6", Null(), "Sixes"),
        RegistryRow(7, "E7", "Seven", Null()), RegistryRow(8, "E8", "Eight", "Eights")});

  EXPECT_EQ(Entries(fixture.process),
            "5: |Five|Fives\n"
            "6: E6||Sixes\n"
            "7: E7|Seven|\n"
            "8: E8|Eight|Eights\n");
  EXPECT_EQ(fixture.RunLog(), "");
}

TEST_F(LoadTableRegistryTest, EndsByItsFailurePathAtANullTableId) {
  Load({RegistryRow(5, "E5", "Five", "Fives"), RegistryRow(Null(), "E", "T", "C"), RegistryRow(6, "E6", "Six", "6")});

  EXPECT_EQ(Entries(fixture.process), "5: E5|Five|Fives\n");
  EXPECT_EQ(fixture.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Invalid use of Null\"\r\n");
}

TEST_F(LoadTableRegistryTest, KeepsTheRowThatComesLastOfATableOnSeveralNodes) {
  Load({RegistryRow(5, "E5", "Five", "on the first node"), RegistryRow(5, "E5", "Five", "on the second node")});

  EXPECT_EQ(Entries(fixture.process), "5: E5|Five|on the second node\n");
}

TEST_F(LoadTableRegistryTest, ShowsAMessageBeforeItRefusesAnEmptyRegistryAlsoWithoutAStatusComponent) {
  fixture.process.NoStatusComponent = true;

  Load({});

  EXPECT_EQ(fixture.journal.Take(),
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "query SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c "
            "where a.productid = N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label\n"
            "box tstables or tstreenodes table is empty .. Cannot Proceed\n");
  EXPECT_EQ(fixture.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"zenqa Data Copy - Start\",\"No tables are set up for copying.\r\n"
            "The data copy cannot start. Please inform your system administrator.\"\r\n");
}

TEST_F(LoadTableRegistryTest, FailsWithTheLogThatCannotBeOpenedBeforeAJobHasSetItsPath) {
  fixture.process.LogFilePath = "";

  const Text raised = Raised([&] { Load({}); });

  EXPECT_EQ(raised, kLogCannotBeOpened);
  EXPECT_EQ(fixture.Causes(),
            "error 100 from \"zenqa Data Copy - Start\": No tables are set up for copying. The data copy cannot start. "
            "Please inform your system administrator.\n");
}

TEST_F(LoadTableRegistryTest, HandsEveryFailureOfItsStepsToTheLog) {
  struct Case {
    const char* call;       // fails as a whole
    const char* statement;  // or the statement that contains this
    const char* lastLine;   // what the journal ends with
  };
  const Case cases[] = {{"open", "", "open\n"},
                        {"", "SET DATEFORMAT", "sql SET DATEFORMAT YMD\n"},
                        {"put DefaultDatabase", "", "put DefaultDatabase SERVICE\n"},
                        {"", "from tstables", "AND b.label = c.label\n"},
                        {"close recordset", "", "close recordset\n"},
                        {"close", "", "close\n"}};
  for (const Case& c : cases) {
    ProcessFixture process;
    process.process.LogFilePath = "";
    process.database.Answer("", {RegistryRow(5, "E5", "Five", "Fives")});
    if (*c.call != '\0') process.database.FailCall(c.call, kRefused);
    if (*c.statement != '\0') process.database.FailOn(c.statement, kRefused);

    const Text raised = Raised([&] { LoadTableRegistry(process.process, "", "SERVICE", kSqlServer); });

    EXPECT_EQ(raised, kLogCannotBeOpened) << c.lastLine;
    EXPECT_EQ(process.Causes(), "error -2147467259 from \"Driver\": refused\n") << c.lastLine;
    EXPECT_TRUE(process.journal.Take().ends_with(c.lastLine)) << c.lastLine;
  }
}

TEST_F(LoadTableRegistryTest, HandsAFailedSchemaStatementToTheLog) {
  fixture.database.FailOn("current_schema", kRefused, {{942, "Driver", "no such schema"}});

  LoadTableRegistry(fixture.process, "", "SERVICE", kOracle);

  EXPECT_EQ(fixture.journal.Take(), "open\nsql Alter session set current_schema= SERVICE\n");
  EXPECT_EQ(fixture.RunLog(),  // the provider's own lines are those of LocalConnection, which is not open yet
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",\"refused\"\r\n");
}

/// Three control tables in a real database, filled so that one table can be copied.
class EmptyRegistryTest : public testing::Test {
 protected:
  EmptyRegistryTest() {
    file.Run("CREATE TABLE tstables (ERPTableID TEXT, tableid INTEGER, tablename TEXT, productid TEXT)");
    file.Run("CREATE TABLE tstreenodes (groupid TEXT, tableid INTEGER, label TEXT)");
    file.Run("CREATE TABLE tsi18ntext (label TEXT, text TEXT)");
    file.Run("INSERT INTO tstables VALUES ('110', 1, 'SITE', '4010')");
    file.Run("INSERT INTO tstreenodes VALUES ('1', 1, 'TABLE01')");
    file.Run("INSERT INTO tsi18ntext VALUES ('TABLE01', 'Sites')");
  }

  EmbeddedDatabase file;
  ProcessFixture fixture{file.databases};
};

TEST_F(EmptyRegistryTest, IsNotEmptyWhenTableNodeAndCaptionMeet) {
  LoadTableRegistry(fixture.process, file.connectionString, "", kSqlServer);

  EXPECT_EQ(Entries(fixture.process), "1: 110|SITE|Sites\n");
  EXPECT_EQ(fixture.journal.Take(), "");
}

TEST_F(EmptyRegistryTest, IsTheSameWhicheverOfTheThreeTablesHasNoRowForIt) {
  struct Case {
    const char* removes;
    const char* putsBack;
  };
  const Case cases[] = {
      {"DELETE FROM tstables", "INSERT INTO tstables VALUES ('110', 1, 'SITE', '4010')"},
      {"DELETE FROM tstreenodes", "INSERT INTO tstreenodes VALUES ('1', 1, 'TABLE01')"},
      {"DELETE FROM tsi18ntext", "INSERT INTO tsi18ntext VALUES ('TABLE01', 'Sites')"},
      {"UPDATE tsi18ntext SET label = 'OTHER'", "UPDATE tsi18ntext SET label = 'TABLE01'"},
      {"UPDATE tstables SET productid = '4009'", "UPDATE tstables SET productid = '4010'"},
      {"UPDATE tstreenodes SET groupid = '3'", "UPDATE tstreenodes SET groupid = '1'"},
  };
  for (const Case& c : cases) {
    file.Run(c.removes);

    LoadTableRegistry(fixture.process, file.connectionString, "", kSqlServer);

    EXPECT_EQ(fixture.journal.Take(), "box tstables or tstreenodes table is empty .. Cannot Proceed\n") << c.removes;
    EXPECT_EQ(Entries(fixture.process), "") << c.removes;
    file.Run(c.putsBack);
  }
}

TEST(RegistryLookup, FailsForAnIdOutside0To128) {
  const ProcessFixture fixture;
  for (const std::int32_t id :
       {-1, 129, 32767, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_EQ(Raised([&] { GetTableCaption(fixture.process, id); }), "9 ZenqayDBSync: Subscript out of range");
    EXPECT_EQ(Raised([&] { GetErpTableId(fixture.process, id); }), "9 ZenqayDBSync: Subscript out of range");
    EXPECT_EQ(Raised([&] { GetTableName(fixture.process, id); }), "9 ZenqayDBSync: Subscript out of range");
  }
}

TEST(RegistryLookup, GivesEmptyTextsForAnIdThatNoRowFilled) {
  const ProcessFixture fixture;
  for (const std::int32_t id : {0, 18, 99, 128}) {
    EXPECT_EQ(GetTableCaption(fixture.process, id), "");
    EXPECT_EQ(GetErpTableId(fixture.process, id), "");
    EXPECT_EQ(GetTableName(fixture.process, id), "");
  }
}

TEST(RegistryLookup, TrimsBlanksOffTheErpTableAndTheNameButNotOffTheCaption) {
  ProcessFixture fixture;
  fixture.process.TableRegistry[128] = {.ERPTableID = "  110 ", .TableName = " Site\t ", .Text = "  Sites "};

  EXPECT_EQ(GetErpTableId(fixture.process, 128), "110");
  EXPECT_EQ(GetTableName(fixture.process, 128), "Site\t");
  EXPECT_EQ(GetTableCaption(fixture.process, 128), "  Sites ");
}

}  // namespace
}  // namespace zenqay
