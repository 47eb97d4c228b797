#include "localdb/copy_state.h"

#include <gtest/gtest.h>

#include "doubles/embedded_database.h"
#include "doubles/outcome.h"
#include "doubles/process_fixture.h"
#include "doubles/time_zone.h"
#include "localdb/local_connection.h"

namespace zenqay {
namespace {

constexpr std::int16_t kSqlServer = 1;
constexpr std::int16_t kOracle = 2;

const RuntimeError kRefused(-2147217900, "Driver", "refused");

class CopyStateTest : public testing::Test {
 protected:
  CopyStateTest() { fixture.Connect(); }

  ProcessFixture fixture;
};

using IsCopyInProgressTest = CopyStateTest;
using SetLastUpdateTimeTest = CopyStateTest;
using GetLastUpdateDateTest = CopyStateTest;

TEST_F(IsCopyInProgressTest, AsksForTheRowOfTheTableAndClosesTheQuery) {
  fixture.database.showQueryOptions = true;
  fixture.database.Answer("SELECT * FROM tstables WHERE tablename = N'Site'", {{{"in_use", 1}}});

  EXPECT_TRUE(IsCopyInProgress(fixture.process, "Site"));

  EXPECT_EQ(fixture.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site' [keyset optimistic text]\n"
            "close recordset\n");
}

TEST_F(IsCopyInProgressTest, IsTrueOnlyWhenTheFlagIs1) {
  struct Case {
    Value inUse;
    bool expected;
  };
  const Case cases[] = {
      {std::int16_t{1}, true}, {1, true},        {1.0, true},  {"1", true},
      {" 1 ", true},           {0, false},       {2, false},   {-1, false},
      {true, false},           {false, false},   {"0", false}, {1.5, false},
      {Null(), false},         {Value(), false},
  };
  for (const Case& c : cases) {
    fixture.database.Answer("", {{{"in_use", c.inUse}}});

    EXPECT_EQ(IsCopyInProgress(fixture.process, "Site"), c.expected) << Shown(c.inUse);
  }
}

TEST_F(IsCopyInProgressTest, IsFalseForATableWithoutARowAndClosesTheQuery) {
  EXPECT_FALSE(IsCopyInProgress(fixture.process, ""));

  EXPECT_EQ(fixture.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N''\n"
            "close recordset\n");
}

TEST_F(IsCopyInProgressTest, LooksAtTheFirstRowOnly) {
  fixture.database.Answer("", {{{"in_use", 0}}, {{"in_use", 1}}});

  EXPECT_FALSE(IsCopyInProgress(fixture.process, "Site"));
}

TEST_F(IsCopyInProgressTest, LogsAFailedQueryAndNamesTheTableWith100AddedToTheNumber) {
  fixture.database.FailOn("SELECT", kRefused,
                          {{-2147217900, "Driver", "refused"}, {0, "Driver", "a warning"}, {208, "Driver", "line 1"}});

  const Text raised = Raised([&] { IsCopyInProgress(fixture.process, "Site"); });

  EXPECT_EQ(raised,
            "-2147217800 Data Copy In Progress: It could not be determined whether table Site is being copied.");
  EXPECT_EQ(fixture.journal.Take(), "query SELECT * FROM tstables WHERE tablename = N'Site'\n");  // nothing to close
  EXPECT_EQ(fixture.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",-2147217900,\"refused\"\r\n"
            "\"Driver\",208,\"line 1\"\r\n"
            "\"Driver\",\"refused\"\r\n");
  EXPECT_EQ(fixture.process.LocalErrors->count(), 0);
}

TEST_F(IsCopyInProgressTest, ClosesTheQueryWhenItsRowCannotBeRead) {
  fixture.database.Answer("", {{{"lutm", 0}}});

  const Text raised = Raised([&] { IsCopyInProgress(fixture.process, "Site"); });

  EXPECT_EQ(raised, "3365 Data Copy In Progress: It could not be determined whether table Site is being copied.");
  EXPECT_EQ(fixture.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n");
  EXPECT_EQ(fixture.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Item cannot be found in the collection corresponding to the requested name or "
            "ordinal.: in_use\"\r\n");
}

TEST_F(IsCopyInProgressTest, ClosesNothingWhenItsQueryCouldNotBeMade) {
  fixture.database.FailCall("create recordset", RuntimeError(429, "Driver", "no recordset"));

  const Text raised = Raised([&] { IsCopyInProgress(fixture.process, "Site"); });

  EXPECT_EQ(raised, "529 Data Copy In Progress: It could not be determined whether table Site is being copied.");
  EXPECT_EQ(fixture.journal.Take(), "");
  EXPECT_EQ(fixture.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",\"no recordset\"\r\n");
}

TEST_F(IsCopyInProgressTest, FailsForAFlagThatIsNoNumber) {
  fixture.database.Answer("", {{{"in_use", "yes"}}});

  const Text raised = Raised([&] { IsCopyInProgress(fixture.process, "Site"); });

  EXPECT_EQ(raised, "113 Data Copy In Progress: It could not be determined whether table Site is being copied.");
}

TEST_F(IsCopyInProgressTest, PassesAFailureOfItsFailurePathUnchanged) {
  fixture.database.FailCall("close recordset", {3704, "Driver", "not open"});

  const Text raised = Raised([&] { IsCopyInProgress(fixture.process, "Site"); });

  EXPECT_EQ(raised, "3704 Driver: not open");
  EXPECT_EQ(fixture.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "close recordset\n");
  EXPECT_EQ(fixture.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",\"not open\"\r\n");
}

TEST_F(IsCopyInProgressTest, LeavesTheQueryOpenWhenTheFailureCannotBeLogged) {
  fixture.LoseRunLog();
  fixture.database.Answer("", {{{"lutm", 0}}});

  const Text raised = Raised([&] { IsCopyInProgress(fixture.process, "Site"); });

  EXPECT_EQ(raised, "76 ZenqayDBSync: Path not found: C:\\no-such-directory\\run.log");
  EXPECT_EQ(fixture.journal.Take(), "query SELECT * FROM tstables WHERE tablename = N'Site'\n");
  EXPECT_EQ(fixture.Causes(),
            "error 3265 from \"ZenqayDBSync\": Item cannot be found in the collection corresponding to the requested "
            "name or ordinal.: in_use\n");
}

TEST_F(IsCopyInProgressTest, OverflowsWhen100CannotBeAddedToTheNumber) {
  fixture.database.FailOn("SELECT", {2147483548, "Driver", "refused"}, {}, 1);
  EXPECT_EQ(Raised([&] { IsCopyInProgress(fixture.process, "Site"); }), "6 ZenqayDBSync: Overflow");

  fixture.database.FailOn("SELECT", {2147483547, "Driver", "refused"}, {}, 1);
  EXPECT_EQ(Raised([&] { IsCopyInProgress(fixture.process, "Site"); }),
            "2147483647 Data Copy In Progress: It could not be determined whether table Site is being copied.");
}

TEST(SetCopyInProgress, SetsTheFlagOfTheTablesRow) {
  for (const std::int16_t platform : {kSqlServer, kOracle}) {
    ProcessFixture fixture(platform);
    fixture.Connect();

    SetCopyInProgress(fixture.process, "Site");

    EXPECT_EQ(fixture.journal.Take(), "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n");
  }
}

TEST(ReleaseCopyInProgress, ClearsTheFlagOfTheTablesRow) {
  for (const std::int16_t platform : {kSqlServer, kOracle}) {
    ProcessFixture fixture(platform);
    fixture.Connect();

    ReleaseCopyInProgress(fixture.process, "Site");

    EXPECT_EQ(fixture.journal.Take(), "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  }
}

/// The flag is set and cleared by one pair of statements, under these dates of insertion.
struct DateLiteralCase {
  std::int16_t platform;
  Text date;
};

const DateLiteralCase kTodayAtMidnight[] = {
    {kSqlServer, "'2004-01-31 00:00:00'"},
    {kOracle, "TO_DATE( '2004-01-31 00:00:00','yyyy-mm-dd HH24:MI:SS')"},
    {0, "'2004-01-31 00:00:00'"},
    {3, "'2004-01-31 00:00:00'"},
};

TEST(SetCopyInProgress, InsertsTheMissingRowWithTodaysMidnightInThePlatformsForm) {
  for (const DateLiteralCase& c : kTodayAtMidnight) {
    ProcessFixture fixture(c.platform);
    fixture.Connect();
    fixture.platform.now = DateTime::FromParts({2004, 1, 31, 23, 59, 59});
    fixture.database.AffectNext({0});

    SetCopyInProgress(fixture.process, "Site");

    EXPECT_EQ(fixture.journal.Take(),
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 0\n"
              "sql INSERT INTO tstables(tablename,lutm,in_use, reqd) VALUES(N'Site'," +
                  c.date + ",1,1) -> 1\n");
  }
}

TEST(ReleaseCopyInProgress, InsertsTheMissingRowWithTodaysMidnightInThePlatformsForm) {
  for (const DateLiteralCase& c : kTodayAtMidnight) {
    ProcessFixture fixture(c.platform);
    fixture.Connect();
    fixture.database.AffectNext({0});

    ReleaseCopyInProgress(fixture.process, "Site");

    EXPECT_EQ(fixture.journal.Take(),
              "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 0\n"
              "sql INSERT INTO tstables(tablename,lutm,in_use, reqd) VALUES(N'Site'," +
                  c.date + ",0,1) -> 1\n");
  }
}

TEST(SetCopyInProgress, GivesOracleABlankForAnEmptyTableNameInTheInsertOnly) {
  ProcessFixture fixture(kOracle);
  fixture.Connect();
  fixture.database.AffectNext({0});

  SetCopyInProgress(fixture.process, "");

  EXPECT_EQ(fixture.journal.Take(),
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'' -> 0\n"
            "sql INSERT INTO tstables(tablename,lutm,in_use, reqd) VALUES(N' ',TO_DATE( '2004-01-31 "
            "00:00:00','yyyy-mm-dd HH24:MI:SS'),1,1) -> 1\n");
}

TEST(SetCopyInProgress, IsContentWithAnyNumberOfRows) {
  for (const std::int64_t rows : {1, 2, -1, 32767}) {
    ProcessFixture fixture;
    fixture.Connect();
    fixture.database.AffectNext({rows});

    SetCopyInProgress(fixture.process, "Site");

    EXPECT_EQ(fixture.journal.Take(),
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> " + std::to_string(rows) + "\n");
  }
}

TEST(SetCopyInProgress, OverflowsAtARowCountOf40000AfterTheStatementHasRun) {
  ProcessFixture fixture;
  fixture.Connect();
  for (const std::int64_t rows : {40'000, 32'768}) {
    fixture.database.AffectNext({rows});

    EXPECT_EQ(Raised([&] { SetCopyInProgress(fixture.process, "Site"); }), "6 ZenqayDBSync: Overflow");
    EXPECT_EQ(fixture.journal.Take(),
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> " + std::to_string(rows) + "\n");
  }
}

TEST(SetCopyInProgress, DoesNotLookAtTheCountOfTheInsertButItMustFit) {
  ProcessFixture fixture;
  fixture.Connect();
  fixture.database.AffectNext({0, 0, 0, 7, 0, 40'000});

  EXPECT_EQ(Raised([&] { SetCopyInProgress(fixture.process, "Site"); }), "nothing");
  EXPECT_EQ(Raised([&] { SetCopyInProgress(fixture.process, "Site"); }), "nothing");
  EXPECT_EQ(Raised([&] { SetCopyInProgress(fixture.process, "Site"); }), "6 ZenqayDBSync: Overflow");
}

TEST(SetCopyInProgress, PassesAFailedUpdateToItsCallerAndInsertsNothing) {
  ProcessFixture fixture;
  fixture.Connect();
  fixture.database.FailOn("UPDATE", kRefused);

  const Text raised = Raised([&] { SetCopyInProgress(fixture.process, "Site"); });

  EXPECT_EQ(raised, "-2147217900 Driver: refused");
  EXPECT_EQ(fixture.journal.Take(), "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(fixture.RunLog(), "");
}

TEST(ReleaseCopyInProgress, PassesAFailedInsertToItsCaller) {
  ProcessFixture fixture;
  fixture.Connect();
  fixture.database.AffectNext({0});
  fixture.database.FailOn("INSERT", kRefused);

  const Text raised = Raised([&] { ReleaseCopyInProgress(fixture.process, "Site"); });

  EXPECT_EQ(raised, "-2147217900 Driver: refused");
  EXPECT_EQ(fixture.RunLog(), "");
  EXPECT_EQ(fixture.Causes(), "table \"Site\" may still be marked as in use: refused\n");
}

TEST(CopyState, DoublesAQuoteInTheTableNameInInsertsAndTheUpdateTimeButNotInTheSelectAndTheFlagsUpdates) {
  ProcessFixture fixture;
  fixture.Connect();
  fixture.database.AffectNext({0, 1, 0, 1, 0, 1});

  IsCopyInProgress(fixture.process, "O'Hara");
  SetCopyInProgress(fixture.process, "O'Hara");
  ReleaseCopyInProgress(fixture.process, "O'Hara");
  SetLastUpdateTime(fixture.process, "O'Hara", "NULL");
  GetLastUpdateDate(fixture.process, "O'Hara");

  EXPECT_EQ(fixture.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'O'Hara'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'O'Hara' -> 0\n"
            "sql INSERT INTO tstables(tablename,lutm,in_use, reqd) VALUES(N'O''Hara','2004-01-31 00:00:00',1,1) -> 1\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'O'Hara' -> 0\n"
            "sql INSERT INTO tstables(tablename,lutm,in_use, reqd) VALUES(N'O''Hara','2004-01-31 00:00:00',0,1) -> 1\n"
            "sql UPDATE tstables SET lutm  = NULL WHERE tablename = N'O''Hara' -> 0\n"
            "sql INSERT INTO tstables(tablename,lutm, reqd, in_use) VALUES(N'O''Hara',NULL, 0, 0) -> 1\n"
            "query SELECT * FROM tstables WHERE tablename = N'O'Hara'\n"
            "close recordset\n");
}

TEST_F(SetLastUpdateTimeTest, PutsTheLiteralIntoTheTablesRow) {
  SetLastUpdateTime(fixture.process, "Site", "CONVERT(DATETIME,'2004-01-31 10:11:12',120)");

  EXPECT_EQ(fixture.journal.Take(),
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> "
            "1\n");
}

TEST_F(SetLastUpdateTimeTest, InsertsTheMissingRow) {
  fixture.database.AffectNext({0, 0});

  SetLastUpdateTime(fixture.process, "Site", "CONVERT(DATETIME,'2004-01-31 10:11:12',120)");

  EXPECT_EQ(fixture.journal.Take(),
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> "
            "0\n"
            "sql INSERT INTO tstables(tablename,lutm, reqd, in_use) VALUES(N'Site',CONVERT(DATETIME,'2004-01-31 "
            "10:11:12',120), 0, 0) -> 0\n");
}

TEST(SetLastUpdateTime, TakesTheLiteralAsItIsOnOracleAndGivesItABlankForAnEmptyTableName) {
  ProcessFixture fixture(kOracle);
  fixture.Connect();
  fixture.database.AffectNext({0});

  SetLastUpdateTime(fixture.process, "", "TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS')");

  EXPECT_EQ(fixture.journal.Take(),
            "sql UPDATE tstables SET lutm  = TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS') WHERE tablename = "
            "N' ' -> 0\n"
            "sql INSERT INTO tstables(tablename,lutm, reqd, in_use) VALUES(N' ',TO_DATE( '2004-01-31 "
            "10:11:12','yyyy-mm-dd HH24:MI:SS'), 0, 0) -> 1\n");
}

TEST_F(SetLastUpdateTimeTest, PassesFailuresAndAnOverflowToItsCaller) {
  fixture.database.AffectNext({40'000, 0, 1, 0});
  EXPECT_EQ(Raised([&] { SetLastUpdateTime(fixture.process, "Site", "NULL"); }), "6 ZenqayDBSync: Overflow");

  fixture.database.FailOn("INSERT", kRefused, {}, 1);
  EXPECT_EQ(Raised([&] { SetLastUpdateTime(fixture.process, "Site", "NULL"); }), "-2147217900 Driver: refused");

  fixture.database.FailOn("UPDATE", kRefused);
  EXPECT_EQ(Raised([&] { SetLastUpdateTime(fixture.process, "Site", "NULL"); }), "-2147217900 Driver: refused");
  EXPECT_EQ(fixture.RunLog(), "");
}

/// A date object that takes everything, its zone being `zoneOffset`.
void RegisterDate(ProcessFixture& fixture, std::int32_t zoneOffset) {
  const auto date = fixture.components.Register("java:java.util.Date", "date");
  date->Answers("getTimeZoneOffset", zoneOffset);
  for (const char* setter : {"setDate", "setmonth", "SetYear", "setHours", "setMinutes", "setSeconds"}) {
    date->Answers(setter, Value());
  }
}

TEST_F(GetLastUpdateDateTest, FillsADateObjectFromTheStoredTimeLessTheZonesOffset) {
  RegisterDate(fixture, -330);
  fixture.database.showQueryOptions = true;
  fixture.database.Answer("SELECT * FROM tstables WHERE tablename = N'Site'",
                          {{{"lutm", DateTime::FromParts({2003, 12, 5, 22, 40, 9})}}});

  const Object date = GetLastUpdateDate(fixture.process, "Site");

  EXPECT_EQ(Shown(Value(date)), "<date>");
  EXPECT_EQ(fixture.journal.Take(),
            "create java:java.util.Date\n"
            "query SELECT * FROM tstables WHERE tablename = N'Site' [keyset optimistic text]\n"
            "date.getTimeZoneOffset()\n"
            "date.setDate(i32(5))\n"
            "date.setmonth(i32(11))\n"
            "date.SetYear(i32(103))\n"
            "date.setHours(i32(22))\n"
            "date.setSeconds(i32(9))\n"
            "date.setMinutes(i32(370))\n"
            "close recordset\n");
}

TEST_F(GetLastUpdateDateTest, SetsTheMinutesAsTheProductWants) {
  struct Case {
    const char* product;
    const char* minutes;
  };
  const Case cases[] = {{"4010", "date.setMinutes(i32(-260))\n"},
                        {"4009", "date.setMinutes(i32(-260))\n"},
                        {"1028", "date.setMinutes(i32(40))\n"},
                        {"4011", ""}};
  for (const Case& c : cases) {
    RegisterDate(fixture, 300);
    fixture.process.ProductId = c.product;
    fixture.database.Answer("", {{{"lutm", DateTime::FromParts({2003, 12, 5, 22, 40, 9})}}});

    GetLastUpdateDate(fixture.process, "Site");

    EXPECT_EQ(fixture.journal.Take(), Text("create java:java.util.Date\n"
                                           "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
                                           "date.getTimeZoneOffset()\n"
                                           "date.setDate(i32(5))\n"
                                           "date.setmonth(i32(11))\n"
                                           "date.SetYear(i32(103))\n"
                                           "date.setHours(i32(22))\n"
                                           "date.setSeconds(i32(9))\n") +
                                          c.minutes + "close recordset\n");
  }
}

TEST_F(GetLastUpdateDateTest, StartsFrom1January1970WhenThereIsNoRowOrNoStoredTime) {
  const std::vector<std::vector<TableRow>> answers = {{},
                                                      {{{"lutm", Null()}}},
                                                      {{{"lutm", Value()}}},
                                                      {{{"lutm", 0}}},
                                                      {{{"lutm", DateTime()}}},
                                                      {{{"lutm", DateTime::FromParts({1899, 12, 29, 12, 0, 0})}}}};
  for (const std::vector<TableRow>& rows : answers) {
    RegisterDate(fixture, 300);
    fixture.database.Answer("", rows);

    GetLastUpdateDate(fixture.process, "Site");

    EXPECT_EQ(fixture.journal.Take(),
              "create java:java.util.Date\n"
              "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
              "date.getTimeZoneOffset()\n"
              "date.setDate(i32(1))\n"
              "date.setmonth(i32(0))\n"
              "date.SetYear(i32(70))\n"
              "close recordset\n");
  }
}

/// "year-month-day hour:minute:second" of a date object, its fields as they come.
Text Fields(const Object& date) {
  Text text;
  for (const char* getter : {"getYear", "getMonth", "getDate", "getHours", "getMinutes", "getSeconds"}) {
    text += (text.empty() ? "" : " ") + date.Call(getter).AsText();
  }
  return text;
}

TEST_F(GetLastUpdateDateTest, StandsAt1January1970AtTheCurrentTimeOfDayForANullTime) {
  const TimeZone zone("America/New_York");  // 5 hours behind: the date objects stand at 05:11:12
  fixture.database.Answer("", {{{"lutm", Null()}}});

  EXPECT_EQ(Fields(GetLastUpdateDate(fixture.process, "Site")), "70 0 1 5 11 12");
}

TEST_F(GetLastUpdateDateTest, CarriesTheZonesOffsetIntoHourDayMonthAndYear) {
  struct Case {
    const char* zone;
    DateTimeParts stored;
    const char* fields;  // year month day hour minute second, as a date object counts them
  };
  const Case cases[] = {
      {"UTC", {2004, 1, 31, 10, 11, 12}, "104 0 31 10 11 12"},
      {"America/New_York", {2004, 1, 31, 10, 11, 12}, "104 0 31 5 11 12"},  // 300 minutes less
      {"America/New_York", {2004, 3, 1, 4, 59, 59}, "104 1 29 23 59 59"},   // back into a leap day
      {"Asia/Kolkata", {2004, 1, 31, 10, 11, 12}, "104 0 31 15 41 12"},     // 330 minutes more
      {"Asia/Kolkata", {2003, 12, 31, 18, 30, 0}, "104 0 1 0 0 0"},         // on into the next year
      {"Europe/Berlin", {2004, 1, 31, 10, 11, 12}, "104 0 31 11 11 12"},
      {"Europe/Berlin", {2004, 7, 31, 10, 11, 12}, "104 6 31 11 11 12"},  // the offset is the one of now, in winter
  };
  for (const Case& c : cases) {
    const TimeZone zone(c.zone);
    fixture.database.Answer("", {{{"lutm", DateTime::FromParts(c.stored)}}});

    EXPECT_EQ(Fields(GetLastUpdateDate(fixture.process, "Site")), c.fields) << c.zone;
  }
}

TEST_F(GetLastUpdateDateTest, KeepsADayThatTheMonthOfNowDoesNotHave) {
  fixture.components.nowMilliseconds = 1077963072000.0;  // 2004-02-28T10:11:12Z
  fixture.database.Answer("", {{{"lutm", DateTime::FromParts({2003, 12, 31, 1, 2, 3})}}});

  const Text fields = Fields(GetLastUpdateDate(fixture.process, "Site"));

  EXPECT_EQ(fields, "103 11 31 1 2 3");  // the day is set first, but nothing is carried over before the last field
}

TEST_F(GetLastUpdateDateTest, PassesEveryFailureToItsCaller) {
  fixture.components.FailCreation("java:java.util.Date", {429, "bridge", "no dates"});
  EXPECT_EQ(Raised([&] { GetLastUpdateDate(fixture.process, "Site"); }), "429 bridge: no dates");
  EXPECT_EQ(fixture.journal.Take(), "create java:java.util.Date\n");  // the row is not asked for without a date object

  ProcessFixture query;
  query.Connect();
  query.database.FailOn("SELECT", kRefused);
  EXPECT_EQ(Raised([&] { GetLastUpdateDate(query.process, "Site"); }), "-2147217900 Driver: refused");

  ProcessFixture zone;
  zone.Connect();
  zone.components.Register("java:java.util.Date", "date")->Answers("getTimeZoneOffset", Null());
  EXPECT_EQ(Raised([&] { GetLastUpdateDate(zone.process, "Site"); }),
            "94 ZenqayDBSync: Invalid use of Null: getTimeZoneOffset");

  ProcessFixture text;
  text.Connect();
  text.database.Answer("", {{{"lutm", "yesterday"}}});
  EXPECT_EQ(Raised([&] { GetLastUpdateDate(text.process, "Site"); }), "13 ZenqayDBSync: Type mismatch");
  EXPECT_EQ(text.journal.Take(), "query SELECT * FROM tstables WHERE tablename = N'Site'\n");  // left open
  EXPECT_EQ(text.RunLog(), "");
}

/// A process over a real `tstables`.
class RealCopyStateTest : public testing::Test {
 protected:
  RealCopyStateTest() {
    file.Run("CREATE TABLE tstables (tablename NVARCHAR(50) PRIMARY KEY, lutm DATETIME, in_use INTEGER, reqd INTEGER)");
    OpenLocalConnection(fixture.process, file.connectionString, "");
  }

  Text State() { return file.Rows("SELECT * FROM tstables", {"tablename", "lutm", "in_use", "reqd"}); }

  EmbeddedDatabase file;
  ProcessFixture fixture{file.databases};
};

TEST_F(RealCopyStateTest, OfATableWithoutARowStartsFromTodaysMidnightAndNotFrom1970) {
  EXPECT_FALSE(IsCopyInProgress(fixture.process, "Site"));
  SetCopyInProgress(fixture.process, "Site");

  EXPECT_EQ(State(), "Site|1/31/2004|1|1\n");
  EXPECT_EQ(Fields(GetLastUpdateDate(fixture.process, "Site")), "104 0 31 0 0 0");
}

TEST_F(RealCopyStateTest, OfAProcessThatDiedStaysInUseUntilSomebodyResetsTheRow) {
  SetCopyInProgress(fixture.process, "Site");  // and dies

  for (int laterJob = 0; laterJob < 3; ++laterJob) {
    ProcessFixture job(file.databases);
    OpenLocalConnection(job.process, file.connectionString, "");
    EXPECT_TRUE(IsCopyInProgress(job.process, "Site"));
  }
  file.Run("UPDATE tstables SET in_use = 0");

  EXPECT_FALSE(IsCopyInProgress(fixture.process, "Site"));
}

TEST_F(RealCopyStateTest, GoesThroughOneCopy) {
  SetCopyInProgress(fixture.process, "Site");
  SetLastUpdateTime(fixture.process, "Site", "CONVERT(DATETIME,'2004-01-31 10:11:12',120)");
  ReleaseCopyInProgress(fixture.process, "Site");

  EXPECT_EQ(State(), "Site|1/31/2004 10:11:12 AM|0|1\n");
  EXPECT_FALSE(IsCopyInProgress(fixture.process, "Site"));
  EXPECT_EQ(Fields(GetLastUpdateDate(fixture.process, "Site")), "104 0 31 10 11 12");
}

TEST_F(RealCopyStateTest, OfATableNameWithAQuoteBreaksTheSelectAndTheFlagsUpdatesButNotTheUpdateTime) {
  constexpr std::string_view kSyntaxError = "-2147217900 ";
  constexpr std::string_view kSyntaxErrorAnd100 = "-2147217800 ";

  EXPECT_TRUE(Raised([&] { IsCopyInProgress(fixture.process, "O'Hara"); }).starts_with(kSyntaxErrorAnd100));
  EXPECT_TRUE(Raised([&] { SetCopyInProgress(fixture.process, "O'Hara"); }).starts_with(kSyntaxError));
  EXPECT_TRUE(Raised([&] { ReleaseCopyInProgress(fixture.process, "O'Hara"); }).starts_with(kSyntaxError));
  EXPECT_TRUE(Raised([&] { GetLastUpdateDate(fixture.process, "O'Hara"); }).starts_with(kSyntaxError));
  EXPECT_EQ(State(), "");

  SetLastUpdateTime(fixture.process, "O'Hara", "'2004-01-31 10:11:12'");  // inserts
  SetLastUpdateTime(fixture.process, "O'Hara", "'2004-02-01 10:11:12'");  // updates
  EXPECT_EQ(State(), "O'Hara|2/1/2004 10:11:12 AM|0|0\n");
}

TEST_F(RealCopyStateTest, OfATableInUseIsSeenByAnotherProcess) {
  ProcessFixture other(file.databases);
  OpenLocalConnection(other.process, file.connectionString, "");

  SetCopyInProgress(fixture.process, "Site");
  EXPECT_TRUE(IsCopyInProgress(other.process, "Site"));
  ReleaseCopyInProgress(fixture.process, "Site");
  EXPECT_FALSE(IsCopyInProgress(other.process, "Site"));
}

}  // namespace
}  // namespace zenqay
