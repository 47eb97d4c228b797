// The contract with the local database: what a connection, its error collection and a recordset offer.
//
// Numbers of failures: what the database itself reports carries the provider's number (provider_errors in engines);
// what the connection and the recordset refuse by themselves has one of DatabaseFault.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "base/runtime_error.h"
#include "contracts/value.h"

namespace zenqay {

/// What a connection or a recordset refuses before a database is asked. The source is the platform's.
enum class DatabaseFault : std::int32_t {
  NoCurrentRow = 3021,
  NoSuchField = 3265,
  Closed = 3704,
  OpenAlready = 3705,
  NoUsableConnection = 3709,
  NoCommandText = -2147217908,
};

/// `about` names the thing it was about and stands behind ": " when it is not empty.
[[noreturn]] void Raise(DatabaseFault fault, std::string_view about = {});

/// The provider's error collection of one connection. A new failure replaces what the one before it left.
class Errors {
 public:
  std::int32_t count() const { return static_cast<std::int32_t>(items_.size()); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }
  void Clear() { items_.clear(); }
  void Replace(std::vector<ProviderError> items) { items_ = std::move(items); }

 private:
  std::vector<ProviderError> items_;
};

enum class CursorType : std::int16_t { Keyset = 1, Static = 3 };
enum class LockType : std::int16_t { ReadOnly = 1, Optimistic = 3 };
enum class CommandType : std::int16_t { Unspecified = -1, SqlText = 1 };

/// The rows of one query, read once, forward.
class QueryRows {
 public:
  virtual ~QueryRows() = default;

  virtual const std::vector<Text>& columns() const = 0;

  /// The number of rows, read or not.
  virtual std::int64_t count() const = 0;

  /// Goes to the next row, at first to the first. False behind the last one.
  virtual bool Next() = 0;
  virtual bool atRow() const = 0;

  /// A field of the current row, which there must be.
  virtual Value Field(std::size_t column) const = 0;
};

/// A connection. Every statement commits by itself, none has a time limit, and each reaches the database once.
class Connection {
 public:
  virtual ~Connection() = default;

  virtual void PutConnectionTimeout(std::int16_t seconds) = 0;
  virtual void PutCommandTimeout(std::int16_t seconds) = 0;
  virtual void PutConnectionString(const Text& connectionString) = 0;
  virtual void Open() = 0;
  virtual void PutDefaultDatabase(const Text& name) = 0;
  virtual Text DefaultDatabase() = 0;

  /// The live collection; it stays the same object for the connection's life.
  virtual std::shared_ptr<Errors> ErrorCollection() = 0;
  virtual void Close() = 0;

  /// Takes the lock of a name (its case does not count), which this session then holds until it gives it back or ends.
  /// False when another session holds it. Raises what the database says, and where it cannot be shown that the lock
  /// keeps others out.
  virtual bool TakeLock(const Text& name) = 0;
  virtual void GiveLockBack(const Text& name) = 0;

  /// Runs a statement; any result is dropped. With a receiver, the number of rows touched is put into it, and a number
  /// that does not fit raises 6 (the statement has then run).
  void Execute(const Text& statement);
  void Execute(const Text& statement, std::int16_t& recordsAffected);
  void Execute(const Text& statement, std::int32_t& recordsAffected);
  void Execute(const Text& statement, Text& recordsAffected);

  // What the operations of a connection and a recordset are made of.

  enum class Count {
    NotAsked,
    Asked,
    AskedAside,  // for who listens to the job, not by the job: the trace does not show it
  };

  /// Runs a statement and gives the number of rows touched, which means something only when it was asked for.
  virtual std::int64_t Run(const Text& statement, Count count) = 0;

  /// Runs a query and gives its rows. They do not see what other statements change, and outlive the connection.
  virtual std::unique_ptr<QueryRows> RowsOf(const Text& query, CursorType cursor, LockType lock,
                                            CommandType options) = 0;
};

/// The rows of one query, which its connection gives it when it is opened. It stays readable while other statements run
/// on the connection, does not see what they change, and needs the connection no more.
class Recordset {
 public:
  virtual ~Recordset() = default;

  virtual void PutActiveConnection(std::shared_ptr<Connection> connection) { connection_ = std::move(connection); }

  /// Without a connection, the active one serves; with one, it becomes the active one.
  void Open(const Text& source, std::shared_ptr<Connection> connection, CursorType cursor, LockType lock,
            CommandType options);
  bool AtEnd() const { return !Rows().atRow(); }
  bool AtBeginning() const { return Rows().count() == 0; }
  std::int32_t RecordCount() const;
  void MoveNext();

  /// The field of the current row, its name without regard to case; the first of that name where a join has two. That
  /// the field is unknown is found out first, with or without a row.
  Value FieldValue(std::string_view name) const;

  /// 0 when closed, 1 when open.
  std::int32_t State() const { return rows_ ? 1 : 0; }
  virtual void Close();

 private:
  QueryRows& Rows() const;

  std::shared_ptr<Connection> connection_;
  std::unique_ptr<QueryRows> rows_;  // null while closed
};

/// A field of a recordset as an object: its default value is what the field holds in the current row.
class Field : public Component {
 public:
  Field(std::shared_ptr<Recordset> recordset, Text name) : recordset_(std::move(recordset)), name_(std::move(name)) {}

  const Text& name() const { return name_; }
  Value Default() const override { return recordset_->FieldValue(name_); }
  Value Call(std::string_view operation, Arguments) override { RaiseNoSuchOperation(operation, name_); }
  Value Get(std::string_view property) override;

 private:
  std::shared_ptr<Recordset> recordset_;
  Text name_;
};

/// Who makes connections and recordsets.
class Database {
 public:
  virtual ~Database() = default;

  virtual std::shared_ptr<Connection> CreateConnection() = 0;
  virtual std::shared_ptr<Recordset> CreateRecordset() = 0;
};

}  // namespace zenqay
