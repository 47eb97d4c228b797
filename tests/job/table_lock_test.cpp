// The lock of a table around its copy.
#include <gtest/gtest.h>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"

namespace zenqay {
namespace {

/// A job of table 5, for which there is no copy, whose flag is set or not.
class TableLockTest : public testing::Test {
 protected:
  /// What the job says behind the opening of its connection.
  Text Start(TableLock lock, bool isInUse) {
    copy.process.safeguards.lock = lock;
    copy.process.TableRegistry[5].TableName = "Branch";
    if (isInUse) copy.SetState({{"in_use", std::int32_t{1}}});
    copy.job.StartDataCopy("Provider=SQLOLEDB", "", 5, 1, copy.directory.path().string(), "100", std::int32_t{1});
    return copy.JournalWithout({"open", "close", "sql SET", "get Default", "close recordset", "box"});
  }

  CopyFixture copy{"1"};
};

const Text kQuery = "query SELECT * FROM tstables WHERE tablename = N'Branch'\n";
const Text kTaken = "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Branch' -> 1\n";
const Text kReleased = "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Branch' -> 1\n";
const Text kStarted = "event DataCopyStarted(time(10:11:12 AM), i16(5))\n";
const Text kComplete = "event DataCopyComplete(time(10:11:12 AM), i16(5), i32(0), i32(0), i32(0))\n";
const Text kInUse = "event DataCopyAlreadyInProgress(time(10:11:12 AM), i16(5))\n";
const Text kDone = "event DataCopydone()\n";

TEST_F(TableLockTest, IsNotTakenUnlessItIsAskedFor) {
  EXPECT_EQ(Start(TableLock::NotUsed, false), kQuery + kTaken + kStarted + kReleased + kComplete + kDone);
}

TEST_F(TableLockTest, IsTakenBeforeTheFlagIsLookedAtAndGivenBackBehindTheRelease) {
  EXPECT_EQ(Start(TableLock::Used, false),
            "lock Branch\n" + kQuery + kTaken + kStarted + kReleased + "unlock Branch\n" + kComplete + kDone);
}

TEST_F(TableLockTest, OfAnotherJobMeansThatTheTableIsInUse) {
  copy.database.lockIsFree = false;

  EXPECT_EQ(Start(TableLock::TakesOver, false), "lock Branch -> not got\n" + kInUse + kDone);
}

TEST_F(TableLockTest, LeavesAFlagThatIsSetAlone) {
  EXPECT_EQ(Start(TableLock::Used, true), "lock Branch\n" + kQuery + "unlock Branch\n" + kInUse + kDone);
  EXPECT_EQ(copy.platform.causes, std::vector<Text>());
}

TEST_F(TableLockTest, TakesAFlagOverWhereEveryJobUsesIt) {
  EXPECT_EQ(Start(TableLock::TakesOver, true),
            "lock Branch\n" + kQuery + kTaken + kStarted + kReleased + "unlock Branch\n" + kComplete + kDone);
  EXPECT_EQ(copy.platform.causes,
            std::vector<Text>{"table Branch was in use although nobody holds its lock: the flag was left behind by a "
                              "job that is gone, and the copy goes on"});
}

TEST_F(TableLockTest, ThatCannotBeProvedFailsTheTableAndLeavesItsFlagAlone) {
  copy.database.FailCall("lock", RuntimeError(-2147467259, "ZenqayDBSync", "excludes nobody"));

  const Text journal = Start(TableLock::Used, true);

  EXPECT_EQ(journal.substr(0, journal.find('(')), "lock Branch\nevent DataCopyError");
  EXPECT_EQ(copy.RunLog().empty(), true);
}

}  // namespace
}  // namespace zenqay
