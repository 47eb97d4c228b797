// What would stop a run, found by a plan in data that is made for it.
#include <gtest/gtest.h>

#include "job_site.h"

namespace zenqay {
namespace {

const Text kLocations = "home/erp/Kv40QTMtssmaLocations.csv";
const Text kHeader = "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n";

/// The lines of a plan that warn.
Text WarningsIn(const Text& said) {
  std::istringstream lines(said);
  Text warnings;
  for (Text line; std::getline(lines, line);) {
    if (line.starts_with("warning ")) warnings += line + "\n";
  }
  return warnings;
}

class PostgresPlanWarns : public testing::Test {
 protected:
  /// The warnings of a plan of the sites that are listed, and what zenqayctl ends with.
  Text PlanOf(const Text& listing) const {
    site.directory().Write(kLocations, kHeader + listing);
    const CtlRun plan = site.Run("plan demo");
    return WarningsIn(plan.said) + "= " + std::to_string(plan.status) + "\n";
  }

  const JobSite site{Engine::PostgreSql};
};

TEST_F(PostgresPlanWarns, OfATextThatIsTooLong) {
  EXPECT_EQ(PlanOf("A1," + Text(100, 'n') + ",C7\n"), "= 5\n");
  EXPECT_EQ(PlanOf("A1," + Text(100, 'n') + "  ,C7\n"), "= 5\n");  // the server drops the blanks
  EXPECT_EQ(PlanOf("A1," + Text(101, 'n') + ",C7\n"),
            "warning   SITE: SITE.description takes 100 characters, and gets another value (row Location=A1): the run "
            "would fail there\n= 1\n");
}

TEST_F(PostgresPlanWarns, OfNoTextThatHasNoLimit) {
  site.Execute("ALTER TABLE SITE ALTER DESCRIPTION TYPE varchar, ALTER CUSTOMER TYPE text");

  EXPECT_EQ(PlanOf("A1," + Text(1000, 'n') + "," + Text(9000, 'c') + "\n"), "= 5\n");
}

TEST_F(PostgresPlanWarns, OfANullWhereNoneMayBe) {
  site.Execute("ALTER TABLE SITE ALTER CUSTOMER SET NOT NULL");

  EXPECT_EQ(PlanOf("A1,North,\n"),
            "warning   SITE: SITE.customer must have a value, and gets none (row Location=A1): the run would fail "
            "there\n= 1\n");
  site.Execute("ALTER TABLE SITE ALTER CUSTOMER SET DEFAULT 'C''0'");
  EXPECT_EQ(PlanOf("A1,North,\n"), "= 5\n");
}

TEST_F(PostgresPlanWarns, OfAKeyThatWouldStandTwice) {
  site.Execute("CREATE UNIQUE INDEX once ON SITE (DESCRIPTION)");

  EXPECT_EQ(
      PlanOf("A1,North,C7\nA2,North,C7\n"),
      "warning   SITE: SITE.description must differ from row to row, and would stand twice (row Location=A2): the "
      "run would fail there\n= 1\n");
}

TEST_F(PostgresPlanWarns, OfAValueThatTheServerWorksOut) {
  site.Execute("ALTER TABLE SITE ADD COLUMN number serial");

  EXPECT_EQ(PlanOf("A1,North,C7\n"),
            "warning   SITE: number gets its value from the server where a row is inserted without one: the plan shows "
            "none\n= 5\n");
}

class PlanOfObjects : public testing::TestWithParam<Engine> {
 protected:
  Text Plan() const {
    const CtlRun plan = site.Run("plan demo");
    return WarningsIn(plan.said) + "= " + std::to_string(plan.status) + "\n";
  }

  const JobSite site{GetParam(), {.generation = "3", .tables = "\"OBJECT\", \"WARRANTIES\""}};
};

TEST_P(PlanOfObjects, WarnsOfAnObjectWithoutADeliveryDate) {
  const Text objects = "home/erp/Kv50QTMtscfgObjects.csv";
  site.directory().Write(objects, Replaced(site.directory().Read(objects), "2023-12-15,W1Q", ",W1Q"));

  EXPECT_EQ(Plan(),
            "warning   OBJECT: the warranty expiry fails at the first object that has a warranty and no delivery date, "
            "and the objects behind it get none; there are 1: CFG00001/PUMP/1\n= 1\n");
}

/// As the copy of a table of SQL Server's has it: the embedded engine takes every date.
TEST(SqlitePlanWarns, OfADateThatTheTableRefuses) {
  const JobSite site(Engine::Sqlite, {.generation = "3", .tables = "\"OBJECT\""});
  site.Execute("DROP TABLE OBJECT");
  site.Execute(
      "CREATE TABLE OBJECT (SITE TEXT, OBJECT TEXT, OBJECTNR INTEGER, OBJECTDESC TEXT, ITEM TEXT, ITEMDESC TEXT, "
      "SERIALNUMBER TEXT, WARRANTY TEXT, INSTALLATION_DATE DATE, DELIVERY_DATE DATE CONSTRAINT \"OBJECT.DELIVERY_DATE "
      "takes dates from 1753-01-01\" CHECK (DELIVERY_DATE IS NULL OR DELIVERY_DATE >= '1753-01-01'), WEXPIRY_DATE "
      "DATETIME, upd_flag INTEGER NOT NULL DEFAULT 0)");
  const Text objects = "home/erp/Kv50QTMtscfgObjects.csv";
  site.directory().Write(objects, Replaced(site.directory().Read(objects), "2023-12-15,W1Q", "1700-12-15,W1Q"));

  const CtlRun plan = site.Run("plan demo");

  EXPECT_EQ(WarningsIn(plan.said),
            "warning   OBJECT: OBJECT.DELIVERY_DATE takes dates from 1753-01-01, and gets another value (row "
            "Configuration=CFG00001, Object=PUMP, ObjectNumber=1): the run would fail there\n");
  EXPECT_EQ(plan.status, 1);
}

TEST_P(PlanOfObjects, WarnsOfCodesThatDifferByCaseWhereTheDatabaseTellsThemApart) {
  const Text objects = "home/erp/Kv50QTMtscfgObjects.csv";
  site.directory().Write(objects, Replaced(site.directory().Read(objects), "W1Q", "w1q"));

  EXPECT_EQ(Plan(),
            GetParam() == Engine::Sqlite
                ? "= 5\n"
                : "warning   OBJECT: objects that have the code of a warranty but for the case of letters: 1; the "
                  "database takes it for another, and computes no expiry for them\n= 5\n");
}

INSTANTIATE_TEST_SUITE_P(Sqlite, PlanOfObjects, testing::Values(Engine::Sqlite));
INSTANTIATE_TEST_SUITE_P(Postgres, PlanOfObjects, testing::Values(Engine::PostgreSql));

}  // namespace
}  // namespace zenqay
