// What each database engine below the connection offers.
#pragma once

#include <cstdint>

#include "engines/row_store.h"
#include "engines/table_schema.h"

namespace zenqay {

/// What a session may do. The connection string asks for a reading one by Mode=Read.
enum class Access { ReadWrite, ReadOnly };

/// How many seconds a session waits for what; 0 is without limit.
struct TimeLimits {
  std::int16_t connection = 0;  // for the connection to stand
  std::int16_t command = 0;     // for the end of a statement
};

/// One open session of one engine; its end closes it. What the database reports is thrown with its items.
///
/// Statements come as the job composed them and are never empty. Each commits by itself.
class EngineSession {
 public:
  virtual ~EngineSession() = default;

  /// Runs a statement and drops any result. Returns the number of rows that it inserted, updated or deleted, 0 for any
  /// other statement; the number means nothing when it was not asked for.
  virtual std::int64_t Run(const Text& statement, bool countRows) = 0;

  /// Runs a query and puts its column names and rows into `rows`, which is empty before.
  virtual void Query(const Text& statement, RowSink& rows) = 0;

  /// Between the two, a reading session reads what there was at one moment, where its database can do that without a
  /// lock that keeps a writer waiting. The end says whether what was read may be relied on: false where a writer came
  /// in between unseen.
  virtual void BeginReading() = 0;
  virtual bool EndReading() = 0;

  /// As Query, for a table of any size: no more than some rows are in memory at a time. Only while reading.
  virtual void Read(const Text& query, RowSink& rows) = 0;

  /// How the embedded engine makes a table like the one of that name. Raises what the database says of the table.
  virtual TableSchema SchemaOf(const Text& table) = 0;

  /// "SQLite", "PostgreSQL", "Microsoft SQL Server", "Oracle"
  virtual Text DatabaseKind() = 0;

  virtual void PutDefaultDatabase(const Text& name) = 0;
  virtual Text DefaultDatabase() = 0;

  /// As the connection's.
  virtual bool TakeLock(const Text& name) = 0;
  virtual void GiveLockBack(const Text& name) = 0;

  /// Whether any session holds the lock of a name. Changes nothing, and keeps nobody from the lock; on Oracle alone,
  /// which cannot be asked, the lock is taken and given back.
  virtual bool IsLockHeld(const Text& name) = 0;
};

}  // namespace zenqay
