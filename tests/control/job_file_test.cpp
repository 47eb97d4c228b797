#include "control/job_file.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include "doubles/outcome.h"
#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

constexpr const char* kPath = "/etc/zenqay/zenqay.toml";

const Text kWhole = R"(
[database.service]
connection = "Provider=SQLOLEDB;Data Source=dbhost;User ID=zenqay;Password={password}"
name = "SERVICE"
platform = "oracle"
password = { credential = "service" }
parallel = 4

[erp.main]
home = "main"
generation = 3
bus-component = "MAIN"

[job.nightly]
database = "service"
erp = "main"
tables = ["SITE", 3]
method = "full"
logs = "/var/log/zenqay/"
status = { component = true, handle = 7, instance = 2 }
retry = { times = 2, wait = "30s" }
timeout = "2h"
sweep-limit = "10%"
on-clock-change = "warn"

[history]
keep = "30d"
)";

/// A file in which nothing is wrong, but for what stands behind it.
const Text kLeast = R"([database.service]
connection = "Provider=SQLite;Data Source=service.db"
[erp.main]
home = "main"
generation = 8
[job.nightly]
database = "service"
erp = "main"
logs = "log"
)";

Text Fault(const Text& text) {
  return Raised([&] { ReadJobFileText(text, kPath); });
}

TEST(ReadJobFile, ReadsEveryKey) {
  const JobFile file = ReadJobFileText(kWhole, kPath);

  const DatabaseSettings& database = file.databases.at("service");
  EXPECT_EQ(database.connection, "Provider=SQLOLEDB;Data Source=dbhost;User ID=zenqay;Password={password}");
  EXPECT_EQ(database.catalogue, "SERVICE");
  EXPECT_EQ(database.platform, 2);
  EXPECT_EQ(database.password->kind, PasswordSource::Kind::Credential);
  EXPECT_EQ(database.password->name, "service");
  EXPECT_EQ(database.password->place, "zenqay.toml:6:12");
  EXPECT_EQ(database.parallel, 4);
  const ErpSettings& erp = file.erps.at("main");
  EXPECT_EQ(erp.home, "/etc/zenqay/main");
  EXPECT_EQ(erp.generation, "3");
  EXPECT_EQ(erp.busComponent, "MAIN");
  const JobSettings& job = file.Job("nightly");
  EXPECT_EQ(job.tables, (std::vector<Text>{"SITE", "3"}));
  EXPECT_EQ(job.method, Method::Full);
  EXPECT_EQ(job.logs, "/var/log/zenqay");
  EXPECT_TRUE(job.hasStatusComponent);
  EXPECT_EQ(job.statusHandle, 7);
  EXPECT_EQ(job.statusInstance, 2);
  EXPECT_EQ(job.retryTimes, 2);
  EXPECT_EQ(job.retryWait, Seconds(30));
  EXPECT_EQ(job.timeout, Seconds(7200));
  EXPECT_EQ(job.sweepLimit, "10%");
  EXPECT_EQ(job.onClockChange, ClockChange::Warn);
  EXPECT_EQ(file.keepHistory, Seconds(2592000));
}

TEST(ReadJobFile, HasAMeaningForWhatIsLeftOut) {
  const JobFile file = ReadJobFileText(kLeast, kPath);

  const DatabaseSettings& database = file.databases.at("service");
  EXPECT_EQ(database.connection, "Provider=SQLite;Data Source=/etc/zenqay/service.db");
  EXPECT_EQ(database.catalogue, "");
  EXPECT_EQ(database.platform, 1);
  EXPECT_FALSE(database.password);
  EXPECT_EQ(database.parallel, 1);
  const JobSettings& job = file.Job("nightly");
  EXPECT_EQ(job.tables, std::vector<Text>{});
  EXPECT_EQ(job.method, Method::OnlyChanged);
  EXPECT_EQ(job.logs, "/etc/zenqay/log");
  EXPECT_FALSE(job.hasStatusComponent);
  EXPECT_EQ(job.statusHandle, -1);
  EXPECT_EQ(job.retryTimes, 0);
  EXPECT_EQ(job.timeout, Seconds(0));
  EXPECT_EQ(job.sweepLimit, "");
  EXPECT_EQ(job.onClockChange, ClockChange::Full);
  EXPECT_EQ(file.keepHistory, Seconds(34560000));
}

TEST(ReadJobFile, QuotesTheFileOfAnEmbeddedDatabaseWhereItsPathNeedsIt) {
  const Text text = Replaced(kLeast, "Data Source=service.db", "Data Source=my db.db;Mode=Read");

  EXPECT_EQ(ReadJobFileText(text, kPath).databases.at("service").connection,
            "Provider=SQLite;Data Source=\"/etc/zenqay/my db.db\";Mode=Read");
}

TEST(ReadJobFile, PlacesWhatIsWrongAndNamesTheNearestRightWord) {
  struct Case {
    Text before;
    Text after;
    Text fault;
  };
  const Case cases[] = {
      {"logs = \"log\"", "log = \"log\"",
       "zenqay.toml:6:1: [job.nightly] lacks \"logs\"\n"
       "zenqay.toml:9:1: unknown key \"log\" in [job.nightly] (did you mean \"logs\"?)"},
      {"[erp.main]", "[erp.man]",
       "zenqay.toml:8:7: \"erp\" names \"main\", but there is no [erp.main] (did you mean \"man\"?)"},
      {"[job.nightly]", "[jobs.nightly]", "zenqay.toml:6:2: unknown key \"jobs\" in the file (did you mean \"job\"?)"},
      {"[job.nightly]", "[job]",
       "zenqay.toml:7:1: [job.database] must be a table: a name is missing in [job.NAME]\n"
       "zenqay.toml:8:1: [job.erp] must be a table: a name is missing in [job.NAME]\n"
       "zenqay.toml:9:1: [job.logs] must be a table: a name is missing in [job.NAME]"},
      {"generation = 8", "generation = 4", "zenqay.toml:5:14: \"generation\" must be 1, 3 or 8"},
      {"generation = 8", "", "zenqay.toml:3:1: [erp.main] lacks \"generation\""},
      {"home = \"main\"", "home = 7", "zenqay.toml:4:8: \"home\" must be a text in quotes, not a number"},
      {"home = \"main\"", "home = \"\"", "zenqay.toml:4:8: \"home\" is empty"},
      {"logs = \"log\"", "logs = \"log\"\nmethod = \"ful\"",
       "zenqay.toml:10:10: \"method\" cannot be \"ful\" (did you mean \"full\"?)"},
      {"logs = \"log\"", "logs = \"log\"\ntimeout = \"2 hours\"",
       "zenqay.toml:10:11: \"timeout\" must be a span of time such as \"30s\", \"10m\", \"2h\" or \"90d\""},
      {"logs = \"log\"", "logs = \"log\"\nretry = { time = 2 }",
       "zenqay.toml:10:11: unknown key \"time\" in \"retry\" (did you mean \"times\"?)"},
      {"logs = \"log\"", "logs = \"log\"\nretry = 2", "zenqay.toml:10:9: \"retry\" must be a table, not a number"},
      {"logs = \"log\"", "logs = \"log\"\nstatus = { component = 1 }",
       "zenqay.toml:10:24: \"component\" must be true or false, not a number"},
      {"logs = \"log\"", "logs = \"log\"\ntables = \"SITE\"",
       "zenqay.toml:10:10: \"tables\" must be \"all\" or a list of names"},
      {"logs = \"log\"", "logs = \"log\"\ntables = [\"SITE\", true]",
       "zenqay.toml:10:19: \"tables\" must hold names, not true or false"},
      {"logs = \"log\"", "logs = \"log\"\nsweep-limit = \"101%\"",
       "zenqay.toml:10:15: \"sweep-limit\" must be a share of the table's rows such as \"10%\", or a number of rows "
       "such as \"500\""},
      {"[erp.main]", "parallel = 0\n[erp.main]", "zenqay.toml:3:12: \"parallel\" must be 1 to 1000"},
      {"[erp.main]", "password = \"geheim\"\n[erp.main]",
       "zenqay.toml:3:12: \"password\" never stands here in plain: write where it is, { credential = \"…\" }, { file = "
       "\"…\" } or { env = \"…\" }"},
      {"[erp.main]", "password = { env = \"A\", file = \"b\" }\n[erp.main]",
       "zenqay.toml:2:14: \"connection\" is to an embedded database, which has no password\n"
       "zenqay.toml:3:12: \"password\" must have one of credential, file and env"},
      {"service.db", "service.db;PWD=geheim",
       "zenqay.toml:2:14: \"connection\" holds a password: write {password} in its place, and password = …"},
      {"service.db", "service.db;PWD={password}",
       "zenqay.toml:2:14: \"connection\" has {password}, but the database has no password"},
      {"Provider=SQLite", "Provider",
       "zenqay.toml:2:14: \"connection\" is malformed: it must be Key=Value;Key=\"value; with a separator\";…"},
      {"[erp.main]", "[batch]\nshare = \"a\"\n[erp.main]",
       "zenqay.toml:4:1: unknown key \"share\" in [batch] (did you mean \"shared\"?)"},
      {"[erp.main]", "[batch]\noptions = [\"night\"]\n[erp.main]",
       "zenqay.toml:4:12: \"options\" must hold options of sbatch, each one text that begins with -: \"--mem=2G\""},
      {"[erp.main]", "[batch]\noptions = [\"--wait\"]\n[erp.main]",
       "zenqay.toml:4:12: \"options\" must leave arrays, scripts and waiting to zenqayctl submit"},
      {"[erp.main]", "[batch]\noptions = \"--mem=2G\"\n[erp.main]",
       "zenqay.toml:4:11: \"options\" must be a list such as [\"--mem=2G\"]"},
      {"generation = 8", "generation = = 8",
       "zenqay.toml:5:14: Error while parsing value: could not determine value type"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Fault(Replaced(kLeast, c.before, c.after)), "2 zenqayctl: " + c.fault) << c.after;
  }
}

TEST(ReadJobFile, ReadsWhatABatchSystemNeeds) {
  const JobFile file =
      ReadJobFileText(Text(kLeast) +
                          "[batch]\nshared = \"batch\"\nnode = \"n1\"\noptions = [\"--mem=2G\", \"-pnight\"]\n"
                          "requeue-wait = \"90s\"\n",
                      kPath);

  EXPECT_EQ(file.batch.shared, "/etc/zenqay/batch");
  EXPECT_EQ(file.batch.node, "n1");
  EXPECT_EQ(file.batch.options, (std::vector<Text>{"--mem=2G", "-pnight"}));
  EXPECT_EQ(file.batch.requeueWait, Seconds(90));
  EXPECT_EQ(ReadJobFileText(kLeast, kPath).batch.requeueWait, Seconds(180));
}

TEST(ReadJobFile, NamesTheNearestJob) {
  const JobFile file = ReadJobFileText(kLeast, kPath);

  EXPECT_EQ(Raised([&] { file.Job("nigthly"); }),
            "2 zenqayctl: /etc/zenqay/zenqay.toml has no job \"nigthly\" (did you mean \"nightly\"?)");
}

TEST(ReadJobFile, RefusesAFileThatCannotBeRead) {
  const TempDirectory directory;

  EXPECT_EQ(Raised([&] { ReadJobFile(directory.path().string()); }),
            "2 zenqayctl: the job file " + directory.path().string() + " cannot be read");
}

TEST(FindJobFile, TakesTheNamedOneThenTheVariablesThenTheOneHere) {
  const TempDirectory directory;
  directory.Write("zenqay.toml", "");
  directory.Write("other.toml", "");
  const Text here = (std::filesystem::canonical(directory.path()) / "zenqay.toml").string();
  const Text other = (std::filesystem::canonical(directory.path()) / "other.toml").string();
  const std::filesystem::path before = std::filesystem::current_path();

  std::filesystem::current_path(directory.path());

  EXPECT_EQ(FindJobFile("other.toml", "nowhere.toml"), other);
  EXPECT_EQ(FindJobFile("", other), other);
  EXPECT_EQ(FindJobFile("", ""), here);
  EXPECT_EQ(Raised([&] { FindJobFile("none.toml", other); }), "2 zenqayctl: there is no job file none.toml");
  EXPECT_EQ(Raised([&] { FindJobFile("", "none.toml"); }),
            "2 zenqayctl: there is no job file none.toml (named by ZENQAY_FILE)");
  std::filesystem::current_path(before);
}

}  // namespace
}  // namespace zenqay
