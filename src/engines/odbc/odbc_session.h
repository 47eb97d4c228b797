// A database behind an ODBC driver.
#pragma once

#include <memory>
#include <optional>

#include "contracts/interruption.h"
#include "engines/engine.h"
#include "engines/odbc/prepared_shape.h"
#include "engines/statement_cache.h"

namespace zenqay {

class Diagnostics;
class OdbcCalls;
class StatementCanceller;
struct SessionLock;
struct DescribedTable;

/// When the rows that a statement changed are safe on the server's disk. Only PostgreSQL is asked for either.
enum class RowCommit {
  Later,  // the next statement on `tstables` makes them so, and itself, before it returns
  AtOnce,
};

struct OdbcOptions {
  Access access = Access::ReadWrite;
  TimeLimits limits;
  RowCommit rowCommit = RowCommit::Later;
  std::shared_ptr<Interruption> interruption;  // null for a session whose statements are never broken off
};

/// One connection of one driver, with one statement at a time on it, so a driver that allows no more is enough.
/// SQL Server, Oracle and every other database get the statements as composed, PostgreSQL in its own words, and those
/// that differ in their values alone as one prepared statement; what they do, count and raise is the same. The count
/// of rows is that of a statement's first result. A failure carries every diagnostic record that the driver left, the
/// driver's name as its source, and no password of the connection string.
class OdbcSession final : public EngineSession {
 public:
  /// Connects. Raises what DriverConnectString raises, and what the driver or the driver
  /// manager says. A driver that knows no reading connection or no
  /// time limit is left as it is.
  explicit OdbcSession(const Text& connectionString, const OdbcOptions& options = {});
  ~OdbcSession() override;

  std::int64_t Run(const Text& statement, bool countRows) override;
  void Query(const Text& statement, RowSink& rows) override;

  /// On PostgreSQL in a transaction that reads what there was at its start and can write nothing; on any other server
  /// each query reads as the server lets it.
  void BeginReading() override;
  bool EndReading() override;
  void Read(const Text& query, RowSink& rows) override;
  TableSchema SchemaOf(const Text& table) override;
  Text DatabaseKind() override { return dbms_; }

  /// Switches the catalog of a database that has catalogs to switch. For any other, PostgreSQL too, where a connection
  /// stays with its database, the name is kept and has no effect.
  void PutDefaultDatabase(const Text& name) override;
  Text DefaultDatabase() override;

  /// A lock of the server's, which it gives up when it ends the session: a last statement of a client that is gone is
  /// over then. Raises -2147467259 for a server without such locks, and where the lock does not exclude a second
  /// session of the same connection string.
  bool TakeLock(const Text& name) override;
  void GiveLockBack(const Text& name) override;
  bool IsLockHeld(const Text& name) override;

 private:
  struct FreeEnvironment {
    void operator()(void* environment) const;
  };
  struct FreeConnection {
    void operator()(void* connection) const;
  };
  struct FreeStatement {
    void operator()(void* statement) const;
  };
  class OpenStatement;

  template <typename Work>
  auto Cancellable(void* statement, Work work);
  std::int64_t RunComposed(const Text& statement, bool countRows);
  std::optional<std::int64_t> RunShaped(const Text& statement, bool countRows);
  PreparedShape* ShapeToExecute();
  void PrepareShape(PreparedShape& shape);
  bool IsMeasured();
  std::int64_t Execute(PreparedStatement& statement, bool countRows);
  void LearnShape();
  static void Drop(const PreparedShape& shape);
  bool IsRefusal(const RuntimeError& failure);
  std::int64_t RunText(const Text& text, bool countRows);
  void RunSetting(const Text& text) { RunText(text, false); }
  void QueryText(const Text& text, RowSink& rows);
  void ReadCatalogue(std::int16_t result, RowSink& rows);
  DescribedTable TableLike(const Text& table);
  SessionLock LockOf(const Text& name) const;
  std::int32_t AnswerTo(const Text& query);
  bool Get(const SessionLock& lock, const Text& name);
  void Prove(const SessionLock& lock, const Text& name);
  void OpenEnvironment();
  void Connect(const Text& driverString, Access access, std::int16_t timeLimit);
  void Prepare();
  void* AllocateStatement();
  const Text& Translated(const Text& statement);
  void ChooseCommit(const Text& statement);
  Text Info(std::uint16_t what);
  void RequireConnection(std::int16_t result);
  void RequireStatement(std::int16_t result, void* statement);
  void RequireStatement(std::int16_t result) { RequireStatement(result, statement_.get()); }
  bool HasColumns();
  std::int64_t TouchedRows(const Text& statement);
  std::int64_t CountOf(void* statement);
  bool NextResult(OpenStatement& open);

  Text connectionString_;
  std::int16_t commandLimit_;
  std::shared_ptr<Interruption> interruption_;
  std::unique_ptr<OdbcCalls> calls_;
  std::unique_ptr<Diagnostics> diagnostics_;
  std::unique_ptr<void, FreeEnvironment> environment_;
  std::unique_ptr<void, FreeConnection> connection_;
  std::unique_ptr<void, FreeStatement> statement_;
  std::unique_ptr<StatementCanceller> canceller_;  // null where nothing is broken off
  Text dbms_;
  bool isPostgreSql_ = false;
  bool switchesCatalogs_ = false;
  bool waitsForRows_;
  bool waits_ = true;  // as it is on the server now
  bool preparesShapes_ = false;
  StatementCache<PreparedShape> shapes_;
  Text translated_;       // this and what follows is kept for its memory
  StatementShape shape_;  // of the statement at hand
  Text shapeKey_;         // its text and the types of its values
  Text defaultDatabase_;
};

}  // namespace zenqay
