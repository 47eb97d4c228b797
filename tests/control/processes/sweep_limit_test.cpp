// The limit of the sweep at its edges, through zenqayctl and the job.
#include <gtest/gtest.h>

#include <sstream>

#include "job_site.h"

namespace zenqay {
namespace {

/// An export of the sites S1 to Sn.
Text Listing(int count) {
  Text listing = "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n";
  for (int i = 1; i <= count; ++i) listing += "S" + std::to_string(i) + ",new,C1\n";
  return listing;
}

class SweepLimitOfAJob : public testing::TestWithParam<Engine> {
 protected:
  /// What becomes of a table of the sites S1 to Sn when the ERP lists what the listing says, and its rows then.
  Text Swept(const Text& element, int before, const Text& listing, const Text& options = "") {
    site.Execute("DELETE FROM SITE");
    for (int i = 1; i <= before; ++i)
      site.Execute("INSERT INTO SITE (SITE, upd_flag) VALUES ('S" + std::to_string(i) + "', 0)");
    site.Execute("UPDATE tstables SET lutm = NULL");
    site.directory().Write("home/erp/Kv40QTMtssmaLocations.csv", listing);
    site.directory().Write("home/Components.xml", Replaced(components, "</COMPONENTS>", element + "</COMPONENTS>"));
    const CtlRun run = site.Run("run demo" + options);
    std::istringstream rows(
        site.Rows("SELECT COUNT(*), CASE WHEN (SELECT lutm FROM tstables WHERE tablename = 'SITE') IS NULL THEN 'old' "
                  "ELSE 'new' END, (SELECT in_use FROM tstables WHERE tablename = 'SITE') FROM SITE"));
    Text left;
    std::getline(rows, left);
    const std::size_t words = run.said.find("SITE: failed: ");
    const std::size_t end = run.said.find('\n', words);
    return std::to_string(run.status) + " " + left +
           (words == Text::npos ? "" : " " + run.said.substr(words + 14, end - words - 14));
  }

  const JobSite site{GetParam()};
  const Text components = site.directory().Read("home/Components.xml");
};

Text Refused(int marked, int before, const Text& limit) {
  return "20211: The sweep would delete " + std::to_string(marked) + " of the " + std::to_string(before) +
         " rows that SITE had before the copy, more than the limit of " + limit + ".";
}

TEST_P(SweepLimitOfAJob, HoldsAtItsEdges) {
  const Text share = R"(<SWEEP limit="10%" from="0"/>)";
  EXPECT_EQ(Swept(share, 0, Listing(0)), "0 0|new|0");
  EXPECT_EQ(Swept(share, 20, Listing(18)), "0 18|new|0");
  EXPECT_EQ(Swept(share, 20, Listing(17)), "1 20|old|0 " + Refused(3, 20, "10%"));

  const Text number = R"(<SWEEP limit="3" from="0"/>)";
  EXPECT_EQ(Swept(number, 20, Listing(17)), "0 17|new|0");
  EXPECT_EQ(Swept(number, 20, Listing(16)), "1 20|old|0 " + Refused(4, 20, "3"));
}

TEST_P(SweepLimitOfAJob, LetsASweepOfLessThanItsFirstNumberPass) {
  const Text share = R"(<SWEEP limit="10%" from="5"/>)";
  EXPECT_EQ(Swept(share, 20, Listing(16)), "0 16|new|0");
  EXPECT_EQ(Swept(share, 20, Listing(15)), "1 20|old|0 " + Refused(5, 20, "10%"));
}

TEST_P(SweepLimitOfAJob, KeepsTheRowsBehindAListingThatIsEmptyOrCutOff) {
  const Text share = R"(<SWEEP limit="10%" from="0"/>)";
  EXPECT_EQ(Swept(share, 20, Listing(0)), "1 20|old|0 " + Refused(20, 20, "10%"));
  EXPECT_EQ(Swept(share, 20, Listing(9)), "1 20|old|0 " + Refused(11, 20, "10%"));
  const Text whole = Listing(20);
  const Text inARecord = Swept(share, 20, whole.substr(0, whole.find("S10") + 4));
  EXPECT_EQ(inARecord.substr(0, 22), "1 20|old|0 13: Type mi") << inARecord;
}

TEST_P(SweepLimitOfAJob, OfOneTableGoesBeforeThatOfAll) {
  const Text own = R"(<SWEEP limit="10%" from="0"><TABLE name="Site" limit="50%"/></SWEEP>)";
  EXPECT_EQ(Swept(own, 20, Listing(10)), "0 10|new|0");
  EXPECT_EQ(Swept(own, 20, Listing(9)), "1 20|old|0 " + Refused(11, 20, "50%"));
}

TEST_P(SweepLimitOfAJob, IsLiftedForOneRun) {
  const Text own = R"(<SWEEP limit="10%" from="0"><TABLE name="SITE" limit="5%"/></SWEEP>)";
  EXPECT_EQ(Swept(own, 20, Listing(0), " --allow-sweep"), "0 0|new|0");
  EXPECT_EQ(Swept(own, 20, Listing(0)), "1 20|old|0 " + Refused(20, 20, "5%"));
}

INSTANTIATE_TEST_SUITE_P(Sqlite, SweepLimitOfAJob, testing::Values(Engine::Sqlite));
INSTANTIATE_TEST_SUITE_P(Postgres, SweepLimitOfAJob, testing::Values(Engine::PostgreSql));

}  // namespace
}  // namespace zenqay
