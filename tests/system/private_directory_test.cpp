#include "system/private_directory.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include "doubles/temp_directory.h"
#include "system/child_process.h"
#include "system/own_process.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

/// Puts temporary files into a directory of the test.
class PrivateDirectoryOf : public testing::Test {
 protected:
  PrivateDirectoryOf() { ::setenv("TMPDIR", temporary.path().c_str(), 1); }
  ~PrivateDirectoryOf() override { ::unsetenv("TMPDIR"); }

  TempDirectory temporary;
};

TEST_F(PrivateDirectoryOf, IsAnotherOneEachTimeForItsOwnerAloneAndGoesWithTheObject) {
  Text path;
  {
    const PrivateDirectory first;
    const PrivateDirectory second;
    path = first.path();

    EXPECT_NE(first.path(), second.path());
    EXPECT_EQ(fs::path(path).parent_path(), temporary.path());
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_all);
    std::ofstream(path + "/file") << "content";
  }

  EXPECT_TRUE(fs::is_empty(temporary.path()));
}

TEST_F(PrivateDirectoryOf, RemovesWhatAKilledProcessLeftBehindAndNothingElse) {
  temporary.Write("zenqayctl-file", "");
  fs::create_directory(temporary.path() / "zenqay-other");
  const PrivateDirectory alive;
  const CopyRun killed = RunInCopy([](int output) {
    const PrivateDirectory left;
    std::ofstream(left.path() + "/file") << "content";
    WriteWhole(output, left.path());
    ::kill(::getpid(), SIGKILL);
    return 0;
  });
  ASSERT_TRUE(fs::exists(killed.output + "/file"));

  const PrivateDirectory next;

  EXPECT_FALSE(fs::exists(killed.output));
  EXPECT_TRUE(fs::exists(alive.path()));
  EXPECT_TRUE(fs::exists(next.path()));
  EXPECT_TRUE(fs::exists(temporary.path() / "zenqayctl-file"));
  EXPECT_TRUE(fs::exists(temporary.path() / "zenqay-other"));
}

}  // namespace
}  // namespace zenqay
