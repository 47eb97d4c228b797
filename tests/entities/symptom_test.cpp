// Symptom: its row operation, which builds its statements under generation 1 alone, and its two passes, which ask for
// the same component under every generation.
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

const TestedEntity kSymptoms = {.copy = &CopyFixture::CopySymptom,
                                .apply = CopyFixture::ApplySymptomRow(),
                                .TableName = "Symptom",
                                .caption = "Symptoms",
                                .onlyChanged = "Symptoms - Only Changed"};

const ErpSide kSymptoms1 = {.generation = "1",
                            .managerClass = "Kv40QTMtsspfSymptoms.SymptomsManager",
                            .name = "the ERP (generation 1)",
                            .keys = "Symptom",
                            .list = "\"\", high(10)",
                            .listing = "NetListSymptoms",
                            .tableCode = "tsspf101",
                            .ranges = {{"csym", "\"\"", "high(10)"}},
                            .fields = "csym desc",
                            .isNamedFirst = true};

const RowFields kEveryField = {{"Symptom", "S1"}, {"Description", "Noise"}};

const Pass kFullCopy = FullPass(
    kSymptoms, kSymptoms1,
    {{kEveryField,
      {"getSymptom hasDescription getDescription getSymptom",
       "sql UPDATE Symptom SET SYMPTOM = N'S1', DESCRIPTION = N'Noise', upd_flag = 0 WHERE SYMPTOM =N'S1' -> 1"}},
     {{{"Symptom", "S2"}},
      {"getSymptom hasDescription getSymptom",
       "sql UPDATE Symptom SET SYMPTOM = N'S2', upd_flag = 0 WHERE SYMPTOM =N'S2' -> 0",
       "hasDescription getSymptom hasDescription",
       "sql INSERT INTO Symptom (SYMPTOM ,upd_flag )VALUES (N'S2',0) -> 1"}}},
    {.icount = 2});

const ListedRow kGone = {{{"ActionType", "D"}, {"Symptom", "S'1"}},
                         {"getSymptom", "sql DELETE FROM Symptom WHERE SYMPTOM = N'S''1'"}};

const Pass kOnlyChanged = ChangedPass(
    kSymptoms, kSymptoms1,
    {kGone,
     {{{"ActionType", "U"}, {"Symptom", "S2"}, {"Description", "Smell"}},
      {"getSymptom hasDescription getDescription getSymptom",
       "sql UPDATE Symptom SET SYMPTOM = N'S2', DESCRIPTION = N'Smell', upd_flag = 0 WHERE SYMPTOM =N'S2' -> 1"}},
     {{{"ActionType", "I"}, {"Symptom", "S3"}},
      {"getSymptom hasDescription getSymptom",
       "sql UPDATE Symptom SET SYMPTOM = N'S3', upd_flag = 0 WHERE SYMPTOM =N'S3' -> 0",
       "hasDescription getSymptom hasDescription",
       "sql INSERT INTO Symptom (SYMPTOM ,upd_flag )VALUES (N'S3',0) -> 1"}}},
    {.ucount = 1, .icount = 1, .dcount = 1});

/// A database that takes a statement without a text: the first row seems to be updated, the second to be inserted.
Pass FullCopyWithEmptyStatementsUnder(const Text& generation) {
  return Under(generation, FullPass(kSymptoms, kSymptoms1,
                                    {{kEveryField, {"sql  -> 1"}}, {{{"Symptom", "S2"}}, {"sql  -> 0", "sql  -> 1"}}},
                                    {.icount = 2}));
}

/// The deletion does not look at the generation; only the statements of the row operation stay empty.
Pass OnlyChangedWithEmptyStatementsUnder(const Text& generation) {
  return Under(generation, ChangedPass(kSymptoms, kSymptoms1,
                                       {kGone,
                                        {{{"ActionType", "U"}, {"Symptom", "S2"}}, {"sql  -> 1"}},
                                        {{{"ActionType", "I"}, {"Symptom", "S3"}}, {"sql  -> 0", "sql  -> 1"}}},
                                       {.ucount = 1, .icount = 1, .dcount = 1}));
}

TEST(ApplySymptomRow, AsksForTheKeyAndTheDescriptionAtEachUse) {
  ExpectRow(kSymptoms, "1",
            {kEveryField,
             {"getSymptom hasDescription getDescription getSymptom",
              "sql UPDATE Symptom SET SYMPTOM = N'S1', DESCRIPTION = N'Noise', upd_flag = 0 WHERE SYMPTOM =N'S1' -> 0",
              "hasDescription getSymptom hasDescription getDescription",
              "sql INSERT INTO Symptom (SYMPTOM ,DESCRIPTION ,upd_flag )VALUES (N'S1',N'Noise',0) -> 1"}});
}

TEST(ApplySymptomRow, WritesTheKeyAloneOfARowWithoutADescription) {
  ExpectRow(kSymptoms, "1",
            {{{"Symptom", "S1"}},
             {"getSymptom hasDescription getSymptom",
              "sql UPDATE Symptom SET SYMPTOM = N'S1', upd_flag = 0 WHERE SYMPTOM =N'S1' -> 0",
              "hasDescription getSymptom hasDescription",
              "sql INSERT INTO Symptom (SYMPTOM ,upd_flag )VALUES (N'S1',0) -> 1"}});
}

TEST(ApplySymptomRow, DoublesTheQuotesOfEveryText) {
  ExpectStatements(
      kSymptoms, "1",
      {{{{"Symptom", "S'1"}, {"Description", "'Noise'"}},
        "UPDATE Symptom SET SYMPTOM = N'S''1', DESCRIPTION = N'''Noise''', upd_flag = 0 WHERE SYMPTOM =N'S''1'",
        "INSERT INTO Symptom (SYMPTOM ,DESCRIPTION ,upd_flag )VALUES (N'S''1',N'''Noise''',0)"}});
}

TEST(ApplySymptomRow, WritesTheLiteralsOfOracle) {
  ExpectStatements(kSymptoms, "1",
                   {{{{"Symptom", ""}, {"Description", ""}},
                     "UPDATE Symptom SET SYMPTOM = N' ', DESCRIPTION = N' ', upd_flag = 0 WHERE SYMPTOM =N' '",
                     "INSERT INTO Symptom (SYMPTOM ,DESCRIPTION ,upd_flag )VALUES (N' ',N' ',0)"}},
                   /*databasePlatform=*/2);
}

TEST(ApplySymptomRow, RunsEmptyStatementsAndAsksTheRowNothingUnderAnotherGeneration) {
  for (const char* generation : {"3", "8", "2", "01", ""}) ExpectEmptyStatements(kSymptoms, generation, kEveryField);
}

TEST(ApplySymptomRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(kSymptoms, "1", kEveryField);
}

TEST(ApplySymptomRow, FailsOnANullTextBeforeAnyStatement) {
  ExpectNullToFail(kSymptoms, "1", kEveryField, {"Symptom", "Description"});
}

TEST(CopySymptom, CopiesTheWholeTable) {
  ExpectPass(kFullCopy);
}

TEST(CopySymptom, FollowsTheChanges) {
  ExpectPass(kOnlyChanged);
}

TEST(CopySymptom, RunsAnEmptyStatementForEachRowUnderAnotherGenerationThatHasTheComponent) {
  for (const char* generation : {"3", "8"}) {
    ExpectPass(FullCopyWithEmptyStatementsUnder(generation));
    ExpectPass(OnlyChangedWithEmptyStatementsUnder(generation));
  }
}

TEST(CopySymptom, FailsAtTheFirstRowWhenTheDatabaseRefusesAnEmptyStatement) {
  const Pass full = FullCopyWithEmptyStatementsUnder("3");
  const Pass onlyChanged = OnlyChangedWithEmptyStatementsUnder("8");
  const struct {
    Pass pass;
    Text trace;
    Text raised;
  } cases[] = {
      {full, UpTo("sql  -> 1", TraceOf(full)) + "manager.Close()\n",
       "-2147217808 Data copy: Symptoms: Symptoms could not be copied from the ERP (generation 1)."},
      {onlyChanged, UpTo("sql  -> 1", TraceOf(onlyChanged)),
       "-2147217808 Data copy: Symptoms - Only Changed: Symptoms could not be copied from the ERP (generation 1)."},
  };
  for (const auto& [pass, trace, raised] : cases) {
    SCOPED_TRACE(raised);
    CopyFixture copy(pass.erp.generation);
    Arrange(copy, pass);
    copy.database.refusesEmptyStatements = true;

    EXPECT_EQ(Raised([&, method = pass.SyncMethod] { copy.CopySymptom("Symptom", method); }), raised);

    EXPECT_EQ(copy.journal.Take(), trace);
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Command text was not set for the command object.\"\r\n");
  }
}

TEST(CopySymptom, CountsADeletionWhetherTheTableHeldTheRowOrNot) {
  ExpectPass(ChangedPass(kSymptoms, kSymptoms1, {kGone, kGone}, {.dcount = 2}));
}

TEST(CopySymptom, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  ExpectFailureAtEachStep(kFullCopy);
  ExpectFailureAtEachStep(FullCopyWithEmptyStatementsUnder("3"));
}

TEST(CopySymptom, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  ExpectFailureAtEachStep(kOnlyChanged);
  ExpectFailureAtEachStep(OnlyChangedWithEmptyStatementsUnder("8"));
}

// The only-changed pass knows the ERP's name before anything can fail.
TEST(CopySymptom, FailsUnderEveryGenerationThatLacksTheComponent) {
  for (const char* generation : {"1", "3", "8"}) {
    for (const Pass& pass : BothPasses(kSymptoms, kSymptoms1)) ExpectMissingComponent(Under(generation, pass));
  }
}

TEST(CopySymptom, DoesNothingUnderAnotherSyncMethod) {
  ExpectNothingUnderOtherSyncMethods(kSymptoms, kSymptoms1);
}

}  // namespace
}  // namespace zenqay
