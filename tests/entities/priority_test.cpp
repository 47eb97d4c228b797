// Priority: its row operation and its two passes, under the three generations. The key is a number, asked for by a
// range of 16-bit integers, written bare and matched quoted.
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

const TestedEntity kPriorities = {.copy = &CopyFixture::CopyPriority,
                                  .apply = CopyFixture::ApplyPriorityRow(),
                                  .TableName = "Priority",
                                  .caption = "Priorities",
                                  .onlyChanged = "Priorities - Only Changed"};

// Both listings ask for the priorities from 0 to 999: one of 1000 is outside.
const ErpSide kPriorities1 = {.generation = "1",
                              .managerClass = "Kv40QTMtssmaPriorities.PrioritiesManager",
                              .name = "the ERP (generation 1)",
                              .keys = "Priority",
                              .list = "i16(0), i16(999)",
                              .listing = "NetListPriorities",
                              .tableCode = "tssma304",
                              .ranges = {{"prno", "i16(0)", "i16(999)"}},
                              .fields = "prno desc"};

const ErpSide kPriorities3 = {.generation = "3",
                              .managerClass = "Kv50QTMtcmcsPriorities.PrioritiesManager",
                              .name = "the ERP (generation 3)",
                              .keys = "Priority",
                              .list = "i16(0), i16(999)",
                              .listing = "NetListPriorities",
                              .tableCode = "tcmcs070",
                              .ranges = {{"prio", "i16(0)", "i16(999)"}},
                              .fields = "prio dsca"};

const ErpSide kPriorities8 = {.generation = "8",
                              .managerClass = "Kv61QTMtcmcsPriorities.PrioritiesManager",
                              .name = "the ERP (generation 8)",
                              .keys = "Priority",
                              .list = "i16(0), i16(999)",
                              .listing = "NetListPriorities",
                              .tableCode = "tcmcs070",
                              .ranges = {{"prio", "i16(0)", "i16(999)"}},
                              .fields = "prio dsca"};

const RowFields kEveryField = {{"Priority", std::int16_t{7}}, {"Description", "High"}};

Pass FullCopyOf(const ErpSide& erp) {
  return FullPass(
      kPriorities, erp,
      {{kEveryField,
        {"getPriority hasDescription getDescription getPriority",
         "sql UPDATE Priority SET PRIORITY = 7, DESCRIPTION = N'High', upd_flag = 0 WHERE PRIORITY =N'7' -> 1"}},
       {{{"Priority", std::int16_t{999}}},
        {"getPriority hasDescription getPriority",
         "sql UPDATE Priority SET PRIORITY = 999, upd_flag = 0 WHERE PRIORITY =N'999' -> 0",
         "hasDescription getPriority hasDescription",
         "sql INSERT INTO Priority (PRIORITY ,upd_flag )VALUES (999,0) -> 1"}}},
      {.icount = 2});
}

const ListedRow kGone = {{{"ActionType", "D"}, {"Priority", std::int16_t{7}}},
                         {"getPriority", "sql DELETE FROM Priority WHERE PRIORITY= N'7'"}};

Pass OnlyChangedOf(const ErpSide& erp) {
  return ChangedPass(
      kPriorities, erp,
      {kGone,
       {{{"ActionType", "U"}, {"Priority", std::int16_t{8}}, {"Description", "Low"}},
        {"getPriority hasDescription getDescription getPriority",
         "sql UPDATE Priority SET PRIORITY = 8, DESCRIPTION = N'Low', upd_flag = 0 WHERE PRIORITY =N'8' -> 1"}},
       {{{"ActionType", "I"}, {"Priority", std::int16_t{0}}},
        {"getPriority hasDescription getPriority",
         "sql UPDATE Priority SET PRIORITY = 0, upd_flag = 0 WHERE PRIORITY =N'0' -> 0",
         "hasDescription getPriority hasDescription",
         "sql INSERT INTO Priority (PRIORITY ,upd_flag )VALUES (0,0) -> 1"}}},
      {.ucount = 1, .icount = 1, .dcount = 1});
}

TEST(ApplyPriorityRow, AsksForTheKeyAndTheDescriptionAtEachUseUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8"}) {
    ExpectRow(kPriorities, generation,
              {kEveryField,
               {"getPriority hasDescription getDescription getPriority",
                "sql UPDATE Priority SET PRIORITY = 7, DESCRIPTION = N'High', upd_flag = 0 WHERE PRIORITY =N'7' -> 0",
                "hasDescription getPriority hasDescription getDescription",
                "sql INSERT INTO Priority (PRIORITY ,DESCRIPTION ,upd_flag )VALUES (7,N'High',0) -> 1"}});
  }
}

TEST(ApplyPriorityRow, WritesTheKeyAloneOfARowWithoutADescription) {
  ExpectRow(kPriorities, "3",
            {{{"Priority", std::int16_t{7}}},
             {"getPriority hasDescription getPriority",
              "sql UPDATE Priority SET PRIORITY = 7, upd_flag = 0 WHERE PRIORITY =N'7' -> 0",
              "hasDescription getPriority hasDescription",
              "sql INSERT INTO Priority (PRIORITY ,upd_flag )VALUES (7,0) -> 1"}});
}

TEST(ApplyPriorityRow, WritesTheKeyAsTheErpGivesItAndMatchesItsEncodedText) {
  for (const char* generation : {"1", "3", "8"}) {
    ExpectStatements(kPriorities, generation,
                     {{{{"Priority", std::int32_t{12}}},
                       "UPDATE Priority SET PRIORITY = 12, upd_flag = 0 WHERE PRIORITY =N'12'",
                       "INSERT INTO Priority (PRIORITY ,upd_flag )VALUES (12,0)"},
                      {{{"Priority", 7.0}},
                       "UPDATE Priority SET PRIORITY = 7, upd_flag = 0 WHERE PRIORITY =N'7'",
                       "INSERT INTO Priority (PRIORITY ,upd_flag )VALUES (7,0)"},
                      {{{"Priority", " 007"}},
                       "UPDATE Priority SET PRIORITY =  007, upd_flag = 0 WHERE PRIORITY =N' 007'",
                       "INSERT INTO Priority (PRIORITY ,upd_flag )VALUES ( 007,0)"},
                      {{{"Priority", "'7'"}},
                       "UPDATE Priority SET PRIORITY = '7', upd_flag = 0 WHERE PRIORITY =N'''7'''",
                       "INSERT INTO Priority (PRIORITY ,upd_flag )VALUES ('7',0)"}});
  }
}

TEST(ApplyPriorityRow, WritesTheLiteralsOfOracle) {
  ExpectStatements(kPriorities, "3",
                   {{{{"Priority", std::int16_t{7}}, {"Description", ""}},
                     "UPDATE Priority SET PRIORITY = 7, DESCRIPTION = N' ', upd_flag = 0 WHERE PRIORITY =N'7'",
                     "INSERT INTO Priority (PRIORITY ,DESCRIPTION ,upd_flag )VALUES (7,N' ',0)"}},
                   /*databasePlatform=*/2);
}

TEST(ApplyPriorityRow, WritesTheEmptyAndTheQuotedDescription) {
  ExpectStatements(kPriorities, "1",
                   {{{{"Priority", std::int16_t{7}}, {"Description", ""}},
                     "UPDATE Priority SET PRIORITY = 7, DESCRIPTION = N'', upd_flag = 0 WHERE PRIORITY =N'7'",
                     "INSERT INTO Priority (PRIORITY ,DESCRIPTION ,upd_flag )VALUES (7,N'',0)"},
                    {{{"Priority", std::int16_t{7}}, {"Description", "'High'"}},
                     "UPDATE Priority SET PRIORITY = 7, DESCRIPTION = N'''High''', upd_flag = 0 WHERE PRIORITY =N'7'",
                     "INSERT INTO Priority (PRIORITY ,DESCRIPTION ,upd_flag )VALUES (7,N'''High''',0)"}});
}

TEST(ApplyPriorityRow, RunsEmptyStatementsUnderAnUnknownGeneration) {
  for (const char* generation : {"2", "03", ""}) ExpectEmptyStatements(kPriorities, generation, kEveryField);
}

TEST(ApplyPriorityRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(kPriorities, "8", kEveryField);
}

TEST(ApplyPriorityRow, FailsOnANullBeforeAnyStatement) {
  ExpectNullToFail(kPriorities, "1", kEveryField, {"Priority", "Description"});
}

TEST(CopyPriority, CopiesThePrioritiesFrom0To999UnderEachGeneration) {
  for (const ErpSide& erp : {kPriorities1, kPriorities3, kPriorities8}) ExpectPass(FullCopyOf(erp));
}

TEST(CopyPriority, FollowsTheChangesFrom0To999UnderEachGeneration) {
  for (const ErpSide& erp : {kPriorities1, kPriorities3, kPriorities8}) ExpectPass(OnlyChangedOf(erp));
}

TEST(CopyPriority, CountsADeletionWhetherTheTableHeldTheRowOrNot) {
  ExpectPass(ChangedPass(kPriorities, kPriorities3, {kGone, kGone}, {.dcount = 2}));
}

TEST(CopyPriority, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  for (const ErpSide& erp : {kPriorities1, kPriorities3, kPriorities8}) ExpectFailureAtEachStep(FullCopyOf(erp));
}

TEST(CopyPriority, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  for (const ErpSide& erp : {kPriorities1, kPriorities3, kPriorities8}) ExpectFailureAtEachStep(OnlyChangedOf(erp));
}

// The ERP's label is taken behind the creation of the manager.
TEST(CopyPriority, NamesNoErpWhereTheComponentIsMissing) {
  for (const ErpSide& erp : {kPriorities1, kPriorities3, kPriorities8}) {
    for (const Pass& pass : BothPasses(kPriorities, erp)) ExpectMissingComponent(pass);
  }
}

TEST(CopyPriority, CreatesNoManagerUnderAnUnknownGeneration) {
  for (const Pass& pass : BothPasses(kPriorities, WithoutManager("2", kPriorities1))) ExpectNoManager(pass);
}

TEST(CopyPriority, DoesNothingUnderAnotherSyncMethod) {
  ExpectNothingUnderOtherSyncMethods(kPriorities, kPriorities1);
}

}  // namespace
}  // namespace zenqay
