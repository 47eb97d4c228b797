// Object: its row operation and its two passes. The key has three columns; the full copy asks for the component of
// generation 3 under every generation, the only-changed pass under generation 3 alone.
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

const TestedEntity kObjects = {.copy = &CopyFixture::CopyObject,
                               .apply = CopyFixture::ApplyObjectRow(),
                               .TableName = "Object",
                               .caption = "Objects",
                               .onlyChanged = "Objects - Only Changed"};

// Both listings ask for the numbers from 0 to 9999: one above is outside.
const ErpSide kObjects3 = {
    .generation = "3",
    .managerClass = "Kv50QTMtscfgObjects.ObjectsManager",
    .name = "the ERP (generation 3)",
    .keys = "Configuration Object ObjectNumber",
    .list = "\"\", high(8), \"\", high(50), i16(0), i16(9999)",
    .listing = "NetListObjects",
    .tableCode = "tscfg200",
    .ranges = {{"ccfg", "\"\"", "high(8)"}, {"crob", "\"\"", "high(50)"}, {"oseq", "i16(0)", "i16(9999)"}},
    .fields = "ccfg crob oseq desc item cser indt dldt cwte",
    .behind =
        "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
        "close recordset\n"};

const RowFields kEveryField = {
    {"Configuration", "C1"},       {"Object", "O1"},          {"ObjectNumber", std::int16_t{7}},
    {"Description", "Pump"},       {"DerivedFromItem", "I1"}, {"DerivedFromItemDescription", "Big pump"},
    {"SerialNumber", "X9"},        {"Warranty", "W1"},        {"InstallationDate", "2003-01-31"},
    {"DeliveryDate", "2003-01-15"}};

const Text kKey = "getConfiguration GetObject GetObjectNumber";
const Text kGates =
    "hasDescription hasDerivedFromItem hasDerivedFromItemDescription hasSerialNumber hasWarranty hasInstallationDate "
    "hasDeliveryDate";
const Text kEveryFieldAsked =
    "hasDescription getDescription hasDerivedFromItem getDerivedFromItem hasDerivedFromItemDescription "
    "getDerivedFromItemDescription hasSerialNumber getSerialNumber hasWarranty getWarranty hasInstallationDate "
    "getInstallationDate hasDeliveryDate getDeliveryDate";

/// The key of a row, and one field more.
RowFields KeyAnd(const Text& name, const Value& value) {
  return {{"Configuration", "C1"}, {"Object", "O1"}, {"ObjectNumber", "7"}, {name, value}};
}

const Pass kFullCopy = FullPass(
    kObjects, kObjects3,
    {{{{"Configuration", "C1"}, {"Object", "O1"}, {"ObjectNumber", std::int16_t{7}}, {"SerialNumber", "X9"}},
      {kKey,
       "hasDescription hasDerivedFromItem hasDerivedFromItemDescription hasSerialNumber getSerialNumber "
       "hasWarranty hasInstallationDate hasDeliveryDate",
       kKey,
       "sql UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', SERIALNUMBER= N'X9', upd_flag = 0 WHERE "
       "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7' -> 1"}},
     {{{"Configuration", "C2"}, {"Object", "O2"}, {"ObjectNumber", std::int16_t{9999}}},
      {kKey, kGates, kKey,
       "sql UPDATE Object SET SITE = N'C2',OBJECT = N'O2', OBJECTNR = N'9999', upd_flag = 0 WHERE SITE = N'C2'AND "
       "OBJECT = N'O2'AND OBJECTNR = N'9999' -> 0",
       kGates, kKey, kGates,
       "sql INSERT INTO Object (SITE, OBJECT, OBJECTNR ,upd_flag )VALUES (N'C2',N'O2',N'9999',0) -> 1"}}},
    {.icount = 2});

const ListedRow kGone = {
    {{"ActionType", "D"}, {"Configuration", "C'1"}, {"Object", "O1"}, {"ObjectNumber", std::int16_t{7}}},
    {kKey, "sql DELETE FROM Object WHERE SITE = N'C''1' AND OBJECT = N'O1' AND OBJECTNR = N'7'"}};

const Pass kOnlyChanged = ChangedPass(
    kObjects, kObjects3,
    {kGone,
     {{{"ActionType", "U"},
       {"Configuration", "C2"},
       {"Object", "O2"},
       {"ObjectNumber", std::int16_t{8}},
       {"DerivedFromItemDescription", "Big pump"}},
      {kKey,
       "hasDescription hasDerivedFromItem hasDerivedFromItemDescription getDerivedFromItemDescription "
       "hasSerialNumber hasWarranty hasInstallationDate hasDeliveryDate",
       kKey,
       "sql UPDATE Object SET SITE = N'C2',OBJECT = N'O2', OBJECTNR = N'8', ITEMDESC = N'Big pump', upd_flag = 0 "
       "WHERE SITE = N'C2'AND OBJECT = N'O2'AND OBJECTNR = N'8' -> 1"}},
     {{{"ActionType", ""}, {"Configuration", "C3"}, {"Object", "O3"}, {"ObjectNumber", std::int16_t{9}}},
      {kKey, kGates, kKey,
       "sql UPDATE Object SET SITE = N'C3',OBJECT = N'O3', OBJECTNR = N'9', upd_flag = 0 WHERE SITE = N'C3'AND OBJECT "
       "= N'O3'AND OBJECTNR = N'9' -> 0",
       kGates, kKey, kGates,
       "sql INSERT INTO Object (SITE, OBJECT, OBJECTNR ,upd_flag )VALUES (N'C3',N'O3',N'9',0) -> 1"}}},
    {.ucount = 1, .icount = 1, .dcount = 1});

TEST(ApplyObjectRow, AsksForEveryFieldAtEachUse) {
  ExpectRow(kObjects, "3",
            {kEveryField,
             {kKey, kEveryFieldAsked, kKey,
              "sql UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', OBJECTDESC = N'Pump', ITEM = N'I1', "
              "ITEMDESC = N'Big pump', SERIALNUMBER= N'X9', WARRANTY= N'W1', INSTALLATION_DATE= {d '2003-01-31'}, "
              "DELIVERY_DATE= {d '2003-01-15'}, upd_flag = 0 WHERE SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7' "
              "-> 0",
              kGates, kKey, kEveryFieldAsked,
              "sql INSERT INTO Object (SITE, OBJECT, OBJECTNR ,OBJECTDESC ,ITEM , ITEMDESC ,SERIALNUMBER ,WARRANTY "
              ",INSTALLATION_DATE ,DELIVERY_DATE ,upd_flag )VALUES (N'C1',N'O1',N'7',N'Pump',N'I1',N'Big "
              "pump',N'X9',N'W1',{d '2003-01-31'},{d '2003-01-15'},0) -> 1"}});
}

TEST(ApplyObjectRow, WritesTheKeyAloneOfARowWithoutAnyOtherField) {
  ExpectRow(kObjects, "3",
            {{{"Configuration", "C1"}, {"Object", "O1"}, {"ObjectNumber", "7"}},
             {kKey, kGates, kKey,
              "sql UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', upd_flag = 0 WHERE SITE = N'C1'AND "
              "OBJECT = N'O1'AND OBJECTNR = N'7' -> 0",
              kGates, kKey, kGates,
              "sql INSERT INTO Object (SITE, OBJECT, OBJECTNR ,upd_flag )VALUES (N'C1',N'O1',N'7',0) -> 1"}});
}

TEST(ApplyObjectRow, WritesEachFieldAloneUnderEveryGeneration) {
  for (const char* generation : {"3", "1", "8", "2", ""}) {
    ExpectStatements(
        kObjects, generation,
        {{KeyAnd("Description", "Pump"),
          "UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', OBJECTDESC = N'Pump', upd_flag = 0 WHERE "
          "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO Object (SITE, OBJECT, OBJECTNR ,OBJECTDESC ,upd_flag )VALUES (N'C1',N'O1',N'7',N'Pump',0)"},
         {KeyAnd("DerivedFromItem", "I1"),
          "UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', ITEM = N'I1', upd_flag = 0 WHERE "
          "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO Object (SITE, OBJECT, OBJECTNR ,ITEM ,upd_flag )VALUES (N'C1',N'O1',N'7',N'I1',0)"},
         {KeyAnd("DerivedFromItemDescription", "Big pump"),
          "UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', ITEMDESC = N'Big pump', upd_flag = 0 WHERE "
          "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO Object (SITE, OBJECT, OBJECTNR , ITEMDESC ,upd_flag )VALUES (N'C1',N'O1',N'7',N'Big "
          "pump',0)"},
         {KeyAnd("SerialNumber", "X9"),
          "UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', SERIALNUMBER= N'X9', upd_flag = 0 WHERE "
          "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO Object (SITE, OBJECT, OBJECTNR ,SERIALNUMBER ,upd_flag )VALUES (N'C1',N'O1',N'7',N'X9',0)"},
         {KeyAnd("Warranty", "W1"),
          "UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', WARRANTY= N'W1', upd_flag = 0 WHERE "
          "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO Object (SITE, OBJECT, OBJECTNR ,WARRANTY ,upd_flag )VALUES (N'C1',N'O1',N'7',N'W1',0)"},
         {KeyAnd("InstallationDate", "2003-01-31"),
          "UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', INSTALLATION_DATE= {d '2003-01-31'}, "
          "upd_flag = 0 WHERE SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO Object (SITE, OBJECT, OBJECTNR ,INSTALLATION_DATE ,upd_flag )VALUES (N'C1',N'O1',N'7',{d "
          "'2003-01-31'},0)"},
         {KeyAnd("DeliveryDate", "2003-01-15"),
          "UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', DELIVERY_DATE= {d '2003-01-15'}, upd_flag "
          "= 0 WHERE SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO Object (SITE, OBJECT, OBJECTNR ,DELIVERY_DATE ,upd_flag )VALUES (N'C1',N'O1',N'7',{d "
          "'2003-01-15'},0)"}});
  }
}

TEST(ApplyObjectRow, WritesARowWithoutAnItemOrAWarranty) {
  ExpectStatements(kObjects, "3",
                   {{{{"Configuration", "C1"},
                      {"Object", "O1"},
                      {"ObjectNumber", std::int16_t{7}},
                      {"Description", "Pump"},
                      {"SerialNumber", "X9"},
                      {"InstallationDate", "2003-01-31"}},
                     "UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', OBJECTDESC = N'Pump', "
                     "SERIALNUMBER= N'X9', INSTALLATION_DATE= {d '2003-01-31'}, upd_flag = 0 WHERE SITE = N'C1'AND "
                     "OBJECT = N'O1'AND OBJECTNR = N'7'",
                     "INSERT INTO Object (SITE, OBJECT, OBJECTNR ,OBJECTDESC ,SERIALNUMBER ,INSTALLATION_DATE "
                     ",upd_flag )VALUES (N'C1',N'O1',N'7',N'Pump',N'X9',{d '2003-01-31'},0)"}});
}

TEST(ApplyObjectRow, WritesADateWithoutAValueAsNullInBothStatements) {
  ExpectStatements(
      kObjects, "3",
      {{KeyAnd("InstallationDate", ""),
        "UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', INSTALLATION_DATE= NULL, upd_flag = 0 WHERE "
        "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
        "INSERT INTO Object (SITE, OBJECT, OBJECTNR ,INSTALLATION_DATE ,upd_flag )VALUES "
        "(N'C1',N'O1',N'7',NULL,0)"},
       {KeyAnd("DeliveryDate", Value()),
        "UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', DELIVERY_DATE= NULL, upd_flag = 0 WHERE "
        "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
        "INSERT INTO Object (SITE, OBJECT, OBJECTNR ,DELIVERY_DATE ,upd_flag )VALUES (N'C1',N'O1',N'7',NULL,0)"}});
}

TEST(ApplyObjectRow, WritesANullDateWithoutAText) {
  ExpectStatements(
      kObjects, "3",
      {{KeyAnd("InstallationDate", Null()),
        "UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', INSTALLATION_DATE= {d ''}, upd_flag = 0 "
        "WHERE SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
        "INSERT INTO Object (SITE, OBJECT, OBJECTNR ,INSTALLATION_DATE ,upd_flag )VALUES (N'C1',N'O1',N'7',{d "
        "''},0)"}});
}

TEST(ApplyObjectRow, DoublesTheQuotesOfEveryText) {
  ExpectStatements(kObjects, "3",
                   {{{{"Configuration", "C'1"},
                      {"Object", "O'"},
                      {"ObjectNumber", "'7"},
                      {"Description", "P'p"},
                      {"DerivedFromItem", "I'1"},
                      {"DerivedFromItemDescription", "B'p"},
                      {"SerialNumber", "X'9"},
                      {"Warranty", "W'1"}},
                     "UPDATE Object SET SITE = N'C''1',OBJECT = N'O''', OBJECTNR = N'''7', OBJECTDESC = N'P''p', ITEM "
                     "= N'I''1', ITEMDESC = N'B''p', SERIALNUMBER= N'X''9', WARRANTY= N'W''1', upd_flag = 0 WHERE SITE "
                     "= N'C''1'AND OBJECT = N'O'''AND OBJECTNR = N'''7'",
                     "INSERT INTO Object (SITE, OBJECT, OBJECTNR ,OBJECTDESC ,ITEM , ITEMDESC ,SERIALNUMBER "
                     ",WARRANTY ,upd_flag )VALUES "
                     "(N'C''1',N'O''',N'''7',N'P''p',N'I''1',N'B''p',N'X''9',N'W''1',0)"}});
}

TEST(ApplyObjectRow, WritesTheLiteralsOfOracle) {
  ExpectStatements(kObjects, "3",
                   {{{{"Configuration", ""},
                      {"Object", ""},
                      {"ObjectNumber", ""},
                      {"Description", ""},
                      {"InstallationDate", "2003-01-31"},
                      {"DeliveryDate", ""}},
                     "UPDATE Object SET SITE = N' ',OBJECT = N' ', OBJECTNR = N' ', OBJECTDESC = N' ', "
                     "INSTALLATION_DATE= {d '2003-01-31'}, DELIVERY_DATE= NULL, upd_flag = 0 WHERE SITE = N' 'AND "
                     "OBJECT = N' 'AND OBJECTNR = N' '",
                     "INSERT INTO Object (SITE, OBJECT, OBJECTNR ,OBJECTDESC ,INSTALLATION_DATE ,DELIVERY_DATE "
                     ",upd_flag )VALUES (N' ',N' ',N' ',N' ',{d '2003-01-31'},NULL,0)"}},
                   /*databasePlatform=*/2);
}

TEST(ApplyObjectRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(kObjects, "3", kEveryField);
}

TEST(ApplyObjectRow, FailsOnANullTextBeforeAnyStatement) {
  ExpectNullToFail(kObjects, "3", kEveryField,
                   {"Configuration", "Object", "ObjectNumber", "Description", "DerivedFromItem",
                    "DerivedFromItemDescription", "SerialNumber", "Warranty"});
}

TEST(CopyObject, CopiesTheNumbersFrom0To9999InTheSameWayUnderEveryGeneration) {
  ExpectPass(kFullCopy);  // the warranties' expiry is calculated behind it
  for (const char* generation : {"1", "8", "2"}) ExpectPass(Under(generation, kFullCopy));
}

TEST(CopyObject, FollowsTheChangesFrom0To9999UnderGeneration3) {
  ExpectPass(kOnlyChanged);
}

TEST(CopyObject, KeepsTwoNumbersOfOneObjectApart) {
  ExpectPass(FullPass(
      kObjects, kObjects3,
      {{{{"Configuration", "C1"}, {"Object", "O1"}, {"ObjectNumber", "1"}},
        {kKey, kGates, kKey,
         "sql UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'1', upd_flag = 0 WHERE SITE = N'C1'AND "
         "OBJECT = N'O1'AND OBJECTNR = N'1' -> 1"}},
       {{{"Configuration", "C1"}, {"Object", "O1"}, {"ObjectNumber", "2"}},
        {kKey, kGates, kKey,
         "sql UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'2', upd_flag = 0 WHERE SITE = N'C1'AND "
         "OBJECT = N'O1'AND OBJECTNR = N'2' -> 0",
         kGates, kKey, kGates,
         "sql INSERT INTO Object (SITE, OBJECT, OBJECTNR ,upd_flag )VALUES (N'C1',N'O1',N'2',0) -> 1"}}},
      {.icount = 2}));
}

TEST(CopyObject, CountsADeletionWhetherTheTableHeldTheRowOrNot) {
  ExpectPass(ChangedPass(kObjects, kObjects3, {kGone, kGone}, {.dcount = 2}));
}

TEST(CopyObject, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  ExpectFailureAtEachStep(kFullCopy);
}

TEST(CopyObject, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  ExpectFailureAtEachStep(kOnlyChanged);
}

// The ERP's label is taken behind the creation of the manager.
TEST(CopyObject, FailsUnderEveryGenerationThatLacksTheComponentOfAFullCopy) {
  for (const char* generation : {"3", "1", "8"})
    ExpectMissingComponent(Under(generation, FullPass(kObjects, kObjects3)));
  ExpectMissingComponent(ChangedPass(kObjects, kObjects3));
}

TEST(CopyObject, CreatesNothingInAnOnlyChangedPassUnderAnotherGeneration) {
  for (const char* generation : {"1", "8", "2"}) {
    ExpectNoManager(ChangedPass(kObjects, WithoutManager(generation, kObjects3)));
  }
}

// A session that refuses the empty reference fails the pass one step earlier, with its own error.
TEST(CopyObject, FailsWithTheSessionsRefusalOfTheMissingManager) {
  CopyFixture copy("8");
  const auto session = copy.components.Make("session");
  session->Fails("addManager", RuntimeError(5000, "the session", "no manager"));
  copy.process.ErpSession = Object(session);

  const Text raised = Raised([&] { copy.CopyObject("Object", 2); });

  EXPECT_EQ(raised, "5100 Data copy: Objects - Only Changed: Objects could not be copied from .");
  EXPECT_EQ(copy.journal.Take(), "session.addManager(&nothing)\n");
}

TEST(CopyObject, DoesNothingUnderAnotherSyncMethod) {
  ExpectNothingUnderOtherSyncMethods(kObjects, kObjects3);
}

}  // namespace
}  // namespace zenqay
