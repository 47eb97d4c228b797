#include "control/runner.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include "control/exit_status.h"
#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

const Text kBegin = R"({"kind":"begin","channel":1,"pid":1,"version":"0.1.0"})"
                    "\n";
const Text kStarted = R"({"kind":"started","id":1,"table":"T"})"
                      "\n";
const Text kComplete = R"({"kind":"complete","id":1,"table":"T","inserted":3,"updated":2,"deleted":1})"
                       "\n";
const Text kInUse = R"({"kind":"in_use","id":1,"table":"T"})"
                    "\n";
const Text kError = R"({"kind":"error","id":1,"table":"T","number":-1,"description":"See the log file."})"
                    "\n";
const Text kFailure = R"({"kind":"failure","number":13,"source":"X","description":"Type mismatch","during":"copy"})"
                      "\n";
const Text kLost =
    R"({"kind":"failure","number":-2147467259,"source":"X","description":"gone","sqlstate":"08S01","during":"copy"})"
    "\n";

/// Jobs that do as their scripts say.
class RunTablesOf : public testing::Test, public RunListener {
 protected:
  /// A table with the script of its job.
  TableTask& Add(const Text& table, const Text& script, const Text& database = "service") {
    const auto id = static_cast<std::int32_t>(runs.size() + 1);
    runs.push_back({.task = {.job = "nightly", .database = database, .table = table, .tableId = id}});
    TableTask& task = runs.back().task;
    task.logs = directory.path().string();
    task.commandLine = "DSN=x;PWD=geheim{}{}" + std::to_string(id) + "{}1{}" + task.logs;
    task.home = "/home/of/erp";
    settings.parallel.emplace(database, 10);
    directory.Write(std::to_string(id) + ".script", script);
    return task;
  }

  void Changed(const std::vector<TableRun>& all, std::size_t which) override {
    const TableRun& run = all[which];
    told += run.task.table + " " + StateWord(run.state) + (run.words.empty() ? "" : ": " + run.words) + "\n";
    if (onChange) onChange(run);
  }

  int Run() {
    SignalWatch signals;
    signal = RunTables(runs, settings, signals, {this});
    return ExitStatusOf(runs, signal);
  }

  Text Journal() { return directory.Read("journal"); }

  TempDirectory directory;
  std::vector<TableRun> runs;
  RunnerSettings settings{.program = ZENQAY_FAKE_JOB};
  std::optional<int> signal;
  Text told;
  std::function<void(const TableRun&)> onChange;
};

TEST_F(RunTablesOf, CompleteJobsEndWith0) {
  Add("SITE", kBegin +
                  R"({"kind":"rows","met":5,"inserted":3,"updated":2,"deleted":0})"
                  "\n" +
                  kStarted + kComplete);

  EXPECT_EQ(Run(), 0);

  EXPECT_EQ(told, "SITE beginning\nSITE copying\nSITE complete\n");
  EXPECT_EQ(runs[0].counts, (RowCounts{5, 3, 2, 1}));
  EXPECT_EQ(directory.Read("1.line"), runs[0].task.commandLine);
}

TEST_F(RunTablesOf, AFailedTableEndsWith1) {
  Add("SITE", kBegin + kStarted + kFailure + kError);
  Add("PRIORITY", kBegin + kInUse);

  EXPECT_EQ(Run(), 1);

  EXPECT_EQ(runs[0].words, "13: Type mismatch");
  EXPECT_EQ(runs[1].state, TableState::InUse);
}

TEST_F(RunTablesOf, ATableInUseEndsWith3) {
  Add("SITE", kBegin + kInUse);
  Add("PRIORITY", kBegin + kStarted + kComplete);

  EXPECT_EQ(Run(), 3);
}

TEST_F(RunTablesOf, AJobThatCouldNotBeginEndsWith4) {
  Add("SITE", kBegin + kStarted + kFailure + kError);
  Add("PRIORITY", kBegin + R"({"kind":"failure","number":9999,"description":"too few items","during":"start"})"
                           "\n");

  EXPECT_EQ(Run(), 4);

  EXPECT_EQ(runs[1].words, "9999: too few items");
}

TEST_F(RunTablesOf, ATableWhoseReleaseFailedHasFailed) {
  Add("SITE", kBegin + kStarted +
                  R"({"kind":"failure","number":7,"description":"locked","during":"release"})"
                  "\n" +
                  kComplete);

  EXPECT_EQ(Run(), 1);

  EXPECT_EQ(runs[0].words, "the copy is complete, but the table could not be freed: 7: locked");
}

TEST_F(RunTablesOf, ACrashIsAFailureWithItsWords) {
  Add("SITE", kBegin + kStarted + "signal 11\n");
  Add("PRIORITY", kBegin + kStarted + "signal 9\n");
  Add("PROBLEM", kBegin + kStarted + "say zenqay-dbsync: fatal error 61: Disk full\nexit 70\n");
  Add("CONTRACTS", kBegin + kStarted + kComplete + "signal 11\n");

  EXPECT_EQ(Run(), 1);

  EXPECT_EQ(runs[0].words, "the job was ended by signal 11 (Segmentation fault)");
  EXPECT_EQ(runs[1].words, "the job was ended by signal 9 (Killed)");
  EXPECT_EQ(runs[2].words, "the job ended with 70: zenqay-dbsync: fatal error 61: Disk full");
  EXPECT_EQ(runs[3].words, "the job was ended by signal 11 (Segmentation fault)");
}

TEST_F(RunTablesOf, ACrashBeforeTheTableIsTakenCouldNotBegin) {
  Add("SITE", "say PWD=geheim\nexit 70\n");

  EXPECT_EQ(Run(), 4);

  EXPECT_EQ(runs[0].words, "the job ended with 70: PWD=***");
}

TEST_F(RunTablesOf, APasswordDoesNotGetOutOfAJob) {
  Add("SITE", "say login of zenqay with ge;heim failed\n" + kStarted +
                  R"({"kind":"failure","number":1,"source":"ge;heim","description":"ge;heim?","statement":"ge;heim",)"
                  R"("call":"ge;heim","key":"ge;heim","during":"copy"})"
                  "\n" +
                  kError)
      .password = "ge;heim";

  EXPECT_EQ(Run(), 1);

  EXPECT_EQ(runs[0].lastWords, std::vector<Text>{"login of zenqay with *** failed"});
  EXPECT_EQ(runs[0].failures, (std::vector<JobFailure>{{"", 1, "***", "***?", "", "", "***", "***", "***", "copy"}}));
}

TEST_F(RunTablesOf, ASilentEndIsNoSuccess) {
  Add("SITE", kBegin + kStarted);
  Add("PRIORITY", "");

  EXPECT_EQ(Run(), 4);

  EXPECT_EQ(runs[0].words, "the job ended without a word on what became of the table");
  EXPECT_EQ(runs[1].words, "the job ended without a word");
}

TEST_F(RunTablesOf, AProgramThatIsMissingCouldNotBegin) {
  Add("SITE", "");
  settings.program = "/nowhere/zenqay-dbsync";

  EXPECT_EQ(Run(), 4);

  EXPECT_EQ(runs[0].words, "File not found: /nowhere/zenqay-dbsync (No such file or directory)");
}

TEST_F(RunTablesOf, StartsAsManyAsTheDatabaseAllows) {
  Add("SITE", kStarted + "wait second\n" + kComplete);
  Add("PRIORITY", kStarted + "wait third\n" + kComplete);
  Add("PROBLEM", kStarted + kComplete);
  settings.parallel["service"] = 2;
  int copying = 0;
  int most = 0;
  onChange = [&](const TableRun& run) {
    if (run.state == TableState::Beginning) most = std::max(most, ++copying);
    if (IsEnd(run.state)) --copying;
    if (run.task.table == "PRIORITY" && run.state == TableState::Copying) directory.Write("second", "");
    if (run.task.table == "PROBLEM" && run.state == TableState::Copying) directory.Write("third", "");
  };

  EXPECT_EQ(Run(), 0);

  EXPECT_EQ(most, 2);
}

TEST(NextToStart, KeepsObjectsAndWarrantiesOfADatabaseApart) {
  const auto run = [](const char* table, const char* database, TableState state) {
    return TableRun{.task = {.database = database, .table = table}, .state = state};
  };
  const std::map<Text, int> parallel = {{"a", 4}, {"b", 1}};
  std::vector<TableRun> runs = {run("Warranties", "a", TableState::Waiting), run("OBJECT", "a", TableState::Waiting),
                                run("OBJECT", "b", TableState::Waiting), run("SITE", "b", TableState::Waiting)};

  EXPECT_EQ(NextToStart(runs, parallel, {}), 0u);
  runs[0].state = TableState::Copying;
  EXPECT_EQ(NextToStart(runs, parallel, {}), 2u);  // another database's objects
  runs[2].state = TableState::Beginning;
  EXPECT_EQ(NextToStart(runs, parallel, {}), std::nullopt);  // the database's only place is taken
  runs[0].state = TableState::Complete;
  EXPECT_EQ(NextToStart(runs, parallel, {}), 1u);
  runs[1].notBefore = TableRun::Moment(Seconds(1));
  EXPECT_EQ(NextToStart(runs, parallel, {}), std::nullopt);
  EXPECT_EQ(NextToStart(runs, parallel, TableRun::Moment(Seconds(1))), 1u);
}

TEST(NextToStart, KeepsTwoCopiesOfOneTableApart) {
  const std::vector<TableRun> runs = {
      {.task = {.database = "a", .table = "SITE"}, .state = TableState::Copying},
      {.task = {.database = "a", .table = "site"}, .state = TableState::Waiting},
      {.task = {.database = "a", .table = "PRIORITY"}, .state = TableState::Waiting},
  };

  EXPECT_EQ(NextToStart(runs, {{"a", 4}}, {}), 2u);
}

TEST_F(RunTablesOf, TriesAgainWhatCanHeal) {
  Add("SITE", kBegin + kStarted + kLost + kError).retryTimes = 2;
  directory.Write("1.script.2", kBegin + kStarted + kComplete);
  Add("PRIORITY", kBegin + kInUse).retryTimes = 1;
  Add("PROBLEM", kBegin + kStarted + kFailure + kError).retryTimes = 2;
  Add("CONTRACTS", kBegin + R"({"kind":"failure","number":76,"description":"no ERP","call":"X.getVersion","during":)"
                            R"("start"})"
                            "\n")
      .retryTimes = 1;
  Add("SYMPTOM", kBegin + R"({"kind":"failure","number":429,"description":"no class","call":"X","during":"start"})"
                          "\n")
      .retryTimes = 1;

  EXPECT_EQ(Run(), 4);

  EXPECT_EQ(runs[0].state, TableState::Complete);
  EXPECT_EQ(runs[0].attempts, 2);
  EXPECT_EQ(runs[1].state, TableState::InUse);
  EXPECT_EQ(runs[1].attempts, 2);
  EXPECT_EQ(runs[2].attempts, 1);
  EXPECT_EQ(runs[3].attempts, 2);
  EXPECT_EQ(runs[4].attempts, 1);
}

TEST_F(RunTablesOf, AStoppedRunAsksEachJobOnceAndStartsNothingMore) {
  Add("SITE", kStarted + "hold\nasked:\n" + kFailure + kError);
  Add("PRIORITY", kBegin + "hold\n");
  Add("PROBLEM", kStarted + kComplete);
  settings.parallel["service"] = 2;
  onChange = [&](const TableRun& run) {
    if (run.task.table != "SITE" || run.state != TableState::Copying) return;
    ::kill(::getpid(), SIGINT);
    ::kill(::getpid(), SIGTERM);
  };

  EXPECT_EQ(Run(), 128 + SIGTERM);

  EXPECT_EQ(runs[0].words, "the copy was broken off");
  EXPECT_EQ(runs[0].state, TableState::Stopped);
  EXPECT_EQ(runs[1].words, "nothing was copied");
  EXPECT_EQ(runs[2].words, "its job was not started");
}

TEST_F(RunTablesOf, AJobThatCompletesAlthoughItWasAskedIsComplete) {
  Add("SITE", kStarted + "ignore\nwait asked\n" + kComplete);
  onChange = [&](const TableRun& run) {
    if (run.state != TableState::Copying) return;
    ::kill(::getpid(), SIGINT);
    directory.Write("asked", "");
  };

  EXPECT_EQ(Run(), 128 + SIGINT);

  EXPECT_EQ(runs[0].state, TableState::Complete);
}

TEST_F(RunTablesOf, ATimeoutAsksThenEnds) {
  Add("SITE", kStarted + "ignore\nwait never\n").timeout = Seconds(1);
  Add("PRIORITY", kBegin + "hold\n").timeout = Seconds(1);
  Add("PROBLEM", "").timeout = Seconds(1);
  Add("CONTRACTS", kStarted + kComplete);
  settings.parallel["service"] = 3;
  settings.grace = Seconds(0);
  runs[2].notBefore = TableRun::Moment::max();

  EXPECT_EQ(Run(), 124);

  EXPECT_EQ(runs[0].words, "the job was ended by signal 9 (Killed) before it freed the table");
  EXPECT_EQ(runs[0].state, TableState::TimedOut);
  EXPECT_EQ(runs[1].state, TableState::TimedOut);
  EXPECT_EQ(runs[2].words, "its job was not started");
  EXPECT_EQ(runs[3].state, TableState::Complete);
}

TEST(ExitStatusOf, IsTheFirstThatApplies) {
  const auto after = [](std::initializer_list<TableState> states) {
    std::vector<TableRun> runs;
    for (const TableState state : states) runs.push_back({.state = state});
    return ExitStatusOf(runs, std::nullopt);
  };

  EXPECT_EQ(after({}), 0);
  EXPECT_EQ(after({TableState::Complete, TableState::InUse}), 3);
  EXPECT_EQ(after({TableState::InUse, TableState::Failed}), 1);
  EXPECT_EQ(after({TableState::Failed, TableState::CouldNotBegin}), 4);
  EXPECT_EQ(after({TableState::CouldNotBegin, TableState::TimedOut}), 124);
  EXPECT_EQ(ExitStatusOf({{.state = TableState::TimedOut}}, SIGINT), 130);
}

TEST(AdviceFor, SaysWhatToDoNext) {
  TableRun run{.task = {.job = "nightly", .table = "SITE", .logs = "/log"}};
  const auto advice = [&](TableState state) {
    run.state = state;
    return AdviceFor(run);
  };

  EXPECT_EQ(advice(TableState::Complete), "");
  EXPECT_EQ(advice(TableState::InUse),
            "zenqayctl status nightly says who has it, and whether that job still holds its lock; once it does not: "
            "zenqayctl run nightly --table SITE");
  EXPECT_EQ(advice(TableState::CouldNotBegin),
            "zenqayctl check nightly says what to mend; then: zenqayctl run nightly --table SITE");
  EXPECT_EQ(advice(TableState::Failed),
            "the records stand in /log/SITE_*.log and in zenqayctl history; then: zenqayctl run nightly --table SITE");
  EXPECT_EQ(advice(TableState::Stopped), "to go on: zenqayctl run nightly --table SITE");
  EXPECT_EQ(advice(TableState::TimedOut),
            "to go on: zenqayctl run nightly --table SITE (or a longer timeout in the job file)");
  run.failures = {{.number = 20211}};
  EXPECT_EQ(advice(TableState::Failed),
            "compare what the ERP lists with the table; if the rows are to go: zenqayctl run nightly --table SITE "
            "--full --allow-sweep");
  run.failures = {{.number = 1, .sqlState = "08001"}};
  EXPECT_EQ(advice(TableState::Failed),
            "zenqayctl check nightly says what cannot be reached; then: zenqayctl run nightly --table SITE");
}

}  // namespace
}  // namespace zenqay
