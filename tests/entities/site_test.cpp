// Site: its row operation and its two passes, under the three generations. What both passes do whatever the entity is
// tested in full_copy_test and only_changed_pass_test.
#include <gtest/gtest.h>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"

namespace zenqay {
namespace {

constexpr const char* kLocations = "Kv40QTMtssmaLocations.LocationsManager";
constexpr const char* kConfigurations = "Kv50QTMtscfgConfigurations.ConfigurationsManager";
constexpr const char* kClusters = "Kv61QTMtsbscClusters.ClustersManager";

/// What a row calls its three fields, by generation.
struct SiteFields {
  const char* generation;
  const char* key;
  const char* description;
  const char* customer;
};

constexpr SiteFields kSiteFields[] = {
    {"1", "Location", "Description", "Customer"},
    {"3", "Configuration", "ConfigurationDescription", "SoldtoBusinessPartner"},
    {"8", "Cluster", "Description", "SoldtoBusinessPartner"},
};

TEST(ApplySiteRow, WritesTheOptionalFieldsThatTheRowHasUnderEveryGeneration) {
  struct Case {
    bool hasDescription;
    bool hasCustomer;
    const char* statements;
  };
  const Case cases[] = {
      {true, true,
       "sql UPDATE SITES SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A1' "
       "-> 0\n"
       "sql INSERT INTO SITES (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'A1',N'North',N'C7',0) -> 1\n"},
      {true, false,
       "sql UPDATE SITES SET SITE = N'A1', DESCRIPTION = N'North', upd_flag = 0 WHERE SITE =N'A1' -> 0\n"
       "sql INSERT INTO SITES (SITE ,DESCRIPTION ,upd_flag )VALUES (N'A1',N'North',0) -> 1\n"},
      {false, true,
       "sql UPDATE SITES SET SITE = N'A1', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A1' -> 0\n"
       "sql INSERT INTO SITES (SITE ,CUSTOMER,upd_flag )VALUES (N'A1',N'C7',0) -> 1\n"},
      {false, false,
       "sql UPDATE SITES SET SITE = N'A1', upd_flag = 0 WHERE SITE =N'A1' -> 0\n"
       "sql INSERT INTO SITES (SITE ,upd_flag )VALUES (N'A1',0) -> 1\n"},
  };
  for (const SiteFields& names : kSiteFields) {
    for (const Case& is : cases) {
      SCOPED_TRACE(Text("generation ") + names.generation + ", statements " + is.statements);
      CopyFixture copy(names.generation);
      copy.database.AffectNext({0});
      RowFields fields = {{names.key, "A1"}};
      if (is.hasDescription) fields.emplace_back(names.description, "North");
      if (is.hasCustomer) fields.emplace_back(names.customer, "C7");

      copy.Apply(CopyFixture::ApplySiteRow(), fields, "SITES");

      EXPECT_EQ(copy.JournalWithout({"row"}), is.statements);
      EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
    }
  }
}

TEST(ApplySiteRow, AsksALocationForEveryFieldAtEachUse) {
  CopyFixture copy("1");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySiteRow(), {{"Location", "A1"}, {"Description", "North"}, {"Customer", "C7"}}, "SITES");

  EXPECT_EQ(
      copy.journal.Take(),
      "row1.getLocation()\n"
      "row1.hasDescription()\n"
      "row1.getDescription()\n"
      "row1.hasCustomer()\n"
      "row1.getCustomer()\n"
      "row1.getLocation()\n"
      "sql UPDATE SITES SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A1' "
      "-> 0\n"
      "row1.hasDescription()\n"
      "row1.hasCustomer()\n"
      "row1.getLocation()\n"
      "row1.hasDescription()\n"
      "row1.getDescription()\n"
      "row1.hasCustomer()\n"
      "row1.getCustomer()\n"
      "sql INSERT INTO SITES (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'A1',N'North',N'C7',0) -> 1\n");
}

TEST(ApplySiteRow, AsksAConfigurationForEveryFieldAtEachUse) {
  CopyFixture copy("3");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySiteRow(),
             {{"Configuration", "A1"}, {"ConfigurationDescription", "North"}, {"SoldtoBusinessPartner", "C7"}},
             "SITES");

  EXPECT_EQ(
      copy.journal.Take(),
      "row1.getConfiguration()\n"
      "row1.hasConfigurationDescription()\n"
      "row1.getConfigurationDescription()\n"
      "row1.hasSoldtoBusinessPartner()\n"
      "row1.getSoldtoBusinessPartner()\n"
      "row1.getConfiguration()\n"
      "sql UPDATE SITES SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A1' "
      "-> 0\n"
      "row1.hasConfigurationDescription()\n"
      "row1.hasSoldtoBusinessPartner()\n"
      "row1.getConfiguration()\n"
      "row1.hasConfigurationDescription()\n"
      "row1.getConfigurationDescription()\n"
      "row1.hasSoldtoBusinessPartner()\n"
      "row1.getSoldtoBusinessPartner()\n"
      "sql INSERT INTO SITES (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'A1',N'North',N'C7',0) -> 1\n");
}

TEST(ApplySiteRow, AsksAClusterForEveryFieldAtEachUse) {
  CopyFixture copy("8");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySiteRow(),
             {{"Cluster", "A1"}, {"Description", "North"}, {"SoldtoBusinessPartner", "C7"}}, "SITES");

  EXPECT_EQ(
      copy.journal.Take(),
      "row1.getCluster()\n"
      "row1.hasDescription()\n"
      "row1.getDescription()\n"
      "row1.hasSoldtoBusinessPartner()\n"
      "row1.getSoldtoBusinessPartner()\n"
      "row1.getCluster()\n"
      "sql UPDATE SITES SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A1' "
      "-> 0\n"
      "row1.hasDescription()\n"
      "row1.hasSoldtoBusinessPartner()\n"
      "row1.getCluster()\n"
      "row1.hasDescription()\n"
      "row1.getDescription()\n"
      "row1.hasSoldtoBusinessPartner()\n"
      "row1.getSoldtoBusinessPartner()\n"
      "sql INSERT INTO SITES (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'A1',N'North',N'C7',0) -> 1\n");
}

TEST(ApplySiteRow, AsksAnAbsentFieldForItsPresenceAlone) {
  CopyFixture copy("1");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySiteRow(), {{"Location", "A1"}}, "SITES");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getLocation()\n"
            "row1.hasDescription()\n"
            "row1.hasCustomer()\n"
            "row1.getLocation()\n"
            "sql UPDATE SITES SET SITE = N'A1', upd_flag = 0 WHERE SITE =N'A1' -> 0\n"
            "row1.hasDescription()\n"
            "row1.hasCustomer()\n"
            "row1.getLocation()\n"
            "row1.hasDescription()\n"
            "row1.hasCustomer()\n"
            "sql INSERT INTO SITES (SITE ,upd_flag )VALUES (N'A1',0) -> 1\n");
}

TEST(ApplySiteRow, TakesTheAnswerOfEachUseAsItComes) {
  CopyFixture copy("1");
  const auto row = copy.components.Make("row");
  row->AnswersInTurn("getLocation", {"A1", "A2"}).AnswersInTurn("hasDescription", {true, Null()});
  row->Answers("getDescription", "North").Answers("hasCustomer", std::int16_t{-1}).Answers("getCustomer", 7);
  copy.AddManager(kLocations, "locations", {Object(row)});
  copy.database.AffectNext({1, 0});

  copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(copy.JournalWithout({"row", "query", "close", "event", "create", "session", "locations", "sql UPDATE t"}),
            "sql UPDATE Site SET upd_flag = 1 \n"
            "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'7', upd_flag = 0 WHERE SITE "
            "=N'A2' -> 0\n"
            "sql INSERT INTO Site (SITE ,CUSTOMER,upd_flag )VALUES (N'A2',N'7',0) -> 1\n"
            "sql DELETE FROM Site WHERE upd_flag = 1\n"
            "sql UPDATE STATISTICS Site\n");
}

TEST(ApplySiteRow, InsertsNothingWhenTheUpdateFoundTheRow) {
  CopyFixture copy("1");
  copy.database.AffectNext({1});

  copy.Apply(CopyFixture::ApplySiteRow(), {{"Location", "A1"}, {"Description", "North"}}, "SITES");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getLocation()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.hasCustomer()\n"
            "row1.getLocation()\n"
            "sql UPDATE SITES SET SITE = N'A1', DESCRIPTION = N'North', upd_flag = 0 WHERE SITE =N'A1' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 0");
}

TEST(ApplySiteRow, CountsOneHoweverManyRowsTheUpdateTouched) {
  for (const std::int64_t touched : {1, 2, 32'767}) {
    SCOPED_TRACE(touched);
    CopyFixture copy("1");
    copy.database.AffectNext({touched});

    copy.Apply(CopyFixture::ApplySiteRow(), {{"Location", "A1"}}, "SITES");

    EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 0");
  }
}

TEST(ApplySiteRow, RaisesOverflowWhenTheUpdateTouchedMoreRowsThan16BitsHold) {
  for (const std::int64_t touched : {32'768, 40'000}) {
    SCOPED_TRACE(touched);
    CopyFixture copy("1");
    copy.database.AffectNext({touched});

    const Text raised = Raised([&] { copy.Apply(CopyFixture::ApplySiteRow(), {{"Location", "A1"}}, "SITES"); });

    EXPECT_EQ(raised, "6 ZenqayDBSync: Overflow");
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
  }
}

TEST(ApplySiteRow, CountsAnInsertOnlyWhenItReportsExactlyOneRow) {
  struct Case {
    std::int64_t reported;
    const char* counters;
  };
  const Case cases[] = {
      {0, "ucount 0, icount 0, dcount 0"},
      {1, "ucount 0, icount 1, dcount 0"},
      {2, "ucount 0, icount 0, dcount 0"},
  };
  for (const auto& [reported, counters] : cases) {
    SCOPED_TRACE(reported);
    CopyFixture copy("1");
    copy.database.AffectNext({0, reported});

    copy.Apply(CopyFixture::ApplySiteRow(), {{"Location", "A1"}}, "SITES");

    EXPECT_EQ(copy.Counters(), counters);
  }
}

TEST(ApplySiteRow, DoublesApostrophesAndLeavesEveryOtherCharacterAlone) {
  CopyFixture copy("1");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySiteRow(),
             {{"Location", "O'1"}, {"Description", "St. Stephen's \"Green\"; -- 東京\\"}, {"Customer", "''"}}, "SITES");

  EXPECT_EQ(copy.JournalWithout({"row"}),
            "sql UPDATE SITES SET SITE = N'O''1', DESCRIPTION = N'St. Stephen''s \"Green\"; -- 東京\\', CUSTOMER = "
            "N'''''', upd_flag = 0 WHERE SITE =N'O''1' -> 0\n"
            "sql INSERT INTO SITES (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'O''1',N'St. Stephen''s \"Green\"; "
            "-- 東京\\',N'''''',0) -> 1\n");
}

TEST(ApplySiteRow, WritesAnEmptyTextAsAnEmptyLiteralOnSqlServer) {
  CopyFixture copy("1", /*databasePlatform=*/1);
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySiteRow(), {{"Location", ""}, {"Description", ""}, {"Customer", Value()}}, "SITES");

  EXPECT_EQ(copy.JournalWithout({"row"}),
            "sql UPDATE SITES SET SITE = N'', DESCRIPTION = N'', CUSTOMER = N'', upd_flag = 0 WHERE SITE =N'' -> 0\n"
            "sql INSERT INTO SITES (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'',N'',N'',0) -> 1\n");
}

TEST(ApplySiteRow, WritesAnEmptyTextAsABlankOnOracle) {
  CopyFixture copy("1", /*databasePlatform=*/2);
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySiteRow(), {{"Location", ""}, {"Description", " "}, {"Customer", Value()}}, "SITES");

  EXPECT_EQ(copy.JournalWithout({"row"}),
            "sql UPDATE SITES SET SITE = N' ', DESCRIPTION = N' ', CUSTOMER = N' ', upd_flag = 0 WHERE SITE =N' ' -> "
            "0\n"
            "sql INSERT INTO SITES (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N' ',N' ',N' ',0) -> 1\n");
}

TEST(ApplySiteRow, LetsNoNullIntoAStatement) {
  struct Case {
    const char* field;
    const char* journal;
  };
  const Case cases[] = {
      {"Location", "row1.getLocation()\n"},
      {"Description",
       "row1.getLocation()\n"
       "row1.hasDescription()\n"
       "row1.getDescription()\n"},
      {"Customer",
       "row1.getLocation()\n"
       "row1.hasDescription()\n"
       "row1.getDescription()\n"
       "row1.hasCustomer()\n"
       "row1.getCustomer()\n"},
  };
  for (const auto& [field, journal] : cases) {
    SCOPED_TRACE(field);
    CopyFixture copy("1");
    RowFields fields = {{"Location", "A1"}, {"Description", "North"}, {"Customer", "C7"}};
    for (auto& [name, value] : fields) {
      if (name == field) value = Null();
    }

    const Text raised = Raised([&] { copy.Apply(CopyFixture::ApplySiteRow(), fields, "SITES"); });

    EXPECT_EQ(raised, "94 ZenqayDBSync: Invalid use of Null");
    EXPECT_EQ(copy.journal.Take(), journal);
  }
}

TEST(ApplySiteRow, ComposesNothingUnderAGenerationWithoutSites) {
  CopyFixture copy("2");
  copy.database.AffectNext({0, 0});

  copy.Apply(CopyFixture::ApplySiteRow(), {{"Location", "A1"}}, "SITES");

  EXPECT_EQ(copy.journal.Take(), "sql  -> 0\nsql  -> 0\n");
}

TEST(CopySite, CopiesTheLocationsOfGeneration1InFull) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations",
                  {copy.RowWith({{"Location", "A1"}, {"Description", "North"}, {"Customer", "C7"}}),
                   copy.RowWith({{"Location", "A2"}, {"Customer", "C8"}})});
  copy.database.AffectNext({1, 1, 0});

  const CopyResult result = copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "create Kv40QTMtssmaLocations.LocationsManager\n"
            "session.addManager(&<locations>)\n"
            "locations.Initialize(&\"100\")\n"
            "locations.List(\"\", high(10))\n"
            "sql UPDATE Site SET upd_flag = 1 \n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "row1.getLocation()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.hasCustomer()\n"
            "row1.getCustomer()\n"
            "row1.getLocation()\n"
            "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE "
            "=N'A1' -> 1\n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "row2.getLocation()\n"
            "row2.hasDescription()\n"
            "row2.hasCustomer()\n"
            "row2.getCustomer()\n"
            "row2.getLocation()\n"
            "sql UPDATE Site SET SITE = N'A2', CUSTOMER = N'C8', upd_flag = 0 WHERE SITE =N'A2' -> 0\n"
            "row2.hasDescription()\n"
            "row2.hasCustomer()\n"
            "row2.getLocation()\n"
            "row2.hasDescription()\n"
            "row2.hasCustomer()\n"
            "row2.getCustomer()\n"
            "sql INSERT INTO Site (SITE ,CUSTOMER,upd_flag )VALUES (N'A2',N'C8',0) -> 1\n"
            "rows.hasMoreElements()\n"
            "sql DELETE FROM Site WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> "
            "1\n"
            "locations.Close()\n"
            "sql UPDATE STATISTICS Site\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 2, dcount 0");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  2\"\r\n");
}

TEST(CopySite, CopiesTheConfigurationsOfGeneration3InFull) {
  CopyFixture copy("3");
  copy.AddManager(kConfigurations, "configurations",
                  {copy.RowWith({{"Configuration", "A1"}, {"ConfigurationDescription", "North"}})});

  const CopyResult result = copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "create Kv50QTMtscfgConfigurations.ConfigurationsManager\n"
            "session.addManager(&<configurations>)\n"
            "configurations.Initialize(&\"100\")\n"
            "configurations.List(\"\", high(8), \"\", high(9))\n"
            "sql UPDATE Site SET upd_flag = 1 \n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "row1.getConfiguration()\n"
            "row1.hasConfigurationDescription()\n"
            "row1.getConfigurationDescription()\n"
            "row1.hasSoldtoBusinessPartner()\n"
            "row1.getConfiguration()\n"
            "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', upd_flag = 0 WHERE SITE =N'A1' -> 1\n"
            "rows.hasMoreElements()\n"
            "sql DELETE FROM Site WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> "
            "1\n"
            "configurations.Close()\n"
            "sql UPDATE STATISTICS Site\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  1\"\r\n");
}

TEST(CopySite, CopiesTheClustersOfGeneration8InFull) {
  CopyFixture copy("8");
  copy.AddManager(kClusters, "clusters",
                  {copy.RowWith({{"Cluster", "A1"}, {"Description", "North"}, {"SoldtoBusinessPartner", "C7"}})});

  const CopyResult result = copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "create Kv61QTMtsbscClusters.ClustersManager\n"
            "session.addManager(&<clusters>)\n"
            "clusters.Initialize(&\"100\")\n"
            "clusters.List(\"\", high(8))\n"
            "sql UPDATE Site SET upd_flag = 1 \n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "row1.getCluster()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.hasSoldtoBusinessPartner()\n"
            "row1.getSoldtoBusinessPartner()\n"
            "row1.getCluster()\n"
            "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE "
            "=N'A1' -> 1\n"
            "rows.hasMoreElements()\n"
            "sql DELETE FROM Site WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> "
            "1\n"
            "clusters.Close()\n"
            "sql UPDATE STATISTICS Site\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  1\"\r\n");
}

TEST(CopySite, CopiesInFullWithTheLiteralsOfOracleAndNoStatistics) {
  CopyFixture copy("8", /*databasePlatform=*/2);
  copy.AddManager(kClusters, "clusters", {copy.RowWith({{"Cluster", "A1"}, {"Description", ""}})});
  copy.database.AffectNext({1, 0});

  const CopyResult result = copy.CopyTable(1, "Site", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.JournalWithout({"row"}),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "create Kv61QTMtsbscClusters.ClustersManager\n"
            "session.addManager(&<clusters>)\n"
            "clusters.Initialize(&\"100\")\n"
            "clusters.List(\"\", high(8))\n"
            "sql UPDATE Site SET upd_flag = 1 \n"
            "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N' ', upd_flag = 0 WHERE SITE =N'A1' -> 0\n"
            "sql INSERT INTO Site (SITE ,DESCRIPTION ,upd_flag )VALUES (N'A1',N' ',0) -> 1\n"
            "sql DELETE FROM Site WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS') WHERE tablename "
            "= N'Site' -> 1\n"
            "clusters.Close()\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
}

TEST(CopySite, FollowsTheChangesOfTheLocationsOfGeneration1) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations",
                  {copy.RowWith({{"ActionType", "U"}, {"Location", "A1"}, {"Description", "North"}}),
                   copy.RowWith({{"ActionType", "D"}, {"Location", "A2"}}),
                   copy.RowWith({{"ActionType", "I"}, {"Location", "A3"}, {"Customer", "C7"}})});
  copy.database.AffectNext({1, 1, 0});

  const CopyResult result = copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "create Kv40QTMtssmaLocations.LocationsManager\n"
            "session.addManager(&<locations>)\n"
            "create NetListSelectionCriteria.NetListSelectionCriteria\n"
            "create NetListSelectionCriteria.NetListIn\n"
            "create NetListSelectionCriteria.NetListOut\n"
            "create NetListSelectionCriteria.NetListPeriod\n"
            "create NetListSelectionCriteria.NetListParameter\n"
            "locations.Initialize(&\"100\")\n"
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "period.setFrom(<object>)\n"
            "period.setTo(<object>)\n"
            "criteria.setNetListPeriod(&<period>)\n"
            "parameter.setFieldName(\"cloc\")\n"
            "parameter.setFrom(\"\")\n"
            "parameter.setTo(high(10))\n"
            "input.addNetListParameter(&<parameter>)\n"
            "criteria.setNetListIn(&<input>)\n"
            "output.addFieldNameWithoutOld(\"cloc\")\n"
            "output.addFieldNameWithoutOld(\"cuno\")\n"
            "output.addFieldNameWithoutOld(\"desc\")\n"
            "criteria.setNetListOut(&<output>)\n"
            "locations.NetListLocations(&\"tssma110\", &<criteria>)\n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "row1.getActionType()\n"
            "row1.getLocation()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.hasCustomer()\n"
            "row1.getLocation()\n"
            "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', upd_flag = 0 WHERE SITE =N'A1' -> 1\n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "row2.getActionType()\n"
            "row2.getLocation()\n"
            "sql DELETE FROM Site WHERE SITE=N'A2'\n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "row3.getActionType()\n"
            "row3.getLocation()\n"
            "row3.hasDescription()\n"
            "row3.hasCustomer()\n"
            "row3.getCustomer()\n"
            "row3.getLocation()\n"
            "sql UPDATE Site SET SITE = N'A3', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A3' -> 0\n"
            "row3.hasDescription()\n"
            "row3.hasCustomer()\n"
            "row3.getLocation()\n"
            "row3.hasDescription()\n"
            "row3.hasCustomer()\n"
            "row3.getCustomer()\n"
            "sql INSERT INTO Site (SITE ,CUSTOMER,upd_flag )VALUES (N'A3',N'C7',0) -> 1\n"
            "rows.hasMoreElements()\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> "
            "1\n"
            "sql UPDATE STATISTICS Site\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 1, dcount 1");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  1\"\r\n"
            "\"Rows updated: Site -  1\"\r\n"
            "\"Rows deleted: Site -  1\"\r\n");
}

TEST(CopySite, FollowsTheChangesOfTheConfigurationsOfGeneration3) {
  CopyFixture copy("3");
  copy.AddManager(kConfigurations, "configurations",
                  {copy.RowWith({{"ActionType", "D"}, {"Configuration", "A1"}}),
                   copy.RowWith({{"ActionType", "U"}, {"Configuration", "A2"}, {"SoldtoBusinessPartner", "C7"}})});

  const CopyResult result = copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "create Kv50QTMtscfgConfigurations.ConfigurationsManager\n"
            "session.addManager(&<configurations>)\n"
            "create NetListSelectionCriteria.NetListSelectionCriteria\n"
            "create NetListSelectionCriteria.NetListIn\n"
            "create NetListSelectionCriteria.NetListOut\n"
            "create NetListSelectionCriteria.NetListPeriod\n"
            "create NetListSelectionCriteria.NetListParameter\n"
            "configurations.Initialize(&\"100\")\n"
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "period.setFrom(<object>)\n"
            "period.setTo(<object>)\n"
            "criteria.setNetListPeriod(&<period>)\n"
            "parameter.setFieldName(\"ccfg\")\n"
            "parameter.setFrom(\"\")\n"
            "parameter.setTo(high(8))\n"
            "input.addNetListParameter(&<parameter>)\n"
            "criteria.setNetListIn(&<input>)\n"
            "output.addFieldNameWithoutOld(\"ccfg\")\n"
            "output.addFieldNameWithoutOld(\"ofbp\")\n"
            "output.addFieldNameWithoutOld(\"desc\")\n"
            "criteria.setNetListOut(&<output>)\n"
            "configurations.NetListConfigurations(&\"tscfg220\", &<criteria>)\n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "row1.getActionType()\n"
            "row1.getConfiguration()\n"
            "sql DELETE FROM Site WHERE SITE=N'A1'\n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "row2.getActionType()\n"
            "row2.getConfiguration()\n"
            "row2.hasConfigurationDescription()\n"
            "row2.hasSoldtoBusinessPartner()\n"
            "row2.getSoldtoBusinessPartner()\n"
            "row2.getConfiguration()\n"
            "sql UPDATE Site SET SITE = N'A2', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A2' -> 1\n"
            "rows.hasMoreElements()\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> "
            "1\n"
            "sql UPDATE STATISTICS Site\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 1");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  0\"\r\n"
            "\"Rows updated: Site -  1\"\r\n"
            "\"Rows deleted: Site -  1\"\r\n");
}

TEST(CopySite, FollowsTheChangesOfTheClustersOfGeneration8) {
  CopyFixture copy("8");
  copy.AddManager(kClusters, "clusters",
                  {copy.RowWith({{"ActionType", "I"}, {"Cluster", "A1"}, {"Description", "North"}}),
                   copy.RowWith({{"ActionType", "D"}, {"Cluster", "A2"}})});

  const CopyResult result = copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "create Kv61QTMtsbscClusters.ClustersManager\n"
            "session.addManager(&<clusters>)\n"
            "create NetListSelectionCriteria.NetListSelectionCriteria\n"
            "create NetListSelectionCriteria.NetListIn\n"
            "create NetListSelectionCriteria.NetListOut\n"
            "create NetListSelectionCriteria.NetListPeriod\n"
            "create NetListSelectionCriteria.NetListParameter\n"
            "clusters.Initialize(&\"100\")\n"
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "period.setFrom(<object>)\n"
            "period.setTo(<object>)\n"
            "criteria.setNetListPeriod(&<period>)\n"
            "parameter.setFieldName(\"clst\")\n"
            "parameter.setFrom(\"\")\n"
            "parameter.setTo(high(8))\n"
            "input.addNetListParameter(&<parameter>)\n"
            "criteria.setNetListIn(&<input>)\n"
            "output.addFieldNameWithoutOld(\"clst\")\n"
            "output.addFieldNameWithoutOld(\"ofbp\")\n"
            "output.addFieldNameWithoutOld(\"desc\")\n"
            "criteria.setNetListOut(&<output>)\n"
            "clusters.NetListClusters(&\"tsbsc100\", &<criteria>)\n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "row1.getActionType()\n"
            "row1.getCluster()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.hasSoldtoBusinessPartner()\n"
            "row1.getCluster()\n"
            "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', upd_flag = 0 WHERE SITE =N'A1' -> 1\n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "row2.getActionType()\n"
            "row2.getCluster()\n"
            "sql DELETE FROM Site WHERE SITE=N'A2'\n"
            "rows.hasMoreElements()\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Site' -> "
            "1\n"
            "sql UPDATE STATISTICS Site\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 1");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Site -  0\"\r\n"
            "\"Rows updated: Site -  1\"\r\n"
            "\"Rows deleted: Site -  1\"\r\n");
}

TEST(CopySite, FollowsChangesWithTheLiteralsOfOracle) {
  CopyFixture copy("1", /*databasePlatform=*/2);
  copy.AddManager(kLocations, "locations",
                  {copy.RowWith({{"ActionType", "D"}, {"Location", ""}}),
                   copy.RowWith({{"ActionType", "U"}, {"Location", "A1"}, {"Customer", ""}})});

  const CopyResult result = copy.CopyTable(1, "Site", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.JournalWithout({"row", "create", "period", "parameter", "input", "output", "criteria"}),
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
            "session.addManager(&<locations>)\n"
            "locations.Initialize(&\"100\")\n"
            "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
            "close recordset\n"
            "locations.NetListLocations(&\"tssma110\", &<criteria>)\n"
            "sql DELETE FROM Site WHERE SITE=N' '\n"
            "sql UPDATE Site SET SITE = N'A1', CUSTOMER = N' ', upd_flag = 0 WHERE SITE =N'A1' -> 1\n"
            "sql UPDATE tstables SET lutm  = TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS') WHERE tablename "
            "= N'Site' -> 1\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
}

TEST(CopySite, FailsAtInitializeUnderAGenerationThatHasNoSites) {
  for (const char* generation : {"2", "03", " 3 ", "", "13"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);

    const CopyResult result = copy.CopyTable(1, "Site", 1);

    EXPECT_EQ(result, CopyResult::Failed);
    EXPECT_EQ(copy.journal.Take(),
              "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
              "close recordset\n"
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
              "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
              "session.addManager(&nothing)\n"
              "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Object variable not set\"\r\n"
              "\"ZenqayDBSync\",\"Object variable not set\"\r\n");  // Close, in the failure path, has no manager either
  }
}

TEST(CopySite, FailsItsOnlyChangedPassAtInitializeUnderAGenerationThatHasNoSites) {
  for (const char* generation : {"2", "03", " 3 ", "", "13"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.AddManager(kLocations, "locations");

    const CopyResult result = copy.CopyTable(1, "Site", 2);

    EXPECT_EQ(result, CopyResult::Failed);
    EXPECT_EQ(copy.journal.Take(),
              "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
              "close recordset\n"
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
              "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
              "session.addManager(&nothing)\n"
              "create NetListSelectionCriteria.NetListSelectionCriteria\n"
              "create NetListSelectionCriteria.NetListIn\n"
              "create NetListSelectionCriteria.NetListOut\n"
              "create NetListSelectionCriteria.NetListPeriod\n"
              "create NetListSelectionCriteria.NetListParameter\n"
              "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Object variable not set\"\r\n"
              "\"Data copy: Site - Only Changed\",\"Sites could not be copied from .\"\r\n");
  }
}

TEST(CopySite, DoesNothingUnderAnotherSyncMethodAndSucceeds) {
  for (const int SyncMethod : {0, 3, 7, -1}) {
    SCOPED_TRACE(SyncMethod);
    CopyFixture copy("1");
    copy.AddManager(kLocations, "locations", {copy.RowWith({{"Location", "A1"}})});

    const CopyResult result = copy.CopyTable(1, "Site", static_cast<std::int16_t>(SyncMethod));

    EXPECT_EQ(result, CopyResult::Done);
    EXPECT_EQ(copy.journal.Take(),
              "query SELECT * FROM tstables WHERE tablename = N'Site'\n"
              "close recordset\n"
              "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Site' -> 1\n"
              "event DataCopyStarted(time(10:11:12 AM), i16(1))\n"
              "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n");
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
    EXPECT_EQ(copy.RunLog(), "");
  }
}

TEST(CopySite, PutsTheTablesNameIntoEveryStatementInItsOwnCase) {
  CopyFixture copy("1");
  copy.AddManager(kLocations, "locations", {copy.RowWith({{"Location", "A1"}})});
  copy.database.AffectNext({1, 0});

  const CopyResult result = copy.CopyTable(1, " sItE ", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.JournalWithout({"row", "event", "create", "session", "locations", "close"}),
            "query SELECT * FROM tstables WHERE tablename = N'sItE'\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'sItE' -> 1\n"
            "sql UPDATE sItE SET upd_flag = 1 \n"
            "sql UPDATE sItE SET SITE = N'A1', upd_flag = 0 WHERE SITE =N'A1' -> 0\n"
            "sql INSERT INTO sItE (SITE ,upd_flag )VALUES (N'A1',0) -> 1\n"
            "sql DELETE FROM sItE WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'sItE' -> "
            "1\n"
            "sql UPDATE STATISTICS sItE\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'sItE' -> 1\n");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: sItE -  1\"\r\n");
}

}  // namespace
}  // namespace zenqay
