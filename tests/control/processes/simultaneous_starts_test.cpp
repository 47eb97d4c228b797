// Two zenqayctl that start in the same moment on the same table. A run tries some pairs; with ZENQAY_FAULTS=all in the
// environment, as scripts/faults sets it, a hundred.
#include <gtest/gtest.h>
#include <unistd.h>

#include "job_site.h"

namespace zenqay {
namespace {

class SimultaneousStarts : public testing::TestWithParam<Engine> {};

struct Pair {
  RunningCtl& first;
  RunningCtl& second;

  bool HasEnded() const { return first.HasEnded() && second.HasEnded(); }
};

TEST_P(SimultaneousStarts, LetOneCopyTheTableAndTheOtherFindItInUse) {
  const JobSite site(GetParam());
  const Text locations = site.Export("Kv40QTMtssmaLocations.csv");
  const int pairs = TriesAll() ? 100 : 5;
  for (int pair = 1; pair <= pairs; ++pair) {
    SCOPED_TRACE(pair);
    site.Execute("DELETE FROM SITE");
    std::filesystem::remove(locations);
    HeldExport held(locations);
    RunningCtl first = site.Start("run demo");
    RunningCtl second = site.Start("run demo");

    Pair both = {first, second};
    held.WaitUntilOpened(both);
    while (!first.HasEnded() && !second.HasEnded()) ::usleep(1000);  // the one that does not have the table
    RunningCtl& copying = first.HasEnded() ? second : first;
    const CtlRun inUse = (first.HasEnded() ? first : second).Wait();
    held.Write("Location:text:cloc:key,Description:text:desc,Customer:text:cuno\nA1,North,C7\nA2,South,C7\n");
    held.Finish();
    const CtlRun complete = copying.Wait();

    EXPECT_EQ(inUse.status, 3) << inUse.said;
    EXPECT_NE(inUse.said.find("SITE: in use\n"), Text::npos) << inUse.said;
    EXPECT_EQ(complete.status, 0) << complete.said;
    EXPECT_EQ(site.Rows("SELECT SITE FROM SITE ORDER BY SITE"), "A1\nA2\n");
    EXPECT_EQ(site.Rows("SELECT in_use FROM tstables WHERE tablename = 'SITE'"), "0\n");
  }
  std::printf("tried  two starts at once: %d pairs\n", pairs);
}

INSTANTIATE_TEST_SUITE_P(Sqlite, SimultaneousStarts, testing::Values(Engine::Sqlite));
INSTANTIATE_TEST_SUITE_P(Postgres, SimultaneousStarts, testing::Values(Engine::PostgreSql));

}  // namespace
}  // namespace zenqay
