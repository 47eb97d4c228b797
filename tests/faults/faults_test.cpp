// Every job of the demo, disturbed at each step: what it must leave, and that a rerun ends like an undisturbed one.
//
// A run tries a sample of the places. With ZENQAY_FAULTS=all in the environment, as scripts/faults sets it, it tries
// every one.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <set>

#include "base/memory_reserve.h"
#include "doubles/child_process.h"
#include "doubles/tries_all.h"
#include "faults/allocations.h"
#include "faults/required_end.h"
#include "faults/ways_to_fail.h"

namespace zenqay {
namespace {

/// What was tried of one kind, and what it came to.
class Tally {
 public:
  Tally(Text kind, const DemoJob& job, std::size_t places)
      : kind_(std::move(kind)), job_(job.Name()), places_(places) {}
  Tally(const Tally&) = delete;
  Tally& operator=(const Tally&) = delete;
  ~Tally() {
    std::printf("tried  %s  %s: %d of %zu places:", job_.c_str(), kind_.c_str(), tried_, places_);
    for (const auto& [outcome, count] : outcomes_) std::printf(" %d %s;", count, outcome.c_str());
    std::printf("\n");
  }

  void Add(const JobEnd& end, const Text& table) {
    ++tried_;
    ++outcomes_[OutcomeOf(end, table)];
  }

 private:
  static Text OutcomeOf(const JobEnd& end, const Text& table) {
    if (end.status != 0) return "exit 70";
    if (table.empty()) return "not begun";
    const TableState& state = end.tables.at(table);
    return (state.isTaken ? Text("taken") : Text("free")) + ", update time " + state.updateTime;
  }

  Text kind_;
  Text job_;
  std::size_t places_;
  int tried_ = 0;
  std::map<Text, int> outcomes_;
};

/// What went wrong, without the call and the row that the record names behind it: their texts have tests of their own.
Text WithoutNames(Text shown) {
  const Text mark = "the call failed";
  for (auto at = shown.find(mark); at != Text::npos; at = shown.find(mark, at + 1)) {
    const auto end = std::min(shown.find_first_of("\"\n", at), shown.size());
    shown.erase(at + mark.size(), end - at - mark.size());
  }
  return shown;
}

class DemoJobFaults : public testing::TestWithParam<DemoJob> {
 protected:
  /// An undisturbed run of what a disturbed one has left, once the operator has freed what stayed taken.
  void ExpectRerunEndsAsUndisturbed(bool withExpiry, const Text& what) {
    for (const Text& table : database.tables()) {
      if (database.StateOf(table).isTaken) database.Free(table);
    }
    const JobEnd end = database.Run();
    EXPECT_EQ(end.status, 0) << what;
    EXPECT_EQ(end.causes, std::vector<Text>()) << what;
    EXPECT_EQ(end.heard, required.Undisturbed().heard.size() == end.heard.size() ? required.Undisturbed().heard
                                                                                 : std::vector<Text>())
        << what;
    for (const auto& [name, state] : end.tables) {
      EXPECT_FALSE(state.isTaken) << what << ", " << name;
      EXPECT_EQ(state.updateTime, "new") << what << ", " << name;
      // A contract that enters its status, and an item without a cluster, are inserted by every job that meets them.
      EXPECT_EQ(database.DistinctRows(name, withExpiry), required.DistinctRows(name, withExpiry))
          << what << ", " << name;
    }
  }

  Text What(const Text& kind, std::size_t step) const {
    return kind + " at step " + std::to_string(step) + ", " + required.steps()[step].text;
  }

  void TryFailing(const Text& kind, const std::vector<std::size_t>& places, std::size_t sample, When when,
                  const RuntimeError& error) {
    Tally tally(kind, GetParam(), places.size());
    for (const std::size_t step : Sample(places, sample, kind + GetParam().Name())) {
      database.Reset();
      Disturbance disturbance;
      disturbance.Plan(step, when, [&] { throw error; });

      const JobEnd end = database.Run(disturbance);

      EXPECT_EQ(WithoutNames(Shown(end)), Shown(required.OfFailure(step, when, error))) << What(kind, step);
      tally.Add(end, required.TableAt(step));
      ExpectRerunEndsAsUndisturbed(!required.LeavesExpiryBehind(step, when), What(kind, step));
    }
  }

  DemoDatabase database{GetParam()};
  RequiredEnd required{database, GetParam()};
};

TEST_P(DemoJobFaults, UndisturbedTheJobTellsAndFreesEveryTable) {
  database.Reset();

  const JobEnd end = database.Run();

  EXPECT_EQ(Shown(end), Shown(required.Undisturbed()));
}

TEST_P(DemoJobFaults, AFailingStatementLeavesWhatItsPhaseRequires) {
  const std::vector<std::size_t> statements = required.StepsOf(Step::Kind::Statement);
  for (const auto& [kind, when, error] : WaysOfAStatement()) TryFailing(kind, statements, 3, when, error);
}

TEST_P(DemoJobFaults, AFailingCallLeavesWhatItsPhaseRequires) {
  const std::vector<std::size_t> calls = required.StepsOf(Step::Kind::Call);
  const RuntimeError error(5000, "ERP", "the call failed");
  TryFailing("call fails", calls, 6, When::Before, error);
  TryFailing("call fails behind its work", calls, 6, When::Behind, error);
}

TEST_P(DemoJobFaults, AFailingSummaryLeavesTheTableFreeUnlessItsFileStaysOpen) {
  const std::vector<std::size_t> writes = required.StepsOf(Step::Kind::Log);
  Tally tally("log write of a summary", GetParam(), writes.size());
  for (const std::size_t step : Sample(writes, 5, GetParam().Name())) {
    const Text path = database.LogPath(required.TableAt(step));
    const RuntimeError error(PlatformFault::DiskFull, path);
    database.Reset();
    Disturbance disturbance;
    disturbance.Plan(step, When::Before, [&] { throw error; });

    const JobEnd end = database.Run(disturbance);

    EXPECT_EQ(Shown(end), Shown(required.OfFailedSummary(step, error, path))) << What("log", step);
    tally.Add(end, required.TableAt(step));
    ExpectRerunEndsAsUndisturbed(GetParam().syncMethod == "1", What("log", step));
  }
}

/// The records of a failure, when a step of their own fails: the first statement on the rows of a table in the middle
/// of the job is refused, and then a step of a log.
TEST_P(DemoJobFaults, AFailingRecordOfAFailureLeavesTheTableAsTheRecordsSay) {
  const RuntimeError refused = Reported(-2147467259, "disk I/O error");
  const Text start = "Date: 2/1/2026 Time: 12:00:00 PM\nThe data copy failed.\nError is - ";
  const Text dateLine = "\"Date-Time :2/1/2026 : 12:00:00 PM\"\n";
  const Text item = "\"SQLite\",-2147467259,\"disk I/O error\"\n";
  const Text line = "\"SQLite\",\"disk I/O error\"\n";
  const Text name = database.tables()[database.tables().size() / 2];
  const Text path = database.LogPath(name);
  const Text full = "\"ZenqayDBSync\",\"Disk full: " + path + "\"\n";
  const Text causeOfRefusal = "error -2147467259 from \"SQLite\": disk I/O error";
  const Text causeOfFull = "error 61 from \"ZenqayDBSync\": Disk full: " + path;
  const Text causeOfOpen = "error 55 from \"ZenqayDBSync\": File already open: " + path;
  const Text failed = "the copy failed";
  const struct {
    Text step;
    int status;
    bool isTaken;
    Text log;
    Text startupLog;
    std::vector<Text> causes;
  } cases[] = {
      // The record of the copy: its failure takes the place of the first one.
      {"open", 0, false, dateLine + item + full, "", {causeOfRefusal}},
      {"date line", 70, true, "", "", {causeOfRefusal, causeOfFull, causeOfOpen, causeOfOpen}},
      {"item", 70, true, dateLine, "", {causeOfRefusal, causeOfFull, causeOfOpen, causeOfOpen}},
      {"line", 70, true, dateLine + item, "", {causeOfRefusal, causeOfFull, causeOfOpen, causeOfOpen}},
      {"close", 0, false, dateLine + item + line + full, "", {causeOfRefusal}},
      // The record of the table: the release behind it is not reached.
      {"second open", 0, true, dateLine + item + line, start + "61: Disk full: " + path + "\n", {failed}},
      {"second line", 70, true, dateLine + item + line, "", {failed, causeOfFull, causeOfOpen}},
      {"second close",
       0,
       true,
       dateLine + item + line + failed + "\n",
       start + "61: Disk full: " + path + "\n",
       {failed}},
  };
  const std::vector<std::size_t> statements = required.StepsOf(Step::Kind::Statement);
  const auto step = *std::find_if(statements.begin(), statements.end(), [&](std::size_t index) {
    const Text& text = required.steps()[index].text;
    return text.starts_with("UPDATE " + name + " ") || text.starts_with("DELETE FROM " + name + " ");
  });
  database.Reset();
  Disturbance look;
  look.Plan(step, When::Before, [&] { throw refused; });
  database.Run(look);
  std::vector<std::size_t> records;
  for (std::size_t i = step; i < look.steps().size(); ++i) {
    if (look.steps()[i].kind == Step::Kind::Log) records.push_back(i);
  }

  Tally tally("log write of a failure", GetParam(), std::size(cases));
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    database.Reset();
    Disturbance disturbance;
    disturbance.Plan(step, When::Before, [&] { throw refused; });
    disturbance.Plan(records[i], When::Before, [&] { throw RuntimeError(PlatformFault::DiskFull, path); });

    const JobEnd end = database.Run(disturbance);

    const TableState& table = end.tables.at(name);
    EXPECT_EQ(end.status, cases[i].status) << cases[i].step;
    EXPECT_EQ(table.isTaken, cases[i].isTaken) << cases[i].step;
    EXPECT_EQ(table.updateTime, "old") << cases[i].step;
    EXPECT_EQ(table.log, cases[i].log) << cases[i].step;
    EXPECT_EQ(end.startupLog, cases[i].startupLog) << cases[i].step;
    EXPECT_EQ(end.causes, cases[i].causes) << cases[i].step;
    tally.Add(end, name);
    ExpectRerunEndsAsUndisturbed(true, cases[i].step);
  }
}

/// What a job without memory comes to: its exit status, the tables that it has left taken, what it has told.
Text EndWithoutMemory(const DemoDatabase& database, std::int64_t allocation, Shortage shortage) {
  Disturbance none;
  const JobEnd end = database.Run(
      none, {.before = [&] { RunOutOfMemoryAt(allocation, shortage); }, .behind = [] { CountAllocations(); }});
  bool isTaken = false;
  for (const auto& [name, table] : end.tables) isTaken = isTaken || table.isTaken;
  const Text told = end.causes.empty() ? "nothing told" : "the cause told";
  return "exit " + std::to_string(end.status) + ", " + (isTaken ? "taken, " + told : Text("free"));
}

TEST_P(DemoJobFaults, AJobWithoutMemoryFreesItsTableOrSaysWhyNot) {
  database.Reset();
  SetMemoryAside();
  Disturbance none;
  std::int64_t count = 0;
  database.Run(none,
               {.before = [] { RunOutOfMemoryAt(-1, Shortage::Once); }, .behind = [&] { count = CountAllocations(); }});
  std::vector<std::size_t> allocations(static_cast<std::size_t>(count));
  std::iota(allocations.begin(), allocations.end(), std::size_t{0});
  // An all-tables job makes some ten thousand, so that even the long run takes every seventh of them.
  if (TriesAll() && GetParam().tableId == 128) std::erase_if(allocations, [](std::size_t i) { return i % 7 != 0; });
  const std::set<Text> allowed = {"exit 0, free", "exit 0, taken, the cause told", "exit 70, free",
                                  "exit 70, taken, the cause told"};

  for (const auto& [kind, shortage] :
       {std::pair("no memory once", Shortage::Once), std::pair("no memory any more", Shortage::Lasting)}) {
    std::map<Text, int> outcomes;
    for (const std::size_t allocation : Sample(allocations, 8, kind + GetParam().Name())) {
      database.Reset();
      const ChildRun run = RunInChild([&, shortage = shortage] {
        return EndWithoutMemory(database, static_cast<std::int64_t>(allocation), shortage);
      });

      EXPECT_TRUE(allowed.contains(run.result))
          << kind << ", allocation " << allocation << ": " << run.result << run.err;
      ++outcomes[run.result];
      ExpectRerunEndsAsUndisturbed(false, Text(kind) + " at allocation " + std::to_string(allocation));
    }
    std::printf("tried  %s  %s:", GetParam().Name().c_str(), kind);
    for (const auto& [outcome, times] : outcomes) std::printf(" %d %s;", times, outcome.c_str());
    std::printf(" of %zu allocations\n", allocations.size());
  }
}

/// Ends this process at the step as a power cut would; the files stay.
void KillAt(const DemoDatabase& database, std::size_t step, When when) {
  std::fflush(nullptr);
  const pid_t child = ::fork();
  if (child == 0) {
    Disturbance disturbance;
    disturbance.Plan(step, when, [] { ::kill(::getpid(), SIGKILL); });
    database.Run(disturbance);
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status)) << "step " << step;
}

TEST_P(DemoJobFaults, AKilledJobLeavesItsTableTakenAndTheNextOneTouchesNoneButTheOthers) {
  const std::vector<std::size_t> statements = required.StepsOf(Step::Kind::Statement);
  for (const auto& [kind, when] :
       {std::pair("SIGKILL before", When::Before), std::pair("SIGKILL behind", When::Behind)}) {
    Tally tally(kind, GetParam(), statements.size());
    for (const std::size_t step : Sample(statements, 5, kind + GetParam().Name())) {
      database.Reset();
      KillAt(database, step, when);
      const JobEnd killed = database.Look();
      JobEnd wanted = required.OfKill(step, when);
      wanted.heard.clear();
      EXPECT_EQ(Shown(killed), Shown(wanted)) << What(kind, step);
      const Text name = required.TableAt(step);
      tally.Add(killed, name);

      if (!name.empty() && killed.tables.at(name).isTaken) {
        const JobEnd next = database.Run();
        EXPECT_EQ(next.tables.at(name), killed.tables.at(name)) << What(kind, step);
        const std::vector<Text> told = RequiredEnd::HeardOfTaken(name);
        EXPECT_NE(std::search(next.heard.begin(), next.heard.end(), told.begin(), told.end()), next.heard.end())
            << What(kind, step);
      }
      ExpectRerunEndsAsUndisturbed(!required.LeavesExpiryBehind(step, when), What(kind, step));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, DemoJobFaults, testing::ValuesIn(DemoJobs()), [](const auto& job) {
  return "Generation" + job.param.generation + (job.param.syncMethod == "1" ? "Full" : "OnlyChanged") +
         (job.param.tableId == 128 ? Text() : "OfTable" + std::to_string(job.param.tableId));
});

}  // namespace
}  // namespace zenqay
