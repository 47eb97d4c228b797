// Connection and Recordset over whichever engine the connection string asks for.
#pragma once

#include "contracts/connection.h"
#include "engines/engine.h"

namespace zenqay {

/// The error collection holds the items of the latest failure, none when the failure was not the database's own.
class EngineConnection : public Connection {
 public:
  void PutConnectionTimeout(std::int16_t seconds) override { connectionTimeout_ = seconds; }
  void PutCommandTimeout(std::int16_t seconds) override { commandTimeout_ = seconds; }
  void PutConnectionString(const Text& connectionString) override { connectionString_ = connectionString; }

  /// Raises -2147467259 for a connection string that is malformed or asks for a database without a driver, 3705 when
  /// the connection is open already, and what the database says.
  void Open() override;
  void PutDefaultDatabase(const Text& name) override;
  Text DefaultDatabase() override;
  std::shared_ptr<Errors> ErrorCollection() override { return errors_; }
  void Close() override;

  /// Runs a query and puts its column names and rows into `rows`.
  void Query(const Text& source, RowStore& rows);

 protected:
  std::int64_t Run(const Text& statement, Count count) override;

 private:
  EngineSession& Session();

  // No operation has a time limit; the engines wait as long as it takes.
  std::int16_t connectionTimeout_ = 0;
  std::int16_t commandTimeout_ = 0;
  Text connectionString_;
  std::unique_ptr<EngineSession> session_;  // null while closed
  std::shared_ptr<Errors> errors_ = std::make_shared<Errors>();
};

/// The rows are read whole when it is opened, whatever the cursor: a read that stays open would pin the file's state as
/// it then was, and every later write on the connection would fail once another process had written.
class EngineRecordset : public Recordset {
 public:
  void PutActiveConnection(std::shared_ptr<Connection> connection) override { connection_ = std::move(connection); }

  /// Without a connection, the active one serves. Raises 3709 when there is none that this layer made, 3705 when the
  /// recordset is open already.
  void Open(const Text& source, std::shared_ptr<Connection> connection, CursorType cursor, LockType lock,
            CommandType options) override;
  bool AtEnd() override;
  bool AtBeginning() override;
  std::int32_t RecordCount() override;
  void MoveNext() override;
  Value FieldValue(std::string_view name) override;
  std::int32_t State() override { return rows_ ? 1 : 0; }
  void Close() override;

 private:
  RowStore& Rows();

  std::shared_ptr<Connection> connection_;
  std::unique_ptr<RowStore> rows_;  // null while closed
};

}  // namespace zenqay
