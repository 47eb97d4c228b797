// A zenqayctl, or its jobs, killed at one of their calls into the operating system, and the next run. A run tries some
// places; with ZENQAY_FAULTS=all in the environment, as scripts/faults sets it, twenty of each.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <sstream>

#include "job_site.h"

namespace zenqay {
namespace {

const std::vector<Text> kTables = {"SITE", "OBJECT", "WARRANTIES"};

class Kills : public testing::TestWithParam<Engine> {
 protected:
  Kills() {
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);  // the jobs of a killed zenqayctl become this process's
    EXPECT_EQ(site.Run("run demo").status, 0);
    undisturbed = site.State(kTables);
  }

  /// So many calls does a program make in a run that is not disturbed.
  long PlacesOf(const Text& program) {
    Reset();
    EXPECT_EQ(site.Run("run demo", Killing(program, -1)).status, 0);
    std::istringstream counts(site.directory().Read("places"));
    long most = 0;
    for (long count = 0; counts >> count;) most = std::max(most, count);
    std::filesystem::remove(site.Path("places"));
    return most;
  }

  Variables Killing(const Text& program, long place) const {
    return {{"LD_PRELOAD", ZENQAY_KILL_AT},
            {"ASAN_OPTIONS", "verify_asan_link_order=0"},
            {"ZENQAY_KILL", program + " " + std::to_string(place) + " " + site.Path("places")}};
  }

  void Reset() const {
    for (const Text& table : kTables) site.Execute("DELETE FROM " + table);
    site.Execute("UPDATE tstables SET in_use = 0, lutm = NULL");
  }

  /// The tables that a job has left taken.
  std::vector<Text> LeftTaken() const {
    std::vector<Text> taken;
    std::istringstream names(site.Rows("SELECT tablename FROM tstables WHERE in_use = 1"));
    for (Text name; std::getline(names, name);) taken.push_back(name);
    return taken;
  }

  /// The next run takes over what was left behind, and ends like one that nothing went before.
  void ExpectNextRunCompletes() const {
    const std::vector<Text> taken = LeftTaken();
    const CtlRun next = site.Run("run demo");
    EXPECT_EQ(next.status, 0) << next.said;
    for (const Text& table : taken) {
      const Text takenOver = table + ": copying (it was left taken by a job that has died)";
      EXPECT_NE(next.said.find(takenOver), Text::npos) << next.said;
    }
    EXPECT_EQ(site.State(kTables), undisturbed);
    EXPECT_EQ(site.HomesLeft(), 0);
  }

  std::vector<long> Sample(const Text& program) {
    const long count = PlacesOf(program);
    const long wanted = TriesAll() ? 20 : GetParam() == Engine::Sqlite ? 5 : 3;
    std::vector<long> places;
    for (long i = 0; i < wanted; ++i) places.push_back(i * count / wanted + count / (2 * wanted));
    return places;
  }

  // A server gives a dead job's lock up once it has met the end of its connection.
  const JobSite site{GetParam(),
                     {.generation = "3",
                      .tables = R"("SITE", "OBJECT", "WARRANTIES")",
                      .job = GetParam() == Engine::Sqlite ? "" : "retry = { times = 60, wait = \"1s\" }\n"}};
  Text undisturbed;
};

TEST_P(Kills, OfJobsLeaveWhatTheNextRunTakesOver) {
  int killed = 0;
  for (const long place : Sample("zenqay-dbsync")) {
    SCOPED_TRACE(place);
    Reset();

    const CtlRun run = site.Run("run demo", Killing("zenqay-dbsync", place));

    const bool isKilled = run.said.find("the job was ended by signal 9 (Killed)") != Text::npos;
    EXPECT_EQ(run.status != 0, isKilled) << run.said;
    if (isKilled) ++killed;
    ExpectNextRunCompletes();
  }
  EXPECT_GT(killed, 1);
  std::printf("tried  SIGKILL of jobs: %d places\n", killed);
}

TEST_P(Kills, OfZenqayctlStopItsJobsAndTheNextRunCompletes) {
  int killed = 0;
  for (const long place : Sample("zenqayctl")) {
    SCOPED_TRACE(place);
    Reset();

    const CtlRun run = site.Run("run demo", Killing("zenqayctl", place));

    if (run.signal == SIGKILL) ++killed;
    for (const int job : JobsOf(::getpid())) {
      if (killed % 2 == 1) ::kill(job, SIGKILL);  // as when all of a unit's processes are killed
      ::waitpid(job, nullptr, 0);
    }
    ExpectNextRunCompletes();
    EXPECT_EQ(site.Run("history --json").said.find("\"outcome\":\"running\""), Text::npos);
  }
  EXPECT_GT(killed, 1);
  std::printf("tried  SIGKILL of zenqayctl: %d places\n", killed);
}

INSTANTIATE_TEST_SUITE_P(Sqlite, Kills, testing::Values(Engine::Sqlite));
INSTANTIATE_TEST_SUITE_P(Postgres, Kills, testing::Values(Engine::PostgreSql));

}  // namespace
}  // namespace zenqay
