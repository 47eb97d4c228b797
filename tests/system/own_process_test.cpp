#include "system/own_process.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <filesystem>

#include "doubles/temp_directory.h"
#include "doubles/time_zone.h"
#include "system/child_process.h"
#include "system/signal_watch.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

TEST(KeepMemoryPrivate, LeavesNoCore) {
  const TempDirectory directory;

  const CopyRun run = RunInCopy([&](int) -> int {
    fs::current_path(directory.path());
    KeepMemoryPrivate();
    ::kill(::getpid(), SIGQUIT);
    return 0;
  });

  EXPECT_EQ(run.end, (ProcessEnd{.signal = SIGQUIT}));
  EXPECT_TRUE(fs::is_empty(directory.path()));
}

TEST(MakePrivateFile, MakesItForItsOwnerAloneAndKeepsOneThatIsThere) {
  const TempDirectory directory;
  const Text path = directory.path() / "new";
  directory.Write("old", "content");

  MakePrivateFile(path);
  MakePrivateFile(directory.path() / "old");

  EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(directory.Read("old"), "content");
}

TEST(ClockOffsetAt, IsThatOfTheMoment) {
  const TimeZone zone("Europe/Berlin");

  EXPECT_EQ(ClockOffsetAt(1768500000), 3600);  // January 2026
  EXPECT_EQ(ClockOffsetAt(1784100000), 7200);  // July 2026
}

TEST(SignalWatch, HoldsASignalUntilItIsTaken) {
  SignalWatch watch;
  EXPECT_EQ(watch.TakeStop(), std::nullopt);

  ::raise(SIGTERM);

  EXPECT_EQ(WaitForInput({watch.descriptor()}, -1), std::vector<int>{watch.descriptor()});
  EXPECT_EQ(watch.TakeStop(), SIGTERM);
  EXPECT_EQ(watch.TakeStop(), std::nullopt);
}

}  // namespace
}  // namespace zenqay
