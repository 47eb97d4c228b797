// Object: its row operation and its two passes. The key has three columns; the full copy asks for the component of
// generation 3 under every generation, the only-changed pass under generation 3 alone.
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

constexpr const char* kObjects = "Kv50QTMtscfgObjects.ObjectsManager";

const EntityCall kFullCopy = {&CopyFixture::CopyObject, "Object", 1};
const EntityCall kOnlyChanged = {&CopyFixture::CopyObject, "Object", 2};

const RowFields kEveryField = {
    {"Configuration", "C1"},       {"Object", "O1"},          {"ObjectNumber", std::int16_t{7}},
    {"Description", "Pump"},       {"DerivedFromItem", "I1"}, {"DerivedFromItemDescription", "Big pump"},
    {"SerialNumber", "X9"},        {"Warranty", "W1"},        {"InstallationDate", "2003-01-31"},
    {"DeliveryDate", "2003-01-15"}};

/// The key of a row, and one field more.
RowFields KeyAnd(const Text& name, const Value& value) {
  return {{"Configuration", "C1"}, {"Object", "O1"}, {"ObjectNumber", "7"}, {name, value}};
}

EntityPass FullCopyUnder(const Text& generation) {
  return {.generation = generation,
          .managerClass = kObjects,
          .managerName = "objects",
          .rows = {{{"Configuration", "C1"},
                    {"Object", "O1"},
                    {"ObjectNumber", std::int16_t{7}},
                    {"Description", "Pump"},
                    {"SerialNumber", "X9"},
                    {"InstallationDate", "2003-01-31"}},
                   {{"Configuration", "C2"}, {"Object", "O2"}, {"ObjectNumber", std::int16_t{9999}}}},
          .counts = {1, 0, 1},
          .trace =
              "create Kv50QTMtscfgObjects.ObjectsManager\n"
              "session.addManager(&<objects>)\n"
              "objects.Initialize(&\"100\")\n"
              "objects.List(\"\", high(8), \"\", high(50), i16(0), i16(9999))\n"
              "sql UPDATE Object SET upd_flag = 1 \n"
              "rows.hasMoreElements()\n"
              "rows.nextElement()\n"
              "row1.getConfiguration()\n"
              "row1.GetObject()\n"
              "row1.GetObjectNumber()\n"
              "row1.hasDescription()\n"
              "row1.getDescription()\n"
              "row1.hasDerivedFromItem()\n"
              "row1.hasDerivedFromItemDescription()\n"
              "row1.hasSerialNumber()\n"
              "row1.getSerialNumber()\n"
              "row1.hasWarranty()\n"
              "row1.hasInstallationDate()\n"
              "row1.getInstallationDate()\n"
              "row1.hasDeliveryDate()\n"
              "row1.getConfiguration()\n"
              "row1.GetObject()\n"
              "row1.GetObjectNumber()\n"
              "sql UPDATE Object SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', OBJECTDESC = N'Pump', "
              "SERIALNUMBER= N'X9', INSTALLATION_DATE= {d '2003-01-31'}, upd_flag = 0 WHERE SITE = N'C1'AND OBJECT = "
              "N'O1'AND OBJECTNR = N'7' -> 1\n"
              "rows.hasMoreElements()\n"
              "rows.nextElement()\n"
              "row2.getConfiguration()\n"
              "row2.GetObject()\n"
              "row2.GetObjectNumber()\n"
              "row2.hasDescription()\n"
              "row2.hasDerivedFromItem()\n"
              "row2.hasDerivedFromItemDescription()\n"
              "row2.hasSerialNumber()\n"
              "row2.hasWarranty()\n"
              "row2.hasInstallationDate()\n"
              "row2.hasDeliveryDate()\n"
              "row2.getConfiguration()\n"
              "row2.GetObject()\n"
              "row2.GetObjectNumber()\n"
              "sql UPDATE Object SET SITE = N'C2',OBJECT = N'O2', OBJECTNR = N'9999', upd_flag = 0 WHERE SITE = "
              "N'C2'AND OBJECT = N'O2'AND OBJECTNR = N'9999' -> 0\n"
              "row2.hasDescription()\n"
              "row2.hasDerivedFromItem()\n"
              "row2.hasDerivedFromItemDescription()\n"
              "row2.hasSerialNumber()\n"
              "row2.hasWarranty()\n"
              "row2.hasInstallationDate()\n"
              "row2.hasDeliveryDate()\n"
              "row2.getConfiguration()\n"
              "row2.GetObject()\n"
              "row2.GetObjectNumber()\n"
              "row2.hasDescription()\n"
              "row2.hasDerivedFromItem()\n"
              "row2.hasDerivedFromItemDescription()\n"
              "row2.hasSerialNumber()\n"
              "row2.hasWarranty()\n"
              "row2.hasInstallationDate()\n"
              "row2.hasDeliveryDate()\n"
              "sql INSERT INTO Object (SITE, OBJECT, OBJECTNR ,upd_flag )VALUES (N'C2',N'O2',N'9999',0) -> 1\n"
              "rows.hasMoreElements()\n"
              "sql DELETE FROM Object WHERE upd_flag = 1\n"
              "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
              "N'Object' -> 1\n"
              "objects.Close()\n",
          .counters = "ucount 0, icount 2, dcount 0",
          .runLog =
              "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
              "\"Rows copied: Object -  2\"\r\n"};
}

const EntityPass kOnlyChanged3 = {
    .generation = "3",
    .managerClass = kObjects,
    .managerName = "objects",
    .parameterNames = {"parameter1", "parameter2", "parameter3"},
    .rows = {{{"ActionType", "D"}, {"Configuration", "C1"}, {"Object", "O1"}, {"ObjectNumber", std::int16_t{7}}},
             {{"ActionType", "U"},
              {"Configuration", "C2"},
              {"Object", "O2"},
              {"ObjectNumber", std::int16_t{8}},
              {"DerivedFromItemDescription", "Big pump"}},
             {{"ActionType", ""}, {"Configuration", "C3"}, {"Object", "O3"}, {"ObjectNumber", std::int16_t{9}}}},
    .counts = {1, 0, 1},
    .trace =
        "create Kv50QTMtscfgObjects.ObjectsManager\n"
        "session.addManager(&<objects>)\n"
        "create NetListSelectionCriteria.NetListSelectionCriteria\n"
        "create NetListSelectionCriteria.NetListIn\n"
        "create NetListSelectionCriteria.NetListOut\n"
        "create NetListSelectionCriteria.NetListPeriod\n"
        "create NetListSelectionCriteria.NetListParameter\n"
        "create NetListSelectionCriteria.NetListParameter\n"
        "create NetListSelectionCriteria.NetListParameter\n"
        "objects.Initialize(&\"100\")\n"
        "query SELECT * FROM tstables WHERE tablename = N'Object'\n"
        "close recordset\n"
        "period.setFrom(<object>)\n"
        "period.setTo(<object>)\n"
        "criteria.setNetListPeriod(&<period>)\n"
        "parameter1.setFieldName(\"ccfg\")\n"
        "parameter1.setFrom(\"\")\n"
        "parameter1.setTo(high(8))\n"
        "parameter2.setFieldName(\"crob\")\n"
        "parameter2.setFrom(\"\")\n"
        "parameter2.setTo(high(50))\n"
        "parameter3.setFieldName(\"oseq\")\n"
        "parameter3.setFrom(i16(0))\n"
        "parameter3.setTo(i16(9999))\n"
        "input.addNetListParameter(&<parameter1>)\n"
        "input.addNetListParameter(&<parameter2>)\n"
        "input.addNetListParameter(&<parameter3>)\n"
        "criteria.setNetListIn(&<input>)\n"
        "output.addFieldNameWithoutOld(\"ccfg\")\n"
        "output.addFieldNameWithoutOld(\"crob\")\n"
        "output.addFieldNameWithoutOld(\"oseq\")\n"
        "output.addFieldNameWithoutOld(\"desc\")\n"
        "output.addFieldNameWithoutOld(\"item\")\n"
        "output.addFieldNameWithoutOld(\"cser\")\n"
        "output.addFieldNameWithoutOld(\"indt\")\n"
        "output.addFieldNameWithoutOld(\"dldt\")\n"
        "output.addFieldNameWithoutOld(\"cwte\")\n"
        "criteria.setNetListOut(&<output>)\n"
        "objects.NetListObjects(&\"tscfg200\", &<criteria>)\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getActionType()\n"
        "row1.getConfiguration()\n"
        "row1.GetObject()\n"
        "row1.GetObjectNumber()\n"
        "sql DELETE FROM Object WHERE SITE = N'C1' AND OBJECT = N'O1' AND OBJECTNR = N'7'\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getActionType()\n"
        "row2.getConfiguration()\n"
        "row2.GetObject()\n"
        "row2.GetObjectNumber()\n"
        "row2.hasDescription()\n"
        "row2.hasDerivedFromItem()\n"
        "row2.hasDerivedFromItemDescription()\n"
        "row2.getDerivedFromItemDescription()\n"
        "row2.hasSerialNumber()\n"
        "row2.hasWarranty()\n"
        "row2.hasInstallationDate()\n"
        "row2.hasDeliveryDate()\n"
        "row2.getConfiguration()\n"
        "row2.GetObject()\n"
        "row2.GetObjectNumber()\n"
        "sql UPDATE Object SET SITE = N'C2',OBJECT = N'O2', OBJECTNR = N'8', ITEMDESC = N'Big pump', upd_flag = 0 "
        "WHERE SITE = N'C2'AND OBJECT = N'O2'AND OBJECTNR = N'8' -> 1\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row3.getActionType()\n"
        "row3.getConfiguration()\n"
        "row3.GetObject()\n"
        "row3.GetObjectNumber()\n"
        "row3.hasDescription()\n"
        "row3.hasDerivedFromItem()\n"
        "row3.hasDerivedFromItemDescription()\n"
        "row3.hasSerialNumber()\n"
        "row3.hasWarranty()\n"
        "row3.hasInstallationDate()\n"
        "row3.hasDeliveryDate()\n"
        "row3.getConfiguration()\n"
        "row3.GetObject()\n"
        "row3.GetObjectNumber()\n"
        "sql UPDATE Object SET SITE = N'C3',OBJECT = N'O3', OBJECTNR = N'9', upd_flag = 0 WHERE SITE = "
        "N'C3'AND OBJECT = N'O3'AND OBJECTNR = N'9' -> 0\n"
        "row3.hasDescription()\n"
        "row3.hasDerivedFromItem()\n"
        "row3.hasDerivedFromItemDescription()\n"
        "row3.hasSerialNumber()\n"
        "row3.hasWarranty()\n"
        "row3.hasInstallationDate()\n"
        "row3.hasDeliveryDate()\n"
        "row3.getConfiguration()\n"
        "row3.GetObject()\n"
        "row3.GetObjectNumber()\n"
        "row3.hasDescription()\n"
        "row3.hasDerivedFromItem()\n"
        "row3.hasDerivedFromItemDescription()\n"
        "row3.hasSerialNumber()\n"
        "row3.hasWarranty()\n"
        "row3.hasInstallationDate()\n"
        "row3.hasDeliveryDate()\n"
        "sql INSERT INTO Object (SITE, OBJECT, OBJECTNR ,upd_flag )VALUES (N'C3',N'O3',N'9',0) -> 1\n"
        "rows.hasMoreElements()\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Object' -> 1\n",
    .counters = "ucount 1, icount 1, dcount 1",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Object -  1\"\r\n"
        "\"Rows updated: Object -  1\"\r\n"
        "\"Rows deleted: Object -  1\"\r\n"};

/// An ERP that holds the numbers 0, 9999 and 10000 of one object and lists those within the range that it is asked for.
struct ObjectsInRange {
  CopyFixture copy{"3"};
  std::shared_ptr<ScriptedObject> manager = copy.AddManager(kObjects, "objects");
  std::int16_t lowest = -1;
  std::int16_t highest = -1;

  ObjectsInRange() {
    manager->Does("List", [this](Arguments ranges) {
      lowest = ranges[4].value().AsInt16();
      highest = ranges[5].value().AsInt16();
      return Listed();
    });
    const auto number = copy.components.Make("parameter3");
    number->Answers("setFieldName", Value());
    number->Does("setFrom", [this](Arguments from) {
      lowest = from[0].value().AsInt16();
      return Value();
    });
    number->Does("setTo", [this](Arguments to) {
      highest = to[0].value().AsInt16();
      return Value();
    });
    const auto text = copy.components.Make("parameter");
    for (const char* operation : {"setFieldName", "setFrom", "setTo"}) text->Answers(operation, Value());
    copy.components.RegisterInTurn("NetListSelectionCriteria.NetListParameter", {text, text, number});
    manager->Does("NetListObjects", [this](Arguments) { return Listed(); });
  }

  Value Listed() {
    std::vector<Object> rows;
    for (const std::int16_t number : {std::int16_t{0}, std::int16_t{9999}, std::int16_t{10000}}) {
      if (number < lowest || number > highest) continue;
      rows.push_back(copy.RowWith({{"Configuration", "C1"}, {"Object", "O1"}, {"ObjectNumber", number}}));
    }
    return Object(copy.components.MakeEnumeration("rows", rows));
  }
};

TEST(ApplyObjectRow, AsksARowWithEveryFieldForEachAtEachUse) {
  CopyFixture copy("3");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplyObjectRow(), kEveryField, "OBJECTS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getConfiguration()\n"
            "row1.GetObject()\n"
            "row1.GetObjectNumber()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.hasDerivedFromItem()\n"
            "row1.getDerivedFromItem()\n"
            "row1.hasDerivedFromItemDescription()\n"
            "row1.getDerivedFromItemDescription()\n"
            "row1.hasSerialNumber()\n"
            "row1.getSerialNumber()\n"
            "row1.hasWarranty()\n"
            "row1.getWarranty()\n"
            "row1.hasInstallationDate()\n"
            "row1.getInstallationDate()\n"
            "row1.hasDeliveryDate()\n"
            "row1.getDeliveryDate()\n"
            "row1.getConfiguration()\n"
            "row1.GetObject()\n"
            "row1.GetObjectNumber()\n"
            "sql UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', OBJECTDESC = N'Pump', ITEM = N'I1', "
            "ITEMDESC = N'Big pump', SERIALNUMBER= N'X9', WARRANTY= N'W1', INSTALLATION_DATE= {d '2003-01-31'}, "
            "DELIVERY_DATE= {d '2003-01-15'}, upd_flag = 0 WHERE SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7' -> "
            "0\n"
            "row1.hasDescription()\n"
            "row1.hasDerivedFromItem()\n"
            "row1.hasDerivedFromItemDescription()\n"
            "row1.hasSerialNumber()\n"
            "row1.hasWarranty()\n"
            "row1.hasInstallationDate()\n"
            "row1.hasDeliveryDate()\n"
            "row1.getConfiguration()\n"
            "row1.GetObject()\n"
            "row1.GetObjectNumber()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.hasDerivedFromItem()\n"
            "row1.getDerivedFromItem()\n"
            "row1.hasDerivedFromItemDescription()\n"
            "row1.getDerivedFromItemDescription()\n"
            "row1.hasSerialNumber()\n"
            "row1.getSerialNumber()\n"
            "row1.hasWarranty()\n"
            "row1.getWarranty()\n"
            "row1.hasInstallationDate()\n"
            "row1.getInstallationDate()\n"
            "row1.hasDeliveryDate()\n"
            "row1.getDeliveryDate()\n"
            "sql INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,OBJECTDESC ,ITEM , ITEMDESC ,SERIALNUMBER ,WARRANTY "
            ",INSTALLATION_DATE ,DELIVERY_DATE ,upd_flag )VALUES (N'C1',N'O1',N'7',N'Pump',N'I1',N'Big "
            "pump',N'X9',N'W1',{d '2003-01-31'},{d '2003-01-15'},0) -> 1\n");
}

TEST(ApplyObjectRow, AsksAnAbsentFieldForItsPresenceAlone) {
  CopyFixture copy("3");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplyObjectRow(), {{"Configuration", "C1"}, {"Object", "O1"}, {"ObjectNumber", "7"}},
             "OBJECTS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getConfiguration()\n"
            "row1.GetObject()\n"
            "row1.GetObjectNumber()\n"
            "row1.hasDescription()\n"
            "row1.hasDerivedFromItem()\n"
            "row1.hasDerivedFromItemDescription()\n"
            "row1.hasSerialNumber()\n"
            "row1.hasWarranty()\n"
            "row1.hasInstallationDate()\n"
            "row1.hasDeliveryDate()\n"
            "row1.getConfiguration()\n"
            "row1.GetObject()\n"
            "row1.GetObjectNumber()\n"
            "sql UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', upd_flag = 0 WHERE SITE = N'C1'AND "
            "OBJECT = N'O1'AND OBJECTNR = N'7' -> 0\n"
            "row1.hasDescription()\n"
            "row1.hasDerivedFromItem()\n"
            "row1.hasDerivedFromItemDescription()\n"
            "row1.hasSerialNumber()\n"
            "row1.hasWarranty()\n"
            "row1.hasInstallationDate()\n"
            "row1.hasDeliveryDate()\n"
            "row1.getConfiguration()\n"
            "row1.GetObject()\n"
            "row1.GetObjectNumber()\n"
            "row1.hasDescription()\n"
            "row1.hasDerivedFromItem()\n"
            "row1.hasDerivedFromItemDescription()\n"
            "row1.hasSerialNumber()\n"
            "row1.hasWarranty()\n"
            "row1.hasInstallationDate()\n"
            "row1.hasDeliveryDate()\n"
            "sql INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,upd_flag )VALUES (N'C1',N'O1',N'7',0) -> 1\n");
}

TEST(ApplyObjectRow, WritesEachFieldAloneUnderEveryGeneration) {
  for (const char* generation : {"3", "1", "8", "2", ""}) {
    ExpectStatements(
        CopyFixture::ApplyObjectRow(), generation, 1, "OBJECTS",
        {{KeyAnd("Description", "Pump"),
          "UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', OBJECTDESC = N'Pump', upd_flag = 0 WHERE "
          "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,OBJECTDESC ,upd_flag )VALUES (N'C1',N'O1',N'7',N'Pump',0)"},
         {KeyAnd("DerivedFromItem", "I1"),
          "UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', ITEM = N'I1', upd_flag = 0 WHERE "
          "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,ITEM ,upd_flag )VALUES (N'C1',N'O1',N'7',N'I1',0)"},
         {KeyAnd("DerivedFromItemDescription", "Big pump"),
          "UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', ITEMDESC = N'Big pump', upd_flag = 0 WHERE "
          "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR , ITEMDESC ,upd_flag )VALUES (N'C1',N'O1',N'7',N'Big "
          "pump',0)"},
         {KeyAnd("SerialNumber", "X9"),
          "UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', SERIALNUMBER= N'X9', upd_flag = 0 WHERE "
          "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,SERIALNUMBER ,upd_flag )VALUES (N'C1',N'O1',N'7',N'X9',0)"},
         {KeyAnd("Warranty", "W1"),
          "UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', WARRANTY= N'W1', upd_flag = 0 WHERE "
          "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,WARRANTY ,upd_flag )VALUES (N'C1',N'O1',N'7',N'W1',0)"},
         {KeyAnd("InstallationDate", "2003-01-31"),
          "UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', INSTALLATION_DATE= {d '2003-01-31'}, "
          "upd_flag = 0 WHERE SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,INSTALLATION_DATE ,upd_flag )VALUES (N'C1',N'O1',N'7',{d "
          "'2003-01-31'},0)"},
         {KeyAnd("DeliveryDate", "2003-01-15"),
          "UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', DELIVERY_DATE= {d '2003-01-15'}, upd_flag "
          "= 0 WHERE SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
          "INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,DELIVERY_DATE ,upd_flag )VALUES (N'C1',N'O1',N'7',{d "
          "'2003-01-15'},0)"}});
  }
}

TEST(ApplyObjectRow, WritesARowWithoutAnItemOrAWarranty) {
  ExpectStatements(CopyFixture::ApplyObjectRow(), "3", 1, "OBJECTS",
                   {{{{"Configuration", "C1"},
                      {"Object", "O1"},
                      {"ObjectNumber", std::int16_t{7}},
                      {"Description", "Pump"},
                      {"SerialNumber", "X9"},
                      {"InstallationDate", "2003-01-31"}},
                     "UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', OBJECTDESC = N'Pump', "
                     "SERIALNUMBER= N'X9', INSTALLATION_DATE= {d '2003-01-31'}, upd_flag = 0 WHERE SITE = N'C1'AND "
                     "OBJECT = N'O1'AND OBJECTNR = N'7'",
                     "INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,OBJECTDESC ,SERIALNUMBER ,INSTALLATION_DATE "
                     ",upd_flag )VALUES (N'C1',N'O1',N'7',N'Pump',N'X9',{d '2003-01-31'},0)"}});
}

TEST(ApplyObjectRow, WritesADateWithoutAValueAsNullInBothStatements) {
  ExpectStatements(
      CopyFixture::ApplyObjectRow(), "3", 1, "OBJECTS",
      {{KeyAnd("InstallationDate", ""),
        "UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', INSTALLATION_DATE= NULL, upd_flag = 0 WHERE "
        "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
        "INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,INSTALLATION_DATE ,upd_flag )VALUES "
        "(N'C1',N'O1',N'7',NULL,0)"},
       {KeyAnd("DeliveryDate", Value()),
        "UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', DELIVERY_DATE= NULL, upd_flag = 0 WHERE "
        "SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
        "INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,DELIVERY_DATE ,upd_flag )VALUES (N'C1',N'O1',N'7',NULL,0)"}});
}

TEST(ApplyObjectRow, WritesANullDateWithoutAText) {
  ExpectStatements(
      CopyFixture::ApplyObjectRow(), "3", 1, "OBJECTS",
      {{KeyAnd("InstallationDate", Null()),
        "UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'7', INSTALLATION_DATE= {d ''}, upd_flag = 0 "
        "WHERE SITE = N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'7'",
        "INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,INSTALLATION_DATE ,upd_flag )VALUES (N'C1',N'O1',N'7',{d "
        "''},0)"}});
}

TEST(ApplyObjectRow, DoublesTheQuotesOfEveryText) {
  ExpectStatements(CopyFixture::ApplyObjectRow(), "3", 1, "OBJECTS",
                   {{{{"Configuration", "C'1"},
                      {"Object", "O'"},
                      {"ObjectNumber", "'7"},
                      {"Description", "P'p"},
                      {"DerivedFromItem", "I'1"},
                      {"DerivedFromItemDescription", "B'p"},
                      {"SerialNumber", "X'9"},
                      {"Warranty", "W'1"}},
                     "UPDATE OBJECTS SET SITE = N'C''1',OBJECT = N'O''', OBJECTNR = N'''7', OBJECTDESC = N'P''p', ITEM "
                     "= N'I''1', ITEMDESC = N'B''p', SERIALNUMBER= N'X''9', WARRANTY= N'W''1', upd_flag = 0 WHERE SITE "
                     "= N'C''1'AND OBJECT = N'O'''AND OBJECTNR = N'''7'",
                     "INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,OBJECTDESC ,ITEM , ITEMDESC ,SERIALNUMBER "
                     ",WARRANTY ,upd_flag )VALUES "
                     "(N'C''1',N'O''',N'''7',N'P''p',N'I''1',N'B''p',N'X''9',N'W''1',0)"}});
}

TEST(ApplyObjectRow, WritesTheLiteralsOfOracle) {
  ExpectStatements(CopyFixture::ApplyObjectRow(), "3", /*databasePlatform=*/2, "OBJECTS",
                   {{{{"Configuration", ""},
                      {"Object", ""},
                      {"ObjectNumber", ""},
                      {"Description", ""},
                      {"InstallationDate", "2003-01-31"},
                      {"DeliveryDate", ""}},
                     "UPDATE OBJECTS SET SITE = N' ',OBJECT = N' ', OBJECTNR = N' ', OBJECTDESC = N' ', "
                     "INSTALLATION_DATE= {d '2003-01-31'}, DELIVERY_DATE= NULL, upd_flag = 0 WHERE SITE = N' 'AND "
                     "OBJECT = N' 'AND OBJECTNR = N' '",
                     "INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,OBJECTDESC ,INSTALLATION_DATE ,DELIVERY_DATE "
                     ",upd_flag )VALUES (N' ',N' ',N' ',N' ',{d '2003-01-31'},NULL,0)"}});
}

TEST(ApplyObjectRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(CopyFixture::ApplyObjectRow(), "3", kEveryField);
}

TEST(ApplyObjectRow, FailsOnANullTextBeforeAnyStatement) {
  ExpectNullToFail(CopyFixture::ApplyObjectRow(), "3", kEveryField,
                   {"Configuration", "Object", "ObjectNumber", "Description", "DerivedFromItem",
                    "DerivedFromItemDescription", "SerialNumber", "Warranty"});
}

TEST(CopyObject, CopiesTheWholeTableInTheSameWayUnderEveryGeneration) {
  for (const char* generation : {"3", "1", "8", "2"}) ExpectPass(FullCopyUnder(generation), kFullCopy);
}

TEST(CopyObject, FollowsTheChangesUnderGeneration3) {
  ExpectPass(kOnlyChanged3, kOnlyChanged);
}

TEST(CopyObject, KeepsTwoNumbersOfOneObjectApart) {
  CopyFixture copy("3");
  copy.AddManager(kObjects, "objects",
                  {copy.RowWith({{"Configuration", "C1"}, {"Object", "O1"}, {"ObjectNumber", "1"}}),
                   copy.RowWith({{"Configuration", "C1"}, {"Object", "O1"}, {"ObjectNumber", "2"}})});
  copy.database.AffectNext({1, 0});

  copy.CopyObject("OBJECTS", 1);

  EXPECT_EQ(copy.JournalWithout({"row", "create", "session", "objects"}),
            "sql UPDATE OBJECTS SET upd_flag = 1 \n"
            "sql UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'1', upd_flag = 0 WHERE SITE = N'C1'AND "
            "OBJECT = N'O1'AND OBJECTNR = N'1' -> 1\n"
            "sql UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'2', upd_flag = 0 WHERE SITE = N'C1'AND "
            "OBJECT = N'O1'AND OBJECTNR = N'2' -> 0\n"
            "sql INSERT INTO OBJECTS (SITE, OBJECT, OBJECTNR ,upd_flag )VALUES (N'C1',N'O1',N'2',0) -> 1\n"
            "sql DELETE FROM OBJECTS WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
            "N'OBJECTS' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 2, dcount 0");
}

TEST(CopyObject, AsksForTheNumbers0To9999InAFullCopy) {
  ObjectsInRange erp;

  erp.copy.CopyObject("OBJECTS", 1);

  EXPECT_EQ(erp.copy.JournalWithout({"row", "create", "session", "objects"}),
            "sql UPDATE OBJECTS SET upd_flag = 1 \n"
            "sql UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'0', upd_flag = 0 WHERE SITE = N'C1'AND "
            "OBJECT = N'O1'AND OBJECTNR = N'0' -> 1\n"
            "sql UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'9999', upd_flag = 0 WHERE SITE = "
            "N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'9999' -> 1\n"
            "sql DELETE FROM OBJECTS WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
            "N'OBJECTS' -> 1\n");
}

TEST(CopyObject, AsksForTheNumbers0To9999InAnOnlyChangedPass) {
  ObjectsInRange erp;

  erp.copy.CopyObject("OBJECTS", 2);

  EXPECT_EQ(erp.copy.JournalWithout({"row", "create", "session", "objects", "query", "close", "period", "parameter",
                                     "input", "output", "criteria"}),
            "sql UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'0', upd_flag = 0 WHERE SITE = N'C1'AND "
            "OBJECT = N'O1'AND OBJECTNR = N'0' -> 1\n"
            "sql UPDATE OBJECTS SET SITE = N'C1',OBJECT = N'O1', OBJECTNR = N'9999', upd_flag = 0 WHERE SITE = "
            "N'C1'AND OBJECT = N'O1'AND OBJECTNR = N'9999' -> 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
            "N'OBJECTS' -> 1\n");
}

TEST(CopyObject, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  ExpectFailureAtEachStep(FullCopyUnder("3"), kFullCopy,
                          "5100 Data copy: Objects: Objects could not be copied from the ERP (generation 3).");
}

TEST(CopyObject, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  ExpectFailureAtEachStep(
      kOnlyChanged3, kOnlyChanged,
      "5100 Data copy: Objects - Only Changed: Objects could not be copied from the ERP (generation 3).");
}

TEST(CopyObject, CountsADeletionWhetherTheTableHeldTheRowOrNot) {
  CopyFixture copy("3");
  const RowFields deleted = {
      {"ActionType", "D"}, {"Configuration", "C'1"}, {"Object", "O1"}, {"ObjectNumber", std::int16_t{7}}};
  copy.AddManager(kObjects, "objects", {copy.RowWith(deleted), copy.RowWith(deleted)});

  copy.CopyObject("OBJECTS", 2);

  EXPECT_EQ(copy.JournalWithout({"row", "create", "session", "objects", "query", "close", "period", "parameter",
                                 "input", "output", "criteria"}),
            "sql DELETE FROM OBJECTS WHERE SITE = N'C''1' AND OBJECT = N'O1' AND OBJECTNR = N'7'\n"
            "sql DELETE FROM OBJECTS WHERE SITE = N'C''1' AND OBJECT = N'O1' AND OBJECTNR = N'7'\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
            "N'OBJECTS' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 2");
}

TEST(CopyObject, RaisesANullOfTheErpAs194) {
  for (const std::int16_t SyncMethod : {std::int16_t{1}, std::int16_t{2}}) {
    SCOPED_TRACE(SyncMethod);
    CopyFixture copy("3");
    copy.AddManager(kObjects, "objects",
                    {copy.RowWith({{"Configuration", "C1"}, {"Object", "O1"}, {"ObjectNumber", Null()}})});

    const Text raised = Raised([&] { copy.CopyObject("Object", SyncMethod); });

    EXPECT_EQ(raised, SyncMethod == 1
                          ? "194 Data copy: Objects: Objects could not be copied from the ERP (generation 3)."
                          : "194 Data copy: Objects - Only Changed: Objects could not be copied from the ERP "
                            "(generation 3).");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Invalid use of Null\"\r\n");
  }
}

TEST(CopyObject, LeavesAFullCopyWithObjectNotSetWhenTheComponentCannotBeCreated) {
  for (const char* generation : {"3", "1", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);

    const Text raised = Raised([&] { copy.CopyObject("Object", 1); });

    EXPECT_EQ(raised, "91 ZenqayDBSync: Object variable not set");
    EXPECT_EQ(copy.journal.Take(), "create Kv50QTMtscfgObjects.ObjectsManager\n");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"Kv50QTMtscfgObjects.ObjectsManager\",\"Component can't create object: "
              "Kv50QTMtscfgObjects.ObjectsManager\"\r\n");
  }
}

// The ERP's label is taken behind the creation of the manager.
TEST(CopyObject, LeavesAnOnlyChangedPassWith529AndNoErpNamedWhenTheComponentCannotBeCreated) {
  CopyFixture copy("3");

  const Text raised = Raised([&] { copy.CopyObject("Object", 2); });

  EXPECT_EQ(raised, "529 Data copy: Objects - Only Changed: Objects could not be copied from .");
  EXPECT_EQ(copy.journal.Take(), "create Kv50QTMtscfgObjects.ObjectsManager\n");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Kv50QTMtscfgObjects.ObjectsManager\",\"Component can't create object: "
            "Kv50QTMtscfgObjects.ObjectsManager\"\r\n");
}

TEST(CopyObject, LeavesAnOnlyChangedPassWith191AndNoErpNamedUnderAnotherGeneration) {
  for (const char* generation : {"1", "8", "2"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.AddManager(kObjects, "objects");

    const Text raised = Raised([&] { copy.CopyObject("Object", 2); });

    EXPECT_EQ(raised, "191 Data copy: Objects - Only Changed: Objects could not be copied from .");
    EXPECT_EQ(copy.journal.Take(),
              "session.addManager(&nothing)\n"
              "create NetListSelectionCriteria.NetListSelectionCriteria\n"
              "create NetListSelectionCriteria.NetListIn\n"
              "create NetListSelectionCriteria.NetListOut\n"
              "create NetListSelectionCriteria.NetListPeriod\n"
              "create NetListSelectionCriteria.NetListParameter\n"
              "create NetListSelectionCriteria.NetListParameter\n"
              "create NetListSelectionCriteria.NetListParameter\n");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Object variable not set\"\r\n");
  }
}

TEST(CopyObject, LeavesAnOnlyChangedPassWith191UnderAnotherGenerationAlsoWithoutASession) {
  CopyFixture copy("1");
  copy.AddManager(kObjects, "objects");
  copy.process.ErpSession.Release();

  const Text raised = Raised([&] { copy.CopyObject("Object", 2); });

  EXPECT_EQ(raised, "191 Data copy: Objects - Only Changed: Objects could not be copied from .");
  EXPECT_EQ(copy.journal.Take(),
            "create NetListSelectionCriteria.NetListSelectionCriteria\n"
            "create NetListSelectionCriteria.NetListIn\n"
            "create NetListSelectionCriteria.NetListOut\n"
            "create NetListSelectionCriteria.NetListPeriod\n"
            "create NetListSelectionCriteria.NetListParameter\n"
            "create NetListSelectionCriteria.NetListParameter\n"
            "create NetListSelectionCriteria.NetListParameter\n");
}

// A session that refuses the empty reference fails the pass one step earlier, with its own error.
TEST(CopyObject, LeavesAnOnlyChangedPassWithTheSessionsRefusalOfTheMissingManager) {
  CopyFixture copy("8");
  const auto session = copy.components.Make("session");
  session->Fails("addManager", RuntimeError(5000, "the session", "no manager"));
  copy.process.ErpSession = Object(session);

  const Text raised = Raised([&] { copy.CopyObject("Object", 2); });

  EXPECT_EQ(raised, "5100 Data copy: Objects - Only Changed: Objects could not be copied from .");
  EXPECT_EQ(copy.journal.Take(), "session.addManager(&nothing)\n");
}

TEST(CopyObject, ReportsAFullCopyUnderAGenerationThatLacksObjectsAsFailed) {
  for (const char* generation : {"1", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);

    const Text job = RunJob(copy, "Object", 1);

    EXPECT_EQ(job,
              "open\n"
              "sql SET DATEFORMAT YMD\n"
              "get DefaultDatabase\n"
              "query SELECT * FROM tstables WHERE tablename = N'Object'\n"
              "close recordset\n"
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Object' -> 1\n"
              "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
              "create Kv50QTMtscfgObjects.ObjectsManager\n"
              "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Object' -> 1\n"
              "event DataCopyError(time(10:11:12 AM), i16(5), i16(-1), \"See the log file "
              "LOGS\\Object_20040131.log.\")\n"
              "event DataCopydone()\n"
              "close\n");
    EXPECT_EQ(copy.directory.Read("Object_20040131.log"),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"Kv50QTMtscfgObjects.ObjectsManager\",\"Component can't create object: "
              "Kv50QTMtscfgObjects.ObjectsManager\"\r\n"
              "\"ZenqayDBSync\",\"Object variable not set\"\r\n");
  }
}

TEST(CopyObject, ReportsAnOnlyChangedPassUnderAGenerationThatLacksObjectsAsFailed) {
  for (const char* generation : {"1", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.AddManager(kObjects, "objects");

    const Text job = RunJob(copy, "Object", 2);

    EXPECT_EQ(job,
              "open\n"
              "sql SET DATEFORMAT YMD\n"
              "get DefaultDatabase\n"
              "query SELECT * FROM tstables WHERE tablename = N'Object'\n"
              "close recordset\n"
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Object' -> 1\n"
              "event DataCopyStarted(time(10:11:12 AM), i16(5))\n"
              "session.addManager(&nothing)\n"
              "create NetListSelectionCriteria.NetListSelectionCriteria\n"
              "create NetListSelectionCriteria.NetListIn\n"
              "create NetListSelectionCriteria.NetListOut\n"
              "create NetListSelectionCriteria.NetListPeriod\n"
              "create NetListSelectionCriteria.NetListParameter\n"
              "create NetListSelectionCriteria.NetListParameter\n"
              "create NetListSelectionCriteria.NetListParameter\n"
              "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Object' -> 1\n"
              "event DataCopyError(time(10:11:12 AM), i16(5), i16(-1), \"See the log file "
              "LOGS\\Object_20040131.log.\")\n"
              "event DataCopydone()\n"
              "close\n");
    EXPECT_EQ(copy.directory.Read("Object_20040131.log"),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Object variable not set\"\r\n"
              "\"Data copy: Objects - Only Changed\",\"Objects could not be copied from .\"\r\n");
  }
}

TEST(CopyObject, DoesNothingUnderAnotherSyncMethod) {
  for (const int SyncMethod : {0, 3, -1}) {
    SCOPED_TRACE(SyncMethod);
    CopyFixture copy("3");
    copy.AddManager(kObjects, "objects", {copy.RowWith(kEveryField)});

    copy.CopyObject("Object", static_cast<std::int16_t>(SyncMethod));

    EXPECT_EQ(copy.journal.Take(), "");
    EXPECT_EQ(copy.RunLog(), "");
  }
}

}  // namespace
}  // namespace zenqay
