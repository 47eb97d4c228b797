// Site contract: its row operation and its two passes under generations 3 and 8, and how both fail under generation 1.
#include "doubles/embedded_database.h"
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

const TestedEntity kLines = {.copy = &CopyFixture::CopySiteContract,
                             .apply = CopyFixture::ApplySiteContractRow(),
                             .TableName = "SiteContract",
                             .caption = "Site contracts",
                             .onlyChanged = "SiteContracts - Only Changed"};

const ErpSide kLines3 = {.generation = "3",
                         .managerClass = "Kv50QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager",
                         .name = "the ERP (generation 3)",
                         .keys = "Configuration ServiceContract ContractTerms Line",
                         .list = "\"\", high(9), i16(0), i16(9999), i16(0), i16(999)",
                         .listing = "NetListContractConfigurationLines",
                         .tableCode = "tsctm310",
                         .ranges = {{"csco", "\"\"", "high(9)"}, {"seqn", "i16(0)", "i16(99)"}},
                         .fields = "csco seqn old:ccfg old:efdt exdt"};

// Numbers and texts are mixed within the ranges.
const ErpSide kLines8 = {.generation = "8",
                         .managerClass = "Kv61QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager",
                         .name = "the ERP (generation 8)",
                         .keys = "Cluster ServiceContract1 Item SerialNumber ContractTerms",
                         .list = "i16(0), i16(999), i16(0), i16(999)",
                         .listing = "NetListContractConfigurationLines",
                         .tableCode = "tsctm110",
                         .ranges = {{"term", "i16(0)", "\"9999\""}, {"cfln", "\"0\"", "\"99\""}},
                         .fields = "clst csco item sern efdt exdt"};

/// Every field of a line of generation 3, without old values, and of generation 8.
const RowFields kLine3 = {
    {"Configuration", "S2"},         {"ServiceContract", "C1"},   {"ContractTerms", 3}, {"Line", 10},
    {"EffectiveDate", "2003-01-31"}, {"ExpiryDate", "2004-01-31"}};
const RowFields kLine8 = {{"Cluster", "S2"},           {"ServiceContract1", "C1"}, {"Item", "I1"},
                          {"SerialNumber", "77"},      {"ContractTerms", 3},       {"EffectiveDate", "2003-01-31"},
                          {"ExpiryDate", "2004-01-31"}};

TEST(ApplySiteContractRow, WritesTheOptionalFieldsThatTheRowHasUnderGeneration3) {
  ExpectStatements(
      kLines, "3",
      {{kLine3,
        "UPDATE SiteContract SET SITE = N'S2', CONTRACT = N'C1', TERM = 3, LINE = 10, EFFECTIVE_DATE = {d "
        "'2003-01-31'}, EXPIRY_DATE = {d '2004-01-31'}, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT =N'C1'AND TERM = "
        "3AND LINE = 10",
        "INSERT INTO SiteContract (SITE ,CONTRACT , TERM , LINE ,EFFECTIVE_DATE ,EXPIRY_DATE ,upd_flag )VALUES "
        "(N'S2',N'C1',3,10,{d '2003-01-31'},{d '2004-01-31'},0)"},
       {{{"Configuration", "S2"}},
        "UPDATE SiteContract SET SITE = N'S2', TERM = 0, LINE = 0, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT =N''AND "
        "TERM = 0AND LINE = 0",
        "INSERT INTO SiteContract (SITE , TERM , LINE ,upd_flag )VALUES (N'S2',0,0,0)"},
       {{{"Configuration", "S2"}, {"ServiceContract", "C1"}},
        "UPDATE SiteContract SET SITE = N'S2', CONTRACT = N'C1', TERM = 0, LINE = 0, upd_flag = 0 WHERE SITE =N'S2' "
        "AND CONTRACT =N'C1'AND TERM = 0AND LINE = 0",
        "INSERT INTO SiteContract (SITE ,CONTRACT , TERM , LINE ,upd_flag )VALUES (N'S2',N'C1',0,0,0)"},
       {{{"Configuration", "S2"}, {"ContractTerms", 3}},
        "UPDATE SiteContract SET SITE = N'S2', TERM = 3, LINE = 0, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT =N''AND "
        "TERM = 3AND LINE = 0",
        "INSERT INTO SiteContract (SITE , TERM , LINE ,upd_flag )VALUES (N'S2',3,0,0)"},
       {{{"Configuration", "S2"}, {"Line", 10}},
        "UPDATE SiteContract SET SITE = N'S2', TERM = 0, LINE = 10, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT "
        "=N''AND TERM = 0AND LINE = 10",
        "INSERT INTO SiteContract (SITE , TERM , LINE ,upd_flag )VALUES (N'S2',0,10,0)"},
       {{{"Configuration", "S2"}, {"EffectiveDate", "2003-01-31"}},
        "UPDATE SiteContract SET SITE = N'S2', TERM = 0, LINE = 0, EFFECTIVE_DATE = {d '2003-01-31'}, upd_flag = 0 "
        "WHERE SITE =N'S2' AND CONTRACT =N''AND TERM = 0AND LINE = 0",
        "INSERT INTO SiteContract (SITE , TERM , LINE ,EFFECTIVE_DATE ,upd_flag )VALUES (N'S2',0,0,{d "
        "'2003-01-31'},0)"},
       {{{"Configuration", "S2"}, {"ExpiryDate", "2004-01-31"}},
        "UPDATE SiteContract SET SITE = N'S2', TERM = 0, LINE = 0, EXPIRY_DATE = {d '2004-01-31'}, upd_flag = 0 WHERE "
        "SITE =N'S2' AND CONTRACT =N''AND TERM = 0AND LINE = 0",
        "INSERT INTO SiteContract (SITE , TERM , LINE ,EXPIRY_DATE ,upd_flag )VALUES (N'S2',0,0,{d '2004-01-31'},0)"}});
}

TEST(ApplySiteContractRow, WritesTheOptionalFieldsThatTheRowHasUnderGeneration8) {
  ExpectStatements(kLines, "8",
                   {{kLine8,
                     "UPDATE SiteContract SET SITE = N'S2', CONTRACT = N'C1', OBJECT = N'I1', OBJECTNR = N'77', TERM = "
                     "3, EFFECTIVE_DATE = {d '2003-01-31'}, EXPIRY_DATE = {d '2004-01-31'}, upd_flag = 0 WHERE SITE "
                     "=N'S2' AND CONTRACT =N'C1' AND OBJECT =N'I1' AND OBJECTNR =N'77'AND TERM = 3",
                     "INSERT INTO SiteContract (SITE ,CONTRACT ,OBJECT ,OBJECTNR ,TERM ,EFFECTIVE_DATE ,EXPIRY_DATE "
                     ",upd_flag )VALUES (N'S2',N'C1',N'I1',N'77',3,{d '2003-01-31'},{d '2004-01-31'},0)"},
                    {{},
                     "UPDATE SiteContract SET SITE = NULL, OBJECT = NULL, TERM = 0, upd_flag = 0 WHERE SITE =NULL AND "
                     "CONTRACT =N'' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = 0",
                     "INSERT INTO SiteContract (SITE ,OBJECT ,TERM ,upd_flag )VALUES (NULL,NULL,0,0)"},
                    {{{"Cluster", "S2"}},
                     "UPDATE SiteContract SET SITE = N'S2', OBJECT = NULL, TERM = 0, upd_flag = 0 WHERE SITE =N'S2' "
                     "AND CONTRACT =N'' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = 0",
                     "INSERT INTO SiteContract (SITE ,OBJECT ,TERM ,upd_flag )VALUES (N'S2',NULL,0,0)"},
                    {{{"ServiceContract1", "C1"}},
                     "UPDATE SiteContract SET SITE = NULL, CONTRACT = N'C1', OBJECT = NULL, TERM = 0, upd_flag = 0 "
                     "WHERE SITE =NULL AND CONTRACT =N'C1' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = 0",
                     "INSERT INTO SiteContract (SITE ,CONTRACT ,OBJECT ,TERM ,upd_flag )VALUES (NULL,N'C1',NULL,0,0)"},
                    {{{"Item", "I1"}},
                     "UPDATE SiteContract SET SITE = NULL, OBJECT = N'I1', TERM = 0, upd_flag = 0 WHERE SITE =NULL AND "
                     "CONTRACT =N'' AND OBJECT =N'I1' AND OBJECTNR =N''AND TERM = 0",
                     "INSERT INTO SiteContract (SITE ,OBJECT ,TERM ,upd_flag )VALUES (NULL,N'I1',0,0)"},
                    {{{"SerialNumber", "77"}},
                     "UPDATE SiteContract SET SITE = NULL, OBJECT = NULL, OBJECTNR = N'77', TERM = 0, upd_flag = 0 "
                     "WHERE SITE =NULL AND CONTRACT =N'' AND OBJECT =NULL AND OBJECTNR =N'77'AND TERM = 0",
                     "INSERT INTO SiteContract (SITE ,OBJECT ,OBJECTNR ,TERM ,upd_flag )VALUES (NULL,NULL,N'77',0,0)"},
                    {{{"ContractTerms", 3}},
                     "UPDATE SiteContract SET SITE = NULL, OBJECT = NULL, TERM = 3, upd_flag = 0 WHERE SITE =NULL AND "
                     "CONTRACT =N'' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = 3",
                     "INSERT INTO SiteContract (SITE ,OBJECT ,TERM ,upd_flag )VALUES (NULL,NULL,3,0)"},
                    {{{"EffectiveDate", "2003-01-31"}},
                     "UPDATE SiteContract SET SITE = NULL, OBJECT = NULL, TERM = 0, EFFECTIVE_DATE = {d '2003-01-31'}, "
                     "upd_flag = 0 WHERE SITE =NULL AND CONTRACT =N'' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = 0",
                     "INSERT INTO SiteContract (SITE ,OBJECT ,TERM ,EFFECTIVE_DATE ,upd_flag )VALUES (NULL,NULL,0,{d "
                     "'2003-01-31'},0)"},
                    {{{"ExpiryDate", "2004-01-31"}},
                     "UPDATE SiteContract SET SITE = NULL, OBJECT = NULL, TERM = 0, EXPIRY_DATE = {d '2004-01-31'}, "
                     "upd_flag = 0 WHERE SITE =NULL AND CONTRACT =N'' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = 0",
                     "INSERT INTO SiteContract (SITE ,OBJECT ,TERM ,EXPIRY_DATE ,upd_flag )VALUES (NULL,NULL,0,{d "
                     "'2004-01-31'},0)"}});
}

TEST(ApplySiteContractRow, AsksForEveryFieldAtEachUseUnderGeneration3) {
  ExpectRow(
      kLines, "3",
      {kLine3,
       {"getConfiguration hasServiceContract getServiceContract hasContractTerms getContractTerms hasLine getLine "
        "hasEffectiveDate getEffectiveDate hasExpiryDate getExpiryDate hasContractConfigurationLines "
        "getConfiguration getServiceContract hasContractTerms getContractTerms hasLine getLine",
        "sql UPDATE SiteContract SET SITE = N'S2', CONTRACT = N'C1', TERM = 3, LINE = 10, EFFECTIVE_DATE = {d "
        "'2003-01-31'}, EXPIRY_DATE = {d '2004-01-31'}, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT =N'C1'AND "
        "TERM = 3AND LINE = 10 -> 0",
        "hasServiceContract hasEffectiveDate hasExpiryDate getConfiguration hasServiceContract "
        "getServiceContract hasContractTerms getContractTerms hasLine getLine hasEffectiveDate getEffectiveDate "
        "hasExpiryDate getExpiryDate",
        "sql INSERT INTO SiteContract (SITE ,CONTRACT , TERM , LINE ,EFFECTIVE_DATE ,EXPIRY_DATE ,upd_flag "
        ")VALUES (N'S2',N'C1',3,10,{d '2003-01-31'},{d '2004-01-31'},0) -> 1"}});
}

TEST(ApplySiteContractRow, AsksForEveryFieldAtEachUseUnderGeneration8) {
  ExpectRow(
      kLines, "8",
      {kLine8,
       {"hasCluster getCluster hasItem getItem hasServiceContract1 getServiceContract1 hasSerialNumber "
        "getSerialNumber hasContractTerms getContractTerms hasEffectiveDate getEffectiveDate hasExpiryDate "
        "getExpiryDate getServiceContract1 getSerialNumber hasContractTerms getContractTerms",
        "sql UPDATE SiteContract SET SITE = N'S2', CONTRACT = N'C1', OBJECT = N'I1', OBJECTNR = N'77', TERM = 3, "
        "EFFECTIVE_DATE = {d '2003-01-31'}, EXPIRY_DATE = {d '2004-01-31'}, upd_flag = 0 WHERE SITE =N'S2' AND "
        "CONTRACT =N'C1' AND OBJECT =N'I1' AND OBJECTNR =N'77'AND TERM = 3 -> 0",
        "hasCluster getCluster hasItem getItem hasServiceContract1 hasSerialNumber hasEffectiveDate hasExpiryDate "
        "hasServiceContract1 getServiceContract1 hasSerialNumber getSerialNumber hasContractTerms "
        "getContractTerms hasEffectiveDate getEffectiveDate hasExpiryDate getExpiryDate",
        "sql INSERT INTO SiteContract (SITE ,CONTRACT ,OBJECT ,OBJECTNR ,TERM ,EFFECTIVE_DATE ,EXPIRY_DATE "
        ",upd_flag )VALUES (N'S2',N'C1',N'I1',N'77',3,{d '2003-01-31'},{d '2004-01-31'},0) -> 1"}});
}

TEST(ApplySiteContractRow, FindsALineThatMovedByTheSiteThatItHad) {
  ExpectRow(
      kLines, "3",
      {{{"Configuration", "S2"}, {"ServiceContract", "C1"}, {"ContractTerms", 3}, {"Line", 10}},
       {"getConfiguration hasServiceContract getServiceContract hasContractTerms getContractTerms hasLine getLine "
        "hasEffectiveDate hasExpiryDate hasContractConfigurationLines getContractConfigurationLines "
        "old.hasConfiguration getContractConfigurationLines old.getConfiguration getServiceContract "
        "hasContractTerms getContractTerms hasLine getLine",
        "sql UPDATE SiteContract SET SITE = N'S2', CONTRACT = N'C1', TERM = 3, LINE = 10, upd_flag = 0 WHERE "
        "SITE =N'S1' AND CONTRACT =N'C1'AND TERM = 3AND LINE = 10 -> 1"},
       "ContractConfigurationLines",
       {{"Configuration", "S1"}}});
}

TEST(ApplySiteContractRow, MatchesItsOwnSiteBehindTwoBlanksWhenTheOldValuesDoNotKnowIt) {
  ExpectRow(kLines, "3",
            {{{"Configuration", "S2"}, {"ServiceContract", "C1"}},
             {"getConfiguration hasServiceContract getServiceContract hasContractTerms hasLine hasEffectiveDate "
              "hasExpiryDate hasContractConfigurationLines getContractConfigurationLines old.hasConfiguration "
              "getConfiguration getServiceContract hasContractTerms hasLine",
              "sql UPDATE SiteContract SET SITE = N'S2', CONTRACT = N'C1', TERM = 0, LINE = 0, upd_flag = 0 WHERE "
              "SITE  =N'S2' AND CONTRACT =N'C1'AND TERM = 0AND LINE = 0 -> 1"},
             "ContractConfigurationLines",
             {{"Configuration", Value()}}});
}

TEST(ApplySiteContractRow, FailsWithOldValuesThatAreNotThere) {
  CopyFixture copy("3");
  const RowFields fields = {{"Configuration", "S2"}, {"ContractConfigurationLines", Object()}};

  EXPECT_EQ(Raised([&] { copy.Apply(kLines.apply, fields, "SiteContract"); }),
            "91 ZenqayDBSync: Object variable not set");

  EXPECT_EQ(copy.JournalWithout({"row"}), "");
}

TEST(ApplySiteContractRow, MatchesByContractAndNumberWithoutAskingTheirGates) {
  const struct {
    Text generation;
    Text statements;
  } cases[] = {
      {"3",
       "sql UPDATE SiteContract SET SITE = N'S2', TERM = 0, LINE = 0, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT "
       "=N'C1'AND TERM = 0AND LINE = 0 -> 0\n"
       "sql INSERT INTO SiteContract (SITE , TERM , LINE ,upd_flag )VALUES (N'S2',0,0,0) -> 1\n"},
      {"8",
       "sql UPDATE SiteContract SET SITE = NULL, OBJECT = NULL, TERM = 0, upd_flag = 0 WHERE SITE =NULL AND CONTRACT "
       "=N'C2' AND OBJECT =NULL AND OBJECTNR =N'77'AND TERM = 0 -> 0\n"
       "sql INSERT INTO SiteContract (SITE ,OBJECT ,TERM ,upd_flag )VALUES (NULL,NULL,0,0) -> 1\n"},
  };
  for (const auto& [generation, statements] : cases) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({0});
    const auto row = copy.components.Make("row");
    for (const auto& [field, value] : {std::pair("Configuration", Value("S2")),
                                       {"ServiceContract", "C1"},
                                       {"ServiceContract1", "C2"},
                                       {"Cluster", "S8"},
                                       {"Item", "I1"},
                                       {"SerialNumber", "77"},
                                       {"ContractTerms", 3},
                                       {"Line", 10},
                                       {"EffectiveDate", "2003-01-31"},
                                       {"ExpiryDate", "2004-01-31"}}) {
      row->Answers(Text("has") + field, Null()).Answers(Text("get") + field, value);
    }
    row->Answers("hasContractConfigurationLines", Null());

    copy.ApplyTo(kLines.apply, Object(row), "SiteContract");

    EXPECT_EQ(copy.JournalWithout({"row"}), statements);
  }
}

TEST(ApplySiteContractRow, SetsADateThatIsEmptyToNullAndLeavesOneThatIsAbsentAlone) {
  for (const Value& empty : {Value(), Value("")}) {
    ExpectStatements(kLines, "3",
                     {{{{"Configuration", "S2"}, {"EffectiveDate", empty}},
                       "UPDATE SiteContract SET SITE = N'S2', TERM = 0, LINE = 0, EFFECTIVE_DATE = NULL, upd_flag = 0 "
                       "WHERE SITE =N'S2' AND CONTRACT =N''AND TERM = 0AND LINE = 0",
                       "INSERT INTO SiteContract (SITE , TERM , LINE ,EFFECTIVE_DATE ,upd_flag )VALUES "
                       "(N'S2',0,0,NULL,0)"}});
    ExpectStatements(kLines, "8",
                     {{{{"Cluster", "S2"}, {"EffectiveDate", empty}},
                       "UPDATE SiteContract SET SITE = N'S2', OBJECT = NULL, TERM = 0, EFFECTIVE_DATE = NULL, "
                       "upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT =N'' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = "
                       "0",
                       "INSERT INTO SiteContract (SITE ,OBJECT ,TERM ,EFFECTIVE_DATE ,upd_flag )VALUES "
                       "(N'S2',NULL,0,NULL,0)"}});
  }
}

TEST(ApplySiteContractRow, PutsTermsAndLineInBareAsTheyComeAndANullDateWithoutAText) {
  ExpectStatements(
      kLines, "3",
      {{{{"Configuration", "O'2"}, {"ServiceContract", ""}, {"ContractTerms", "0'3"}, {"Line", 2.5}},
        "UPDATE SiteContract SET SITE = N'O''2', CONTRACT = N'', TERM = 0'3, LINE = 2.5, upd_flag = 0 WHERE SITE "
        "=N'O''2' AND CONTRACT =N''AND TERM = 0'3AND LINE = 2.5",
        "INSERT INTO SiteContract (SITE ,CONTRACT , TERM , LINE ,upd_flag )VALUES (N'O''2',N'',0'3,2.5,0)"},
       {{{"Configuration", "S2"}, {"ExpiryDate", Null()}},
        "UPDATE SiteContract SET SITE = N'S2', TERM = 0, LINE = 0, EXPIRY_DATE = {d ''}, upd_flag = 0 WHERE SITE "
        "=N'S2' AND CONTRACT =N''AND TERM = 0AND LINE = 0",
        "INSERT INTO SiteContract (SITE , TERM , LINE ,EXPIRY_DATE ,upd_flag )VALUES (N'S2',0,0,{d ''},0)"}});
}

TEST(ApplySiteContractRow, EncodesEveryTextAndWritesEmptyOnesAsABlankOnOracle) {
  ExpectStatements(kLines, "8",
                   {{{{"Cluster", ""}, {"Item", "I'1"}, {"ServiceContract1", ""}, {"SerialNumber", "7'7"}},
                     "UPDATE SiteContract SET SITE = N' ', CONTRACT = N' ', OBJECT = N'I''1', OBJECTNR = N'7''7', TERM "
                     "= 0, upd_flag = 0 WHERE SITE =N' ' AND CONTRACT =N' ' AND OBJECT =N'I''1' AND OBJECTNR "
                     "=N'7''7'AND TERM = 0",
                     "INSERT INTO SiteContract (SITE ,CONTRACT ,OBJECT ,OBJECTNR ,TERM ,upd_flag )VALUES (N' ',N' "
                     "',N'I''1',N'7''7',0,0)"}},
                   /*databasePlatform=*/2);
}

TEST(ApplySiteContractRow, LetsNoNullIntoALiteral) {
  ExpectNullToFail(kLines, "3", kLine3, {"Configuration", "ServiceContract"});
  ExpectNullToFail(kLines, "8", kLine8, {"Cluster", "ServiceContract1", "Item", "SerialNumber"});
}

TEST(ApplySiteContractRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(kLines, "3", {{"Configuration", "S2"}});
  ExpectCounts(kLines, "8", {{"Cluster", "S2"}});
}

const Pass kFullCopy3 = FullPass(
    kLines, kLines3,
    {{{{"Configuration", "S1"}, {"ServiceContract", "C1"}, {"Line", 10}},
      {"getConfiguration hasServiceContract getServiceContract hasContractTerms hasLine getLine hasEffectiveDate "
       "hasExpiryDate hasContractConfigurationLines getConfiguration getServiceContract hasContractTerms hasLine "
       "getLine",
       "sql UPDATE SiteContract SET SITE = N'S1', CONTRACT = N'C1', TERM = 0, LINE = 10, upd_flag = 0 WHERE SITE "
       "=N'S1' AND CONTRACT =N'C1'AND TERM = 0AND LINE = 10 -> 1"}}},
    {.icount = 1});

const Pass kFullCopy8 = FullPass(
    kLines, kLines8,
    {{{{"Cluster", "S1"}, {"SerialNumber", "77"}},
      {"hasCluster getCluster hasItem hasServiceContract1 hasSerialNumber getSerialNumber hasContractTerms "
       "hasEffectiveDate hasExpiryDate getServiceContract1 getSerialNumber hasContractTerms",
       "sql UPDATE SiteContract SET SITE = N'S1', OBJECT = NULL, OBJECTNR = N'77', TERM = 0, upd_flag = 0 WHERE SITE "
       "=N'S1' AND CONTRACT =N'' AND OBJECT =NULL AND OBJECTNR =N'77'AND TERM = 0 -> 0",
       "hasCluster getCluster hasItem hasServiceContract1 hasSerialNumber hasEffectiveDate hasExpiryDate "
       "hasServiceContract1 hasSerialNumber getSerialNumber hasContractTerms hasEffectiveDate hasExpiryDate",
       "sql INSERT INTO SiteContract (SITE ,OBJECT ,OBJECTNR ,TERM ,upd_flag )VALUES (N'S1',NULL,N'77',0,0) -> 1"}}},
    {.icount = 1});

/// Lets each further listing of the manager give the next of these terms.
std::function<void(CopyFixture&, ScriptedObject&)> Terms(const std::vector<std::vector<std::int32_t>>& listings) {
  return [listings](CopyFixture& copy, ScriptedObject& manager) {
    std::vector<Value> answers;
    for (const std::vector<std::int32_t>& terms : listings) {
      std::vector<Object> elements;
      for (const std::int32_t term : terms) {
        const auto element = copy.components.Make("term");
        element->Answers("getContractTerms", term);
        elements.push_back(Object(element));
      }
      answers.push_back(Object(copy.components.MakeEnumeration("terms", elements)));
    }
    manager.AnswersInTurn("List", answers);
  };
}

/// The terms come from a second listing of the same manager, while the changes are still being listed.
Pass OnlyChanged3(const std::vector<ListedRow>& rows, const Counts& counts,
                  const std::vector<std::vector<std::int32_t>>& terms) {
  Pass pass = ChangedPass(kLines, kLines3, rows, counts);
  pass.arrange = Terms(terms);
  return pass;
}

const Text kLookedUp = "getServiceContract getServiceContract getLine getLine";

/// A line that has moved to another site.
const ListedRow kMoved = {
    {{"ActionType", " U "}, {"Configuration", "S2"}, {"ServiceContract", "C1"}, {"Line", 10}},
    {kLookedUp, "manager.List(\"C1\", \"C1\", i16(0), i16(9999), i32(10), i32(10))",
     "terms.hasMoreElements terms.nextElement term.getContractTerms", "row1.setContractTerms(i32(3))",
     "terms.hasMoreElements getConfiguration hasServiceContract getServiceContract hasContractTerms "
     "getContractTerms hasLine getLine hasEffectiveDate hasExpiryDate hasContractConfigurationLines "
     "getContractConfigurationLines old.hasConfiguration getContractConfigurationLines old.getConfiguration "
     "getServiceContract hasContractTerms getContractTerms hasLine getLine",
     "sql UPDATE SiteContract SET SITE = N'S2', CONTRACT = N'C1', TERM = 3, LINE = 10, upd_flag = 0 WHERE SITE "
     "=N'S1' AND CONTRACT =N'C1'AND TERM = 3AND LINE = 10 -> 1"},
    "ContractConfigurationLines",
    {{"Configuration", "S1"}}};

/// The deletion of a line takes every row of its contract at its site.
const ListedRow kGone3 = {{{"ActionType", " D "}, {"Configuration", "S'3"}, {"ServiceContract", "C'1"}, {"Line", 20}},
                          {"getConfiguration getServiceContract",
                           "sql DELETE FROM SiteContract WHERE SITE = N'S''3' AND CONTRACT =N'C''1' -> 4"}};

const ListedRow kWithoutTerm = {
    {{"ActionType", "I"}, {"Configuration", "S4"}, {"ServiceContract", "C2"}, {"Line", std::int16_t{30}}},
    {kLookedUp, "manager.List(\"C2\", \"C2\", i16(0), i16(9999), i16(30), i16(30))",
     "terms.hasMoreElements getConfiguration hasServiceContract getServiceContract hasContractTerms hasLine getLine "
     "hasEffectiveDate hasExpiryDate hasContractConfigurationLines getConfiguration getServiceContract "
     "hasContractTerms hasLine getLine",
     "sql UPDATE SiteContract SET SITE = N'S4', CONTRACT = N'C2', TERM = 0, LINE = 30, upd_flag = 0 WHERE SITE "
     "=N'S4' AND CONTRACT =N'C2'AND TERM = 0AND LINE = 30 -> 0",
     "hasServiceContract hasEffectiveDate hasExpiryDate getConfiguration hasServiceContract getServiceContract "
     "hasContractTerms hasLine getLine hasEffectiveDate hasExpiryDate",
     "sql INSERT INTO SiteContract (SITE ,CONTRACT , TERM , LINE ,upd_flag )VALUES (N'S4',N'C2',0,30,0) -> 1"}};

const Pass kOnlyChanged3 =
    OnlyChanged3({kMoved, kGone3, kWithoutTerm}, {.ucount = 1, .icount = 1, .dcount = 4}, {{3}, {}});

const Pass kOnlyChanged8 = ChangedPass(
    kLines, kLines8,
    {{{{"ActionType", "D"}, {"Item", "I1"}, {"SerialNumber", "77"}, {"ContractTerms", 3}},
      {"hasCluster hasItem getItem hasSerialNumber getSerialNumber hasContractTerms getContractTerms",
       "sql DELETE FROM SiteContract WHERE SITE=NULL AND OBJECT =N'I1' AND OBJECTNR =N'77' AND TERM =3 -> 0"}},
     {{{"ActionType", "U"}, {"Cluster", "S2"}, {"Item", "I1"}},
      {"hasCluster getCluster hasItem getItem hasServiceContract1 hasSerialNumber hasContractTerms hasEffectiveDate "
       "hasExpiryDate getServiceContract1 getSerialNumber hasContractTerms",
       "sql UPDATE SiteContract SET SITE = N'S2', OBJECT = N'I1', TERM = 0, upd_flag = 0 WHERE SITE =N'S2' AND "
       "CONTRACT =N'' AND OBJECT =N'I1' AND OBJECTNR =N''AND TERM = 0 -> 1"}},
     {{{"ActionType", "D"}, {"Cluster", "S'3"}, {"ServiceContract1", "C1"}},
      {"hasCluster getCluster hasItem hasSerialNumber hasContractTerms",
       "sql DELETE FROM SiteContract WHERE SITE=N'S''3' AND OBJECT =NULL AND TERM =0 -> 7"}}},
    {.ucount = 1, .dcount = 7});

TEST(CopySiteContract, CopiesTheLinesOfGenerations3And8InFull) {
  for (const Pass& pass : {kFullCopy3, kFullCopy8}) ExpectPass(pass);
}

TEST(CopySiteContract, FollowsTheChangesOfGeneration3AndLooksUpTheTermsOnTheSameManager) {
  ExpectPass(kOnlyChanged3);
}

TEST(CopySiteContract, FollowsTheChangesOfGeneration8WithoutALookup) {
  ExpectPass(kOnlyChanged8);
}

TEST(CopySiteContract, LooksUpNoTermsForADeletionAndCountsEveryRowThatWent) {
  ExpectPass(OnlyChanged3({kGone3}, {.dcount = 4}, {{3}}));
}

TEST(CopySiteContract, WritesTheTerm0WhenNeitherTheLineNorTheLookupHasOne) {
  ExpectPass(OnlyChanged3({kWithoutTerm}, {.icount = 1}, {{}}));
}

TEST(CopySiteContract, KeepsTheLastOfSeveralTermsAndWritesOneRow) {
  ExpectPass(OnlyChanged3(
      {{{{"ActionType", ""}, {"Configuration", "S2"}, {"ServiceContract", "C1"}, {"ContractTerms", 7}},
        {kLookedUp, "manager.List(\"C1\", \"C1\", i16(0), i16(9999), empty, empty)",
         "terms.hasMoreElements terms.nextElement term.getContractTerms", "row1.setContractTerms(i32(3))",
         "terms.hasMoreElements terms.nextElement term.getContractTerms", "row1.setContractTerms(i32(5))",
         "terms.hasMoreElements getConfiguration hasServiceContract getServiceContract hasContractTerms "
         "getContractTerms hasLine hasEffectiveDate hasExpiryDate hasContractConfigurationLines getConfiguration "
         "getServiceContract hasContractTerms getContractTerms hasLine",
         "sql UPDATE SiteContract SET SITE = N'S2', CONTRACT = N'C1', TERM = 5, LINE = 0, upd_flag = 0 WHERE SITE "
         "=N'S2' AND CONTRACT =N'C1'AND TERM = 5AND LINE = 0 -> 0",
         "hasServiceContract hasEffectiveDate hasExpiryDate getConfiguration hasServiceContract getServiceContract "
         "hasContractTerms getContractTerms hasLine hasEffectiveDate hasExpiryDate",
         "sql INSERT INTO SiteContract (SITE ,CONTRACT , TERM , LINE ,upd_flag )VALUES (N'S2',N'C1',5,0,0) -> 1"}}},
      {.icount = 1}, {{3, 5}}));
}

TEST(CopySiteContract, LeavesALineItsOwnTermWhenTheLookupFindsNone) {
  ExpectPass(OnlyChanged3(
      {{{{"ActionType", "d"}, {"Configuration", "S2"}, {"ServiceContract", "C1"}, {"Line", 1}, {"ContractTerms", 7}},
        {kLookedUp, "manager.List(\"C1\", \"C1\", i16(0), i16(9999), i32(1), i32(1))",
         "terms.hasMoreElements getConfiguration hasServiceContract getServiceContract hasContractTerms "
         "getContractTerms hasLine getLine hasEffectiveDate hasExpiryDate hasContractConfigurationLines "
         "getConfiguration getServiceContract hasContractTerms getContractTerms hasLine getLine",
         "sql UPDATE SiteContract SET SITE = N'S2', CONTRACT = N'C1', TERM = 7, LINE = 1, upd_flag = 0 WHERE SITE "
         "=N'S2' AND CONTRACT =N'C1'AND TERM = 7AND LINE = 1 -> 1"}}},
      {.ucount = 1}, {{}}));
}

TEST(CopySiteContract, CountsEveryRowThatADeletionRemoves) {
  for (const int removed : {0, 1, 40'000, 2'147'483'647}) {  // no 16 bits hold the count
    const Text count = " -> " + std::to_string(removed);
    ExpectPass(ChangedPass(kLines, kLines3,
                           {{{{"ActionType", "D"}},
                             {"getConfiguration getServiceContract",
                              "sql DELETE FROM SiteContract WHERE SITE = N'' AND CONTRACT =N''" + count}}},
                           {.dcount = removed}));
    ExpectPass(ChangedPass(kLines, kLines8,
                           {{{{"ActionType", "D"}},
                             {"hasCluster hasItem hasSerialNumber hasContractTerms",
                              "sql DELETE FROM SiteContract WHERE SITE=NULL AND OBJECT =NULL AND TERM =0" + count}}},
                           {.dcount = removed}));
  }
}

TEST(CopySiteContract, RaisesOverflowWhenItsDeletionsRemoveMoreThan32BitsHold) {
  const struct {
    std::vector<std::int64_t> removed;
    Text counters;
  } cases[] = {{{2'147'483'648}, "ucount 0, icount 0, dcount 0"},
               {{2'147'483'647, 1}, "ucount 0, icount 0, dcount 2147483647"}};
  for (const auto& [removed, counters] : cases) {
    CopyFixture copy("3");
    Arrange(copy, ChangedPass(kLines, kLines3, {{{{"ActionType", "D"}}, {}}, {{{"ActionType", "D"}}, {}}}));
    copy.database.AffectNext(removed);

    EXPECT_EQ(Raised([&] { copy.CopySiteContract("SiteContract", 2); }),
              "106 Data copy: SiteContracts - Only Changed: Site contracts could not be copied from the ERP "
              "(generation 3).");

    EXPECT_EQ(copy.Counters(), counters);
  }
}

TEST(CopySiteContract, EncodesTheKeysOfADeletionOfGeneration8AndPutsItsTermInBare) {
  ExpectPass(ChangedPass(
      kLines, kLines8,
      {{{{"ActionType", "D"}, {"Item", "I'1"}, {"SerialNumber", "7'7"}, {"ContractTerms", "0'3"}},
        {"hasCluster hasItem getItem hasSerialNumber getSerialNumber hasContractTerms getContractTerms",
         "sql DELETE FROM SiteContract WHERE SITE=NULL AND OBJECT =N'I''1' AND OBJECTNR =N'7''7' AND TERM =0'3 -> "
         "1"}}},
      {.dcount = 1}));
}

TEST(CopySiteContract, DoesNotCountADeletionThatFails) {
  for (const ErpSide& erp : {kLines3, kLines8}) {
    SCOPED_TRACE(erp.generation);
    CopyFixture copy(erp.generation);
    Arrange(copy, ChangedPass(kLines, erp, {{{{"ActionType", "D"}}, {}}}));
    copy.database.FailOn("DELETE", RuntimeError(500, "adapter", "no connection"));

    EXPECT_EQ(Raised([&] { copy.CopySiteContract("SiteContract", 2); }),
              "600 Data copy: SiteContracts - Only Changed: Site contracts could not be copied from " + erp.name + ".");

    EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
  }
}

/// Lines of generation 8 on a real database: an equals sign and NULL meet no row.
class UnknownKeysTest : public testing::Test {
 protected:
  UnknownKeysTest() {
    file.Run("CREATE TABLE tstables (tablename TEXT PRIMARY KEY, lutm DATETIME, in_use INTEGER, reqd INTEGER)");
    file.Run(
        "CREATE TABLE SiteContract (SITE TEXT, CONTRACT TEXT, OBJECT TEXT, OBJECTNR TEXT, TERM INTEGER, "
        "upd_flag INTEGER)");
  }

  /// The counters behind an only-changed pass of the ERP's one row.
  Text Follow(const RowFields& fields) {
    CopyFixture copy("8", file);
    copy.AddManager(kLines8.managerClass, "manager", {copy.RowWith(fields)});
    copy.CopySiteContract("SiteContract", 2);
    return copy.Counters();
  }

  Text Rows() {
    return file.Rows("SELECT * FROM SiteContract", {"SITE", "CONTRACT", "OBJECT", "OBJECTNR", "TERM", "upd_flag"});
  }

  EmbeddedDatabase file;
};

TEST_F(UnknownKeysTest, AddALineWithoutAClusterOrAnItemAgainEachTimeItComes) {
  const RowFields withoutItem = {
      {"ActionType", "U"}, {"Cluster", "S1"}, {"ServiceContract1", "C1"}, {"SerialNumber", "77"}};
  const RowFields withoutCluster = {
      {"ActionType", "U"}, {"Item", "I1"}, {"ServiceContract1", "C1"}, {"SerialNumber", "77"}};

  for (const RowFields& line : {withoutItem, withoutItem, withoutCluster, withoutCluster}) {
    EXPECT_EQ(Follow(line), "ucount 0, icount 1, dcount 0");
  }

  EXPECT_EQ(Rows(),
            "S1|C1|NULL|77|0|0\n"
            "S1|C1|NULL|77|0|0\n"
            "NULL|C1|I1|77|0|0\n"
            "NULL|C1|I1|77|0|0\n");
}

TEST_F(UnknownKeysTest, DeleteNothingAndCountNothing) {
  file.Run("INSERT INTO SiteContract VALUES (NULL, 'C1', 'I1', '77', 0, 0), ('S1', 'C1', NULL, '77', 0, 0)");

  EXPECT_EQ(Follow({{"ActionType", "D"}, {"Item", "I1"}, {"SerialNumber", "77"}}), "ucount 0, icount 0, dcount 0");
  EXPECT_EQ(Follow({{"ActionType", "D"}, {"Cluster", "S1"}, {"SerialNumber", "77"}}), "ucount 0, icount 0, dcount 0");

  EXPECT_EQ(Rows(), "NULL|C1|I1|77|0|0\nS1|C1|NULL|77|0|0\n");
}

TEST_F(UnknownKeysTest, AreNoneWhereTheRowKnowsThem) {
  file.Run("INSERT INTO SiteContract VALUES ('S1', 'C1', 'I1', '77', 0, 1), ('S1', 'C2', 'I1', '77', 0, 1)");
  const RowFields line = {{"Cluster", "S1"}, {"Item", "I1"}, {"ServiceContract1", "C1"}, {"SerialNumber", "77"}};
  RowFields deleted = line;
  deleted.emplace_back("ActionType", "D");

  EXPECT_EQ(Follow(line), "ucount 1, icount 0, dcount 0");
  EXPECT_EQ(Rows(), "S1|C1|I1|77|0|0\nS1|C2|I1|77|0|1\n");
  EXPECT_EQ(Follow(deleted), "ucount 0, icount 0, dcount 2");  // whatever their contract

  EXPECT_EQ(Rows(), "");
}

TEST(CopySiteContract, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  for (const Pass& pass : {kFullCopy3, kFullCopy8}) ExpectFailureAtEachStep(pass);
}

TEST(CopySiteContract, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  for (const Pass& pass : {kOnlyChanged3, kOnlyChanged8}) ExpectFailureAtEachStep(pass);
}

// The ERP's label is taken behind the creation of the manager.
TEST(CopySiteContract, NamesNoErpWhereTheComponentIsMissing) {
  for (const ErpSide& erp : {kLines3, kLines8}) {
    for (const Pass& pass : BothPasses(kLines, erp)) ExpectMissingComponent(pass);
  }
}

TEST(CopySiteContract, Raises91And191UnderGeneration1AndNeverSucceedsWithoutRows) {
  for (const char* generation : {"1", "2", ""}) {
    for (const Pass& pass : BothPasses(kLines, WithoutManager(generation, kLines3))) ExpectNoManager(pass);
  }
}

TEST(CopySiteContract, DoesNothingUnderAnotherSyncMethod) {
  ExpectNothingUnderOtherSyncMethods(kLines, kLines3);
}

}  // namespace
}  // namespace zenqay
