// A plan and the run right after it: what the run changes is what the plan said, row by row and field by field, for
// random exports of the demo.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <span>

#include "plan_facts.h"
#include "random_exports.h"

namespace zenqay {
namespace {

using Json = nlohmann::json;

constexpr TestedTable kTables1[] = {
    {"SITE", "SITE", "DESCRIPTION, CUSTOMER"},
    {"PRODUCT", "PRODUCT", "DESCRIPTION, SITE, CONTRACT, EFFECTIVE_DATE, EXPIRY_DATE, WARRANTY, WEXPIRY_DATE"},
    {"PROBLEM", "PROBLEM", "DESCRIPTION, CALLTYPE"},
    {"PRIORITY", "PRIORITY", "DESCRIPTION"},
    {"SYMPTOM", "SYMPTOM", "DESCRIPTION"},
    {"CONTRACTS", "CONTRACT", "CONTRACTS, CDESCRIPTION"},
    {"WARRANTIES", "WARRANTY", "WDESCRIPTION, NUMBER_OF_PERIODS, PERIOD_UNIT, WARRANTY_TYPE"},
};
constexpr TestedTable kTables3[] = {
    {"SITE", "SITE", "DESCRIPTION, CUSTOMER"},
    {"PROBLEM", "PROBLEM", "DESCRIPTION, CALLTYPE"},
    {"PRIORITY", "PRIORITY", "DESCRIPTION"},
    {"OBJECT", "SITE, OBJECT, OBJECTNR",
     "OBJECTDESC, ITEM, ITEMDESC, SERIALNUMBER, WARRANTY, INSTALLATION_DATE, DELIVERY_DATE, WEXPIRY_DATE"},
    {"SITECONTRACT", "SITE, CONTRACT, TERM, LINE", "OBJECT, OBJECTNR, EFFECTIVE_DATE, EXPIRY_DATE"},
    {"CONTRACTS", "CONTRACT", "CONTRACTS, CDESCRIPTION"},
    {"WARRANTIES", "WARRANTY", "WDESCRIPTION, NUMBER_OF_PERIODS, PERIOD_UNIT, WARRANTY_TYPE"},
};
constexpr TestedTable kTables8[] = {
    {"SITE", "SITE", "DESCRIPTION, CUSTOMER"},
    {"PROBLEM", "PROBLEM", "DESCRIPTION, CALLTYPE"},
    {"PRIORITY", "PRIORITY", "DESCRIPTION"},
    {"SITECONTRACT", "SITE, CONTRACT, OBJECT, OBJECTNR, TERM", "LINE, EFFECTIVE_DATE, EXPIRY_DATE"},
    {"CONTRACTS", "CONTRACT", "CONTRACTS, CDESCRIPTION"},
    {"WARRANTIES", "WARRANTY", "WDESCRIPTION, NUMBER_OF_PERIODS, PERIOD_UNIT, WARRANTY_TYPE"},
    {"SERIALIZEDITEM", "SITE, OBJECT, OBJECTNR",
     "OBJECTDESC, SERIALNUMBER, WARRANTY, INSTALLATION_DATE, DELIVERY_DATE, CUSTOMER"},
};

std::span<const TestedTable> TablesOf(const Text& generation) {
  if (generation == "1") return kTables1;
  return generation == "3" ? std::span<const TestedTable>(kTables3) : std::span<const TestedTable>(kTables8);
}

Text NamesOf(std::span<const TestedTable> tables) {
  Text names;
  for (const TestedTable& table : tables) names += (names.empty() ? "\"" : ", \"") + Text(table.name) + "\"";
  return names;
}

struct Case {
  Engine engine;
  Text generation;
};

class PlanAndRun : public testing::TestWithParam<Case> {};

TEST_P(PlanAndRun, Agree) {
  const unsigned kRounds = TriesAll() ? 20 : GetParam().engine == Engine::Sqlite ? 5 : 4;
  const unsigned first = TriesAll() ? std::random_device()() : 1;
  const std::span<const TestedTable> tables = TablesOf(GetParam().generation);
  const JobSite site(GetParam().engine, {.generation = GetParam().generation, .tables = NamesOf(tables)});
  const auto rowsOf = [&](const TestedTable& table) { return RowsOf(site, GetParam().engine, table); };
  std::int64_t met[3] = {};  // rows that were inserted, changed, deleted
  for (unsigned round = 0; round < kRounds; ++round) {
    SCOPED_TRACE("seeds from " + std::to_string(first) + ", round " + std::to_string(round));
    RandomExports exports(first + round);
    exports.Write(exports.Chance(50) ? "erp" : "end", site.Path("home/erp"));
    exports.Write("changes", site.Path("home/erp"));
    site.Execute("UPDATE tstables SET lutm = NULL");
    const Text method = round > 0 && exports.Chance(60) ? " --changed" : " --full";
    std::map<Text, Rows> before;
    for (const TestedTable& table : tables) before[table.name] = rowsOf(table);

    const CtlRun plan = site.Run("plan demo --json --rows 100000" + method);
    const Json said = Json::parse(plan.said, nullptr, false);
    ASSERT_TRUE(said.is_object()) << plan.said;
    const CtlRun run = site.Run("run demo" + method);

    bool changes = false;
    for (const TestedTable& tested : tables) {
      const Rows after = rowsOf(tested);
      changes = changes || after != before[tested.name];
      const auto isOf = [&](const Json& table) { return table["table"] == tested.name; };
      const auto table = std::ranges::find_if(said["tables"], isOf);
      ASSERT_NE(table, said["tables"].end()) << tested.name;
      EXPECT_EQ(FaultOf(tested, *table, before[tested.name], after), "")
          << tested.name << method << plan.said << run.said;
      met[0] += (*table)["insert"].get<std::int64_t>();
      met[1] += (*table)["change"].get<std::int64_t>();
      met[2] += (*table)["delete"].get<std::int64_t>();
    }
    EXPECT_EQ(plan.status, run.status == 0 && changes ? 5 : run.status) << run.said;
  }
  for (const std::int64_t rows : met) EXPECT_GT(rows, kRounds);
}

void PrintTo(const Case& one, std::ostream* out) {
  PrintTo(one.engine, out);
  *out << ", generation " << one.generation;
}

INSTANTIATE_TEST_SUITE_P(Sqlite, PlanAndRun,
                         testing::Values(Case{Engine::Sqlite, "1"}, Case{Engine::Sqlite, "3"},
                                         Case{Engine::Sqlite, "8"}));
INSTANTIATE_TEST_SUITE_P(Postgres, PlanAndRun,
                         testing::Values(Case{Engine::PostgreSql, "1"}, Case{Engine::PostgreSql, "3"},
                                         Case{Engine::PostgreSql, "8"}));

}  // namespace
}  // namespace zenqay
