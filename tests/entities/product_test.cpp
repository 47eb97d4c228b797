// Product: its row operation and its two passes, which are the same under every generation.
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

constexpr const char* kInstallations = "Kv40QTMtssmaInstallations.InstallationsManager";

const EntityCall kFullCopy = {&CopyFixture::CopyProduct, "Product", 1};
const EntityCall kOnlyChanged = {&CopyFixture::CopyProduct, "Product", 2};

/// A contract of blanks and an end date without a value.
const RowFields kEveryField = {{"Installation", "P1"},
                               {"Description", "Pump"},
                               {"Location", "S1"},
                               {"Contract", "   "},
                               {"MaintenanceStartDate", "2003-01-31"},
                               {"MaintenanceEndDate", ""},
                               {"Warranty", "W1"},
                               {"WarrantyExpiryDate", "2004-01-31"}};

EntityPass FullCopyUnder(const Text& generation) {
  return {.generation = generation,
          .managerClass = kInstallations,
          .managerName = "installations",
          .rows = {{{"Installation", "P1"}, {"Description", "Pump"}, {"Contract", "C1"}},
                   {{"Installation", "P2"}, {"Location", "S1"}}},
          .counts = {1, 0, 1},
          .trace =
              "create Kv40QTMtssmaInstallations.InstallationsManager\n"
              "session.addManager(&<installations>)\n"
              "installations.Initialize(&\"100\")\n"
              "installations.List(\"\", high(20))\n"
              "sql UPDATE Product SET upd_flag = 1 \n"
              "rows.hasMoreElements()\n"
              "rows.nextElement()\n"
              "row1.getInstallation()\n"
              "row1.hasDescription()\n"
              "row1.getDescription()\n"
              "row1.hasLocation()\n"
              "row1.hasContract()\n"
              "row1.getContract()\n"
              "row1.getContract()\n"
              "row1.hasMaintenanceStartDate()\n"
              "row1.hasMaintenanceEndDate()\n"
              "row1.hasWarranty()\n"
              "row1.hasWarrantyExpiryDate()\n"
              "row1.getInstallation()\n"
              "sql UPDATE Product SET PRODUCT = N'P1', DESCRIPTION = N'Pump', CONTRACT = N'C1', upd_flag = 0 WHERE "
              "PRODUCT =N'P1' -> 1\n"
              "rows.hasMoreElements()\n"
              "rows.nextElement()\n"
              "row2.getInstallation()\n"
              "row2.hasDescription()\n"
              "row2.hasLocation()\n"
              "row2.getLocation()\n"
              "row2.hasContract()\n"
              "row2.hasMaintenanceStartDate()\n"
              "row2.hasMaintenanceEndDate()\n"
              "row2.hasWarranty()\n"
              "row2.hasWarrantyExpiryDate()\n"
              "row2.getInstallation()\n"
              "sql UPDATE Product SET PRODUCT = N'P2', SITE = N'S1', upd_flag = 0 WHERE PRODUCT =N'P2' -> 0\n"
              "row2.hasDescription()\n"
              "row2.hasLocation()\n"
              "row2.hasContract()\n"
              "row2.hasMaintenanceStartDate()\n"
              "row2.hasMaintenanceEndDate()\n"
              "row2.hasWarranty()\n"
              "row2.hasWarrantyExpiryDate()\n"
              "row2.getInstallation()\n"
              "row2.hasDescription()\n"
              "row2.hasLocation()\n"
              "row2.getLocation()\n"
              "row2.hasContract()\n"
              "row2.hasMaintenanceStartDate()\n"
              "row2.hasMaintenanceEndDate()\n"
              "row2.hasWarranty()\n"
              "row2.hasWarrantyExpiryDate()\n"
              "sql INSERT INTO Product (PRODUCT ,SITE,upd_flag )VALUES (N'P2',N'S1',0) -> 1\n"
              "rows.hasMoreElements()\n"
              "sql DELETE FROM Product WHERE upd_flag = 1\n"
              "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
              "N'Product' -> 1\n"
              "installations.Close()\n",
          .counters = "ucount 0, icount 2, dcount 0",
          .runLog =
              "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
              "\"Rows copied: Product -  2\"\r\n"};
}

EntityPass OnlyChangedUnder(const Text& generation) {
  return {.generation = generation,
          .managerClass = kInstallations,
          .managerName = "installations",
          .rows = {{{"ActionType", " D "}, {"Installation", "P1"}, {"Description", "Pump"}},
                   {{"ActionType", "U"}, {"Installation", "P2"}, {"Warranty", "W1"}},
                   {{"ActionType", "d"}, {"Installation", "P3"}}},
          .counts = {1, 0, 1},
          .trace =
              "create Kv40QTMtssmaInstallations.InstallationsManager\n"
              "session.addManager(&<installations>)\n"
              "create NetListSelectionCriteria.NetListSelectionCriteria\n"
              "create NetListSelectionCriteria.NetListIn\n"
              "create NetListSelectionCriteria.NetListOut\n"
              "create NetListSelectionCriteria.NetListPeriod\n"
              "create NetListSelectionCriteria.NetListParameter\n"
              "installations.Initialize(&\"100\")\n"
              "query SELECT * FROM tstables WHERE tablename = N'Product'\n"
              "close recordset\n"
              "period.setFrom(<object>)\n"
              "period.setTo(<object>)\n"
              "criteria.setNetListPeriod(&<period>)\n"
              "parameter.setFieldName(\"cins\")\n"
              "parameter.setFrom(\"\")\n"
              "parameter.setTo(high(20))\n"
              "input.addNetListParameter(&<parameter>)\n"
              "criteria.setNetListIn(&<input>)\n"
              "output.addFieldNameWithoutOld(\"cins\")\n"
              "output.addFieldNameWithoutOld(\"desc\")\n"
              "output.addFieldNameWithoutOld(\"cloc\")\n"
              "output.addFieldNameWithoutOld(\"ccon\")\n"
              "output.addFieldNameWithoutOld(\"cgua\")\n"
              "output.addFieldNameWithoutOld(\"gdat\")\n"
              "output.addFieldNameWithoutOld(\"sdat\")\n"
              "output.addFieldNameWithoutOld(\"edat\")\n"
              "criteria.setNetListOut(&<output>)\n"
              "installations.NetListInstallations(&\"tssma102\", &<criteria>)\n"
              "rows.hasMoreElements()\n"
              "rows.nextElement()\n"
              "row1.getActionType()\n"
              "row1.getInstallation()\n"
              "sql DELETE FROM Product WHERE PRODUCT= N'P1'\n"
              "rows.hasMoreElements()\n"
              "rows.nextElement()\n"
              "row2.getActionType()\n"
              "row2.getInstallation()\n"
              "row2.hasDescription()\n"
              "row2.hasLocation()\n"
              "row2.hasContract()\n"
              "row2.hasMaintenanceStartDate()\n"
              "row2.hasMaintenanceEndDate()\n"
              "row2.hasWarranty()\n"
              "row2.getWarranty()\n"
              "row2.hasWarrantyExpiryDate()\n"
              "row2.getInstallation()\n"
              "sql UPDATE Product SET PRODUCT = N'P2', WARRANTY = N'W1', upd_flag = 0 WHERE PRODUCT =N'P2' -> 1\n"
              "rows.hasMoreElements()\n"
              "rows.nextElement()\n"
              "row3.getActionType()\n"
              "row3.getInstallation()\n"
              "row3.hasDescription()\n"
              "row3.hasLocation()\n"
              "row3.hasContract()\n"
              "row3.hasMaintenanceStartDate()\n"
              "row3.hasMaintenanceEndDate()\n"
              "row3.hasWarranty()\n"
              "row3.hasWarrantyExpiryDate()\n"
              "row3.getInstallation()\n"
              "sql UPDATE Product SET PRODUCT = N'P3', upd_flag = 0 WHERE PRODUCT =N'P3' -> 0\n"
              "row3.hasDescription()\n"
              "row3.hasLocation()\n"
              "row3.hasContract()\n"
              "row3.hasMaintenanceStartDate()\n"
              "row3.hasMaintenanceEndDate()\n"
              "row3.hasWarranty()\n"
              "row3.hasWarrantyExpiryDate()\n"
              "row3.getInstallation()\n"
              "row3.hasDescription()\n"
              "row3.hasLocation()\n"
              "row3.hasContract()\n"
              "row3.hasMaintenanceStartDate()\n"
              "row3.hasMaintenanceEndDate()\n"
              "row3.hasWarranty()\n"
              "row3.hasWarrantyExpiryDate()\n"
              "sql INSERT INTO Product (PRODUCT ,upd_flag )VALUES (N'P3',0) -> 1\n"
              "rows.hasMoreElements()\n"
              "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
              "N'Product' -> 1\n",
          .counters = "ucount 1, icount 1, dcount 1",
          .runLog =
              "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
              "\"Rows copied: Product -  1\"\r\n"
              "\"Rows updated: Product -  1\"\r\n"
              "\"Rows deleted: Product -  1\"\r\n"};
}

TEST(ApplyProductRow, AsksARowWithEveryFieldForEachAtEachUse) {
  CopyFixture copy("1");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplyProductRow(), kEveryField, "PRODUCTS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getInstallation()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.hasLocation()\n"
            "row1.getLocation()\n"
            "row1.hasContract()\n"
            "row1.getContract()\n"
            "row1.hasMaintenanceStartDate()\n"
            "row1.getMaintenanceStartDate()\n"
            "row1.hasMaintenanceEndDate()\n"
            "row1.getMaintenanceEndDate()\n"
            "row1.hasWarranty()\n"
            "row1.getWarranty()\n"
            "row1.hasWarrantyExpiryDate()\n"
            "row1.getWarrantyExpiryDate()\n"
            "row1.getInstallation()\n"
            "sql UPDATE PRODUCTS SET PRODUCT = N'P1', DESCRIPTION = N'Pump', SITE = N'S1', CONTRACT = NULL, "
            "EFFECTIVE_DATE = {d '2003-01-31'}, EXPIRY_DATE = NULL, WARRANTY = N'W1', WEXPIRY_DATE = {d "
            "'2004-01-31'}, upd_flag = 0 WHERE PRODUCT =N'P1' -> 0\n"
            "row1.hasDescription()\n"
            "row1.hasLocation()\n"
            "row1.hasContract()\n"
            "row1.hasMaintenanceStartDate()\n"
            "row1.hasMaintenanceEndDate()\n"
            "row1.hasWarranty()\n"
            "row1.hasWarrantyExpiryDate()\n"
            "row1.getInstallation()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.hasLocation()\n"
            "row1.getLocation()\n"
            "row1.hasContract()\n"
            "row1.getContract()\n"
            "row1.hasMaintenanceStartDate()\n"
            "row1.getMaintenanceStartDate()\n"
            "row1.hasMaintenanceEndDate()\n"
            "row1.getMaintenanceEndDate()\n"
            "row1.hasWarranty()\n"
            "row1.getWarranty()\n"
            "row1.hasWarrantyExpiryDate()\n"
            "row1.getWarrantyExpiryDate()\n"
            "sql INSERT INTO PRODUCTS (PRODUCT ,DESCRIPTION ,SITE,CONTRACT, EFFECTIVE_DATE , EXPIRY_DATE ,WARRANTY "
            ",WEXPIRY_DATE ,upd_flag )VALUES (N'P1',N'Pump',N'S1',N'   ',{d '2003-01-31'},NULL,N'W1',{d "
            "'2004-01-31'},0) -> 1\n");
}

TEST(ApplyProductRow, AsksAnAbsentFieldForItsPresenceAlone) {
  CopyFixture copy("1");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplyProductRow(), {{"Installation", "P1"}}, "PRODUCTS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getInstallation()\n"
            "row1.hasDescription()\n"
            "row1.hasLocation()\n"
            "row1.hasContract()\n"
            "row1.hasMaintenanceStartDate()\n"
            "row1.hasMaintenanceEndDate()\n"
            "row1.hasWarranty()\n"
            "row1.hasWarrantyExpiryDate()\n"
            "row1.getInstallation()\n"
            "sql UPDATE PRODUCTS SET PRODUCT = N'P1', upd_flag = 0 WHERE PRODUCT =N'P1' -> 0\n"
            "row1.hasDescription()\n"
            "row1.hasLocation()\n"
            "row1.hasContract()\n"
            "row1.hasMaintenanceStartDate()\n"
            "row1.hasMaintenanceEndDate()\n"
            "row1.hasWarranty()\n"
            "row1.hasWarrantyExpiryDate()\n"
            "row1.getInstallation()\n"
            "row1.hasDescription()\n"
            "row1.hasLocation()\n"
            "row1.hasContract()\n"
            "row1.hasMaintenanceStartDate()\n"
            "row1.hasMaintenanceEndDate()\n"
            "row1.hasWarranty()\n"
            "row1.hasWarrantyExpiryDate()\n"
            "sql INSERT INTO PRODUCTS (PRODUCT ,upd_flag )VALUES (N'P1',0) -> 1\n");
}

TEST(ApplyProductRow, WritesEachFieldAloneUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8", "2", ""}) {
    ExpectStatements(
        CopyFixture::ApplyProductRow(), generation, 1, "PRODUCTS",
        {{{{"Installation", "P1"}, {"Description", "Pump"}},
          "UPDATE PRODUCTS SET PRODUCT = N'P1', DESCRIPTION = N'Pump', upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO PRODUCTS (PRODUCT ,DESCRIPTION ,upd_flag )VALUES (N'P1',N'Pump',0)"},
         {{{"Installation", "P1"}, {"Location", "S1"}},
          "UPDATE PRODUCTS SET PRODUCT = N'P1', SITE = N'S1', upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO PRODUCTS (PRODUCT ,SITE,upd_flag )VALUES (N'P1',N'S1',0)"},
         {{{"Installation", "P1"}, {"Contract", "C1"}},
          "UPDATE PRODUCTS SET PRODUCT = N'P1', CONTRACT = N'C1', upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO PRODUCTS (PRODUCT ,CONTRACT,upd_flag )VALUES (N'P1',N'C1',0)"},
         {{{"Installation", "P1"}, {"MaintenanceStartDate", "2003-01-31"}},
          "UPDATE PRODUCTS SET PRODUCT = N'P1', EFFECTIVE_DATE = {d '2003-01-31'}, upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO PRODUCTS (PRODUCT , EFFECTIVE_DATE ,upd_flag )VALUES (N'P1',{d '2003-01-31'},0)"},
         {{{"Installation", "P1"}, {"MaintenanceEndDate", "2003-12-31"}},
          "UPDATE PRODUCTS SET PRODUCT = N'P1', EXPIRY_DATE = {d '2003-12-31'}, upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO PRODUCTS (PRODUCT , EXPIRY_DATE ,upd_flag )VALUES (N'P1',{d '2003-12-31'},0)"},
         {{{"Installation", "P1"}, {"Warranty", "W1"}},
          "UPDATE PRODUCTS SET PRODUCT = N'P1', WARRANTY = N'W1', upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO PRODUCTS (PRODUCT ,WARRANTY ,upd_flag )VALUES (N'P1',N'W1',0)"},
         {{{"Installation", "P1"}, {"WarrantyExpiryDate", "2004-01-31"}},
          "UPDATE PRODUCTS SET PRODUCT = N'P1', WEXPIRY_DATE = {d '2004-01-31'}, upd_flag = 0 WHERE PRODUCT =N'P1'",
          "INSERT INTO PRODUCTS (PRODUCT ,WEXPIRY_DATE ,upd_flag )VALUES (N'P1',{d '2004-01-31'},0)"}});
  }
}

TEST(ApplyProductRow, ClearsABlankContractInTheUpdateAndStoresItAsItComesInTheInsert) {
  ExpectStatements(CopyFixture::ApplyProductRow(), "1", 1, "PRODUCTS",
                   {{{{"Installation", "P1"}, {"Contract", "   "}},
                     "UPDATE PRODUCTS SET PRODUCT = N'P1', CONTRACT = NULL, upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO PRODUCTS (PRODUCT ,CONTRACT,upd_flag )VALUES (N'P1',N'   ',0)"},
                    {{{"Installation", "P1"}, {"Contract", ""}},
                     "UPDATE PRODUCTS SET PRODUCT = N'P1', CONTRACT = NULL, upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO PRODUCTS (PRODUCT ,CONTRACT,upd_flag )VALUES (N'P1',N'',0)"},
                    {{{"Installation", "P1"}, {"Contract", " C1 "}},
                     "UPDATE PRODUCTS SET PRODUCT = N'P1', CONTRACT = N' C1 ', upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO PRODUCTS (PRODUCT ,CONTRACT,upd_flag )VALUES (N'P1',N' C1 ',0)"},
                    {{{"Installation", "P1"}, {"Contract", "\t"}},
                     "UPDATE PRODUCTS SET PRODUCT = N'P1', CONTRACT = N'\t', upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO PRODUCTS (PRODUCT ,CONTRACT,upd_flag )VALUES (N'P1',N'\t',0)"}});
}

TEST(ApplyProductRow, WritesADateWithoutAValueAsNullInBothStatements) {
  ExpectStatements(CopyFixture::ApplyProductRow(), "1", 1, "PRODUCTS",
                   {{{{"Installation", "P1"}, {"MaintenanceStartDate", ""}},
                     "UPDATE PRODUCTS SET PRODUCT = N'P1', EFFECTIVE_DATE = NULL, upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO PRODUCTS (PRODUCT , EFFECTIVE_DATE ,upd_flag )VALUES (N'P1',NULL,0)"},
                    {{{"Installation", "P1"}, {"MaintenanceEndDate", Value()}},
                     "UPDATE PRODUCTS SET PRODUCT = N'P1', EXPIRY_DATE = NULL, upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO PRODUCTS (PRODUCT , EXPIRY_DATE ,upd_flag )VALUES (N'P1',NULL,0)"},
                    {{{"Installation", "P1"}, {"WarrantyExpiryDate", ""}},
                     "UPDATE PRODUCTS SET PRODUCT = N'P1', WEXPIRY_DATE = NULL, upd_flag = 0 WHERE PRODUCT =N'P1'",
                     "INSERT INTO PRODUCTS (PRODUCT ,WEXPIRY_DATE ,upd_flag )VALUES (N'P1',NULL,0)"}});
}

TEST(ApplyProductRow, WritesADateAsItComesAndANullDateWithoutAText) {
  ExpectStatements(
      CopyFixture::ApplyProductRow(), "1", 1, "PRODUCTS",
      {{{{"Installation", "P1"}, {"MaintenanceStartDate", " soon "}},
        "UPDATE PRODUCTS SET PRODUCT = N'P1', EFFECTIVE_DATE = {d ' soon '}, upd_flag = 0 WHERE PRODUCT =N'P1'",
        "INSERT INTO PRODUCTS (PRODUCT , EFFECTIVE_DATE ,upd_flag )VALUES (N'P1',{d ' soon '},0)"},
       {{{"Installation", "P1"}, {"MaintenanceEndDate", DateTime::FromParts({2003, 12, 31, 0, 0, 0})}},
        "UPDATE PRODUCTS SET PRODUCT = N'P1', EXPIRY_DATE = {d '12/31/2003'}, upd_flag = 0 WHERE PRODUCT =N'P1'",
        "INSERT INTO PRODUCTS (PRODUCT , EXPIRY_DATE ,upd_flag )VALUES (N'P1',{d '12/31/2003'},0)"},
       {{{"Installation", "P1"}, {"WarrantyExpiryDate", Null()}},
        "UPDATE PRODUCTS SET PRODUCT = N'P1', WEXPIRY_DATE = {d ''}, upd_flag = 0 WHERE PRODUCT =N'P1'",
        "INSERT INTO PRODUCTS (PRODUCT ,WEXPIRY_DATE ,upd_flag )VALUES (N'P1',{d ''},0)"}});
}

TEST(ApplyProductRow, DoublesTheQuotesOfEveryText) {
  ExpectStatements(CopyFixture::ApplyProductRow(), "1", 1, "PRODUCTS",
                   {{{{"Installation", "P'1"},
                      {"Description", "'Pump'"},
                      {"Location", "S'1"},
                      {"Contract", "C'1"},
                      {"Warranty", "W'1"}},
                     "UPDATE PRODUCTS SET PRODUCT = N'P''1', DESCRIPTION = N'''Pump''', SITE = N'S''1', CONTRACT = "
                     "N'C''1', WARRANTY = N'W''1', upd_flag = 0 WHERE PRODUCT =N'P''1'",
                     "INSERT INTO PRODUCTS (PRODUCT ,DESCRIPTION ,SITE,CONTRACT,WARRANTY ,upd_flag )VALUES "
                     "(N'P''1',N'''Pump''',N'S''1',N'C''1',N'W''1',0)"}});
}

TEST(ApplyProductRow, WritesTheLiteralsOfOracle) {
  ExpectStatements(CopyFixture::ApplyProductRow(), "1", /*databasePlatform=*/2, "PRODUCTS",
                   {{{{"Installation", ""},
                      {"Description", ""},
                      {"Location", ""},
                      {"Contract", ""},
                      {"MaintenanceStartDate", "2003-01-31"},
                      {"MaintenanceEndDate", ""},
                      {"Warranty", ""},
                      {"WarrantyExpiryDate", ""}},
                     "UPDATE PRODUCTS SET PRODUCT = N' ', DESCRIPTION = N' ', SITE = N' ', CONTRACT = NULL, "
                     "EFFECTIVE_DATE = {d '2003-01-31'}, EXPIRY_DATE = NULL, WARRANTY = N' ', WEXPIRY_DATE = NULL, "
                     "upd_flag = 0 WHERE PRODUCT =N' '",
                     "INSERT INTO PRODUCTS (PRODUCT ,DESCRIPTION ,SITE,CONTRACT, EFFECTIVE_DATE , EXPIRY_DATE "
                     ",WARRANTY ,WEXPIRY_DATE ,upd_flag )VALUES (N' ',N' ',N' ',N' ',{d '2003-01-31'},NULL,N' "
                     "',NULL,0)"}});
}

TEST(ApplyProductRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(CopyFixture::ApplyProductRow(), "1", kEveryField);
}

TEST(ApplyProductRow, FailsOnANullTextBeforeAnyStatement) {
  ExpectNullToFail(CopyFixture::ApplyProductRow(), "1", kEveryField,
                   {"Installation", "Description", "Location", "Contract", "Warranty"});
}

TEST(CopyProduct, CopiesTheWholeTableInTheSameWayUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8", "2"}) ExpectPass(FullCopyUnder(generation), kFullCopy);
}

TEST(CopyProduct, FollowsTheChangesInTheSameWayUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8", "2"}) ExpectPass(OnlyChangedUnder(generation), kOnlyChanged);
}

TEST(CopyProduct, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  ExpectFailureAtEachStep(FullCopyUnder("1"), kFullCopy,
                          "5100 Data copy: Products: Products could not be copied from the ERP (generation 1).");
}

TEST(CopyProduct, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  ExpectFailureAtEachStep(
      OnlyChangedUnder("1"), kOnlyChanged,
      "5100 Data copy: Product - Only Changed: Products could not be copied from the ERP (generation 1).");
}

TEST(CopyProduct, CountsADeletionWhetherTheTableHeldTheRowOrNot) {
  CopyFixture copy("1");
  copy.AddManager(kInstallations, "installations",
                  {copy.RowWith({{"ActionType", "D"}, {"Installation", "P1"}}),
                   copy.RowWith({{"ActionType", "D"}, {"Installation", "P1"}})});

  copy.CopyProduct("PRODUCTS", 2);

  EXPECT_EQ(copy.JournalWithout({"row", "create", "session", "installations", "query", "close", "period", "parameter",
                                 "input", "output", "criteria"}),
            "sql DELETE FROM PRODUCTS WHERE PRODUCT= N'P1'\n"
            "sql DELETE FROM PRODUCTS WHERE PRODUCT= N'P1'\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
            "N'PRODUCTS' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 2");
}

TEST(CopyProduct, RaisesANullOfTheErpAs194) {
  for (const std::int16_t SyncMethod : {std::int16_t{1}, std::int16_t{2}}) {
    SCOPED_TRACE(SyncMethod);
    CopyFixture copy("1");
    copy.AddManager(kInstallations, "installations", {copy.RowWith({{"Installation", "P1"}, {"Description", Null()}})});

    const Text raised = Raised([&] { copy.CopyProduct("Product", SyncMethod); });

    EXPECT_EQ(raised, SyncMethod == 1
                          ? "194 Data copy: Products: Products could not be copied from the ERP (generation 1)."
                          : "194 Data copy: Product - Only Changed: Products could not be copied from the ERP "
                            "(generation 1).");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Invalid use of Null\"\r\n");
  }
}

TEST(CopyProduct, LogsBothTheFailureAndTheTableThatItFailed) {
  CopyFixture copy("1");
  copy.AddManager(kInstallations, "installations", {copy.RowWith({{"Installation", Null()}})});

  const CopyResult result = copy.CopyTable(1, "Product", 1);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Invalid use of Null\"\r\n"
            "\"Data copy: Products\",\"Products could not be copied from the ERP (generation 1).\"\r\n");
}

TEST(CopyProduct, LeavesAFullCopyWithObjectNotSetWhenTheComponentCannotBeCreated) {
  for (const char* generation : {"1", "3", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);

    const Text raised = Raised([&] { copy.CopyProduct("Product", 1); });

    EXPECT_EQ(raised, "91 ZenqayDBSync: Object variable not set");
    EXPECT_EQ(copy.journal.Take(), "create Kv40QTMtssmaInstallations.InstallationsManager\n");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"Kv40QTMtssmaInstallations.InstallationsManager\",\"Component can't create object: "
              "Kv40QTMtssmaInstallations.InstallationsManager\"\r\n");
  }
}

// The ERP's label is known before anything can fail.
TEST(CopyProduct, LeavesAnOnlyChangedPassWith529AndTheErpsNameWhenTheComponentCannotBeCreated) {
  for (const char* generation : {"1", "3", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);

    const Text raised = Raised([&] { copy.CopyProduct("Product", 2); });

    EXPECT_EQ(raised,
              "529 Data copy: Product - Only Changed: Products could not be copied from the ERP (generation 1).");
    EXPECT_EQ(copy.journal.Take(), "create Kv40QTMtssmaInstallations.InstallationsManager\n");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"Kv40QTMtssmaInstallations.InstallationsManager\",\"Component can't create object: "
              "Kv40QTMtssmaInstallations.InstallationsManager\"\r\n");
  }
}

TEST(CopyProduct, ReportsAFullCopyUnderAGenerationThatLacksProductsAsFailed) {
  for (const char* generation : {"3", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);

    const Text job = RunJob(copy, "Product", 1);

    EXPECT_EQ(job,
              "open\n"
              "sql SET DATEFORMAT YMD\n"
              "get DefaultDatabase\n"
              "query SELECT * FROM tstables WHERE tablename = N'Product'\n"
              "close recordset\n"
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Product' -> 1\n"
              "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
              "create Kv40QTMtssmaInstallations.InstallationsManager\n"
              "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Product' -> 1\n"
              "event DataCopyError(time(10:11:12 AM), i16(5), i16(-1), \"See the log file "
              "LOGS\\Product_20040131.log.\")\n"
              "event DataCopydone()\n"
              "close\n");
    EXPECT_EQ(copy.directory.Read("Product_20040131.log"),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"Kv40QTMtssmaInstallations.InstallationsManager\",\"Component can't create object: "
              "Kv40QTMtssmaInstallations.InstallationsManager\"\r\n"
              "\"ZenqayDBSync\",\"Object variable not set\"\r\n");
  }
}

TEST(CopyProduct, ReportsAnOnlyChangedPassUnderAGenerationThatLacksProductsAsFailed) {
  for (const char* generation : {"3", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);

    const Text job = RunJob(copy, "Product", 2);

    EXPECT_EQ(job,
              "open\n"
              "sql SET DATEFORMAT YMD\n"
              "get DefaultDatabase\n"
              "query SELECT * FROM tstables WHERE tablename = N'Product'\n"
              "close recordset\n"
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Product' -> 1\n"
              "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
              "create Kv40QTMtssmaInstallations.InstallationsManager\n"
              "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Product' -> 1\n"
              "event DataCopyError(time(10:11:12 AM), i16(5), i16(-1), \"See the log file "
              "LOGS\\Product_20040131.log.\")\n"
              "event DataCopydone()\n"
              "close\n");
    EXPECT_EQ(copy.directory.Read("Product_20040131.log"),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"Kv40QTMtssmaInstallations.InstallationsManager\",\"Component can't create object: "
              "Kv40QTMtssmaInstallations.InstallationsManager\"\r\n"
              "\"Data copy: Product - Only Changed\",\"Products could not be copied from the ERP (generation "
              "1).\"\r\n");
  }
}

TEST(CopyProduct, DoesNothingUnderAnotherSyncMethod) {
  for (const int SyncMethod : {0, 3, -1}) {
    SCOPED_TRACE(SyncMethod);
    CopyFixture copy("1");
    copy.AddManager(kInstallations, "installations", {copy.RowWith({{"Installation", "P1"}})});

    copy.CopyProduct("Product", static_cast<std::int16_t>(SyncMethod));

    EXPECT_EQ(copy.journal.Take(), "");
    EXPECT_EQ(copy.RunLog(), "");
  }
}

}  // namespace
}  // namespace zenqay
