#include "localdb/local_connection.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "doubles/process_fixture.h"

namespace zenqay {
namespace {

constexpr std::int16_t kSqlServer = 1;
constexpr std::int16_t kOracle = 2;

const RuntimeError kRefused(-2147467259, "Driver", "refused");

TEST(OpenLocalConnection, SetsNoTimeLimitsAndTheStringAsGivenBeforeItConnects) {
  ProcessFixture fixture(kSqlServer);
  fixture.database.showSettings = true;

  OpenLocalConnection(fixture.process, " Provider=SQLOLEDB;Data Source=ERP01; ", "SERVICE");

  EXPECT_EQ(fixture.journal.Take(),
            "put ConnectionTimeout 0\n"
            "put CommandTimeout 0\n"
            "put ConnectionString  Provider=SQLOLEDB;Data Source=ERP01; \n"
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "put DefaultDatabase SERVICE\n"
            "get DefaultDatabase\n");
  EXPECT_EQ(fixture.process.CurrentDatabaseName, "SERVICE");
}

TEST(OpenLocalConnection, LeavesTheDefaultDatabaseOfSqlServerForABlankNameAndTakesWhatTheConnectionReports) {
  for (const char* blank : {"", "   "}) {
    ProcessFixture fixture(kSqlServer);

    OpenLocalConnection(fixture.process, "", blank);

    EXPECT_EQ(fixture.journal.Take(),
              "open\n"
              "sql SET DATEFORMAT YMD\n"
              "get DefaultDatabase\n");
    EXPECT_EQ(fixture.process.CurrentDatabaseName, "DEFAULTDB");
  }
}

TEST(OpenLocalConnection, CarriesTheDatabaseOfSqlServerWithTheBlanksAroundIt) {
  ProcessFixture fixture(kSqlServer);

  OpenLocalConnection(fixture.process, "", "  SERVICE ");

  EXPECT_EQ(fixture.journal.Take(),
            "open\n"
            "sql SET DATEFORMAT YMD\n"
            "put DefaultDatabase   SERVICE \n"
            "get DefaultDatabase\n");
  EXPECT_EQ(fixture.process.CurrentDatabaseName, "  SERVICE ");
}

TEST(OpenLocalConnection, SelectsTheTrimmedSchemaOfOracleAndKeepsTheNameAsGiven) {
  ProcessFixture fixture(kOracle);
  fixture.database.showSettings = true;

  OpenLocalConnection(fixture.process, "Provider=MSDAORA", "  SERVICE ");

  EXPECT_EQ(fixture.journal.Take(),
            "put ConnectionTimeout 0\n"
            "put CommandTimeout 0\n"
            "put ConnectionString Provider=MSDAORA\n"
            "open\n"
            "sql Alter session set current_schema= SERVICE\n");
  EXPECT_EQ(fixture.process.CurrentDatabaseName, "  SERVICE ");
}

TEST(OpenLocalConnection, RunsNoSchemaStatementForABlankSchemaOfOracleAndKeepsTheBlanks) {
  for (const char* blank : {"", "   "}) {
    ProcessFixture fixture(kOracle);
    fixture.process.CurrentDatabaseName = "of the job before";

    OpenLocalConnection(fixture.process, "", blank);

    EXPECT_EQ(fixture.journal.Take(), "open\n");
    EXPECT_EQ(fixture.process.CurrentDatabaseName, blank);
  }
}

TEST(OpenLocalConnection, DoesNothingFurtherOnAnyOtherPlatform) {
  for (const std::int16_t platform : std::initializer_list<std::int16_t>{0, 3, -1}) {
    ProcessFixture fixture(platform);
    fixture.process.CurrentDatabaseName = "of the job before";

    OpenLocalConnection(fixture.process, "", "SERVICE");

    EXPECT_EQ(fixture.journal.Take(), "open\n");
    EXPECT_EQ(fixture.process.CurrentDatabaseName, "of the job before");
  }
}

TEST(OpenLocalConnection, ReplacesTheConnectionThatWasOpenedBefore) {
  ProcessFixture fixture(kSqlServer);
  OpenLocalConnection(fixture.process, "", "");
  const std::shared_ptr<Connection> former = fixture.process.LocalConnection;

  OpenLocalConnection(fixture.process, "", "");

  EXPECT_NE(fixture.process.LocalConnection, former);
}

TEST(OpenLocalConnection, PassesARefusedConnectionToItsCallerAndLeavesAClosedOne) {
  ProcessFixture fixture(kSqlServer);
  fixture.Connect();
  const std::shared_ptr<Connection> former = fixture.process.LocalConnection;
  fixture.database.FailCall("open", kRefused);

  const Text raised = Raised([&] { OpenLocalConnection(fixture.process, "", "SERVICE"); });

  EXPECT_EQ(raised, "-2147467259 Driver: refused");
  EXPECT_EQ(fixture.journal.Take(), "open\n");
  EXPECT_NE(fixture.process.LocalConnection, former);
  EXPECT_EQ(fixture.process.CurrentDatabaseName, "");
  EXPECT_EQ(fixture.RunLog(), "");
}

TEST(OpenLocalConnection, PassesAFailedDateFormatToItsCaller) {
  ProcessFixture fixture(kSqlServer);
  fixture.database.FailOn("SET DATEFORMAT", kRefused);

  const Text raised = Raised([&] { OpenLocalConnection(fixture.process, "", "SERVICE"); });

  EXPECT_EQ(raised, "-2147467259 Driver: refused");
  EXPECT_EQ(fixture.journal.Take(), "open\nsql SET DATEFORMAT YMD\n");
  EXPECT_EQ(fixture.process.CurrentDatabaseName, "");
  EXPECT_EQ(fixture.RunLog(), "");
}

TEST(OpenLocalConnection, PassesAnUnknownDatabaseToItsCaller) {
  ProcessFixture fixture(kSqlServer);
  fixture.database.FailCall("put DefaultDatabase", kRefused);

  const Text raised = Raised([&] { OpenLocalConnection(fixture.process, "", "SERVICE"); });

  EXPECT_EQ(raised, "-2147467259 Driver: refused");
  EXPECT_EQ(fixture.journal.Take(), "open\nsql SET DATEFORMAT YMD\nput DefaultDatabase SERVICE\n");
  EXPECT_EQ(fixture.process.CurrentDatabaseName, "");
}

TEST(OpenLocalConnection, PassesToItsCallerThatTheDatabaseCannotBeReadBack) {
  ProcessFixture fixture(kSqlServer);
  fixture.database.FailCall("get DefaultDatabase", kRefused);

  const Text raised = Raised([&] { OpenLocalConnection(fixture.process, "", "SERVICE"); });

  EXPECT_EQ(raised, "-2147467259 Driver: refused");
  EXPECT_EQ(fixture.journal.Take(), "open\nsql SET DATEFORMAT YMD\nput DefaultDatabase SERVICE\nget DefaultDatabase\n");
  EXPECT_EQ(fixture.process.CurrentDatabaseName, "");
}

TEST(OpenLocalConnection, PassesAnUnknownSchemaToItsCaller) {
  ProcessFixture fixture(kOracle);
  fixture.database.FailOn("current_schema", kRefused);

  const Text raised = Raised([&] { OpenLocalConnection(fixture.process, "", "SERVICE"); });

  EXPECT_EQ(raised, "-2147467259 Driver: refused");
  EXPECT_EQ(fixture.journal.Take(), "open\nsql Alter session set current_schema= SERVICE\n");
  EXPECT_EQ(fixture.process.CurrentDatabaseName, "");
}

TEST(CloseLocalConnection, ClosesTheConnectionAndKeepsTheObject) {
  ProcessFixture fixture(kSqlServer);
  fixture.Connect();
  const std::shared_ptr<Connection> connection = fixture.process.LocalConnection;

  CloseLocalConnection(fixture.process);

  EXPECT_EQ(fixture.journal.Take(), "close\n");
  EXPECT_EQ(fixture.process.LocalConnection, connection);
  EXPECT_EQ(fixture.RunLog(), "");
}

TEST(CloseLocalConnection, LogsAFailureWithWhatTheProviderReportedAndReturns) {
  ProcessFixture fixture(kSqlServer);
  fixture.Connect();
  fixture.process.LocalErrors->Replace({{-2147467259, "Driver", "link lost"}, {0, "Driver", "a warning"}});
  fixture.database.FailCall("close", {3704, "Driver", "not open"});

  CloseLocalConnection(fixture.process);

  EXPECT_EQ(fixture.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",-2147467259,\"link lost\"\r\n"
            "\"Driver\",\"not open\"\r\n");
  EXPECT_EQ(fixture.process.LocalErrors->count(), 0);
  EXPECT_NE(fixture.process.LocalConnection, nullptr);
}

TEST(CloseLocalConnection, FailsWithTheLogWhenAFailureCannotBeLogged) {
  ProcessFixture fixture(kSqlServer);
  fixture.Connect();
  fixture.LoseRunLog();
  fixture.database.FailCall("close", {3704, "Driver", "not open"});

  const Text raised = Raised([&] { CloseLocalConnection(fixture.process); });

  EXPECT_EQ(raised, "76 ZenqayDBSync: Path not found: C:\\no-such-directory\\run.log");
  EXPECT_EQ(fixture.Causes(), "error 3704 from \"Driver\": not open\n");
}

}  // namespace
}  // namespace zenqay
