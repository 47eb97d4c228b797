#include "system/file_lock.h"

#include <gtest/gtest.h>

#include "doubles/child_process.h"
#include "doubles/outcome.h"
#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

TEST(FileLock, KeepsEveryOtherObjectAndProcessOutUntilItIsGivenBack) {
  const TempDirectory directory;
  const Text path = (directory.path() / "service.db-lock").string();
  const FileLock first(path);
  const FileLock second(path);
  const auto other = [&] {
    return RunInChild([&] { return Text(FileLock(path).Take("site") ? "got" : "not got"); }).result;
  };

  EXPECT_TRUE(first.Take("site"));
  EXPECT_FALSE(second.Take("site"));
  EXPECT_EQ(other(), "not got");
  EXPECT_TRUE(second.Take("object"));

  first.GiveBack("site");
  EXPECT_EQ(other(), "got");
  EXPECT_TRUE(second.Take("site"));
}

TEST(FileLock, CanBeAskedAfterWithoutBeingTaken) {
  const TempDirectory directory;
  const Text path = (directory.path() / "lock").string();
  EXPECT_FALSE(FileLock::IsTaken(path, "site"));
  EXPECT_FALSE(std::filesystem::exists(path));
  const FileLock lock(path);
  EXPECT_TRUE(lock.Take("site"));

  EXPECT_TRUE(FileLock::IsTaken(path, "site"));
  EXPECT_FALSE(FileLock::IsTaken(path, "object"));
  lock.GiveBack("site");
  EXPECT_FALSE(FileLock::IsTaken(path, "site"));
}

TEST(FileLock, GoesWithItsObject) {
  const TempDirectory directory;
  const Text path = (directory.path() / "lock").string();
  const FileLock second(path);
  {
    const FileLock first(path);
    EXPECT_TRUE(first.Take("site"));
  }

  EXPECT_TRUE(second.Take("site"));
}

TEST(FileLock, NamesTheFileThatCannotBeOpened) {
  EXPECT_EQ(Raised([] { FileLock lock("/no-such-directory/lock"); }),
            "76 ZenqayDBSync: Path not found: /no-such-directory/lock");
}

}  // namespace
}  // namespace zenqay
