#include "control/history.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "doubles/embedded_database.h"
#include "doubles/outcome.h"
#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

class HistoryOf : public testing::Test {
 protected:
  HistoryOf() : path((directory.path() / "history.db").string()), history(path) {}

  TableRun Table(TableState state) {
    TableRun run{.task = {.job = "nightly", .database = "service", .table = "SITE", .method = Method::Full}};
    run.task.logs = "/log";
    run.state = state;
    run.attempts = 1;
    run.pid = OwnIdentity().pid;
    return run;
  }

  /// "run table outcome met inserted updated deleted words"
  Text TablesText(std::int64_t run) {
    Text text;
    for (const PastTable& table : history.TablesOf(run)) {
      const RowCounts& c = table.counts;
      text += std::to_string(table.run) + " " + table.table + " " + table.outcome + " " + std::to_string(c.met) + " " +
              std::to_string(c.inserted) + " " + std::to_string(c.updated) + " " + std::to_string(c.deleted) + " " +
              table.words + "\n";
    }
    return text;
  }

  Text Outcomes() {
    Text text;
    for (const PastRun& run : history.Runs(100)) text += std::to_string(run.id) + " " + run.outcome + "\n";
    return text;
  }

  TempDirectory directory;
  Text path;
  History history;
};

TEST_F(HistoryOf, KeepsARunItsTablesAndTheirFailures) {
  const std::int64_t run = history.BeginRun("run nightly's", OwnIdentity());
  TableRun state = Table(TableState::Beginning);
  const std::int64_t table = history.BeginTable(run, state);
  history.UpdateTable(table, state);
  EXPECT_EQ(TablesText(run), "1 SITE beginning 0 0 0 0 \n");
  EXPECT_EQ(history.TablesOf(run).front().process, OwnIdentity());
  state.state = TableState::Failed;
  state.counts = {5'000'000'000, 2, 3, 4};
  state.words = "it's so";
  state.failures = {{"T", -13, "X", "it's", "42000", "1", "UPDATE X", "C.List", "SITE='A'", "copy"}};
  history.UpdateTable(table, state);
  history.EndRun(run, 1);

  EXPECT_EQ(TablesText(run), "1 SITE failed 5000000000 2 3 4 it's so\n");
  EXPECT_EQ(history.FailuresOf(table), state.failures);
  const PastRun past = *history.Run(run);
  EXPECT_EQ(past.command, "run nightly's");
  EXPECT_EQ(past.outcome, "1");
  EXPECT_FALSE(past.ended.empty());
  EXPECT_EQ(history.Run(7).has_value(), false);
}

TEST_F(HistoryOf, ClosesAsLostWhatADeadProcessLeftOpen) {
  ProcessIdentity dead = OwnIdentity();
  dead.start = "1";
  ProcessIdentity elsewhere = OwnIdentity();
  elsewhere.host = "another";
  const std::int64_t lost = history.BeginRun("run", dead);
  history.BeginTable(lost, Table(TableState::Waiting));
  history.BeginRun("run", elsewhere);
  history.BeginRun("run", OwnIdentity());

  history.CloseLost();

  EXPECT_EQ(Outcomes(), "3 running\n2 running\n1 lost\n");
  EXPECT_EQ(TablesText(lost), "1 SITE lost 0 0 0 0 \n");
}

TEST_F(HistoryOf, ForgetsWhatIsOlderThanItsAge) {
  const std::int64_t run = history.BeginRun("run", OwnIdentity());
  TableRun state = Table(TableState::Failed);
  state.failures = {{.number = 1}};
  const std::int64_t table = history.BeginTable(run, state);
  history.UpdateTable(table, state);
  history.BeginRun("still running", OwnIdentity());
  history.EndRun(run, 1);

  history.Forget(Seconds(-10));

  EXPECT_EQ(Outcomes(), "2 running\n");
  EXPECT_EQ(TablesText(run), "");
  EXPECT_EQ(history.FailuresOf(table), std::vector<JobFailure>{});
}

TEST_F(HistoryOf, KnowsTheLastDurationOfACompleteTable) {
  EXPECT_EQ(history.LastDuration("service", "SITE", Method::Full), Seconds(0));
  const std::int64_t run = history.BeginRun("run", OwnIdentity());
  history.UpdateTable(history.BeginTable(run, Table(TableState::Complete)), Table(TableState::Complete));
  const auto connection = LocalDatabases().CreateConnection();
  connection->PutConnectionString("Provider=SQLite;Data Source=" + path);
  connection->Open();
  connection->Execute("UPDATE table_run SET started = '2026-01-31T10:00:00Z', ended = '2026-01-31T10:01:30Z'");

  EXPECT_EQ(history.LastDuration("service", "SITE", Method::Full), Seconds(90));
  EXPECT_EQ(history.LastDuration("service", "SITE", Method::OnlyChanged), Seconds(0));
}

TEST_F(HistoryOf, TakesTheLatestTablesFirst) {
  const std::int64_t run = history.BeginRun("run", OwnIdentity());
  history.BeginTable(run, Table(TableState::Complete));
  history.BeginTable(run, Table(TableState::InUse));

  EXPECT_EQ(history.LatestTables("service", "SITE", 1).front().outcome, "in use");
  EXPECT_EQ(history.LatestTables("other", "SITE", 1).size(), 0u);
}

TEST_F(HistoryOf, KeepsTheRowsOfATableThatIsUnderWay) {
  const std::int64_t run = history.BeginRun("run", OwnIdentity());
  const std::int64_t table = history.BeginTable(run, Table(TableState::Copying));
  history.UpdateTable(table, Table(TableState::Copying));

  history.UpdateCounts(table, {12, 1, 11, 0});
  EXPECT_EQ(TablesText(run), "1 SITE copying 12 1 11 0 \n");

  history.UpdateTable(table, Table(TableState::Failed));
  history.UpdateCounts(table, {13, 1, 12, 0});
  EXPECT_EQ(TablesText(run), "1 SITE failed 0 0 0 0 \n");
}

TEST_F(HistoryOf, SaysWhetherSomebodyElseHasChangedIt) {
  History other(path);
  const std::int64_t before = history.ChangeNumber();
  history.BeginRun("run", OwnIdentity());
  EXPECT_EQ(history.ChangeNumber(), before);

  other.BeginRun("run", OwnIdentity());

  EXPECT_NE(history.ChangeNumber(), before);
}

TEST_F(HistoryOf, ListsRunsBeforeAnotherAndTheTablesThatEverRan) {
  for (int i = 0; i < 5; ++i) history.BeginRun("run", OwnIdentity());
  TableRun other = Table(TableState::Complete);
  other.task.table = "OBJECT";
  for (const TableRun& table : {Table(TableState::Complete), other, Table(TableState::Failed)}) {
    history.BeginTable(1, table);
  }

  Text numbers;
  for (const PastRun& run : history.Runs(2, 4)) numbers += std::to_string(run.id) + " ";
  EXPECT_EQ(numbers, "3 2 ");
  EXPECT_EQ(history.TableNames(), (std::vector<std::pair<Text, Text>>{{"service", "OBJECT"}, {"service", "SITE"}}));
}

TEST_F(HistoryOf, IsWrittenByTwoAtOnce) {
  const auto write = [&] {
    History own(path);
    const std::int64_t run = own.BeginRun("run", OwnIdentity());
    for (int i = 0; i < 50; ++i)
      own.UpdateTable(own.BeginTable(run, Table(TableState::Complete)), Table(TableState::Complete));
    own.EndRun(run, 0);
  };
  std::thread other(write);
  write();
  other.join();

  EXPECT_EQ(Outcomes(), "2 0\n1 0\n");
  EXPECT_EQ(history.TablesOf(1).size(), 50u);
  EXPECT_EQ(history.TablesOf(2).size(), 50u);
}

TEST(Migrate, TakesTheStepsThatAreMissing) {
  EmbeddedDatabase file;
  const auto connection = file.databases.CreateConnection();
  connection->PutConnectionString(file.connectionString);
  connection->Open();
  const char* const first[] = {"CREATE TABLE a (x INTEGER)"};
  const char* const both[] = {first[0], "ALTER TABLE a ADD COLUMN y INTEGER; INSERT INTO a (x,y) VALUES (1,2)"};
  const char* const wrong[] = {both[0], both[1], "CREATE TABLE b (x INTEGER); INSERT INTO c VALUES (1)"};

  Migrate(file.databases, connection, first);
  Migrate(file.databases, connection, both);
  Migrate(file.databases, connection, both);
  EXPECT_EQ(file.Rows("SELECT * FROM a", {"x", "y"}), "1|2\n");

  EXPECT_EQ(Raised([&] { Migrate(file.databases, connection, wrong); }), "-2147217865 SQLite: no such table: c");
  EXPECT_EQ(file.Rows("SELECT count(*) AS n FROM sqlite_master WHERE name = 'b'", {"n"}), "0\n");
  EXPECT_EQ(Raised([&] { Migrate(file.databases, connection, first); }),
            "5 ZenqayDBSync: Invalid procedure call or argument: the history has been changed by a later zenqayctl");
}

TEST(UtcText, IsIso) {
  EXPECT_EQ(UtcText(1769854272), "2026-01-31T10:11:12Z");
}

}  // namespace
}  // namespace zenqay
