// The full copy, told on the sites of generation 1: counters, the moment of the new update time, and what becomes of
// the table when a step fails.
#include "entities/sites.h"

namespace zenqay {
namespace {

const RuntimeError kFailure(5000, "the component", "it broke");

/// The ERP lists one site, which the local table has.
const Pass kOneSite =
    FullPass(kSites, kLocations,
             {{{{"Location", "A1"}, {"Description", "North"}, {"Customer", "C7"}},
               {"getLocation hasDescription getDescription hasCustomer getCustomer getLocation",
                "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE "
                "=N'A1' -> 1"}}},
             {.icount = 1});

const Text kSummary =
    "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
    "\"Rows copied: Site -  1\"\r\n";
/// The record of kFailure at an operation.
Text LoggedAt(const Text& operation) {
  return "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n\"the component\",\"it broke: " + operation + "\"\r\n";
}

/// A job of that ERP, whose parts a test can make fail.
struct OneSite {
  CopyFixture copy;
  std::shared_ptr<ScriptedObject> locations = Arrange(copy, kOneSite);

  Text Raises() {
    return Raised([&] { copy.CopySite("Site", 1); });
  }
};

/// An update of one site that has its key alone, which the database answers with the count.
ListedRow Site(const Text& key, const Text& count) {
  return {{{"Location", key}},
          {"getLocation hasDescription hasCustomer getLocation",
           "sql UPDATE Site SET SITE = N'" + key + "', upd_flag = 0 WHERE SITE =N'" + key + "' -> " + count}};
}

/// A site that the update does not find.
ListedRow NewSite(const Text& key) {
  ListedRow site = Site(key, "0");
  site.steps.push_back("hasDescription hasCustomer getLocation hasDescription hasCustomer");
  site.steps.push_back("sql INSERT INTO Site (SITE ,upd_flag )VALUES (N'" + key + "',0) -> 1");
  return site;
}

TEST(CopySiteFull, LogsWhatTheProviderReportedOfAnInsertOnce) {
  CopyFixture copy("1");
  Arrange(copy, FullPass(kSites, kLocations, {NewSite("A1")}));
  copy.database.FailOn("INSERT INTO Site", RuntimeError(-2147217873, "a driver", "no duplicates"),
                       {{-2147217873, "a driver", "no duplicates"}, {0, "a driver", "a remark"}, {5701, "a", "b"}});

  const Text raised = Raised([&] { copy.CopySite("Site", 1); });

  EXPECT_EQ(raised, "-2147217773 Data copy: Sites: Sites could not be copied from the ERP (generation 1).");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"a driver\",-2147217873,\"no duplicates\"\r\n"
            "\"a\",5701,\"b\"\r\n"
            "\"a driver\",\"no duplicates\"\r\n");
}

TEST(CopySiteFull, FailsUnchangedWhenTheManagerCannotBeClosed) {
  OneSite site;
  site.locations->Fails("Close", kFailure);

  EXPECT_EQ(site.copy.CopyTable(1, "Site", 1), CopyResult::Failed);

  EXPECT_EQ(site.copy.JournalWithout({"query", "close", "event", "sql UPDATE tstables SET in_use"}),
            TraceOf(kOneSite) + "manager.Close()\n");
  EXPECT_EQ(site.copy.RunLog(), kSummary + LoggedAt("Close") + "\"the component\",\"it broke: Close\"\r\n");
}

TEST(CopySiteFull, RaisesWhatFailedInItsFailurePathUnchanged) {
  OneSite site;
  site.locations->Fails("List", kFailure).Fails("Close", RuntimeError(7, "the manager", "it stays open"));

  EXPECT_EQ(site.Raises(), "7 the manager: it stays open: Close");

  EXPECT_EQ(site.copy.journal.Take(), UpTo("manager.List", TraceOf(kOneSite)) + "manager.Close()\n");
  EXPECT_EQ(site.copy.RunLog(), LoggedAt("List"));
}

TEST(CopySiteFull, LeavesItsFailurePathAtOnceWhenTheRunLogCannotBeWritten) {
  OneSite site;
  site.copy.LoseRunLog();

  EXPECT_EQ(site.Raises(), "76 ZenqayDBSync: Path not found: C:\\no-such-directory\\run.log");

  EXPECT_EQ(site.copy.journal.Take(), UpTo("sql UPDATE tstables SET lutm", TraceOf(kOneSite)));  // and no Close
}

TEST(CopySiteFull, FailsAtTheFieldThatIsNullWith194) {
  CopyFixture copy("1");
  Arrange(copy, FullPass(kSites, kLocations, {{{{"Location", "A1"}, {"Description", Null()}}, {}}}));

  const Text raised = Raised([&] { copy.CopySite("Site", 1); });

  EXPECT_EQ(raised, "194 Data copy: Sites: Sites could not be copied from the ERP (generation 1).");
  EXPECT_EQ(copy.journal.Take(), UpTo("row1.getDescription", TraceOf(kOneSite)) + "manager.Close()\n");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Invalid use of Null: getDescription of Location=A1\"\r\n");
}

TEST(CopySiteFull, FailsWhenAnUpdateTouchesMoreRowsThan16BitsHold) {
  const Pass pass = FullPass(kSites, kLocations, {Site("A1", "40000"), Site("A2", "1")});
  CopyFixture copy("1");
  Arrange(copy, pass);

  const Text raised = Raised([&] { copy.CopySite("Site", 1); });

  EXPECT_EQ(raised, "106 Data copy: Sites: Sites could not be copied from the ERP (generation 1).");
  EXPECT_EQ(copy.journal.Take(), UpTo("sql UPDATE Site SET SITE", TraceOf(pass)) + "manager.Close()\n");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Overflow\"\r\n");
}

TEST(CopySiteFull, RaisesOverflowWhenItsNumberHasNoRoomFor100More) {
  const struct {
    std::int32_t number;
    Text raised;
  } cases[] = {
      {2'147'483'547, "2147483647 Data copy: Sites: Sites could not be copied from the ERP (generation 1)."},
      {2'147'483'548, "6 ZenqayDBSync: Overflow"},
  };
  for (const auto& [number, raised] : cases) {
    OneSite site;
    site.locations->Fails("List", RuntimeError(number, "the component", "it broke"));

    EXPECT_EQ(site.Raises(), raised);

    EXPECT_EQ(site.copy.RunLog(), LoggedAt("List"));
  }
}

TEST(CopySiteFull, KeepsTheCountersThatItHadReachedWhenItFails) {
  CopyFixture copy("1");
  Arrange(copy, FullPass(kSites, kLocations,
                         {Site("A1", "1"), NewSite("A2"), Site("A3", "1"), {{{"Location", Null()}}, {}}}));

  EXPECT_EQ(copy.CopyTable(1, "Site", 1), CopyResult::Failed);

  EXPECT_EQ(copy.Counters(), "ucount 2, icount 1, dcount 0");
}

TEST(CopySiteFull, FoldsFiveUpdatedRowsIntoTheTwoInsertedOnesAndCountsNoSweptOnes) {
  ExpectPass(FullPass(kSites, kLocations,
                      {Site("A1", "1"), Site("A2", "3"), Site("A3", "1"), NewSite("A4"), Site("A5", "1"),
                       Site("A6", "1"), NewSite("A7")},
                      {.icount = 7}));
}

TEST(CopySiteFull, FoldsItsCountersBeforeItSweeps) {
  CopyFixture copy("1");
  Arrange(copy, FullPass(kSites, kLocations, {Site("A1", "1"), NewSite("A2")}));
  copy.database.FailOn("DELETE FROM Site", kFailure);

  EXPECT_EQ(copy.CopyTable(1, "Site", 1), CopyResult::Failed);

  EXPECT_EQ(copy.Counters(), "ucount 0, icount 2, dcount 0");
}

TEST(CopySiteFull, SetsTheCountOfInsertedRowsAloneTo0) {
  OneSite site;
  site.copy.SetCounters(/*icount=*/7, /*ucount=*/5, /*dcount=*/3);

  site.copy.CopySite("Site", 1);

  EXPECT_EQ(site.copy.Counters(), "ucount 0, icount 6, dcount 3");  // what an earlier pass updated is folded in
  EXPECT_EQ(site.copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  6\"\r\n");
}

TEST(CopySiteFull, CountsTheSameKeyTwice) {
  ExpectPass(FullPass(kSites, kLocations, {NewSite("A1"), Site("A1", "1")}, {.icount = 2}));
}

TEST(CopySiteFull, WritesTheKeyInTheErpsOwnCase) {
  // A database that compares without case finds AMS01.
  ExpectPass(FullPass(kSites, kLocations, {Site("ams01", "1")}, {.icount = 1}));
}

TEST(CopySiteFull, EmptiesTheTableWhenTheListingHasNoRows) {
  ExpectPass(FullPass(kSites, kLocations));
}

TEST(CopySiteFull, LeavesTheTableAloneWhenTheListingGivesNothing) {
  for (const Value& nothing : {Value(Object()), Value(), Value(Null())}) {
    SCOPED_TRACE(Shown(nothing));
    OneSite site;
    site.locations->Answers("List", nothing);

    EXPECT_EQ(site.copy.CopyTable(1, "Site", 1), CopyResult::Done);

    EXPECT_EQ(site.copy.JournalWithout({"query", "close", "event", "sql UPDATE tstables SET in_use"}),
              UpTo("manager.List", TraceOf(kOneSite)) + "manager.Close()\n");
    EXPECT_EQ(site.copy.Counters(), "ucount 0, icount 0, dcount 0");
    EXPECT_EQ(site.copy.RunLog(), "");
  }
}

TEST(CopySiteFull, TakesANullAnswerOfTheEnumerationForItsEnd) {
  OneSite site;
  const auto rows = site.copy.components.Make("rows");
  rows->Answers("hasMoreElements", Null());
  site.locations->Answers("List", Object(rows));

  site.copy.CopySite("Site", 1);

  EXPECT_EQ(site.copy.journal.Take(), TraceOf(FullPass(kSites, kLocations)));
}

TEST(CopySiteFull, UsesTheManagerWithoutASession) {
  OneSite site;
  site.copy.process.ErpSession.Release();

  site.copy.CopySite("Site", 1);

  EXPECT_EQ(site.copy.journal.Take(), Replaced(TraceOf(kOneSite), "session.addManager(&<manager>)\n", ""));
}

TEST(CopySiteFull, TakesTheNewUpdateTimeBetweenTheListingAndItsFirstRow) {
  OneSite site;
  const auto now = site.copy.components.Register("java:java.util.Date", "date");
  now->Answers("getMinutes", 11).Answers("getTimeZoneOffset", 0).Answers("setMinutes", Value());
  now->Answers("getYear", 104).Answers("getMonth", 1).Answers("getDate", 29);
  now->Answers("getHours", 23).Answers("getSeconds", 59);

  site.copy.CopySite("Site", 1);

  const Text listed = UpTo("manager.List", TraceOf(kOneSite));
  EXPECT_EQ(site.copy.journal.Take(),
            listed +
                "create java:java.util.Date\n"
                "date.getMinutes()\n"
                "date.getTimeZoneOffset()\n"
                "date.setMinutes(i32(11))\n"
                "date.getYear()\n"
                "date.getMonth()\n"
                "date.getDate()\n"
                "date.getHours()\n"
                "date.getMinutes()\n"
                "date.getSeconds()\n" +
                Replaced(TraceOf(kOneSite).substr(listed.size()), "2004-01-31 10:11:12", "2004-02-29 23:11:59"));
}

TEST(CopySiteFull, StoresNoUpdateTimeWhenTheDateCannotBeRead) {
  OneSite site;
  site.copy.components.FailCreation("java:java.util.Date", kFailure);

  site.copy.CopySite("Site", 1);

  EXPECT_EQ(site.copy.JournalWithout({"create java"}),
            Replaced(TraceOf(kOneSite), "CONVERT(DATETIME,'2004-01-31 10:11:12',120)", "NULL"));
}

TEST(CopySiteFull, InsertsTheUpdateTimeOfATableWithoutAState) {
  OneSite site;
  site.copy.database.AffectNext({0});

  site.copy.CopySite("Site", 1);

  EXPECT_EQ(site.copy.journal.Take(),
            UpTo("sql DELETE", TraceOf(kOneSite)) +
                "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
                "N'Site' -> 0\n"
                "sql INSERT INTO tstables(tablename,lutm, reqd, in_use) VALUES(N'Site',CONVERT(DATETIME,'2004-01-31 "
                "10:11:12',120), 0, 0) -> 1\n"
                "manager.Close()\n");
}

}  // namespace
}  // namespace zenqay
