#include "localdb/sweep_guard.h"

#include <gtest/gtest.h>

#include "doubles/embedded_database.h"
#include "doubles/outcome.h"
#include "doubles/process_fixture.h"
#include "localdb/local_connection.h"

namespace zenqay {
namespace {

/// What becomes of a copy of a table of `before` rows that meets all but `marked` of them, and inserts one.
Text Swept(const SweepLimits& limits, int before, int marked) {
  EmbeddedDatabase file;
  file.Run("CREATE TABLE Site (SITE INTEGER, upd_flag INTEGER)");
  for (int row = 0; row < before; ++row) file.Run("INSERT INTO Site VALUES (" + std::to_string(row) + ", 0)");
  ProcessFixture fixture(file.databases);
  fixture.process.safeguards.sweep = limits;
  OpenLocalConnection(fixture.process, file.connectionString, "");
  const Text table = "Site";

  SweepGuard guard(fixture.process, table);
  file.Run("UPDATE Site SET upd_flag = 1 WHERE SITE < " + std::to_string(marked));
  file.Run("INSERT INTO Site VALUES (1000, 0)");
  return Raised([&] { guard.RequireWithinLimit(); });
}

SweepLimits Limit(const Text& text, std::int64_t from = 0) {
  SweepLimits limits;
  limits.general = SweepLimit::Read(text);
  limits.from = from;
  return limits;
}

TEST(SweepGuard, RefusesWhatIsMoreThanTheLimitWithBothNumbers) {
  EXPECT_EQ(Swept(Limit("10%"), 20, 2), "nothing");
  EXPECT_EQ(Swept(Limit("10%"), 20, 3),
            "20211 Sweep limit: The sweep would delete 3 of the 20 rows that Site had before the copy, more than the "
            "limit of 10%.");
  EXPECT_EQ(Swept(Limit("3"), 20, 3), "nothing");
  EXPECT_EQ(Swept(Limit("3"), 20, 4),
            "20211 Sweep limit: The sweep would delete 4 of the 20 rows that Site had before the copy, more than the "
            "limit of 3.");
}

TEST(SweepGuard, LetsAnEmptyTableAndAnythingBelowItsFirstNumberPass) {
  EXPECT_EQ(Swept(Limit("0%"), 0, 0), "nothing");
  EXPECT_EQ(Swept(Limit("10%", 5), 20, 4), "nothing");
  EXPECT_EQ(Swept(Limit("10%", 5), 20, 5),
            "20211 Sweep limit: The sweep would delete 5 of the 20 rows that Site had before the copy, more than the "
            "limit of 10%.");
}

TEST(SweepGuard, RefusesAnEmptyListing) {
  EXPECT_EQ(Swept(Limit("99.99%"), 20, 20),
            "20211 Sweep limit: The sweep would delete 20 of the 20 rows that Site had before the copy, more than the "
            "limit of 99.99%.");
  EXPECT_EQ(Swept(Limit("100%"), 20, 20), "nothing");
}

TEST(SweepGuard, AsksNothingOfATableWithoutALimit) {
  ProcessFixture fixture;
  fixture.Connect();
  fixture.process.safeguards.sweep.ofTables.emplace_back("Object", *SweepLimit::Read("1"));
  const Text table = "Site";

  SweepGuard guard(fixture.process, table);
  guard.RequireWithinLimit();

  EXPECT_EQ(fixture.journal.Take(), "");
}

}  // namespace
}  // namespace zenqay
