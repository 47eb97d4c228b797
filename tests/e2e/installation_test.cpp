// What `cmake --install` puts where, and a job of the installed program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "e2e/program_fixture.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

/// The files below a directory, each with `prefix` in front.
std::vector<std::string> FilesBelow(const fs::path& directory, const std::string& prefix = "") {
  std::vector<std::string> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory)) {
    if (entry.is_regular_file()) files.push_back(prefix + entry.path().lexically_relative(directory).string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

/// An installation below a directory of its own.
class Installation : public testing::Test {
 protected:
  void SetUp() override {
    const std::string command = ZENQAY_INSTALL + prefix.path().string() + " >" + prefix.path().string() + "/said 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0) << prefix.Read("said");
    fs::remove(prefix.path() / "said");
  }

  fs::path Share() const { return prefix.path() / "share/zenqay-dbsync"; }

  TempDirectory prefix;
};

TEST_F(Installation, PutsProgramsTextsSchemasAndDocumentsInTheirPlaces) {
  std::vector<std::string> expected = {"bin/zenqay-dbsync",
                                       "bin/zenqay-dbsync-check",
                                       "bin/zenqayctl",
                                       "share/doc/zenqay-dbsync/CHANGELOG.md",
                                       "share/doc/zenqay-dbsync/README.md",
                                       "share/zenqay-dbsync/Components.xml",
                                       "share/zenqay-dbsync/I18nText.de.xml",
                                       "share/zenqay-dbsync/I18nText.xml",
                                       "share/zenqay-dbsync/prometheus/zenqay.rules.yml",
                                       "share/zenqay-dbsync/schema/control-rows.sql",
                                       "share/zenqay-dbsync/schema/oracle.sql",
                                       "share/zenqay-dbsync/schema/postgresql.sql",
                                       "share/zenqay-dbsync/schema/sqlite.sql",
                                       "share/zenqay-dbsync/schema/sqlserver.sql"};
  for (const std::string& page : FilesBelow(ZENQAY_SOURCE "/docs", "share/doc/zenqay-dbsync/docs/")) {
    expected.push_back(page);
  }
  std::sort(expected.begin(), expected.end());

  EXPECT_EQ(FilesBelow(prefix.path()), expected);
}

TEST_F(Installation, RunsAJobFromAHomeThatLinksItsTexts) {
  ProgramHome home;
  for (const char* file : {"I18nText.xml", "Components.xml"}) fs::remove(home.path() + "/" + file);
  fs::create_symlink(Share() / "I18nText.xml", home.path() + "/I18nText.xml");
  fs::copy_file(Share() / "Components.xml", home.path() + "/Components.xml");
  home.WriteExport("Kv40QTMtssmaLocations.csv",
                   "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
                   "A1,North,C7\n");

  const ProgramRun run = home.Run(home.Line(), {.program = prefix.path() / "bin/zenqay-dbsync"});

  EXPECT_EQ(home.Report(run),
            "exit 0\n"
            "-- out\n"
            "<time>  Copy of Sites (ERP table 110) started.\n"
            "<time>  Copy of Sites (ERP table 110) complete: 1 copied, 0 updated, 0 deleted.\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  complete  <elapsed>  Copy of Sites (ERP table 110) complete: 1 copied, 0 updated, 0 deleted.\n"
            "-- err\n"
            "-- SITE_<day>.log\n"
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITE -  1\"\r\n");
  EXPECT_EQ(home.Sites(), "A1|North|C7|0\n");
}

}  // namespace
}  // namespace zenqay
