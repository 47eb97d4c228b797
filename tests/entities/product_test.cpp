// Product: its row operation and its two passes, which are the same under every generation.
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

const TestedEntity kProducts = {.copy = &CopyFixture::CopyProduct,
                                .apply = CopyFixture::ApplyProductRow(),
                                .TableName = "Product",
                                .caption = "Products",
                                .onlyChanged = "Product - Only Changed"};

const ErpSide kInstallations = {.generation = "1",
                                .managerClass = "Kv40QTMtssmaInstallations.InstallationsManager",
                                .name = "the ERP (generation 1)",
                                .keys = "Installation",
                                .list = "\"\", high(20)",
                                .listing = "NetListInstallations",
                                .tableCode = "tssma102",
                                .ranges = {{"cins", "\"\"", "high(20)"}},
                                .fields = "cins desc cloc ccon cgua gdat sdat edat",
                                .isNamedFirst = true};

/// A contract of blanks and an end date without a value.
const RowFields kEveryField = {{"Installation", "P1"},
                               {"Description", "Pump"},
                               {"Location", "S1"},
                               {"Contract", "   "},
                               {"MaintenanceStartDate", "2003-01-31"},
                               {"MaintenanceEndDate", ""},
                               {"Warranty", "W1"},
                               {"WarrantyExpiryDate", "2004-01-31"}};

const Text kGates =
    "hasDescription hasLocation hasContract hasMaintenanceStartDate hasMaintenanceEndDate hasWarranty "
    "hasWarrantyExpiryDate";

const Pass kFullCopy = FullPass(
    kProducts, kInstallations,
    {{{{"Installation", "P1"}, {"Description", "Pump"}, {"Contract", "C1"}},
      {"getInstallation hasDescription getDescription hasLocation hasContract getContract getContract "
       "hasMaintenanceStartDate hasMaintenanceEndDate hasWarranty hasWarrantyExpiryDate getInstallation",
       "sql UPDATE Product SET PRODUCT = N'P1', DESCRIPTION = N'Pump', CONTRACT = N'C1', upd_flag = 0 WHERE PRODUCT "
       "=N'P1' -> 1"}},
     {{{"Installation", "P2"}, {"Location", "S1"}},
      {"getInstallation hasDescription hasLocation getLocation hasContract hasMaintenanceStartDate "
       "hasMaintenanceEndDate hasWarranty hasWarrantyExpiryDate getInstallation",
       "sql UPDATE Product SET PRODUCT = N'P2', SITE = N'S1', upd_flag = 0 WHERE PRODUCT =N'P2' -> 0", kGates,
       "getInstallation hasDescription hasLocation getLocation hasContract hasMaintenanceStartDate "
       "hasMaintenanceEndDate hasWarranty hasWarrantyExpiryDate",
       "sql INSERT INTO Product (PRODUCT ,SITE,upd_flag )VALUES (N'P2',N'S1',0) -> 1"}}},
    {.icount = 2});

const Pass kOnlyChanged = ChangedPass(
    kProducts, kInstallations,
    {{{{"ActionType", " D "}, {"Installation", "P1"}, {"Description", "Pump"}},
      {"getInstallation", "sql DELETE FROM Product WHERE PRODUCT= N'P1'"}},
     {{{"ActionType", "U"}, {"Installation", "P2"}, {"Warranty", "W1"}},
      {"getInstallation hasDescription hasLocation hasContract hasMaintenanceStartDate hasMaintenanceEndDate "
       "hasWarranty getWarranty hasWarrantyExpiryDate getInstallation",
       "sql UPDATE Product SET PRODUCT = N'P2', WARRANTY = N'W1', upd_flag = 0 WHERE PRODUCT =N'P2' -> 1"}},
     {{{"ActionType", "d"}, {"Installation", "P3"}},
      {"getInstallation", kGates, "getInstallation",
       "sql UPDATE Product SET PRODUCT = N'P3', upd_flag = 0 WHERE PRODUCT =N'P3' -> 0", kGates, "getInstallation",
       kGates, "sql INSERT INTO Product (PRODUCT ,upd_flag )VALUES (N'P3',0) -> 1"}}},
    {.ucount = 1, .icount = 1, .dcount = 1});

TEST(ApplyProductRow, AsksForEveryFieldAtEachUse) {
  ExpectRow(kProducts, "1",
            {kEveryField,
             {"getInstallation hasDescription getDescription hasLocation getLocation hasContract getContract "
              "hasMaintenanceStartDate getMaintenanceStartDate hasMaintenanceEndDate getMaintenanceEndDate "
              "hasWarranty getWarranty hasWarrantyExpiryDate getWarrantyExpiryDate getInstallation",
              "sql UPDATE Product SET PRODUCT = N'P1', DESCRIPTION = N'Pump', SITE = N'S1', CONTRACT = NULL, "
              "EFFECTIVE_DATE = {d '2003-01-31'}, EXPIRY_DATE = NULL, WARRANTY = N'W1', WEXPIRY_DATE = {d "
              "'2004-01-31'}, upd_flag = 0 WHERE PRODUCT =N'P1' -> 0",
              kGates,
              "getInstallation hasDescription getDescription hasLocation getLocation hasContract getContract "
              "hasMaintenanceStartDate getMaintenanceStartDate hasMaintenanceEndDate getMaintenanceEndDate "
              "hasWarranty getWarranty hasWarrantyExpiryDate getWarrantyExpiryDate",
              "sql INSERT INTO Product (PRODUCT ,DESCRIPTION ,SITE,CONTRACT, EFFECTIVE_DATE , EXPIRY_DATE ,WARRANTY "
              ",WEXPIRY_DATE ,upd_flag )VALUES (N'P1',N'Pump',N'S1',N'   ',{d '2003-01-31'},NULL,N'W1',{d "
              "'2004-01-31'},0) -> 1"}});
}

TEST(ApplyProductRow, WritesTheKeyAloneOfARowWithoutAnyOtherField) {
  ExpectRow(kProducts, "1",
            {{{"Installation", "P1"}},
             {"getInstallation", kGates, "getInstallation",
              "sql UPDATE Product SET PRODUCT = N'P1', upd_flag = 0 WHERE PRODUCT =N'P1' -> 0", kGates,
              "getInstallation", kGates, "sql INSERT INTO Product (PRODUCT ,upd_flag )VALUES (N'P1',0) -> 1"}});
}

TEST(ApplyProductRow, WritesEachFieldAloneUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8", "2", ""}) {
    ExpectStatements(
        kProducts, generation,
        {{{{"Installation", "P1"}, {"Description", "Pump"}},
          "UPDATE Product SET PRODUCT = N'P1', DESCRIPTION = N'Pump', upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO Product (PRODUCT ,DESCRIPTION ,upd_flag )VALUES (N'P1',N'Pump',0)"},
         {{{"Installation", "P1"}, {"Location", "S1"}},
          "UPDATE Product SET PRODUCT = N'P1', SITE = N'S1', upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO Product (PRODUCT ,SITE,upd_flag )VALUES (N'P1',N'S1',0)"},
         {{{"Installation", "P1"}, {"Contract", "C1"}},
          "UPDATE Product SET PRODUCT = N'P1', CONTRACT = N'C1', upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO Product (PRODUCT ,CONTRACT,upd_flag )VALUES (N'P1',N'C1',0)"},
         {{{"Installation", "P1"}, {"MaintenanceStartDate", "2003-01-31"}},
          "UPDATE Product SET PRODUCT = N'P1', EFFECTIVE_DATE = {d '2003-01-31'}, upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO Product (PRODUCT , EFFECTIVE_DATE ,upd_flag )VALUES (N'P1',{d '2003-01-31'},0)"},
         {{{"Installation", "P1"}, {"MaintenanceEndDate", "2003-12-31"}},
          "UPDATE Product SET PRODUCT = N'P1', EXPIRY_DATE = {d '2003-12-31'}, upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO Product (PRODUCT , EXPIRY_DATE ,upd_flag )VALUES (N'P1',{d '2003-12-31'},0)"},
         {{{"Installation", "P1"}, {"Warranty", "W1"}},
          "UPDATE Product SET PRODUCT = N'P1', WARRANTY = N'W1', upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO Product (PRODUCT ,WARRANTY ,upd_flag )VALUES (N'P1',N'W1',0)"},
         {{{"Installation", "P1"}, {"WarrantyExpiryDate", "2004-01-31"}},
          "UPDATE Product SET PRODUCT = N'P1', WEXPIRY_DATE = {d '2004-01-31'}, upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO Product (PRODUCT ,WEXPIRY_DATE ,upd_flag )VALUES (N'P1',{d '2004-01-31'},0)"}});
  }
}

TEST(ApplyProductRow, ClearsABlankContractInTheUpdateAndStoresItAsItComesInTheInsert) {
  ExpectStatements(kProducts, "1",
                   {{{{"Installation", "P1"}, {"Contract", "   "}},
                     "UPDATE Product SET PRODUCT = N'P1', CONTRACT = NULL, upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO Product (PRODUCT ,CONTRACT,upd_flag )VALUES (N'P1',N'   ',0)"},
                    {{{"Installation", "P1"}, {"Contract", ""}},
                     "UPDATE Product SET PRODUCT = N'P1', CONTRACT = NULL, upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO Product (PRODUCT ,CONTRACT,upd_flag )VALUES (N'P1',N'',0)"},
                    {{{"Installation", "P1"}, {"Contract", " C1 "}},
                     "UPDATE Product SET PRODUCT = N'P1', CONTRACT = N' C1 ', upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO Product (PRODUCT ,CONTRACT,upd_flag )VALUES (N'P1',N' C1 ',0)"},
                    {{{"Installation", "P1"}, {"Contract", "\t"}},
                     "UPDATE Product SET PRODUCT = N'P1', CONTRACT = N'\t', upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO Product (PRODUCT ,CONTRACT,upd_flag )VALUES (N'P1',N'\t',0)"}});
}

TEST(ApplyProductRow, WritesADateWithoutAValueAsNullInBothStatements) {
  ExpectStatements(kProducts, "1",
                   {{{{"Installation", "P1"}, {"MaintenanceStartDate", ""}},
                     "UPDATE Product SET PRODUCT = N'P1', EFFECTIVE_DATE = NULL, upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO Product (PRODUCT , EFFECTIVE_DATE ,upd_flag )VALUES (N'P1',NULL,0)"},
                    {{{"Installation", "P1"}, {"MaintenanceEndDate", Value()}},
                     "UPDATE Product SET PRODUCT = N'P1', EXPIRY_DATE = NULL, upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO Product (PRODUCT , EXPIRY_DATE ,upd_flag )VALUES (N'P1',NULL,0)"},
                    {{{"Installation", "P1"}, {"WarrantyExpiryDate", ""}},
                     "UPDATE Product SET PRODUCT = N'P1', WEXPIRY_DATE = NULL, upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO Product (PRODUCT ,WEXPIRY_DATE ,upd_flag )VALUES (N'P1',NULL,0)"}});
}

TEST(ApplyProductRow, WritesADateAsItComesAndANullDateWithoutAText) {
  ExpectStatements(
      kProducts, "1",
      {{{{"Installation", "P1"}, {"MaintenanceStartDate", " soon "}},
        "UPDATE Product SET PRODUCT = N'P1', EFFECTIVE_DATE = {d ' soon '}, upd_flag = 0 WHERE PRODUCT =N'P1'",
        "INSERT INTO Product (PRODUCT , EFFECTIVE_DATE ,upd_flag )VALUES (N'P1',{d ' soon '},0)"},
       {{{"Installation", "P1"}, {"MaintenanceEndDate", DateTime::FromParts({2003, 12, 31, 0, 0, 0})}},
        "UPDATE Product SET PRODUCT = N'P1', EXPIRY_DATE = {d '12/31/2003'}, upd_flag = 0 WHERE PRODUCT =N'P1'",
        "INSERT INTO Product (PRODUCT , EXPIRY_DATE ,upd_flag )VALUES (N'P1',{d '12/31/2003'},0)"},
       {{{"Installation", "P1"}, {"WarrantyExpiryDate", Null()}},
        "UPDATE Product SET PRODUCT = N'P1', WEXPIRY_DATE = {d ''}, upd_flag = 0 WHERE PRODUCT =N'P1'",
        "INSERT INTO Product (PRODUCT ,WEXPIRY_DATE ,upd_flag )VALUES (N'P1',{d ''},0)"}});
}

TEST(ApplyProductRow, DoublesTheQuotesOfEveryText) {
  ExpectStatements(kProducts, "1",
                   {{{{"Installation", "P'1"},
                      {"Description", "'Pump'"},
                      {"Location", "S'1"},
                      {"Contract", "C'1"},
                      {"Warranty", "W'1"}},
                     "UPDATE Product SET PRODUCT = N'P''1', DESCRIPTION = N'''Pump''', SITE = N'S''1', CONTRACT = "
                     "N'C''1', WARRANTY = N'W''1', upd_flag = 0 WHERE PRODUCT =N'P''1'",
                     "INSERT INTO Product (PRODUCT ,DESCRIPTION ,SITE,CONTRACT,WARRANTY ,upd_flag )VALUES "
                     "(N'P''1',N'''Pump''',N'S''1',N'C''1',N'W''1',0)"}});
}

TEST(ApplyProductRow, WritesTheLiteralsOfOracle) {
  ExpectStatements(kProducts, "1",
                   {{{{"Installation", ""},
                      {"Description", ""},
                      {"Location", ""},
                      {"Contract", ""},
                      {"MaintenanceStartDate", "2003-01-31"},
                      {"MaintenanceEndDate", ""},
                      {"Warranty", ""},
                      {"WarrantyExpiryDate", ""}},
                     "UPDATE Product SET PRODUCT = N' ', DESCRIPTION = N' ', SITE = N' ', CONTRACT = NULL, "
                     "EFFECTIVE_DATE = {d '2003-01-31'}, EXPIRY_DATE = NULL, WARRANTY = N' ', WEXPIRY_DATE = NULL, "
                     "upd_flag = 0 WHERE PRODUCT =N' '",
                     "INSERT INTO Product (PRODUCT ,DESCRIPTION ,SITE,CONTRACT, EFFECTIVE_DATE , EXPIRY_DATE "
                     ",WARRANTY ,WEXPIRY_DATE ,upd_flag )VALUES (N' ',N' ',N' ',N' ',{d '2003-01-31'},NULL,N' "
                     "',NULL,0)"}},
                   /*databasePlatform=*/2);
}

TEST(ApplyProductRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(kProducts, "1", kEveryField);
}

TEST(ApplyProductRow, FailsOnANullTextBeforeAnyStatement) {
  ExpectNullToFail(kProducts, "1", kEveryField, {"Installation", "Description", "Location", "Contract", "Warranty"});
}

TEST(CopyProduct, CopiesTheWholeTableInTheSameWayUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8", "2"}) ExpectPass(Under(generation, kFullCopy));
}

TEST(CopyProduct, FollowsTheChangesInTheSameWayUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8", "2"}) ExpectPass(Under(generation, kOnlyChanged));
}

TEST(CopyProduct, CountsADeletionWhetherTheTableHeldTheRowOrNot) {
  const ListedRow gone = {{{"ActionType", "D"}, {"Installation", "P'1"}},
                          {"getInstallation", "sql DELETE FROM Product WHERE PRODUCT= N'P''1'"}};
  ExpectPass(ChangedPass(kProducts, kInstallations, {gone, gone}, {.dcount = 2}));
}

TEST(CopyProduct, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  ExpectFailureAtEachStep(kFullCopy);
}

TEST(CopyProduct, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  ExpectFailureAtEachStep(kOnlyChanged);
}

// The only-changed pass knows the ERP's name before anything can fail.
TEST(CopyProduct, FailsUnderEveryGenerationThatLacksTheComponent) {
  for (const char* generation : {"1", "3", "8"}) {
    for (const Pass& pass : BothPasses(kProducts, kInstallations)) ExpectMissingComponent(Under(generation, pass));
  }
}

TEST(CopyProduct, DoesNothingUnderAnotherSyncMethod) {
  ExpectNothingUnderOtherSyncMethods(kProducts, kInstallations);
}

}  // namespace
}  // namespace zenqay
