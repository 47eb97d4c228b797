#include "engines/odbc/odbc_session.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "doubles/temp_directory.h"
#include "engines/databases.h"
#include "engines/provider_errors.h"

namespace zenqay {
namespace {

constexpr const char* kDriver = "libzenqay_test_driver.so";

/// Connections through the project's own driver, and the calls that it got.
class OdbcSessionTest : public testing::Test {
 protected:
  Text ConnectionString(const Text& more = "") const {
    return "Driver=" ZENQAY_TEST_DRIVER ";PWD=se{cret;Record=" + (directory_.path() / "calls").string() + ";" + more;
  }

  Text Calls() const { return directory_.Read("calls"); }

  TempDirectory directory_;
};

/// Every item of a failure, "number source: description", a line each.
template <typename Operation>
Text ItemsOf(Operation operation) {
  Text items;
  try {
    operation();
  } catch (const RuntimeError& failure) {
    for (const ProviderError& item : failure.items()) {
      items += std::to_string(item.Number) + " " + item.Source + ": " + item.Description + "\n";
    }
  }
  return items;
}

TEST_F(OdbcSessionTest, RunsEachStatementOnceAsItIs) {
  OdbcSession session(ConnectionString());

  session.Run("UPDATE SITES SET a = N'größe 😀' WHERE b = 1AND c = {d '2004-01-31'}", false);
  session.Run("SET DATEFORMAT YMD", false);

  EXPECT_EQ(Calls(),
            "connect\n"
            "execute UPDATE SITES SET a = N'größe 😀' WHERE b = 1AND c = {d '2004-01-31'}\n"
            "execute SET DATEFORMAT YMD\n");
}

TEST_F(OdbcSessionTest, TranslatesForAPostgreSqlDatabase) {
  OdbcSession session(ConnectionString("DBMS=PostgreSQL"));

  session.Run("UPDATE SITES SET a = 1WHERE b = N'x'", false);
  session.Run("SET DATEFORMAT YMD", false);

  EXPECT_EQ(Calls(),
            "connect\n"
            "execute SET standard_conforming_strings = on\n"
            "execute SET synchronous_commit TO off\n"
            "execute UPDATE SITES SET a = 1 WHERE b = 'x'\n");
}

TEST_F(OdbcSessionTest, LetsPostgreSqlWaitForTheDiskAtStatementsOnTheControlTableAlone) {
  OdbcSession session(ConnectionString("DBMS=PostgreSQL"));
  RowStore rows;

  session.Run("UPDATE tstables SET in_use = 1WHERE tablename = N'SITE'", true);
  session.Run("UPDATE SITE SET upd_flag = 1 ", false);
  session.Run("INSERT INTO SITE (SITE )VALUES (N'tstables')", true);
  session.Query("SELECT EMPTY", rows);
  session.Run("DELETE FROM SITE WHERE upd_flag = 1", false);
  session.Run("insert into TSTABLES(tablename) VALUES(N'SITE')", true);
  session.Run("UPDATE STATISTICS SITE", false);
  session.Run("UPDATE OBJECT SET upd_flag = 0", false);

  EXPECT_EQ(Calls(),
            "connect\n"
            "execute SET standard_conforming_strings = on\n"
            "execute UPDATE tstables SET in_use = 1 WHERE tablename = 'SITE'\n"
            "count\n"
            "execute SET synchronous_commit TO off\n"
            "execute UPDATE SITE SET upd_flag = 1 \n"
            "execute INSERT INTO SITE (SITE )VALUES ('tstables')\n"
            "count\n"
            "execute SELECT EMPTY\n"
            "execute DELETE FROM SITE WHERE upd_flag = 1\n"
            "execute SET synchronous_commit TO DEFAULT\n"
            "execute insert into TSTABLES(tablename) VALUES('SITE')\n"
            "count\n"
            "execute ANALYZE SITE\n"
            "execute SET synchronous_commit TO off\n"
            "execute UPDATE OBJECT SET upd_flag = 0\n");
}

TEST_F(OdbcSessionTest, LetsPostgreSqlWaitAtEveryStatementWhenItIsTold) {
  LocalDatabases databases;
  const std::shared_ptr<Connection> connection = databases.CreateConnection();
  connection->PutConnectionString(ConnectionString("row commit=AtOnce;DBMS=PostgreSQL"));
  connection->Open();

  connection->Execute("UPDATE SITE SET upd_flag = 1 ");

  EXPECT_EQ(Calls(),
            "connect\n"
            "execute SET standard_conforming_strings = on\n"
            "execute UPDATE SITE SET upd_flag = 1 \n");
}

TEST_F(OdbcSessionTest, KeepsItsOwnKeysFromTheDriver) {
  LocalDatabases databases;
  const std::shared_ptr<Connection> connection = databases.CreateConnection();
  connection->PutConnectionString("Driver=" ZENQAY_TEST_DRIVER ";Row Commit=AtOnce;Refuse=1;Mode=Read");

  Raised([&] { connection->Open(); });

  const std::shared_ptr<Errors> errors = connection->ErrorCollection();
  ASSERT_EQ(errors->count(), 2);
  EXPECT_EQ((errors->begin() + 1)->Description, "tried Driver=" ZENQAY_TEST_DRIVER ";Refuse=1");
}

TEST_F(OdbcSessionTest, CountsTheRowsTouched) {
  OdbcSession session(ConnectionString());

  EXPECT_EQ(session.Run("UPDATE SITES", true), 3);
  EXPECT_EQ(session.Run("UPDATE NONE", true), 0);
  EXPECT_EQ(session.Run("UPDATE INFO", true), 3);
  EXPECT_EQ(session.Run("insert INTO SITES", true), 3);
  EXPECT_EQ(session.Run("MERGE INTO SITES", true), 3);
  EXPECT_EQ(session.Run("SELECT ROWS", true), 0);
}

TEST_F(OdbcSessionTest, AsksForNoCountThatNobodyWants) {
  OdbcSession session(ConnectionString());

  session.Run("UPDATE SITES", false);

  EXPECT_EQ(Calls(), "connect\nexecute UPDATE SITES\n");
}

TEST_F(OdbcSessionTest, DropsEveryFurtherResult) {
  OdbcSession session(ConnectionString());

  EXPECT_EQ(session.Run("UPDATE BATCH", true), 3);

  EXPECT_EQ(Calls(), "connect\nexecute UPDATE BATCH\ncount\nnext result\nnext result\n");
}

TEST_F(OdbcSessionTest, FailsWithWhatALaterResultFailsWith) {
  OdbcSession session(ConnectionString());

  EXPECT_EQ(ItemsOf([&] { session.Run("UPDATE BATCH FAILS", true); }), "-2147217833 " + Text(kDriver) + ": later\n");
  EXPECT_EQ(session.Run("UPDATE SITES", true), 3);
}

TEST_F(OdbcSessionTest, ReportsEveryDiagnosticWithoutThePasswordAndAsksForNoCount) {
  OdbcSession session(ConnectionString());

  EXPECT_EQ(ItemsOf([&] { session.Run("UPDATE TWICE", true); }),
            "-2147217873 libzenqay_test_driver.so: twice\n"
            "-2147467259 libzenqay_test_driver.so: said ***\n"
            "-2147467259 libzenqay_test_driver.so: and a third\n");  // on one line
  EXPECT_EQ(Calls(), "connect\nexecute UPDATE TWICE\n");
}

TEST_F(OdbcSessionTest, KeepsWhatTheDriverCallsAFailure) {
  OdbcSession session(ConnectionString());
  try {
    session.Run("UPDATE TWICE", true);
    ADD_FAILURE();
  } catch (const RuntimeError& failure) {
    EXPECT_EQ(failure.sqlState(), "23000");
    EXPECT_EQ(failure.nativeError(), 2627);
    ASSERT_EQ(failure.items().size(), 3u);
    EXPECT_EQ(failure.items()[1].SqlState, "01000");
    EXPECT_EQ(failure.items()[1].NativeError, 3621);
  }
}

TEST_F(OdbcSessionTest, PutsNoTimeLimitOnAnythingUnlessItIsTold) {
  { OdbcSession session(ConnectionString("Limits=Y")); }
  { OdbcSession session(ConnectionString("Limits=Y"), {.limits = {.connection = 5, .command = 30}}); }

  EXPECT_EQ(Calls(),
            "login timeout 0\nconnect\nquery timeout 0\ndisconnect\n"
            "login timeout 5\nconnect\nquery timeout 30\ndisconnect\n");
}

TEST_F(OdbcSessionTest, HandsTheTimeLimitsOfAConnectionToTheDriver) {
  LocalDatabases databases;
  const std::shared_ptr<Connection> connection = databases.CreateConnection();
  connection->PutConnectionTimeout(7);
  connection->PutCommandTimeout(9);
  connection->PutConnectionString(ConnectionString("Limits=Y"));

  connection->Open();

  EXPECT_EQ(Calls(), "login timeout 7\nconnect\nquery timeout 9\n");
}

TEST_F(OdbcSessionTest, CutsNoTextThatIsLong) {
  const Text filling = Text(40'000, 'x') + ";";
  OdbcSession session(ConnectionString("Filling=" + filling + "DBMS=PostgreSQL;Catalogs=N"));
  RowStore rows;

  session.Run("UPDATE SITES SET a = '" + Text(70'000, 'y') + "'", false);
  session.Query("SELECT LONG NAME", rows);
  const Text refused = ItemsOf([&] { session.Run("UPDATE LONG", false); });

  EXPECT_EQ(Calls(),
            "connect\n"
            "execute SET standard_conforming_strings = on\n"
            "execute SET synchronous_commit TO off\n"
            "execute UPDATE SITES SET a = '" +
                Text(70'000, 'y') +
                "'\n"
                "execute SELECT LONG NAME\n"
                "execute UPDATE LONG\n");
  EXPECT_EQ(rows.columns().front(), Text(3000, 'N'));
  EXPECT_EQ(refused, "-2147467259 libzenqay_test_driver.so: " + Text(3000, 'N') + "\n");
}

TEST_F(OdbcSessionTest, HidesThePasswordWhenItCannotConnect) {
  const Text items = ItemsOf([&] { OdbcSession session(ConnectionString("Refuse=1")); });

  EXPECT_EQ(items,
            "-2147217843 libzenqay_test_driver.so: login with *** refused\n"
            "-2147467259 libzenqay_test_driver.so: tried Driver=" ZENQAY_TEST_DRIVER ";PWD=***;Record=" +
                (directory_.path() / "calls").string() + ";Refuse=1\n");
}

TEST_F(OdbcSessionTest, ReadsRowsOfEveryTypeWhole) {
  OdbcSession session(ConnectionString());
  RowStore rows;

  session.Query("SELECT ROWS", rows);

  EXPECT_EQ(rows.columns(), (std::vector<Text>{"NUMBER", "AMOUNT", "LONG", "MOMENT", "NOTHING"}));
  EXPECT_EQ(rows.count(), 2);
  Text longText;
  for (int i = 0; i < 3000; ++i) longText += "größe ";
  for (const int number : {1, 0}) {
    ASSERT_TRUE(rows.Next());
    EXPECT_EQ(rows.Field(0), Value(number));
    EXPECT_EQ(rows.Field(1), Value(12.5));
    EXPECT_EQ(rows.Field(2), Value(longText));
    EXPECT_EQ(rows.Field(3).AsText(), "1/31/2004 10:11:12 AM");
    EXPECT_TRUE(rows.Field(4).IsNull());
  }
  EXPECT_FALSE(rows.Next());
}

TEST_F(OdbcSessionTest, GivesTheColumnsOfAnEmptyResult) {
  OdbcSession session(ConnectionString());
  RowStore rows;

  session.Query("SELECT EMPTY", rows);

  EXPECT_EQ(rows.columns().size(), 5u);
  EXPECT_EQ(rows.count(), 0);
}

TEST_F(OdbcSessionTest, LetsStatementsRunWhileARecordsetIsOpenOnADriverOfOneStatement) {
  LocalDatabases databases;
  const std::shared_ptr<Connection> connection = databases.CreateConnection();
  connection->PutConnectionString(ConnectionString());
  connection->Open();
  const std::shared_ptr<Recordset> rows = databases.CreateRecordset();
  rows->Open("SELECT ROWS", connection, CursorType::Keyset, LockType::Optimistic, CommandType::SqlText);

  std::int32_t touched = 0;
  connection->Execute("UPDATE SITES", touched);
  rows->MoveNext();

  EXPECT_EQ(touched, 3);
  EXPECT_EQ(rows->FieldValue("number"), Value(0));
}

TEST_F(OdbcSessionTest, SwitchesTheCatalogWhereThereAreCatalogs) {
  OdbcSession session(ConnectionString("Catalogs=Y"));
  EXPECT_EQ(session.DefaultDatabase(), "first");

  session.PutDefaultDatabase("SERVICE");

  EXPECT_EQ(session.DefaultDatabase(), "SERVICE");
  EXPECT_EQ(Calls(), "connect\ncatalog SERVICE\n");
}

TEST_F(OdbcSessionTest, KeepsTheNameWhereThereAreNone) {
  OdbcSession session(ConnectionString("Catalogs=N"));

  session.PutDefaultDatabase("SERVICE");

  EXPECT_EQ(session.DefaultDatabase(), "SERVICE");
  EXPECT_EQ(Calls(), "connect\n");
}

TEST_F(OdbcSessionTest, EndsTheConnectionWithItself) {
  { OdbcSession session(ConnectionString()); }

  EXPECT_EQ(Calls(), "connect\ndisconnect\n");
}

TEST_F(OdbcSessionTest, SaysWhatTheDriverManagerSays) {
  EXPECT_EQ(ItemsOf([] { OdbcSession session("Driver=/nowhere/driver.so;PWD=secret"); }),
            "-2147467259 driver.so: [unixODBC][Driver Manager]Can't open lib '/nowhere/driver.so' : file not found\n");
  EXPECT_EQ(ItemsOf([] { OdbcSession session("DSN=no such source;PWD=secret"); }),
            "-2147467259 ODBC: [unixODBC][Driver Manager]Data source name not found and no default driver specified\n");
}

TEST_F(OdbcSessionTest, RefusesAMalformedTextWithoutRepeatingIt) {
  EXPECT_EQ(Raised([] { OdbcSession session("Driver=FreeTDS;PWD='secret"); }),
            "-2147467259 ZenqayDBSync: The connection string is malformed.");
}

}  // namespace
}  // namespace zenqay
