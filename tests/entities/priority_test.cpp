// Priority: its row operation and its two passes, under the three generations. The key is a number, asked for by a
// range of 16-bit integers, written bare and matched quoted.
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

constexpr const char* kPriorities1 = "Kv40QTMtssmaPriorities.PrioritiesManager";
constexpr const char* kPriorities3 = "Kv50QTMtcmcsPriorities.PrioritiesManager";
constexpr const char* kPriorities8 = "Kv61QTMtcmcsPriorities.PrioritiesManager";

const EntityCall kFullCopy = {&CopyFixture::CopyPriority, "Priority", 1};
const EntityCall kOnlyChanged = {&CopyFixture::CopyPriority, "Priority", 2};

const RowFields kEveryField = {{"Priority", std::int16_t{7}}, {"Description", "High"}};

EntityPass FullCopyUnder(const Text& generation, const Text& managerClass) {
  return {
      .generation = generation,
      .managerClass = managerClass,
      .managerName = "priorities",
      .rows = {kEveryField, {{"Priority", std::int16_t{999}}}},
      .counts = {1, 0, 1},
      .trace = "create " + managerClass + "\n" +
               "session.addManager(&<priorities>)\n"
               "priorities.Initialize(&\"100\")\n"
               "priorities.List(i16(0), i16(999))\n"
               "sql UPDATE Priority SET upd_flag = 1 \n"
               "rows.hasMoreElements()\n"
               "rows.nextElement()\n"
               "row1.getPriority()\n"
               "row1.hasDescription()\n"
               "row1.getDescription()\n"
               "row1.getPriority()\n"
               "sql UPDATE Priority SET PRIORITY = 7, DESCRIPTION = N'High', upd_flag = 0 WHERE PRIORITY =N'7' -> 1\n"
               "rows.hasMoreElements()\n"
               "rows.nextElement()\n"
               "row2.getPriority()\n"
               "row2.hasDescription()\n"
               "row2.getPriority()\n"
               "sql UPDATE Priority SET PRIORITY = 999, upd_flag = 0 WHERE PRIORITY =N'999' -> 0\n"
               "row2.hasDescription()\n"
               "row2.getPriority()\n"
               "row2.hasDescription()\n"
               "sql INSERT INTO Priority (PRIORITY ,upd_flag )VALUES (999,0) -> 1\n"
               "rows.hasMoreElements()\n"
               "sql DELETE FROM Priority WHERE upd_flag = 1\n"
               "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
               "N'Priority' -> 1\n"
               "priorities.Close()\n",
      .counters = "ucount 0, icount 2, dcount 0",
      .runLog =
          "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
          "\"Rows copied: Priority -  2\"\r\n"};
}

const EntityPass kOnlyChanged1 = {
    .generation = "1",
    .managerClass = kPriorities1,
    .managerName = "priorities",
    .rows = {{{"ActionType", "D"}, {"Priority", std::int16_t{7}}},
             {{"ActionType", "U"}, {"Priority", std::int16_t{8}}, {"Description", "Low"}},
             {{"ActionType", "I"}, {"Priority", std::int16_t{0}}}},
    .counts = {1, 0, 1},
    .trace =
        "create Kv40QTMtssmaPriorities.PrioritiesManager\n"
        "session.addManager(&<priorities>)\n"
        "create NetListSelectionCriteria.NetListSelectionCriteria\n"
        "create NetListSelectionCriteria.NetListIn\n"
        "create NetListSelectionCriteria.NetListOut\n"
        "create NetListSelectionCriteria.NetListPeriod\n"
        "create NetListSelectionCriteria.NetListParameter\n"
        "priorities.Initialize(&\"100\")\n"
        "query SELECT * FROM tstables WHERE tablename = N'Priority'\n"
        "close recordset\n"
        "period.setFrom(<object>)\n"
        "period.setTo(<object>)\n"
        "criteria.setNetListPeriod(&<period>)\n"
        "parameter.setFieldName(\"prno\")\n"
        "parameter.setFrom(i16(0))\n"
        "parameter.setTo(i16(999))\n"
        "input.addNetListParameter(&<parameter>)\n"
        "criteria.setNetListIn(&<input>)\n"
        "output.addFieldNameWithoutOld(\"prno\")\n"
        "output.addFieldNameWithoutOld(\"desc\")\n"
        "criteria.setNetListOut(&<output>)\n"
        "priorities.NetListPriorities(&\"tssma304\", &<criteria>)\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getActionType()\n"
        "row1.getPriority()\n"
        "sql DELETE FROM Priority WHERE PRIORITY= N'7'\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getActionType()\n"
        "row2.getPriority()\n"
        "row2.hasDescription()\n"
        "row2.getDescription()\n"
        "row2.getPriority()\n"
        "sql UPDATE Priority SET PRIORITY = 8, DESCRIPTION = N'Low', upd_flag = 0 WHERE PRIORITY =N'8' -> 1\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row3.getActionType()\n"
        "row3.getPriority()\n"
        "row3.hasDescription()\n"
        "row3.getPriority()\n"
        "sql UPDATE Priority SET PRIORITY = 0, upd_flag = 0 WHERE PRIORITY =N'0' -> 0\n"
        "row3.hasDescription()\n"
        "row3.getPriority()\n"
        "row3.hasDescription()\n"
        "sql INSERT INTO Priority (PRIORITY ,upd_flag )VALUES (0,0) -> 1\n"
        "rows.hasMoreElements()\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Priority' -> 1\n",
    .counters = "ucount 1, icount 1, dcount 1",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Priority -  1\"\r\n"
        "\"Rows updated: Priority -  1\"\r\n"
        "\"Rows deleted: Priority -  1\"\r\n"};

/// Generations 3 and 8 differ from generation 1 in the table code and the field names, and from each other in the
/// class.
EntityPass OnlyChangedUnder(const Text& generation, const Text& managerClass) {
  return {
      .generation = generation,
      .managerClass = managerClass,
      .managerName = "priorities",
      .rows = {{{"ActionType", "D"}, {"Priority", std::int16_t{7}}},
               {{"ActionType", "U"}, {"Priority", std::int16_t{8}}, {"Description", "Low"}},
               {{"ActionType", "I"}, {"Priority", std::int16_t{0}}}},
      .counts = {1, 0, 1},
      .trace = "create " + managerClass + "\n" +
               "session.addManager(&<priorities>)\n"
               "create NetListSelectionCriteria.NetListSelectionCriteria\n"
               "create NetListSelectionCriteria.NetListIn\n"
               "create NetListSelectionCriteria.NetListOut\n"
               "create NetListSelectionCriteria.NetListPeriod\n"
               "create NetListSelectionCriteria.NetListParameter\n"
               "priorities.Initialize(&\"100\")\n"
               "query SELECT * FROM tstables WHERE tablename = N'Priority'\n"
               "close recordset\n"
               "period.setFrom(<object>)\n"
               "period.setTo(<object>)\n"
               "criteria.setNetListPeriod(&<period>)\n"
               "parameter.setFieldName(\"prio\")\n"
               "parameter.setFrom(i16(0))\n"
               "parameter.setTo(i16(999))\n"
               "input.addNetListParameter(&<parameter>)\n"
               "criteria.setNetListIn(&<input>)\n"
               "output.addFieldNameWithoutOld(\"prio\")\n"
               "output.addFieldNameWithoutOld(\"dsca\")\n"
               "criteria.setNetListOut(&<output>)\n"
               "priorities.NetListPriorities(&\"tcmcs070\", &<criteria>)\n"
               "rows.hasMoreElements()\n"
               "rows.nextElement()\n"
               "row1.getActionType()\n"
               "row1.getPriority()\n"
               "sql DELETE FROM Priority WHERE PRIORITY= N'7'\n"
               "rows.hasMoreElements()\n"
               "rows.nextElement()\n"
               "row2.getActionType()\n"
               "row2.getPriority()\n"
               "row2.hasDescription()\n"
               "row2.getDescription()\n"
               "row2.getPriority()\n"
               "sql UPDATE Priority SET PRIORITY = 8, DESCRIPTION = N'Low', upd_flag = 0 WHERE PRIORITY =N'8' -> 1\n"
               "rows.hasMoreElements()\n"
               "rows.nextElement()\n"
               "row3.getActionType()\n"
               "row3.getPriority()\n"
               "row3.hasDescription()\n"
               "row3.getPriority()\n"
               "sql UPDATE Priority SET PRIORITY = 0, upd_flag = 0 WHERE PRIORITY =N'0' -> 0\n"
               "row3.hasDescription()\n"
               "row3.getPriority()\n"
               "row3.hasDescription()\n"
               "sql INSERT INTO Priority (PRIORITY ,upd_flag )VALUES (0,0) -> 1\n"
               "rows.hasMoreElements()\n"
               "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
               "N'Priority' -> 1\n",
      .counters = "ucount 1, icount 1, dcount 1",
      .runLog =
          "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
          "\"Rows copied: Priority -  1\"\r\n"
          "\"Rows updated: Priority -  1\"\r\n"
          "\"Rows deleted: Priority -  1\"\r\n"};
}

/// An ERP that holds the priorities 0, 999 and 1000 and lists those within the range that it is asked for.
struct PrioritiesInRange {
  CopyFixture copy{"1"};
  std::shared_ptr<ScriptedObject> manager = copy.AddManager(kPriorities1, "priorities");
  std::int16_t lowest = -1;
  std::int16_t highest = -1;

  PrioritiesInRange() {
    manager->Does("List", [this](Arguments range) {
      lowest = range[0].value().AsInt16();
      highest = range[1].value().AsInt16();
      return Listed();
    });
    const auto parameter = copy.components.Register("NetListSelectionCriteria.NetListParameter", "parameter");
    parameter->Answers("setFieldName", Value());
    parameter->Does("setFrom", [this](Arguments from) {
      lowest = from[0].value().AsInt16();
      return Value();
    });
    parameter->Does("setTo", [this](Arguments to) {
      highest = to[0].value().AsInt16();
      return Value();
    });
    manager->Does("NetListPriorities", [this](Arguments) { return Listed(); });
  }

  Value Listed() {
    std::vector<Object> rows;
    for (const std::int16_t priority : {std::int16_t{0}, std::int16_t{999}, std::int16_t{1000}}) {
      if (priority >= lowest && priority <= highest) rows.push_back(copy.RowWith({{"Priority", priority}}));
    }
    return Object(copy.components.MakeEnumeration("rows", rows));
  }
};

TEST(ApplyPriorityRow, AsksForTheKeyAndTheDescriptionAtEachUseUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({0});

    copy.Apply(CopyFixture::ApplyPriorityRow(), kEveryField, "PRIORITIES");

    EXPECT_EQ(copy.journal.Take(),
              "row1.getPriority()\n"
              "row1.hasDescription()\n"
              "row1.getDescription()\n"
              "row1.getPriority()\n"
              "sql UPDATE PRIORITIES SET PRIORITY = 7, DESCRIPTION = N'High', upd_flag = 0 WHERE PRIORITY =N'7' -> 0\n"
              "row1.hasDescription()\n"
              "row1.getPriority()\n"
              "row1.hasDescription()\n"
              "row1.getDescription()\n"
              "sql INSERT INTO PRIORITIES (PRIORITY ,DESCRIPTION ,upd_flag )VALUES (7,N'High',0) -> 1\n");
  }
}

TEST(ApplyPriorityRow, AsksAnAbsentDescriptionForItsPresenceAlone) {
  CopyFixture copy("3");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplyPriorityRow(), {{"Priority", std::int16_t{7}}}, "PRIORITIES");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getPriority()\n"
            "row1.hasDescription()\n"
            "row1.getPriority()\n"
            "sql UPDATE PRIORITIES SET PRIORITY = 7, upd_flag = 0 WHERE PRIORITY =N'7' -> 0\n"
            "row1.hasDescription()\n"
            "row1.getPriority()\n"
            "row1.hasDescription()\n"
            "sql INSERT INTO PRIORITIES (PRIORITY ,upd_flag )VALUES (7,0) -> 1\n");
}

TEST(ApplyPriorityRow, WritesTheKeyAsTheErpGivesItAndMatchesItsEncodedText) {
  for (const char* generation : {"1", "3", "8"}) {
    ExpectStatements(CopyFixture::ApplyPriorityRow(), generation, 1, "PRIORITIES",
                     {{{{"Priority", std::int32_t{12}}},
                       "UPDATE PRIORITIES SET PRIORITY = 12, upd_flag = 0 WHERE PRIORITY =N'12'",
                       "INSERT INTO PRIORITIES (PRIORITY ,upd_flag )VALUES (12,0)"},
                      {{{"Priority", 7.0}},
                       "UPDATE PRIORITIES SET PRIORITY = 7, upd_flag = 0 WHERE PRIORITY =N'7'",
                       "INSERT INTO PRIORITIES (PRIORITY ,upd_flag )VALUES (7,0)"},
                      {{{"Priority", " 007"}},
                       "UPDATE PRIORITIES SET PRIORITY =  007, upd_flag = 0 WHERE PRIORITY =N' 007'",
                       "INSERT INTO PRIORITIES (PRIORITY ,upd_flag )VALUES ( 007,0)"},
                      {{{"Priority", "'7'"}},
                       "UPDATE PRIORITIES SET PRIORITY = '7', upd_flag = 0 WHERE PRIORITY =N'''7'''",
                       "INSERT INTO PRIORITIES (PRIORITY ,upd_flag )VALUES ('7',0)"}});
  }
}

TEST(ApplyPriorityRow, WritesTheLiteralsOfOracle) {
  ExpectStatements(CopyFixture::ApplyPriorityRow(), "3", /*databasePlatform=*/2, "PRIORITIES",
                   {{{{"Priority", std::int16_t{7}}, {"Description", ""}},
                     "UPDATE PRIORITIES SET PRIORITY = 7, DESCRIPTION = N' ', upd_flag = 0 WHERE PRIORITY =N'7'",
                     "INSERT INTO PRIORITIES (PRIORITY ,DESCRIPTION ,upd_flag )VALUES (7,N' ',0)"}});
}

TEST(ApplyPriorityRow, WritesTheEmptyAndTheQuotedDescription) {
  ExpectStatements(CopyFixture::ApplyPriorityRow(), "1", 1, "PRIORITIES",
                   {{{{"Priority", std::int16_t{7}}, {"Description", ""}},
                     "UPDATE PRIORITIES SET PRIORITY = 7, DESCRIPTION = N'', upd_flag = 0 WHERE PRIORITY =N'7'",
                     "INSERT INTO PRIORITIES (PRIORITY ,DESCRIPTION ,upd_flag )VALUES (7,N'',0)"},
                    {{{"Priority", std::int16_t{7}}, {"Description", "'High'"}},
                     "UPDATE PRIORITIES SET PRIORITY = 7, DESCRIPTION = N'''High''', upd_flag = 0 WHERE PRIORITY =N'7'",
                     "INSERT INTO PRIORITIES (PRIORITY ,DESCRIPTION ,upd_flag )VALUES (7,N'''High''',0)"}});
}

TEST(ApplyPriorityRow, RunsEmptyStatementsUnderAnUnknownGeneration) {
  for (const char* generation : {"2", "03", ""}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({0});

    copy.Apply(CopyFixture::ApplyPriorityRow(), kEveryField, "PRIORITIES");

    EXPECT_EQ(copy.journal.Take(),
              "sql  -> 0\n"
              "sql  -> 1\n");
  }
}

TEST(ApplyPriorityRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(CopyFixture::ApplyPriorityRow(), "8", kEveryField);
}

TEST(ApplyPriorityRow, FailsOnANullBeforeAnyStatement) {
  ExpectNullToFail(CopyFixture::ApplyPriorityRow(), "1", kEveryField, {"Priority", "Description"});
}

TEST(CopyPriority, CopiesTheWholeTableUnderEachGeneration) {
  ExpectPass(FullCopyUnder("1", kPriorities1), kFullCopy);
  ExpectPass(FullCopyUnder("3", kPriorities3), kFullCopy);
  ExpectPass(FullCopyUnder("8", kPriorities8), kFullCopy);
}

TEST(CopyPriority, FollowsTheChangesUnderEachGeneration) {
  ExpectPass(kOnlyChanged1, kOnlyChanged);
  ExpectPass(OnlyChangedUnder("3", kPriorities3), kOnlyChanged);
  ExpectPass(OnlyChangedUnder("8", kPriorities8), kOnlyChanged);
}

TEST(CopyPriority, AsksForThePriorities0To999InAFullCopy) {
  PrioritiesInRange erp;

  erp.copy.CopyPriority("PRIORITIES", 1);

  EXPECT_EQ(erp.copy.JournalWithout({"row", "create", "session", "priorities"}),
            "sql UPDATE PRIORITIES SET upd_flag = 1 \n"
            "sql UPDATE PRIORITIES SET PRIORITY = 0, upd_flag = 0 WHERE PRIORITY =N'0' -> 1\n"
            "sql UPDATE PRIORITIES SET PRIORITY = 999, upd_flag = 0 WHERE PRIORITY =N'999' -> 1\n"
            "sql DELETE FROM PRIORITIES WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
            "N'PRIORITIES' -> 1\n");
}

TEST(CopyPriority, AsksForThePriorities0To999InAnOnlyChangedPass) {
  PrioritiesInRange erp;

  erp.copy.CopyPriority("PRIORITIES", 2);

  EXPECT_EQ(erp.copy.JournalWithout({"row", "create", "session", "priorities", "query", "close", "period", "parameter",
                                     "input", "output", "criteria"}),
            "sql UPDATE PRIORITIES SET PRIORITY = 0, upd_flag = 0 WHERE PRIORITY =N'0' -> 1\n"
            "sql UPDATE PRIORITIES SET PRIORITY = 999, upd_flag = 0 WHERE PRIORITY =N'999' -> 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
            "N'PRIORITIES' -> 1\n");
}

TEST(CopyPriority, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  ExpectFailureAtEachStep(FullCopyUnder("1", kPriorities1), kFullCopy,
                          "5100 Data copy: Priorities: Priorities could not be copied from the ERP (generation 1).");
  ExpectFailureAtEachStep(FullCopyUnder("3", kPriorities3), kFullCopy,
                          "5100 Data copy: Priorities: Priorities could not be copied from the ERP (generation 3).");
  ExpectFailureAtEachStep(FullCopyUnder("8", kPriorities8), kFullCopy,
                          "5100 Data copy: Priorities: Priorities could not be copied from the ERP (generation 8).");
}

TEST(CopyPriority, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  ExpectFailureAtEachStep(
      kOnlyChanged1, kOnlyChanged,
      "5100 Data copy: Priorities - Only Changed: Priorities could not be copied from the ERP (generation 1).");
  ExpectFailureAtEachStep(
      OnlyChangedUnder("3", kPriorities3), kOnlyChanged,
      "5100 Data copy: Priorities - Only Changed: Priorities could not be copied from the ERP (generation 3).");
  ExpectFailureAtEachStep(
      OnlyChangedUnder("8", kPriorities8), kOnlyChanged,
      "5100 Data copy: Priorities - Only Changed: Priorities could not be copied from the ERP (generation 8).");
}

TEST(CopyPriority, CountsADeletionWhetherTheTableHeldTheRowOrNot) {
  CopyFixture copy("3");
  copy.AddManager(kPriorities3, "priorities",
                  {copy.RowWith({{"ActionType", "D"}, {"Priority", std::int16_t{7}}}),
                   copy.RowWith({{"ActionType", "D"}, {"Priority", std::int16_t{7}}})});

  copy.CopyPriority("PRIORITIES", 2);

  EXPECT_EQ(copy.JournalWithout({"row", "create", "session", "priorities", "query", "close", "period", "parameter",
                                 "input", "output", "criteria"}),
            "sql DELETE FROM PRIORITIES WHERE PRIORITY= N'7'\n"
            "sql DELETE FROM PRIORITIES WHERE PRIORITY= N'7'\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
            "N'PRIORITIES' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 2");
}

TEST(CopyPriority, RaisesANullOfTheErpAs194) {
  for (const std::int16_t SyncMethod : {std::int16_t{1}, std::int16_t{2}}) {
    SCOPED_TRACE(SyncMethod);
    CopyFixture copy("8");
    copy.AddManager(kPriorities8, "priorities", {copy.RowWith({{"Priority", Null()}})});

    const Text raised = Raised([&] { copy.CopyPriority("Priority", SyncMethod); });

    EXPECT_EQ(raised, SyncMethod == 1
                          ? "194 Data copy: Priorities: Priorities could not be copied from the ERP (generation 8)."
                          : "194 Data copy: Priorities - Only Changed: Priorities could not be copied from the ERP "
                            "(generation 8).");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Invalid use of Null\"\r\n");
  }
}

TEST(CopyPriority, LeavesAFullCopyWithObjectNotSetWhenTheComponentCannotBeCreated) {
  CopyFixture copy("1");

  const Text raised = Raised([&] { copy.CopyPriority("Priority", 1); });

  EXPECT_EQ(raised, "91 ZenqayDBSync: Object variable not set");
  EXPECT_EQ(copy.journal.Take(), "create Kv40QTMtssmaPriorities.PrioritiesManager\n");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Kv40QTMtssmaPriorities.PrioritiesManager\",\"Component can't create object: "
            "Kv40QTMtssmaPriorities.PrioritiesManager\"\r\n");
}

// The ERP's label is taken behind the creation of the manager.
TEST(CopyPriority, LeavesAnOnlyChangedPassWith529AndNoErpNamedWhenTheComponentCannotBeCreated) {
  CopyFixture copy("8");

  const Text raised = Raised([&] { copy.CopyPriority("Priority", 2); });

  EXPECT_EQ(raised, "529 Data copy: Priorities - Only Changed: Priorities could not be copied from .");
  EXPECT_EQ(copy.journal.Take(), "create Kv61QTMtcmcsPriorities.PrioritiesManager\n");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Kv61QTMtcmcsPriorities.PrioritiesManager\",\"Component can't create object: "
            "Kv61QTMtcmcsPriorities.PrioritiesManager\"\r\n");
}

TEST(CopyPriority, ReportsAFullCopyUnderAnUnknownGenerationAsFailed) {
  CopyFixture copy("2");

  const Text job = RunJob(copy, "Priority", 1);

  EXPECT_EQ(job,
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "get DefaultDatabase\n"
            "query SELECT * FROM tstables WHERE tablename = N'Priority'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Priority' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
            "session.addManager(&nothing)\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Priority' -> 1\n"
            "event DataCopyError(time(10:11:12 AM), i16(5), i16(-1), \"See the log file "
            "LOGS\\Priority_20040131.log.\")\n"
            "event DataCopydone()\n"
            "close\n");
  EXPECT_EQ(copy.directory.Read("Priority_20040131.log"),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Object variable not set\"\r\n"
            "\"ZenqayDBSync\",\"Object variable not set\"\r\n");
}

TEST(CopyPriority, ReportsAnOnlyChangedPassUnderAnUnknownGenerationAsFailed) {
  CopyFixture copy("2");
  copy.AddManager(kPriorities1, "priorities");

  const Text job = RunJob(copy, "Priority", 2);

  EXPECT_EQ(job,
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "get DefaultDatabase\n"
            "query SELECT * FROM tstables WHERE tablename = N'Priority'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Priority' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
            "session.addManager(&nothing)\n"
            "create NetListSelectionCriteria.NetListSelectionCriteria\n"
            "create NetListSelectionCriteria.NetListIn\n"
            "create NetListSelectionCriteria.NetListOut\n"
            "create NetListSelectionCriteria.NetListPeriod\n"
            "create NetListSelectionCriteria.NetListParameter\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Priority' -> 1\n"
            "event DataCopyError(time(10:11:12 AM), i16(5), i16(-1), \"See the log file "
            "LOGS\\Priority_20040131.log.\")\n"
            "event DataCopydone()\n"
            "close\n");
  EXPECT_EQ(copy.directory.Read("Priority_20040131.log"),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Object variable not set\"\r\n"
            "\"Data copy: Priorities - Only Changed\",\"Priorities could not be copied from .\"\r\n");
}

TEST(CopyPriority, RaisesObjectNotSetUnderAnUnknownGeneration) {
  CopyFixture full("2");
  CopyFixture onlyChanged("2");
  onlyChanged.AddManager(kPriorities1, "priorities");

  EXPECT_EQ(Raised([&] { full.CopyPriority("Priority", 1); }), "91 ZenqayDBSync: Object variable not set");
  EXPECT_EQ(Raised([&] { onlyChanged.CopyPriority("Priority", 2); }),
            "191 Data copy: Priorities - Only Changed: Priorities could not be copied from .");
}

TEST(CopyPriority, DoesNothingUnderAnotherSyncMethod) {
  for (const int SyncMethod : {0, 3, -1}) {
    SCOPED_TRACE(SyncMethod);
    CopyFixture copy("1");
    copy.AddManager(kPriorities1, "priorities", {copy.RowWith(kEveryField)});

    copy.CopyPriority("Priority", static_cast<std::int16_t>(SyncMethod));

    EXPECT_EQ(copy.journal.Take(), "");
    EXPECT_EQ(copy.RunLog(), "");
  }
}

}  // namespace
}  // namespace zenqay
