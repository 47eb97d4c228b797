// Site contract: its row operation and its two passes under generations 3 and 8, and how both fail under generation 1.
#include <gtest/gtest.h>

#include <functional>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

constexpr const char* kLines3 = "Kv50QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager";
constexpr const char* kLines8 = "Kv61QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager";

const RuntimeError kFailure(500, "adapter", "no connection");

/// Every field of a line of generation 3, without old values, and of generation 8.
const RowFields kLine3 = {
    {"Configuration", "S2"},         {"ServiceContract", "C1"},   {"ContractTerms", 3}, {"Line", 10},
    {"EffectiveDate", "2003-01-31"}, {"ExpiryDate", "2004-01-31"}};
const RowFields kLine8 = {{"Cluster", "S2"},           {"ServiceContract1", "C1"}, {"Item", "I1"},
                          {"SerialNumber", "77"},      {"ContractTerms", 3},       {"EffectiveDate", "2003-01-31"},
                          {"ExpiryDate", "2004-01-31"}};

/// The old values of a line of generation 3, a row named `old`, whose site is empty when it is not known.
Object OldSite(CopyFixture& copy, Value site) {
  const auto old = copy.components.Make("old");
  old->Answers("hasConfiguration", !site.Is<Empty>()).Answers("getConfiguration", std::move(site));
  return Object(old);
}

TEST(ApplySiteContractRow, WritesTheOptionalFieldsThatTheRowHasUnderGeneration3) {
  const struct {
    RowFields fields;
    const char* statements;
  } cases[] = {
      {kLine3,
       "sql UPDATE SITECONTRACT SET SITE = N'S2', CONTRACT = N'C1', TERM = 3, LINE = 10, EFFECTIVE_DATE = {d "
       "'2003-01-31'}, EXPIRY_DATE = {d '2004-01-31'}, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT =N'C1'AND TERM = "
       "3AND LINE = 10 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE ,CONTRACT , TERM , LINE ,EFFECTIVE_DATE ,EXPIRY_DATE ,upd_flag )VALUES "
       "(N'S2',N'C1',3,10,{d '2003-01-31'},{d '2004-01-31'},0) -> 1\n"},
      {{{"Configuration", "S2"}},
       "sql UPDATE SITECONTRACT SET SITE = N'S2', TERM = 0, LINE = 0, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT "
       "=N''AND TERM = 0AND LINE = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE , TERM , LINE ,upd_flag )VALUES (N'S2',0,0,0) -> 1\n"},
      {{{"Configuration", "S2"}, {"ServiceContract", "C1"}},
       "sql UPDATE SITECONTRACT SET SITE = N'S2', CONTRACT = N'C1', TERM = 0, LINE = 0, upd_flag = 0 WHERE SITE "
       "=N'S2' AND CONTRACT =N'C1'AND TERM = 0AND LINE = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE ,CONTRACT , TERM , LINE ,upd_flag )VALUES (N'S2',N'C1',0,0,0) -> 1\n"},
      {{{"Configuration", "S2"}, {"ContractTerms", 3}},
       "sql UPDATE SITECONTRACT SET SITE = N'S2', TERM = 3, LINE = 0, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT "
       "=N''AND TERM = 3AND LINE = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE , TERM , LINE ,upd_flag )VALUES (N'S2',3,0,0) -> 1\n"},
      {{{"Configuration", "S2"}, {"Line", 10}},
       "sql UPDATE SITECONTRACT SET SITE = N'S2', TERM = 0, LINE = 10, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT "
       "=N''AND TERM = 0AND LINE = 10 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE , TERM , LINE ,upd_flag )VALUES (N'S2',0,10,0) -> 1\n"},
      {{{"Configuration", "S2"}, {"EffectiveDate", "2003-01-31"}},
       "sql UPDATE SITECONTRACT SET SITE = N'S2', TERM = 0, LINE = 0, EFFECTIVE_DATE = {d '2003-01-31'}, upd_flag = 0 "
       "WHERE SITE =N'S2' AND CONTRACT =N''AND TERM = 0AND LINE = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE , TERM , LINE ,EFFECTIVE_DATE ,upd_flag )VALUES (N'S2',0,0,{d "
       "'2003-01-31'},0) -> 1\n"},
      {{{"Configuration", "S2"}, {"ExpiryDate", "2004-01-31"}},
       "sql UPDATE SITECONTRACT SET SITE = N'S2', TERM = 0, LINE = 0, EXPIRY_DATE = {d '2004-01-31'}, upd_flag = 0 "
       "WHERE SITE =N'S2' AND CONTRACT =N''AND TERM = 0AND LINE = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE , TERM , LINE ,EXPIRY_DATE ,upd_flag )VALUES (N'S2',0,0,{d "
       "'2004-01-31'},0) -> 1\n"},
  };
  for (const auto& [fields, statements] : cases) {
    CopyFixture copy("3");
    copy.database.AffectNext({0});

    copy.Apply(CopyFixture::ApplySiteContractRow(), fields, "SITECONTRACT");

    EXPECT_EQ(copy.JournalWithout({"row"}), statements);
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  }
}

TEST(ApplySiteContractRow, WritesTheOptionalFieldsThatTheRowHasUnderGeneration8) {
  const struct {
    RowFields fields;
    const char* statements;
  } cases[] = {
      {kLine8,
       "sql UPDATE SITECONTRACT SET SITE = N'S2', CONTRACT = N'C1', OBJECT = N'I1', OBJECTNR = N'77', TERM = 3, "
       "EFFECTIVE_DATE = {d '2003-01-31'}, EXPIRY_DATE = {d '2004-01-31'}, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT "
       "=N'C1' AND OBJECT =N'I1' AND OBJECTNR =N'77'AND TERM = 3 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE ,CONTRACT ,OBJECT ,OBJECTNR ,TERM ,EFFECTIVE_DATE ,EXPIRY_DATE ,upd_flag "
       ")VALUES (N'S2',N'C1',N'I1',N'77',3,{d '2003-01-31'},{d '2004-01-31'},0) -> 1\n"},
      {{},
       "sql UPDATE SITECONTRACT SET SITE = NULL, OBJECT = NULL, TERM = 0, upd_flag = 0 WHERE SITE =NULL AND CONTRACT "
       "=N'' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE ,OBJECT ,TERM ,upd_flag )VALUES (NULL,NULL,0,0) -> 1\n"},
      {{{"Cluster", "S2"}},
       "sql UPDATE SITECONTRACT SET SITE = N'S2', OBJECT = NULL, TERM = 0, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT "
       "=N'' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE ,OBJECT ,TERM ,upd_flag )VALUES (N'S2',NULL,0,0) -> 1\n"},
      {{{"ServiceContract1", "C1"}},
       "sql UPDATE SITECONTRACT SET SITE = NULL, CONTRACT = N'C1', OBJECT = NULL, TERM = 0, upd_flag = 0 WHERE SITE "
       "=NULL AND CONTRACT =N'C1' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE ,CONTRACT ,OBJECT ,TERM ,upd_flag )VALUES (NULL,N'C1',NULL,0,0) -> 1\n"},
      {{{"Item", "I1"}},
       "sql UPDATE SITECONTRACT SET SITE = NULL, OBJECT = N'I1', TERM = 0, upd_flag = 0 WHERE SITE =NULL AND CONTRACT "
       "=N'' AND OBJECT =N'I1' AND OBJECTNR =N''AND TERM = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE ,OBJECT ,TERM ,upd_flag )VALUES (NULL,N'I1',0,0) -> 1\n"},
      {{{"SerialNumber", "77"}},
       "sql UPDATE SITECONTRACT SET SITE = NULL, OBJECT = NULL, OBJECTNR = N'77', TERM = 0, upd_flag = 0 WHERE SITE "
       "=NULL AND CONTRACT =N'' AND OBJECT =NULL AND OBJECTNR =N'77'AND TERM = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE ,OBJECT ,OBJECTNR ,TERM ,upd_flag )VALUES (NULL,NULL,N'77',0,0) -> 1\n"},
      {{{"ContractTerms", 3}},
       "sql UPDATE SITECONTRACT SET SITE = NULL, OBJECT = NULL, TERM = 3, upd_flag = 0 WHERE SITE =NULL AND CONTRACT "
       "=N'' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = 3 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE ,OBJECT ,TERM ,upd_flag )VALUES (NULL,NULL,3,0) -> 1\n"},
      {{{"EffectiveDate", "2003-01-31"}},
       "sql UPDATE SITECONTRACT SET SITE = NULL, OBJECT = NULL, TERM = 0, EFFECTIVE_DATE = {d '2003-01-31'}, upd_flag "
       "= 0 WHERE SITE =NULL AND CONTRACT =N'' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE ,OBJECT ,TERM ,EFFECTIVE_DATE ,upd_flag )VALUES (NULL,NULL,0,{d "
       "'2003-01-31'},0) -> 1\n"},
      {{{"ExpiryDate", "2004-01-31"}},
       "sql UPDATE SITECONTRACT SET SITE = NULL, OBJECT = NULL, TERM = 0, EXPIRY_DATE = {d '2004-01-31'}, upd_flag = 0 "
       "WHERE SITE =NULL AND CONTRACT =N'' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE ,OBJECT ,TERM ,EXPIRY_DATE ,upd_flag )VALUES (NULL,NULL,0,{d "
       "'2004-01-31'},0) -> 1\n"},
  };
  for (const auto& [fields, statements] : cases) {
    CopyFixture copy("8");
    copy.database.AffectNext({0});

    copy.Apply(CopyFixture::ApplySiteContractRow(), fields, "SITECONTRACT");

    EXPECT_EQ(copy.JournalWithout({"row"}), statements);
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  }
}

TEST(ApplySiteContractRow, AsksForEveryFieldAtEachUseUnderGeneration3) {
  CopyFixture copy("3");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySiteContractRow(), kLine3, "SITECONTRACT");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getConfiguration()\n"
            "row1.hasServiceContract()\n"
            "row1.getServiceContract()\n"
            "row1.hasContractTerms()\n"
            "row1.getContractTerms()\n"
            "row1.hasLine()\n"
            "row1.getLine()\n"
            "row1.hasEffectiveDate()\n"
            "row1.getEffectiveDate()\n"
            "row1.hasExpiryDate()\n"
            "row1.getExpiryDate()\n"
            "row1.hasContractConfigurationLines()\n"
            "row1.getConfiguration()\n"
            "row1.getServiceContract()\n"
            "row1.hasContractTerms()\n"
            "row1.getContractTerms()\n"
            "row1.hasLine()\n"
            "row1.getLine()\n"
            "sql UPDATE SITECONTRACT SET SITE = N'S2', CONTRACT = N'C1', TERM = 3, LINE = 10, EFFECTIVE_DATE = {d "
            "'2003-01-31'}, EXPIRY_DATE = {d '2004-01-31'}, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT =N'C1'AND "
            "TERM = 3AND LINE = 10 -> 0\n"
            "row1.hasServiceContract()\n"
            "row1.hasEffectiveDate()\n"
            "row1.hasExpiryDate()\n"
            "row1.getConfiguration()\n"
            "row1.hasServiceContract()\n"
            "row1.getServiceContract()\n"
            "row1.hasContractTerms()\n"
            "row1.getContractTerms()\n"
            "row1.hasLine()\n"
            "row1.getLine()\n"
            "row1.hasEffectiveDate()\n"
            "row1.getEffectiveDate()\n"
            "row1.hasExpiryDate()\n"
            "row1.getExpiryDate()\n"
            "sql INSERT INTO SITECONTRACT (SITE ,CONTRACT , TERM , LINE ,EFFECTIVE_DATE ,EXPIRY_DATE ,upd_flag "
            ")VALUES (N'S2',N'C1',3,10,{d '2003-01-31'},{d '2004-01-31'},0) -> 1\n");
}

TEST(ApplySiteContractRow, AsksForEveryFieldAtEachUseUnderGeneration8) {
  CopyFixture copy("8");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplySiteContractRow(), kLine8, "SITECONTRACT");

  EXPECT_EQ(copy.journal.Take(),
            "row1.hasCluster()\n"
            "row1.getCluster()\n"
            "row1.hasItem()\n"
            "row1.getItem()\n"
            "row1.hasServiceContract1()\n"
            "row1.getServiceContract1()\n"
            "row1.hasSerialNumber()\n"
            "row1.getSerialNumber()\n"
            "row1.hasContractTerms()\n"
            "row1.getContractTerms()\n"
            "row1.hasEffectiveDate()\n"
            "row1.getEffectiveDate()\n"
            "row1.hasExpiryDate()\n"
            "row1.getExpiryDate()\n"
            "row1.getServiceContract1()\n"
            "row1.getSerialNumber()\n"
            "row1.hasContractTerms()\n"
            "row1.getContractTerms()\n"
            "sql UPDATE SITECONTRACT SET SITE = N'S2', CONTRACT = N'C1', OBJECT = N'I1', OBJECTNR = N'77', TERM = 3, "
            "EFFECTIVE_DATE = {d '2003-01-31'}, EXPIRY_DATE = {d '2004-01-31'}, upd_flag = 0 WHERE SITE =N'S2' AND "
            "CONTRACT =N'C1' AND OBJECT =N'I1' AND OBJECTNR =N'77'AND TERM = 3 -> 0\n"
            "row1.hasCluster()\n"
            "row1.getCluster()\n"
            "row1.hasItem()\n"
            "row1.getItem()\n"
            "row1.hasServiceContract1()\n"
            "row1.hasSerialNumber()\n"
            "row1.hasEffectiveDate()\n"
            "row1.hasExpiryDate()\n"
            "row1.hasServiceContract1()\n"
            "row1.getServiceContract1()\n"
            "row1.hasSerialNumber()\n"
            "row1.getSerialNumber()\n"
            "row1.hasContractTerms()\n"
            "row1.getContractTerms()\n"
            "row1.hasEffectiveDate()\n"
            "row1.getEffectiveDate()\n"
            "row1.hasExpiryDate()\n"
            "row1.getExpiryDate()\n"
            "sql INSERT INTO SITECONTRACT (SITE ,CONTRACT ,OBJECT ,OBJECTNR ,TERM ,EFFECTIVE_DATE ,EXPIRY_DATE "
            ",upd_flag )VALUES (N'S2',N'C1',N'I1',N'77',3,{d '2003-01-31'},{d '2004-01-31'},0) -> 1\n");
}

TEST(ApplySiteContractRow, FindsALineThatMovedByTheSiteThatItHad) {
  CopyFixture copy("3");

  copy.Apply(CopyFixture::ApplySiteContractRow(),
             {{"Configuration", "S2"},
              {"ServiceContract", "C1"},
              {"ContractTerms", 3},
              {"Line", 10},
              {"ContractConfigurationLines", OldSite(copy, "S1")}},
             "SITECONTRACT");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getConfiguration()\n"
            "row1.hasServiceContract()\n"
            "row1.getServiceContract()\n"
            "row1.hasContractTerms()\n"
            "row1.getContractTerms()\n"
            "row1.hasLine()\n"
            "row1.getLine()\n"
            "row1.hasEffectiveDate()\n"
            "row1.hasExpiryDate()\n"
            "row1.hasContractConfigurationLines()\n"
            "row1.getContractConfigurationLines()\n"
            "old.hasConfiguration()\n"
            "row1.getContractConfigurationLines()\n"
            "old.getConfiguration()\n"
            "row1.getServiceContract()\n"
            "row1.hasContractTerms()\n"
            "row1.getContractTerms()\n"
            "row1.hasLine()\n"
            "row1.getLine()\n"
            "sql UPDATE SITECONTRACT SET SITE = N'S2', CONTRACT = N'C1', TERM = 3, LINE = 10, upd_flag = 0 WHERE SITE "
            "=N'S1' AND CONTRACT =N'C1'AND TERM = 3AND LINE = 10 -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 0");
}

TEST(ApplySiteContractRow, MatchesItsOwnSiteBehindTwoBlanksWhenTheOldValuesDoNotKnowIt) {
  CopyFixture copy("3");

  copy.Apply(
      CopyFixture::ApplySiteContractRow(),
      {{"Configuration", "S2"}, {"ServiceContract", "C1"}, {"ContractConfigurationLines", OldSite(copy, Value())}},
      "SITECONTRACT");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getConfiguration()\n"
            "row1.hasServiceContract()\n"
            "row1.getServiceContract()\n"
            "row1.hasContractTerms()\n"
            "row1.hasLine()\n"
            "row1.hasEffectiveDate()\n"
            "row1.hasExpiryDate()\n"
            "row1.hasContractConfigurationLines()\n"
            "row1.getContractConfigurationLines()\n"
            "old.hasConfiguration()\n"
            "row1.getConfiguration()\n"
            "row1.getServiceContract()\n"
            "row1.hasContractTerms()\n"
            "row1.hasLine()\n"
            "sql UPDATE SITECONTRACT SET SITE = N'S2', CONTRACT = N'C1', TERM = 0, LINE = 0, upd_flag = 0 WHERE SITE  "
            "=N'S2' AND CONTRACT =N'C1'AND TERM = 0AND LINE = 0 -> 1\n");
}

TEST(ApplySiteContractRow, FailsWithOldValuesThatAreNotThere) {
  CopyFixture copy("3");

  const Text raised = Raised([&] {
    copy.Apply(CopyFixture::ApplySiteContractRow(), {{"Configuration", "S2"}, {"ContractConfigurationLines", Object()}},
               "SITECONTRACT");
  });

  EXPECT_EQ(raised, "91 ZenqayDBSync: Object variable not set");
  EXPECT_EQ(copy.JournalWithout({"row"}), "");
}

TEST(ApplySiteContractRow, MatchesByContractAndNumberWithoutAskingTheirGates) {
  const struct {
    const char* generation;
    const char* statements;
  } cases[] = {
      {"3",
       "sql UPDATE SITECONTRACT SET SITE = N'S2', TERM = 0, LINE = 0, upd_flag = 0 WHERE SITE =N'S2' AND CONTRACT "
       "=N'C1'AND TERM = 0AND LINE = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE , TERM , LINE ,upd_flag )VALUES (N'S2',0,0,0) -> 1\n"},
      {"8",
       "sql UPDATE SITECONTRACT SET SITE = NULL, OBJECT = NULL, TERM = 0, upd_flag = 0 WHERE SITE =NULL AND CONTRACT "
       "=N'C2' AND OBJECT =NULL AND OBJECTNR =N'77'AND TERM = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE ,OBJECT ,TERM ,upd_flag )VALUES (NULL,NULL,0,0) -> 1\n"},
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
    copy.AddManager(Text(generation) == "3" ? kLines3 : kLines8, "lines", {Object(row)});

    copy.CopySiteContract("SITECONTRACT", 1);

    EXPECT_EQ(copy.JournalWithout({"row", "create", "session", "lines", "sql UPDATE SITECONTRACT SET upd_flag",
                                   "sql DELETE", "sql UPDATE tstables"}),
              statements);
  }
}

TEST(ApplySiteContractRow, SetsADateThatIsEmptyToNullAndLeavesOneThatIsAbsentAlone) {
  const struct {
    const char* generation;
    const char* statements;
  } cases[] = {
      {"3",
       "sql UPDATE SITECONTRACT SET SITE = N'S2', TERM = 0, LINE = 0, EFFECTIVE_DATE = NULL, upd_flag = 0 WHERE SITE "
       "=N'S2' AND CONTRACT =N''AND TERM = 0AND LINE = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE , TERM , LINE ,EFFECTIVE_DATE ,upd_flag )VALUES (N'S2',0,0,NULL,0) -> 1\n"},
      {"8",
       "sql UPDATE SITECONTRACT SET SITE = N'S2', OBJECT = NULL, TERM = 0, EFFECTIVE_DATE = NULL, upd_flag = 0 WHERE "
       "SITE =N'S2' AND CONTRACT =N'' AND OBJECT =NULL AND OBJECTNR =N''AND TERM = 0 -> 0\n"
       "sql INSERT INTO SITECONTRACT (SITE ,OBJECT ,TERM ,EFFECTIVE_DATE ,upd_flag )VALUES (N'S2',NULL,0,NULL,0) -> "
       "1\n"},
  };
  for (const auto& [generation, statements] : cases) {
    for (const Value& empty : {Value(), Value("")}) {
      SCOPED_TRACE(Text(generation) + " " + Shown(empty));
      CopyFixture copy(generation);
      copy.database.AffectNext({0});

      copy.Apply(CopyFixture::ApplySiteContractRow(),
                 {{"Configuration", "S2"}, {"Cluster", "S2"}, {"EffectiveDate", empty}}, "SITECONTRACT");

      EXPECT_EQ(copy.JournalWithout({"row"}), statements);
    }
  }
}

TEST(ApplySiteContractRow, PutsTermsAndLineInBareAsTheyCome) {
  CopyFixture copy("3");

  copy.Apply(CopyFixture::ApplySiteContractRow(),
             {{"Configuration", "O'2"}, {"ServiceContract", ""}, {"ContractTerms", "0'3"}, {"Line", 2.5}},
             "SITECONTRACT");

  EXPECT_EQ(copy.JournalWithout({"row"}),
            "sql UPDATE SITECONTRACT SET SITE = N'O''2', CONTRACT = N'', TERM = 0'3, LINE = 2.5, upd_flag = 0 WHERE "
            "SITE =N'O''2' AND CONTRACT =N''AND TERM = 0'3AND LINE = 2.5 -> 1\n");
}

TEST(ApplySiteContractRow, LetsNoNullIntoALiteral) {
  for (const auto& [field, ignored] : kLine8) {
    if (field.ends_with("Date")) continue;   // a null date is a literal without a date
    if (field == "ContractTerms") continue;  // a null term is joined to the statement as nothing
    SCOPED_TRACE(field);
    CopyFixture copy("8");
    RowFields fields = kLine8;
    for (auto& [name, value] : fields) {
      if (name == field) value = Null();
    }

    const Text raised = Raised([&] { copy.Apply(CopyFixture::ApplySiteContractRow(), fields, "SITECONTRACT"); });

    EXPECT_EQ(raised, "94 ZenqayDBSync: Invalid use of Null");
    EXPECT_EQ(copy.JournalWithout({"row"}), "");
  }
}

TEST(ApplySiteContractRow, PutsANullDateInWithNothingBetweenItsQuotes) {
  CopyFixture copy("3");

  copy.Apply(CopyFixture::ApplySiteContractRow(), {{"Configuration", "S2"}, {"ExpiryDate", Null()}}, "SITECONTRACT");

  EXPECT_EQ(copy.JournalWithout({"row"}),
            "sql UPDATE SITECONTRACT SET SITE = N'S2', TERM = 0, LINE = 0, EXPIRY_DATE = {d ''}, upd_flag = 0 WHERE "
            "SITE =N'S2' AND CONTRACT =N''AND TERM = 0AND LINE = 0 -> 1\n");
}

TEST(ApplySiteContractRow, CountsOneRowWhateverTheUpdateTouchedAndOnlyAnInsertOfOne) {
  const struct {
    std::vector<std::int64_t> touched;
    const char* counters;
  } cases[] = {
      {{1}, "ucount 1, icount 0, dcount 0"},    {{5}, "ucount 1, icount 0, dcount 0"},
      {{0, 1}, "ucount 0, icount 1, dcount 0"}, {{0, 0}, "ucount 0, icount 0, dcount 0"},
      {{0, 2}, "ucount 0, icount 0, dcount 0"},
  };
  for (const auto& [touched, counters] : cases) {
    for (const char* generation : {"3", "8"}) {
      CopyFixture copy(generation);
      copy.database.AffectNext(touched);

      copy.Apply(CopyFixture::ApplySiteContractRow(), {{"Configuration", "S2"}, {"Cluster", "S2"}}, "SITECONTRACT");

      EXPECT_EQ(copy.Counters(), counters);
    }
  }
}

TEST(ApplySiteContractRow, InsertsALineWithoutAClusterAgainEachTimeItComes) {
  CopyFixture copy("8");
  copy.database.AffectNext({0, 1, 0, 1});  // no row meets an equal sign and NULL
  const RowFields line = {{"ServiceContract1", "C1"}, {"Item", "I1"}, {"SerialNumber", "77"}, {"ContractTerms", 3}};

  copy.Apply(CopyFixture::ApplySiteContractRow(), line, "SITECONTRACT");
  copy.Apply(CopyFixture::ApplySiteContractRow(), line, "SITECONTRACT");

  EXPECT_EQ(copy.JournalWithout({"row"}),
            "sql UPDATE SITECONTRACT SET SITE = NULL, CONTRACT = N'C1', OBJECT = N'I1', OBJECTNR = N'77', TERM = 3, "
            "upd_flag = 0 WHERE SITE =NULL AND CONTRACT =N'C1' AND OBJECT =N'I1' AND OBJECTNR =N'77'AND TERM = 3 -> "
            "0\n"
            "sql INSERT INTO SITECONTRACT (SITE ,CONTRACT ,OBJECT ,OBJECTNR ,TERM ,upd_flag )VALUES "
            "(NULL,N'C1',N'I1',N'77',3,0) -> 1\n"
            "sql UPDATE SITECONTRACT SET SITE = NULL, CONTRACT = N'C1', OBJECT = N'I1', OBJECTNR = N'77', TERM = 3, "
            "upd_flag = 0 WHERE SITE =NULL AND CONTRACT =N'C1' AND OBJECT =N'I1' AND OBJECTNR =N'77'AND TERM = 3 -> "
            "0\n"
            "sql INSERT INTO SITECONTRACT (SITE ,CONTRACT ,OBJECT ,OBJECTNR ,TERM ,upd_flag )VALUES "
            "(NULL,N'C1',N'I1',N'77',3,0) -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 2, dcount 0");
}

const Text kTaken =
    "query SELECT * FROM tstables WHERE tablename = N'SiteContract'\n"
    "close recordset\n"
    "sql UPDATE tstables SET in_use = 1WHERE tablename = N'SiteContract' -> 1\n"
    "event DataCopyStarted(time(10:11:12 AM), i16(8))\n";
const Text kReleased = "sql UPDATE tstables SET in_use = 0WHERE tablename = N'SiteContract' -> 1\n";
const Text kCriteriaCreated =
    "create NetListSelectionCriteria.NetListSelectionCriteria\n"
    "create NetListSelectionCriteria.NetListIn\n"
    "create NetListSelectionCriteria.NetListOut\n"
    "create NetListSelectionCriteria.NetListPeriod\n"
    "create NetListSelectionCriteria.NetListParameter\n"
    "create NetListSelectionCriteria.NetListParameter\n";
const Text kCriteriaFilled3 =
    "lines.Initialize(&\"100\")\n"
    "query SELECT * FROM tstables WHERE tablename = N'SiteContract'\n"
    "close recordset\n"
    "period.setFrom(<object>)\n"
    "period.setTo(<object>)\n"
    "criteria.setNetListPeriod(&<period>)\n"
    "parameter1.setFieldName(\"csco\")\n"
    "parameter1.setFrom(\"\")\n"
    "parameter1.setTo(high(9))\n"
    "parameter2.setFieldName(\"seqn\")\n"
    "parameter2.setFrom(i16(0))\n"
    "parameter2.setTo(i16(99))\n"
    "input.addNetListParameter(&<parameter1>)\n"
    "input.addNetListParameter(&<parameter2>)\n"
    "criteria.setNetListIn(&<input>)\n"
    "output.addFieldNameWithoutOld(\"csco\")\n"
    "output.addFieldNameWithoutOld(\"seqn\")\n"
    "output.addFieldNameWithOld(\"ccfg\")\n"
    "output.addFieldNameWithOld(\"efdt\")\n"
    "output.addFieldNameWithoutOld(\"exdt\")\n"
    "criteria.setNetListOut(&<output>)\n"
    "lines.NetListContractConfigurationLines(&\"tsctm310\", &<criteria>)\n";

/// The lines' manager, named `lines`, its criteria with two parameters, named parameter1 and parameter2.
std::shared_ptr<ScriptedObject> AddLines(CopyFixture& copy, const char* managerClass, std::vector<Object> rows) {
  const auto manager = copy.AddManager(managerClass, "lines", std::move(rows));
  NameParameters(copy, {"parameter1", "parameter2"});
  return manager;
}

/// A listing of terms: an enumeration named `terms`.
Object Terms(CopyFixture& copy, const std::vector<std::int32_t>& terms) {
  std::vector<Object> elements;
  for (const std::int32_t term : terms) {
    const auto element = copy.components.Make("term");
    element->Answers("getContractTerms", term);
    elements.push_back(Object(element));
  }
  return Object(copy.components.MakeEnumeration("terms", elements));
}

const EntityPass kFullPass3 = {
    .generation = "3",
    .managerClass = kLines3,
    .managerName = "lines",
    .parameterNames = {"parameter1", "parameter2"},
    .rows = {{{"Configuration", "S1"}, {"ServiceContract", "C1"}, {"Line", 10}}},
    .trace =
        "create Kv50QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager\n"
        "session.addManager(&<lines>)\n"
        "lines.Initialize(&\"100\")\n"
        "lines.List(\"\", high(9), i16(0), i16(9999), i16(0), i16(999))\n"
        "sql UPDATE SiteContract SET upd_flag = 1 \n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getConfiguration()\n"
        "row1.hasServiceContract()\n"
        "row1.getServiceContract()\n"
        "row1.hasContractTerms()\n"
        "row1.hasLine()\n"
        "row1.getLine()\n"
        "row1.hasEffectiveDate()\n"
        "row1.hasExpiryDate()\n"
        "row1.hasContractConfigurationLines()\n"
        "row1.getConfiguration()\n"
        "row1.getServiceContract()\n"
        "row1.hasContractTerms()\n"
        "row1.hasLine()\n"
        "row1.getLine()\n"
        "sql UPDATE SiteContract SET SITE = N'S1', CONTRACT = N'C1', TERM = 0, LINE = 10, upd_flag = 0 WHERE "
        "SITE =N'S1' AND CONTRACT =N'C1'AND TERM = 0AND LINE = 10 -> 1\n"
        "rows.hasMoreElements()\n"
        "sql DELETE FROM SiteContract WHERE upd_flag = 1\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'SiteContract' -> 1\n"
        "lines.Close()\n",
    .counters = "ucount 0, icount 1, dcount 0",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: SiteContract -  1\"\r\n"};

TEST(CopySiteContract, CopiesTheLinesOfGeneration3InFull) {
  CopyFixture copy("3");
  copy.database.AffectNext({1});
  Arrange(copy, kFullPass3);

  const CopyResult result = copy.CopyTable(8, "SiteContract", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(), kTaken + kFullPass3.trace + "sql UPDATE STATISTICS SiteContract\n" + kReleased);
  EXPECT_EQ(copy.Counters(), kFullPass3.counters);
  EXPECT_EQ(copy.RunLog(), kFullPass3.runLog);
}

TEST(CopySiteContract, CopiesTheLinesOfGeneration8InFullOnOracle) {
  CopyFixture copy("8", /*databasePlatform=*/2);
  AddLines(copy, kLines8, {copy.RowWith({{"Cluster", ""}, {"SerialNumber", "77"}})});
  copy.database.AffectNext({1, 0});

  const CopyResult result = copy.CopyTable(8, "SiteContract", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            kTaken +
                "create Kv61QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager\n"
                "session.addManager(&<lines>)\n"
                "lines.Initialize(&\"100\")\n"
                "lines.List(i16(0), i16(999), i16(0), i16(999))\n"
                "sql UPDATE SiteContract SET upd_flag = 1 \n"
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row1.hasCluster()\n"
                "row1.getCluster()\n"
                "row1.hasItem()\n"
                "row1.hasServiceContract1()\n"
                "row1.hasSerialNumber()\n"
                "row1.getSerialNumber()\n"
                "row1.hasContractTerms()\n"
                "row1.hasEffectiveDate()\n"
                "row1.hasExpiryDate()\n"
                "row1.getServiceContract1()\n"
                "row1.getSerialNumber()\n"
                "row1.hasContractTerms()\n"
                "sql UPDATE SiteContract SET SITE = N' ', OBJECT = NULL, OBJECTNR = N'77', TERM = 0, upd_flag = 0 "
                "WHERE SITE =N' ' AND CONTRACT =N' ' AND OBJECT =NULL AND OBJECTNR =N'77'AND TERM = 0 -> 0\n"
                "row1.hasCluster()\n"
                "row1.getCluster()\n"
                "row1.hasItem()\n"
                "row1.hasServiceContract1()\n"
                "row1.hasSerialNumber()\n"
                "row1.hasEffectiveDate()\n"
                "row1.hasExpiryDate()\n"
                "row1.hasServiceContract1()\n"
                "row1.hasSerialNumber()\n"
                "row1.getSerialNumber()\n"
                "row1.hasContractTerms()\n"
                "row1.hasEffectiveDate()\n"
                "row1.hasExpiryDate()\n"
                "sql INSERT INTO SiteContract (SITE ,OBJECT ,OBJECTNR ,TERM ,upd_flag )VALUES (N' ',NULL,N'77',0,0) "
                "-> 1\n"
                "rows.hasMoreElements()\n"
                "sql DELETE FROM SiteContract WHERE upd_flag = 1\n"
                "sql UPDATE tstables SET lutm  = TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS') WHERE "
                "tablename = N'SiteContract' -> 1\n"
                "lines.Close()\n" +
                kReleased);
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
}

TEST(CopySiteContract, FollowsTheChangesOfGeneration3AndLooksUpTheTermsOnTheSameManager) {
  CopyFixture copy("3");
  const auto manager = AddLines(
      copy, kLines3,
      {copy.RowWith({{"ActionType", " U "},
                     {"Configuration", "S2"},
                     {"ServiceContract", "C1"},
                     {"Line", 10},
                     {"ContractConfigurationLines", OldSite(copy, "S1")}}),
       copy.RowWith({{"ActionType", " D "}, {"Configuration", "S3"}, {"ServiceContract", "C1"}, {"Line", 20}}),
       copy.RowWith(
           {{"ActionType", "I"}, {"Configuration", "S4"}, {"ServiceContract", "C2"}, {"Line", std::int16_t{30}}})});
  manager->AnswersInTurn("List", {Terms(copy, {3}), Terms(copy, {})});
  copy.database.AffectNext({1, 1, 4, 0});

  const CopyResult result = copy.CopyTable(8, "SiteContract", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            kTaken +
                "create Kv50QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager\n"
                "session.addManager(&<lines>)\n" +
                kCriteriaCreated + kCriteriaFilled3 +
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row1.getActionType()\n"
                "row1.getServiceContract()\n"
                "row1.getServiceContract()\n"
                "row1.getLine()\n"
                "row1.getLine()\n"
                "lines.List(\"C1\", \"C1\", i16(0), i16(9999), i32(10), i32(10))\n"
                "terms.hasMoreElements()\n"
                "terms.nextElement()\n"
                "term.getContractTerms()\n"
                "row1.setContractTerms(i32(3))\n"
                "terms.hasMoreElements()\n"
                "row1.getConfiguration()\n"
                "row1.hasServiceContract()\n"
                "row1.getServiceContract()\n"
                "row1.hasContractTerms()\n"
                "row1.getContractTerms()\n"
                "row1.hasLine()\n"
                "row1.getLine()\n"
                "row1.hasEffectiveDate()\n"
                "row1.hasExpiryDate()\n"
                "row1.hasContractConfigurationLines()\n"
                "row1.getContractConfigurationLines()\n"
                "old.hasConfiguration()\n"
                "row1.getContractConfigurationLines()\n"
                "old.getConfiguration()\n"
                "row1.getServiceContract()\n"
                "row1.hasContractTerms()\n"
                "row1.getContractTerms()\n"
                "row1.hasLine()\n"
                "row1.getLine()\n"
                "sql UPDATE SiteContract SET SITE = N'S2', CONTRACT = N'C1', TERM = 3, LINE = 10, upd_flag = 0 WHERE "
                "SITE =N'S1' AND CONTRACT =N'C1'AND TERM = 3AND LINE = 10 -> 1\n"
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row2.getActionType()\n"
                "row2.getConfiguration()\n"
                "row2.getServiceContract()\n"
                "sql DELETE FROM SiteContract WHERE SITE = N'S3' AND CONTRACT =N'C1' -> 4\n"
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row3.getActionType()\n"
                "row3.getServiceContract()\n"
                "row3.getServiceContract()\n"
                "row3.getLine()\n"
                "row3.getLine()\n"
                "lines.List(\"C2\", \"C2\", i16(0), i16(9999), i16(30), i16(30))\n"
                "terms.hasMoreElements()\n"
                "row3.getConfiguration()\n"
                "row3.hasServiceContract()\n"
                "row3.getServiceContract()\n"
                "row3.hasContractTerms()\n"
                "row3.hasLine()\n"
                "row3.getLine()\n"
                "row3.hasEffectiveDate()\n"
                "row3.hasExpiryDate()\n"
                "row3.hasContractConfigurationLines()\n"
                "row3.getConfiguration()\n"
                "row3.getServiceContract()\n"
                "row3.hasContractTerms()\n"
                "row3.hasLine()\n"
                "row3.getLine()\n"
                "sql UPDATE SiteContract SET SITE = N'S4', CONTRACT = N'C2', TERM = 0, LINE = 30, upd_flag = 0 WHERE "
                "SITE =N'S4' AND CONTRACT =N'C2'AND TERM = 0AND LINE = 30 -> 0\n"
                "row3.hasServiceContract()\n"
                "row3.hasEffectiveDate()\n"
                "row3.hasExpiryDate()\n"
                "row3.getConfiguration()\n"
                "row3.hasServiceContract()\n"
                "row3.getServiceContract()\n"
                "row3.hasContractTerms()\n"
                "row3.hasLine()\n"
                "row3.getLine()\n"
                "row3.hasEffectiveDate()\n"
                "row3.hasExpiryDate()\n"
                "sql INSERT INTO SiteContract (SITE ,CONTRACT , TERM , LINE ,upd_flag )VALUES (N'S4',N'C2',0,30,0) -> "
                "1\n"
                "rows.hasMoreElements()\n"
                "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
                "N'SiteContract' -> 1\n"
                "sql UPDATE STATISTICS SiteContract\n" +
                kReleased);
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 1, dcount 4");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: SiteContract -  1\"\r\n"
            "\"Rows updated: SiteContract -  1\"\r\n"
            "\"Rows deleted: SiteContract -  4\"\r\n");
}

const EntityPass kChangedPass8 = {
    .generation = "8",
    .managerClass = kLines8,
    .managerName = "lines",
    .parameterNames = {"parameter1", "parameter2"},
    .rows = {{{"ActionType", "D"}, {"Item", "I1"}, {"SerialNumber", "77"}, {"ContractTerms", 3}},
             {{"ActionType", "U"}, {"Cluster", "S2"}, {"Item", "I1"}},
             {{"ActionType", "D"}, {"Cluster", "S3"}, {"ServiceContract1", "C1"}}},
    .counts = {0, 1, 7},
    .trace =
        "create Kv61QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager\n"
        "session.addManager(&<lines>)\n" +
        kCriteriaCreated +
        "lines.Initialize(&\"100\")\n"
        "query SELECT * FROM tstables WHERE tablename = N'SiteContract'\n"
        "close recordset\n"
        "period.setFrom(<object>)\n"
        "period.setTo(<object>)\n"
        "criteria.setNetListPeriod(&<period>)\n"
        "parameter1.setFieldName(\"term\")\n"
        "parameter1.setFrom(i16(0))\n"
        "parameter1.setTo(\"9999\")\n"
        "parameter2.setFieldName(\"cfln\")\n"
        "parameter2.setFrom(\"0\")\n"
        "parameter2.setTo(\"99\")\n"
        "input.addNetListParameter(&<parameter1>)\n"
        "input.addNetListParameter(&<parameter2>)\n"
        "criteria.setNetListIn(&<input>)\n"
        "output.addFieldNameWithoutOld(\"clst\")\n"
        "output.addFieldNameWithoutOld(\"csco\")\n"
        "output.addFieldNameWithoutOld(\"item\")\n"
        "output.addFieldNameWithoutOld(\"sern\")\n"
        "output.addFieldNameWithoutOld(\"efdt\")\n"
        "output.addFieldNameWithoutOld(\"exdt\")\n"
        "criteria.setNetListOut(&<output>)\n"
        "lines.NetListContractConfigurationLines(&\"tsctm110\", &<criteria>)\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getActionType()\n"
        "row1.hasCluster()\n"
        "row1.hasItem()\n"
        "row1.getItem()\n"
        "row1.hasSerialNumber()\n"
        "row1.getSerialNumber()\n"
        "row1.hasContractTerms()\n"
        "row1.getContractTerms()\n"
        "sql DELETE FROM SiteContract WHERE SITE=NULL AND OBJECT =N'I1' AND OBJECTNR =N'77' AND TERM =3 -> 0\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getActionType()\n"
        "row2.hasCluster()\n"
        "row2.getCluster()\n"
        "row2.hasItem()\n"
        "row2.getItem()\n"
        "row2.hasServiceContract1()\n"
        "row2.hasSerialNumber()\n"
        "row2.hasContractTerms()\n"
        "row2.hasEffectiveDate()\n"
        "row2.hasExpiryDate()\n"
        "row2.getServiceContract1()\n"
        "row2.getSerialNumber()\n"
        "row2.hasContractTerms()\n"
        "sql UPDATE SiteContract SET SITE = N'S2', OBJECT = N'I1', TERM = 0, upd_flag = 0 WHERE SITE =N'S2' "
        "AND CONTRACT =N'' AND OBJECT =N'I1' AND OBJECTNR =N''AND TERM = 0 -> 1\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row3.getActionType()\n"
        "row3.hasCluster()\n"
        "row3.getCluster()\n"
        "row3.hasItem()\n"
        "row3.hasSerialNumber()\n"
        "row3.hasContractTerms()\n"
        "sql DELETE FROM SiteContract WHERE SITE=N'S3' AND OBJECT =NULL AND TERM =0 -> 7\n"
        "rows.hasMoreElements()\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'SiteContract' -> 1\n",
    .counters = "ucount 1, icount 0, dcount 7",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: SiteContract -  0\"\r\n"
        "\"Rows updated: SiteContract -  1\"\r\n"
        "\"Rows deleted: SiteContract -  7\"\r\n"};

TEST(CopySiteContract, FollowsTheChangesOfGeneration8WithoutALookup) {
  CopyFixture copy("8");
  copy.database.AffectNext({1});
  Arrange(copy, kChangedPass8);

  const CopyResult result = copy.CopyTable(8, "SiteContract", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(), kTaken + kChangedPass8.trace + "sql UPDATE STATISTICS SiteContract\n" + kReleased);
  EXPECT_EQ(copy.Counters(), kChangedPass8.counters);
  EXPECT_EQ(copy.RunLog(), kChangedPass8.runLog);
}

TEST(CopySiteContract, KeepsTheLastOfSeveralTerms) {
  CopyFixture copy("3");
  const auto manager = AddLines(
      copy, kLines3,
      {copy.RowWith({{"ActionType", ""}, {"Configuration", "S2"}, {"ServiceContract", "C1"}, {"ContractTerms", 7}})});
  manager->Answers("List", Terms(copy, {3, 5}));
  copy.database.AffectNext({1, 0});

  copy.CopyTable(8, "SiteContract", 2);

  EXPECT_EQ(copy.JournalWithout({"query", "close", "event", "create", "session", "lines.I", "lines.N", "period",
                                 "parameter", "input", "output", "criteria", "sql UPDATE t", "row1.has", "row1.get"}),
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "lines.List(\"C1\", \"C1\", i16(0), i16(9999), empty, empty)\n"
            "terms.hasMoreElements()\n"
            "terms.nextElement()\n"
            "term.getContractTerms()\n"
            "row1.setContractTerms(i32(3))\n"
            "terms.hasMoreElements()\n"
            "terms.nextElement()\n"
            "term.getContractTerms()\n"
            "row1.setContractTerms(i32(5))\n"
            "terms.hasMoreElements()\n"
            "sql UPDATE SiteContract SET SITE = N'S2', CONTRACT = N'C1', TERM = 5, LINE = 0, upd_flag = 0 WHERE SITE "
            "=N'S2' AND CONTRACT =N'C1'AND TERM = 5AND LINE = 0 -> 0\n"
            "sql INSERT INTO SiteContract (SITE ,CONTRACT , TERM , LINE ,upd_flag )VALUES (N'S2',N'C1',5,0,0) -> 1\n"
            "rows.hasMoreElements()\n"
            "sql UPDATE STATISTICS SiteContract\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
}

TEST(CopySiteContract, LeavesALineItsOwnTermWhenTheLookupFindsNone) {
  CopyFixture copy("3");
  const auto manager = AddLines(copy, kLines3,
                                {copy.RowWith({{"ActionType", "d"},
                                               {"Configuration", "S2"},
                                               {"ServiceContract", "C1"},
                                               {"Line", 1},
                                               {"ContractTerms", 7}})});
  manager->Answers("List", Terms(copy, {}));

  copy.CopyTable(8, "SiteContract", 2);

  EXPECT_EQ(copy.JournalWithout({"query", "close", "event", "create", "session", "lines.I", "lines.N", "period",
                                 "parameter", "input", "output", "criteria", "sql UPDATE t", "row1.has", "row1.get"}),
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "lines.List(\"C1\", \"C1\", i16(0), i16(9999), i32(1), i32(1))\n"
            "terms.hasMoreElements()\n"
            "sql UPDATE SiteContract SET SITE = N'S2', CONTRACT = N'C1', TERM = 7, LINE = 1, upd_flag = 0 WHERE SITE "
            "=N'S2' AND CONTRACT =N'C1'AND TERM = 7AND LINE = 1 -> 1\n"
            "rows.hasMoreElements()\n"
            "sql UPDATE STATISTICS SiteContract\n");
}

TEST(CopySiteContract, CountsEveryRowThatADeletionRemoves) {
  const struct {
    std::int64_t removed;
    CopyResult result;
    const char* counters;
  } cases[] = {
      {0, CopyResult::Done, "ucount 0, icount 0, dcount 0"},
      {1, CopyResult::Done, "ucount 0, icount 0, dcount 1"},
      {40'000, CopyResult::Done, "ucount 0, icount 0, dcount 40000"},  // no 16 bits hold the count
      {2'147'483'647, CopyResult::Done, "ucount 0, icount 0, dcount 2147483647"},
      {2'147'483'648, CopyResult::Failed, "ucount 0, icount 0, dcount 0"},
  };
  for (const auto& [removed, expected, counters] : cases) {
    for (const auto& [generation, managerClass] : {std::pair("3", kLines3), {"8", kLines8}}) {
      SCOPED_TRACE(Text(generation) + ", " + std::to_string(removed));
      CopyFixture copy(generation);
      AddLines(copy, managerClass, {copy.RowWith({{"ActionType", "D"}})});
      copy.database.AffectNext({1, removed});

      const CopyResult result = copy.CopyTable(8, "SiteContract", 2);

      EXPECT_EQ(result, expected);
      EXPECT_EQ(copy.Counters(), counters);
    }
  }
}

TEST(CopySiteContract, AddsUpWhatItsDeletionsRemoveAndRaisesOverflowBeyond32Bits) {
  CopyFixture copy("3");
  AddLines(copy, kLines3, {copy.RowWith({{"ActionType", "D"}}), copy.RowWith({{"ActionType", "D"}})});
  copy.database.AffectNext({2'147'483'647, 1});

  const Text raised = Raised([&] { copy.CopySiteContract("SiteContract", 2); });

  EXPECT_EQ(raised,
            "106 Data copy: SiteContracts - Only Changed: Site contracts could not be copied from the ERP (generation "
            "3).");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 2147483647");
}

TEST(CopySiteContract, EncodesTheKeysOfADeletion) {
  const struct {
    const char* generation;
    const char* manager;
    RowFields fields;
    const char* deletion;
  } cases[] = {
      {"3", kLines3, {}, "sql DELETE FROM SiteContract WHERE SITE = N'' AND CONTRACT =N'' -> 1\n"},
      {"3",
       kLines3,
       {{"Configuration", "O'1"}, {"ServiceContract", "C'1"}},
       "sql DELETE FROM SiteContract WHERE SITE = N'O''1' AND CONTRACT =N'C''1' -> 1\n"},
      {"8", kLines8, {}, "sql DELETE FROM SiteContract WHERE SITE=NULL AND OBJECT =NULL AND TERM =0 -> 1\n"},
      {"8",
       kLines8,
       {{"Cluster", "O'1"}},
       "sql DELETE FROM SiteContract WHERE SITE=N'O''1' AND OBJECT =NULL AND TERM =0 -> 1\n"},
      {"8",
       kLines8,
       {{"Item", "I'1"}},
       "sql DELETE FROM SiteContract WHERE SITE=NULL AND OBJECT =N'I''1' AND TERM =0 -> 1\n"},
      {"8",
       kLines8,
       {{"SerialNumber", "7'7"}},
       "sql DELETE FROM SiteContract WHERE SITE=NULL AND OBJECT =NULL AND OBJECTNR =N'7''7' AND TERM =0 -> 1\n"},
      {"8",
       kLines8,
       {{"ContractTerms", "0'3"}},
       "sql DELETE FROM SiteContract WHERE SITE=NULL AND OBJECT =NULL AND TERM =0'3 -> 1\n"},
      {"8", kLines8, kLine8,
       "sql DELETE FROM SiteContract WHERE SITE=N'S2' AND OBJECT =N'I1' AND OBJECTNR =N'77' AND TERM =3 -> 1\n"},
  };
  for (const auto& [generation, managerClass, fields, deletion] : cases) {
    CopyFixture copy(generation);
    RowFields deleted = fields;
    deleted.emplace_back("ActionType", "D");
    AddLines(copy, managerClass, {copy.RowWith(deleted)});

    copy.CopySiteContract("SiteContract", 2);

    EXPECT_EQ(copy.JournalWithout({"row", "query", "close", "create", "session", "lines", "period", "parameter",
                                   "input", "output", "criteria", "sql UPDATE t"}),
              deletion);
  }
}

TEST(CopySiteContract, EndsItsFullCopyOfGeneration1AtTheCloseOfAManagerThatIsNotThere) {
  for (const char* generation : {"1", "2", ""}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);

    const CopyResult result = copy.CopyTable(8, "SiteContract", 1);

    EXPECT_EQ(result, CopyResult::Failed);
    EXPECT_EQ(copy.journal.Take(), kTaken + "session.addManager(&nothing)\n" + kReleased);
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Object variable not set\"\r\n"
              "\"ZenqayDBSync\",\"Object variable not set\"\r\n");
  }
}

TEST(CopySiteContract, EndsItsOnlyChangedPassOfGeneration1BehindTheCriteria) {
  for (const char* generation : {"1", "2", ""}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    AddLines(copy, kLines3, {});

    const CopyResult result = copy.CopyTable(8, "SiteContract", 2);

    EXPECT_EQ(result, CopyResult::Failed);
    EXPECT_EQ(copy.journal.Take(), kTaken + "session.addManager(&nothing)\n" + kCriteriaCreated + kReleased);
    EXPECT_EQ(copy.RunLog(),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Object variable not set\"\r\n"
              "\"Data copy: SiteContracts - Only Changed\",\"Site contracts could not be copied from .\"\r\n");
  }
}

TEST(CopySiteContract, Raises91And191UnderGeneration1) {
  CopyFixture copy("1");
  AddLines(copy, kLines3, {});

  EXPECT_EQ(Raised([&] { copy.CopySiteContract("SiteContract", 1); }), "91 ZenqayDBSync: Object variable not set");
  EXPECT_EQ(Raised([&] { copy.CopySiteContract("SiteContract", 2); }),
            "191 Data copy: SiteContracts - Only Changed: Site contracts could not be copied from .");
}

TEST(CopySiteContract, RegistersNothingWithoutASessionUnderGeneration1) {
  CopyFixture copy("1");
  copy.process.ErpSession.Release();

  const Text raised = Raised([&] { copy.CopySiteContract("SiteContract", 1); });

  EXPECT_EQ(raised, "91 ZenqayDBSync: Object variable not set");
  EXPECT_EQ(copy.journal.Take(), "");
}

/// One line of generation 3, with something that fails.
struct Failing {
  const char* what;
  std::function<void(CopyFixture&, ScriptedObject& manager)> arrange;
  Text journal;  // of the pass
  const char* raised;
};

TEST(CopySiteContract, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  ExpectFailureAtEachStep(
      kFullPass3, {&CopyFixture::CopySiteContract, "SiteContract", 1},
      "5100 Data copy: Site contracts: Site contracts could not be copied from the ERP (generation 3).");
}

TEST(CopySiteContract, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  ExpectFailureAtEachStep(
      kChangedPass8, {&CopyFixture::CopySiteContract, "SiteContract", 2},
      "5100 Data copy: SiteContracts - Only Changed: Site contracts could not be copied from the ERP (generation 8).");
}

TEST(CopySiteContract, FailsAtEachStepOfItsLookupToo) {
  const char* const kRaised =
      "600 Data copy: SiteContracts - Only Changed: Site contracts could not be copied from the ERP (generation 3).";
  const Text kCreated =
      "create Kv50QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager\n"
      "session.addManager(&<lines>)\n";
  const Text kListed = kCreated + kCriteriaCreated + kCriteriaFilled3;
  const Text kTermsAsked =
      "rows.hasMoreElements()\n"
      "rows.nextElement()\n"
      "row1.getActionType()\n"
      "row1.getServiceContract()\n"
      "row1.getServiceContract()\n"
      "row1.getLine()\n"
      "row1.getLine()\n"
      "lines.List(\"C1\", \"C1\", i16(0), i16(9999), empty, empty)\n";
  const Failing cases[] = {
      {"the creation, before the ERP has a name",
       [](CopyFixture& copy, ScriptedObject&) { copy.components.FailCreation(kLines3, kFailure); },
       "create Kv50QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager\n",
       "600 Data copy: SiteContracts - Only Changed: Site contracts could not be copied from ."},
      {"Initialize", [](CopyFixture&, ScriptedObject& manager) { manager.Fails("Initialize", kFailure); },
       kCreated + kCriteriaCreated + "lines.Initialize(&\"100\")\n", kRaised},
      {"the listing",
       [](CopyFixture&, ScriptedObject& manager) { manager.Fails("NetListContractConfigurationLines", kFailure); },
       kListed, kRaised},
      {"the terms lookup", [](CopyFixture&, ScriptedObject& manager) { manager.Fails("List", kFailure); },
       kListed + kTermsAsked, kRaised},
      {"a term that cannot be read",
       [](CopyFixture& copy, ScriptedObject& manager) {
         const auto term = copy.components.Make("term");
         term->Fails("getContractTerms", kFailure);
         manager.Answers("List", Object(copy.components.MakeEnumeration("terms", {Object(term)})));
       },
       kListed + kTermsAsked +
           "terms.hasMoreElements()\n"
           "terms.nextElement()\n"
           "term.getContractTerms()\n",
       kRaised},
      {"the update",
       [](CopyFixture& copy, ScriptedObject& manager) {
         manager.Answers("List", Terms(copy, {}));
         copy.database.FailOn("AND LINE", kFailure);
       },
       kListed + kTermsAsked +
           "terms.hasMoreElements()\n"
           "row1.getConfiguration()\n"
           "row1.hasServiceContract()\n"
           "row1.getServiceContract()\n"
           "row1.hasContractTerms()\n"
           "row1.hasLine()\n"
           "row1.hasEffectiveDate()\n"
           "row1.hasExpiryDate()\n"
           "row1.hasContractConfigurationLines()\n"
           "row1.getConfiguration()\n"
           "row1.getServiceContract()\n"
           "row1.hasContractTerms()\n"
           "row1.hasLine()\n"
           "sql UPDATE SiteContract SET SITE = N'S1', CONTRACT = N'C1', TERM = 0, LINE = 0, upd_flag = 0 WHERE SITE "
           "=N'S1' AND CONTRACT =N'C1'AND TERM = 0AND LINE = 0 -> 1\n",
       kRaised},
  };
  for (const auto& [what, arrange, journal, expected] : cases) {
    SCOPED_TRACE(what);
    CopyFixture copy("3");
    const auto manager = AddLines(
        copy, kLines3, {copy.RowWith({{"ActionType", "U"}, {"Configuration", "S1"}, {"ServiceContract", "C1"}})});
    arrange(copy, *manager);

    const Text raised = Raised([&] { copy.CopySiteContract("SiteContract", 2); });

    EXPECT_EQ(raised, expected);
    EXPECT_EQ(copy.journal.Take(), journal);
  }
}

TEST(CopySiteContract, DoesNotCountADeletionThatFails) {
  for (const auto& [generation, managerClass] : {std::pair("3", kLines3), {"8", kLines8}}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    AddLines(copy, managerClass, {copy.RowWith({{"ActionType", "D"}})});
    copy.database.FailOn("DELETE", kFailure);

    const Text raised = Raised([&] { copy.CopySiteContract("SiteContract", 2); });

    EXPECT_EQ(raised, Text("600 Data copy: SiteContracts - Only Changed: Site contracts could not be copied from the "
                           "ERP (generation ") +
                          generation + ").");
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
  }
}

TEST(CopySiteContract, LogsAFailureOfEachPassWithTheErpOfItsGeneration) {
  const struct {
    const char* generation;
    const char* manager;
    std::int16_t SyncMethod;
    const char* lastLine;
  } cases[] = {
      {"3", kLines3, 1,
       "\"Data copy: Site contracts\",\"Site contracts could not be copied from the ERP (generation 3).\""},
      {"8", kLines8, 1,
       "\"Data copy: Site contracts\",\"Site contracts could not be copied from the ERP (generation 8).\""},
      {"3", kLines3, 2,
       "\"Data copy: SiteContracts - Only Changed\",\"Site contracts could not be copied from the ERP (generation "
       "3).\""},
      {"8", kLines8, 2,
       "\"Data copy: SiteContracts - Only Changed\",\"Site contracts could not be copied from the ERP (generation "
       "8).\""},
  };
  for (const auto& [generation, managerClass, SyncMethod, lastLine] : cases) {
    SCOPED_TRACE(lastLine);
    CopyFixture copy(generation);
    AddLines(copy, managerClass, {})->Fails("Initialize", kFailure);

    const CopyResult result = copy.CopyTable(8, "SiteContract", SyncMethod);

    EXPECT_EQ(result, CopyResult::Failed);
    EXPECT_EQ(copy.RunLog(), Text("\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
                                  "\"adapter\",\"no connection\"\r\n") +
                                 lastLine + "\r\n");
  }
}

TEST(CopySiteContract, DoesNothingUnderAnotherSyncMethod) {
  for (const std::int16_t SyncMethod : std::initializer_list<std::int16_t>{0, 3, -1}) {
    CopyFixture copy("1");

    copy.CopySiteContract("SiteContract", SyncMethod);

    EXPECT_EQ(copy.journal.Take(), "");
  }
}

}  // namespace
}  // namespace zenqay
