#include "system/process_identity.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "system/child_process.h"

namespace zenqay {
namespace {

TEST(LifeOf, KnowsAProcessFromAnotherOfItsNumber) {
  const ProcessIdentity own = OwnIdentity();
  EXPECT_EQ(own.pid, ::getpid());
  EXPECT_EQ(LifeOf(own), Life::Alive);

  ProcessIdentity former = own;
  former.start = "1";
  EXPECT_EQ(LifeOf(former), Life::Gone);
  ProcessIdentity beforeTheBoot = own;
  beforeTheBoot.boot = "another";
  EXPECT_EQ(LifeOf(beforeTheBoot), Life::Gone);
  ProcessIdentity elsewhere = own;
  elsewhere.host = "another";
  EXPECT_EQ(LifeOf(elsewhere), Life::OnAnotherMachine);
}

TEST(LifeOf, FindsOutThatAProcessHasGone) {
  ProcessIdentity child;
  {
    const ChildProcess process({.program = "/bin/sleep", .arguments = {"1000"}});
    child = IdentityOf(process.pid());
    EXPECT_EQ(LifeOf(child), Life::Alive);
  }

  EXPECT_EQ(LifeOf(child), Life::Gone);
}

TEST(LifeOf, KnowsAProcessAsGoneWhoseEndNobodyHasAskedFor) {
  const pid_t child = ::fork();
  if (child == 0) ::pause();
  const ProcessIdentity identity = IdentityOf(child);
  EXPECT_EQ(LifeOf(identity), Life::Alive);

  ::kill(child, SIGKILL);
  siginfo_t end{};
  ::waitid(P_PID, static_cast<id_t>(child), &end, WEXITED | WNOWAIT);
  EXPECT_EQ(LifeOf(identity), Life::Gone);
  ::waitpid(child, nullptr, 0);
}

}  // namespace
}  // namespace zenqay
