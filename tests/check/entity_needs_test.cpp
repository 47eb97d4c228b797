#include "check/entity_needs.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <memory>
#include <set>

#include "doubles/copy_fixture.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

/// The columns that the reference schema gives each table, by the database's own account: "SITE.DESCRIPTION".
std::set<Text> SchemaColumns() {
  std::ifstream file(Text(ZENQAY_SHARE) + "/schema/sqlite.sql");
  const Text schema{std::istreambuf_iterator<char>(file), {}};
  sqlite3* opened = nullptr;
  sqlite3_open(":memory:", &opened);
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database(opened, sqlite3_close);
  sqlite3_exec(opened, schema.c_str(), nullptr, nullptr, nullptr);
  std::set<Text> columns;
  const auto add = [](void* set, int, char** fields, char**) {
    static_cast<std::set<Text>*>(set)->insert(Text(fields[0]) + "." + fields[1]);
    return 0;
  };
  sqlite3_exec(opened, "SELECT m.name, c.name FROM sqlite_master m, pragma_table_info(m.name) c WHERE m.type = 'table'",
               add, &columns, nullptr);
  return columns;
}

Text MissingFrom(const std::set<Text>& schema, const Text& table, const std::vector<Text>& columns) {
  Text missing;
  for (const Text& column : columns) {
    if (!schema.contains(table + "." + column)) missing += table + "." + column + "\n";
  }
  return missing;
}

Text UpperCased(Text name) {
  for (char& letter : name) letter = static_cast<char>(letter - 'a' + 'A');
  return name;
}

TEST(NeedsOf, NamesOnlyColumnsThatTheReferenceSchemaHas) {
  const std::set<Text> schema = SchemaColumns();
  Text missing;
  int found = 0;

  for (const Text& name : EntityNames()) {
    for (const char* generation : {kGeneration1, kGeneration3, kGeneration8}) {
      const auto needs = NeedsOf(name, generation);
      if (!needs) continue;
      ++found;
      missing += MissingFrom(schema, UpperCased(name), needs->columns);
    }
  }
  for (const ExpiryNeeds& needs : NeedsOfWarrantyExpiry()) missing += MissingFrom(schema, needs.table, needs.columns);

  EXPECT_EQ(missing, "");
  EXPECT_EQ(found, 21);
}

/// The ERP's entities, as its three generations have them.
TEST(NeedsOf, KnowsWhichGenerationHasWhichEntity) {
  Text known;

  for (const Text& name : EntityNames()) {
    known += name;
    for (const char* generation : {kGeneration1, kGeneration3, kGeneration8}) {
      if (NeedsOf(name, generation)) known += Text(" ") + generation;
    }
    known += "\n";
  }

  EXPECT_EQ(known,
            "site 1 3 8\n"
            "product 1\n"
            "problem 1 3 8\n"
            "symptom 1\n"
            "priority 1 3 8\n"
            "object 3\n"
            "warranties 1 3 8\n"
            "sitecontract 3 8\n"
            "contracts 1 3 8\n"
            "serializeditem 8\n");
}

TEST(NeedsOf, TakesTheNameInAnyCaseAndTheGenerationAsItIs) {
  EXPECT_EQ(NeedsOf("Site", "1")->managerClass, "Kv40QTMtssmaLocations.LocationsManager");
  EXPECT_FALSE(NeedsOf("Site", "2"));
  EXPECT_FALSE(NeedsOf("Sites", "1"));
}

/// A copy by neither method does nothing, but a name without a copy is told in a box.
TEST(EntityNames, AreThoseThatTheJobCopies) {
  for (const Text& name : EntityNames()) {
    CopyFixture copy("1");

    copy.CopyTable(1, name, /*SyncMethod=*/0);

    EXPECT_EQ(copy.journal.Take().find("box "), Text::npos) << name;
  }
}

}  // namespace
}  // namespace zenqay
