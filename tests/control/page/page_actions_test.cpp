// What the page starts, and how that ends.
#include "control/page/page_actions.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <sstream>
#include <thread>

#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

class RunsOfThePage : public testing::Test {
 protected:
  RunsOfThePage() {
    directory.Write("ctl",
                    "#!/bin/sh\n"
                    "trap 'echo asked >&2; exit 143' TERM\n"
                    "echo \"began $*\" >&2\n"
                    "while :; do sleep 0.01; done\n");
    std::filesystem::permissions(directory.path() / "ctl", std::filesystem::perms::owner_all);
  }

  /// What a request of the page is answered, in a thread that ends with it.
  ActionEnd Start() {
    std::atomic<bool> isAnswered = false;
    ActionEnd answer;
    std::thread request([&] {
      answer = runs.StartJob("demo");
      isAnswered = true;
    });
    while (!isAnswered) runs.Attend();
    request.join();
    return answer;
  }

  /// Up to what is said, or the end of the run.
  void AttendUntil(const Text& said) {
    const auto isSaid = [&](const Text& words) { return err.str().find(words) != Text::npos; };
    while (!isSaid(said) && !isSaid("the run of demo")) runs.Attend();
  }

  TempDirectory directory;
  std::ostringstream out;
  std::ostringstream err;
  Surroundings surroundings{.environment = {},
                            .jobProgram = {},
                            .ctlProgram = {},
                            .historyPath = {},
                            .out = out,
                            .err = err,
                            .terminal = {},
                            .check = {}};
  TableWatch tables{JobFile{}, {}, ""};
  StartedRuns runs{(directory.path() / "ctl").string(), "/zenqay.toml", tables, surroundings};
};

TEST_F(RunsOfThePage, AreNotAskedToStopWhenTheThreadOfTheirRequestEnds) {
  const ActionEnd answer = Start();

  EXPECT_TRUE(answer.isDone);
  EXPECT_EQ(answer.words, "a run of demo is started");
  AttendUntil("began --file /zenqay.toml run demo\n");
  constexpr int kLooks = 50;
  for (int look = 0; look < kLooks; ++look) {
    ::usleep(5000);
    runs.Attend();
  }
  EXPECT_EQ(err.str(), "began --file /zenqay.toml run demo\n");

  runs.End();
  AttendUntil("ended");
  EXPECT_EQ(err.str(), "began --file /zenqay.toml run demo\nasked\nzenqayctl: the run of demo ended with 143\n");
}

TEST_F(RunsOfThePage, AreOneAtATimeForEachJob) {
  Start();

  const ActionEnd second = Start();
  EXPECT_FALSE(second.isDone);
  EXPECT_EQ(second.words, "this page's run of demo has not ended");
  runs.End();
  AttendUntil("began");
}

TEST_F(RunsOfThePage, AreNotStartedWhenThePageEnds) {
  runs.End();

  const ActionEnd answer = Start();
  EXPECT_FALSE(answer.isDone);
  EXPECT_EQ(answer.words, "the page ends");
}

TEST_F(RunsOfThePage, SayWhyTheyCannotBeStarted) {
  std::filesystem::remove(directory.path() / "ctl");

  Text fault;
  std::atomic<bool> isAnswered = false;
  std::thread request([&] {
    try {
      runs.StartJob("demo");
    } catch (const RuntimeError& error) {
      fault = error.what();
    }
    isAnswered = true;
  });
  while (!isAnswered) runs.Attend();
  request.join();
  EXPECT_NE(fault.find(directory.path().string() + "/ctl (No such file or directory)"), Text::npos) << fault;
}

}  // namespace
}  // namespace zenqay
