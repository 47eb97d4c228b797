// Warranty: its row operation and its two passes, under the three generations. Only generations 3 and 8 have periods.
#include <gtest/gtest.h>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

constexpr const char* kWarranties1 = "Kv40QTMtssmaWarranties.WarrantiesManager";
constexpr const char* kWarranties3 = "Kv50QTMtsctmWarranties.WarrantiesManager";
constexpr const char* kWarranties8 = "Kv61QTMtsctmWarranties.WarrantiesManager";

const RuntimeError kFailure(500, "adapter", "no connection");

/// Every field that a warranty can have, under every generation.
const RowFields kEveryField = {
    {"Warranty", "W1"}, {"Description", "One year"}, {"NumberOfPeriods", 12}, {"PeriodUnit", 2}, {"WarrantyType", 1}};

TEST(ApplyWarrantyRow, WritesTheOptionalFieldsThatTheRowHasUnderGeneration3) {
  const struct {
    RowFields fields;
    const char* statements;
  } cases[] = {
      {kEveryField,
       "sql UPDATE WARRANTIES SET WARRANTY = N'W1', WDESCRIPTION = N'One year', NUMBER_OF_PERIODS = 12, PERIOD_UNIT = "
       "2, WARRANTY_TYPE = 1, upd_flag = 0 WHERE WARRANTY =N'W1' -> 0\n"
       "sql INSERT INTO WARRANTIES (WARRANTY ,WDESCRIPTION ,NUMBER_OF_PERIODS , PERIOD_UNIT , WARRANTY_TYPE ,upd_flag "
       ")VALUES (N'W1',N'One year',12,2,1,0) -> 1\n"},
      {{{"Warranty", "W1"}},
       "sql UPDATE WARRANTIES SET WARRANTY = N'W1', upd_flag = 0 WHERE WARRANTY =N'W1' -> 0\n"
       "sql INSERT INTO WARRANTIES (WARRANTY ,upd_flag )VALUES (N'W1',0) -> 1\n"},
      {{{"Warranty", "W1"}, {"Description", "One year"}},
       "sql UPDATE WARRANTIES SET WARRANTY = N'W1', WDESCRIPTION = N'One year', upd_flag = 0 WHERE WARRANTY =N'W1' -> "
       "0\n"
       "sql INSERT INTO WARRANTIES (WARRANTY ,WDESCRIPTION ,upd_flag )VALUES (N'W1',N'One year',0) -> 1\n"},
      {{{"Warranty", "W1"}, {"NumberOfPeriods", 12}},
       "sql UPDATE WARRANTIES SET WARRANTY = N'W1', NUMBER_OF_PERIODS = 12, upd_flag = 0 WHERE WARRANTY =N'W1' -> 0\n"
       "sql INSERT INTO WARRANTIES (WARRANTY ,NUMBER_OF_PERIODS ,upd_flag )VALUES (N'W1',12,0) -> 1\n"},
      {{{"Warranty", "W1"}, {"PeriodUnit", 2}},
       "sql UPDATE WARRANTIES SET WARRANTY = N'W1', PERIOD_UNIT = 2, upd_flag = 0 WHERE WARRANTY =N'W1' -> 0\n"
       "sql INSERT INTO WARRANTIES (WARRANTY , PERIOD_UNIT ,upd_flag )VALUES (N'W1',2,0) -> 1\n"},
      {{{"Warranty", "W1"}, {"WarrantyType", 1}},
       "sql UPDATE WARRANTIES SET WARRANTY = N'W1', WARRANTY_TYPE = 1, upd_flag = 0 WHERE WARRANTY =N'W1' -> 0\n"
       "sql INSERT INTO WARRANTIES (WARRANTY , WARRANTY_TYPE ,upd_flag )VALUES (N'W1',1,0) -> 1\n"},
  };
  for (const auto& [fields, statements] : cases) {
    CopyFixture copy("3");
    copy.database.AffectNext({0});

    copy.Apply(CopyFixture::ApplyWarrantyRow(), fields, "WARRANTIES");

    EXPECT_EQ(copy.JournalWithout({"row"}), statements);
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  }
}

TEST(ApplyWarrantyRow, WritesTheOptionalFieldsThatTheRowHasUnderGeneration8) {
  const struct {
    RowFields fields;
    const char* statements;
  } cases[] = {
      {kEveryField,
       "sql UPDATE WARRANTIES SET WARRANTY = N'W1', WDESCRIPTION = N'One year', NUMBER_OF_PERIODS = 12, PERIOD_UNIT = "
       "2, WARRANTY_TYPE = 1, upd_flag = 0 WHERE WARRANTY =N'W1' -> 0\n"
       "sql INSERT INTO WARRANTIES (WARRANTY ,WDESCRIPTION , NUMBER_OF_PERIODS , PERIOD_UNIT , WARRANTY_TYPE "
       ",upd_flag )VALUES (N'W1',N'One year',12,2,1,0) -> 1\n"},
      {{{"Warranty", "W1"}},
       "sql UPDATE WARRANTIES SET WARRANTY = N'W1', upd_flag = 0 WHERE WARRANTY =N'W1' -> 0\n"
       "sql INSERT INTO WARRANTIES (WARRANTY ,upd_flag )VALUES (N'W1',0) -> 1\n"},
      {{{"Warranty", "W1"}, {"Description", "One year"}},
       "sql UPDATE WARRANTIES SET WARRANTY = N'W1', WDESCRIPTION = N'One year', upd_flag = 0 WHERE WARRANTY =N'W1' -> "
       "0\n"
       "sql INSERT INTO WARRANTIES (WARRANTY ,WDESCRIPTION ,upd_flag )VALUES (N'W1',N'One year',0) -> 1\n"},
      {{{"Warranty", "W1"}, {"NumberOfPeriods", 12}},
       "sql UPDATE WARRANTIES SET WARRANTY = N'W1', NUMBER_OF_PERIODS = 12, upd_flag = 0 WHERE WARRANTY =N'W1' -> 0\n"
       "sql INSERT INTO WARRANTIES (WARRANTY , NUMBER_OF_PERIODS ,upd_flag )VALUES (N'W1',12,0) -> 1\n"},
      {{{"Warranty", "W1"}, {"PeriodUnit", 2}},
       "sql UPDATE WARRANTIES SET WARRANTY = N'W1', PERIOD_UNIT = 2, upd_flag = 0 WHERE WARRANTY =N'W1' -> 0\n"
       "sql INSERT INTO WARRANTIES (WARRANTY , PERIOD_UNIT ,upd_flag )VALUES (N'W1',2,0) -> 1\n"},
      {{{"Warranty", "W1"}, {"WarrantyType", 1}},
       "sql UPDATE WARRANTIES SET WARRANTY = N'W1', WARRANTY_TYPE = 1, upd_flag = 0 WHERE WARRANTY =N'W1' -> 0\n"
       "sql INSERT INTO WARRANTIES (WARRANTY , WARRANTY_TYPE ,upd_flag )VALUES (N'W1',1,0) -> 1\n"},
  };
  for (const auto& [fields, statements] : cases) {
    CopyFixture copy("8");
    copy.database.AffectNext({0});

    copy.Apply(CopyFixture::ApplyWarrantyRow(), fields, "WARRANTIES");

    EXPECT_EQ(copy.JournalWithout({"row"}), statements);
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  }
}

TEST(ApplyWarrantyRow, AsksForNoPeriodsUnderGeneration1) {
  CopyFixture copy("1");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplyWarrantyRow(), kEveryField, "WARRANTIES");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getWarranty()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.getWarranty()\n"
            "sql UPDATE WARRANTIES SET WARRANTY = N'W1', WDESCRIPTION = N'One year', upd_flag = 0 WHERE WARRANTY "
            "=N'W1' -> 0\n"
            "row1.hasDescription()\n"
            "row1.getWarranty()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "sql INSERT INTO WARRANTIES (WARRANTY ,WDESCRIPTION ,upd_flag )VALUES (N'W1',N'One year',0) -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
}

TEST(ApplyWarrantyRow, LeavesAnAbsentDescriptionOutOfBothStatementsUnderGeneration1) {
  CopyFixture copy("1");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplyWarrantyRow(), {{"Warranty", "W1"}}, "WARRANTIES");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getWarranty()\n"
            "row1.hasDescription()\n"
            "row1.getWarranty()\n"
            "sql UPDATE WARRANTIES SET WARRANTY = N'W1', upd_flag = 0 WHERE WARRANTY =N'W1' -> 0\n"
            "row1.hasDescription()\n"
            "row1.getWarranty()\n"
            "row1.hasDescription()\n"
            "sql INSERT INTO WARRANTIES (WARRANTY ,upd_flag )VALUES (N'W1',0) -> 1\n");
}

TEST(ApplyWarrantyRow, AsksForEveryFieldAtEachUseUnderGenerations3And8) {
  const struct {
    const char* generation;
    const char* insert;
  } cases[] = {
      {"3",
       "sql INSERT INTO WARRANTIES (WARRANTY ,WDESCRIPTION ,NUMBER_OF_PERIODS , PERIOD_UNIT , WARRANTY_TYPE ,upd_flag "
       ")VALUES (N'W1',N'One year',12,2,1,0) -> 1\n"},
      {"8",
       "sql INSERT INTO WARRANTIES (WARRANTY ,WDESCRIPTION , NUMBER_OF_PERIODS , PERIOD_UNIT , WARRANTY_TYPE "
       ",upd_flag )VALUES (N'W1',N'One year',12,2,1,0) -> 1\n"},
  };
  for (const auto& [generation, insert] : cases) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({0});

    copy.Apply(CopyFixture::ApplyWarrantyRow(), kEveryField, "WARRANTIES");

    EXPECT_EQ(copy.journal.Take(),
              Text("row1.getWarranty()\n"
                   "row1.hasDescription()\n"
                   "row1.getDescription()\n"
                   "row1.hasNumberOfPeriods()\n"
                   "row1.getNumberOfPeriods()\n"
                   "row1.hasPeriodUnit()\n"
                   "row1.getPeriodUnit()\n"
                   "row1.hasWarrantyType()\n"
                   "row1.getWarrantyType()\n"
                   "row1.getWarranty()\n"
                   "sql UPDATE WARRANTIES SET WARRANTY = N'W1', WDESCRIPTION = N'One year', NUMBER_OF_PERIODS = 12, "
                   "PERIOD_UNIT = 2, WARRANTY_TYPE = 1, upd_flag = 0 WHERE WARRANTY =N'W1' -> 0\n"
                   "row1.hasDescription()\n"
                   "row1.hasNumberOfPeriods()\n"
                   "row1.hasPeriodUnit()\n"
                   "row1.hasWarrantyType()\n"
                   "row1.getWarranty()\n"
                   "row1.hasDescription()\n"
                   "row1.getDescription()\n"
                   "row1.hasNumberOfPeriods()\n"
                   "row1.getNumberOfPeriods()\n"
                   "row1.hasPeriodUnit()\n"
                   "row1.getPeriodUnit()\n"
                   "row1.hasWarrantyType()\n"
                   "row1.getWarrantyType()\n") +
                  insert);
  }
}

TEST(ApplyWarrantyRow, AsksAnAbsentFieldForItsPresenceAlone) {
  for (const char* generation : {"3", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({0});

    copy.Apply(CopyFixture::ApplyWarrantyRow(), {{"Warranty", "W1"}}, "WARRANTIES");

    EXPECT_EQ(copy.journal.Take(),
              "row1.getWarranty()\n"
              "row1.hasDescription()\n"
              "row1.hasNumberOfPeriods()\n"
              "row1.hasPeriodUnit()\n"
              "row1.hasWarrantyType()\n"
              "row1.getWarranty()\n"
              "sql UPDATE WARRANTIES SET WARRANTY = N'W1', upd_flag = 0 WHERE WARRANTY =N'W1' -> 0\n"
              "row1.hasDescription()\n"
              "row1.hasNumberOfPeriods()\n"
              "row1.hasPeriodUnit()\n"
              "row1.hasWarrantyType()\n"
              "row1.getWarranty()\n"
              "row1.hasDescription()\n"
              "row1.hasNumberOfPeriods()\n"
              "row1.hasPeriodUnit()\n"
              "row1.hasWarrantyType()\n"
              "sql INSERT INTO WARRANTIES (WARRANTY ,upd_flag )VALUES (N'W1',0) -> 1\n");
  }
}

TEST(ApplyWarrantyRow, RewritesTheKeyWithItselfAndInsertsNothingWhenTheUpdateFoundTheRow) {
  for (const std::int64_t touched : {1, 5}) {
    SCOPED_TRACE(touched);
    CopyFixture copy("3");
    copy.database.AffectNext({touched});

    copy.Apply(CopyFixture::ApplyWarrantyRow(), {{"Warranty", "W1"}}, "WARRANTIES");

    EXPECT_EQ(copy.JournalWithout({"row"}),
              "sql UPDATE WARRANTIES SET WARRANTY = N'W1', upd_flag = 0 WHERE WARRANTY =N'W1' -> " +
                  std::to_string(touched) + "\n");
    EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 0");
  }
}

TEST(ApplyWarrantyRow, CountsAnInsertOnlyWhenItReportsExactlyOneRow) {
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
    CopyFixture copy("3");
    copy.database.AffectNext({0, reported});

    copy.Apply(CopyFixture::ApplyWarrantyRow(), {{"Warranty", "W1"}}, "WARRANTIES");

    EXPECT_EQ(copy.Counters(), counters);
  }
}

TEST(ApplyWarrantyRow, PutsPeriodsInBareAsTheyCome) {
  CopyFixture copy("8");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplyWarrantyRow(),
             {{"Warranty", "W'1"}, {"NumberOfPeriods", 2.5}, {"PeriodUnit", "0'5"}, {"WarrantyType", Value()}},
             "WARRANTIES");

  EXPECT_EQ(copy.JournalWithout({"row"}),
            "sql UPDATE WARRANTIES SET WARRANTY = N'W''1', NUMBER_OF_PERIODS = 2.5, PERIOD_UNIT = 0'5, WARRANTY_TYPE = "
            ", upd_flag = 0 WHERE WARRANTY =N'W''1' -> 0\n"
            "sql INSERT INTO WARRANTIES (WARRANTY , NUMBER_OF_PERIODS , PERIOD_UNIT , WARRANTY_TYPE ,upd_flag )VALUES "
            "(N'W''1',2.5,0'5,,0) -> 1\n");
}

TEST(ApplyWarrantyRow, LetsNoNullIntoALiteral) {
  for (const char* field : {"Warranty", "Description"}) {
    SCOPED_TRACE(field);
    CopyFixture copy("3");
    RowFields fields = kEveryField;
    for (auto& [name, value] : fields) {
      if (name == field) value = Null();
    }

    const Text raised = Raised([&] { copy.Apply(CopyFixture::ApplyWarrantyRow(), fields, "WARRANTIES"); });

    EXPECT_EQ(raised, "94 ZenqayDBSync: Invalid use of Null");
    EXPECT_EQ(copy.JournalWithout({"row"}), "");
  }
}

const Text kTaken =
    "query SELECT * FROM tstables WHERE tablename = N'Warranties'\n"
    "close recordset\n"
    "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Warranties' -> 1\n"
    "event DataCopyStarted(time(10:11:12 AM), i16(7))\n";
const Text kReleased = "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Warranties' -> 1\n";
const Text kCriteriaCreated =
    "create NetListSelectionCriteria.NetListSelectionCriteria\n"
    "create NetListSelectionCriteria.NetListIn\n"
    "create NetListSelectionCriteria.NetListOut\n"
    "create NetListSelectionCriteria.NetListPeriod\n"
    "create NetListSelectionCriteria.NetListParameter\n";

TEST(CopyWarranty, CopiesTheWarrantiesOfGeneration1InFull) {
  CopyFixture copy("1");
  copy.AddManager(kWarranties1, "warranties", {copy.RowWith(kEveryField), copy.RowWith({{"Warranty", "W2"}})});
  copy.database.AffectNext({1, 1, 0});

  const CopyResult result = copy.CopyTable(7, "Warranties", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            kTaken +
                "create Kv40QTMtssmaWarranties.WarrantiesManager\n"
                "session.addManager(&<warranties>)\n"
                "warranties.Initialize(&\"100\")\n"
                "warranties.List(\"\", high(3))\n"
                "sql UPDATE Warranties SET upd_flag = 1 \n"
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row1.getWarranty()\n"
                "row1.hasDescription()\n"
                "row1.getDescription()\n"
                "row1.getWarranty()\n"
                "sql UPDATE Warranties SET WARRANTY = N'W1', WDESCRIPTION = N'One year', upd_flag = 0 WHERE WARRANTY "
                "=N'W1' -> 1\n"
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row2.getWarranty()\n"
                "row2.hasDescription()\n"
                "row2.getWarranty()\n"
                "sql UPDATE Warranties SET WARRANTY = N'W2', upd_flag = 0 WHERE WARRANTY =N'W2' -> 0\n"
                "row2.hasDescription()\n"
                "row2.getWarranty()\n"
                "row2.hasDescription()\n"
                "sql INSERT INTO Warranties (WARRANTY ,upd_flag )VALUES (N'W2',0) -> 1\n"
                "rows.hasMoreElements()\n"
                "sql DELETE FROM Warranties WHERE upd_flag = 1\n"
                "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
                "N'Warranties' -> 1\n"
                "warranties.Close()\n"
                "sql UPDATE STATISTICS Warranties\n" +
                kReleased);
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 2, dcount 0");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Warranties -  2\"\r\n");
}

const EntityPass kFullPass3 = {
    .generation = "3",
    .managerClass = kWarranties3,
    .managerName = "warranties",
    .rows = {kEveryField},
    .trace =
        "create Kv50QTMtsctmWarranties.WarrantiesManager\n"
        "session.addManager(&<warranties>)\n"
        "warranties.Initialize(&\"100\")\n"
        "warranties.List(\"\", high(16))\n"
        "sql UPDATE Warranties SET upd_flag = 1 \n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getWarranty()\n"
        "row1.hasDescription()\n"
        "row1.getDescription()\n"
        "row1.hasNumberOfPeriods()\n"
        "row1.getNumberOfPeriods()\n"
        "row1.hasPeriodUnit()\n"
        "row1.getPeriodUnit()\n"
        "row1.hasWarrantyType()\n"
        "row1.getWarrantyType()\n"
        "row1.getWarranty()\n"
        "sql UPDATE Warranties SET WARRANTY = N'W1', WDESCRIPTION = N'One year', NUMBER_OF_PERIODS = 12, "
        "PERIOD_UNIT = 2, WARRANTY_TYPE = 1, upd_flag = 0 WHERE WARRANTY =N'W1' -> 1\n"
        "rows.hasMoreElements()\n"
        "sql DELETE FROM Warranties WHERE upd_flag = 1\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Warranties' -> 1\n"
        "warranties.Close()\n",
    .counters = "ucount 0, icount 1, dcount 0",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Warranties -  1\"\r\n"};

TEST(CopyWarranty, CopiesTheWarrantiesOfGeneration3InFullWithTheExpiryBehindThem) {
  CopyFixture copy("3");
  copy.database.AffectNext({1});
  Arrange(copy, kFullPass3);

  const CopyResult result = copy.CopyTable(7, "Warranties", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            kTaken + kFullPass3.trace +
                "sql UPDATE STATISTICS Warranties\n"
                "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
                "close recordset\n" +
                kReleased);
  EXPECT_EQ(copy.Counters(), kFullPass3.counters);
  EXPECT_EQ(copy.RunLog(), kFullPass3.runLog);
}

TEST(CopyWarranty, CopiesTheWarrantiesOfGeneration8InFullOnOracle) {
  CopyFixture copy("8", /*databasePlatform=*/2);
  copy.AddManager(kWarranties8, "warranties", {copy.RowWith({{"Warranty", "W1"}, {"Description", ""}})});
  copy.database.AffectNext({1, 0});

  const CopyResult result = copy.CopyTable(7, "Warranties", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            kTaken +
                "create Kv61QTMtsctmWarranties.WarrantiesManager\n"
                "session.addManager(&<warranties>)\n"
                "warranties.Initialize(&\"100\")\n"
                "warranties.List(\"\", high(16))\n"
                "sql UPDATE Warranties SET upd_flag = 1 \n"
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row1.getWarranty()\n"
                "row1.hasDescription()\n"
                "row1.getDescription()\n"
                "row1.hasNumberOfPeriods()\n"
                "row1.hasPeriodUnit()\n"
                "row1.hasWarrantyType()\n"
                "row1.getWarranty()\n"
                "sql UPDATE Warranties SET WARRANTY = N'W1', WDESCRIPTION = N' ', upd_flag = 0 WHERE WARRANTY =N'W1' "
                "-> 0\n"
                "row1.hasDescription()\n"
                "row1.hasNumberOfPeriods()\n"
                "row1.hasPeriodUnit()\n"
                "row1.hasWarrantyType()\n"
                "row1.getWarranty()\n"
                "row1.hasDescription()\n"
                "row1.getDescription()\n"
                "row1.hasNumberOfPeriods()\n"
                "row1.hasPeriodUnit()\n"
                "row1.hasWarrantyType()\n"
                "sql INSERT INTO Warranties (WARRANTY ,WDESCRIPTION ,upd_flag )VALUES (N'W1',N' ',0) -> 1\n"
                "rows.hasMoreElements()\n"
                "sql DELETE FROM Warranties WHERE upd_flag = 1\n"
                "sql UPDATE tstables SET lutm  = TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS') WHERE "
                "tablename = N'Warranties' -> 1\n"
                "warranties.Close()\n" +
                kReleased);
}

TEST(CopyWarranty, FollowsTheChangesOfGeneration1) {
  CopyFixture copy("1");
  copy.AddManager(kWarranties1, "warranties",
                  {copy.RowWith({{"ActionType", "U"}, {"Warranty", "W1"}, {"Description", "One year"}}),
                   copy.RowWith({{"ActionType", "D"}, {"Warranty", "W2"}})});

  const CopyResult result = copy.CopyTable(7, "Warranties", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            kTaken + "create Kv40QTMtssmaWarranties.WarrantiesManager\n" + "session.addManager(&<warranties>)\n" +
                kCriteriaCreated +
                "warranties.Initialize(&\"100\")\n"
                "query SELECT * FROM tstables WHERE tablename = N'Warranties'\n"
                "close recordset\n"
                "period.setFrom(<object>)\n"
                "period.setTo(<object>)\n"
                "criteria.setNetListPeriod(&<period>)\n"
                "parameter.setFieldName(\"cgua\")\n"
                "parameter.setFrom(\"\")\n"
                "parameter.setTo(high(3))\n"
                "input.addNetListParameter(&<parameter>)\n"
                "criteria.setNetListIn(&<input>)\n"
                "output.addFieldNameWithoutOld(\"cgua\")\n"
                "output.addFieldNameWithoutOld(\"desc\")\n"
                "criteria.setNetListOut(&<output>)\n"
                "warranties.NetListWarranties(&\"tssma130\", &<criteria>)\n"
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row1.getActionType()\n"
                "row1.getWarranty()\n"
                "row1.hasDescription()\n"
                "row1.getDescription()\n"
                "row1.getWarranty()\n"
                "sql UPDATE Warranties SET WARRANTY = N'W1', WDESCRIPTION = N'One year', upd_flag = 0 WHERE WARRANTY "
                "=N'W1' -> 1\n"
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row2.getActionType()\n"
                "row2.getWarranty()\n"
                "sql DELETE FROM Warranties WHERE WARRANTY=N'W2'\n"
                "rows.hasMoreElements()\n"
                "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
                "N'Warranties' -> 1\n"
                "sql UPDATE STATISTICS Warranties\n" +
                kReleased);
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 1");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Warranties -  0\"\r\n"
            "\"Rows updated: Warranties -  1\"\r\n"
            "\"Rows deleted: Warranties -  1\"\r\n");
}

const EntityPass kChangedPass3 = {
    .generation = "3",
    .managerClass = kWarranties3,
    .managerName = "warranties",
    .rows = {{{"ActionType", "D"}, {"Warranty", "W1"}},
             {{"ActionType", "I"}, {"Warranty", "W2"}, {"NumberOfPeriods", 1}}},
    .counts = {0},
    .trace =
        "create Kv50QTMtsctmWarranties.WarrantiesManager\n"
        "session.addManager(&<warranties>)\n" +
        kCriteriaCreated +
        "warranties.Initialize(&\"100\")\n"
        "query SELECT * FROM tstables WHERE tablename = N'Warranties'\n"
        "close recordset\n"
        "period.setFrom(<object>)\n"
        "period.setTo(<object>)\n"
        "criteria.setNetListPeriod(&<period>)\n"
        "parameter.setFieldName(\"cwte\")\n"
        "parameter.setFrom(\"\")\n"
        "parameter.setTo(high(16))\n"
        "input.addNetListParameter(&<parameter>)\n"
        "criteria.setNetListIn(&<input>)\n"
        "output.addFieldNameWithoutOld(\"cwte\")\n"
        "output.addFieldNameWithoutOld(\"desc\")\n"
        "output.addFieldNameWithoutOld(\"nrpe\")\n"
        "output.addFieldNameWithoutOld(\"peru\")\n"
        "output.addFieldNameWithoutOld(\"wttp\")\n"
        "criteria.setNetListOut(&<output>)\n"
        "warranties.NetListWarranties(&\"tscfg020\", &<criteria>)\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getActionType()\n"
        "row1.getWarranty()\n"
        "sql DELETE FROM Warranties WHERE WARRANTY=N'W1'\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getActionType()\n"
        "row2.getWarranty()\n"
        "row2.hasDescription()\n"
        "row2.hasNumberOfPeriods()\n"
        "row2.getNumberOfPeriods()\n"
        "row2.hasPeriodUnit()\n"
        "row2.hasWarrantyType()\n"
        "row2.getWarranty()\n"
        "sql UPDATE Warranties SET WARRANTY = N'W2', NUMBER_OF_PERIODS = 1, upd_flag = 0 WHERE WARRANTY "
        "=N'W2' -> 0\n"
        "row2.hasDescription()\n"
        "row2.hasNumberOfPeriods()\n"
        "row2.hasPeriodUnit()\n"
        "row2.hasWarrantyType()\n"
        "row2.getWarranty()\n"
        "row2.hasDescription()\n"
        "row2.hasNumberOfPeriods()\n"
        "row2.getNumberOfPeriods()\n"
        "row2.hasPeriodUnit()\n"
        "row2.hasWarrantyType()\n"
        "sql INSERT INTO Warranties (WARRANTY ,NUMBER_OF_PERIODS ,upd_flag )VALUES (N'W2',1,0) -> 1\n"
        "rows.hasMoreElements()\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Warranties' -> 1\n",
    .counters = "ucount 0, icount 1, dcount 1",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Warranties -  1\"\r\n"
        "\"Rows deleted: Warranties -  1\"\r\n"};

TEST(CopyWarranty, FollowsTheChangesOfGeneration3WithTheExpiryBehindThem) {
  CopyFixture copy("3");
  copy.database.AffectNext({1});
  Arrange(copy, kChangedPass3);

  const CopyResult result = copy.CopyTable(7, "Warranties", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            kTaken + kChangedPass3.trace +
                "sql UPDATE STATISTICS Warranties\n"
                "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
                "close recordset\n" +
                kReleased);
  EXPECT_EQ(copy.Counters(), kChangedPass3.counters);
  EXPECT_EQ(copy.RunLog(), kChangedPass3.runLog);
}

TEST(CopyWarranty, FollowsTheChangesOfGeneration8) {
  CopyFixture copy("8");
  copy.AddManager(kWarranties8, "warranties", {copy.RowWith({{"ActionType", "D"}, {"Warranty", "W1"}})});

  const CopyResult result = copy.CopyTable(7, "Warranties", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            kTaken + "create Kv61QTMtsctmWarranties.WarrantiesManager\n" + "session.addManager(&<warranties>)\n" +
                kCriteriaCreated +
                "warranties.Initialize(&\"100\")\n"
                "query SELECT * FROM tstables WHERE tablename = N'Warranties'\n"
                "close recordset\n"
                "period.setFrom(<object>)\n"
                "period.setTo(<object>)\n"
                "criteria.setNetListPeriod(&<period>)\n"
                "parameter.setFieldName(\"cwte\")\n"
                "parameter.setFrom(\"\")\n"
                "parameter.setTo(high(16))\n"
                "input.addNetListParameter(&<parameter>)\n"
                "criteria.setNetListIn(&<input>)\n"
                "output.addFieldNameWithoutOld(\"cwte\")\n"
                "output.addFieldNameWithoutOld(\"desc\")\n"
                "output.addFieldNameWithoutOld(\"nrpe\")\n"
                "output.addFieldNameWithoutOld(\"peru\")\n"
                "output.addFieldNameWithoutOld(\"wttp\")\n"
                "criteria.setNetListOut(&<output>)\n"
                "warranties.NetListWarranties(&\"tsctm020\", &<criteria>)\n"
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row1.getActionType()\n"
                "row1.getWarranty()\n"
                "sql DELETE FROM Warranties WHERE WARRANTY=N'W1'\n"
                "rows.hasMoreElements()\n"
                "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
                "N'Warranties' -> 1\n"
                "sql UPDATE STATISTICS Warranties\n" +
                kReleased);
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 1");
}

TEST(CopyWarranty, DeletesOnATrimmedCapitalDAloneWhateverWasThere) {
  CopyFixture copy("1");
  copy.AddManager(kWarranties1, "warranties",
                  {copy.RowWith({{"ActionType", "D"}, {"Warranty", "gone"}}),  // no count is asked for
                   copy.RowWith({{"ActionType", "  D "}, {"Warranty", "O'2"}}),
                   copy.RowWith({{"ActionType", "d"}, {"Warranty", "W3"}}),
                   copy.RowWith({{"ActionType", "DD"}, {"Warranty", "W4"}}),
                   copy.RowWith({{"ActionType", ""}, {"Warranty", "W5"}}), copy.RowWith({{"Warranty", "W6"}}),
                   copy.RowWith({{"ActionType", "\tD"}, {"Warranty", "W7"}})});  // blanks alone are trimmed

  const CopyResult result = copy.CopyTable(7, "Warranties", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.JournalWithout({"row", "query", "close", "event", "create", "session", "warranties", "period",
                                 "parameter", "input", "output", "criteria", "sql UPDATE t"}),
            "sql DELETE FROM Warranties WHERE WARRANTY=N'gone'\n"
            "sql DELETE FROM Warranties WHERE WARRANTY=N'O''2'\n"
            "sql UPDATE Warranties SET WARRANTY = N'W3', upd_flag = 0 WHERE WARRANTY =N'W3' -> 1\n"
            "sql UPDATE Warranties SET WARRANTY = N'W4', upd_flag = 0 WHERE WARRANTY =N'W4' -> 1\n"
            "sql UPDATE Warranties SET WARRANTY = N'W5', upd_flag = 0 WHERE WARRANTY =N'W5' -> 1\n"
            "sql UPDATE Warranties SET WARRANTY = N'W6', upd_flag = 0 WHERE WARRANTY =N'W6' -> 1\n"
            "sql UPDATE Warranties SET WARRANTY = N'W7', upd_flag = 0 WHERE WARRANTY =N'W7' -> 1\n"
            "sql UPDATE STATISTICS Warranties\n");
  EXPECT_EQ(copy.Counters(), "ucount 5, icount 0, dcount 2");
}

TEST(CopyWarranty, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  ExpectFailureAtEachStep(kFullPass3, {&CopyFixture::CopyWarranty, "Warranties", 1},
                          "5100 Data copy: Warranties: Warranties could not be copied from the ERP (generation 3).");
}

TEST(CopyWarranty, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  ExpectFailureAtEachStep(
      kChangedPass3, {&CopyFixture::CopyWarranty, "Warranties", 2},
      "5100 Data copy: Warranties - Only Changed: Warranties could not be copied from the ERP (generation 3).");
}

TEST(CopyWarranty, LeavesItsFailurePathAtTheCloseThatFailsToo) {
  CopyFixture copy("3");
  const auto manager = copy.AddManager(kWarranties3, "warranties");
  manager->Fails("List", kFailure).Fails("Close", RuntimeError(501, "adapter", "still busy"));

  const Text raised = Raised([&] { copy.CopyWarranty("Warranties", 1); });

  EXPECT_EQ(raised, "501 adapter: still busy");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"adapter\",\"no connection\"\r\n");
}

TEST(CopyWarranty, FailsWhereTheComponentIsMissing) {
  const struct {
    std::int16_t SyncMethod;
    const char* raised;
  } cases[] = {
      {1, "91 ZenqayDBSync: Object variable not set"},  // Close, in the failure path, has no manager
      {2, "529 Data copy: Warranties - Only Changed: Warranties could not be copied from ."},
  };
  for (const auto& [SyncMethod, expected] : cases) {
    CopyFixture copy("3");

    const Text raised = Raised([&, method = SyncMethod] { copy.CopyWarranty("Warranties", method); });

    EXPECT_EQ(raised, expected);
    EXPECT_EQ(copy.journal.Take(), "create Kv50QTMtsctmWarranties.WarrantiesManager\n");
  }
}

TEST(CopyWarranty, FailsAtTheFirstQuestionToAChangeListingThatIsNothing) {
  CopyFixture copy("3");
  copy.AddManager(kWarranties3, "warranties")->Answers("NetListWarranties", Object());

  const Text raised = Raised([&] { copy.CopyWarranty("Warranties", 2); });

  EXPECT_EQ(raised,
            "191 Data copy: Warranties - Only Changed: Warranties could not be copied from the ERP (generation 3).");
}

TEST(CopyWarranty, LogsAFailureOfEachPassWithTheErpOfItsGeneration) {
  const struct {
    const char* generation;
    const char* manager;
    std::int16_t SyncMethod;
    const char* lastLine;
  } cases[] = {
      {"1", kWarranties1, 1,
       "\"Data copy: Warranties\",\"Warranties could not be copied from the ERP (generation 1).\""},
      {"3", kWarranties3, 1,
       "\"Data copy: Warranties\",\"Warranties could not be copied from the ERP (generation 3).\""},
      {"8", kWarranties8, 1,
       "\"Data copy: Warranties\",\"Warranties could not be copied from the ERP (generation 8).\""},
      {"1", kWarranties1, 2,
       "\"Data copy: Warranties - Only Changed\",\"Warranties could not be copied from the ERP (generation 1).\""},
      {"3", kWarranties3, 2,
       "\"Data copy: Warranties - Only Changed\",\"Warranties could not be copied from the ERP (generation 3).\""},
      {"8", kWarranties8, 2,
       "\"Data copy: Warranties - Only Changed\",\"Warranties could not be copied from the ERP (generation 8).\""},
  };
  for (const auto& [generation, managerClass, SyncMethod, lastLine] : cases) {
    SCOPED_TRACE(lastLine);
    CopyFixture copy(generation);
    copy.AddManager(managerClass, "warranties")->Fails("Initialize", kFailure);

    const CopyResult result = copy.CopyTable(7, "Warranties", SyncMethod);

    EXPECT_EQ(result, CopyResult::Failed);
    EXPECT_EQ(copy.RunLog(), Text("\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
                                  "\"adapter\",\"no connection\"\r\n") +
                                 lastLine + "\r\n");
  }
}

TEST(CopyWarranty, FailsUnderAGenerationThatHasNoWarranties) {
  const struct {
    std::int16_t SyncMethod;
    Text journal;
    const char* raised;
  } cases[] = {
      {1, "session.addManager(&nothing)\n", "91 ZenqayDBSync: Object variable not set"},
      {2, "session.addManager(&nothing)\n" + kCriteriaCreated,
       "191 Data copy: Warranties - Only Changed: Warranties could not be copied from ."},
  };
  for (const auto& [SyncMethod, journal, expected] : cases) {
    CopyFixture copy("2");
    copy.AddManager(kWarranties3, "warranties");

    const Text raised = Raised([&, method = SyncMethod] { copy.CopyWarranty("Warranties", method); });

    EXPECT_EQ(raised, expected);
    EXPECT_EQ(copy.journal.Take(), journal);
  }
}

TEST(CopyWarranty, DoesNothingUnderAnotherSyncMethod) {
  for (const std::int16_t SyncMethod : std::initializer_list<std::int16_t>{0, 3, -1}) {
    CopyFixture copy("3");
    copy.AddManager(kWarranties3, "warranties", {copy.RowWith(kEveryField)});

    copy.CopyWarranty("Warranties", SyncMethod);

    EXPECT_EQ(copy.journal.Take(), "");
  }
}

}  // namespace
}  // namespace zenqay
