// Serialized item: its row operation and its two passes, which are the same under every generation.
#include "doubles/embedded_database.h"
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

// Both passes name the table alone: a failure does not tell which of them it came from.
const TestedEntity kItems = {.copy = &CopyFixture::CopySerializedItem,
                             .apply = CopyFixture::ApplySerializedItemRow(),
                             .TableName = "SerializedItem",
                             .caption = "Serialized items",
                             .onlyChanged = "Serialized items"};

const ErpSide kItems8 = {.generation = "8",
                         .managerClass = "Kv61QTMtscfgSerializedItems.SerializedItemsManager",
                         .name = "the ERP (generation 8)",
                         .keys = "Cluster Item SerialNumber",
                         .list = "\"\", high(47), \"\", high(30)",
                         .listing = "NetListSerializedItems",
                         .tableCode = "tscfg200",
                         .ranges = {{"item", "\"\"", "high(47)"}, {"sern", "\"\"", "high(30)"}},
                         .fields = "item desc sern clst ofbp",
                         .unusedParameters = 1,
                         .isNamedFirst = true};

const Text kKeys = "hasCluster getCluster hasItem getItem";
const Text kUpdateGates = "hasDescription hasWarranty hasInstallationTime hasDeliveryTime hasSoldtoBusinessPartner";
const Text kInsertGates =
    "hasDescription hasAlternateSerialNumber hasWarranty hasInstallationTime hasDeliveryTime hasSoldtoBusinessPartner";

const Pass kFullCopy =
    FullPass(kItems, kItems8,
             {{{{"Cluster", "C1"}, {"Item", "I1"}, {"SerialNumber", "X9"}},
               {kKeys, kUpdateGates, "hasSerialNumber getSerialNumber",
                "sql UPDATE SerializedItem SET OBJECT = N'I1', SITE = N'C1', upd_flag = 0  WHERE SITE = N'C1' AND "
                "OBJECT = N'I1' AND OBJECTNR = N'X9' -> 1"}}},
             {.icount = 1});

/// A deletion without an item and a site: no row meets it, but it counts.
const ListedRow kNoKey = {
    {{"ActionType", "D"}},
    {"hasCluster hasItem hasSerialNumber", "sql DELETE FROM SerializedItem WHERE  SITE = NULL AND OBJECT = NULL"}};

const Pass kOnlyChanged = ChangedPass(
    kItems, kItems8,
    {{{{"ActionType", " D "}, {"Cluster", "C1"}, {"Item", "I1"}, {"SerialNumber", "X9"}},
      {kKeys, "hasSerialNumber getSerialNumber",
       "sql DELETE FROM SerializedItem WHERE  SITE = N'C1' AND OBJECT = N'I1' AND OBJECTNR = N'X9'"}},
     {{{"ActionType", "U"}, {"Cluster", "C2"}, {"Item", "I2"}},
      {kKeys, kKeys, kUpdateGates, "hasSerialNumber",  // worked out for every row, and again to apply it
       "sql UPDATE SerializedItem SET OBJECT = N'I2', SITE = N'C2', upd_flag = 0  WHERE SITE = N'C2' AND OBJECT = "
       "N'I2' -> 0",
       kKeys, kInsertGates, "getSerialNumber", kInsertGates,
       "sql INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'',N'I2',N'C2',0) -> 1"}},
     kNoKey},
    {.icount = 1, .dcount = 2});

/// A date object of the ERP that says `text` of itself.
Object Moment(CopyFixture& copy, const Text& name, const Text& text) {
  const auto moment = copy.components.Make(name);
  moment->Answers("toLocaleString", text);
  return Object(moment);
}

TEST(ApplySerializedItemRow, AsksForEveryFieldAtEachUseUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8", "2", ""}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({0});

    copy.Apply(kItems.apply,
               {{"Item", "I1"},
                {"Description", "Pump"},
                {"Cluster", "C1"},
                {"Warranty", "W1"},
                {"InstallationTime", Moment(copy, "installed", "Jan 31, 2003 10:11:12 AM")},
                {"DeliveryTime", Moment(copy, "delivered", "24 d'août 2003")},  // its quotes are not doubled
                {"SoldtoBusinessPartner", "B1"},
                {"SerialNumber", "X9"},
                {"AlternateSerialNumber", "A7"}},
               "SerializedItem");

    EXPECT_EQ(
        copy.journal.Take(),
        TraceOf("row1", {kKeys,
                         "hasDescription getDescription hasWarranty getWarranty hasInstallationTime "
                         "getInstallationTime installed.toLocaleString hasDeliveryTime getDeliveryTime "
                         "delivered.toLocaleString hasSoldtoBusinessPartner getSoldtoBusinessPartner "
                         "hasSerialNumber getSerialNumber",
                         "sql UPDATE SerializedItem SET OBJECT = N'I1', OBJECTDESC = N'Pump', SITE = N'C1', WARRANTY= "
                         "N'W1', INSTALLATION_DATE= 'Jan 31, 2003 10:11:12 AM', DELIVERY_DATE= '24 d'août 2003', "
                         "CUSTOMER= N'B1', upd_flag = 0  WHERE SITE = N'C1' AND OBJECT = N'I1' AND OBJECTNR = N'X9' "
                         "-> 0",
                         kKeys, kInsertGates,
                         "getSerialNumber hasDescription getDescription hasAlternateSerialNumber "
                         "getAlternateSerialNumber hasWarranty getWarranty hasInstallationTime "
                         "getInstallationTime installed.toLocaleString hasDeliveryTime getDeliveryTime "
                         "delivered.toLocaleString hasSoldtoBusinessPartner getSoldtoBusinessPartner",
                         "sql INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,OBJECTDESC ,SITE ,SERIALNUMBER ,WARRANTY "
                         ",INSTALLATION_DATE ,DELIVERY_DATE ,CUSTOMER,upd_flag )VALUES "
                         "(N'X9',N'I1',N'Pump',N'C1',N'A7',N'W1','Jan 31, 2003 10:11:12 AM','24 d'août "
                         "2003',N'B1',0) -> 1"}));
  }
}

TEST(ApplySerializedItemRow, WritesObjectAndSiteAndNumberOfARowWithoutAnything) {
  ExpectRow(kItems, "8",
            {{},
             {"hasCluster hasItem", kUpdateGates, "hasSerialNumber",
              "sql UPDATE SerializedItem SET OBJECT = NULL, SITE = NULL, upd_flag = 0  WHERE SITE = NULL AND OBJECT = "
              "NULL -> 0",
              "hasCluster hasItem", kInsertGates, "getSerialNumber", kInsertGates,
              "sql INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'',NULL,NULL,0) -> 1"}});
}

TEST(ApplySerializedItemRow, WritesEachFieldOnItsOwn) {
  ExpectStatements(
      kItems, "8",
      {{{{"Item", "I1"}},
        "UPDATE SerializedItem SET OBJECT = N'I1', SITE = NULL, upd_flag = 0  WHERE SITE = NULL AND OBJECT = N'I1'",
        "INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'',N'I1',NULL,0)"},
       {{{"Description", "Pump"}},
        "UPDATE SerializedItem SET OBJECT = NULL, OBJECTDESC = N'Pump', SITE = NULL, upd_flag = 0  WHERE SITE = NULL "
        "AND OBJECT = NULL",
        "INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,OBJECTDESC ,SITE ,upd_flag )VALUES (N'',NULL,N'Pump',NULL,0)"},
       {{{"Cluster", "C1"}},
        "UPDATE SerializedItem SET OBJECT = NULL, SITE = N'C1', upd_flag = 0  WHERE SITE = N'C1' AND OBJECT = NULL",
        "INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'',NULL,N'C1',0)"},
       {{{"Warranty", "W1"}},
        "UPDATE SerializedItem SET OBJECT = NULL, SITE = NULL, WARRANTY= N'W1', upd_flag = 0  WHERE SITE = NULL AND "
        "OBJECT = NULL",
        "INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,SITE ,WARRANTY ,upd_flag )VALUES (N'',NULL,NULL,N'W1',0)"},
       {{{"InstallationTime", MakeDateObject({2003, 1, 31, 10, 11, 12})}},
        "UPDATE SerializedItem SET OBJECT = NULL, SITE = NULL, INSTALLATION_DATE= 'Jan 31, 2003 10:11:12 AM', upd_flag "
        "= 0  WHERE SITE = NULL AND OBJECT = NULL",
        "INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,SITE ,INSTALLATION_DATE ,upd_flag )VALUES (N'',NULL,NULL,'Jan "
        "31, 2003 10:11:12 AM',0)"},
       {{{"DeliveryTime", MakeDateObject({2002, 12, 24, 12, 0, 0})}},
        "UPDATE SerializedItem SET OBJECT = NULL, SITE = NULL, DELIVERY_DATE= 'Dec 24, 2002 12:00:00 PM', upd_flag = 0 "
        " WHERE SITE = NULL AND OBJECT = NULL",
        "INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,SITE ,DELIVERY_DATE ,upd_flag )VALUES (N'',NULL,NULL,'Dec 24, "
        "2002 12:00:00 PM',0)"},
       {{{"SoldtoBusinessPartner", "B1"}},
        "UPDATE SerializedItem SET OBJECT = NULL, SITE = NULL, CUSTOMER= N'B1', upd_flag = 0  WHERE SITE = NULL AND "
        "OBJECT = NULL",
        "INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,SITE ,CUSTOMER,upd_flag )VALUES (N'',NULL,NULL,N'B1',0)"},
       {{{"SerialNumber", "X9"}},
        "UPDATE SerializedItem SET OBJECT = NULL, SITE = NULL, upd_flag = 0  WHERE SITE = NULL AND OBJECT = NULL AND "
        "OBJECTNR = N'X9'",
        "INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'X9',NULL,NULL,0)"},
       {{{"AlternateSerialNumber", "A7"}},
        "UPDATE SerializedItem SET OBJECT = NULL, SITE = NULL, upd_flag = 0  WHERE SITE = NULL AND OBJECT = NULL",
        "INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,SITE ,SERIALNUMBER ,upd_flag )VALUES "
        "(N'',NULL,NULL,N'A7',0)"}});
}

TEST(ApplySerializedItemRow, WritesTheLocaleTextOfARealDateObjectInPlainQuotes) {
  ExpectStatements(kItems, "8",
                   {{{{"Item", "I1"}, {"InstallationTime", MakeDateObject({2004, 2, 29, 13, 5, 9})}},
                     "UPDATE SerializedItem SET OBJECT = N'I1', SITE = NULL, INSTALLATION_DATE= 'Feb 29, 2004 1:05:09 "
                     "PM', upd_flag = 0  WHERE SITE = NULL AND OBJECT = N'I1'",
                     "INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,SITE ,INSTALLATION_DATE ,upd_flag )VALUES "
                     "(N'',N'I1',NULL,'Feb 29, 2004 1:05:09 PM',0)"}});
}

TEST(ApplySerializedItemRow, NeverRefreshesTheSerialNumberOfARowThatIsThere) {
  ExpectRow(kItems, "8",
            {{{"Cluster", "C1"}, {"Item", "I1"}, {"SerialNumber", "X9"}, {"AlternateSerialNumber", "A8"}},
             {kKeys, kUpdateGates, "hasSerialNumber getSerialNumber",
              "sql UPDATE SerializedItem SET OBJECT = N'I1', SITE = N'C1', upd_flag = 0  WHERE SITE = N'C1' AND "
              "OBJECT = N'I1' AND OBJECTNR = N'X9' -> 1"}});
}

TEST(ApplySerializedItemRow, MatchesEveryRowOfTheItemAtTheSiteWithoutASerialNumber) {
  ExpectRow(kItems, "8",
            {{{"Cluster", "C1"}, {"Item", "I1"}},
             {kKeys, kUpdateGates, "hasSerialNumber",
              "sql UPDATE SerializedItem SET OBJECT = N'I1', SITE = N'C1', upd_flag = 0  WHERE SITE = N'C1' AND "
              "OBJECT = N'I1' -> 12"}});
}

TEST(ApplySerializedItemRow, InsertsWhateverNumberARowGivesThatSaysItHasNone) {
  for (const Value& absent : {Value(false), Value(Null())}) {
    SCOPED_TRACE(Shown(absent));
    CopyFixture copy("8");
    copy.database.AffectNext({0});
    const auto row = copy.components.Make("row");
    for (const char* field : {"Cluster", "Item", "Description", "Warranty", "InstallationTime", "DeliveryTime",
                              "SoldtoBusinessPartner", "SerialNumber", "AlternateSerialNumber"}) {
      row->Answers(Text("has") + field, absent).Answers(Text("get") + field, "X9");
    }

    copy.ApplyTo(kItems.apply, Object(row), "SerializedItem");

    EXPECT_EQ(copy.JournalWithout({"row"}),
              "sql UPDATE SerializedItem SET OBJECT = NULL, SITE = NULL, upd_flag = 0  WHERE SITE = NULL AND OBJECT = "
              "NULL -> 0\n"
              "sql INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,SITE ,upd_flag )VALUES (N'X9',NULL,NULL,0) -> 1\n");
  }
}

TEST(ApplySerializedItemRow, FailsWithATimeThatIsNoDateObject) {
  const struct {
    Value time;
    Text raised;
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

      EXPECT_EQ(Raised([&] { copy.Apply(kItems.apply, fields, "SerializedItem"); }), expected + ": get" + field);

      EXPECT_EQ(copy.JournalWithout({"row"}), "");
    }
  }
}

TEST(ApplySerializedItemRow, LetsNoNullIntoAStatement) {
  ExpectNullToFail(kItems, "8", {},
                   {"Cluster", "Item", "Description", "Warranty", "SoldtoBusinessPartner", "SerialNumber"});
}

TEST(ApplySerializedItemRow, EncodesEveryTextAndWritesEmptyOnesAsABlankOnOracle) {
  ExpectStatements(kItems, "8",
                   {{{{"Cluster", ""},
                      {"Item", "I'1"},
                      {"Description", "'"},
                      {"Warranty", ""},
                      {"SoldtoBusinessPartner", "B'1"},
                      {"AlternateSerialNumber", "A'7"}},
                     "UPDATE SerializedItem SET OBJECT = N'I''1', OBJECTDESC = N'''', SITE = N' ', WARRANTY= N' ', "
                     "CUSTOMER= N'B''1', upd_flag = 0  WHERE SITE = N' ' AND OBJECT = N'I''1'",
                     "INSERT INTO SerializedItem ( OBJECTNR ,OBJECT ,OBJECTDESC ,SITE ,SERIALNUMBER ,WARRANTY "
                     ",CUSTOMER,upd_flag )VALUES (N' ',N'I''1',N'''',N' ',N'A''7',N' ',N'B''1',0)"}},
                   /*databasePlatform=*/2);
}

TEST(ApplySerializedItemRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(kItems, "8", {{"Item", "I1"}});
}

TEST(CopySerializedItem, CopiesInFullUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8", "2"}) ExpectPass(Under(generation, kFullCopy));
}

TEST(CopySerializedItem, FollowsTheChangesUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8", "2"}) ExpectPass(Under(generation, kOnlyChanged));
}

TEST(CopySerializedItem, DeletesByTheKeysThatTheRowHasAndCountsOneEachTime) {
  ExpectPass(
      ChangedPass(kItems, kItems8,
                  {{{{"ActionType", "D"}, {"Cluster", "C'1"}},
                    {"hasCluster getCluster hasItem hasSerialNumber",
                     "sql DELETE FROM SerializedItem WHERE  SITE = N'C''1' AND OBJECT = NULL"}},
                   {{{"ActionType", "D"}, {"Item", "I'1"}},
                    {"hasCluster hasItem getItem hasSerialNumber",
                     "sql DELETE FROM SerializedItem WHERE  SITE = NULL AND OBJECT = N'I''1'"}},
                   {{{"ActionType", "D"}, {"SerialNumber", "X'9"}},
                    {"hasCluster hasItem hasSerialNumber getSerialNumber",
                     "sql DELETE FROM SerializedItem WHERE  SITE = NULL AND OBJECT = NULL AND OBJECTNR = N'X''9'"}},
                   {{{"ActionType", "D"}, {"Cluster", ""}, {"Item", ""}, {"SerialNumber", ""}},
                    {kKeys, "hasSerialNumber getSerialNumber",
                     "sql DELETE FROM SerializedItem WHERE  SITE = N'' AND OBJECT = N'' AND OBJECTNR = N''"}},
                   kNoKey},
                  {.dcount = 5}));
}

/// An item without a cluster, on a real database: an equals sign and NULL meet no row.
class SerializedItemWithoutClusterTest : public testing::Test {
 protected:
  SerializedItemWithoutClusterTest() {
    file.Run("CREATE TABLE tstables (tablename TEXT PRIMARY KEY, lutm DATETIME, in_use INTEGER, reqd INTEGER)");
    file.Run("CREATE TABLE SerializedItem (SITE TEXT, OBJECT TEXT, OBJECTNR TEXT, upd_flag INTEGER)");
  }

  /// The counters behind a pass of the ERP's one row.
  Text Copy(const RowFields& fields, std::int16_t SyncMethod) {
    CopyFixture copy("8", file);
    copy.AddManager(kItems8.managerClass, "manager", {copy.RowWith(fields)});
    copy.CopySerializedItem("SerializedItem", SyncMethod);
    return copy.Counters();
  }

  Text Rows() { return file.Rows("SELECT * FROM SerializedItem", {"SITE", "OBJECT", "OBJECTNR", "upd_flag"}); }

  EmbeddedDatabase file;
};

TEST_F(SerializedItemWithoutClusterTest, IsThereTwiceBehindTwoOnlyChangedPasses) {
  const RowFields item = {{"ActionType", "U"}, {"Item", "I1"}, {"SerialNumber", "X9"}};

  EXPECT_EQ(Copy(item, 2), "ucount 0, icount 1, dcount 0");
  EXPECT_EQ(Copy(item, 2), "ucount 0, icount 1, dcount 0");

  EXPECT_EQ(Rows(), "NULL|I1|X9|0\nNULL|I1|X9|0\n");
}

TEST_F(SerializedItemWithoutClusterTest, IsThereOnceBehindTwoFullCopies) {
  const RowFields item = {{"Item", "I1"}, {"SerialNumber", "X9"}};

  EXPECT_EQ(Copy(item, 1), "ucount 0, icount 1, dcount 0");
  EXPECT_EQ(Copy(item, 1), "ucount 0, icount 1, dcount 0");

  EXPECT_EQ(Rows(), "NULL|I1|X9|0\n");  // the sweep took the earlier one
}

TEST_F(SerializedItemWithoutClusterTest, IsNotDeletedButCounts) {
  Copy({{"Item", "I1"}, {"SerialNumber", "X9"}}, 1);

  EXPECT_EQ(Copy({{"ActionType", "D"}, {"Item", "I1"}, {"SerialNumber", "X9"}}, 2), "ucount 0, icount 0, dcount 1");

  EXPECT_EQ(Rows(), "NULL|I1|X9|0\n");
}

TEST(CopySerializedItem, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  ExpectFailureAtEachStep(Under("1", kFullCopy));
}

TEST(CopySerializedItem, DoesNotTellThePassAtWhicheverStepAnOnlyChangedPassFails) {
  ExpectFailureAtEachStep(kOnlyChanged);
}

TEST(CopySerializedItem, FailsWhereTheComponentIsMissingUnderEveryGeneration) {
  for (const char* generation : {"1", "3", "8"}) {
    for (const Pass& pass : BothPasses(kItems, kItems8)) ExpectMissingComponent(Under(generation, pass));
  }
}

TEST(CopySerializedItem, DoesNothingUnderAnotherSyncMethod) {
  ExpectNothingUnderOtherSyncMethods(kItems, kItems8);
}

}  // namespace
}  // namespace zenqay
