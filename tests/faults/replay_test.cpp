// Every job of the demo, whole, failing and killed, recorded and then replayed from its trace: the second trace is the
// first.
//
// The database is the same one from before the job, and what disturbed statements and log records disturbs them again.
// What failed of the components comes out of the trace. The clock of the platform stands still; that of the date
// objects went on.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "doubles/file_content.h"
#include "doubles/trace_text.h"
#include "faults/demo_job.h"
#include "faults/ways_to_fail.h"
#include "startup/modStartUp.h"

namespace zenqay {
namespace {

/// Every demo job of all tables, in the statements of both platforms.
std::vector<DemoJob> EveryJob() {
  std::vector<DemoJob> jobs;
  for (const char* generation : {"1", "3", "8"}) {
    for (const char* syncMethod : {"1", "2"}) {
      for (const char* platform : {"1", "2"}) jobs.push_back({generation, syncMethod, kAllTables, platform});
    }
  }
  return jobs;
}

/// What was recorded, and what came of its replay. What the status component was told stands in the traces.
struct Pair {
  DemoDatabase::TracedEnd recorded;
  DemoDatabase::TracedEnd replayed;
};

void ExpectTheSame(Pair pair, const Text& what) {
  pair.recorded.end.heard.clear();  // nobody listens to a replay
  EXPECT_EQ(pair.replayed.trace, pair.recorded.trace) << what;
  EXPECT_EQ(Shown(pair.replayed.end), Shown(pair.recorded.end)) << what;
}

class DemoJobReplay : public testing::TestWithParam<DemoJob> {
 protected:
  std::vector<Step> Steps() {
    Disturbance none;
    database.Reset();
    database.Record(none);
    return none.steps();
  }

  /// `fault` is what a step of the database or of a log is disturbed by in both runs, one of the components only in the
  /// first.
  Pair RecordAndReplay(std::size_t step, Step::Kind kind, const WayToFail& fault) {
    const auto fail = [&] { throw fault.error; };
    Disturbance first;
    first.Plan(step, fault.when, fail);
    database.Reset();
    Pair pair{.recorded = database.Record(first), .replayed = {}};
    Disturbance second;
    if (kind != Step::Kind::Call) second.Plan(step, fault.when, fail);
    database.Reset();
    pair.replayed = database.Replay(second);
    return pair;
  }

  void TryFailing(const std::vector<Step>& steps, Step::Kind kind, const WayToFail& fault, std::size_t sample) {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < steps.size(); ++i) {
      if (steps[i].kind == kind) places.push_back(i);
    }
    for (const std::size_t step : Sample(places, sample, "replay" + fault.kind + GetParam().Name())) {
      const Text what = fault.kind + " at step " + std::to_string(step) + ", " + steps[step].text;
      const Pair pair = RecordAndReplay(step, kind, fault);
      EXPECT_NE(pair.recorded.trace.find("\"error\""), Text::npos) << what;
      ExpectTheSame(pair, what);
    }
  }

  DemoDatabase database{GetParam()};
};

TEST_P(DemoJobReplay, LeavesTheTraceOfTheRecordedRun) {
  Disturbance none;
  database.Reset();
  Pair pair{.recorded = database.Record(none), .replayed = {}};
  Disturbance noneAgain;
  database.Reset();
  pair.replayed = database.Replay(noneAgain);

  EXPECT_EQ(pair.recorded.trace.find("\"error\""), Text::npos);
  ExpectTheSame(pair, "undisturbed");
}

TEST_P(DemoJobReplay, OfASingleTableLeavesTheTraceOfTheRecordedRun) {
  for (std::int32_t table = 1; table <= 10; ++table) {
    DemoJob job = GetParam();
    job.tableId = table;
    const DemoDatabase ofTable(job);
    Disturbance none;
    ofTable.Reset();
    Pair pair{.recorded = ofTable.Record(none), .replayed = {}};
    Disturbance noneAgain;
    ofTable.Reset();
    pair.replayed = ofTable.Replay(noneAgain);

    ExpectTheSame(pair, job.Name());
  }
}

TEST_P(DemoJobReplay, FailsAsTheRecordedRunDid) {
  const std::vector<Step> steps = Steps();

  for (const WayToFail& way : WaysOfAStatement()) TryFailing(steps, Step::Kind::Statement, way, 1);
  const RuntimeError callFails(5000, "ERP", "the call failed");
  TryFailing(steps, Step::Kind::Call, {"call fails", When::Before, callFails}, 1);
  TryFailing(steps, Step::Kind::Call, {"call fails behind its work", When::Behind, callFails}, 1);
  TryFailing(steps, Step::Kind::Log, {"log write", When::Before, RuntimeError(PlatformFault::DiskFull, "log")}, 1);
}

/// Ends a recorded job at the step as a power cut would.
void KillAt(const DemoDatabase& database, std::size_t step) {
  const pid_t child = ::fork();
  if (child == 0) {
    Disturbance disturbance;
    disturbance.Plan(step, When::Before, [] { ::kill(::getpid(), SIGKILL); });
    database.Record(disturbance);
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status)) << "step " << step;
}

TEST_P(DemoJobReplay, OfAKilledJobGoesAsFarAsItsTrace) {
  const std::vector<Step> steps = Steps();
  std::vector<std::size_t> calls;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (steps[i].kind == Step::Kind::Call) calls.push_back(i);
  }
  for (const std::size_t step : Sample(calls, 2, "killed" + GetParam().Name())) {
    database.Reset();
    KillAt(database, step);
    const Text cut = ContentOf(database.TracePath());
    const Text lines = WithoutTimes(cut);
    const auto count = std::count(cut.begin(), cut.end(), '\n');

    Disturbance none;
    database.Reset();
    const Text replayed = database.Replay(none).trace;

    EXPECT_EQ(replayed.substr(0, lines.size()), lines) << steps[step].text;
    if (lines.find("\"kind\":\"c") == Text::npos) continue;
    const Text next = replayed.substr(lines.size(), replayed.find('\n', lines.size()) - lines.size());
    const Text end = ": the trace ends at line " + std::to_string(count) + ", in front of ";
    EXPECT_NE(next.find(end), Text::npos) << steps[step].text << "\n" << next;
  }
}

INSTANTIATE_TEST_SUITE_P(, DemoJobReplay, testing::ValuesIn(EveryJob()), [](const auto& job) {
  return "Generation" + job.param.generation + (job.param.syncMethod == "1" ? "Full" : "OnlyChanged") +
         (job.param.platform == "1" ? "" : "OfOracle");
});

}  // namespace
}  // namespace zenqay
