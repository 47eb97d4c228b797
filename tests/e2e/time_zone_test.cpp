// The update time of a table away from UTC: it is stored shifted by the zone's offset, and shifted back by the next
// pass.
#include <gtest/gtest.h>

#include "e2e/program_fixture.h"

namespace zenqay {
namespace {

std::string StoredTime(const ProgramHome& home) {
  const std::string row = home.Query("SELECT lutm FROM tstables WHERE tablename = 'SITE'");
  return row.substr(0, row.size() - 1);
}

/// The stored time, and so many seconds, as an export writes it: "2004-01-31T10:11:12Z".
std::string ExportedTime(const ProgramHome& home, const std::string& seconds) {
  const std::string row = home.Query("SELECT strftime('%Y-%m-%dT%H:%M:%SZ', lutm, '" + seconds +
                                     " seconds') FROM tstables WHERE tablename = 'SITE'");
  return row.substr(0, row.size() - 1);
}

class UpdateTimeIn : public testing::TestWithParam<std::string> {};

TEST_P(UpdateTimeIn, IsStoredAsUtcAndTheNextPassFindsExactlyTheChangesSince) {
  ASSERT_TRUE(std::filesystem::exists("/usr/share/zoneinfo/" + GetParam()));  // else it would be UTC
  ProgramHome home;
  const ProgramSettings there = {.timeZone = GetParam()};
  home.WriteExport("Kv40QTMtssmaLocations.csv",
                   "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
                   "A1,North,C7\n"
                   "A2,South,C8\n");
  const std::string before = UtcMoment(0, ' ');

  const ProgramRun fullCopy = home.Run(home.Line(), there);

  const std::string after = UtcMoment(0, ' ');
  EXPECT_EQ(fullCopy.status, 0);
  EXPECT_LE(before, StoredTime(home));
  EXPECT_GE(after, StoredTime(home));

  home.WriteExport("Kv40QTMtssmaLocations.changes.csv",
                   "ChangedAt,ActionType,Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n" +
                       ExportedTime(home, "-1") + ",D,A1,,\n" + ExportedTime(home, "+0") +
                       ",U,A2,at the time itself,\n" + UtcMoment(0, 'T') + "Z,I,A3,now,\n" + UtcMoment(1800, 'T') +
                       "Z,D,A2,,\n");
  CommandLine line = home.Line();
  line.syncMethod = "2";

  const ProgramRun onlyChangedPass = home.Run(line, there);

  EXPECT_EQ(onlyChangedPass.status, 0);
  EXPECT_EQ(home.Sites(),
            "A1|North|C7|0\n"
            "A2|at the time itself|C8|0\n"
            "A3|now|NULL|0\n");
  EXPECT_LE(after, StoredTime(home));
  EXPECT_GE(UtcMoment(0, ' '), StoredTime(home));
}

INSTANTIATE_TEST_SUITE_P(, UpdateTimeIn, testing::Values("UTC", "America/New_York", "Asia/Kolkata"),
                         [](const auto& zone) {
                           std::string name = zone.param;
                           std::erase_if(name, [](char c) { return !std::isalpha(static_cast<unsigned char>(c)); });
                           return name;
                         });

}  // namespace
}  // namespace zenqay
