// A plan leaves no trace in the database: by the server's own record, with a login that may not write, by a file's
// bytes, and while others write.
#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <thread>

#include "doubles/file_content.h"
#include "job_site.h"

namespace zenqay {
namespace {

const Text kGeneration3 = "\"SITE\", \"OBJECT\", \"WARRANTIES\", \"PRIORITY\"";

/// The first words of the statements in a server's log; the driver sends several at once.
std::set<Text> VerbsIn(const Text& log) {
  std::set<Text> verbs;
  const std::regex line("LOG:  (?:statement|execute [^:]*): ([^\n]*)");
  const std::regex verb("(?:^|;) *(\\w+)");
  for (std::sregex_iterator found(log.begin(), log.end(), line), end; found != end; ++found) {
    const Text statements = (*found)[1];
    for (std::sregex_iterator word(statements.begin(), statements.end(), verb); word != end; ++word) {
      verbs.insert(LowerCased((*word)[1].str()));
    }
  }
  return verbs;
}

TEST(PostgresPlan, NeedsNoRightToWriteAndSendsTheServerOnlyReads) {
  PostgresServer server({"log_statement=all"});
  const JobSite site(Engine::PostgreSql, {.generation = "3", .tables = kGeneration3}, &server);
  server.Psql(site.database(),
              "CREATE ROLE reader LOGIN PASSWORD 'read';"
              "GRANT SELECT ON ALL TABLES IN SCHEMA public TO reader");
  site.directory().Write(
      "zenqay.toml", std::regex_replace(site.directory().Read("zenqay.toml"), std::regex("Uid=[^;\"]*"), "Uid=reader"));
  site.directory().Write("password", "read\n");
  const std::size_t said = ContentOf(server.ServerLog()).size();

  const CtlRun plan = site.Run("plan demo --rows 0");

  EXPECT_EQ(plan.said,
            "TABLE       METHOD  ROWS  INSERT  CHANGE  DELETE  REWRITE  SWEEP  OUTCOME\n"
            "SITE        full    0     6       0       0       0        0%     complete\n"
            "OBJECT      full    0     7       0       0       0        0%     complete\n"
            "WARRANTIES  full    0     5       0       0       0        0%     complete\n"
            "PRIORITY    full    0     4       0       0       0        0%     complete\n"
            "\n"
            "22 rows would change in 4 tables. Nothing was written.\n");
  EXPECT_EQ(VerbsIn(ContentOf(server.ServerLog()).substr(said)),
            (std::set<Text>{"begin", "close", "commit", "declare", "fetch", "release", "savepoint", "select", "set",
                            "show"}));
  EXPECT_NE(site.Run("run demo --table SITE").status, 0);  // the login may really not
}

/// Every file of a directory with its content.
std::map<Text, Text> FilesOf(const Text& directory, const Text& beginning) {
  std::map<Text, Text> files;
  for (const auto& file : std::filesystem::directory_iterator(directory)) {
    const Text name = file.path().filename().string();
    if (name.starts_with(beginning)) files[name] = ContentOf(file.path());
  }
  return files;
}

TEST(SqlitePlan, LeavesTheFileAndWhatStandsBesideItAsTheyAre) {
  const JobSite site(Engine::Sqlite, {.generation = "3", .tables = kGeneration3});
  ASSERT_EQ(site.Run("run demo").status, 0);
  const auto alone = FilesOf(site.Path(""), "service.db");
  EXPECT_EQ(site.Run("plan demo").status, 0);
  EXPECT_EQ(FilesOf(site.Path(""), "service.db"), alone);

  const auto connection = LocalDatabases().CreateConnection();
  connection->PutConnectionString(site.ConnectionString());
  connection->Open();
  connection->Execute("UPDATE SITE SET DESCRIPTION = 'x' WHERE SITE = 'CFG00001'");
  const auto used = FilesOf(site.Path(""), "service.db");
  ASSERT_EQ(used.count("service.db-wal"), 1U);
  EXPECT_EQ(site.Run("plan demo").status, 5);
  EXPECT_EQ(FilesOf(site.Path(""), "service.db"), used);
}

TEST(SqlitePlan, ReadsAFileThatMayNotBeWritten) {
  const JobSite site(Engine::Sqlite);
  std::filesystem::permissions(site.Path("service.db"), std::filesystem::perms::owner_read);

  const CtlRun plan = site.Run("plan demo --rows 0");

  EXPECT_EQ(plan.status, 5) << plan.said;
}

class PlanWhile : public testing::TestWithParam<Engine> {
 protected:
  const JobSite site{GetParam(), {.tables = "\"SITE\", \"PROBLEM\""}};
};

TEST_P(PlanWhile, AJobCopiesSaysSoAndKeepsItFromNothing) {
  const Text locations = "home/erp/Kv40QTMtssmaLocations.csv";
  const Text header = "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n";
  std::filesystem::remove(site.Path(locations));
  HeldExport held(site.Path(locations));
  RunningCtl run = site.Start("run demo --table SITE");
  held.WaitUntilOpened(run);
  held.Write(header + "A1,North,C7\n");
  std::filesystem::rename(site.Path(locations), site.Path("held"));
  site.directory().Write(locations, header + "A1,North,C7\nA2,South,C7\n");

  const CtlRun plan = site.Run("plan demo --rows 0");
  held.Write("A2,South,C7\n");
  held.Finish();
  const CtlRun ended = run.Wait();

  EXPECT_NE(plan.said.find("warning   SITE: a copy of it is running, or died and left it taken: what it has yet to do "
                           "is no part of the plan\n"),
            Text::npos)
      << plan.said;
  EXPECT_EQ(plan.status, 5);
  EXPECT_EQ(ended.status, 0) << ended.said;
  EXPECT_EQ(site.Rows("SELECT SITE FROM SITE ORDER BY SITE"), "A1\nA2\n");
}

/// Each transaction of the writer gives all rows of both tables one number.
TEST_P(PlanWhile, SomebodyWritesReadsAllTablesAsOfOneMoment) {
  for (int i = 0; i < 100; ++i) {
    const Text number = std::to_string(i);
    site.Execute("INSERT INTO SITE (SITE, CUSTOMER, upd_flag) VALUES ('S" + number + "', '0', 0)");
    site.Execute("INSERT INTO PROBLEM (PROBLEM, CALLTYPE, upd_flag) VALUES ('P" + number + "', '0', 0)");
  }
  std::atomic<bool> ends = false;
  std::thread writer([&] {
    const auto connection = LocalDatabases().CreateConnection();
    connection->PutConnectionString(site.ConnectionString());
    connection->Open();
    for (int i = 1; !ends; ++i) {
      const Text number = "'" + std::to_string(i) + "'";
      connection->Execute("BEGIN; UPDATE SITE SET CUSTOMER = " + number + "; UPDATE PROBLEM SET CALLTYPE = " + number +
                          "; COMMIT");
    }
  });

  for (int i = 1; i <= 3; ++i) {
    const Text kept = site.Path("kept" + std::to_string(i) + ".db");
    const CtlRun plan = site.Run("plan demo --keep " + kept);
    EXPECT_EQ(plan.status, 5) << plan.said;
    const auto connection = LocalDatabases().CreateConnection();
    connection->PutConnectionString("Provider=SQLite;Data Source=" + kept + ";Mode=Read");
    connection->Open();
    const auto rows = connection->RowsOf(
        "SELECT COUNT(*), COUNT(DISTINCT n) FROM (SELECT CUSTOMER AS n FROM SITE UNION ALL SELECT CALLTYPE FROM "
        "PROBLEM)",
        CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
    ASSERT_TRUE(rows->Next());
    EXPECT_EQ(rows->Field(0), Value(200));
    EXPECT_EQ(rows->Field(1), Value(1));
  }
  ends = true;
  writer.join();
}

INSTANTIATE_TEST_SUITE_P(Sqlite, PlanWhile, testing::Values(Engine::Sqlite));
INSTANTIATE_TEST_SUITE_P(Postgres, PlanWhile, testing::Values(Engine::PostgreSql));

}  // namespace
}  // namespace zenqay
