#include "engines/engine_connection.h"

#include <gtest/gtest.h>

#include <functional>

#include "doubles/outcome.h"
#include "doubles/temp_directory.h"
#include "engines/databases.h"

namespace zenqay {
namespace {

/// A database file, and what the job opens on it.
class EngineConnectionTest : public testing::Test {
 protected:
  EngineConnectionTest() { directory_.Write("service.db", ""); }

  std::shared_ptr<Connection> Connect() {
    auto connection = databases_.CreateConnection();
    connection->PutConnectionTimeout(0);
    connection->PutCommandTimeout(0);
    connection->PutConnectionString(connectionString_);
    connection->Open();
    return connection;
  }

  void Query(const std::shared_ptr<Connection>& connection, const Text& source) {
    databases_.CreateRecordset()->Open(source, connection, CursorType::Keyset, LockType::Optimistic,
                                       CommandType::SqlText);
  }

  TempDirectory directory_;
  Text connectionString_ = "Provider=SQLite;Data Source=" + (directory_.path() / "service.db").string();
  LocalDatabases databases_;
};

Text Shown(const Errors& errors) {
  Text shown;
  for (const ProviderError& item : errors) {
    shown += std::to_string(item.Number) + " " + item.Source + ": " + item.Description + "\n";
  }
  return shown;
}

TEST_F(EngineConnectionTest, RefusesADatabaseThatItHasNoDriverFor) {
  const std::pair<const char*, const char*> cases[] = {
      {"Provider=Jet.OLEDB;Password=secret", "This build has no driver for the provider Jet.OLEDB."},
      {"Provider=Jet.OLEDB Password=secret", "This build has no driver for the provider Jet.OLEDB."},
      {"Provider=SQLite;secret", "The connection string is malformed."},
  };
  for (const auto& [connectionString, description] : cases) {
    const auto connection = databases_.CreateConnection();
    connection->PutConnectionString(connectionString);

    EXPECT_EQ(Raised([&] { connection->Open(); }), "-2147467259 ZenqayDBSync: " + Text(description));
    EXPECT_EQ(connection->ErrorCollection()->count(), 0);
  }
}

TEST_F(EngineConnectionTest, StaysClosedWhenItCannotBeOpened) {
  const auto connection = databases_.CreateConnection();
  connection->PutConnectionString("Provider=SQLite;Data Source=/nowhere/service.db");
  const Text failure =
      "-2147467259 SQLite: unable to open database file: /nowhere/service.db (No such file or directory)";

  EXPECT_EQ(Raised([&] { connection->Open(); }), failure);
  EXPECT_EQ(Shown(*connection->ErrorCollection()), failure + "\n");
  EXPECT_EQ(Raised([&] { connection->Close(); }),
            "3704 ZenqayDBSync: Operation is not allowed when the object is closed.");
}

TEST_F(EngineConnectionTest, KeepsTheItemsOfTheLatestFailure) {
  const auto connection = Connect();
  const auto errors = connection->ErrorCollection();

  Raised([&] { connection->Execute("UPDATE NOWHERE SET a = 1"); });
  EXPECT_EQ(Shown(*errors), "-2147217865 SQLite: no such table: NOWHERE\n");
  connection->Execute("CREATE TABLE T (a)");
  EXPECT_EQ(Shown(*errors), "-2147217865 SQLite: no such table: NOWHERE\n");
  Raised([&] { Query(connection, "SELECT b FROM T"); });
  EXPECT_EQ(Shown(*errors), "-2147217900 SQLite: no such column: b\n");
  Raised([&] { connection->Execute("INSERT INTO T VALUES ({d ''})"); });
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
  connection->Execute("CREATE TABLE SITES (SITE TEXT PRIMARY KEY, LUTM DATETIME)");
  connection->Execute("INSERT INTO SITES (SITE) VALUES (N'A1')");

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

}  // namespace
}  // namespace zenqay
