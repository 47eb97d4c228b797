// The only-changed pass, told on the sites of generation 1: which period it asks for, what it makes of each kind of
// change, and what becomes of the table when a step fails.
#include <gtest/gtest.h>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"

namespace zenqay {
namespace {

constexpr const char* kLocations = "Kv40QTMtssmaLocations.LocationsManager";
constexpr const char* kCriteria = "NetListSelectionCriteria.NetListSelectionCriteria";
constexpr const char* kInput = "NetListSelectionCriteria.NetListIn";
constexpr const char* kOutput = "NetListSelectionCriteria.NetListOut";
constexpr const char* kPeriod = "NetListSelectionCriteria.NetListPeriod";
constexpr const char* kParameter = "NetListSelectionCriteria.NetListParameter";

const RuntimeError kFailure(5000, "the component", "it broke");

/// A job whose ERP has two changes, a site that is gone and one that the local table has, and whose parts a test can
/// make fail.
struct TwoChanges {
  CopyFixture copy;
  std::shared_ptr<ScriptedObject> gone = copy.components.Make("gone");
  std::shared_ptr<ScriptedObject> kept = copy.components.Make("kept");
  std::shared_ptr<ScriptedObject> rows = copy.components.MakeEnumeration("rows", {Object(gone), Object(kept)});
  std::shared_ptr<ScriptedObject> locations = copy.AddManager(kLocations, "locations");

  TwoChanges() {
    gone->Answers("getActionType", "D").Answers("getLocation", "A1");
    kept->Answers("getActionType", "U").Answers("getLocation", "A2").Answers("hasDescription", true);
    kept->Answers("getDescription", "North").Answers("hasCustomer", true).Answers("getCustomer", "C7");
    locations->Answers("NetListLocations", Object(rows));
  }

  ScriptedObject& session() { return dynamic_cast<ScriptedObject&>(*copy.process.ErpSession.component()); }

  /// One of the objects that the fixture made creatable.
  ScriptedObject& Part(const Text& classId) {
    const Object part = copy.components.Create(classId);
    copy.journal.Take();
    return dynamic_cast<ScriptedObject&>(*part.component());
  }
};

/// What the job says when nothing fails, up to the end of the pass.
constexpr const char* kWholePass =
    "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
    "close recordset\n"
    "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
    "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
    "create Kv40QTMtssmaLocations.LocationsManager\n"
    "session.addManager(&<locations>)\n"
    "create NetListSelectionCriteria.NetListSelectionCriteria\n"
    "create NetListSelectionCriteria.NetListIn\n"
    "create NetListSelectionCriteria.NetListOut\n"
    "create NetListSelectionCriteria.NetListPeriod\n"
    "create NetListSelectionCriteria.NetListParameter\n"
    "locations.Initialize(&\"100\")\n"
    "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
    "close recordset\n"
    "period.setFrom(<object>)\n"
    "period.setTo(<object>)\n"
    "criteria.setNetListPeriod(&<period>)\n"
    "parameter.setFieldName(\"cloc\")\n"
    "parameter.setFrom(\"\")\n"
    "parameter.setTo(high(10))\n"
    "input.addNetListParameter(&<parameter>)\n"
    "criteria.setNetListIn(&<input>)\n"
    "output.addFieldNameWithoutOld(\"cloc\")\n"
    "output.addFieldNameWithoutOld(\"cuno\")\n"
    "output.addFieldNameWithoutOld(\"desc\")\n"
    "criteria.setNetListOut(&<output>)\n"
    "locations.NetListLocations(&\"tssma110\", &<criteria>)\n"
    "rows.hasMoreElements()\n"
    "rows.nextElement()\n"
    "gone.getActionType()\n"
    "gone.getLocation()\n"
    "sql DELETE FROM Site WHERE SITE=N'A1'\n"
    "rows.hasMoreElements()\n"
    "rows.nextElement()\n"
    "kept.getActionType()\n"
    "kept.getLocation()\n"
    "kept.hasDescription()\n"
    "kept.getDescription()\n"
    "kept.hasCustomer()\n"
    "kept.getCustomer()\n"
    "kept.getLocation()\n"
    "sql UPDATE Site SET SITE = N'A2', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A2' -> 1\n"
    "rows.hasMoreElements()\n"
    "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> 1\n";

constexpr const char* kReleased = "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n";

/// The pass up to the first line that begins like this, that line included.
Text PassUpTo(const Text& beginning) {
  const Text all = kWholePass;
  return all.substr(0, all.find('\n', all.find("\n" + beginning) + 1) + 1);
}

/// One step of the pass that fails, and how the journal's line of that step begins.
struct FailingStep {
  const char* name;
  std::function<void(TwoChanges&)> breakIt;
  const char* lastLine;
};

void PrintTo(const FailingStep& step, std::ostream* out) {
  *out << step.name;
}

/// A step that fails by a call on one of the objects that are created by class id.
FailingStep FailingCall(const char* name, const char* classId, const char* operation, const char* lastLine) {
  return {name, [=](TwoChanges& site) { site.Part(classId).Fails(operation, kFailure); }, lastLine};
}

FailingStep FailingCreation(const char* name, const char* classId, const char* lastLine) {
  return {name, [=](TwoChanges& site) { site.copy.components.FailCreation(classId, kFailure); }, lastLine};
}

FailingStep FailingStatement(const char* name, const char* part, const char* lastLine) {
  return {name, [=](TwoChanges& site) { site.copy.database.FailOn(part, kFailure); }, lastLine};
}

class CopySiteChangedFailing : public testing::TestWithParam<FailingStep> {};

TEST_P(CopySiteChangedFailing, LeavesTheManagerAloneAndReleasesTheTable) {
  TwoChanges site;
  GetParam().breakIt(site);

  const CopyResult result = site.copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(site.copy.journal.Take(), PassUpTo(GetParam().lastLine) + kReleased);
  EXPECT_EQ(site.copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"the component\",\"it broke\"\r\n"
            "\"Data copy: Site - Only Changed\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
}

TEST_P(CopySiteChangedFailing, RaisesTheNumberPlus100WithThePassAndTheErp) {
  TwoChanges site;
  GetParam().breakIt(site);

  const Text raised = Raised([&] { site.copy.CopySite("Site", 2); });

  EXPECT_EQ(raised, "5100 Data copy: Site - Only Changed: Sites could not be copied from the ERP (generation 1).");
}

INSTANTIATE_TEST_SUITE_P(
    AtTheCriteria, CopySiteChangedFailing,
    testing::Values(
        FailingStep{"AddManager", [](TwoChanges& site) { site.session().Fails("addManager", kFailure); }, "session."},
        FailingCreation("CreationOfTheCriteria", kCriteria, "create NetListSelectionCriteria.NetListSelectionCriteria"),
        FailingCreation("CreationOfTheInput", kInput, "create NetListSelectionCriteria.NetListIn"),
        FailingCreation("CreationOfTheOutput", kOutput, "create NetListSelectionCriteria.NetListOut"),
        FailingCreation("CreationOfThePeriod", kPeriod, "create NetListSelectionCriteria.NetListPeriod"),
        FailingCreation("CreationOfTheParameter", kParameter, "create NetListSelectionCriteria.NetListParameter"),
        FailingStep{"Initialize", [](TwoChanges& site) { site.locations->Fails("Initialize", kFailure); },
                    "locations.Initialize"},
        FailingCall("StartOfThePeriod", kPeriod, "setFrom", "period.setFrom"),
        FailingCall("EndOfThePeriod", kPeriod, "setTo", "period.setTo"),
        FailingCall("PeriodIntoTheCriteria", kCriteria, "setNetListPeriod", "criteria.setNetListPeriod"),
        FailingCall("FieldName", kParameter, "setFieldName", "parameter.setFieldName"),
        FailingCall("LowestValue", kParameter, "setFrom", "parameter.setFrom"),
        FailingCall("HighestValue", kParameter, "setTo", "parameter.setTo"),
        FailingCall("ParameterIntoTheInput", kInput, "addNetListParameter", "input.addNetListParameter"),
        FailingCall("InputIntoTheCriteria", kCriteria, "setNetListIn", "criteria.setNetListIn"),
        FailingCall("OutputField", kOutput, "addFieldNameWithoutOld", "output.addFieldNameWithoutOld"),
        FailingCall("OutputIntoTheCriteria", kCriteria, "setNetListOut", "criteria.setNetListOut"),
        FailingStep{"Listing", [](TwoChanges& site) { site.locations->Fails("NetListLocations", kFailure); },
                    "locations.NetListLocations"}),
    [](const auto& step) { return step.param.name; });

INSTANTIATE_TEST_SUITE_P(
    AtTheChanges, CopySiteChangedFailing,
    testing::Values(
        FailingStep{"HasMoreElements", [](TwoChanges& site) { site.rows->Fails("hasMoreElements", kFailure); },
                    "rows.hasMoreElements"},
        FailingStep{"NextElement", [](TwoChanges& site) { site.rows->Fails("nextElement", kFailure); },
                    "rows.nextElement"},
        FailingStep{"ActionType", [](TwoChanges& site) { site.gone->Fails("getActionType", kFailure); },
                    "gone.getActionType"},
        FailingStep{"KeyOfTheDeletion", [](TwoChanges& site) { site.gone->Fails("getLocation", kFailure); },
                    "gone.getLocation"},
        FailingStatement("Deletion", "DELETE FROM Site", "sql DELETE"),
        FailingStep{"Key", [](TwoChanges& site) { site.kept->Fails("getLocation", kFailure); }, "kept.getLocation"},
        FailingStep{"PresenceOfTheDescription", [](TwoChanges& site) { site.kept->Fails("hasDescription", kFailure); },
                    "kept.hasDescription"},
        FailingStep{"Description", [](TwoChanges& site) { site.kept->Fails("getDescription", kFailure); },
                    "kept.getDescription"},
        FailingStep{"PresenceOfTheCustomer", [](TwoChanges& site) { site.kept->Fails("hasCustomer", kFailure); },
                    "kept.hasCustomer"},
        FailingStep{"Customer", [](TwoChanges& site) { site.kept->Fails("getCustomer", kFailure); },
                    "kept.getCustomer"},
        FailingStatement("Update", "UPDATE Site SET SITE", "sql UPDATE Site SET SITE"),
        FailingStatement("LastUpdateTime", "SET lutm", "sql UPDATE tstables SET lutm")),
    [](const auto& step) { return step.param.name; });

TEST(CopySiteChanged, SaysItsWholePassWhenNothingFails) {
  TwoChanges site;

  const CopyResult result = site.copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(site.copy.journal.Take(), Text(kWholePass) + "sql UPDATE STATISTICS Site\n" + kReleased);
}

TEST(CopySiteChanged, NamesNoErpWhenTheManagerCannotBeCreated) {
  TwoChanges site;
  site.copy.components.FailCreation(kLocations, kFailure);

  const CopyResult result = site.copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(site.copy.journal.Take(), PassUpTo("create Kv40") + kReleased);
  EXPECT_EQ(site.copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"the component\",\"it broke\"\r\n"
            "\"Data copy: Site - Only Changed\",\"Sites could not be copied from .\"\r\n");
}

TEST(CopySiteChanged, FailsWhenItsLastUpdateTimeCannotBeRead) {
  TwoChanges site;
  site.locations->Does("Initialize", [&](Arguments) {
    site.copy.database.FailOn("SELECT * FROM tstables", RuntimeError(-2147467259, "a driver", "the line is dead"),
                              {{-2147467259, "a driver", "the line is dead"}});
    return Value();
  });

  const CopyResult result = site.copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(site.copy.journal.Take(),
            PassUpTo("locations.Initialize") + "query SELECT * FROM tstables WHERE tablename = N'Site'\n" + kReleased);
  EXPECT_EQ(site.copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"a driver\",-2147467259,\"the line is dead\"\r\n"
            "\"a driver\",\"the line is dead\"\r\n"
            "\"Data copy: Site - Only Changed\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
}

TEST(CopySiteChanged, FailsWhenAnInsertFails) {
  TwoChanges site;
  site.copy.database.AffectNext({1, 0});
  site.copy.database.FailOn("INSERT INTO Site", kFailure);

  const CopyResult result = site.copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(site.copy.JournalWithout({"rows", "gone", "kept", "create", "period", "parameter", "input", "output",
                                      "criteria", "query", "close", "event", "session", "locations"}),
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "sql DELETE FROM Site WHERE SITE=N'A1'\n"
            "sql UPDATE Site SET SITE = N'A2', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE "
            "=N'A2' -> 0\n"
            "sql INSERT INTO Site (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'A2',N'North',N'C7',0) -> 1\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(site.copy.Counters(), "ucount 0, icount 0, dcount 1");
}

TEST(CopySiteChanged, FailsAtTheFirstUseOfAListingThatGivesNothing) {
  TwoChanges site;
  site.locations->Answers("NetListLocations", Object());

  const CopyResult result = site.copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(site.copy.journal.Take(), PassUpTo("locations.NetListLocations") + kReleased);
  EXPECT_EQ(site.copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Object variable not set\"\r\n"
            "\"Data copy: Site - Only Changed\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
}

TEST(CopySiteChanged, FailsAtAnActionTypeAKeyOrAFieldThatIsNull) {
  struct Case {
    std::function<ScriptedObject&(TwoChanges&)> row;
    const char* operation;
    const char* lastLine;
  };
  const auto gone = [](TwoChanges& site) -> ScriptedObject& { return *site.gone; };
  const auto kept = [](TwoChanges& site) -> ScriptedObject& { return *site.kept; };
  const Case cases[] = {
      {gone, "getActionType", "gone.getActionType"}, {gone, "getLocation", "gone.getLocation"},
      {kept, "getLocation", "kept.getLocation"},     {kept, "getDescription", "kept.getDescription"},
      {kept, "getCustomer", "kept.getCustomer"},
  };
  for (const auto& [row, operation, lastLine] : cases) {
    SCOPED_TRACE(lastLine);
    TwoChanges site;
    row(site).Answers(operation, Null());

    const CopyResult result = site.copy.CopyTable(1, "Site", 2);

    EXPECT_EQ(result, CopyResult::Failed);
    EXPECT_EQ(site.copy.journal.Take(), PassUpTo(lastLine) + kReleased);
    EXPECT_EQ(site.copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Invalid use of Null\"\r\n"
              "\"Data copy: Site - Only Changed\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
  }
}

TEST(CopySiteChanged, FailsWhenAnUpdateTouchesMoreRowsThan16BitsHold) {
  TwoChanges site;
  site.copy.database.AffectNext({1, 40'000});

  const CopyResult result = site.copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(site.copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Overflow\"\r\n"
            "\"Data copy: Site - Only Changed\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
  EXPECT_EQ(site.copy.Counters(), "ucount 0, icount 0, dcount 1");
}

TEST(CopySiteChanged, LeavesItsFailurePathAtOnceWhenTheRunLogCannotBeWritten) {
  TwoChanges site;
  site.copy.process.LogFilePath = "C:\\no\\such\\directory\\run.log";

  const Text raised = Raised([&] { site.copy.CopyTable(1, "Site", 2); });

  EXPECT_EQ(raised, "76 ZenqayDBSync: Path not found: C:\\no\\such\\directory\\run.log");
  EXPECT_EQ(site.copy.journal.Take(), kWholePass);  // the table stays taken, its update time has moved on
}

TEST(CopySiteChanged, RaisesThePlatformsOwnErrorsWith100More) {
  TwoChanges overflowing;
  overflowing.copy.database.AffectNext({40'000});
  TwoChanges withNull;
  withNull.kept->Answers("getCustomer", Null());
  TwoChanges withoutListing;
  withoutListing.locations->Answers("NetListLocations", Object());
  CopyFixture withoutManager("2");
  withoutManager.AddManager(kLocations, "locations");

  EXPECT_EQ(Raised([&] { overflowing.copy.CopySite("Site", 2); }),
            "106 Data copy: Site - Only Changed: Sites could not be copied from the ERP (generation 1).");
  EXPECT_EQ(Raised([&] { withNull.copy.CopySite("Site", 2); }),
            "194 Data copy: Site - Only Changed: Sites could not be copied from the ERP (generation 1).");
  EXPECT_EQ(Raised([&] { withoutListing.copy.CopySite("Site", 2); }),
            "191 Data copy: Site - Only Changed: Sites could not be copied from the ERP (generation 1).");
  EXPECT_EQ(Raised([&] { withoutManager.CopySite("Site", 2); }),
            "191 Data copy: Site - Only Changed: Sites could not be copied from .");
}

TEST(CopySiteChanged, RaisesOverflowWhenItsNumberHasNoRoomFor100More) {
  struct Case {
    std::int32_t number;
    const char* secondRecord;
  };
  const Case cases[] = {
      {2'147'483'547,
       "\"Data copy: Site - Only Changed\",\"Sites could not be copied from the ERP (generation 1).\"\r\n"},
      {2'147'483'548, "\"ZenqayDBSync\",\"Overflow\"\r\n"},
  };
  for (const auto& [number, secondRecord] : cases) {
    SCOPED_TRACE(number);
    TwoChanges site;
    site.rows->Fails("hasMoreElements", RuntimeError(number, "the component", "it broke"));

    const CopyResult result = site.copy.CopyTable(1, "Site", 2);

    EXPECT_EQ(result, CopyResult::Failed);
    EXPECT_EQ(site.copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"the component\",\"it broke\"\r\n" +
                  Text(secondRecord));
  }
}

TEST(CopySiteChanged, AppliesEveryChangeThatIsNoDeletion) {
  struct Case {
    Value actionType;
    bool deletes;
  };
  const Case cases[] = {
      {"D", true},  {" D", true},  {"D  ", true},    {"  D ", true},
      {"d", false}, {"DD", false}, {"\tD", false},   {"I", false},
      {"U", false}, {"", false},   {" ", false},     {"D.", false},
      {"N", false}, {"Δ", false},  {Value(), false}, {std::int16_t{4}, false},
  };
  for (const auto& [actionType, deletes] : cases) {
    SCOPED_TRACE(Shown(actionType));
    CopyFixture copy("1");
    copy.AddManager(kLocations, "locations", {copy.RowWith({{"ActionType", actionType}, {"Location", "A1"}})});

    const CopyResult result = copy.CopyTable(1, "Site", 2);

    EXPECT_EQ(result, CopyResult::Done);
    EXPECT_EQ(copy.JournalWithout({"rows", "create", "period", "parameter", "input", "output", "criteria", "query",
                                   "close", "event", "session", "locations", "sql UPDATE tstables"}),
              deletes ? "row1.getActionType()\n"
                        "row1.getLocation()\n"
                        "sql DELETE FROM Site WHERE SITE=N'A1'\n"
                        "sql UPDATE STATISTICS Site\n"
                      : "row1.getActionType()\n"
                        "row1.getLocation()\n"
                        "row1.hasDescription()\n"
                        "row1.hasCustomer()\n"
                        "row1.getLocation()\n"
                        "sql UPDATE Site SET SITE = N'A1', upd_flag = 0 WHERE SITE =N'A1' -> 1\n"
                        "sql UPDATE STATISTICS Site\n");
    EXPECT_EQ(copy.Counters(), deletes ? "ucount 0, icount 0, dcount 1" : "ucount 1, icount 0, dcount 0");
  }
}

TEST(CopySiteChanged, CreatesTheRowThatAChangeIsAboutWhenItIsMissing) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations",
                  {copy.RowWith({{"ActionType", "U"}, {"Location", "A1"}, {"Customer", "C7"}})});
  copy.database.AffectNext({1, 0});

  const CopyResult result = copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.JournalWithout({"row", "create", "period", "parameter", "input", "output", "criteria", "query",
                                 "close", "event", "session", "locations", "sql UPDATE tstables"}),
            "sql UPDATE Site SET SITE = N'A1', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A1' -> 0\n"
            "sql INSERT INTO Site (SITE ,CUSTOMER,upd_flag )VALUES (N'A1',N'C7',0) -> 1\n"
            "sql UPDATE STATISTICS Site\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
}

/// The job does not ask how many rows a deletion touched.
TEST(CopySiteChanged, CountsEveryDeletionWhetherARowWasThereOrNot) {
  CopyFixture copy("1");
  copy.AddManager(
      kLocations, "locations",
      {copy.RowWith({{"ActionType", "D"}, {"Location", "A1"}}), copy.RowWith({{"ActionType", "D"}, {"Location", "A1"}}),
       copy.RowWith({{"ActionType", "D"}, {"Location", "O'1"}})});

  const CopyResult result = copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.JournalWithout({"row", "create", "period", "parameter", "input", "output", "criteria", "query",
                                 "close", "event", "session", "locations", "sql UPDATE tstables"}),
            "sql DELETE FROM Site WHERE SITE=N'A1'\n"
            "sql DELETE FROM Site WHERE SITE=N'A1'\n"
            "sql DELETE FROM Site WHERE SITE=N'O''1'\n"
            "sql UPDATE STATISTICS Site\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 3");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  0\"\r\n"
            "\"Rows deleted: Site -  3\"\r\n");
}

TEST(CopySiteChanged, TakesTheChangesOfOneKeyInTheOrderOfTheListing) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations",
                  {copy.RowWith({{"ActionType", "U"}, {"Location", "A1"}, {"Description", "North"}}),
                   copy.RowWith({{"ActionType", "D"}, {"Location", "A1"}}),
                   copy.RowWith({{"ActionType", "I"}, {"Location", "A1"}, {"Description", "South"}})});
  copy.database.AffectNext({1, 1, 0});

  const CopyResult result = copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.JournalWithout({"row", "create", "period", "parameter", "input", "output", "criteria", "query",
                                 "close", "event", "session", "locations", "sql UPDATE tstables"}),
            "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', upd_flag = 0 WHERE SITE =N'A1' -> 1\n"
            "sql DELETE FROM Site WHERE SITE=N'A1'\n"
            "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'South', upd_flag = 0 WHERE SITE =N'A1' -> 0\n"
            "sql INSERT INTO Site (SITE ,DESCRIPTION ,upd_flag )VALUES (N'A1',N'South',0) -> 1\n"
            "sql UPDATE STATISTICS Site\n");
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 1, dcount 1");
}

TEST(CopySiteChanged, MovesTheUpdateTimeOnAndReportsZeroWhenNothingChanged) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations");

  const CopyResult result = copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.JournalWithout({"create", "period", "parameter", "input", "output", "criteria"}),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "session.addManager(&<locations>)\n"
            "locations.Initialize(&\"100\")\n"
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "locations.NetListLocations(&\"tssma110\", &<criteria>)\n"
            "rows.hasMoreElements()\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> "
            "1\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  0\"\r\n");
}

TEST(CopySiteChanged, TakesANullAnswerOfTheEnumerationForItsEnd) {
  TwoChanges site;
  site.rows->Answers("hasMoreElements", Null());

  const CopyResult result = site.copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(site.copy.Counters(), "ucount 0, icount 0, dcount 0");
}

TEST(CopySiteChanged, UsesTheManagerWithoutASession) {
  TwoChanges site;
  site.copy.process.ErpSession.Release();

  const CopyResult result = site.copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(site.copy.journal.Take(), Replaced(kWholePass, "session.addManager(&<locations>)\n", "") +
                                          "sql UPDATE STATISTICS Site\n" + kReleased);
}

/// Asks for the changes of a table with this state, and gives the period that the listing was asked for.
Text PeriodAskedFor(const TableRow& state) {
  TwoChanges site;
  site.copy.SetState(state);
  site.copy.platform.now = DateTime::FromParts({2004, 2, 29, 23, 59, 58});
  Text period;
  ScriptedObject& asked = site.Part(kPeriod);
  for (const char* end : {"setFrom", "setTo"}) {
    asked.Does(end, [&period, end](Arguments arguments) {
      const Object date = arguments[0].value().AsObject();
      period += Text(end) + " " + date.Call("toLocaleString").AsText() + "\n";
      return Value();
    });
  }

  site.copy.CopyTable(1, "Site", 2);

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
  TwoChanges site;
  site.locations->Does("NetListLocations", [&](Arguments) {
    site.copy.platform.now = DateTime::FromParts({2004, 1, 31, 11, 0, 0});
    site.copy.components.nowMilliseconds += 2928000.0;
    return Value(Object(site.rows));
  });

  const CopyResult result = site.copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(site.copy.journal.Take(), Text(kWholePass) + "sql UPDATE STATISTICS Site\n" + kReleased);
}

TEST(CopySiteChanged, KeepsTheUpdateTimeAndReportsItsCountsWhenTheEndOfThePeriodIsNoDate) {
  TwoChanges site;
  site.copy.platform.now = DateTime::FromParts({1900, 1, 31, 10, 11, 12});  // counts as no date

  const CopyResult result = site.copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  const Text journal = site.copy.journal.Take();
  const Text applied = "rows.hasMoreElements()\n";
  EXPECT_EQ(journal.substr(journal.rfind(applied)),
            "rows.hasMoreElements()\n"
            "sql UPDATE STATISTICS Site\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(site.copy.RunLog(),
            "Date: 1/31/1900 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  0\"\r\n"
            "\"Rows updated: Site -  1\"\r\n"
            "\"Rows deleted: Site -  1\"\r\n");
}

TEST(CopySiteChanged, InsertsTheUpdateTimeOfATableWithoutAState) {
  TwoChanges site;
  site.copy.database.AffectNext({1, 1, 0});

  const CopyResult result = site.copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(site.copy.JournalWithout({"rows", "gone", "kept", "create", "period", "parameter", "input", "output",
                                      "criteria", "query", "close", "event", "session", "locations"}),
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "sql DELETE FROM Site WHERE SITE=N'A1'\n"
            "sql UPDATE Site SET SITE = N'A2', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE "
            "=N'A2' -> 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> "
            "0\n"
            "sql INSERT INTO tstables(tablename,lutm, reqd, in_use) VALUES(N'Site',CONVERT(DATETIME,'2004-01-31 "
            "10:11:12',120), 0, 0) -> 1\n"
            "sql UPDATE STATISTICS Site\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
}

}  // namespace
}  // namespace zenqay
