// Symptom: its row operation, which builds its statements under generation 1 alone, and its two passes, which ask for
// the same component under every generation.
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

constexpr const char* kSymptoms = "Kv40QTMtsspfSymptoms.SymptomsManager";

const EntityCall kFullCopy = {&CopyFixture::CopySymptom, "Symptom", 1};
const EntityCall kOnlyChanged = {&CopyFixture::CopySymptom, "Symptom", 2};

const RowFields kEveryField = {{"Symptom", "S1"}, {"Description", "Noise"}};

const EntityPass kFullCopy1 = {
    .generation = "1",
    .managerClass = kSymptoms,
    .managerName = "symptoms",
    .rows = {kEveryField, {{"Symptom", "S2"}}},
    .counts = {1, 0, 1},
    .trace =
        "create Kv40QTMtsspfSymptoms.SymptomsManager\n"
        "session.addManager(&<symptoms>)\n"
        "symptoms.Initialize(&\"100\")\n"
        "symptoms.List(\"\", high(10))\n"
        "sql UPDATE Symptom SET upd_flag = 1 \n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getSymptom()\n"
        "row1.hasDescription()\n"
        "row1.getDescription()\n"
        "row1.getSymptom()\n"
        "sql UPDATE Symptom SET SYMPTOM = N'S1', DESCRIPTION = N'Noise', upd_flag = 0 WHERE SYMPTOM =N'S1' -> 1\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getSymptom()\n"
        "row2.hasDescription()\n"
        "row2.getSymptom()\n"
        "sql UPDATE Symptom SET SYMPTOM = N'S2', upd_flag = 0 WHERE SYMPTOM =N'S2' -> 0\n"
        "row2.hasDescription()\n"
        "row2.getSymptom()\n"
        "row2.hasDescription()\n"
        "sql INSERT INTO Symptom (SYMPTOM ,upd_flag )VALUES (N'S2',0) -> 1\n"
        "rows.hasMoreElements()\n"
        "sql DELETE FROM Symptom WHERE upd_flag = 1\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Symptom' -> 1\n"
        "symptoms.Close()\n",
    .counters = "ucount 0, icount 2, dcount 0",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Symptom -  2\"\r\n"};

/// A database that takes a statement without a text: the first row seems to be updated, the second to be inserted.
EntityPass FullCopyWithEmptyStatementsUnder(const Text& generation) {
  return {.generation = generation,
          .managerClass = kSymptoms,
          .managerName = "symptoms",
          .rows = {kEveryField, {{"Symptom", "S2"}}},
          .counts = {1, 0, 1},
          .trace =
              "create Kv40QTMtsspfSymptoms.SymptomsManager\n"
              "session.addManager(&<symptoms>)\n"
              "symptoms.Initialize(&\"100\")\n"
              "symptoms.List(\"\", high(10))\n"
              "sql UPDATE Symptom SET upd_flag = 1 \n"
              "rows.hasMoreElements()\n"
              "rows.nextElement()\n"
              "sql  -> 1\n"
              "rows.hasMoreElements()\n"
              "rows.nextElement()\n"
              "sql  -> 0\n"
              "sql  -> 1\n"
              "rows.hasMoreElements()\n"
              "sql DELETE FROM Symptom WHERE upd_flag = 1\n"
              "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
              "N'Symptom' -> 1\n"
              "symptoms.Close()\n",
          .counters = "ucount 0, icount 2, dcount 0",
          .runLog =
              "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
              "\"Rows copied: Symptom -  2\"\r\n"};
}

const std::vector<RowFields> kChanges = {{{"ActionType", "D"}, {"Symptom", "S1"}},
                                         {{"ActionType", "U"}, {"Symptom", "S2"}, {"Description", "Smell"}},
                                         {{"ActionType", "I"}, {"Symptom", "S3"}}};

const EntityPass kOnlyChanged1 = {
    .generation = "1",
    .managerClass = kSymptoms,
    .managerName = "symptoms",
    .rows = kChanges,
    .counts = {1, 0, 1},
    .trace =
        "create Kv40QTMtsspfSymptoms.SymptomsManager\n"
        "session.addManager(&<symptoms>)\n"
        "create NetListSelectionCriteria.NetListSelectionCriteria\n"
        "create NetListSelectionCriteria.NetListIn\n"
        "create NetListSelectionCriteria.NetListOut\n"
        "create NetListSelectionCriteria.NetListPeriod\n"
        "create NetListSelectionCriteria.NetListParameter\n"
        "symptoms.Initialize(&\"100\")\n"
        "query SELECT * FROM tstables WHERE tablename = N'Symptom'\n"
        "close recordset\n"
        "period.setFrom(<object>)\n"
        "period.setTo(<object>)\n"
        "criteria.setNetListPeriod(&<period>)\n"
        "parameter.setFieldName(\"csym\")\n"
        "parameter.setFrom(\"\")\n"
        "parameter.setTo(high(10))\n"
        "input.addNetListParameter(&<parameter>)\n"
        "criteria.setNetListIn(&<input>)\n"
        "output.addFieldNameWithoutOld(\"csym\")\n"
        "output.addFieldNameWithoutOld(\"desc\")\n"
        "criteria.setNetListOut(&<output>)\n"
        "symptoms.NetListSymptoms(&\"tsspf101\", &<criteria>)\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getActionType()\n"
        "row1.getSymptom()\n"
        "sql DELETE FROM Symptom WHERE SYMPTOM = N'S1'\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getActionType()\n"
        "row2.getSymptom()\n"
        "row2.hasDescription()\n"
        "row2.getDescription()\n"
        "row2.getSymptom()\n"
        "sql UPDATE Symptom SET SYMPTOM = N'S2', DESCRIPTION = N'Smell', upd_flag = 0 WHERE SYMPTOM =N'S2' -> 1\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row3.getActionType()\n"
        "row3.getSymptom()\n"
        "row3.hasDescription()\n"
        "row3.getSymptom()\n"
        "sql UPDATE Symptom SET SYMPTOM = N'S3', upd_flag = 0 WHERE SYMPTOM =N'S3' -> 0\n"
        "row3.hasDescription()\n"
        "row3.getSymptom()\n"
        "row3.hasDescription()\n"
        "sql INSERT INTO Symptom (SYMPTOM ,upd_flag )VALUES (N'S3',0) -> 1\n"
        "rows.hasMoreElements()\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Symptom' -> 1\n",
    .counters = "ucount 1, icount 1, dcount 1",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Symptom -  1\"\r\n"
        "\"Rows updated: Symptom -  1\"\r\n"
        "\"Rows deleted: Symptom -  1\"\r\n"};

/// The deletion does not look at the generation; only the statements of the row operation stay empty.
EntityPass OnlyChangedWithEmptyStatementsUnder(const Text& generation) {
  return {.generation = generation,
          .managerClass = kSymptoms,
          .managerName = "symptoms",
          .rows = kChanges,
          .counts = {1, 0, 1},
          .trace =
              "create Kv40QTMtsspfSymptoms.SymptomsManager\n"
              "session.addManager(&<symptoms>)\n"
              "create NetListSelectionCriteria.NetListSelectionCriteria\n"
              "create NetListSelectionCriteria.NetListIn\n"
              "create NetListSelectionCriteria.NetListOut\n"
              "create NetListSelectionCriteria.NetListPeriod\n"
              "create NetListSelectionCriteria.NetListParameter\n"
              "symptoms.Initialize(&\"100\")\n"
              "query SELECT * FROM tstables WHERE tablename = N'Symptom'\n"
              "close recordset\n"
              "period.setFrom(<object>)\n"
              "period.setTo(<object>)\n"
              "criteria.setNetListPeriod(&<period>)\n"
              "parameter.setFieldName(\"csym\")\n"
              "parameter.setFrom(\"\")\n"
              "parameter.setTo(high(10))\n"
              "input.addNetListParameter(&<parameter>)\n"
              "criteria.setNetListIn(&<input>)\n"
              "output.addFieldNameWithoutOld(\"csym\")\n"
              "output.addFieldNameWithoutOld(\"desc\")\n"
              "criteria.setNetListOut(&<output>)\n"
              "symptoms.NetListSymptoms(&\"tsspf101\", &<criteria>)\n"
              "rows.hasMoreElements()\n"
              "rows.nextElement()\n"
              "row1.getActionType()\n"
              "row1.getSymptom()\n"
              "sql DELETE FROM Symptom WHERE SYMPTOM = N'S1'\n"
              "rows.hasMoreElements()\n"
              "rows.nextElement()\n"
              "row2.getActionType()\n"
              "sql  -> 1\n"
              "rows.hasMoreElements()\n"
              "rows.nextElement()\n"
              "row3.getActionType()\n"
              "sql  -> 0\n"
              "sql  -> 1\n"
              "rows.hasMoreElements()\n"
              "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
              "N'Symptom' -> 1\n",
          .counters = "ucount 1, icount 1, dcount 1",
          .runLog =
              "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
              "\"Rows copied: Symptom -  1\"\r\n"
              "\"Rows updated: Symptom -  1\"\r\n"
              "\"Rows deleted: Symptom -  1\"\r\n"};
}

TEST(ApplySymptomRow, AsksForTheKeyAndTheDescriptionAtEachUse) {
  CopyFixture copy("1");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySymptomRow(), kEveryField, "SYMPTOMS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getSymptom()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.getSymptom()\n"
            "sql UPDATE SYMPTOMS SET SYMPTOM = N'S1', DESCRIPTION = N'Noise', upd_flag = 0 WHERE SYMPTOM =N'S1' -> 0\n"
            "row1.hasDescription()\n"
            "row1.getSymptom()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "sql INSERT INTO SYMPTOMS (SYMPTOM ,DESCRIPTION ,upd_flag )VALUES (N'S1',N'Noise',0) -> 1\n");
}

TEST(ApplySymptomRow, AsksAnAbsentDescriptionForItsPresenceAlone) {
  CopyFixture copy("1");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySymptomRow(), {{"Symptom", "S1"}}, "SYMPTOMS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getSymptom()\n"
            "row1.hasDescription()\n"
            "row1.getSymptom()\n"
            "sql UPDATE SYMPTOMS SET SYMPTOM = N'S1', upd_flag = 0 WHERE SYMPTOM =N'S1' -> 0\n"
            "row1.hasDescription()\n"
            "row1.getSymptom()\n"
            "row1.hasDescription()\n"
            "sql INSERT INTO SYMPTOMS (SYMPTOM ,upd_flag )VALUES (N'S1',0) -> 1\n");
}

TEST(ApplySymptomRow, DoublesTheQuotesOfEveryText) {
  ExpectStatements(
      CopyFixture::ApplySymptomRow(), "1", 1, "SYMPTOMS",
      {{{{"Symptom", "S'1"}, {"Description", "'Noise'"}},
        "UPDATE SYMPTOMS SET SYMPTOM = N'S''1', DESCRIPTION = N'''Noise''', upd_flag = 0 WHERE SYMPTOM =N'S''1'",
        "INSERT INTO SYMPTOMS (SYMPTOM ,DESCRIPTION ,upd_flag )VALUES (N'S''1',N'''Noise''',0)"}});
}

TEST(ApplySymptomRow, WritesTheLiteralsOfOracle) {
  ExpectStatements(CopyFixture::ApplySymptomRow(), "1", /*databasePlatform=*/2, "SYMPTOMS",
                   {{{{"Symptom", ""}, {"Description", ""}},
                     "UPDATE SYMPTOMS SET SYMPTOM = N' ', DESCRIPTION = N' ', upd_flag = 0 WHERE SYMPTOM =N' '",
                     "INSERT INTO SYMPTOMS (SYMPTOM ,DESCRIPTION ,upd_flag )VALUES (N' ',N' ',0)"}});
}

TEST(ApplySymptomRow, RunsEmptyStatementsAndAsksTheRowNothingUnderAnotherGeneration) {
  for (const char* generation : {"3", "8", "2", "01", ""}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({0});

    copy.Apply(CopyFixture::ApplySymptomRow(), kEveryField, "SYMPTOMS");

    EXPECT_EQ(copy.journal.Take(),
              "sql  -> 0\n"
              "sql  -> 1\n");
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  }
}

TEST(ApplySymptomRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(CopyFixture::ApplySymptomRow(), "1", kEveryField);
}

TEST(ApplySymptomRow, FailsOnANullTextBeforeAnyStatement) {
  ExpectNullToFail(CopyFixture::ApplySymptomRow(), "1", kEveryField, {"Symptom", "Description"});
}

TEST(CopySymptom, CopiesTheWholeTable) {
  ExpectPass(kFullCopy1, kFullCopy);
}

TEST(CopySymptom, FollowsTheChanges) {
  ExpectPass(kOnlyChanged1, kOnlyChanged);
}

TEST(CopySymptom, RunsAnEmptyStatementForEachRowUnderAnotherGenerationThatHasTheComponent) {
  for (const char* generation : {"3", "8"}) {
    ExpectPass(FullCopyWithEmptyStatementsUnder(generation), kFullCopy);
    ExpectPass(OnlyChangedWithEmptyStatementsUnder(generation), kOnlyChanged);
  }
}

TEST(CopySymptom, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  const Text raised = "5100 Data copy: Symptoms: Symptoms could not be copied from the ERP (generation 1).";
  ExpectFailureAtEachStep(kFullCopy1, kFullCopy, raised);
  ExpectFailureAtEachStep(FullCopyWithEmptyStatementsUnder("3"), kFullCopy, raised);
}

TEST(CopySymptom, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  const Text raised =
      "5100 Data copy: Symptoms - Only Changed: Symptoms could not be copied from the ERP (generation 1).";
  ExpectFailureAtEachStep(kOnlyChanged1, kOnlyChanged, raised);
  ExpectFailureAtEachStep(OnlyChangedWithEmptyStatementsUnder("8"), kOnlyChanged, raised);
}

TEST(CopySymptom, FailsItsFullCopyAtTheFirstRowWhenTheDatabaseRefusesAnEmptyStatement) {
  for (const char* generation : {"3", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.AddManager(kSymptoms, "symptoms", {copy.RowWith(kEveryField)});
    copy.database.refusesEmptyStatements = true;

    const CopyResult result = copy.CopyTable(1, "Symptom", 1);

    EXPECT_EQ(result, CopyResult::Failed);
    EXPECT_EQ(copy.journal.Take(),
              "query SELECT * FROM tstables WHERE tablename = N'Symptom'\n"
              "close recordset\n"
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Symptom' -> 1\n"
              "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
              "create Kv40QTMtsspfSymptoms.SymptomsManager\n"
              "session.addManager(&<symptoms>)\n"
              "symptoms.Initialize(&\"100\")\n"
              "symptoms.List(\"\", high(10))\n"
              "sql UPDATE Symptom SET upd_flag = 1 \n"
              "rows.hasMoreElements()\n"
              "rows.nextElement()\n"
              "sql  -> 1\n"
              "symptoms.Close()\n"
              "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Symptom' -> 1\n");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Command text was not set for the command object.\"\r\n"
              "\"Data copy: Symptoms\",\"Symptoms could not be copied from the ERP (generation 1).\"\r\n");
  }
}

TEST(CopySymptom, RaisesTheRefusalOfAnEmptyStatementWithItsNumberPlus100) {
  CopyFixture full("3");
  full.AddManager(kSymptoms, "symptoms", {full.RowWith(kEveryField)});
  full.database.refusesEmptyStatements = true;
  CopyFixture onlyChanged("8");
  onlyChanged.AddManager(kSymptoms, "symptoms", {onlyChanged.RowWith(kEveryField)});
  onlyChanged.database.refusesEmptyStatements = true;

  EXPECT_EQ(Raised([&] { full.CopySymptom("Symptom", 1); }),
            "-2147217808 Data copy: Symptoms: Symptoms could not be copied from the ERP (generation 1).");
  EXPECT_EQ(Raised([&] { onlyChanged.CopySymptom("Symptom", 2); }),
            "-2147217808 Data copy: Symptoms - Only Changed: Symptoms could not be copied from the ERP (generation "
            "1).");
}

TEST(CopySymptom, CountsADeletionWhetherTheTableHeldTheRowOrNot) {
  CopyFixture copy("1");
  copy.AddManager(
      kSymptoms, "symptoms",
      {copy.RowWith({{"ActionType", "D"}, {"Symptom", "S1"}}), copy.RowWith({{"ActionType", "D"}, {"Symptom", "S1"}})});

  copy.CopySymptom("SYMPTOMS", 2);

  EXPECT_EQ(copy.JournalWithout({"row", "create", "session", "symptoms", "query", "close", "period", "parameter",
                                 "input", "output", "criteria"}),
            "sql DELETE FROM SYMPTOMS WHERE SYMPTOM = N'S1'\n"
            "sql DELETE FROM SYMPTOMS WHERE SYMPTOM = N'S1'\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
            "N'SYMPTOMS' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 2");
}

TEST(CopySymptom, RaisesANullOfTheErpAs194) {
  for (const std::int16_t SyncMethod : {std::int16_t{1}, std::int16_t{2}}) {
    SCOPED_TRACE(SyncMethod);
    CopyFixture copy("1");
    copy.AddManager(kSymptoms, "symptoms", {copy.RowWith({{"Symptom", "S1"}, {"Description", Null()}})});

    const Text raised = Raised([&] { copy.CopySymptom("Symptom", SyncMethod); });

    EXPECT_EQ(raised, SyncMethod == 1
                          ? "194 Data copy: Symptoms: Symptoms could not be copied from the ERP (generation 1)."
                          : "194 Data copy: Symptoms - Only Changed: Symptoms could not be copied from the ERP "
                            "(generation 1).");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Invalid use of Null\"\r\n");
  }
}

TEST(CopySymptom, LeavesAFullCopyWithObjectNotSetWhenTheComponentCannotBeCreated) {
  for (const char* generation : {"1", "3", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);

    const Text raised = Raised([&] { copy.CopySymptom("Symptom", 1); });

    EXPECT_EQ(raised, "91 ZenqayDBSync: Object variable not set");
    EXPECT_EQ(copy.journal.Take(), "create Kv40QTMtsspfSymptoms.SymptomsManager\n");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"Kv40QTMtsspfSymptoms.SymptomsManager\",\"Component can't create object: "
              "Kv40QTMtsspfSymptoms.SymptomsManager\"\r\n");
  }
}

// The ERP's label is known before anything can fail.
TEST(CopySymptom, LeavesAnOnlyChangedPassWith529AndTheErpsNameWhenTheComponentCannotBeCreated) {
  for (const char* generation : {"1", "3", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);

    const Text raised = Raised([&] { copy.CopySymptom("Symptom", 2); });

    EXPECT_EQ(raised,
              "529 Data copy: Symptoms - Only Changed: Symptoms could not be copied from the ERP (generation 1).");
    EXPECT_EQ(copy.journal.Take(), "create Kv40QTMtsspfSymptoms.SymptomsManager\n");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"Kv40QTMtsspfSymptoms.SymptomsManager\",\"Component can't create object: "
              "Kv40QTMtsspfSymptoms.SymptomsManager\"\r\n");
  }
}

TEST(CopySymptom, ReportsAFullCopyUnderAGenerationThatLacksSymptomsAsFailed) {
  for (const char* generation : {"3", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);

    const Text job = RunJob(copy, "Symptom", 1);

    EXPECT_EQ(job,
              "open\n"
              "sql SET DATEFORMAT YMD\n"
              "get DefaultDatabase\n"
              "query SELECT * FROM tstables WHERE tablename = N'Symptom'\n"
              "close recordset\n"
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Symptom' -> 1\n"
              "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
              "create Kv40QTMtsspfSymptoms.SymptomsManager\n"
              "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Symptom' -> 1\n"
              "event DataCopyError(time(10:11:12 AM), i16(5), i16(-1), \"See the log file "
              "LOGS\\Symptom_20040131.log.\")\n"
              "event DataCopydone()\n"
              "close\n");
    EXPECT_EQ(copy.directory.Read("Symptom_20040131.log"),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"Kv40QTMtsspfSymptoms.SymptomsManager\",\"Component can't create object: "
              "Kv40QTMtsspfSymptoms.SymptomsManager\"\r\n"
              "\"ZenqayDBSync\",\"Object variable not set\"\r\n");
  }
}

TEST(CopySymptom, ReportsAnOnlyChangedPassUnderAGenerationThatLacksSymptomsAsFailed) {
  for (const char* generation : {"3", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);

    const Text job = RunJob(copy, "Symptom", 2);

    EXPECT_EQ(job,
              "open\n"
              "sql SET DATEFORMAT YMD\n"
              "get DefaultDatabase\n"
              "query SELECT * FROM tstables WHERE tablename = N'Symptom'\n"
              "close recordset\n"
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Symptom' -> 1\n"
              "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
              "create Kv40QTMtsspfSymptoms.SymptomsManager\n"
              "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Symptom' -> 1\n"
              "event DataCopyError(time(10:11:12 AM), i16(5), i16(-1), \"See the log file "
              "LOGS\\Symptom_20040131.log.\")\n"
              "event DataCopydone()\n"
              "close\n");
    EXPECT_EQ(copy.directory.Read("Symptom_20040131.log"),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"Kv40QTMtsspfSymptoms.SymptomsManager\",\"Component can't create object: "
              "Kv40QTMtsspfSymptoms.SymptomsManager\"\r\n"
              "\"Data copy: Symptoms - Only Changed\",\"Symptoms could not be copied from the ERP (generation "
              "1).\"\r\n");
  }
}

TEST(CopySymptom, DoesNothingUnderAnotherSyncMethod) {
  for (const int SyncMethod : {0, 3, -1}) {
    SCOPED_TRACE(SyncMethod);
    CopyFixture copy("1");
    copy.AddManager(kSymptoms, "symptoms", {copy.RowWith(kEveryField)});

    copy.CopySymptom("Symptom", static_cast<std::int16_t>(SyncMethod));

    EXPECT_EQ(copy.journal.Take(), "");
    EXPECT_EQ(copy.RunLog(), "");
  }
}

}  // namespace
}  // namespace zenqay
