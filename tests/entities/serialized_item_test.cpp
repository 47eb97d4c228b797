// Serialized item: its row operation and its two passes, which are the same under every generation.
#include <gtest/gtest.h>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

constexpr const char* kItems = "Kv61QTMtscfgSerializedItems.SerializedItemsManager";

const RuntimeError kFailure(500, "adapter", "no connection");

/// A date object of the ERP that says `text` of itself.
Object Moment(CopyFixture& copy, const Text& name, const Text& text) {
  const auto moment = copy.components.Make(name);
  moment->Answers("toLocaleString", text);
  return Object(moment);
}

/// A row with every field, its date objects named `installed` and `delivered`.
RowFields EveryField(CopyFixture& copy) {
  return {{"Item", "I1"},
          {"Description", "Pump"},
          {"Cluster", "C1"},
          {"Warranty", "W1"},
          {"InstallationTime", Moment(copy, "installed", "Jan 31, 2003 10:11:12 AM")},
          {"DeliveryTime", Moment(copy, "delivered", "Dec 24, 2002 12:00:00 PM")},
          {"SoldtoBusinessPartner", "B1"},
          {"SerialNumber", "X9"},
          {"AlternateSerialNumber", "A7"}};
}

TEST(ApplySerializedItemRow, WritesEveryFieldThatTheRowHas) {
  for (const char* generation : {"1", "3", "8", "2", ""}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({0});

    copy.Apply(CopyFixture::ApplySerializedItemRow(), EveryField(copy), "ITEMS");

    EXPECT_EQ(copy.journal.Take(),
              "row1.hasCluster()\n"
              "row1.getCluster()\n"
              "row1.hasItem()\n"
              "row1.getItem()\n"
              "row1.hasDescription()\n"
              "row1.getDescription()\n"
              "row1.hasWarranty()\n"
              "row1.getWarranty()\n"
              "row1.hasInstallationTime()\n"
              "row1.getInstallationTime()\n"
              "installed.toLocaleString()\n"
              "row1.hasDeliveryTime()\n"
              "row1.getDeliveryTime()\n"
              "delivered.toLocaleString()\n"
              "row1.hasSoldtoBusinessPartner()\n"
              "row1.getSoldtoBusinessPartner()\n"
              "row1.hasSerialNumber()\n"
              "row1.getSerialNumber()\n"
              "sql UPDATE ITEMS SET OBJECT = N'I1', OBJECTDESC = N'Pump', SITE = N'C1', WARRANTY= N'W1', "
              "INSTALLATION_DATE= 'Jan 31, 2003 10:11:12 AM', DELIVERY_DATE= 'Dec 24, 2002 12:00:00 PM', CUSTOMER= "
              "N'B1', upd_flag = 0  WHERE SITE = N'C1' AND OBJECT = N'I1' AND OBJECTNR = N'X9' -> 0\n"
              "row1.hasCluster()\n"
              "row1.getCluster()\n"
              "row1.hasItem()\n"
              "row1.getItem()\n"
              "row1.hasDescription()\n"
              "row1.hasAlternateSerialNumber()\n"
              "row1.hasWarranty()\n"
              "row1.hasInstallationTime()\n"
              "row1.hasDeliveryTime()\n"
              "row1.hasSoldtoBusinessPartner()\n"
              "row1.getSerialNumber()\n"
              "row1.hasDescription()\n"
              "row1.getDescription()\n"
              "row1.hasAlternateSerialNumber()\n"
              "row1.getAlternateSerialNumber()\n"
              "row1.hasWarranty()\n"
              "row1.getWarranty()\n"
              "row1.hasInstallationTime()\n"
              "row1.getInstallationTime()\n"
              "installed.toLocaleString()\n"
              "row1.hasDeliveryTime()\n"
              "row1.getDeliveryTime()\n"
              "delivered.toLocaleString()\n"
              "row1.hasSoldtoBusinessPartner()\n"
              "row1.getSoldtoBusinessPartner()\n"
              "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,OBJECTDESC ,SITE ,SERIALNUMBER ,WARRANTY ,INSTALLATION_DATE "
              ",DELIVERY_DATE ,CUSTOMER,upd_flag )VALUES (N'X9',N'I1',N'Pump',N'C1',N'A7',N'W1','Jan 31, 2003 "
              "10:11:12 AM','Dec 24, 2002 12:00:00 PM',N'B1',0) -> 1\n");
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  }
}

TEST(ApplySerializedItemRow, WritesObjectAndSiteAndNumberOfARowWithoutAnything) {
  CopyFixture copy("8");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySerializedItemRow(), {}, "ITEMS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.hasCluster()\n"
            "row1.hasItem()\n"
            "row1.hasDescription()\n"
            "row1.hasWarranty()\n"
            "row1.hasInstallationTime()\n"
            "row1.hasDeliveryTime()\n"
            "row1.hasSoldtoBusinessPartner()\n"
            "row1.hasSerialNumber()\n"
            "sql UPDATE ITEMS SET OBJECT = NULL, SITE = NULL, upd_flag = 0  WHERE SITE = NULL AND OBJECT = NULL -> 0\n"
            "row1.hasCluster()\n"
            "row1.hasItem()\n"
            "row1.hasDescription()\n"
            "row1.hasAlternateSerialNumber()\n"
            "row1.hasWarranty()\n"
            "row1.hasInstallationTime()\n"
            "row1.hasDeliveryTime()\n"
            "row1.hasSoldtoBusinessPartner()\n"
            "row1.getSerialNumber()\n"
            "row1.hasDescription()\n"
            "row1.hasAlternateSerialNumber()\n"
            "row1.hasWarranty()\n"
            "row1.hasInstallationTime()\n"
            "row1.hasDeliveryTime()\n"
            "row1.hasSoldtoBusinessPartner()\n"
            "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'',NULL,NULL,0) -> 1\n");
}

TEST(ApplySerializedItemRow, WritesEachFieldOnItsOwn) {
  const struct {
    const char* field;
    const char* statements;
  } cases[] = {
      {"Item",
       "sql UPDATE ITEMS SET OBJECT = N'I1', SITE = NULL, upd_flag = 0  WHERE SITE = NULL AND OBJECT = N'I1' -> 0\n"
       "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'',N'I1',NULL,0) -> 1\n"},
      {"Description",
       "sql UPDATE ITEMS SET OBJECT = NULL, OBJECTDESC = N'Pump', SITE = NULL, upd_flag = 0  WHERE SITE = NULL AND "
       "OBJECT = NULL -> 0\n"
       "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,OBJECTDESC ,SITE ,upd_flag )VALUES (N'',NULL,N'Pump',NULL,0) -> 1\n"},
      {"Cluster",
       "sql UPDATE ITEMS SET OBJECT = NULL, SITE = N'C1', upd_flag = 0  WHERE SITE = N'C1' AND OBJECT = NULL -> 0\n"
       "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'',NULL,N'C1',0) -> 1\n"},
      {"Warranty",
       "sql UPDATE ITEMS SET OBJECT = NULL, SITE = NULL, WARRANTY= N'W1', upd_flag = 0  WHERE SITE = NULL AND OBJECT = "
       "NULL -> 0\n"
       "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,SITE ,WARRANTY ,upd_flag )VALUES (N'',NULL,NULL,N'W1',0) -> 1\n"},
      {"InstallationTime",
       "sql UPDATE ITEMS SET OBJECT = NULL, SITE = NULL, INSTALLATION_DATE= 'Jan 31, 2003 10:11:12 AM', upd_flag = 0  "
       "WHERE SITE = NULL AND OBJECT = NULL -> 0\n"
       "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,SITE ,INSTALLATION_DATE ,upd_flag )VALUES (N'',NULL,NULL,'Jan 31, "
       "2003 10:11:12 AM',0) -> 1\n"},
      {"DeliveryTime",
       "sql UPDATE ITEMS SET OBJECT = NULL, SITE = NULL, DELIVERY_DATE= 'Dec 24, 2002 12:00:00 PM', upd_flag = 0  "
       "WHERE SITE = NULL AND OBJECT = NULL -> 0\n"
       "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,SITE ,DELIVERY_DATE ,upd_flag )VALUES (N'',NULL,NULL,'Dec 24, 2002 "
       "12:00:00 PM',0) -> 1\n"},
      {"SoldtoBusinessPartner",
       "sql UPDATE ITEMS SET OBJECT = NULL, SITE = NULL, CUSTOMER= N'B1', upd_flag = 0  WHERE SITE = NULL AND OBJECT = "
       "NULL -> 0\n"
       "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,SITE ,CUSTOMER,upd_flag )VALUES (N'',NULL,NULL,N'B1',0) -> 1\n"},
      {"SerialNumber",
       "sql UPDATE ITEMS SET OBJECT = NULL, SITE = NULL, upd_flag = 0  WHERE SITE = NULL AND OBJECT = NULL AND "
       "OBJECTNR "
       "= N'X9' -> 0\n"
       "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'X9',NULL,NULL,0) -> 1\n"},
      {"AlternateSerialNumber",
       "sql UPDATE ITEMS SET OBJECT = NULL, SITE = NULL, upd_flag = 0  WHERE SITE = NULL AND OBJECT = NULL -> 0\n"
       "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,SITE ,SERIALNUMBER ,upd_flag )VALUES (N'',NULL,NULL,N'A7',0) -> 1\n"},
  };
  for (const auto& [field, statements] : cases) {
    SCOPED_TRACE(field);
    CopyFixture copy("8");
    copy.database.AffectNext({0});
    RowFields alone;
    for (const auto& [name, value] : EveryField(copy)) {
      if (name == field) alone.emplace_back(name, value);
    }

    copy.Apply(CopyFixture::ApplySerializedItemRow(), alone, "ITEMS");

    EXPECT_EQ(copy.JournalWithout({"row", "installed", "delivered"}), statements);
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  }
}

TEST(ApplySerializedItemRow, WritesAnItemWithoutWarrantyAndTimes) {
  CopyFixture copy("8");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySerializedItemRow(),
             {{"Cluster", "C1"},
              {"Item", "I1"},
              {"SerialNumber", "X9"},
              {"AlternateSerialNumber", "A7"},
              {"Description", "Pump"},
              {"SoldtoBusinessPartner", "B1"}},
             "ITEMS");

  EXPECT_EQ(copy.JournalWithout({"row"}),
            "sql UPDATE ITEMS SET OBJECT = N'I1', OBJECTDESC = N'Pump', SITE = N'C1', CUSTOMER= N'B1', upd_flag = 0  "
            "WHERE SITE = N'C1' AND OBJECT = N'I1' AND OBJECTNR = N'X9' -> 0\n"
            "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,OBJECTDESC ,SITE ,SERIALNUMBER ,CUSTOMER,upd_flag )VALUES "
            "(N'X9',N'I1',N'Pump',N'C1',N'A7',N'B1',0) -> 1\n");
}

TEST(ApplySerializedItemRow, NeverRefreshesTheSerialNumberOfARowThatIsThere) {
  CopyFixture copy("8");
  copy.database.AffectNext({1});

  copy.Apply(CopyFixture::ApplySerializedItemRow(),
             {{"Cluster", "C1"}, {"Item", "I1"}, {"SerialNumber", "X9"}, {"AlternateSerialNumber", "A8"}}, "ITEMS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.hasCluster()\n"
            "row1.getCluster()\n"
            "row1.hasItem()\n"
            "row1.getItem()\n"
            "row1.hasDescription()\n"
            "row1.hasWarranty()\n"
            "row1.hasInstallationTime()\n"
            "row1.hasDeliveryTime()\n"
            "row1.hasSoldtoBusinessPartner()\n"
            "row1.hasSerialNumber()\n"
            "row1.getSerialNumber()\n"
            "sql UPDATE ITEMS SET OBJECT = N'I1', SITE = N'C1', upd_flag = 0  WHERE SITE = N'C1' AND OBJECT = N'I1' "
            "AND OBJECTNR = N'X9' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 0");
}

TEST(ApplySerializedItemRow, MatchesEveryRowOfTheItemAtTheSiteWithoutASerialNumber) {
  CopyFixture copy("8");
  copy.database.AffectNext({12});

  copy.Apply(CopyFixture::ApplySerializedItemRow(), {{"Cluster", "C1"}, {"Item", "I1"}}, "ITEMS");

  EXPECT_EQ(copy.JournalWithout({"row"}),
            "sql UPDATE ITEMS SET OBJECT = N'I1', SITE = N'C1', upd_flag = 0  WHERE SITE = N'C1' AND OBJECT = N'I1' -> "
            "12\n");
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 0");
}

TEST(ApplySerializedItemRow, InsertsWhateverNumberARowGivesThatSaysItHasNone) {
  for (const Value& absent : {Value(false), Value(Null())}) {
    SCOPED_TRACE(Shown(absent));
    CopyFixture copy("8");
    copy.database.AffectNext({0});
    const auto row = copy.components.Make("row");
    for (const auto& [field, value] : EveryField(copy))
      row->Answers("has" + field, absent).Answers("get" + field, value);
    copy.AddManager(kItems, "items", {Object(row)});

    copy.CopySerializedItem("ITEMS", 1);

    EXPECT_EQ(copy.JournalWithout({"row", "create", "session", "items", "sql UPDATE t"}),
              "sql UPDATE ITEMS SET upd_flag = 1 \n"
              "sql UPDATE ITEMS SET OBJECT = NULL, SITE = NULL, upd_flag = 0  WHERE SITE = NULL AND OBJECT = NULL -> "
              "0\n"
              "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'X9',NULL,NULL,0) -> 1\n"
              "sql DELETE FROM ITEMS WHERE upd_flag = 1\n");
  }
}

TEST(ApplySerializedItemRow, InsertsAnItemWithoutAClusterAgainEachTimeItComes) {
  CopyFixture copy("8");
  copy.database.AffectNext({0, 1, 0, 1});  // no row meets an equal sign and NULL

  copy.Apply(CopyFixture::ApplySerializedItemRow(), {{"Item", "I1"}, {"SerialNumber", "X9"}}, "ITEMS");
  copy.Apply(CopyFixture::ApplySerializedItemRow(), {{"Item", "I1"}, {"SerialNumber", "X9"}}, "ITEMS");

  EXPECT_EQ(copy.JournalWithout({"row"}),
            "sql UPDATE ITEMS SET OBJECT = N'I1', SITE = NULL, upd_flag = 0  WHERE SITE = NULL AND OBJECT = N'I1' AND "
            "OBJECTNR = N'X9' -> 0\n"
            "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'X9',N'I1',NULL,0) -> 1\n"
            "sql UPDATE ITEMS SET OBJECT = N'I1', SITE = NULL, upd_flag = 0  WHERE SITE = NULL AND OBJECT = N'I1' AND "
            "OBJECTNR = N'X9' -> 0\n"
            "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'X9',N'I1',NULL,0) -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 2, dcount 0");
}

TEST(ApplySerializedItemRow, WritesTheLocaleTextOfARealDateObjectInPlainQuotes) {
  CopyFixture copy("8");

  copy.Apply(CopyFixture::ApplySerializedItemRow(),
             {{"Cluster", "C1"},
              {"Item", "I1"},
              {"InstallationTime", MakeDateObject({2004, 2, 29, 13, 5, 9})},
              {"DeliveryTime", Moment(copy, "delivered", "24 d'août 2003")}},  // its quotes are not doubled
             "ITEMS");

  EXPECT_EQ(copy.JournalWithout({"row", "delivered"}),
            "sql UPDATE ITEMS SET OBJECT = N'I1', SITE = N'C1', INSTALLATION_DATE= 'Feb 29, 2004 1:05:09 PM', "
            "DELIVERY_DATE= '24 d'août 2003', upd_flag = 0  WHERE SITE = N'C1' AND OBJECT = N'I1' -> 1\n");
}

TEST(ApplySerializedItemRow, FailsWithATimeThatIsNoDateObject) {
  const struct {
    Value time;
    const char* raised;
  } cases[] = {
      {Value(), "91 ZenqayDBSync: Object variable not set"},
      {Null(), "91 ZenqayDBSync: Object variable not set"},
      {Object(), "91 ZenqayDBSync: Object variable not set"},
      {"2003-01-31", "13 ZenqayDBSync: Type mismatch"},
  };
  for (const auto& [time, expected] : cases) {
    for (const char* field : {"InstallationTime", "DeliveryTime"}) {
      SCOPED_TRACE(Text(field) + " " + Shown(time));
      CopyFixture copy("8");
      const RowFields fields = {{field, time}};

      const Text raised = Raised([&] { copy.Apply(CopyFixture::ApplySerializedItemRow(), fields, "ITEMS"); });

      EXPECT_EQ(raised, expected);
      EXPECT_EQ(copy.JournalWithout({"row"}), "");
    }
  }
}

TEST(ApplySerializedItemRow, LetsNoNullIntoAStatement) {
  for (const char* field : {"Cluster", "Item", "Description", "Warranty", "SoldtoBusinessPartner", "SerialNumber"}) {
    SCOPED_TRACE(field);
    CopyFixture copy("8");
    const RowFields fields = {{field, Null()}};

    const Text raised = Raised([&] { copy.Apply(CopyFixture::ApplySerializedItemRow(), fields, "ITEMS"); });

    EXPECT_EQ(raised, "94 ZenqayDBSync: Invalid use of Null");
    EXPECT_EQ(copy.JournalWithout({"row"}), "");
  }
}

TEST(ApplySerializedItemRow, EncodesEveryTextAndWritesEmptyOnesAsABlankOnOracle) {
  CopyFixture copy("8", /*databasePlatform=*/2);
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySerializedItemRow(),
             {{"Cluster", ""},
              {"Item", "I'1"},
              {"Description", "'"},
              {"Warranty", ""},
              {"SoldtoBusinessPartner", "B'1"},
              {"AlternateSerialNumber", "A'7"}},
             "ITEMS");

  EXPECT_EQ(copy.JournalWithout({"row"}),
            "sql UPDATE ITEMS SET OBJECT = N'I''1', OBJECTDESC = N'''', SITE = N' ', WARRANTY= N' ', CUSTOMER= N'B''1',"
            " upd_flag = 0  WHERE SITE = N' ' AND OBJECT = N'I''1' -> 0\n"
            "sql INSERT INTO ITEMS ( OBJECTNR ,OBJECT ,OBJECTDESC ,SITE ,SERIALNUMBER ,WARRANTY ,CUSTOMER,upd_flag "
            ")VALUES (N' ',N'I''1',N'''',N' ',N'A''7',N' ',N'B''1',0) -> 1\n");
}

TEST(ApplySerializedItemRow, CountsAnInsertOnlyWhenItReportsExactlyOneRow) {
  const struct {
    std::int64_t reported;
    const char* counters;
  } cases[] = {
      {0, "ucount 0, icount 0, dcount 0"},
      {1, "ucount 0, icount 1, dcount 0"},
      {2, "ucount 0, icount 0, dcount 0"},
  };
  for (const auto& [reported, counters] : cases) {
    SCOPED_TRACE(reported);
    CopyFixture copy("8");
    copy.database.AffectNext({0, reported});

    copy.Apply(CopyFixture::ApplySerializedItemRow(), {{"Item", "I1"}}, "ITEMS");

    EXPECT_EQ(copy.Counters(), counters);
  }
}

const Text kTaken =
    "query SELECT * FROM tstables WHERE tablename = N'SerializedItem'\n"
    "close recordset\n"
    "sql UPDATE tstables SET in_use = 1WHERE tablename = N'SerializedItem' -> 1\n"
    "event DataCopyStarted(time(10:11:12 AM), i16(10))\n";
const Text kReleased = "sql UPDATE tstables SET in_use = 0WHERE tablename = N'SerializedItem' -> 1\n";
const Text kOpened =
    "create Kv61QTMtscfgSerializedItems.SerializedItemsManager\n"
    "session.addManager(&<items>)\n";
const Text kCriteriaCreated =
    "create NetListSelectionCriteria.NetListSelectionCriteria\n"
    "create NetListSelectionCriteria.NetListIn\n"
    "create NetListSelectionCriteria.NetListOut\n"
    "create NetListSelectionCriteria.NetListPeriod\n"
    "create NetListSelectionCriteria.NetListParameter\n"
    "create NetListSelectionCriteria.NetListParameter\n"
    "create NetListSelectionCriteria.NetListParameter\n";
const Text kListed = kOpened + kCriteriaCreated +
                     "items.Initialize(&\"100\")\n"
                     "query SELECT * FROM tstables WHERE tablename = N'SerializedItem'\n"
                     "close recordset\n"
                     "period.setFrom(<object>)\n"
                     "period.setTo(<object>)\n"
                     "criteria.setNetListPeriod(&<period>)\n"
                     "parameter1.setFieldName(\"item\")\n"
                     "parameter1.setFrom(\"\")\n"
                     "parameter1.setTo(high(47))\n"
                     "parameter2.setFieldName(\"sern\")\n"
                     "parameter2.setFrom(\"\")\n"
                     "parameter2.setTo(high(30))\n"
                     "input.addNetListParameter(&<parameter1>)\n"
                     "input.addNetListParameter(&<parameter2>)\n"
                     "criteria.setNetListIn(&<input>)\n"
                     "output.addFieldNameWithoutOld(\"item\")\n"
                     "output.addFieldNameWithoutOld(\"desc\")\n"
                     "output.addFieldNameWithoutOld(\"sern\")\n"
                     "output.addFieldNameWithoutOld(\"clst\")\n"
                     "output.addFieldNameWithoutOld(\"ofbp\")\n"
                     "criteria.setNetListOut(&<output>)\n"
                     "items.NetListSerializedItems(&\"tscfg200\", &<criteria>)\n";

/// The items' manager, named `items`, and its criteria with three parameters.
std::shared_ptr<ScriptedObject> AddItems(CopyFixture& copy, std::vector<Object> rows) {
  const auto manager = copy.AddManager(kItems, "items", std::move(rows));
  NameParameters(copy, {"parameter1", "parameter2", "parameter3"});
  return manager;
}

EntityPass FullPass(const Text& generation) {
  return {.generation = generation,
          .managerClass = kItems,
          .managerName = "items",
          .parameterNames = {"parameter1", "parameter2", "parameter3"},
          .rows = {{{"Cluster", "C1"}, {"Item", "I1"}, {"SerialNumber", "X9"}}},
          .trace = kOpened +
                   "items.Initialize(&\"100\")\n"
                   "items.List(\"\", high(47), \"\", high(30))\n"
                   "sql UPDATE SerializedItem SET upd_flag = 1 \n"
                   "rows.hasMoreElements()\n"
                   "rows.nextElement()\n"
                   "row1.hasCluster()\n"
                   "row1.getCluster()\n"
                   "row1.hasItem()\n"
                   "row1.getItem()\n"
                   "row1.hasDescription()\n"
                   "row1.hasWarranty()\n"
                   "row1.hasInstallationTime()\n"
                   "row1.hasDeliveryTime()\n"
                   "row1.hasSoldtoBusinessPartner()\n"
                   "row1.hasSerialNumber()\n"
                   "row1.getSerialNumber()\n"
                   "sql UPDATE SerializedItem SET OBJECT = N'I1', SITE = N'C1', upd_flag = 0  WHERE SITE = N'C1' AND "
                   "OBJECT = N'I1' AND OBJECTNR = N'X9' -> 1\n"
                   "rows.hasMoreElements()\n"
                   "sql DELETE FROM SerializedItem WHERE upd_flag = 1\n"
                   "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
                   "N'SerializedItem' -> 1\n"
                   "items.Close()\n",
          .counters = "ucount 0, icount 1, dcount 0",
          .runLog =
              "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
              "\"Rows copied: SerializedItem -  1\"\r\n"};
}

TEST(CopySerializedItem, CopiesInFullUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8", "2"}) {
    SCOPED_TRACE(generation);
    const EntityPass pass = FullPass(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({1});
    Arrange(copy, pass);

    const CopyResult result = copy.CopyTable(10, "SerializedItem", 1);

    EXPECT_EQ(result, CopyResult::Done);
    EXPECT_EQ(copy.journal.Take(), kTaken + pass.trace + "sql UPDATE STATISTICS SerializedItem\n" + kReleased);
    EXPECT_EQ(copy.Counters(), pass.counters);
    EXPECT_EQ(copy.RunLog(), pass.runLog);
  }
}

EntityPass ChangedPass(const Text& generation) {
  return {.generation = generation,
          .managerClass = kItems,
          .managerName = "items",
          .parameterNames = {"parameter1", "parameter2", "parameter3"},
          .rows = {{{"ActionType", " D "}, {"Cluster", "C1"}, {"Item", "I1"}, {"SerialNumber", "X9"}},
                   {{"ActionType", "U"}, {"Cluster", "C2"}, {"Item", "I2"}},
                   {{"ActionType", "D"}}},
          .counts = {0},
          .trace = kListed +
                   "rows.hasMoreElements()\n"
                   "rows.nextElement()\n"
                   "row1.getActionType()\n"
                   "row1.hasCluster()\n"
                   "row1.getCluster()\n"
                   "row1.hasItem()\n"
                   "row1.getItem()\n"
                   "row1.hasSerialNumber()\n"
                   "row1.getSerialNumber()\n"
                   "sql DELETE FROM SerializedItem WHERE  SITE = N'C1' AND OBJECT = N'I1' AND OBJECTNR = N'X9'\n"
                   "rows.hasMoreElements()\n"
                   "rows.nextElement()\n"
                   "row2.getActionType()\n"
                   "row2.hasCluster()\n"
                   "row2.getCluster()\n"
                   "row2.hasItem()\n"
                   "row2.getItem()\n"
                   "row2.hasCluster()\n"
                   "row2.getCluster()\n"
                   "row2.hasItem()\n"
                   "row2.getItem()\n"
                   "row2.hasDescription()\n"
                   "row2.hasWarranty()\n"
                   "row2.hasInstallationTime()\n"
                   "row2.hasDeliveryTime()\n"
                   "row2.hasSoldtoBusinessPartner()\n"
                   "row2.hasSerialNumber()\n"
                   "sql UPDATE SerializedItem SET OBJECT = N'I2', SITE = N'C2', upd_flag = 0  WHERE SITE = N'C2' AND "
                   "OBJECT = N'I2' -> 0\n"
                   "row2.hasCluster()\n"
                   "row2.getCluster()\n"
                   "row2.hasItem()\n"
                   "row2.getItem()\n"
                   "row2.hasDescription()\n"
                   "row2.hasAlternateSerialNumber()\n"
                   "row2.hasWarranty()\n"
                   "row2.hasInstallationTime()\n"
                   "row2.hasDeliveryTime()\n"
                   "row2.hasSoldtoBusinessPartner()\n"
                   "row2.getSerialNumber()\n"
                   "row2.hasDescription()\n"
                   "row2.hasAlternateSerialNumber()\n"
                   "row2.hasWarranty()\n"
                   "row2.hasInstallationTime()\n"
                   "row2.hasDeliveryTime()\n"
                   "row2.hasSoldtoBusinessPartner()\n"
                   "sql INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'',N'I2',N'C2',0) -> "
                   "1\n"
                   "rows.hasMoreElements()\n"
                   "rows.nextElement()\n"
                   "row3.getActionType()\n"
                   "row3.hasCluster()\n"
                   "row3.hasItem()\n"
                   "row3.hasSerialNumber()\n"
                   "sql DELETE FROM SerializedItem WHERE  SITE = NULL AND OBJECT = NULL\n"  // no row, but it counts
                   "rows.hasMoreElements()\n"
                   "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
                   "N'SerializedItem' -> 1\n",
          .counters = "ucount 0, icount 1, dcount 2",
          .runLog =
              "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
              "\"Rows copied: SerializedItem -  1\"\r\n"
              "\"Rows deleted: SerializedItem -  2\"\r\n"};
}

TEST(CopySerializedItem, FollowsTheChangesUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8", "2"}) {
    SCOPED_TRACE(generation);
    const EntityPass pass = ChangedPass(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({1});
    Arrange(copy, pass);

    const CopyResult result = copy.CopyTable(10, "SerializedItem", 2);

    EXPECT_EQ(result, CopyResult::Done);
    EXPECT_EQ(copy.journal.Take(), kTaken + pass.trace + "sql UPDATE STATISTICS SerializedItem\n" + kReleased);
    EXPECT_EQ(copy.Counters(), pass.counters);
    EXPECT_EQ(copy.RunLog(), pass.runLog);
  }
}

TEST(CopySerializedItem, DeletesByTheKeysThatTheRowHas) {
  const struct {
    RowFields fields;
    const char* deletion;
  } cases[] = {
      {{{"Cluster", "C'1"}}, "sql DELETE FROM ITEMS WHERE  SITE = N'C''1' AND OBJECT = NULL\n"},
      {{{"Item", "I'1"}}, "sql DELETE FROM ITEMS WHERE  SITE = NULL AND OBJECT = N'I''1'\n"},
      {{{"SerialNumber", "X'9"}},
       "sql DELETE FROM ITEMS WHERE  SITE = NULL AND OBJECT = NULL AND OBJECTNR = N'X''9'\n"},
      {{{"Cluster", ""}, {"Item", ""}, {"SerialNumber", ""}},
       "sql DELETE FROM ITEMS WHERE  SITE = N'' AND OBJECT = N'' AND OBJECTNR = N''\n"},
  };
  for (const auto& [fields, deletion] : cases) {
    SCOPED_TRACE(deletion);
    CopyFixture copy("8");
    RowFields deleted = fields;
    deleted.emplace_back("ActionType", "D");
    AddItems(copy, {copy.RowWith(deleted)});

    copy.CopySerializedItem("ITEMS", 2);

    EXPECT_EQ(copy.JournalWithout({"row", "query", "close", "create", "session", "items", "period", "parameter",
                                   "input", "output", "criteria", "sql UPDATE t"}),
              deletion);
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 1");
  }
}

TEST(CopySerializedItem, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  ExpectFailureAtEachStep(
      FullPass("1"), {&CopyFixture::CopySerializedItem, "SerializedItem", 1},
      "5100 Data copy: Serialized items: Serialized items could not be copied from the ERP (generation 8).");
}

TEST(CopySerializedItem, DoesNotTellThePassAtWhicheverStepAnOnlyChangedPassFails) {
  ExpectFailureAtEachStep(
      ChangedPass("8"), {&CopyFixture::CopySerializedItem, "SerializedItem", 2},
      "5100 Data copy: Serialized items: Serialized items could not be copied from the ERP (generation 8).");
}

TEST(CopySerializedItem, FailsAtTheFirstQuestionToAChangeListingThatIsNothing) {
  CopyFixture copy("8");
  AddItems(copy, {})->Answers("NetListSerializedItems", Value());

  const Text raised = Raised([&] { copy.CopySerializedItem("SerializedItem", 2); });

  EXPECT_EQ(raised,
            "191 Data copy: Serialized items: Serialized items could not be copied from the ERP (generation 8).");
}

TEST(CopySerializedItem, FailsWhereTheComponentIsMissingUnderEveryGeneration) {
  const struct {
    std::int16_t SyncMethod;
    const char* raised;
  } cases[] = {
      {1, "91 ZenqayDBSync: Object variable not set"},
      {2, "529 Data copy: Serialized items: Serialized items could not be copied from the ERP (generation 8)."},
  };
  for (const auto& [SyncMethod, expected] : cases) {
    for (const char* generation : {"1", "3", "8"}) {
      SCOPED_TRACE(generation);
      CopyFixture copy(generation);

      const Text raised = Raised([&, method = SyncMethod] { copy.CopySerializedItem("SerializedItem", method); });

      EXPECT_EQ(raised, expected);
      EXPECT_EQ(copy.journal.Take(), "create Kv61QTMtscfgSerializedItems.SerializedItemsManager\n");
    }
  }
}

TEST(CopySerializedItem, LogsTheSameFailureFromBothPasses) {
  for (const std::int16_t SyncMethod : std::initializer_list<std::int16_t>{1, 2}) {
    CopyFixture copy("8");
    AddItems(copy, {})->Fails("Initialize", kFailure);

    const CopyResult result = copy.CopyTable(10, "SerializedItem", SyncMethod);

    EXPECT_EQ(result, CopyResult::Failed);
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"adapter\",\"no connection\"\r\n"
              "\"Data copy: Serialized items\",\"Serialized items could not be copied from the ERP (generation "
              "8).\"\r\n");
  }
}

TEST(CopySerializedItem, LogsTheMissingComponentAndThenTheMissingManagerOfAFullCopy) {
  CopyFixture copy("1");

  const CopyResult result = copy.CopyTable(10, "SerializedItem", 1);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(copy.journal.Take(), kTaken + "create Kv61QTMtscfgSerializedItems.SerializedItemsManager\n" + kReleased);
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Kv61QTMtscfgSerializedItems.SerializedItemsManager\",\"Component can't create object: "
            "Kv61QTMtscfgSerializedItems.SerializedItemsManager\"\r\n"
            "\"ZenqayDBSync\",\"Object variable not set\"\r\n");
}

TEST(CopySerializedItem, DoesNothingUnderAnotherSyncMethod) {
  for (const std::int16_t SyncMethod : std::initializer_list<std::int16_t>{0, 3, -1}) {
    CopyFixture copy("8");
    AddItems(copy, {copy.RowWith({{"Item", "I1"}})});

    copy.CopySerializedItem("SerializedItem", SyncMethod);

    EXPECT_EQ(copy.journal.Take(), "");
  }
}

}  // namespace
}  // namespace zenqay
