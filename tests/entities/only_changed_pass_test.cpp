// The only-changed pass, told on the sites of generation 1: which period it asks for, what it makes of each kind of
// change, and what becomes of the table when a step fails.
#include "entities/sites.h"

namespace zenqay {
namespace {

const Text kRaised = " Data copy: Site - Only Changed: Sites could not be copied from the ERP (generation 1).";

/// A deletion of one site.
ListedRow Deleted(const Value& action, const Text& key, const Text& literal) {
  return {{{"ActionType", action}, {"Location", key}}, {"getLocation", "sql DELETE FROM Site WHERE SITE=" + literal}};
}

/// A change of one site that has its key alone, which the database answers with the count.
ListedRow Changed(const Value& action, const Text& key, const Text& count = "1") {
  return {{{"ActionType", action}, {"Location", key}},
          {"getLocation hasDescription hasCustomer getLocation",
           "sql UPDATE Site SET SITE = N'" + key + "', upd_flag = 0 WHERE SITE =N'" + key + "' -> " + count}};
}

/// A change of a site that the table does not have.
ListedRow Missing(const Value& action, const Text& key) {
  ListedRow site = Changed(action, key, "0");
  site.steps.push_back("hasDescription hasCustomer getLocation hasDescription hasCustomer");
  site.steps.push_back("sql INSERT INTO Site (SITE ,upd_flag )VALUES (N'" + key + "',0) -> 1");
  return site;
}

/// The ERP has two changes: a site that is gone, and one that the local table has.
const Pass kTwoChanges =
    ChangedPass(kSites, kLocations, {Deleted("D", "A1", "N'A1'"), Changed("U", "A2")}, {.ucount = 1, .dcount = 1});

/// A job of that ERP, whose parts a test can make fail.
struct TwoChanges {
  CopyFixture copy;
  std::shared_ptr<ScriptedObject> locations = Arrange(copy, kTwoChanges);

  Text Raises() {
    return Raised([&] { copy.CopySite("Site", 2); });
  }

  /// The object that says which period is asked for.
  ScriptedObject& Period() {
    const Object period = copy.components.Create("NetListSelectionCriteria.NetListPeriod");
    copy.journal.Take();
    return dynamic_cast<ScriptedObject&>(*period.component());
  }
};

TEST(CopySiteChanged, FailsWhenItsLastUpdateTimeCannotBeRead) {
  TwoChanges site;
  site.copy.database.FailOn("SELECT * FROM tstables", RuntimeError(-2147467259, "a driver", "the line is dead"),
                            {{-2147467259, "a driver", "the line is dead"}});

  EXPECT_EQ(site.Raises(), "-2147467159" + kRaised);

  EXPECT_EQ(site.copy.journal.Take(), UpTo("query", TraceOf(kTwoChanges)));
  EXPECT_EQ(site.copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"a driver\",-2147467259,\"the line is dead\"\r\n"
            "\"a driver\",\"the line is dead\"\r\n");
}

TEST(CopySiteChanged, FailsAtTheFirstUseOfAListingThatGivesNothing) {
  for (const Value& nothing : {Value(Object()), Value(), Value(Null())}) {
    SCOPED_TRACE(Shown(nothing));
    TwoChanges site;
    site.locations->Answers("NetListLocations", nothing);

    EXPECT_EQ(site.Raises(), "191" + kRaised);

    EXPECT_EQ(site.copy.journal.Take(), UpTo("manager.NetListLocations", TraceOf(kTwoChanges)));
    EXPECT_EQ(site.copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Object variable not set\"\r\n");
  }
}

TEST(CopySiteChanged, FailsAtAnActionTypeAKeyOrAFieldThatIsNullWith194) {
  const struct {
    RowFields fields;
    Text lastLine;
  } cases[] = {
      {{{"ActionType", Null()}}, "row1.getActionType"},
      {{{"ActionType", "D"}, {"Location", Null()}}, "row1.getLocation"},
      {{{"ActionType", "U"}, {"Location", Null()}}, "row1.getLocation"},
  };
  for (const auto& [fields, lastLine] : cases) {
    SCOPED_TRACE(lastLine);
    CopyFixture copy("1");
    Arrange(copy, ChangedPass(kSites, kLocations, {{fields, {}}}));

    EXPECT_EQ(Raised([&] { copy.CopySite("Site", 2); }), "194" + kRaised);

    EXPECT_EQ(copy.journal.Take(), UpTo(lastLine, TraceOf(kTwoChanges)));
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Invalid use of Null: " +
                  lastLine.substr(lastLine.find('.') + 1) + "\"\r\n");
  }
}

TEST(CopySiteChanged, FailsWhenAnUpdateTouchesMoreRowsThan16BitsHold) {
  CopyFixture copy("1");
  Arrange(copy, ChangedPass(kSites, kLocations, {Deleted("D", "A1", "N'A1'"), Changed("U", "A2", "40000")}));

  EXPECT_EQ(Raised([&] { copy.CopySite("Site", 2); }), "106" + kRaised);

  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 1");
}

TEST(CopySiteChanged, LeavesItsFailurePathAtOnceWhenTheRunLogCannotBeWritten) {
  TwoChanges site;
  site.copy.LoseRunLog();

  EXPECT_EQ(site.Raises(), "76 ZenqayDBSync: Path not found: C:\\no-such-directory\\run.log");

  EXPECT_EQ(site.copy.journal.Take(), TraceOf(kTwoChanges));  // the update time has moved on
}

TEST(CopySiteChanged, RaisesOverflowWhenItsNumberHasNoRoomFor100More) {
  const struct {
    std::int32_t number;
    Text raised;
  } cases[] = {{2'147'483'547, "2147483647" + kRaised}, {2'147'483'548, "6 ZenqayDBSync: Overflow"}};
  for (const auto& [number, raised] : cases) {
    TwoChanges site;
    site.locations->Fails("NetListLocations", RuntimeError(number, "the component", "it broke"));

    EXPECT_EQ(site.Raises(), raised);

    EXPECT_EQ(site.copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"the component\",\"it broke: NetListLocations\"\r\n");
  }
}

TEST(CopySiteChanged, DeletesOnATrimmedCapitalDAndAppliesEveryOtherChange) {
  for (const Value& action : {Value("D"), Value(" D"), Value("D  "), Value("  D ")}) {
    SCOPED_TRACE(Shown(action));
    ExpectPass(ChangedPass(kSites, kLocations, {Deleted(action, "A1", "N'A1'")}, {.dcount = 1}));
  }
  for (const Value& action : {Value("d"), Value("DD"), Value("\tD"), Value("I"), Value("U"), Value(""), Value(" "),
                              Value("D."), Value("N"), Value("Δ"), Value(), Value(std::int16_t{4})}) {
    SCOPED_TRACE(Shown(action));
    ExpectPass(ChangedPass(kSites, kLocations, {Changed(action, "A1")}, {.ucount = 1}));
  }
}

TEST(CopySiteChanged, CreatesTheRowThatAChangeIsAboutWhenItIsMissing) {
  for (const char* action : {"I", "U", ""}) {
    ExpectPass(ChangedPass(kSites, kLocations, {Missing(action, "A1")}, {.icount = 1}));
  }
}

/// The job does not ask how many rows a deletion touched.
TEST(CopySiteChanged, CountsEveryDeletionWhetherARowWasThereOrNot) {
  ExpectPass(ChangedPass(kSites, kLocations,
                         {Deleted("D", "A1", "N'A1'"), Deleted("D", "A1", "N'A1'"), Deleted("D", "O'1", "N'O''1'")},
                         {.dcount = 3}));
}

TEST(CopySiteChanged, TakesTheChangesOfOneKeyInTheOrderOfTheListing) {
  ExpectPass(ChangedPass(kSites, kLocations, {Changed("U", "A1"), Deleted("D", "A1", "N'A1'"), Missing("I", "A1")},
                         {.ucount = 1, .icount = 1, .dcount = 1}));
}

TEST(CopySiteChanged, MovesTheUpdateTimeOnAndReportsZeroWhenNothingChanged) {
  ExpectPass(ChangedPass(kSites, kLocations));
}

TEST(CopySiteChanged, TakesANullAnswerOfTheEnumerationForItsEnd) {
  TwoChanges site;
  const auto rows = site.copy.components.Make("rows");
  rows->Answers("hasMoreElements", Null());
  site.locations->Answers("NetListLocations", Object(rows));

  site.copy.CopySite("Site", 2);

  EXPECT_EQ(site.copy.journal.Take(), TraceOf(ChangedPass(kSites, kLocations)));
}

TEST(CopySiteChanged, UsesTheManagerWithoutASession) {
  TwoChanges site;
  site.copy.process.ErpSession.Release();

  site.copy.CopySite("Site", 2);

  EXPECT_EQ(site.copy.journal.Take(), Replaced(TraceOf(kTwoChanges), "session.addManager(&<manager>)\n", ""));
}

TEST(CopySiteChanged, TakesTheStartOfItsPeriodBeforeItsEnd) {
  CopyFixture copy("1");
  Arrange(copy, ChangedPass(kSites, kLocations));
  const auto from = copy.components.Make("from");
  const auto to = copy.components.Make("to");
  for (const auto& date : {from, to}) {
    for (const char* set : {"setDate", "setmonth", "SetYear", "setHours", "setMinutes", "setSeconds"}) {
      date->Answers(set, Value());
    }
    date->Answers("getTimeZoneOffset", 0).Answers("getYear", 104).Answers("getMonth", 0).Answers("getDate", 31);
    date->Answers("getHours", 10).Answers("getMinutes", 11).Answers("getSeconds", 12);
  }
  copy.components.RegisterInTurn("java:java.util.Date", {from, to});
  copy.process.ProductId = "";

  copy.CopySite("Site", 2);

  EXPECT_EQ(copy.JournalWithout({"create K", "create N", "session", "manager", "parameter", "input", "output", "rows",
                                 "criteria.setNetListI", "criteria.setNetListO", "sql"}),
            "create java:java.util.Date\n"
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "from.getTimeZoneOffset()\n"
            "from.setDate(i32(1))\n"
            "from.setmonth(i32(0))\n"
            "from.SetYear(i32(70))\n"
            "close recordset\n"
            "create java:java.util.Date\n"
            "to.setDate(i32(31))\n"
            "to.setmonth(i32(0))\n"
            "to.SetYear(i32(104))\n"
            "to.setHours(i32(10))\n"
            "to.setMinutes(i32(11))\n"
            "to.setSeconds(i32(12))\n"
            "period.setFrom(<from>)\n"
            "period.setTo(<to>)\n"
            "criteria.setNetListPeriod(&<period>)\n"
            "to.getYear()\n"
            "to.getMonth()\n"
            "to.getYear()\n"
            "to.getYear()\n"
            "to.getMonth()\n"
            "to.getDate()\n"
            "to.getHours()\n"
            "to.getMinutes()\n"
            "to.getSeconds()\n");
}

/// Asks for the changes of a table with this state, and gives the period that the listing was asked for.
Text PeriodAskedFor(const TableRow& state) {
  TwoChanges site;
  site.copy.SetState(state);
  site.copy.platform.now = DateTime::FromParts({2004, 2, 29, 23, 59, 58});
  Text period;
  ScriptedObject& asked = site.Period();
  for (const char* end : {"setFrom", "setTo"}) {
    asked.Does(end, [&period, end](Arguments arguments) {
      const Object date = arguments[0].value().AsObject();
      period += Text(end) + " " + date.Call("toLocaleString").AsText() + "\n";
      return Value();
    });
  }

  site.copy.CopySite("Site", 2);

  return period;
}

TEST(CopySiteChanged, AsksForTheChangesFromTheLastUpdateTimeUpToNow) {
  const DateTime lutm = DateTime::FromParts({2003, 12, 31, 23, 0, 1});

  EXPECT_EQ(PeriodAskedFor({{"in_use", 0}, {"lutm", lutm}}),
            "setFrom Dec 31, 2003 11:00:01 PM\n"
            "setTo Feb 29, 2004 11:59:58 PM\n");
}

/// The floor keeps the time of day of the date object, which stands at 10:11:12.
TEST(CopySiteChanged, AsksForEveryChangeSince1970WhenTheTableHasNoUpdateTime) {
  EXPECT_EQ(PeriodAskedFor({{"in_use", 0}, {"lutm", Null()}}),
            "setFrom Jan 1, 1970 10:11:12 AM\n"
            "setTo Feb 29, 2004 11:59:58 PM\n");
}

TEST(CopySiteChanged, StoresTheEndOfThePeriodAlthoughTheListingTakesItsTime) {
  Pass slow = kTwoChanges;
  slow.arrange = [](CopyFixture& copy, ScriptedObject& locations) {
    const Value listed = locations.Call("List", {});
    copy.journal.Take();
    locations.Does("NetListLocations", [&copy, listed](Arguments) {
      copy.platform.now = DateTime::FromParts({2004, 1, 31, 11, 0, 0});
      copy.components.nowMilliseconds += 2928000.0;
      return listed;
    });
  };
  CopyFixture copy("1");
  Arrange(copy, slow);

  copy.CopySite("Site", 2);

  EXPECT_EQ(copy.journal.Take(), TraceOf(kTwoChanges));
}

TEST(CopySiteChanged, KeepsTheUpdateTimeAndReportsItsCountsWhenTheEndOfThePeriodIsNoDate) {
  TwoChanges site;
  site.copy.platform.now = DateTime::FromParts({1900, 1, 31, 10, 11, 12});  // counts as no date

  site.copy.CopySite("Site", 2);

  const Text whole = TraceOf(kTwoChanges);
  EXPECT_EQ(site.copy.journal.Take(), whole.substr(0, whole.find("sql UPDATE tstables SET lutm")));
  EXPECT_EQ(site.copy.RunLog(),
            "Date: 1/31/1900 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  0\"\r\n"
            "\"Rows updated: Site -  1\"\r\n"
            "\"Rows deleted: Site -  1\"\r\n");
}

TEST(CopySiteChanged, InsertsTheUpdateTimeOfATableWithoutAState) {
  TwoChanges site;
  site.copy.database.AffectNext({0});

  site.copy.CopySite("Site", 2);

  const Text whole = TraceOf(kTwoChanges);
  EXPECT_EQ(site.copy.journal.Take(),
            whole.substr(0, whole.find("sql UPDATE tstables SET lutm")) +
                "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
                "N'Site' -> 0\n"
                "sql INSERT INTO tstables(tablename,lutm, reqd, in_use) VALUES(N'Site',CONVERT(DATETIME,'2004-01-31 "
                "10:11:12',120), 0, 0) -> 1\n");
}

}  // namespace
}  // namespace zenqay
