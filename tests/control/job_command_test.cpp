#include "control/job_command.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "engines/connection_string.h"

namespace zenqay {
namespace {

Text Connection(const Text& connection, const Text& password) {
  const DatabaseSettings database = {.name = "service", .connection = connection, .place = "zenqay.toml:2:14"};
  return OutcomeOf([&] { return ConnectionWithPassword(database, password); });
}

TEST(ConnectionWithPassword, PutsItWhereThePlaceholderStandsElseBehind) {
  EXPECT_EQ(Connection("Provider=SQLOLEDB;Password={password};Data Source=db", "geheim"),
            "Provider=SQLOLEDB;Password=geheim;Data Source=db");
  EXPECT_EQ(Connection("Provider=SQLOLEDB;Data Source=db", "geheim"),
            "Provider=SQLOLEDB;Data Source=db;Password=geheim");
  EXPECT_EQ(Connection("Driver=PostgreSQL Unicode;Server=db;", "geheim"),
            "Driver=PostgreSQL Unicode;Server=db;PWD=geheim");
  EXPECT_EQ(Connection("Provider=MSDASQL;DSN=service", "geheim"), "Provider=MSDASQL;DSN=service;PWD=geheim");
}

TEST(ConnectionWithPassword, QuotesItAsItsReaderNeedsIt) {
  for (const Text password : {"a;b", "{a", "a}", " a ", "\"a", "'a'", "a=b", "a\"b", "ü", "{password}", "=", "a}b;c"}) {
    const Text provider = Connection("Provider=OraOLEDB.Oracle;Data Source=db;User ID=u", password);
    const Text driver = Connection("Driver=FreeTDS;Server=db;PWD={password};TDS_Version=7.4", password);

    EXPECT_EQ(ConnectionString(provider).Value("Password"), password) << provider;
    EXPECT_EQ(ConnectionString(provider).Value("User ID"), "u") << provider;
    EXPECT_EQ(ConnectionString(driver).Value("PWD"), password) << driver;
    EXPECT_EQ(ConnectionString(driver).Value("TDS_Version"), "7.4") << driver;
  }
}

TEST(ConnectionWithPassword, RefusesOneThatWouldSplitTheLineWithoutShowingIt) {
  EXPECT_EQ(Connection("DSN=service", "ge{}heim"),
            "2 zenqayctl: zenqay.toml:2:14: the password of [database.service] holds \"{}\", which separates the items "
            "of a job's line, so that no job can be given it: change the password, or leave it to the driver (a DSN, "
            "PGPASSFILE)");
}

TEST(ConnectionWithPassword, RefusesAPlaceholderThatIsOnlyAPartOfAValue) {
  EXPECT_EQ(Connection("DSN=service;PWD=a{password}", "geheim"),
            "2 zenqayctl: zenqay.toml:2:14: the connection string of [database.service] would not be read back as it "
            "was made with the password in it: write {password} as the whole value of the password's key");
}

const JobFile kFile = ReadJobFileText(R"([database.service]
connection = "DSN=service"
name = "SERVICE"
[erp.main]
home = "main"
generation = 3
bus-component = "MAIN"
[job.nightly]
database = "service"
erp = "main"
logs = "/var/log"
status = { component = true, handle = 7, instance = 2 }
[job.silent]
database = "service"
erp = "main"
logs = "/var/{}log"
tables = ["SITE"]
)",
                                      "/etc/zenqay.toml");

TEST(JobLineOf, JoinsTheItemsOfAJob) {
  EXPECT_EQ(JobLineOf(kFile, kFile.Job("nightly"), "DSN=service;PWD=geheim", 6, Method::OnlyChanged),
            "DSN=service;PWD=geheim{}SERVICE{}6{}2{}/var/log{}MAIN{}7{}{}1{}2{}3");
}

TEST(JobLineOf, EndsWithATwelfthItemWithoutAStatusComponent) {
  JobSettings job = kFile.Job("silent");
  job.logs = "/var/log";

  EXPECT_EQ(JobLineOf(kFile, job, "DSN=service", 128, Method::Full),
            "DSN=service{}SERVICE{}128{}1{}/var/log{}MAIN{}-1{}{}1{}0{}3{}");
}

TEST(JobLineOf, RefusesAnItemThatWouldSplit) {
  EXPECT_EQ(Raised([] { JobLineOf(kFile, kFile.Job("silent"), "DSN=service", 1, Method::Full); }),
            "2 zenqayctl: zenqay.toml:17:10: the line of [job.silent] would be split inside the log directory, which "
            "holds \"{}\"");
}

}  // namespace
}  // namespace zenqay
