// The full copy, told on the sites of generation 1: counters, the moment of the new update time, and what becomes of
// the table when a step fails.
#include <gtest/gtest.h>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"

namespace zenqay {
namespace {

constexpr const char* kLocations = "Kv40QTMtssmaLocations.LocationsManager";

const RuntimeError kFailure(5000, "the component", "it broke");

/// A job whose ERP lists one site, which the local table has, and whose parts a test can make fail.
struct OneSite {
  CopyFixture copy;
  std::shared_ptr<ScriptedObject> row = copy.components.Make("row");
  std::shared_ptr<ScriptedObject> rows = copy.components.MakeEnumeration("rows", {Object(row)});
  std::shared_ptr<ScriptedObject> locations = copy.AddManager(kLocations, "locations");

  OneSite() {
    row->Answers("getLocation", "A1").Answers("hasDescription", true).Answers("getDescription", "North");
    row->Answers("hasCustomer", true).Answers("getCustomer", "C7");
    locations->Answers("List", Object(rows));
  }

  ScriptedObject& session() { return dynamic_cast<ScriptedObject&>(*copy.process.ErpSession.component()); }
};

/// What the job says when nothing fails, up to the end of the pass.
constexpr const char* kWholePass =
    "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
    "close recordset\n"
    "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
    "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
    "create Kv40QTMtssmaLocations.LocationsManager\n"
    "session.addManager(&<locations>)\n"
    "locations.Initialize(&\"100\")\n"
    "locations.List(\"\", high(10))\n"
    "sql UPDATE Site SET upd_flag = 1 \n"
    "rows.hasMoreElements()\n"
    "rows.nextElement()\n"
    "row.getLocation()\n"
    "row.hasDescription()\n"
    "row.getDescription()\n"
    "row.hasCustomer()\n"
    "row.getCustomer()\n"
    "row.getLocation()\n"
    "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A1' -> 1\n"
    "rows.hasMoreElements()\n"
    "sql DELETE FROM Site WHERE upd_flag = 1\n"
    "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> 1\n"
    "locations.Close()\n";

constexpr const char* kReleased = "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n";

/// The pass up to the first line that begins like this, that line included.
Text PassUpTo(const Text& beginning) {
  const Text all = kWholePass;
  return all.substr(0, all.find('\n', all.find("\n" + beginning) + 1) + 1);
}

/// One step of the pass that fails, and how the journal's line of that step begins.
struct FailingStep {
  const char* name;
  std::function<void(OneSite&)> breakIt;
  const char* lastLine;
};

void PrintTo(const FailingStep& step, std::ostream* out) {
  *out << step.name;
}

class CopySiteFullFailing : public testing::TestWithParam<FailingStep> {};

TEST_P(CopySiteFullFailing, ClosesTheManagerAndReleasesTheTable) {
  OneSite site;
  GetParam().breakIt(site);

  const CopyResult result = site.copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(site.copy.journal.Take(), PassUpTo(GetParam().lastLine) + "locations.Close()\n" + kReleased);
  EXPECT_EQ(site.copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"the component\",\"it broke\"\r\n"
            "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
}

TEST_P(CopySiteFullFailing, RaisesTheNumberPlus100WithTheEntityAndTheErp) {
  OneSite site;
  GetParam().breakIt(site);

  const Text raised = Raised([&] { site.copy.CopySite("Site", 1); });

  EXPECT_EQ(raised, "5100 Data copy: Sites: Sites could not be copied from the ERP (generation 1).");
}

INSTANTIATE_TEST_SUITE_P(
    , CopySiteFullFailing,
    testing::Values(
        FailingStep{"AddManager", [](OneSite& site) { site.session().Fails("addManager", kFailure); }, "session."},
        FailingStep{"Initialize", [](OneSite& site) { site.locations->Fails("Initialize", kFailure); },
                    "locations.Initialize"},
        FailingStep{"List", [](OneSite& site) { site.locations->Fails("List", kFailure); }, "locations.List"},
        FailingStep{"Mark", [](OneSite& site) { site.copy.database.FailOn("SET upd_flag = 1", kFailure); },
                    "sql UPDATE Site SET upd_flag"},
        FailingStep{"HasMoreElements", [](OneSite& site) { site.rows->Fails("hasMoreElements", kFailure); },
                    "rows.hasMoreElements"},
        FailingStep{"NextElement", [](OneSite& site) { site.rows->Fails("nextElement", kFailure); },
                    "rows.nextElement"},
        FailingStep{"Key", [](OneSite& site) { site.row->Fails("getLocation", kFailure); }, "row.getLocation"},
        FailingStep{"PresenceOfTheDescription", [](OneSite& site) { site.row->Fails("hasDescription", kFailure); },
                    "row.hasDescription"},
        FailingStep{"Description", [](OneSite& site) { site.row->Fails("getDescription", kFailure); },
                    "row.getDescription"},
        FailingStep{"PresenceOfTheCustomer", [](OneSite& site) { site.row->Fails("hasCustomer", kFailure); },
                    "row.hasCustomer"},
        FailingStep{"Customer", [](OneSite& site) { site.row->Fails("getCustomer", kFailure); }, "row.getCustomer"},
        FailingStep{"Update", [](OneSite& site) { site.copy.database.FailOn("UPDATE Site SET SITE", kFailure); },
                    "sql UPDATE Site SET SITE"},
        FailingStep{"Sweep", [](OneSite& site) { site.copy.database.FailOn("DELETE FROM Site", kFailure); },
                    "sql DELETE"},
        FailingStep{"LastUpdateTime", [](OneSite& site) { site.copy.database.FailOn("SET lutm", kFailure); },
                    "sql UPDATE tstables SET lutm"}),
    [](const auto& step) { return step.param.name; });

TEST(CopySiteFull, ClosesTheManagerAndReleasesTheTableWhenAnInsertFails) {
  OneSite site;
  site.copy.database.AffectNext({1, 0});
  site.copy.database.FailOn(
      "INSERT INTO Site", RuntimeError(-2147217873, "a driver", "no duplicates"),
      {{-2147217873, "a driver", "no duplicates"}, {0, "a driver", "a remark"}, {5701, "a", "b"}});

  const CopyResult result = site.copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(site.copy.JournalWithout({"row", "query", "close", "event", "create", "session"}),
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "locations.Initialize(&\"100\")\n"
            "locations.List(\"\", high(10))\n"
            "sql UPDATE Site SET upd_flag = 1 \n"
            "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE "
            "=N'A1' -> 0\n"
            "sql INSERT INTO Site (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'A1',N'North',N'C7',0) -> 1\n"
            "locations.Close()\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  // What the provider reported stands in the first of the two records alone.
  EXPECT_EQ(site.copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"a driver\",-2147217873,\"no duplicates\"\r\n"
            "\"a\",5701,\"b\"\r\n"
            "\"a driver\",\"no duplicates\"\r\n"
            "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
}

TEST(CopySiteFull, SaysItsWholePassWhenNothingFails) {
  OneSite site;

  const CopyResult result = site.copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(site.copy.journal.Take(), Text(kWholePass) + "sql UPDATE STATISTICS Site\n" + kReleased);
}

TEST(CopySiteFull, LeavesItsFailurePathAtCloseWhenTheManagerCannotBeCreated) {
  OneSite site;
  site.copy.components.FailCreation(kLocations, kFailure);

  const CopyResult result = site.copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(site.copy.journal.Take(), PassUpTo("create") + kReleased);
  EXPECT_EQ(site.copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"the component\",\"it broke\"\r\n"
            "\"ZenqayDBSync\",\"Object variable not set\"\r\n");
}

TEST(CopySiteFull, FailsUnchangedWhenTheManagerCannotBeClosed) {
  OneSite site;
  site.locations->Fails("Close", kFailure);

  const CopyResult result = site.copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(site.copy.journal.Take(), Text(kWholePass) + "locations.Close()\n" + kReleased);
  EXPECT_EQ(site.copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  1\"\r\n"
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"the component\",\"it broke\"\r\n"
            "\"the component\",\"it broke\"\r\n");
}

TEST(CopySiteFull, FailsAsAnyOtherStepWhenOnlyTheFirstCloseFails) {
  OneSite site;
  site.locations->Does("Close", [calls = 0](Arguments) mutable {
    if (++calls == 1) throw RuntimeError(kFailure);
    return Value();
  });

  const CopyResult result = site.copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(site.copy.journal.Take(), Text(kWholePass) + "locations.Close()\n" + kReleased);
  EXPECT_EQ(site.copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  1\"\r\n"
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"the component\",\"it broke\"\r\n"
            "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
}

TEST(CopySiteFull, LeavesItsFailurePathAtOnceWhenTheRunLogCannotBeWritten) {
  OneSite site;
  site.copy.process.LogFilePath = "C:\\no\\such\\directory\\run.log";

  const Text raised = Raised([&] { site.copy.CopyTable(1, "Site", 1); });

  EXPECT_EQ(raised, "76 ZenqayDBSync: Path not found: C:\\no\\such\\directory\\run.log");
  EXPECT_EQ(site.copy.journal.Take(), PassUpTo("sql UPDATE tstables SET lutm"));  // no Close, and the table stays taken
}

TEST(CopySiteFull, FailsAtTheFieldThatIsNull) {
  OneSite site;
  site.row->Answers("getDescription", Null());

  const CopyResult result = site.copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(site.copy.journal.Take(), PassUpTo("row.getDescription") + "locations.Close()\n" + kReleased);
  EXPECT_EQ(site.copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Invalid use of Null\"\r\n"
            "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
}

TEST(CopySiteFull, FailsWhenAnUpdateTouchesMoreRowsThan16BitsHold) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations", {copy.RowWith({{"Location", "A1"}}), copy.RowWith({{"Location", "A2"}})});
  copy.database.AffectNext({1, 40'000});

  const CopyResult result = copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(copy.JournalWithout({"row", "query", "close", "event", "create", "session"}),
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "locations.Initialize(&\"100\")\n"
            "locations.List(\"\", high(10))\n"
            "sql UPDATE Site SET upd_flag = 1 \n"
            "sql UPDATE Site SET SITE = N'A1', upd_flag = 0 WHERE SITE =N'A1' -> 40000\n"
            "locations.Close()\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Overflow\"\r\n"
            "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
}

TEST(CopySiteFull, RaisesThePlatformsOwnErrorsWith100More) {
  OneSite overflowing;
  overflowing.copy.database.AffectNext({40'000});
  OneSite withNull;
  withNull.row->Answers("getCustomer", Null());

  EXPECT_EQ(Raised([&] { overflowing.copy.CopySite("Site", 1); }),
            "106 Data copy: Sites: Sites could not be copied from the ERP (generation 1).");
  EXPECT_EQ(Raised([&] { withNull.copy.CopySite("Site", 1); }),
            "194 Data copy: Sites: Sites could not be copied from the ERP (generation 1).");
}

TEST(CopySiteFull, RaisesWhatFailedInItsFailurePathUnchanged) {
  OneSite withoutManager;
  withoutManager.copy.components.FailCreation(kLocations, kFailure);
  OneSite unclosable;
  unclosable.rows->Fails("nextElement", kFailure);
  unclosable.locations->Fails("Close", RuntimeError(7, "the manager", "it stays open"));

  EXPECT_EQ(Raised([&] { withoutManager.copy.CopySite("Site", 1); }), "91 ZenqayDBSync: Object variable not set");
  EXPECT_EQ(Raised([&] { unclosable.copy.CopySite("Site", 1); }), "7 the manager: it stays open");
}

TEST(CopySiteFull, RaisesOverflowWhenItsNumberHasNoRoomFor100More) {
  struct Case {
    std::int32_t number;
    const char* secondRecord;
  };
  const Case cases[] = {
      {2'147'483'547, "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n"},
      {2'147'483'548, "\"ZenqayDBSync\",\"Overflow\"\r\n"},
  };
  for (const auto& [number, secondRecord] : cases) {
    SCOPED_TRACE(number);
    OneSite site;
    site.locations->Fails("List", RuntimeError(number, "the component", "it broke"));

    const CopyResult result = site.copy.CopyTable(1, "Site", 1);

    EXPECT_EQ(result, CopyResult::Failed);
    EXPECT_EQ(site.copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"the component\",\"it broke\"\r\n" +
                  Text(secondRecord));
  }
}

TEST(CopySiteFull, KeepsTheCountersThatItHadReachedWhenItFails) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations",
                  {copy.RowWith({{"Location", "A1"}}), copy.RowWith({{"Location", "A2"}}),
                   copy.RowWith({{"Location", "A3"}}), copy.RowWith({{"Location", Null()}})});
  copy.database.AffectNext({1, 1, 0, 1, 1});

  copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(copy.Counters(), "ucount 2, icount 1, dcount 0");
}

TEST(CopySiteFull, FoldsUpdatedRowsIntoTheInsertedOnes) {
  CopyFixture copy("1");
  std::vector<Object> rows;
  for (const char* key : {"A1", "A2", "A3", "A4", "A5", "A6", "A7"}) rows.push_back(copy.RowWith({{"Location", key}}));
  copy.AddManager(kLocations, "locations", rows);
  copy.database.AffectNext({1, 1, 1, 1, 1, 1, 0, 1, 0, 1});  // the table is taken, five updates, two inserts

  const CopyResult result = copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 7, dcount 0");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  7\"\r\n");
}

TEST(CopySiteFull, CountsTheSameKeyTwice) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations",
                  {copy.RowWith({{"Location", "A1"}, {"Description", "North"}}),
                   copy.RowWith({{"Location", "A1"}, {"Description", "South"}})});
  copy.database.AffectNext({1, 0, 1, 1});

  const CopyResult result = copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.JournalWithout({"row", "query", "close", "event", "create", "session", "locations", "sql UPDATE t"}),
            "sql UPDATE Site SET upd_flag = 1 \n"
            "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', upd_flag = 0 WHERE SITE =N'A1' -> 0\n"
            "sql INSERT INTO Site (SITE ,DESCRIPTION ,upd_flag )VALUES (N'A1',N'North',0) -> 1\n"
            "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'South', upd_flag = 0 WHERE SITE =N'A1' -> 1\n"
            "sql DELETE FROM Site WHERE upd_flag = 1\n"
            "sql UPDATE STATISTICS Site\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 2, dcount 0");
}

TEST(CopySiteFull, WritesTheKeyInTheErpsOwnCase) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations", {copy.RowWith({{"Location", "ams01"}})});

  const CopyResult result = copy.CopyTable(1, "Site", 1);  // a database that compares without case finds AMS01

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.JournalWithout({"row", "query", "close", "event", "create", "session", "locations", "sql UPDATE t"}),
            "sql UPDATE Site SET upd_flag = 1 \n"
            "sql UPDATE Site SET SITE = N'ams01', upd_flag = 0 WHERE SITE =N'ams01' -> 1\n"
            "sql DELETE FROM Site WHERE upd_flag = 1\n"
            "sql UPDATE STATISTICS Site\n");
}

TEST(CopySiteFull, EmptiesTheTableWhenTheListingHasNoRows) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations");

  const CopyResult result = copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "create Kv40QTMtssmaLocations.LocationsManager\n"
            "session.addManager(&<locations>)\n"
            "locations.Initialize(&\"100\")\n"
            "locations.List(\"\", high(10))\n"
            "sql UPDATE Site SET upd_flag = 1 \n"
            "rows.hasMoreElements()\n"
            "sql DELETE FROM Site WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> "
            "1\n"
            "locations.Close()\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  0\"\r\n");
}

TEST(CopySiteFull, LeavesTheTableAloneWhenTheListingGivesNothing) {
  for (const Value& nothing : {Value(Object()), Value(), Value(Null())}) {
    CopyFixture copy("1");
    copy.AddManager(kLocations, "locations")->Answers("List", nothing);

    const CopyResult result = copy.CopyTable(1, "Site", 1);

    EXPECT_EQ(result, CopyResult::Done);
    EXPECT_EQ(copy.journal.Take(),
              "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
              "close recordset\n"
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
              "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
              "create Kv40QTMtssmaLocations.LocationsManager\n"
              "session.addManager(&<locations>)\n"
              "locations.Initialize(&\"100\")\n"
              "locations.List(\"\", high(10))\n"
              "locations.Close()\n"
              "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
    EXPECT_EQ(copy.RunLog(), "");
  }
}

TEST(CopySiteFull, TakesANullAnswerOfTheEnumerationForItsEnd) {
  OneSite site;
  site.rows->Answers("hasMoreElements", Null());

  const CopyResult result = site.copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(site.copy.Counters(), "ucount 0, icount 0, dcount 0");
}

TEST(CopySiteFull, UsesTheManagerWithoutASession) {
  OneSite site;
  site.copy.process.ErpSession.Release();

  const CopyResult result = site.copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(site.copy.journal.Take(), Replaced(kWholePass, "session.addManager(&<locations>)\n", "") +
                                          "sql UPDATE STATISTICS Site\n" + kReleased);
}

TEST(CopySiteFull, TakesTheNewUpdateTimeBetweenTheListingAndItsFirstRow) {
  OneSite site;
  const auto now = site.copy.components.Register("java:java.util.Date", "date");
  now->Answers("getMinutes", 11).Answers("getTimeZoneOffset", 0).Answers("setMinutes", Value());
  now->Answers("getYear", 104).Answers("getMonth", 1).Answers("getDate", 29);
  now->Answers("getHours", 23).Answers("getSeconds", 59);

  const CopyResult result = site.copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(site.copy.JournalWithout({"row.", "query", "close", "event", "create Kv", "session", "sql UPDATE S"}),
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "locations.Initialize(&\"100\")\n"
            "locations.List(\"\", high(10))\n"
            "create java:java.util.Date\n"
            "date.getMinutes()\n"
            "date.getTimeZoneOffset()\n"
            "date.setMinutes(i32(11))\n"
            "date.getYear()\n"
            "date.getMonth()\n"
            "date.getDate()\n"
            "date.getHours()\n"
            "date.getMinutes()\n"
            "date.getSeconds()\n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "rows.hasMoreElements()\n"
            "sql DELETE FROM Site WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-02-29 23:11:59',120) WHERE tablename = N'Site' -> "
            "1\n"
            "locations.Close()\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
}

TEST(CopySiteFull, StoresNoUpdateTimeWhenTheDateCannotBeRead) {
  OneSite site;
  site.copy.components.FailCreation("java:java.util.Date", kFailure);

  const CopyResult result = site.copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(
      site.copy.JournalWithout({"row", "query", "close", "event", "create", "session", "locations", "sql UPDATE S"}),
      "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
      "sql DELETE FROM Site WHERE upd_flag = 1\n"
      "sql UPDATE tstables SET lutm  = NULL WHERE tablename = N'Site' -> 1\n"
      "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
}

TEST(CopySiteFull, InsertsTheUpdateTimeOfATableWithoutAState) {
  OneSite site;
  site.copy.database.AffectNext({1, 1, 0});

  const CopyResult result = site.copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(site.copy.journal.Take(),
            PassUpTo("sql DELETE") +
                "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
                "N'Site' -> 0\n"
                "sql INSERT INTO tstables(tablename,lutm, reqd, in_use) VALUES(N'Site',CONVERT(DATETIME,'2004-01-31 "
                "10:11:12',120), 0, 0) -> 1\n"
                "locations.Close()\n"
                "sql UPDATE STATISTICS Site\n" +
                kReleased);
}

}  // namespace
}  // namespace zenqay
