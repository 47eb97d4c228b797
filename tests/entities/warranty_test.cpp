// Warranty: its row operation and its two passes, under the three generations. Only generations 3 and 8 have periods.
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

const TestedEntity kWarranties = {.copy = &CopyFixture::CopyWarranty,
                                  .apply = CopyFixture::ApplyWarrantyRow(),
                                  .TableName = "Warranties",
                                  .caption = "Warranties",
                                  .onlyChanged = "Warranties - Only Changed"};

const ErpSide kWarranties1 = {.generation = "1",
                              .managerClass = "Kv40QTMtssmaWarranties.WarrantiesManager",
                              .name = "the ERP (generation 1)",
                              .keys = "Warranty",
                              .list = "\"\", high(3)",
                              .listing = "NetListWarranties",
                              .tableCode = "tssma130",
                              .ranges = {{"cgua", "\"\"", "high(3)"}},
                              .fields = "cgua desc"};

const ErpSide kWarranties3 = {
    .generation = "3",
    .managerClass = "Kv50QTMtsctmWarranties.WarrantiesManager",
    .name = "the ERP (generation 3)",
    .keys = "Warranty",
    .list = "\"\", high(16)",
    .listing = "NetListWarranties",
    .tableCode = "tscfg020",  // of another module than the class
    .ranges = {{"cwte", "\"\"", "high(16)"}},
    .fields = "cwte desc nrpe peru wttp",
    .behind =
        "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
        "close recordset\n"};

const ErpSide kWarranties8 = {.generation = "8",
                              .managerClass = "Kv61QTMtsctmWarranties.WarrantiesManager",
                              .name = "the ERP (generation 8)",
                              .keys = "Warranty",
                              .list = "\"\", high(16)",
                              .listing = "NetListWarranties",
                              .tableCode = "tsctm020",
                              .ranges = {{"cwte", "\"\"", "high(16)"}},
                              .fields = "cwte desc nrpe peru wttp"};

/// Every field that a warranty can have, under every generation.
const RowFields kEveryField = {
    {"Warranty", "W1"}, {"Description", "One year"}, {"NumberOfPeriods", 12}, {"PeriodUnit", 2}, {"WarrantyType", 1}};

const Text kGates = "hasDescription hasNumberOfPeriods hasPeriodUnit hasWarrantyType";
const Text kEveryFieldAsked =
    "hasDescription getDescription hasNumberOfPeriods getNumberOfPeriods hasPeriodUnit getPeriodUnit hasWarrantyType "
    "getWarrantyType";

const ListedRow kGone = {{{"ActionType", " D "}, {"Warranty", "W'1"}},
                         {"getWarranty", "sql DELETE FROM Warranties WHERE WARRANTY=N'W''1'"}};

Pass FullCopyOf(const ErpSide& erp) {
  if (erp.generation == "1") {
    return FullPass(kWarranties, erp,
                    {{kEveryField,
                      {"getWarranty hasDescription getDescription getWarranty",
                       "sql UPDATE Warranties SET WARRANTY = N'W1', WDESCRIPTION = N'One year', upd_flag = 0 WHERE "
                       "WARRANTY =N'W1' -> 1"}},
                     {{{"Warranty", "W2"}},
                      {"getWarranty hasDescription getWarranty",
                       "sql UPDATE Warranties SET WARRANTY = N'W2', upd_flag = 0 WHERE WARRANTY =N'W2' -> 0",
                       "hasDescription getWarranty hasDescription",
                       "sql INSERT INTO Warranties (WARRANTY ,upd_flag )VALUES (N'W2',0) -> 1"}}},
                    {.icount = 2});
  }
  return FullPass(kWarranties, erp,
                  {{kEveryField,
                    {"getWarranty", kEveryFieldAsked, "getWarranty",
                     "sql UPDATE Warranties SET WARRANTY = N'W1', WDESCRIPTION = N'One year', NUMBER_OF_PERIODS = 12, "
                     "PERIOD_UNIT = 2, WARRANTY_TYPE = 1, upd_flag = 0 WHERE WARRANTY =N'W1' -> 1"}},
                   {{{"Warranty", "W2"}},
                    {"getWarranty", kGates, "getWarranty",
                     "sql UPDATE Warranties SET WARRANTY = N'W2', upd_flag = 0 WHERE WARRANTY =N'W2' -> 0", kGates,
                     "getWarranty", kGates, "sql INSERT INTO Warranties (WARRANTY ,upd_flag )VALUES (N'W2',0) -> 1"}}},
                  {.icount = 2});
}

Pass OnlyChangedOf(const ErpSide& erp) {
  if (erp.generation == "1") {
    return ChangedPass(kWarranties, erp,
                       {{{{"ActionType", "U"}, {"Warranty", "W1"}, {"Description", "One year"}},
                         {"getWarranty hasDescription getDescription getWarranty",
                          "sql UPDATE Warranties SET WARRANTY = N'W1', WDESCRIPTION = N'One year', upd_flag = 0 WHERE "
                          "WARRANTY =N'W1' -> 1"}},
                        kGone},
                       {.ucount = 1, .dcount = 1});
  }
  return ChangedPass(
      kWarranties, erp,
      {kGone,
       {{{"ActionType", "d"}, {"Warranty", "W2"}, {"PeriodUnit", 5}},
        {"getWarranty hasDescription hasNumberOfPeriods hasPeriodUnit getPeriodUnit hasWarrantyType getWarranty",
         "sql UPDATE Warranties SET WARRANTY = N'W2', PERIOD_UNIT = 5, upd_flag = 0 WHERE WARRANTY =N'W2' -> 0", kGates,
         "getWarranty hasDescription hasNumberOfPeriods hasPeriodUnit getPeriodUnit hasWarrantyType",
         "sql INSERT INTO Warranties (WARRANTY , PERIOD_UNIT ,upd_flag )VALUES (N'W2',5,0) -> 1"}}},
      {.icount = 1, .dcount = 1});
}

TEST(ApplyWarrantyRow, WritesTheOptionalFieldsThatTheRowHasUnderGeneration3) {
  ExpectStatements(
      kWarranties, "3",
      {{kEveryField,
        "UPDATE Warranties SET WARRANTY = N'W1', WDESCRIPTION = N'One year', NUMBER_OF_PERIODS = 12, PERIOD_UNIT = 2, "
        "WARRANTY_TYPE = 1, upd_flag = 0 WHERE WARRANTY =N'W1'",
        "INSERT INTO Warranties (WARRANTY ,WDESCRIPTION ,NUMBER_OF_PERIODS , PERIOD_UNIT , WARRANTY_TYPE ,upd_flag "
        ")VALUES (N'W1',N'One year',12,2,1,0)"},
       {{{"Warranty", "W1"}},
        "UPDATE Warranties SET WARRANTY = N'W1', upd_flag = 0 WHERE WARRANTY =N'W1'",
        "INSERT INTO Warranties (WARRANTY ,upd_flag )VALUES (N'W1',0)"},
       {{{"Warranty", "W1"}, {"Description", "One year"}},
        "UPDATE Warranties SET WARRANTY = N'W1', WDESCRIPTION = N'One year', upd_flag = 0 WHERE WARRANTY =N'W1'",
        "INSERT INTO Warranties (WARRANTY ,WDESCRIPTION ,upd_flag )VALUES (N'W1',N'One year',0)"},
       {{{"Warranty", "W1"}, {"NumberOfPeriods", 12}},
        "UPDATE Warranties SET WARRANTY = N'W1', NUMBER_OF_PERIODS = 12, upd_flag = 0 WHERE WARRANTY =N'W1'",
        "INSERT INTO Warranties (WARRANTY ,NUMBER_OF_PERIODS ,upd_flag )VALUES (N'W1',12,0)"},
       {{{"Warranty", "W1"}, {"PeriodUnit", 2}},
        "UPDATE Warranties SET WARRANTY = N'W1', PERIOD_UNIT = 2, upd_flag = 0 WHERE WARRANTY =N'W1'",
        "INSERT INTO Warranties (WARRANTY , PERIOD_UNIT ,upd_flag )VALUES (N'W1',2,0)"},
       {{{"Warranty", "W1"}, {"WarrantyType", 1}},
        "UPDATE Warranties SET WARRANTY = N'W1', WARRANTY_TYPE = 1, upd_flag = 0 WHERE WARRANTY =N'W1'",
        "INSERT INTO Warranties (WARRANTY , WARRANTY_TYPE ,upd_flag )VALUES (N'W1',1,0)"}});
}

TEST(ApplyWarrantyRow, WritesTheOptionalFieldsThatTheRowHasUnderGeneration8) {
  ExpectStatements(
      kWarranties, "8",
      {{kEveryField,
        "UPDATE Warranties SET WARRANTY = N'W1', WDESCRIPTION = N'One year', NUMBER_OF_PERIODS = 12, PERIOD_UNIT = 2, "
        "WARRANTY_TYPE = 1, upd_flag = 0 WHERE WARRANTY =N'W1'",
        "INSERT INTO Warranties (WARRANTY ,WDESCRIPTION , NUMBER_OF_PERIODS , PERIOD_UNIT , WARRANTY_TYPE ,upd_flag "
        ")VALUES (N'W1',N'One year',12,2,1,0)"},
       {{{"Warranty", "W1"}},
        "UPDATE Warranties SET WARRANTY = N'W1', upd_flag = 0 WHERE WARRANTY =N'W1'",
        "INSERT INTO Warranties (WARRANTY ,upd_flag )VALUES (N'W1',0)"},
       {{{"Warranty", "W1"}, {"Description", "One year"}},
        "UPDATE Warranties SET WARRANTY = N'W1', WDESCRIPTION = N'One year', upd_flag = 0 WHERE WARRANTY =N'W1'",
        "INSERT INTO Warranties (WARRANTY ,WDESCRIPTION ,upd_flag )VALUES (N'W1',N'One year',0)"},
       {{{"Warranty", "W1"}, {"NumberOfPeriods", 12}},
        "UPDATE Warranties SET WARRANTY = N'W1', NUMBER_OF_PERIODS = 12, upd_flag = 0 WHERE WARRANTY =N'W1'",
        "INSERT INTO Warranties (WARRANTY , NUMBER_OF_PERIODS ,upd_flag )VALUES (N'W1',12,0)"},
       {{{"Warranty", "W1"}, {"PeriodUnit", 2}},
        "UPDATE Warranties SET WARRANTY = N'W1', PERIOD_UNIT = 2, upd_flag = 0 WHERE WARRANTY =N'W1'",
        "INSERT INTO Warranties (WARRANTY , PERIOD_UNIT ,upd_flag )VALUES (N'W1',2,0)"},
       {{{"Warranty", "W1"}, {"WarrantyType", 1}},
        "UPDATE Warranties SET WARRANTY = N'W1', WARRANTY_TYPE = 1, upd_flag = 0 WHERE WARRANTY =N'W1'",
        "INSERT INTO Warranties (WARRANTY , WARRANTY_TYPE ,upd_flag )VALUES (N'W1',1,0)"}});
}

TEST(ApplyWarrantyRow, AsksForNoPeriodsUnderGeneration1) {
  ExpectRow(kWarranties, "1",
            {kEveryField,
             {"getWarranty hasDescription getDescription getWarranty",
              "sql UPDATE Warranties SET WARRANTY = N'W1', WDESCRIPTION = N'One year', upd_flag = 0 WHERE WARRANTY "
              "=N'W1' -> 0",
              "hasDescription getWarranty hasDescription getDescription",
              "sql INSERT INTO Warranties (WARRANTY ,WDESCRIPTION ,upd_flag )VALUES (N'W1',N'One year',0) -> 1"}});
}

TEST(ApplyWarrantyRow, AsksForEveryFieldAtEachUseUnderGenerations3And8) {
  const struct {
    Text generation;
    Text insert;  // they differ by one blank
  } cases[] = {
      {"3",
       "sql INSERT INTO Warranties (WARRANTY ,WDESCRIPTION ,NUMBER_OF_PERIODS , PERIOD_UNIT , WARRANTY_TYPE ,upd_flag "
       ")VALUES (N'W1',N'One year',12,2,1,0) -> 1"},
      {"8",
       "sql INSERT INTO Warranties (WARRANTY ,WDESCRIPTION , NUMBER_OF_PERIODS , PERIOD_UNIT , WARRANTY_TYPE "
       ",upd_flag )VALUES (N'W1',N'One year',12,2,1,0) -> 1"},
  };
  for (const auto& [generation, insert] : cases) {
    ExpectRow(kWarranties, generation,
              {kEveryField,
               {"getWarranty", kEveryFieldAsked, "getWarranty",
                "sql UPDATE Warranties SET WARRANTY = N'W1', WDESCRIPTION = N'One year', NUMBER_OF_PERIODS = 12, "
                "PERIOD_UNIT = 2, WARRANTY_TYPE = 1, upd_flag = 0 WHERE WARRANTY =N'W1' -> 0",
                kGates, "getWarranty", kEveryFieldAsked, insert}});
  }
}

TEST(ApplyWarrantyRow, LeavesAnAbsentDescriptionOutOfBothStatements) {
  const Text update = "sql UPDATE Warranties SET WARRANTY = N'W1', upd_flag = 0 WHERE WARRANTY =N'W1' -> 0";
  const Text insert = "sql INSERT INTO Warranties (WARRANTY ,upd_flag )VALUES (N'W1',0) -> 1";
  const RowFields fields = {{"Warranty", "W1"}};
  ExpectRow(kWarranties, "1",
            {fields,
             {"getWarranty hasDescription getWarranty", update, "hasDescription getWarranty hasDescription", insert}});
  for (const char* generation : {"3", "8"}) {
    ExpectRow(kWarranties, generation,
              {fields, {"getWarranty", kGates, "getWarranty", update, kGates, "getWarranty", kGates, insert}});
  }
}

TEST(ApplyWarrantyRow, RewritesTheKeyWithItselfAndInsertsNothingWhenTheUpdateFoundTheRow) {
  ExpectRow(kWarranties, "3",
            {{{"Warranty", "W1"}},
             {"getWarranty", kGates, "getWarranty",
              "sql UPDATE Warranties SET WARRANTY = N'W1', upd_flag = 0 WHERE WARRANTY =N'W1' -> 5"}});
}

TEST(ApplyWarrantyRow, PutsPeriodsInBareAsTheyCome) {
  ExpectStatements(
      kWarranties, "8",
      {{{{"Warranty", "W'1"}, {"NumberOfPeriods", 2.5}, {"PeriodUnit", "0'5"}, {"WarrantyType", Value()}},
        "UPDATE Warranties SET WARRANTY = N'W''1', NUMBER_OF_PERIODS = 2.5, PERIOD_UNIT = 0'5, WARRANTY_TYPE = , "
        "upd_flag = 0 WHERE WARRANTY =N'W''1'",
        "INSERT INTO Warranties (WARRANTY , NUMBER_OF_PERIODS , PERIOD_UNIT , WARRANTY_TYPE ,upd_flag )VALUES "
        "(N'W''1',2.5,0'5,,0)"}});
}

TEST(ApplyWarrantyRow, WritesTheLiteralsOfOracle) {
  ExpectStatements(kWarranties, "8",
                   {{{{"Warranty", ""}, {"Description", ""}},
                     "UPDATE Warranties SET WARRANTY = N' ', WDESCRIPTION = N' ', upd_flag = 0 WHERE WARRANTY =N' '",
                     "INSERT INTO Warranties (WARRANTY ,WDESCRIPTION ,upd_flag )VALUES (N' ',N' ',0)"}},
                   /*databasePlatform=*/2);
}

TEST(ApplyWarrantyRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(kWarranties, "3", kEveryField);
}

TEST(ApplyWarrantyRow, LetsNoNullIntoALiteral) {
  ExpectNullToFail(kWarranties, "3", kEveryField, {"Warranty", "Description"});
}

TEST(CopyWarranty, CopiesTheWholeTableUnderEachGeneration) {
  for (const ErpSide& erp : {kWarranties1, kWarranties3, kWarranties8}) ExpectPass(FullCopyOf(erp));
}

TEST(CopyWarranty, FollowsTheChangesUnderEachGeneration) {
  for (const ErpSide& erp : {kWarranties1, kWarranties3, kWarranties8}) ExpectPass(OnlyChangedOf(erp));
}

TEST(CopyWarranty, CopiesOnOracleWithoutStatisticsAndExpiry) {
  Pass pass = FullCopyOf(kWarranties3);
  pass.databasePlatform = 2;
  ExpectPass(pass);
}

TEST(CopyWarranty, CountsADeletionWhetherTheTableHeldTheRowOrNot) {
  ExpectPass(ChangedPass(kWarranties, kWarranties1, {kGone, kGone}, {.dcount = 2}));
}

TEST(CopyWarranty, DeletesOnATrimmedCapitalDAlone) {
  ExpectPass(ChangedPass(kWarranties, kWarranties1,
                         {kGone,
                          {{{"ActionType", " d "}, {"Warranty", "W2"}},
                           {"getWarranty hasDescription getWarranty",
                            "sql UPDATE Warranties SET WARRANTY = N'W2', upd_flag = 0 WHERE WARRANTY =N'W2' -> 1"}}},
                         {.ucount = 1, .dcount = 1}));
}

TEST(CopyWarranty, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  for (const ErpSide& erp : {kWarranties1, kWarranties3, kWarranties8}) ExpectFailureAtEachStep(FullCopyOf(erp));
}

TEST(CopyWarranty, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  for (const ErpSide& erp : {kWarranties1, kWarranties3, kWarranties8}) ExpectFailureAtEachStep(OnlyChangedOf(erp));
}

// The ERP's label is taken behind the creation of the manager.
TEST(CopyWarranty, NamesNoErpWhereTheComponentIsMissing) {
  for (const ErpSide& erp : {kWarranties1, kWarranties3, kWarranties8}) {
    for (const Pass& pass : BothPasses(kWarranties, erp)) ExpectMissingComponent(pass);
  }
}

TEST(CopyWarranty, CreatesNoManagerUnderAnUnknownGeneration) {
  for (const Pass& pass : BothPasses(kWarranties, WithoutManager("2", kWarranties1))) ExpectNoManager(pass);
}

TEST(CopyWarranty, DoesNothingUnderAnotherSyncMethod) {
  ExpectNothingUnderOtherSyncMethods(kWarranties, kWarranties3);
}

}  // namespace
}  // namespace zenqay
