#include "engines/engine_connection.h"

#include <gtest/gtest.h>

#include <functional>

#include "base/runtime_error.h"
#include "doubles/temp_directory.h"
#include "engines/databases.h"

namespace zenqay {
namespace {

/// A database file, and what the job opens on it.
class EngineTest : public testing::Test {
 protected:
  EngineTest() { directory_.Write("service.db", ""); }

  std::shared_ptr<Connection> Connect() {
    auto connection = databases_.CreateConnection();
    connection->PutConnectionTimeout(0);
    connection->PutCommandTimeout(0);
    connection->PutConnectionString(connectionString_);
    connection->Open();
    return connection;
  }

  std::shared_ptr<Recordset> Query(const std::shared_ptr<Connection>& connection, const Text& source) {
    auto recordset = databases_.CreateRecordset();
    recordset->Open(source, connection, CursorType::Keyset, LockType::Optimistic, CommandType::SqlText);
    return recordset;
  }

  void MakeSites(Connection& connection) {
    connection.Execute("CREATE TABLE SITES (SITE TEXT PRIMARY KEY, CUSTOMER TEXT, LUTM DATETIME)");
    connection.Execute("INSERT INTO SITES VALUES (N'A1',N'C1','2004-01-31 10:11:12'), (N'A2',NULL,NULL)");
  }

  TempDirectory directory_;
  Text connectionString_ = "Provider=SQLite;Data Source=" + (directory_.path() / "service.db").string();
  LocalDatabases databases_;
};

using EngineConnectionTest = EngineTest;
using EngineRecordsetTest = EngineTest;

/// "number source: description" of the failure of an operation.
Text FailureOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const RuntimeError& error) {
    return std::to_string(error.number()) + " " + error.source() + ": " + error.description();
  }
  return "no failure";
}

Text Shown(const Errors& errors) {
  Text shown;
  for (const ProviderError& item : errors) {
    shown += std::to_string(item.Number) + " " + item.Source + ": " + item.Description + "\n";
  }
  return shown;
}

constexpr const char* kClosed = "3704 ZenqayDBSync: Operation is not allowed when the object is closed.";
constexpr const char* kOpenAlready = "3705 ZenqayDBSync: Operation is not allowed when the object is open.";
constexpr const char* kNoCommandText = "-2147217908 ZenqayDBSync: Command text was not set for the command object.";
constexpr const char* kNoUsableConnection =
    "3709 ZenqayDBSync: The connection cannot be used to perform this operation. It is either closed or invalid in "
    "this "
    "context.";
constexpr const char* kNoRow =
    "3021 ZenqayDBSync: Either BOF or EOF is True, or the current record has been deleted. Requested operation "
    "requires "
    "a current record.";

TEST_F(EngineConnectionTest, RefusesADatabaseThatItHasNoDriverFor) {
  const std::pair<const char*, const char*> cases[] = {
      {"Provider=Jet.OLEDB;Password=secret", "This build has no driver for the provider Jet.OLEDB."},
      {"Provider=Jet.OLEDB Password=secret", "This build has no driver for the provider Jet.OLEDB."},
      {"Provider=SQLite;secret", "The connection string is malformed."},
  };
  for (const auto& [connectionString, description] : cases) {
    const auto connection = databases_.CreateConnection();
    connection->PutConnectionString(connectionString);

    EXPECT_EQ(FailureOf([&] { connection->Open(); }), "-2147467259 ZenqayDBSync: " + Text(description));
    EXPECT_EQ(connection->ErrorCollection()->count(), 0);
  }
}

TEST_F(EngineConnectionTest, StaysClosedWhenItCannotBeOpened) {
  const auto connection = databases_.CreateConnection();
  connection->PutConnectionString("Provider=SQLite;Data Source=/nowhere/service.db");
  const Text failure =
      "-2147467259 SQLite: unable to open database file: /nowhere/service.db (No such file or directory)";

  EXPECT_EQ(FailureOf([&] { connection->Open(); }), failure);
  EXPECT_EQ(Shown(*connection->ErrorCollection()), failure + "\n");
  EXPECT_EQ(FailureOf([&] { connection->Close(); }), kClosed);
}

TEST_F(EngineConnectionTest, RefusesEveryOperationWhileItIsClosed) {
  const auto opened = Connect();
  opened->Close();
  for (const auto& connection : {databases_.CreateConnection(), opened}) {
    EXPECT_EQ(FailureOf([&] { connection->Execute("SELECT 1"); }), kClosed);
    EXPECT_EQ(FailureOf([&] { connection->Execute(""); }), kClosed);
    EXPECT_EQ(FailureOf([&] { connection->PutDefaultDatabase("SERVICE"); }), kClosed);
    EXPECT_EQ(FailureOf([&] { connection->DefaultDatabase(); }), kClosed);
    EXPECT_EQ(FailureOf([&] { connection->Close(); }), kClosed);
    EXPECT_EQ(FailureOf([&] { Query(connection, "SELECT 1"); }), kClosed);
  }
}

TEST_F(EngineConnectionTest, CanBeOpenedAgainOnceItIsClosed) {
  const auto connection = Connect();
  EXPECT_EQ(FailureOf([&] { connection->Open(); }), kOpenAlready);

  connection->Close();
  connection->Open();

  EXPECT_EQ(FailureOf([&] { connection->Execute("CREATE TABLE T (a)"); }), "no failure");
}

TEST_F(EngineConnectionTest, KeepsTheDefaultDatabaseAsAName) {
  const auto connection = Connect();

  connection->PutDefaultDatabase("SERVICE");

  EXPECT_EQ(connection->DefaultDatabase(), "SERVICE");
}

TEST_F(EngineConnectionTest, RefusesAnEmptyStatement) {
  const auto connection = Connect();
  for (const char* statement : {"", " ", "    "}) {
    FailureOf([&] { connection->Execute("UPDATE NOWHERE SET a = 1"); });

    EXPECT_EQ(FailureOf([&] { connection->Execute(statement); }), kNoCommandText);
    EXPECT_EQ(connection->ErrorCollection()->count(), 0);
    EXPECT_EQ(FailureOf([&] { Query(connection, statement); }), kNoCommandText);
  }
}

TEST_F(EngineConnectionTest, KeepsTheItemsOfTheLatestFailure) {
  const auto connection = Connect();
  const auto errors = connection->ErrorCollection();

  FailureOf([&] { connection->Execute("UPDATE NOWHERE SET a = 1"); });
  EXPECT_EQ(Shown(*errors), "-2147217865 SQLite: no such table: NOWHERE\n");
  connection->Execute("CREATE TABLE T (a)");
  EXPECT_EQ(Shown(*errors), "-2147217865 SQLite: no such table: NOWHERE\n");
  FailureOf([&] { Query(connection, "SELECT b FROM T"); });
  EXPECT_EQ(Shown(*errors), "-2147217900 SQLite: no such column: b\n");
  FailureOf([&] { connection->Execute("INSERT INTO T VALUES ({d ''})"); });
  EXPECT_EQ(Shown(*errors), "-2147217913 SQLite: invalid date: \n");
  errors->Clear();
  EXPECT_EQ(connection->ErrorCollection()->count(), 0);
}

/// What the database said of the failure of an operation, and the statement that it is about.
Text FactsOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const RuntimeError& error) {
    return error.sqlState() + " " + std::to_string(error.nativeError()) + ": " + error.statement();
  }
  return "no failure";
}

TEST_F(EngineConnectionTest, LetsAFailureTravelWithItsStatementAndWhatTheDatabaseCallsIt) {
  const auto connection = Connect();
  MakeSites(*connection);

  EXPECT_EQ(FactsOf([&] { connection->Execute("INSERT INTO SITES (SITE) VALUES (N'A1')"); }),
            "23000 1555: INSERT INTO SITES (SITE) VALUES (N'A1')");
  EXPECT_EQ(FactsOf([&] { Query(connection, "SELECT * FROM NOWHERE"); }), "42S02 1: SELECT * FROM NOWHERE");
  EXPECT_EQ(connection->ErrorCollection()->begin()->SqlState, "42S02");
  EXPECT_EQ(connection->ErrorCollection()->begin()->NativeError, 1);
  EXPECT_EQ(FactsOf([&] { connection->Execute("UPDATE SITES SET LUTM = {d 'x'}"); }),
            "22007 0: UPDATE SITES SET LUTM = {d 'x'}");
  EXPECT_EQ(FactsOf([&] { connection->Execute(" "); }), " 0:  ");
  EXPECT_EQ(FactsOf([&] { connection->Open(); }), " 0: ");
}

TEST_F(EngineConnectionTest, SaysWhyAFileCannotBeOpened) {
  const auto connection = databases_.CreateConnection();
  connection->PutConnectionString("Provider=SQLite;Data Source=/nowhere/service.db");

  EXPECT_EQ(FactsOf([&] { connection->Open(); }), "08001 14: ");
}

TEST_F(EngineConnectionTest, CountsTheRowsTouched) {
  const auto connection = Connect();
  MakeSites(*connection);
  std::int16_t narrow = -1;
  std::int32_t wide = -1;
  Text text;

  connection->Execute("UPDATE SITES SET CUSTOMER = N'C9'", narrow);
  connection->Execute("UPDATE SITES SET CUSTOMER = N'C9' WHERE SITE =N'A1'", wide);
  connection->Execute("UPDATE SITES SET CUSTOMER = N'C9' WHERE SITE =N'A9'", text);

  EXPECT_EQ(narrow, 2);
  EXPECT_EQ(wide, 1);
  EXPECT_EQ(text, "0");
}

TEST_F(EngineConnectionTest, RaisesOverflowForMoreRowsThanTheReceiverHoldsAfterTheStatementHasRun) {
  const auto connection = Connect();
  connection->Execute(
      "CREATE TABLE T AS WITH RECURSIVE n(a) AS (SELECT 1 UNION ALL SELECT a + 1 FROM n WHERE a < 40000) SELECT a FROM "
      "n");
  std::int16_t narrow = -1;
  std::int32_t wide = -1;

  EXPECT_EQ(FailureOf([&] { connection->Execute("UPDATE T SET a = 0", narrow); }), "6 ZenqayDBSync: Overflow");
  connection->Execute("DELETE FROM T WHERE a = 0", wide);

  EXPECT_EQ(narrow, -1);
  EXPECT_EQ(wide, 40000);
}

TEST_F(EngineRecordsetTest, ReadsTheRowsForward) {
  const auto connection = Connect();
  MakeSites(*connection);

  const auto sites = Query(connection, "SELECT * FROM SITES WHERE SITE LIKE N'A%'");

  EXPECT_EQ(sites->State(), 1);
  EXPECT_EQ(sites->RecordCount(), 2);
  EXPECT_FALSE(sites->AtBeginning());
  EXPECT_FALSE(sites->AtEnd());
  EXPECT_EQ(sites->FieldValue("SITE"), Value("A1"));
  EXPECT_EQ(sites->FieldValue("Customer"), Value("C1"));
  EXPECT_EQ(sites->FieldValue("lutm").AsText(), "1/31/2004 10:11:12 AM");
  sites->MoveNext();
  EXPECT_EQ(sites->FieldValue("site"), Value("A2"));
  EXPECT_TRUE(sites->FieldValue("customer").IsNull());
  EXPECT_TRUE(sites->FieldValue("LUTM").IsNull());
  sites->MoveNext();
  EXPECT_TRUE(sites->AtEnd());
  EXPECT_FALSE(sites->AtBeginning());
  EXPECT_EQ(sites->RecordCount(), 2);
  sites->Close();
  EXPECT_EQ(sites->State(), 0);
}

TEST_F(EngineRecordsetTest, IsAtBothEndsWhenItIsEmpty) {
  const auto connection = Connect();
  MakeSites(*connection);

  const auto sites = Query(connection, "SELECT * FROM SITES WHERE SITE = N'none'");

  EXPECT_TRUE(sites->AtBeginning());
  EXPECT_TRUE(sites->AtEnd());
  EXPECT_EQ(sites->RecordCount(), 0);
  EXPECT_EQ(FailureOf([&] { sites->FieldValue("SITE"); }), kNoRow);
  EXPECT_EQ(FailureOf([&] { sites->MoveNext(); }), kNoRow);
}

TEST_F(EngineRecordsetTest, RefusesARowAndAFieldThatAreNotThere) {
  const auto connection = Connect();
  MakeSites(*connection);
  const auto sites = Query(connection, "SELECT * FROM SITES WHERE SITE = N'A1'");

  EXPECT_EQ(
      FailureOf([&] { sites->FieldValue("Nothing"); }),
      "3265 ZenqayDBSync: Item cannot be found in the collection corresponding to the requested name or ordinal.: "
      "Nothing");
  sites->MoveNext();
  EXPECT_EQ(FailureOf([&] { sites->FieldValue("SITE"); }), kNoRow);
  EXPECT_EQ(FailureOf([&] { sites->MoveNext(); }), kNoRow);
}

TEST_F(EngineRecordsetTest, TakesTheFirstFieldOfANameThatAJoinHasTwice) {
  const auto connection = Connect();
  connection->Execute("CREATE TABLE OBJECT (OBJECT TEXT, WARRANTY TEXT)");
  connection->Execute("CREATE TABLE WARRANTIES (WARRANTY TEXT, PERIODS INTEGER)");
  connection->Execute("INSERT INTO OBJECT VALUES ('O1', 'W12')");
  connection->Execute("INSERT INTO WARRANTIES VALUES ('W%', 5)");

  const auto joined =
      Query(connection, "SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY");

  EXPECT_EQ(joined->FieldValue("warranty"), Value("W12"));
  EXPECT_EQ(joined->FieldValue("OBJECT"), Value("O1"));
  EXPECT_EQ(joined->FieldValue("PERIODS"), Value(5));
}

TEST_F(EngineRecordsetTest, StaysAsItWasWhileStatementsRun) {
  const auto connection = Connect();
  const auto other = Connect();
  MakeSites(*connection);
  const auto sites = Query(connection, "SELECT * FROM SITES");

  for (int row = 0; !sites->AtEnd(); ++row) {
    connection->Execute("UPDATE SITES SET CUSTOMER = N'C7' WHERE SITE =N'A2'");
    other->Execute("INSERT INTO SITES (SITE) VALUES (N'B" + std::to_string(row) + "')");
    connection->Execute("UPDATE SITES SET CUSTOMER = N'C8' WHERE SITE =N'A2'");
    EXPECT_EQ(sites->FieldValue("CUSTOMER"), row == 0 ? Value("C1") : Value(Null()));
    sites->MoveNext();
  }

  EXPECT_EQ(sites->RecordCount(), 2);
  EXPECT_EQ(Query(other, "SELECT * FROM SITES")->RecordCount(), 4);
}

TEST_F(EngineRecordsetTest, StaysReadableWhenItsConnectionIsGone) {
  auto connection = Connect();
  MakeSites(*connection);
  const auto sites = Query(connection, "SELECT * FROM SITES");
  connection->Close();
  sites->PutActiveConnection(nullptr);
  connection.reset();

  sites->MoveNext();

  EXPECT_EQ(sites->FieldValue("SITE"), Value("A2"));
}

TEST_F(EngineRecordsetTest, UsesTheActiveConnection) {
  const auto connection = Connect();
  MakeSites(*connection);
  const auto sites = databases_.CreateRecordset();

  sites->PutActiveConnection(connection);
  sites->Open("SELECT * FROM SITES", nullptr, CursorType::Static, LockType::ReadOnly, CommandType::Unspecified);

  EXPECT_EQ(sites->RecordCount(), 2);
}

TEST_F(EngineRecordsetTest, RefusesToOpenWithoutAConnection) {
  EXPECT_EQ(FailureOf([&] { Query(nullptr, "SELECT 1"); }), kNoUsableConnection);
}

TEST_F(EngineRecordsetTest, IsClosedUntilItIsOpenedAndAfterItFailed) {
  const auto connection = Connect();
  const auto recordset = databases_.CreateRecordset();
  const auto expectClosed = [&] {
    EXPECT_EQ(recordset->State(), 0);
    EXPECT_EQ(FailureOf([&] { recordset->AtEnd(); }), kClosed);
    EXPECT_EQ(FailureOf([&] { recordset->AtBeginning(); }), kClosed);
    EXPECT_EQ(FailureOf([&] { recordset->RecordCount(); }), kClosed);
    EXPECT_EQ(FailureOf([&] { recordset->MoveNext(); }), kClosed);
    EXPECT_EQ(FailureOf([&] { recordset->FieldValue("a"); }), kClosed);
    EXPECT_EQ(FailureOf([&] { recordset->Close(); }), kClosed);
  };
  const auto open = [&](const char* source) {
    recordset->Open(source, connection, CursorType::Keyset, LockType::Optimistic, CommandType::SqlText);
  };

  expectClosed();
  EXPECT_EQ(FailureOf([&] { open("SELECT * FROM NOWHERE"); }), "-2147217865 SQLite: no such table: NOWHERE");
  expectClosed();
  open("SELECT 1 AS a");
  EXPECT_EQ(FailureOf([&] { open("SELECT 1 AS a"); }), kOpenAlready);
  recordset->Close();
  expectClosed();
}

}  // namespace
}  // namespace zenqay
