// Site: its row operation and its two passes, under the three generations. What both passes do whatever the entity is
// tested in full_copy_test and only_changed_pass_test.
#include "entities/sites.h"

namespace zenqay {
namespace {

const ErpSide kConfigurations = {.generation = "3",
                                 .managerClass = "Kv50QTMtscfgConfigurations.ConfigurationsManager",
                                 .name = "the ERP (generation 3)",
                                 .keys = "Configuration",
                                 .list = "\"\", high(8), \"\", high(9)",
                                 .listing = "NetListConfigurations",
                                 .tableCode = "tscfg220",
                                 .ranges = {{"ccfg", "\"\"", "high(8)"}},
                                 .fields = "ccfg ofbp desc"};

const ErpSide kClusters = {.generation = "8",
                           .managerClass = "Kv61QTMtsbscClusters.ClustersManager",
                           .name = "the ERP (generation 8)",
                           .keys = "Cluster",
                           .list = "\"\", high(8)",
                           .listing = "NetListClusters",
                           .tableCode = "tsbsc100",
                           .ranges = {{"clst", "\"\"", "high(8)"}},
                           .fields = "clst ofbp desc"};

/// What a row calls its three fields, by generation.
const struct SiteFields {
  Text generation;
  Text key;
  Text description;
  Text customer;
} kSiteFields[] = {
    {"1", "Location", "Description", "Customer"},
    {"3", "Configuration", "ConfigurationDescription", "SoldtoBusinessPartner"},
    {"8", "Cluster", "Description", "SoldtoBusinessPartner"},
};

TEST(ApplySiteRow, WritesTheOptionalFieldsThatTheRowHasUnderEveryGeneration) {
  for (const auto& [generation, key, description, customer] : kSiteFields) {
    ExpectStatements(
        kSites, generation,
        {{{{key, "A1"}, {description, "North"}, {customer, "C7"}},
          "UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A1'",
          "INSERT INTO Site (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'A1',N'North',N'C7',0)"},
         {{{key, "A1"}, {description, "North"}},
          "UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', upd_flag = 0 WHERE SITE =N'A1'",
          "INSERT INTO Site (SITE ,DESCRIPTION ,upd_flag )VALUES (N'A1',N'North',0)"},
         {{{key, "A1"}, {customer, "C7"}},
          "UPDATE Site SET SITE = N'A1', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A1'",
          "INSERT INTO Site (SITE ,CUSTOMER,upd_flag )VALUES (N'A1',N'C7',0)"},
         {{{key, "A1"}},
          "UPDATE Site SET SITE = N'A1', upd_flag = 0 WHERE SITE =N'A1'",
          "INSERT INTO Site (SITE ,upd_flag )VALUES (N'A1',0)"}});
  }
}

TEST(ApplySiteRow, AsksForEveryFieldAtEachUseUnderEveryGeneration) {
  for (const auto& [generation, key, description, customer] : kSiteFields) {
    const Text getKey = "get" + key;
    const Text hasDescription = "has" + description;
    const Text hasCustomer = "has" + customer;
    const Text bothAsked = hasDescription + " get" + description + " " + hasCustomer + " get" + customer;
    ExpectRow(
        kSites, generation,
        {{{key, "A1"}, {description, "North"}, {customer, "C7"}},
         {getKey, bothAsked, getKey,
          "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A1' "
          "-> 0",
          hasDescription, hasCustomer, getKey, bothAsked,
          "sql INSERT INTO Site (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'A1',N'North',N'C7',0) -> 1"}});
  }
}

TEST(ApplySiteRow, AsksAnAbsentFieldForItsPresenceAlone) {
  ExpectRow(kSites, "1",
            {{{"Location", "A1"}},
             {"getLocation hasDescription hasCustomer getLocation",
              "sql UPDATE Site SET SITE = N'A1', upd_flag = 0 WHERE SITE =N'A1' -> 0",
              "hasDescription hasCustomer getLocation hasDescription hasCustomer",
              "sql INSERT INTO Site (SITE ,upd_flag )VALUES (N'A1',0) -> 1"}});
}

TEST(ApplySiteRow, InsertsNothingWhenTheUpdateFoundTheRow) {
  ExpectRow(kSites, "1",
            {{{"Location", "A1"}, {"Description", "North"}},
             {"getLocation hasDescription getDescription hasCustomer getLocation",
              "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', upd_flag = 0 WHERE SITE =N'A1' -> 1"}});
}

TEST(ApplySiteRow, TakesTheAnswerOfEachUseAsItComes) {
  CopyFixture copy("1");
  const auto row = copy.components.Make("row");
  row->AnswersInTurn("getLocation", {"A1", "A2"}).AnswersInTurn("hasDescription", {true, Null()});
  row->Answers("getDescription", "North").Answers("hasCustomer", std::int16_t{-1}).Answers("getCustomer", 7);
  copy.database.AffectNext({0});

  copy.ApplyTo(kSites.apply, Object(row), "Site");

  EXPECT_EQ(copy.JournalWithout({"row"}),
            "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'7', upd_flag = 0 WHERE SITE "
            "=N'A2' -> 0\n"
            "sql INSERT INTO Site (SITE ,CUSTOMER,upd_flag )VALUES (N'A2',N'7',0) -> 1\n");
}

TEST(ApplySiteRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(kSites, "1", {{"Location", "A1"}});
}

TEST(ApplySiteRow, RaisesOverflowWhenTheUpdateTouchedMoreRowsThan16BitsHold) {
  for (const std::int64_t touched : {32'767, 32'768, 40'000}) {
    SCOPED_TRACE(touched);
    CopyFixture copy("1");
    copy.database.AffectNext({touched});

    const Text raised = Raised([&] { copy.Apply(kSites.apply, {{"Location", "A1"}}, "Site"); });

    EXPECT_EQ(raised, touched == 32'767 ? "nothing" : "6 ZenqayDBSync: Overflow");
    EXPECT_EQ(copy.Counters(), touched == 32'767 ? "ucount 1, icount 0, dcount 0" : "ucount 0, icount 0, dcount 0");
  }
}

TEST(ApplySiteRow, DoublesApostrophesAndLeavesEveryOtherCharacterAlone) {
  ExpectStatements(kSites, "1",
                   {{{{"Location", "O'1"}, {"Description", "St. Stephen's \"Green\"; -- 東京\\"}, {"Customer", "''"}},
                     "UPDATE Site SET SITE = N'O''1', DESCRIPTION = N'St. Stephen''s \"Green\"; -- 東京\\', CUSTOMER "
                     "= N'''''', upd_flag = 0 WHERE SITE =N'O''1'",
                     "INSERT INTO Site (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'O''1',N'St. Stephen''s "
                     "\"Green\"; -- 東京\\',N'''''',0)"}});
}

TEST(ApplySiteRow, WritesAnEmptyTextAsAnEmptyLiteralOnSqlServerAndAsABlankOnOracle) {
  const RowFields fields = {{"Location", ""}, {"Description", ""}, {"Customer", Value()}};
  ExpectStatements(
      kSites, "1",
      {{fields, "UPDATE Site SET SITE = N'', DESCRIPTION = N'', CUSTOMER = N'', upd_flag = 0 WHERE SITE =N''",
        "INSERT INTO Site (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'',N'',N'',0)"}},
      /*databasePlatform=*/1);
  ExpectStatements(
      kSites, "1",
      {{fields, "UPDATE Site SET SITE = N' ', DESCRIPTION = N' ', CUSTOMER = N' ', upd_flag = 0 WHERE SITE =N' '",
        "INSERT INTO Site (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N' ',N' ',N' ',0)"}},
      /*databasePlatform=*/2);
}

TEST(ApplySiteRow, LetsNoNullIntoAStatement) {
  for (const auto& [generation, key, description, customer] : kSiteFields) {
    ExpectNullToFail(kSites, generation, {{key, "A1"}, {description, "North"}, {customer, "C7"}},
                     {key, description, customer});
  }
}

TEST(ApplySiteRow, RunsEmptyStatementsUnderAGenerationWithoutSites) {
  ExpectEmptyStatements(kSites, "2", {{"Location", "A1"}});
}

const Pass kFullCopies[] = {
    FullPass(kSites, kLocations,
             {{{{"Location", "A1"}, {"Description", "North"}, {"Customer", "C7"}},
               {"getLocation hasDescription getDescription hasCustomer getCustomer getLocation",
                "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE "
                "=N'A1' -> 1"}},
              {{{"Location", "A2"}, {"Customer", "C8"}},
               {"getLocation hasDescription hasCustomer getCustomer getLocation",
                "sql UPDATE Site SET SITE = N'A2', CUSTOMER = N'C8', upd_flag = 0 WHERE SITE =N'A2' -> 0",
                "hasDescription hasCustomer getLocation hasDescription hasCustomer getCustomer",
                "sql INSERT INTO Site (SITE ,CUSTOMER,upd_flag )VALUES (N'A2',N'C8',0) -> 1"}}},
             {.icount = 2}),
    FullPass(kSites, kConfigurations,
             {{{{"Configuration", "A1"}, {"ConfigurationDescription", "North"}},
               {"getConfiguration hasConfigurationDescription getConfigurationDescription hasSoldtoBusinessPartner "
                "getConfiguration",
                "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', upd_flag = 0 WHERE SITE =N'A1' -> 1"}}},
             {.icount = 1}),
    FullPass(kSites, kClusters,
             {{{{"Cluster", "A1"}, {"SoldtoBusinessPartner", "C7"}},
               {"getCluster hasDescription hasSoldtoBusinessPartner getSoldtoBusinessPartner getCluster",
                "sql UPDATE Site SET SITE = N'A1', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A1' -> 1"}}},
             {.icount = 1}),
};

const Pass kOnlyChanged[] = {
    ChangedPass(kSites, kLocations,
                {{{{"ActionType", "U"}, {"Location", "A1"}, {"Description", "North"}},
                  {"getLocation hasDescription getDescription hasCustomer getLocation",
                   "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', upd_flag = 0 WHERE SITE =N'A1' -> 1"}},
                 {{{"ActionType", "D"}, {"Location", "A2"}}, {"getLocation", "sql DELETE FROM Site WHERE SITE=N'A2'"}},
                 {{{"ActionType", "I"}, {"Location", "A3"}, {"Customer", "C7"}},
                  {"getLocation hasDescription hasCustomer getCustomer getLocation",
                   "sql UPDATE Site SET SITE = N'A3', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A3' -> 0",
                   "hasDescription hasCustomer getLocation hasDescription hasCustomer getCustomer",
                   "sql INSERT INTO Site (SITE ,CUSTOMER,upd_flag )VALUES (N'A3',N'C7',0) -> 1"}}},
                {.ucount = 1, .icount = 1, .dcount = 1}),
    ChangedPass(kSites, kConfigurations,
                {{{{"ActionType", "D"}, {"Configuration", "A1"}},
                  {"getConfiguration", "sql DELETE FROM Site WHERE SITE=N'A1'"}},
                 {{{"ActionType", "U"}, {"Configuration", "A2"}, {"SoldtoBusinessPartner", "C7"}},
                  {"getConfiguration hasConfigurationDescription hasSoldtoBusinessPartner getSoldtoBusinessPartner "
                   "getConfiguration",
                   "sql UPDATE Site SET SITE = N'A2', CUSTOMER = N'C7', upd_flag = 0 WHERE SITE =N'A2' -> 1"}}},
                {.ucount = 1, .dcount = 1}),
    ChangedPass(kSites, kClusters,
                {{{{"ActionType", "I"}, {"Cluster", "A1"}, {"Description", "North"}},
                  {"getCluster hasDescription getDescription hasSoldtoBusinessPartner getCluster",
                   "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N'North', upd_flag = 0 WHERE SITE =N'A1' -> 1"}},
                 {{{"ActionType", "D"}, {"Cluster", "A2"}}, {"getCluster", "sql DELETE FROM Site WHERE SITE=N'A2'"}}},
                {.ucount = 1, .dcount = 1}),
};

TEST(CopySite, CopiesTheWholeTableUnderEachGeneration) {
  for (const Pass& pass : kFullCopies) ExpectPass(pass);
}

TEST(CopySite, FollowsTheChangesUnderEachGeneration) {
  for (const Pass& pass : kOnlyChanged) ExpectPass(pass);
}

TEST(CopySite, CopiesWithTheLiteralsOfOracleAndNoStatistics) {
  Pass full = FullPass(kSites, kClusters,
                       {{{{"Cluster", "A1"}, {"Description", ""}},
                         {"getCluster hasDescription getDescription hasSoldtoBusinessPartner getCluster",
                          "sql UPDATE Site SET SITE = N'A1', DESCRIPTION = N' ', upd_flag = 0 WHERE SITE =N'A1' -> 0",
                          "hasDescription hasSoldtoBusinessPartner getCluster hasDescription getDescription "
                          "hasSoldtoBusinessPartner",
                          "sql INSERT INTO Site (SITE ,DESCRIPTION ,upd_flag )VALUES (N'A1',N' ',0) -> 1"}}},
                       {.icount = 1});
  full.databasePlatform = 2;
  ExpectPass(full);

  Pass onlyChanged =
      ChangedPass(kSites, kLocations,
                  {{{{"ActionType", "D"}, {"Location", ""}}, {"getLocation", "sql DELETE FROM Site WHERE SITE=N' '"}},
                   {{{"ActionType", "U"}, {"Location", "A1"}, {"Customer", ""}},
                    {"getLocation hasDescription hasCustomer getCustomer getLocation",
                     "sql UPDATE Site SET SITE = N'A1', CUSTOMER = N' ', upd_flag = 0 WHERE SITE =N'A1' -> 1"}}},
                  {.ucount = 1, .dcount = 1});
  onlyChanged.databasePlatform = 2;
  ExpectPass(onlyChanged);
}

TEST(CopySite, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  for (const Pass& pass : kFullCopies) ExpectFailureAtEachStep(pass);
}

TEST(CopySite, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  for (const Pass& pass : kOnlyChanged) ExpectFailureAtEachStep(pass);
}

// The ERP's label is taken behind the creation of the manager.
TEST(CopySite, NamesNoErpWhereTheComponentIsMissing) {
  for (const ErpSide& erp : {kLocations, kConfigurations, kClusters}) {
    for (const Pass& pass : BothPasses(kSites, erp)) ExpectMissingComponent(pass);
  }
}

TEST(CopySite, FailsAtInitializeUnderAGenerationThatHasNoSites) {
  for (const char* generation : {"2", "03", " 3 ", "", "13"}) {
    for (const Pass& pass : BothPasses(kSites, WithoutManager(generation, kLocations))) ExpectNoManager(pass);
  }
}

TEST(CopySite, DoesNothingUnderAnotherSyncMethodAndSucceeds) {
  ExpectNothingUnderOtherSyncMethods(kSites, kLocations);
}

TEST(CopySite, PutsTheTablesNameIntoEveryStatementInItsOwnCase) {
  TestedEntity sites = kSites;
  sites.TableName = "sItE";
  ExpectPass(FullPass(sites, kLocations,
                      {{{{"Location", "A1"}},
                        {"getLocation hasDescription hasCustomer getLocation",
                         "sql UPDATE sItE SET SITE = N'A1', upd_flag = 0 WHERE SITE =N'A1' -> 0",
                         "hasDescription hasCustomer getLocation hasDescription hasCustomer",
                         "sql INSERT INTO sItE (SITE ,upd_flag )VALUES (N'A1',0) -> 1"}}},
                      {.icount = 1}));
}

}  // namespace
}  // namespace zenqay
