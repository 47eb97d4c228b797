#include "system/child_process.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include "base/runtime_error.h"
#include "doubles/outcome.h"
#include "doubles/temp_directory.h"
#include "system/own_process.h"

namespace zenqay {
namespace {

ChildStart Shell(const Text& script) {
  return {.program = "/bin/sh", .arguments = {"-c", script}, .channelVariable = "CHANNEL"};
}

ProcessEnd WaitForEnd(ChildProcess& child) {
  while (!child.Ended()) ::usleep(1000);
  return *child.Ended();
}

/// All that the child says on the channel and on standard error, joined by "|".
Text AllOf(ChildProcess& child) {
  Text channel;
  Text errors;
  while (child.channel() >= 0 || child.errors() >= 0) {
    for (const int ready : WaitForInput({child.channel(), child.errors()}, -1)) {
      if (ready == child.channel()) {
        child.ReadChannel(channel);
      } else {
        child.ReadErrors(errors);
      }
    }
  }
  return channel + "|" + errors;
}

TEST(ChildProcess, ReadsItsInputAndSpeaksOnTheChannelAndOnStandardError) {
  ChildStart start = Shell("cat >&$CHANNEL; echo dropped; echo heard >&2; echo \"$A$B$HOME\" >&2");
  start.input = Text(100000, 'x');
  start.environment = {{"A", "a"}, {"HOME", std::nullopt}};
  ChildProcess child(start);

  EXPECT_EQ(AllOf(child), Text(100000, 'x') + "|heard\na\n");
  EXPECT_EQ(WaitForEnd(child), (ProcessEnd{.status = 0}));
}

TEST(ChildProcess, HasNoDescriptorButThose) {
  ChildProcess child(Shell("exec ls /proc/self/fd >&2"));

  EXPECT_EQ(AllOf(child), "|0\n1\n2\n3\n4\n");  // the last is that of the directory
}

TEST(ChildProcess, SaysHowItEnded) {
  ChildProcess status(Shell("exit 70"));
  ChildProcess signal(Shell("kill -SEGV $$"));

  EXPECT_EQ(WaitForEnd(status).Words(), "ended with 70");
  EXPECT_EQ(WaitForEnd(signal).Words(), "was ended by signal 11 (Segmentation fault)");
}

TEST(ChildProcess, IsAskedAloneAndKilledWithAllThatItStarted) {
  ChildProcess asked(Shell("trap 'echo asked >&2; exit 5' TERM; echo ready >&2; while :; do sleep 0.01; done"));
  Text heard;
  while (heard != "ready\n") {
    WaitForInput({asked.errors()}, -1);
    asked.ReadErrors(heard);
  }
  asked.Ask();
  EXPECT_EQ(WaitForEnd(asked), (ProcessEnd{.status = 5}));

  ChildProcess killed(Shell("sleep 1000 & echo ready >&2; wait"));
  WaitForInput({killed.errors()}, -1);
  killed.Kill();
  EXPECT_EQ(AllOf(killed), "|ready\n");  // standard error ends: nobody is left who holds it
  EXPECT_EQ(WaitForEnd(killed), (ProcessEnd{.signal = SIGKILL}));
}

TEST(ChildProcess, IsInAGroupOfItsOwnAndLeavesNoCore) {
  ChildProcess child(Shell("read -r _ _ _ _ group _ </proc/$$/stat; [ $group = $$ ] && echo own >&2; ulimit -c >&2"));

  EXPECT_EQ(AllOf(child), "|own\n0\n");  // in blocks, of which one byte is none
}

TEST(ChildProcess, RaisesAProgramThatCannotBeStarted) {
  EXPECT_EQ(Raised([] { ChildProcess({.program = "/nowhere/job"}); }),
            "53 ZenqayDBSync: File not found: /nowhere/job (No such file or directory)");
  const TempDirectory directory;
  directory.Write("job", "");
  const Text path = directory.path() / "job";
  EXPECT_EQ(Raised([&] { ChildProcess({.program = path}); }),
            "70 ZenqayDBSync: Permission denied: " + path + " (Permission denied)");
}

TEST(ChildProcess, IsAskedToStopWhenItsStarterIsKilled) {
  const CopyRun run = RunInCopy([](int output) {
    ::dup2(output, STDOUT_FILENO);
    ChildProcess child({.program = "/bin/sh",
                        .arguments = {"-c", "exec 4>/proc/" + std::to_string(::getpid()) +
                                                "/fd/1; trap 'echo asked >&4; exit' TERM; echo ready >&2; while :; do "
                                                "sleep 0.01; done"}});
    WaitForInput({child.errors()}, -1);
    ::kill(::getpid(), SIGKILL);
    return 0;
  });

  EXPECT_EQ(run.end, (ProcessEnd{.signal = SIGKILL}));
  EXPECT_EQ(run.output, "asked\n");
}

TEST(RunInCopy, GivesWhatTheCopyWroteAndItsStatus) {
  const CopyRun run = RunInCopy([](int output) {
    WriteWhole(STDOUT_FILENO, "dropped");
    return WriteWhole(output, "kept") ? 3 : 4;
  });

  EXPECT_EQ(run.output, "kept");
  EXPECT_EQ(run.end, (ProcessEnd{.status = 3}));
}

TEST(RunProgram, GivesWhatAProgramSaysOfItsInputAndHowItEnds) {
  const ProgramRun run =
      RunProgram({.program = "/bin/sh", .arguments = {"-c", "cat; echo fault >&2; exit 3"}, .input = "text"},
                 std::chrono::hours(1));

  EXPECT_EQ(run.output, "text");
  EXPECT_EQ(run.errors, "fault\n");
  EXPECT_EQ(run.end, (ProcessEnd{.status = 3}));
  EXPECT_FALSE(run.isOutOfTime);
}

TEST(RunProgram, EndsAProgramThatTakesTooLongWithAllThatItStarted) {
  const ProgramRun run = RunProgram({.program = "/bin/sh", .arguments = {"-c", "echo begun; sleep 1000 & wait"}},
                                    std::chrono::milliseconds(500));

  EXPECT_EQ(run.output, "begun\n");
  EXPECT_TRUE(run.isOutOfTime);
}

TEST(FindProgram, TakesTheFirstThatMayBeRun) {
  const TempDirectory first;
  const TempDirectory second;
  const Text path = ":" + first.path().string() + ":" + second.path().string();
  first.Write("program", "");
  second.Write("program", "");
  std::filesystem::permissions(second.path() / "program", std::filesystem::perms::owner_all);

  EXPECT_EQ(FindProgram("program", path), (second.path() / "program").string());
  EXPECT_EQ(FindProgram("other", path), "");
  EXPECT_EQ(FindProgram("program", ""), "");
}

TEST(WaitForInput, EndsWithTheTimeGiven) {
  EXPECT_EQ(WaitForInput({-1}, 1), std::vector<int>{});
}

}  // namespace
}  // namespace zenqay
