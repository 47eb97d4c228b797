// The connection over whichever engine the connection string asks for.
#pragma once

#include "contracts/connection.h"
#include "contracts/interruption.h"
#include "engines/engine.h"

namespace zenqay {

/// The error collection holds the items of the latest failure, none when the failure was not the database's own.
class EngineConnection : public Connection {
 public:
  /// A statement that is broken off raises 18: one that has not begun, and one that waits too long.
  explicit EngineConnection(std::shared_ptr<Interruption> interruption = std::make_shared<Interruption>())
      : interruption_(std::move(interruption)) {}

  /// Both limits hold from the next Open on, for a database behind ODBC. An embedded file is opened at once and waits
  /// for what another process holds, as long as it takes.
  void PutConnectionTimeout(std::int16_t seconds) override { limits_.connection = seconds; }
  void PutCommandTimeout(std::int16_t seconds) override { limits_.command = seconds; }
  void PutConnectionString(const Text& connectionString) override { connectionString_ = connectionString; }

  /// Raises -2147467259 for a connection string that is malformed or asks for a database without a driver, 3705 when
  /// the connection is open already, and what the database says.
  void Open() override;
  void PutDefaultDatabase(const Text& name) override;
  Text DefaultDatabase() override;
  std::shared_ptr<Errors> ErrorCollection() override { return errors_; }
  void Close() override;
  bool TakeLock(const Text& name) override;
  void GiveLockBack(const Text& name) override;

  /// As the session's: for who looks at jobs, not for a job.
  bool IsLockHeld(const Text& name);

  // As the session's: for who copies tables out of a database.
  void BeginReading();
  bool EndReading();
  void Read(const Text& query, RowSink& rows);
  TableSchema SchemaOf(const Text& table);
  Text DatabaseKind();

  std::int64_t Run(const Text& statement, Count count) override;

  /// The rows are read whole, whatever the cursor: a read that stays open would pin the file's state as it then was,
  /// and every later write on the connection would fail once another process had written.
  std::unique_ptr<QueryRows> RowsOf(const Text& query, CursorType cursor, LockType lock, CommandType options) override;

 private:
  EngineSession& Session();

  std::shared_ptr<Interruption> interruption_;
  TimeLimits limits_;
  Text connectionString_;
  std::unique_ptr<EngineSession> session_;  // null while closed
  std::shared_ptr<Errors> errors_ = std::make_shared<Errors>();
};

}  // namespace zenqay
