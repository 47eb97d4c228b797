// What a plan says of the jobs of a built zenqayctl, and that it leaves everything as it is.
#include <gtest/gtest.h>
#include <unistd.h>

#include "doubles/file_content.h"
#include "job_site.h"

namespace zenqay {
namespace {

const Text kLocations = "home/erp/Kv40QTMtssmaLocations.csv";
const Text kHeader = "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n";

class PlanOfAJob : public testing::TestWithParam<Engine> {
 protected:
  /// A table with one row of each kind.
  void PrepareSites() const {
    site.Execute("INSERT INTO SITE (SITE, DESCRIPTION, CUSTOMER, upd_flag) VALUES ('A1', 'North', 'C7', 0)");
    site.Execute("INSERT INTO SITE (SITE, DESCRIPTION, CUSTOMER, upd_flag) VALUES ('B1', 'old', NULL, 1)");
    site.Execute("INSERT INTO SITE (SITE, DESCRIPTION, CUSTOMER, upd_flag) VALUES ('C1', 'gone', 'C9', 0)");
    site.directory().Write(kLocations, kHeader + "A1,North,C7\nB1,new,C8\nD1,it's,\n");
  }

  const JobSite site{GetParam()};
};

TEST_P(PlanOfAJob, SaysWhatWouldBecomeOfEachRow) {
  PrepareSites();

  const CtlRun plan = site.Run("plan demo");

  EXPECT_EQ(plan.said,
            "TABLE  METHOD  ROWS  INSERT  CHANGE  DELETE  REWRITE  SWEEP  OUTCOME\n"
            "SITE   full    3     1       1       1       1        33.3%  complete\n"
            "\n"
            "SITE\n"
            "  + SITE='D1': DESCRIPTION='it''s'\n"
            "  ~ SITE='B1': DESCRIPTION 'old' -> 'new', CUSTOMER NULL -> 'C8'\n"
            "  - SITE='C1': DESCRIPTION='gone', CUSTOMER='C9'\n"
            "\n"
            "3 rows would change in 1 table. Nothing was written.\n");
  EXPECT_EQ(plan.status, 5);
}

TEST_P(PlanOfAJob, SaysItToPrograms) {
  PrepareSites();

  const CtlRun plan = site.Run("plan demo --json");

  EXPECT_EQ(plan.said,
            R"({"plan":1,"status":5,"tables":[{"database":"service","table":"SITE","rows":3,"insert":1,"change":1,)"
            R"("delete":1,"rewrite":1,"sweep":{"rows":1,"of":3,"limit":null,"refused":false},)"
            R"("runs":[{"job":"demo","method":"full","state":"complete","failures":[]}],)"
            R"("examples":[{"kind":"insert","key":{"SITE":"D1"},)"
            R"("fields":[{"column":"DESCRIPTION","before":null,"after":"it's"}]},)"
            R"({"kind":"change","key":{"SITE":"B1"},"fields":[{"column":"DESCRIPTION","before":"old","after":"new"},)"
            R"({"column":"CUSTOMER","before":null,"after":"C8"}]},)"
            R"({"kind":"delete","key":{"SITE":"C1"},"fields":[{"column":"DESCRIPTION","before":"gone","after":null},)"
            R"({"column":"CUSTOMER","before":"C9","after":null}]}]}],"warnings":[]})"
            "\n");
}

TEST_P(PlanOfAJob, SaysThatNothingWouldChangeBehindARun) {
  PrepareSites();
  ASSERT_EQ(site.Run("run demo").status, 0);

  const CtlRun plan = site.Run("plan demo");

  EXPECT_EQ(plan.said,
            "TABLE  METHOD  ROWS  INSERT  CHANGE  DELETE  REWRITE  SWEEP  OUTCOME\n"
            "SITE   full    3     0       0       0       3        0%     complete\n"
            "\n"
            "Nothing would change.\n");
  EXPECT_EQ(plan.status, 0);
}

TEST_P(PlanOfAJob, LeavesRowsTablesLogsAndHistoryAsTheyAre) {
  PrepareSites();
  const Text before = site.State({"SITE", "PROBLEM"});

  site.Run("plan demo");

  EXPECT_EQ(site.State({"SITE", "PROBLEM"}), before);
  EXPECT_TRUE(std::filesystem::is_empty(site.Path("log")));
  EXPECT_FALSE(std::filesystem::exists(site.Path("zenqay/history.db")));
  EXPECT_EQ(site.HomesLeft(), 0);
}

TEST_P(PlanOfAJob, ShowsAsManyExamplesAsAreAskedFor) {
  Text listing = kHeader;
  for (int i = 1; i <= 5; ++i) listing += "S" + std::to_string(i) + ",d,C\n";
  site.directory().Write(kLocations, listing);

  EXPECT_EQ(site.Run("plan demo --rows 2").said,
            "TABLE  METHOD  ROWS  INSERT  CHANGE  DELETE  REWRITE  SWEEP  OUTCOME\n"
            "SITE   full    0     5       0       0       0        0%     complete\n"
            "\n"
            "SITE\n"
            "  + SITE='S1': DESCRIPTION='d', CUSTOMER='C'\n"
            "  + SITE='S2': DESCRIPTION='d', CUSTOMER='C'\n"
            "  … and 3 more to insert\n"
            "\n"
            "5 rows would change in 1 table. Nothing was written.\n");
}

TEST_P(PlanOfAJob, HoldsTheSweepAgainstTheLimitOfTheRun) {
  PrepareSites();
  const JobSite limited(GetParam(), {.job = "sweep-limit = \"10%\"\n"});
  for (int i = 0; i < 200; ++i) {
    limited.Execute("INSERT INTO SITE (SITE, upd_flag) VALUES ('S" + std::to_string(i) + "', 0)");
  }
  limited.directory().Write(kLocations, kHeader + "A1,North,C7\n");

  const CtlRun plan = limited.Run("plan demo --rows 0");
  const CtlRun lifted = limited.Run("plan demo --rows 0 --allow-sweep");

  EXPECT_EQ(plan.said,
            "TABLE  METHOD  ROWS  INSERT  CHANGE  DELETE  REWRITE  SWEEP                     OUTCOME\n"
            "SITE   full    200   1       0       200     0        100%, limit 10%: refused  complete\n"
            "\n"
            "SITE: the sweep limit of 10% would refuse the deletion of 200 of 200 rows: the job would fail and delete "
            "none; --allow-sweep lifts the limit\n"
            "\n"
            "201 rows would change in 1 table. Nothing was written.\n");
  EXPECT_EQ(plan.status, 1);
  EXPECT_EQ(lifted.said,
            "TABLE  METHOD  ROWS  INSERT  CHANGE  DELETE  REWRITE  SWEEP  OUTCOME\n"
            "SITE   full    200   1       0       200     0        100%   complete\n"
            "\n"
            "201 rows would change in 1 table. Nothing was written.\n");
  EXPECT_EQ(lifted.status, 5);
}

TEST_P(PlanOfAJob, KeepsTheTablesAsTheyAre) {
  PrepareSites();

  EXPECT_EQ(site.Run("plan demo --keep " + site.Path("kept.db")).status, 5);

  const auto connection = LocalDatabases().CreateConnection();
  connection->PutConnectionString("Provider=SQLite;Data Source=" + site.Path("kept.db") + ";Mode=Read");
  connection->Open();
  const auto rows = connection->RowsOf(
      "SELECT group_concat(SITE || DESCRIPTION), (SELECT COUNT(*) FROM tstables), (SELECT group_concat(name) FROM "
      "(SELECT lower(name) AS name FROM sqlite_master WHERE type = 'table' ORDER BY 1)) FROM SITE",
      CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
  ASSERT_TRUE(rows->Next());
  EXPECT_EQ(rows->Field(0), Value("A1North,B1old,C1gone"));
  EXPECT_EQ(rows->Field(1), Value(10));
  EXPECT_EQ(rows->Field(2), Value("site,tsi18ntext,tstables,tstreenodes"));
  const CtlRun again = site.Run("plan demo --keep " + site.Path("kept.db"));
  EXPECT_EQ(again.said, "zenqayctl: --keep: " + site.Path("kept.db") + " exists; nothing was changed\n");
  EXPECT_EQ(again.status, 2);
}

TEST(SqlitePlan, KeepsTheTablesInADirectoryThatIsThereAndMayBeWritten) {
  const JobSite site(Engine::Sqlite);
  const auto said = [&](const Text& keep) {
    const CtlRun plan = site.Run("plan demo --keep " + site.Path(keep));
    return Replaced(plan.said, site.directory().path().string(), "HOME") + "= " + std::to_string(plan.status) + "\n";
  };
  const Text tooLong(300, 'k');

  EXPECT_EQ(said("none/kept.db"), "zenqayctl: --keep: HOME/none is no directory\n= 2\n");
  EXPECT_EQ(said("service.db/kept.db"), "zenqayctl: --keep: HOME/service.db is no directory\n= 2\n");
  EXPECT_EQ(said(tooLong), "zenqayctl: Path/File access error: HOME/" + tooLong + ": File name too long\n= 4\n");
  std::filesystem::create_directory(site.Path("closed"));
  std::filesystem::permissions(site.Path("closed"), std::filesystem::perms::owner_read);
  if (::geteuid() != 0) {
    EXPECT_EQ(said("closed/kept.db"), "zenqayctl: --keep: HOME/closed cannot be written\n= 2\n");
  }
}

TEST_P(PlanOfAJob, SaysThatTheDatabaseIsNotReached) {
  site.directory().Write("zenqay.toml",
                         Replaced(Replaced(site.directory().Read("zenqay.toml"), "service.db", "none.db"),
                                  "Database=service", "Database=none"));

  const CtlRun plan = site.Run("plan demo");

  EXPECT_TRUE(
      plan.said.starts_with("TABLE  METHOD  ROWS  INSERT  CHANGE  DELETE  REWRITE  SWEEP  OUTCOME\n"
                            "SITE   full    0     0       0       0                       could not begin\n"
                            "\n"
                            "SITE: the job would not complete: could not begin: the database \"service\" is not "
                            "reached: "))
      << plan.said;
  EXPECT_EQ(plan.said.find("Nothing would change"), Text::npos);
  EXPECT_EQ(plan.status, 4);
}

TEST(SqlitePlan, ShowsTheOtherDatabasesOfOneWhoseTablesCannotBeRead) {
  const JobSite site(Engine::Sqlite, {.tables = "\"SITE\", \"PROBLEM\"",
                                      .job = "[database.other]\nconnection = \"Provider=SQLite;Data Source=other.db\"\n"
                                             "[job.other]\ndatabase = \"other\"\nerp = \"main\"\nlogs = \"log\"\n"
                                             "tables = [\"SITE\"]\nmethod = \"full\"\n"});
  std::filesystem::copy_file(site.Path("service.db"), site.Path("other.db"));
  site.Execute("DROP TABLE PROBLEM");
  site.directory().Write(kLocations, kHeader + "A1,North,C7\n");

  const CtlRun plan = site.Run("plan demo other");

  EXPECT_EQ(plan.said,
            "TABLE            METHOD  ROWS  INSERT  CHANGE  DELETE  REWRITE  SWEEP  OUTCOME\n"
            "service SITE     full    0     0       0       0                       could not begin\n"
            "service PROBLEM  full    0     0       0       0                       could not begin\n"
            "other SITE       full    0     1       0       0       0        0%     complete\n"
            "\n"
            "SITE\n"
            "  + SITE='A1': DESCRIPTION='North', CUSTOMER='C7'\n"
            "\n"
            "SITE: the job would not complete: could not begin: its tables cannot be read: no such table: PROBLEM\n"
            "\n"
            "PROBLEM: the job would not complete: could not begin: its tables cannot be read: no such table: PROBLEM\n"
            "\n"
            "1 row would change in 1 table. Nothing was written.\n");
  EXPECT_EQ(plan.status, 4);
}

TEST_P(PlanOfAJob, SaysThatTheJobWouldFailAndHowFarItCame) {
  site.directory().Write(kLocations, kHeader + "A1,North,C7\n\\N,South,C8\n");

  const CtlRun plan = site.Run("plan demo");

  EXPECT_TRUE(
      plan.said.starts_with("TABLE  METHOD  ROWS  INSERT  CHANGE  DELETE  REWRITE  SWEEP  OUTCOME\n"
                            "SITE   full    0     1       0       0                       failed\n"
                            "\n"
                            "SITE\n"
                            "  + SITE='A1': DESCRIPTION='North', CUSTOMER='C7'\n"
                            "\n"
                            "SITE: the job would not complete: failed: "))
      << plan.said;
  EXPECT_EQ(plan.status, 1);
}

TEST(SqlitePlan, KnowsTheRowsOfEachTableByTheKeyOfItsOwnErp) {
  const JobSite site(Engine::Sqlite, {.generation = "3",
                                      .tables = "\"WARRANTIES\"",
                                      .job = "[erp.newer]\nhome = \"home\"\ngeneration = 8\n"
                                             "[job.newer]\ndatabase = \"service\"\nerp = \"newer\"\nlogs = \"log\"\n"
                                             "tables = [\"SERIALIZEDITEM\", \"SITECONTRACT\"]\nmethod = \"full\"\n"});
  ASSERT_EQ(site.Run("run newer").status, 0);
  site.Execute("UPDATE SERIALIZEDITEM SET CUSTOMER = 'C0' WHERE OBJECTNR = 'X0001'");
  site.Execute("UPDATE SITECONTRACT SET EXPIRY_DATE = '2030-01-31' WHERE OBJECTNR = 'X0002'");

  const CtlRun plan = site.Run("plan demo newer --rows 1");

  EXPECT_EQ(plan.said,
            "TABLE           METHOD  ROWS  INSERT  CHANGE  DELETE  REWRITE  SWEEP  OUTCOME\n"
            "WARRANTIES      full    0     5       0       0       0        0%     complete\n"
            "SERIALIZEDITEM  full    4     0       1       0       2        25%    complete\n"
            "SITECONTRACT    full    4     0       1       0       2        25%    complete\n"
            "\n"
            "WARRANTIES\n"
            "  + WARRANTY='W12M': WDESCRIPTION='12 months from installation', NUMBER_OF_PERIODS='12', "
            "PERIOD_UNIT='15', WARRANTY_TYPE='10'\n"
            "  … and 4 more to insert\n"
            "\n"
            "SERIALIZEDITEM\n"
            "  ~ OBJECT='SRV-R740', OBJECTNR='X0001', SITE='CL-0001': CUSTOMER 'C0' -> 'BP0000020'\n"
            "\n"
            "SITECONTRACT\n"
            "  ~ SITE='CL-0001', CONTRACT='SVC000001', OBJECT='SRV-R740', OBJECTNR='X0002', TERM='1': EXPIRY_DATE "
            "'2030-01-31' -> '2027-12-31'\n"
            "\n"
            "7 rows would change in 3 tables. Nothing was written.\n");
}

TEST(SqlitePlan, TellsProgramsNoSweepOfAJobThatWouldFail) {
  const JobSite site(Engine::Sqlite);
  site.directory().Write(kLocations, kHeader + "\\N,South,C8\n");

  const Text said = site.Run("plan demo --json").said;

  EXPECT_EQ(
      said.substr(0, said.find(R"("failures")")),
      R"({"plan":1,"status":1,"tables":[{"database":"service","table":"SITE","rows":0,"insert":0,"change":0,)"
      R"("delete":0,"runs":[{"job":"demo","method":"full","state":"failed","words":"94: Invalid use of Null: getLocation",)");
}

TEST(SqlitePlan, ShowsAKeyThatGetsTheErpsForm) {
  const JobSite site(Engine::Sqlite);
  site.Execute("DROP TABLE SITE");
  site.Execute(
      "CREATE TABLE SITE (SITE NVARCHAR(10) NOT NULL PRIMARY KEY COLLATE NOCASE, DESCRIPTION NVARCHAR(100), CUSTOMER "
      "NVARCHAR(20), upd_flag INTEGER NOT NULL DEFAULT 0)");
  site.Execute("INSERT INTO SITE VALUES ('AMS01', 'Amsterdam', 'C1', 0)");
  site.directory().Write(kLocations, kHeader + "ams01,,\n");

  EXPECT_EQ(site.Run("plan demo").said,
            "TABLE  METHOD  ROWS  INSERT  CHANGE  DELETE  REWRITE  SWEEP  OUTCOME\n"
            "SITE   full    1     0       1       0       0        0%     complete\n"
            "\n"
            "SITE\n"
            "  ~ SITE='ams01': SITE 'AMS01' -> 'ams01'\n"
            "\n"
            "1 row would change in 1 table. Nothing was written.\n");
  EXPECT_EQ(site.Run("run demo").status, 0);
  EXPECT_EQ(site.Rows("SELECT SITE, DESCRIPTION FROM SITE"), "ams01|Amsterdam\n");
}

INSTANTIATE_TEST_SUITE_P(Sqlite, PlanOfAJob, testing::Values(Engine::Sqlite));
INSTANTIATE_TEST_SUITE_P(Postgres, PlanOfAJob, testing::Values(Engine::PostgreSql));

}  // namespace
}  // namespace zenqay
