// The password of a server that asks for it, from the job file's source to the job and nowhere else.
#include <gtest/gtest.h>
#include <unistd.h>

#include <iterator>

#include "doubles/file_content.h"
#include "job_site.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

const Text kLocationsFile = "Kv40QTMtssmaLocations.csv";
const Text kLocations = "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\nA1,North,C7\n";

/// The files below a directory that hold the text, but for the one where it belongs.
std::vector<Text> FilesWith(const Text& text, const fs::path& directory) {
  std::vector<Text> found;
  for (const fs::directory_entry& file : fs::recursive_directory_iterator(directory)) {
    if (!file.is_regular_file() || file.path().filename() == "password") continue;
    if (ContentOf(file.path()).find(text) != Text::npos) found.push_back(file.path().string());
  }
  return found;
}

/// Words of the password, as it is and as a connection string quotes it.
const std::vector<Text> kTraces = {"pa;ss", "ss}w", "w'\xc3\xb6rd"};

TEST(PostgresPassword, StandsNowhereButWhereItWasRead) {
  const JobSite site(Engine::PostgreSql);
  fs::remove(site.Export(kLocationsFile));
  HeldExport held(site.Export(kLocationsFile));
  RunningCtl ctl = site.Start("run demo --json");
  held.WaitUntilOpened(ctl);
  const int job = ctl.Jobs().at(0);

  for (const Text& trace : kTraces) {
    for (const int process : {ctl.pid(), job}) {
      for (const char* name : {"cmdline", "environ"}) {
        const Text shown = ContentOf("/proc/" + std::to_string(process) + "/" + name);
        EXPECT_EQ(shown.find(trace), Text::npos) << name << " of " << process;
      }
    }
    EXPECT_EQ(FilesWith(trace, site.directory().path()), std::vector<Text>());  // the derived home is among them
  }
  EXPECT_EQ(site.HomesLeft(), 1);
  held.Write(kLocations);
  held.Finish();
  EXPECT_EQ(ctl.Wait().status, 0);
  for (const Text& trace : kTraces) EXPECT_EQ(FilesWith(trace, site.directory().path()), std::vector<Text>());
}

TEST(PostgresPassword, ThatIsRefusedStandsInNoOutputAndNoHistory) {
  const JobSite site(Engine::PostgreSql);
  site.directory().Write("password", "wr;ong}'\xc3\xb6 word\n");

  const CtlRun run = site.Run("run demo");
  const CtlRun check = site.Run("check demo");
  const CtlRun status = site.Run("status demo");
  site.Run("history");

  EXPECT_EQ(run.status, 4) << run.said;
  EXPECT_NE(run.said.find("password authentication failed"), Text::npos) << run.said;
  EXPECT_EQ(check.status, 4) << check.said;
  EXPECT_EQ(status.status, 4) << status.said;
  for (const char* trace : {"wr;ong", "ong}", "\xc3\xb6 word"}) {
    EXPECT_EQ(FilesWith(trace, site.directory().path()), std::vector<Text>());
  }
}

}  // namespace
}  // namespace zenqay
