// Problem: its row operation and its two passes, under the three generations. Only generation 3 has a call type.
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

const TestedEntity kProblems = {.copy = &CopyFixture::CopyProblem,
                                .apply = CopyFixture::ApplyProblemRow(),
                                .TableName = "Problem",
                                .caption = "Problems",
                                .onlyChanged = "Problems - Only Changed"};

const ErpSide kProblems1 = {.generation = "1",
                            .managerClass = "Kv40QTMtsspfProblems.ProblemsManager",
                            .name = "the ERP (generation 1)",
                            .keys = "Problem",
                            .list = "\"\", high(10)",
                            .listing = "NetListProblems",
                            .tableCode = "tsspf102",
                            .ranges = {{"cprl", "\"\"", "high(10)"}},
                            .fields = "cprl desc"};

const ErpSide kProblems3 = {.generation = "3",
                            .managerClass = "Kv50QTMtsclmProblems.ProblemsManager",
                            .name = "the ERP (generation 3)",
                            .keys = "Problem",
                            .list = "\"\", high(10)",
                            .listing = "NetListProblems",
                            .tableCode = "tsclm330",
                            .ranges = {{"cprl", "\"\"", "high(10)"}},
                            .fields = "cprl desc cltp"};

const ErpSide kProblems8 = {.generation = "8",
                            .managerClass = "Kv61QTMtsclmProblems.ProblemsManager",
                            .name = "the ERP (generation 8)",
                            .keys = "Problem",
                            .list = "\"\", high(10)",
                            .listing = "NetListProblems",
                            .tableCode = "tsclm330",
                            .ranges = {{"cprl", "\"\"", "high(10)"}},
                            .fields = "cprl desc"};

const RowFields kEveryField = {{"Problem", "P1"}, {"Description", "Leak"}, {"CallType", "T1"}};

const ListedRow kGone = {{{"ActionType", "D"}, {"Problem", "P'1"}},
                         {"getProblem", "sql DELETE FROM Problem WHERE PROBLEM= N'P''1'"}};

/// The rows have a call type under every generation.
Pass FullCopyOf(const ErpSide& erp) {
  if (erp.generation == "3") {
    return FullPass(kProblems, erp,
                    {{kEveryField,
                      {"getProblem hasDescription getDescription hasCallType getCallType getProblem",
                       "sql UPDATE Problem SET PROBLEM = N'P1', DESCRIPTION = N'Leak', CALLTYPE = N'T1', upd_flag = 0 "
                       "WHERE PROBLEM =N'P1' -> 1"}},
                     {{{"Problem", "P2"}, {"CallType", "T2"}},
                      {"getProblem hasDescription hasCallType getCallType getProblem",
                       "sql UPDATE Problem SET PROBLEM = N'P2', CALLTYPE = N'T2', upd_flag = 0 WHERE PROBLEM =N'P2' "
                       "-> 0",
                       "hasDescription hasCallType getProblem hasDescription hasCallType getCallType",
                       "sql INSERT INTO Problem (PROBLEM ,CALLTYPE ,upd_flag )VALUES (N'P2',N'T2',0) -> 1"}}},
                    {.icount = 2});
  }
  return FullPass(
      kProblems, erp,
      {{kEveryField,
        {"getProblem hasDescription getDescription getProblem",
         "sql UPDATE Problem SET PROBLEM = N'P1', DESCRIPTION = N'Leak', upd_flag = 0 WHERE PROBLEM =N'P1' -> 1"}},
       {{{"Problem", "P2"}, {"CallType", "T2"}},
        {"getProblem hasDescription getProblem",
         "sql UPDATE Problem SET PROBLEM = N'P2', upd_flag = 0 WHERE PROBLEM =N'P2' -> 0",
         "hasDescription getProblem hasDescription",
         "sql INSERT INTO Problem (PROBLEM ,upd_flag )VALUES (N'P2',0) -> 1"}}},
      {.icount = 2});
}

Pass OnlyChangedOf(const ErpSide& erp) {
  if (erp.generation == "3") {
    return ChangedPass(kProblems, erp,
                       {kGone,
                        {{{"ActionType", "U"}, {"Problem", "P2"}, {"CallType", "T2"}},
                         {"getProblem hasDescription hasCallType getCallType getProblem",
                          "sql UPDATE Problem SET PROBLEM = N'P2', CALLTYPE = N'T2', upd_flag = 0 WHERE PROBLEM "
                          "=N'P2' -> 1"}}},
                       {.ucount = 1, .dcount = 1});
  }
  return ChangedPass(kProblems, erp,
                     {kGone,
                      {{{"ActionType", "I"}, {"Problem", "P2"}, {"CallType", "T2"}},
                       {"getProblem hasDescription getProblem",
                        "sql UPDATE Problem SET PROBLEM = N'P2', upd_flag = 0 WHERE PROBLEM =N'P2' -> 0",
                        "hasDescription getProblem hasDescription",
                        "sql INSERT INTO Problem (PROBLEM ,upd_flag )VALUES (N'P2',0) -> 1"}}},
                     {.icount = 1, .dcount = 1});
}

TEST(ApplyProblemRow, AsksForTheCallTypeAtEachUseUnderGeneration3) {
  ExpectRow(kProblems, "3",
            {kEveryField,
             {"getProblem hasDescription getDescription hasCallType getCallType getProblem",
              "sql UPDATE Problem SET PROBLEM = N'P1', DESCRIPTION = N'Leak', CALLTYPE = N'T1', upd_flag = 0 WHERE "
              "PROBLEM =N'P1' -> 0",
              "hasDescription hasCallType getProblem hasDescription getDescription hasCallType getCallType",
              "sql INSERT INTO Problem (PROBLEM ,DESCRIPTION ,CALLTYPE ,upd_flag )VALUES (N'P1',N'Leak',N'T1',0) -> "
              "1"}});
}

TEST(ApplyProblemRow, NeverAsksForTheCallTypeUnderTheOtherGenerations) {
  for (const char* generation : {"1", "8"}) {
    ExpectRow(kProblems, generation,
              {kEveryField,
               {"getProblem hasDescription getDescription getProblem",
                "sql UPDATE Problem SET PROBLEM = N'P1', DESCRIPTION = N'Leak', upd_flag = 0 WHERE PROBLEM =N'P1' -> 0",
                "hasDescription getProblem hasDescription getDescription",
                "sql INSERT INTO Problem (PROBLEM ,DESCRIPTION ,upd_flag )VALUES (N'P1',N'Leak',0) -> 1"}});
  }
}

TEST(ApplyProblemRow, WritesTheKeyAloneOfARowWithoutAnyOtherField) {
  ExpectRow(kProblems, "3",
            {{{"Problem", "P1"}},
             {"getProblem hasDescription hasCallType getProblem",
              "sql UPDATE Problem SET PROBLEM = N'P1', upd_flag = 0 WHERE PROBLEM =N'P1' -> 0",
              "hasDescription hasCallType getProblem hasDescription hasCallType",
              "sql INSERT INTO Problem (PROBLEM ,upd_flag )VALUES (N'P1',0) -> 1"}});
}

TEST(ApplyProblemRow, WritesEachFieldAloneUnderGeneration3) {
  ExpectStatements(kProblems, "3",
                   {{{{"Problem", "P1"}, {"Description", "Leak"}},
                     "UPDATE Problem SET PROBLEM = N'P1', DESCRIPTION = N'Leak', upd_flag = 0 WHERE PROBLEM =N'P1'",
                     "INSERT INTO Problem (PROBLEM ,DESCRIPTION ,upd_flag )VALUES (N'P1',N'Leak',0)"},
                    {{{"Problem", "P1"}, {"CallType", "T1"}},
                     "UPDATE Problem SET PROBLEM = N'P1', CALLTYPE = N'T1', upd_flag = 0 WHERE PROBLEM =N'P1'",
                     "INSERT INTO Problem (PROBLEM ,CALLTYPE ,upd_flag )VALUES (N'P1',N'T1',0)"}});
}

TEST(ApplyProblemRow, WritesEachFieldAloneAndNoCallTypeUnderTheOtherGenerations) {
  for (const char* generation : {"1", "8"}) {
    ExpectStatements(kProblems, generation,
                     {{{{"Problem", "P1"}, {"Description", "Leak"}},
                       "UPDATE Problem SET PROBLEM = N'P1', DESCRIPTION = N'Leak', upd_flag = 0 WHERE PROBLEM =N'P1'",
                       "INSERT INTO Problem (PROBLEM ,DESCRIPTION ,upd_flag )VALUES (N'P1',N'Leak',0)"},
                      {{{"Problem", "P1"}, {"CallType", "T1"}},
                       "UPDATE Problem SET PROBLEM = N'P1', upd_flag = 0 WHERE PROBLEM =N'P1'",
                       "INSERT INTO Problem (PROBLEM ,upd_flag )VALUES (N'P1',0)"},
                      {{{"Problem", "P1"}},
                       "UPDATE Problem SET PROBLEM = N'P1', upd_flag = 0 WHERE PROBLEM =N'P1'",
                       "INSERT INTO Problem (PROBLEM ,upd_flag )VALUES (N'P1',0)"}});
  }
}

TEST(ApplyProblemRow, DoublesTheQuotesOfEveryText) {
  ExpectStatements(kProblems, "3",
                   {{{{"Problem", "P'1"}, {"Description", "'Leak'"}, {"CallType", "'"}},
                     "UPDATE Problem SET PROBLEM = N'P''1', DESCRIPTION = N'''Leak''', CALLTYPE = N'''', upd_flag = 0 "
                     "WHERE PROBLEM =N'P''1'",
                     "INSERT INTO Problem (PROBLEM ,DESCRIPTION ,CALLTYPE ,upd_flag )VALUES "
                     "(N'P''1',N'''Leak''',N'''',0)"}});
}

TEST(ApplyProblemRow, WritesTheLiteralsOfOracle) {
  ExpectStatements(
      kProblems, "3",
      {{{{"Problem", ""}, {"Description", ""}, {"CallType", ""}},
        "UPDATE Problem SET PROBLEM = N' ', DESCRIPTION = N' ', CALLTYPE = N' ', upd_flag = 0 WHERE PROBLEM =N' '",
        "INSERT INTO Problem (PROBLEM ,DESCRIPTION ,CALLTYPE ,upd_flag )VALUES (N' ',N' ',N' ',0)"}},
      /*databasePlatform=*/2);
}

TEST(ApplyProblemRow, RunsEmptyStatementsUnderAnUnknownGeneration) {
  for (const char* generation : {"2", "03", ""}) ExpectEmptyStatements(kProblems, generation, kEveryField);
}

TEST(ApplyProblemRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(kProblems, "3", kEveryField);
  ExpectCounts(kProblems, "8", kEveryField);
}

TEST(ApplyProblemRow, FailsOnANullTextBeforeAnyStatement) {
  ExpectNullToFail(kProblems, "3", kEveryField, {"Problem", "Description", "CallType"});
  ExpectNullToFail(kProblems, "8", kEveryField, {"Problem", "Description"});
}

TEST(CopyProblem, CopiesTheWholeTableUnderEachGeneration) {
  for (const ErpSide& erp : {kProblems1, kProblems3, kProblems8}) ExpectPass(FullCopyOf(erp));
}

TEST(CopyProblem, FollowsTheChangesUnderEachGeneration) {
  for (const ErpSide& erp : {kProblems1, kProblems3, kProblems8}) ExpectPass(OnlyChangedOf(erp));
}

TEST(CopyProblem, CountsADeletionWhetherTheTableHeldTheRowOrNot) {
  ExpectPass(ChangedPass(kProblems, kProblems1, {kGone, kGone}, {.dcount = 2}));
}

TEST(CopyProblem, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  for (const ErpSide& erp : {kProblems1, kProblems3, kProblems8}) ExpectFailureAtEachStep(FullCopyOf(erp));
}

TEST(CopyProblem, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  for (const ErpSide& erp : {kProblems1, kProblems3, kProblems8}) ExpectFailureAtEachStep(OnlyChangedOf(erp));
}

// The ERP's label is taken behind the creation of the manager.
TEST(CopyProblem, NamesNoErpWhereTheComponentIsMissing) {
  for (const ErpSide& erp : {kProblems1, kProblems3, kProblems8}) {
    for (const Pass& pass : BothPasses(kProblems, erp)) ExpectMissingComponent(pass);
  }
}

TEST(CopyProblem, CreatesNoManagerUnderAnUnknownGeneration) {
  for (const Pass& pass : BothPasses(kProblems, WithoutManager("2", kProblems1))) ExpectNoManager(pass);
}

TEST(CopyProblem, DoesNothingUnderAnotherSyncMethod) {
  ExpectNothingUnderOtherSyncMethods(kProblems, kProblems1);
}

}  // namespace
}  // namespace zenqay
