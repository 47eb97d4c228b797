// A plan and the run right after it: what the run changes is what the plan said, for random exports of the demo.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <span>
#include <sstream>

#include "job_site.h"
#include "random_exports.h"

namespace zenqay {
namespace {

using Json = nlohmann::json;

struct TestedTable {
  const char* name;
  const char* key;
  const char* others;
};

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

/// The rows of a table, the contents of each key in order.
using Rows = std::map<Text, std::multiset<Text>>;

Rows RowsOf(const JobSite& site, const TestedTable& table) {
  Rows rows;
  std::istringstream keys(
      site.Rows(Text("SELECT ") + table.key + " FROM " + table.name + " ORDER BY " + table.key + ", " + table.others));
  std::istringstream others(site.Rows(Text("SELECT ") + table.others + " FROM " + table.name + " ORDER BY " +
                                      table.key + ", " + table.others));
  for (Text key, other; std::getline(keys, key) && std::getline(others, other);) rows[key].insert(other);
  return rows;
}

/// "2 inserted, 1 changed, 0 deleted"
Text Words(std::int64_t inserted, std::int64_t changed, std::int64_t deleted) {
  return std::to_string(inserted) + " inserted, " + std::to_string(changed) + " changed, " + std::to_string(deleted) +
         " deleted";
}

std::multiset<Text> Without(std::multiset<Text> rows, const std::multiset<Text>& others) {
  for (const Text& row : others) {
    if (const auto found = rows.find(row); found != rows.end()) rows.erase(found);
  }
  return rows;
}

Text DifferenceOf(Rows before, Rows after) {
  std::size_t inserted = 0;
  std::size_t changed = 0;
  std::size_t deleted = 0;
  Rows all = before;
  all.insert(after.begin(), after.end());
  for (const auto& [key, ignored] : all) {
    const std::size_t gone = Without(before[key], after[key]).size();
    const std::size_t come = Without(after[key], before[key]).size();
    changed += std::min(gone, come);
    deleted += gone - std::min(gone, come);
    inserted += come - std::min(gone, come);
  }
  return Words(static_cast<std::int64_t>(inserted), static_cast<std::int64_t>(changed),
               static_cast<std::int64_t>(deleted));
}

/// By table, what the plan says.
std::map<Text, Text> SaidBy(const Json& plan) {
  std::map<Text, Text> said;
  for (const Json& table : plan["tables"]) {
    said[table["table"].get<Text>()] = Words(table["insert"], table["change"], table["delete"]);
  }
  return said;
}

struct Case {
  Engine engine;
  Text generation;
};

class PlanAndRun : public testing::TestWithParam<Case> {};

TEST_P(PlanAndRun, Agree) {
  const unsigned kRounds = GetParam().engine == Engine::Sqlite ? 5 : 4;
  const std::span<const TestedTable> tables = TablesOf(GetParam().generation);
  const JobSite site(GetParam().engine, {.generation = GetParam().generation, .tables = NamesOf(tables)});
  std::int64_t met[3] = {};  // rows that were inserted, changed, deleted
  for (unsigned seed = 1; seed <= kRounds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomExports exports(seed);
    exports.Write(exports.Chance(50) ? "erp" : "end", site.Path("home/erp"));
    exports.Write("changes", site.Path("home/erp"));
    site.Execute("UPDATE tstables SET lutm = NULL");
    const Text method = seed > 1 && exports.Chance(60) ? " --changed" : " --full";
    std::map<Text, Rows> before;
    for (const TestedTable& table : tables) before[table.name] = RowsOf(site, table);

    const CtlRun plan = site.Run("plan demo --json" + method);
    const Json said = Json::parse(plan.said, nullptr, false);
    ASSERT_TRUE(said.is_object()) << plan.said;
    const CtlRun run = site.Run("run demo" + method);

    for (const Json& table : said["tables"]) {
      met[0] += table["insert"].get<std::int64_t>();
      met[1] += table["change"].get<std::int64_t>();
      met[2] += table["delete"].get<std::int64_t>();
    }
    std::map<Text, Text> changed;
    for (const TestedTable& table : tables) {
      changed[table.name] = DifferenceOf(before[table.name], RowsOf(site, table));
    }
    EXPECT_EQ(SaidBy(said), changed) << method << plan.said << run.said;
    const bool changes = std::ranges::any_of(
        changed, [](const auto& table) { return table.second != "0 inserted, 0 changed, 0 deleted"; });
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
