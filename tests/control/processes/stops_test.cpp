// Jobs that are asked to stop, or crash, in the middle of a table.
#include <gtest/gtest.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

#include "job_site.h"

namespace zenqay {
namespace {

const Text kLocationsFile = "Kv40QTMtssmaLocations.csv";
const Text kLocations = "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\nA1,North,C7\n";
const Text kWasAsked = "PRIORITY: stopped: its job was not started\n";

/// A run of SITE, which holds the row B1, and then PRIORITY. The job of SITE has the table and waits for what the ERP
/// lists.
class JobUnderWay : public testing::Test {
 protected:
  JobUnderWay() {
    site.Execute("INSERT INTO SITE (SITE, upd_flag) VALUES ('B1', 0)");
    std::filesystem::remove(site.Export(kLocationsFile));
    held = std::make_unique<HeldExport>(site.Export(kLocationsFile));
  }

  void Begin() {
    ctl.reset(new RunningCtl(site.Start("run demo")));
    held->WaitUntilOpened(*ctl);
    job = ctl->Jobs().at(0);
  }

  CtlRun GoOn() const {
    held->Write(kLocations);
    held->Finish();
    return ctl->Wait();
  }

  /// Waits until zenqayctl has asked its job to stop, and lets that go on.
  CtlRun GoOnOnceAsked() const {
    while (ctl->Said().find(kWasAsked) == Text::npos) ::usleep(1000);
    return GoOn();
  }

  Text StateOfSite() const {
    return site.Rows("SELECT in_use, lutm FROM tstables WHERE tablename = 'SITE'") +
           site.Rows("SELECT SITE FROM SITE ORDER BY SITE");
  }

  void ExpectBrokenOff(const CtlRun& run, int status) const {
    EXPECT_EQ(run.status, status) << run.said;
    EXPECT_NE(run.said.find("SITE: stopped: the copy was broken off\n"), Text::npos) << run.said;
    EXPECT_EQ(StateOfSite(), "0|NULL\nB1\n");
    EXPECT_EQ(site.HomesLeft(), 0);
    ExpectNextRunCompletes();
  }

  void ExpectNextRunCompletes() const {
    std::filesystem::remove(site.Export(kLocationsFile));
    site.directory().Write("home/erp/" + kLocationsFile, kLocations);
    const CtlRun run = site.Run("run demo");
    EXPECT_EQ(run.status, 0) << run.said;
    EXPECT_EQ(site.Rows("SELECT SITE FROM SITE"), "A1\n");
  }

  const JobSite site{Engine::Sqlite, {.tables = R"("SITE", "PRIORITY")", .parallel = "1"}};
  std::unique_ptr<HeldExport> held;
  std::unique_ptr<RunningCtl> ctl;
  int job = 0;
};

TEST_F(JobUnderWay, IsBrokenOffByEachSignalThatAsksZenqayctlToStop) {
  Begin();
  ::kill(ctl->pid(), SIGTERM);

  ExpectBrokenOff(GoOnOnceAsked(), 128 + SIGTERM);
}

/// As a service manager does that signals all processes of a unit.
TEST_F(JobUnderWay, IsBrokenOffOnceWhenEveryProcessIsAskedToStop) {
  Begin();
  ::kill(job, SIGTERM);
  ::kill(ctl->pid(), SIGTERM);

  ExpectBrokenOff(GoOnOnceAsked(), 128 + SIGTERM);
}

/// A terminal sends its signal to the foreground group, in which zenqayctl is alone.
TEST_F(JobUnderWay, IsBrokenOffByCtrlCOnATerminal) {
  int terminal = -1;
  const winsize size = {.ws_row = 24, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};
  const pid_t program = ::forkpty(&terminal, nullptr, nullptr, &size);
  if (program == 0) {
    ::setenv("XDG_STATE_HOME", site.Path("").c_str(), 1);
    ::setenv("TMPDIR", site.Path("tmp").c_str(), 1);
    ::setenv("TERM", "xterm", 1);
    ::execl(ZENQAYCTL, "zenqayctl", "--file", site.Path("zenqay.toml").c_str(), "run", "demo", nullptr);
    ::_exit(127);
  }
  struct {
    bool HasEnded() const { return false; }
  } never;
  held->WaitUntilOpened(never);
  job = JobsOf(program).at(0);
  EXPECT_EQ(::tcgetpgrp(terminal), program);
  EXPECT_EQ(::getpgid(job), job);
  const auto await = [&](const Text& what) {
    Text shown;
    std::array<char, 4096> block{};
    while (shown.find(what) == Text::npos) {
      const ssize_t count = ::read(terminal, block.data(), block.size());
      if (count <= 0) break;
      shown.append(block.data(), static_cast<std::size_t>(count));
    }
    return shown;
  };

  const bool isTyped = ::write(terminal, "\x03", 1) == 1;
  await("its job was not started");
  held->Write(kLocations);
  held->Finish();
  const Text shown = await("2 stopped");
  int status = 0;
  ::waitpid(program, &status, 0);
  ::close(terminal);

  EXPECT_TRUE(isTyped);
  ASSERT_TRUE(WIFEXITED(status));
  ExpectBrokenOff({.status = WEXITSTATUS(status), .said = Replaced(shown, "\r\n", "\n")}, 128 + SIGINT);
}

TEST_F(JobUnderWay, ThatCrashesHasFailedAndLeavesItsTableToTheNextRun) {
  for (const auto& [signal, words] :
       {std::pair(SIGSEGV, "11 (Segmentation fault)"), std::pair(SIGKILL, "9 (Killed)")}) {
    SCOPED_TRACE(words);
    Begin();
    ::kill(job, signal);
    const CtlRun run = ctl->Wait();
    held->Finish();

    EXPECT_EQ(run.status, 1) << run.said;
    EXPECT_NE(run.said.find(Text("SITE: failed: the job was ended by signal ") + words), Text::npos) << run.said;
    EXPECT_EQ(StateOfSite(), "1|NULL\nB1\n");
    EXPECT_NE(site.Run("status demo").said.find(", which is gone; its lock is free"), Text::npos);
  }
  ExpectNextRunCompletes();
}

TEST_F(JobUnderWay, ThatCannotWriteItsRecordsEndsWith70AndSaysWhy) {
  Begin();
  std::filesystem::remove_all(site.Path("log"));
  const CtlRun run = GoOn();

  EXPECT_EQ(run.status, 1) << run.said;
  EXPECT_NE(run.said.find("SITE: failed: the job ended with 70: "), Text::npos) << run.said;
  EXPECT_NE(run.said.find("76: Path not found: " + site.Path("log")), Text::npos) << run.said;
}

}  // namespace
}  // namespace zenqay
