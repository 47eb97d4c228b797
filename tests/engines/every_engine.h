// What every engine has in common, as two bodies of tests (every_engine_test.cpp). An engine's own file brings them to
// it:
//
//     const auto kFile = testing::Values(EngineOf<SqliteDatabase>("File"));
//     INSTANTIATE_TEST_SUITE_P(Sqlite, EveryConnection, kFile, testing::PrintToStringParamName());
//     INSTANTIATE_TEST_SUITE_P(Sqlite, EveryDatabase, kFile, testing::PrintToStringParamName());
#pragma once

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "engines/databases.h"

namespace zenqay {

/// A database of a test's own, without tables.
class TestedDatabase {
 public:
  virtual ~TestedDatabase() = default;

  Text connectionString;
  Text source;  // of what it reports
};

/// An engine, as the tests name it, with the way to such a database.
struct TestedEngine {
  Text name;
  std::unique_ptr<TestedDatabase> (*make)();
};

template <typename Database>
TestedEngine EngineOf(Text name) {
  return {std::move(name), []() -> std::unique_ptr<TestedDatabase> { return std::make_unique<Database>(); }};
}

inline void PrintTo(const TestedEngine& engine, std::ostream* out) {
  *out << engine.name;
}

class EveryEngine : public testing::TestWithParam<TestedEngine> {
 protected:
  std::shared_ptr<Connection> Connect() {
    std::shared_ptr<Connection> connection = databases_.CreateConnection();
    connection->PutConnectionTimeout(0);
    connection->PutCommandTimeout(0);
    connection->PutConnectionString(database_->connectionString);
    connection->Open();
    return connection;
  }

  std::shared_ptr<Recordset> Query(const std::shared_ptr<Connection>& connection, const Text& source) {
    std::shared_ptr<Recordset> recordset = databases_.CreateRecordset();
    recordset->Open(source, connection, CursorType::Keyset, LockType::Optimistic, CommandType::SqlText);
    return recordset;
  }

  std::unique_ptr<TestedDatabase> database_ = GetParam().make();
  LocalDatabases databases_;
};

/// What a connection promises by itself; any ODBC driver will do.
class EveryConnection : public EveryEngine {};

/// What takes a database that runs SQL.
class EveryDatabase : public EveryEngine {
 protected:
  /// A connection, and a table of two rows.
  std::shared_ptr<Connection> ConnectToSites() {
    std::shared_ptr<Connection> connection = Connect();
    connection->Execute(
        "CREATE TABLE SITES (SITE VARCHAR(10) PRIMARY KEY, CUSTOMER VARCHAR(30), LUTM TIMESTAMP, upd_flag INTEGER "
        "NOT NULL)");
    connection->Execute(
        "INSERT INTO SITES VALUES (N'A1',N'C1',CONVERT(DATETIME,'2004-01-31 10:11:12',120),0), (N'A2',NULL,NULL,0)");
    return connection;
  }
};

}  // namespace zenqay
