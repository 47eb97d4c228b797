// Problem: its row operation and its two passes, under the three generations. Only generation 3 has a call type.
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

constexpr const char* kProblems1 = "Kv40QTMtsspfProblems.ProblemsManager";
constexpr const char* kProblems3 = "Kv50QTMtsclmProblems.ProblemsManager";
constexpr const char* kProblems8 = "Kv61QTMtsclmProblems.ProblemsManager";

const EntityCall kFullCopy = {&CopyFixture::CopyProblem, "Problem", 1};
const EntityCall kOnlyChanged = {&CopyFixture::CopyProblem, "Problem", 2};

const RowFields kEveryField = {{"Problem", "P1"}, {"Description", "Leak"}, {"CallType", "T1"}};

const EntityPass kFullCopy1 = {
    .generation = "1",
    .managerClass = kProblems1,
    .managerName = "problems",
    .rows = {kEveryField, {{"Problem", "P2"}, {"CallType", "T2"}}},
    .counts = {1, 0, 1},
    .trace =
        "create Kv40QTMtsspfProblems.ProblemsManager\n"
        "session.addManager(&<problems>)\n"
        "problems.Initialize(&\"100\")\n"
        "problems.List(\"\", high(10))\n"
        "sql UPDATE Problem SET upd_flag = 1 \n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getProblem()\n"
        "row1.hasDescription()\n"
        "row1.getDescription()\n"
        "row1.getProblem()\n"
        "sql UPDATE Problem SET PROBLEM = N'P1', DESCRIPTION = N'Leak', upd_flag = 0 WHERE PROBLEM =N'P1' -> 1\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getProblem()\n"
        "row2.hasDescription()\n"
        "row2.getProblem()\n"
        "sql UPDATE Problem SET PROBLEM = N'P2', upd_flag = 0 WHERE PROBLEM =N'P2' -> 0\n"
        "row2.hasDescription()\n"
        "row2.getProblem()\n"
        "row2.hasDescription()\n"
        "sql INSERT INTO Problem (PROBLEM ,upd_flag )VALUES (N'P2',0) -> 1\n"
        "rows.hasMoreElements()\n"
        "sql DELETE FROM Problem WHERE upd_flag = 1\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Problem' -> 1\n"
        "problems.Close()\n",
    .counters = "ucount 0, icount 2, dcount 0",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Problem -  2\"\r\n"};

const EntityPass kFullCopy3 = {
    .generation = "3",
    .managerClass = kProblems3,
    .managerName = "problems",
    .rows = {kEveryField, {{"Problem", "P2"}, {"CallType", "T2"}}},
    .counts = {1, 0, 1},
    .trace =
        "create Kv50QTMtsclmProblems.ProblemsManager\n"
        "session.addManager(&<problems>)\n"
        "problems.Initialize(&\"100\")\n"
        "problems.List(\"\", high(10))\n"
        "sql UPDATE Problem SET upd_flag = 1 \n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getProblem()\n"
        "row1.hasDescription()\n"
        "row1.getDescription()\n"
        "row1.hasCallType()\n"
        "row1.getCallType()\n"
        "row1.getProblem()\n"
        "sql UPDATE Problem SET PROBLEM = N'P1', DESCRIPTION = N'Leak', CALLTYPE = N'T1', upd_flag = 0 WHERE "
        "PROBLEM =N'P1' -> 1\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getProblem()\n"
        "row2.hasDescription()\n"
        "row2.hasCallType()\n"
        "row2.getCallType()\n"
        "row2.getProblem()\n"
        "sql UPDATE Problem SET PROBLEM = N'P2', CALLTYPE = N'T2', upd_flag = 0 WHERE PROBLEM =N'P2' -> 0\n"
        "row2.hasDescription()\n"
        "row2.hasCallType()\n"
        "row2.getProblem()\n"
        "row2.hasDescription()\n"
        "row2.hasCallType()\n"
        "row2.getCallType()\n"
        "sql INSERT INTO Problem (PROBLEM ,CALLTYPE ,upd_flag )VALUES (N'P2',N'T2',0) -> 1\n"
        "rows.hasMoreElements()\n"
        "sql DELETE FROM Problem WHERE upd_flag = 1\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Problem' -> 1\n"
        "problems.Close()\n",
    .counters = "ucount 0, icount 2, dcount 0",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Problem -  2\"\r\n"};

const EntityPass kFullCopy8 = {
    .generation = "8",
    .managerClass = kProblems8,
    .managerName = "problems",
    .rows = {kEveryField, {{"Problem", "P2"}, {"CallType", "T2"}}},
    .counts = {1, 0, 1},
    .trace =
        "create Kv61QTMtsclmProblems.ProblemsManager\n"
        "session.addManager(&<problems>)\n"
        "problems.Initialize(&\"100\")\n"
        "problems.List(\"\", high(10))\n"
        "sql UPDATE Problem SET upd_flag = 1 \n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getProblem()\n"
        "row1.hasDescription()\n"
        "row1.getDescription()\n"
        "row1.getProblem()\n"
        "sql UPDATE Problem SET PROBLEM = N'P1', DESCRIPTION = N'Leak', upd_flag = 0 WHERE PROBLEM =N'P1' -> 1\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getProblem()\n"
        "row2.hasDescription()\n"
        "row2.getProblem()\n"
        "sql UPDATE Problem SET PROBLEM = N'P2', upd_flag = 0 WHERE PROBLEM =N'P2' -> 0\n"
        "row2.hasDescription()\n"
        "row2.getProblem()\n"
        "row2.hasDescription()\n"
        "sql INSERT INTO Problem (PROBLEM ,upd_flag )VALUES (N'P2',0) -> 1\n"
        "rows.hasMoreElements()\n"
        "sql DELETE FROM Problem WHERE upd_flag = 1\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Problem' -> 1\n"
        "problems.Close()\n",
    .counters = "ucount 0, icount 2, dcount 0",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Problem -  2\"\r\n"};

const std::vector<RowFields> kChanges = {{{"ActionType", "D"}, {"Problem", "P1"}},
                                         {{"ActionType", "U"}, {"Problem", "P2"}, {"CallType", "T2"}},
                                         {{"ActionType", "I"}, {"Problem", "P3"}, {"Description", "Noise"}}};

const EntityPass kOnlyChanged1 = {
    .generation = "1",
    .managerClass = kProblems1,
    .managerName = "problems",
    .rows = kChanges,
    .counts = {1, 0, 1},
    .trace =
        "create Kv40QTMtsspfProblems.ProblemsManager\n"
        "session.addManager(&<problems>)\n"
        "create NetListSelectionCriteria.NetListSelectionCriteria\n"
        "create NetListSelectionCriteria.NetListIn\n"
        "create NetListSelectionCriteria.NetListOut\n"
        "create NetListSelectionCriteria.NetListPeriod\n"
        "create NetListSelectionCriteria.NetListParameter\n"
        "problems.Initialize(&\"100\")\n"
        "query SELECT * FROM tstables WHERE tablename = N'Problem'\n"
        "close recordset\n"
        "period.setFrom(<object>)\n"
        "period.setTo(<object>)\n"
        "criteria.setNetListPeriod(&<period>)\n"
        "parameter.setFieldName(\"cprl\")\n"
        "parameter.setFrom(\"\")\n"
        "parameter.setTo(high(10))\n"
        "input.addNetListParameter(&<parameter>)\n"
        "criteria.setNetListIn(&<input>)\n"
        "output.addFieldNameWithoutOld(\"cprl\")\n"
        "output.addFieldNameWithoutOld(\"desc\")\n"
        "criteria.setNetListOut(&<output>)\n"
        "problems.NetListProblems(&\"tsspf102\", &<criteria>)\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getActionType()\n"
        "row1.getProblem()\n"
        "sql DELETE FROM Problem WHERE PROBLEM= N'P1'\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getActionType()\n"
        "row2.getProblem()\n"
        "row2.hasDescription()\n"
        "row2.getProblem()\n"
        "sql UPDATE Problem SET PROBLEM = N'P2', upd_flag = 0 WHERE PROBLEM =N'P2' -> 1\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row3.getActionType()\n"
        "row3.getProblem()\n"
        "row3.hasDescription()\n"
        "row3.getDescription()\n"
        "row3.getProblem()\n"
        "sql UPDATE Problem SET PROBLEM = N'P3', DESCRIPTION = N'Noise', upd_flag = 0 WHERE PROBLEM =N'P3' -> 0\n"
        "row3.hasDescription()\n"
        "row3.getProblem()\n"
        "row3.hasDescription()\n"
        "row3.getDescription()\n"
        "sql INSERT INTO Problem (PROBLEM ,DESCRIPTION ,upd_flag )VALUES (N'P3',N'Noise',0) -> 1\n"
        "rows.hasMoreElements()\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Problem' -> 1\n",
    .counters = "ucount 1, icount 1, dcount 1",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Problem -  1\"\r\n"
        "\"Rows updated: Problem -  1\"\r\n"
        "\"Rows deleted: Problem -  1\"\r\n"};

const EntityPass kOnlyChanged3 = {
    .generation = "3",
    .managerClass = kProblems3,
    .managerName = "problems",
    .rows = kChanges,
    .counts = {1, 0, 1},
    .trace =
        "create Kv50QTMtsclmProblems.ProblemsManager\n"
        "session.addManager(&<problems>)\n"
        "create NetListSelectionCriteria.NetListSelectionCriteria\n"
        "create NetListSelectionCriteria.NetListIn\n"
        "create NetListSelectionCriteria.NetListOut\n"
        "create NetListSelectionCriteria.NetListPeriod\n"
        "create NetListSelectionCriteria.NetListParameter\n"
        "problems.Initialize(&\"100\")\n"
        "query SELECT * FROM tstables WHERE tablename = N'Problem'\n"
        "close recordset\n"
        "period.setFrom(<object>)\n"
        "period.setTo(<object>)\n"
        "criteria.setNetListPeriod(&<period>)\n"
        "parameter.setFieldName(\"cprl\")\n"
        "parameter.setFrom(\"\")\n"
        "parameter.setTo(high(10))\n"
        "input.addNetListParameter(&<parameter>)\n"
        "criteria.setNetListIn(&<input>)\n"
        "output.addFieldNameWithoutOld(\"cprl\")\n"
        "output.addFieldNameWithoutOld(\"desc\")\n"
        "output.addFieldNameWithoutOld(\"cltp\")\n"
        "criteria.setNetListOut(&<output>)\n"
        "problems.NetListProblems(&\"tsclm330\", &<criteria>)\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getActionType()\n"
        "row1.getProblem()\n"
        "sql DELETE FROM Problem WHERE PROBLEM= N'P1'\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getActionType()\n"
        "row2.getProblem()\n"
        "row2.hasDescription()\n"
        "row2.hasCallType()\n"
        "row2.getCallType()\n"
        "row2.getProblem()\n"
        "sql UPDATE Problem SET PROBLEM = N'P2', CALLTYPE = N'T2', upd_flag = 0 WHERE PROBLEM =N'P2' -> 1\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row3.getActionType()\n"
        "row3.getProblem()\n"
        "row3.hasDescription()\n"
        "row3.getDescription()\n"
        "row3.hasCallType()\n"
        "row3.getProblem()\n"
        "sql UPDATE Problem SET PROBLEM = N'P3', DESCRIPTION = N'Noise', upd_flag = 0 WHERE PROBLEM =N'P3' -> 0\n"
        "row3.hasDescription()\n"
        "row3.hasCallType()\n"
        "row3.getProblem()\n"
        "row3.hasDescription()\n"
        "row3.getDescription()\n"
        "row3.hasCallType()\n"
        "sql INSERT INTO Problem (PROBLEM ,DESCRIPTION ,upd_flag )VALUES (N'P3',N'Noise',0) -> 1\n"
        "rows.hasMoreElements()\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Problem' -> 1\n",
    .counters = "ucount 1, icount 1, dcount 1",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Problem -  1\"\r\n"
        "\"Rows updated: Problem -  1\"\r\n"
        "\"Rows deleted: Problem -  1\"\r\n"};

const EntityPass kOnlyChanged8 = {
    .generation = "8",
    .managerClass = kProblems8,
    .managerName = "problems",
    .rows = kChanges,
    .counts = {1, 0, 1},
    .trace =
        "create Kv61QTMtsclmProblems.ProblemsManager\n"
        "session.addManager(&<problems>)\n"
        "create NetListSelectionCriteria.NetListSelectionCriteria\n"
        "create NetListSelectionCriteria.NetListIn\n"
        "create NetListSelectionCriteria.NetListOut\n"
        "create NetListSelectionCriteria.NetListPeriod\n"
        "create NetListSelectionCriteria.NetListParameter\n"
        "problems.Initialize(&\"100\")\n"
        "query SELECT * FROM tstables WHERE tablename = N'Problem'\n"
        "close recordset\n"
        "period.setFrom(<object>)\n"
        "period.setTo(<object>)\n"
        "criteria.setNetListPeriod(&<period>)\n"
        "parameter.setFieldName(\"cprl\")\n"
        "parameter.setFrom(\"\")\n"
        "parameter.setTo(high(10))\n"
        "input.addNetListParameter(&<parameter>)\n"
        "criteria.setNetListIn(&<input>)\n"
        "output.addFieldNameWithoutOld(\"cprl\")\n"
        "output.addFieldNameWithoutOld(\"desc\")\n"
        "criteria.setNetListOut(&<output>)\n"
        "problems.NetListProblems(&\"tsclm330\", &<criteria>)\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getActionType()\n"
        "row1.getProblem()\n"
        "sql DELETE FROM Problem WHERE PROBLEM= N'P1'\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getActionType()\n"
        "row2.getProblem()\n"
        "row2.hasDescription()\n"
        "row2.getProblem()\n"
        "sql UPDATE Problem SET PROBLEM = N'P2', upd_flag = 0 WHERE PROBLEM =N'P2' -> 1\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row3.getActionType()\n"
        "row3.getProblem()\n"
        "row3.hasDescription()\n"
        "row3.getDescription()\n"
        "row3.getProblem()\n"
        "sql UPDATE Problem SET PROBLEM = N'P3', DESCRIPTION = N'Noise', upd_flag = 0 WHERE PROBLEM =N'P3' -> 0\n"
        "row3.hasDescription()\n"
        "row3.getProblem()\n"
        "row3.hasDescription()\n"
        "row3.getDescription()\n"
        "sql INSERT INTO Problem (PROBLEM ,DESCRIPTION ,upd_flag )VALUES (N'P3',N'Noise',0) -> 1\n"
        "rows.hasMoreElements()\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Problem' -> 1\n",
    .counters = "ucount 1, icount 1, dcount 1",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Problem -  1\"\r\n"
        "\"Rows updated: Problem -  1\"\r\n"
        "\"Rows deleted: Problem -  1\"\r\n"};

TEST(ApplyProblemRow, AsksForTheCallTypeAtEachUseUnderGeneration3) {
  CopyFixture copy("3");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplyProblemRow(), kEveryField, "PROBLEMS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getProblem()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.hasCallType()\n"
            "row1.getCallType()\n"
            "row1.getProblem()\n"
            "sql UPDATE PROBLEMS SET PROBLEM = N'P1', DESCRIPTION = N'Leak', CALLTYPE = N'T1', upd_flag = 0 WHERE "
            "PROBLEM =N'P1' -> 0\n"
            "row1.hasDescription()\n"
            "row1.hasCallType()\n"
            "row1.getProblem()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.hasCallType()\n"
            "row1.getCallType()\n"
            "sql INSERT INTO PROBLEMS (PROBLEM ,DESCRIPTION ,CALLTYPE ,upd_flag )VALUES (N'P1',N'Leak',N'T1',0) -> "
            "1\n");
}

TEST(ApplyProblemRow, NeverAsksForTheCallTypeUnderTheOtherGenerations) {
  for (const char* generation : {"1", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({0});

    copy.Apply(CopyFixture::ApplyProblemRow(), kEveryField, "PROBLEMS");

    EXPECT_EQ(copy.journal.Take(),
              "row1.getProblem()\n"
              "row1.hasDescription()\n"
              "row1.getDescription()\n"
              "row1.getProblem()\n"
              "sql UPDATE PROBLEMS SET PROBLEM = N'P1', DESCRIPTION = N'Leak', upd_flag = 0 WHERE PROBLEM =N'P1' -> "
              "0\n"
              "row1.hasDescription()\n"
              "row1.getProblem()\n"
              "row1.hasDescription()\n"
              "row1.getDescription()\n"
              "sql INSERT INTO PROBLEMS (PROBLEM ,DESCRIPTION ,upd_flag )VALUES (N'P1',N'Leak',0) -> 1\n");
  }
}

TEST(ApplyProblemRow, AsksAnAbsentFieldForItsPresenceAlone) {
  CopyFixture copy("3");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplyProblemRow(), {{"Problem", "P1"}}, "PROBLEMS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getProblem()\n"
            "row1.hasDescription()\n"
            "row1.hasCallType()\n"
            "row1.getProblem()\n"
            "sql UPDATE PROBLEMS SET PROBLEM = N'P1', upd_flag = 0 WHERE PROBLEM =N'P1' -> 0\n"
            "row1.hasDescription()\n"
            "row1.hasCallType()\n"
            "row1.getProblem()\n"
            "row1.hasDescription()\n"
            "row1.hasCallType()\n"
            "sql INSERT INTO PROBLEMS (PROBLEM ,upd_flag )VALUES (N'P1',0) -> 1\n");
}

TEST(ApplyProblemRow, WritesEachFieldAloneUnderGeneration3) {
  ExpectStatements(CopyFixture::ApplyProblemRow(), "3", 1, "PROBLEMS",
                   {{{{"Problem", "P1"}, {"Description", "Leak"}},
                     "UPDATE PROBLEMS SET PROBLEM = N'P1', DESCRIPTION = N'Leak', upd_flag = 0 WHERE PROBLEM =N'P1'",
                     "INSERT INTO PROBLEMS (PROBLEM ,DESCRIPTION ,upd_flag )VALUES (N'P1',N'Leak',0)"},
                    {{{"Problem", "P1"}, {"CallType", "T1"}},
                     "UPDATE PROBLEMS SET PROBLEM = N'P1', CALLTYPE = N'T1', upd_flag = 0 WHERE PROBLEM =N'P1'",
                     "INSERT INTO PROBLEMS (PROBLEM ,CALLTYPE ,upd_flag )VALUES (N'P1',N'T1',0)"}});
}

TEST(ApplyProblemRow, WritesEachFieldAloneAndNoCallTypeUnderTheOtherGenerations) {
  for (const char* generation : {"1", "8"}) {
    ExpectStatements(CopyFixture::ApplyProblemRow(), generation, 1, "PROBLEMS",
                     {{{{"Problem", "P1"}, {"Description", "Leak"}},
                       "UPDATE PROBLEMS SET PROBLEM = N'P1', DESCRIPTION = N'Leak', upd_flag = 0 WHERE PROBLEM =N'P1'",
                       "INSERT INTO PROBLEMS (PROBLEM ,DESCRIPTION ,upd_flag )VALUES (N'P1',N'Leak',0)"},
                      {{{"Problem", "P1"}, {"CallType", "T1"}},
                       "UPDATE PROBLEMS SET PROBLEM = N'P1', upd_flag = 0 WHERE PROBLEM =N'P1'",
                       "INSERT INTO PROBLEMS (PROBLEM ,upd_flag )VALUES (N'P1',0)"},
                      {{{"Problem", "P1"}},
                       "UPDATE PROBLEMS SET PROBLEM = N'P1', upd_flag = 0 WHERE PROBLEM =N'P1'",
                       "INSERT INTO PROBLEMS (PROBLEM ,upd_flag )VALUES (N'P1',0)"}});
  }
}

TEST(ApplyProblemRow, DoublesTheQuotesOfEveryText) {
  ExpectStatements(CopyFixture::ApplyProblemRow(), "3", 1, "PROBLEMS",
                   {{{{"Problem", "P'1"}, {"Description", "'Leak'"}, {"CallType", "'"}},
                     "UPDATE PROBLEMS SET PROBLEM = N'P''1', DESCRIPTION = N'''Leak''', CALLTYPE = N'''', upd_flag = 0 "
                     "WHERE PROBLEM =N'P''1'",
                     "INSERT INTO PROBLEMS (PROBLEM ,DESCRIPTION ,CALLTYPE ,upd_flag )VALUES "
                     "(N'P''1',N'''Leak''',N'''',0)"}});
}

TEST(ApplyProblemRow, WritesTheLiteralsOfOracle) {
  ExpectStatements(
      CopyFixture::ApplyProblemRow(), "3", /*databasePlatform=*/2, "PROBLEMS",
      {{{{"Problem", ""}, {"Description", ""}, {"CallType", ""}},
        "UPDATE PROBLEMS SET PROBLEM = N' ', DESCRIPTION = N' ', CALLTYPE = N' ', upd_flag = 0 WHERE PROBLEM =N' '",
        "INSERT INTO PROBLEMS (PROBLEM ,DESCRIPTION ,CALLTYPE ,upd_flag )VALUES (N' ',N' ',N' ',0)"}});
}

TEST(ApplyProblemRow, RunsEmptyStatementsUnderAnUnknownGeneration) {
  for (const char* generation : {"2", "03", ""}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({0});

    copy.Apply(CopyFixture::ApplyProblemRow(), kEveryField, "PROBLEMS");

    EXPECT_EQ(copy.journal.Take(),
              "sql  -> 0\n"
              "sql  -> 1\n");
  }
}

TEST(ApplyProblemRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(CopyFixture::ApplyProblemRow(), "3", kEveryField);
  ExpectCounts(CopyFixture::ApplyProblemRow(), "8", kEveryField);
}

TEST(ApplyProblemRow, FailsOnANullTextBeforeAnyStatement) {
  ExpectNullToFail(CopyFixture::ApplyProblemRow(), "3", kEveryField, {"Problem", "Description", "CallType"});
  ExpectNullToFail(CopyFixture::ApplyProblemRow(), "8", kEveryField, {"Problem", "Description"});
}

TEST(CopyProblem, CopiesTheWholeTableUnderEachGeneration) {
  ExpectPass(kFullCopy1, kFullCopy);
  ExpectPass(kFullCopy3, kFullCopy);
  ExpectPass(kFullCopy8, kFullCopy);
}

TEST(CopyProblem, FollowsTheChangesUnderEachGeneration) {
  ExpectPass(kOnlyChanged1, kOnlyChanged);
  ExpectPass(kOnlyChanged3, kOnlyChanged);
  ExpectPass(kOnlyChanged8, kOnlyChanged);
}

TEST(CopyProblem, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  ExpectFailureAtEachStep(kFullCopy1, kFullCopy,
                          "5100 Data copy: Problems: Problems could not be copied from the ERP (generation 1).");
  ExpectFailureAtEachStep(kFullCopy3, kFullCopy,
                          "5100 Data copy: Problems: Problems could not be copied from the ERP (generation 3).");
  ExpectFailureAtEachStep(kFullCopy8, kFullCopy,
                          "5100 Data copy: Problems: Problems could not be copied from the ERP (generation 8).");
}

TEST(CopyProblem, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  ExpectFailureAtEachStep(
      kOnlyChanged1, kOnlyChanged,
      "5100 Data copy: Problems - Only Changed: Problems could not be copied from the ERP (generation 1).");
  ExpectFailureAtEachStep(
      kOnlyChanged3, kOnlyChanged,
      "5100 Data copy: Problems - Only Changed: Problems could not be copied from the ERP (generation 3).");
  ExpectFailureAtEachStep(
      kOnlyChanged8, kOnlyChanged,
      "5100 Data copy: Problems - Only Changed: Problems could not be copied from the ERP (generation 8).");
}

TEST(CopyProblem, CountsADeletionWhetherTheTableHeldTheRowOrNot) {
  CopyFixture copy("8");
  copy.AddManager(
      kProblems8, "problems",
      {copy.RowWith({{"ActionType", "D"}, {"Problem", "P1"}}), copy.RowWith({{"ActionType", "D"}, {"Problem", "P1"}})});

  copy.CopyProblem("PROBLEMS", 2);

  EXPECT_EQ(copy.JournalWithout({"row", "create", "session", "problems", "query", "close", "period", "parameter",
                                 "input", "output", "criteria"}),
            "sql DELETE FROM PROBLEMS WHERE PROBLEM= N'P1'\n"
            "sql DELETE FROM PROBLEMS WHERE PROBLEM= N'P1'\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
            "N'PROBLEMS' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 2");
}

TEST(CopyProblem, RaisesANullOfTheErpAs194) {
  for (const std::int16_t SyncMethod : {std::int16_t{1}, std::int16_t{2}}) {
    SCOPED_TRACE(SyncMethod);
    CopyFixture copy("3");
    copy.AddManager(kProblems3, "problems", {copy.RowWith({{"Problem", "P1"}, {"CallType", Null()}})});

    const Text raised = Raised([&] { copy.CopyProblem("Problem", SyncMethod); });

    EXPECT_EQ(raised, SyncMethod == 1
                          ? "194 Data copy: Problems: Problems could not be copied from the ERP (generation 3)."
                          : "194 Data copy: Problems - Only Changed: Problems could not be copied from the ERP "
                            "(generation 3).");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Invalid use of Null\"\r\n");
  }
}

TEST(CopyProblem, LeavesAFullCopyWithObjectNotSetWhenTheComponentCannotBeCreated) {
  CopyFixture copy("3");

  const Text raised = Raised([&] { copy.CopyProblem("Problem", 1); });

  EXPECT_EQ(raised, "91 ZenqayDBSync: Object variable not set");
  EXPECT_EQ(copy.journal.Take(), "create Kv50QTMtsclmProblems.ProblemsManager\n");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Kv50QTMtsclmProblems.ProblemsManager\",\"Component can't create object: "
            "Kv50QTMtsclmProblems.ProblemsManager\"\r\n");
}

// The ERP's label is taken behind the creation of the manager.
TEST(CopyProblem, LeavesAnOnlyChangedPassWith529AndNoErpNamedWhenTheComponentCannotBeCreated) {
  CopyFixture copy("3");

  const Text raised = Raised([&] { copy.CopyProblem("Problem", 2); });

  EXPECT_EQ(raised, "529 Data copy: Problems - Only Changed: Problems could not be copied from .");
  EXPECT_EQ(copy.journal.Take(), "create Kv50QTMtsclmProblems.ProblemsManager\n");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Kv50QTMtsclmProblems.ProblemsManager\",\"Component can't create object: "
            "Kv50QTMtsclmProblems.ProblemsManager\"\r\n");
}

TEST(CopyProblem, ReportsAFullCopyUnderAnUnknownGenerationAsFailed) {
  CopyFixture copy("2");

  const Text job = RunJob(copy, "Problem", 1);

  EXPECT_EQ(job,
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "get DefaultDatabase\n"
            "query SELECT * FROM tstables WHERE tablename = N'Problem'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Problem' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
            "session.addManager(&nothing)\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Problem' -> 1\n"
            "event DataCopyError(time(10:11:12 AM), i16(5), i16(-1), \"See the log file "
            "LOGS\\Problem_20040131.log.\")\n"
            "event DataCopydone()\n"
            "close\n");
  EXPECT_EQ(copy.directory.Read("Problem_20040131.log"),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Object variable not set\"\r\n"
            "\"ZenqayDBSync\",\"Object variable not set\"\r\n");
}

TEST(CopyProblem, ReportsAnOnlyChangedPassUnderAnUnknownGenerationAsFailed) {
  CopyFixture copy("2");
  copy.AddManager(kProblems1, "problems");

  const Text job = RunJob(copy, "Problem", 2);

  EXPECT_EQ(job,
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "get DefaultDatabase\n"
            "query SELECT * FROM tstables WHERE tablename = N'Problem'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Problem' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
            "session.addManager(&nothing)\n"
            "create NetListSelectionCriteria.NetListSelectionCriteria\n"
            "create NetListSelectionCriteria.NetListIn\n"
            "create NetListSelectionCriteria.NetListOut\n"
            "create NetListSelectionCriteria.NetListPeriod\n"
            "create NetListSelectionCriteria.NetListParameter\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Problem' -> 1\n"
            "event DataCopyError(time(10:11:12 AM), i16(5), i16(-1), \"See the log file "
            "LOGS\\Problem_20040131.log.\")\n"
            "event DataCopydone()\n"
            "close\n");
  EXPECT_EQ(copy.directory.Read("Problem_20040131.log"),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Object variable not set\"\r\n"
            "\"Data copy: Problems - Only Changed\",\"Problems could not be copied from .\"\r\n");
}

TEST(CopyProblem, RaisesObjectNotSetUnderAnUnknownGeneration) {
  CopyFixture full("2");
  CopyFixture onlyChanged("2");
  onlyChanged.AddManager(kProblems1, "problems");

  EXPECT_EQ(Raised([&] { full.CopyProblem("Problem", 1); }), "91 ZenqayDBSync: Object variable not set");
  EXPECT_EQ(Raised([&] { onlyChanged.CopyProblem("Problem", 2); }),
            "191 Data copy: Problems - Only Changed: Problems could not be copied from .");
}

TEST(CopyProblem, DoesNothingUnderAnotherSyncMethod) {
  for (const int SyncMethod : {0, 3, -1}) {
    SCOPED_TRACE(SyncMethod);
    CopyFixture copy("1");
    copy.AddManager(kProblems1, "problems", {copy.RowWith({{"Problem", "P1"}})});

    copy.CopyProblem("Problem", static_cast<std::int16_t>(SyncMethod));

    EXPECT_EQ(copy.journal.Take(), "");
    EXPECT_EQ(copy.RunLog(), "");
  }
}

}  // namespace
}  // namespace zenqay
