// An embedded database file of a test's own.
//
//     EmbeddedDatabase file;
//     file.Run("CREATE TABLE tstables (tablename TEXT, in_use INTEGER)");
//     ProcessFixture fixture(file.databases);
//     OpenLocalConnection(fixture.process, file.connectionString, "");
#pragma once

#include <vector>

#include "doubles/temp_directory.h"
#include "engines/databases.h"

namespace zenqay {

class EmbeddedDatabase {
 public:
  EmbeddedDatabase() : connection_(databases.CreateConnection()) {
    directory_.Write("service.db", "");
    connectionString = "Provider=SQLite;Data Source=" + (directory_.path() / "service.db").string();
    connection_->PutConnectionString(connectionString);
    connection_->Open();
  }

  LocalDatabases databases;
  Text connectionString;

  /// Runs a statement on a connection of the file's own, as another program would.
  void Run(const Text& statement) { connection_->Execute(statement); }

  /// What a query gives: the fields of a row joined by "|", each row behind "\n".
  Text Rows(const Text& query, const std::vector<Text>& fields) {
    const std::shared_ptr<Recordset> rows = databases.CreateRecordset();
    rows->Open(query, connection_, CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
    Text text;
    for (; !rows->AtEnd(); rows->MoveNext()) {
      for (const Text& field : fields) {
        const Value value = rows->FieldValue(field);
        text += (value.IsNull() ? "NULL" : value.AsText()) + (field == fields.back() ? "\n" : "|");
      }
    }
    return text;
  }

 private:
  TempDirectory directory_;
  std::shared_ptr<Connection> connection_;
};

}  // namespace zenqay
