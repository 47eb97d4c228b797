// The contract with the local database: what a connection, its error collection and a recordset offer.
//
// Numbers of failures: what the database itself reports carries the provider's number (provider_errors in localdb);
// an operation on a closed connection or recordset raises 3704, a row that is not there 3021, an unknown field 3265.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "contracts/value.h"

namespace zenqay {

/// One thing that the provider reported: its number, the driver's name, the driver's text.
struct ProviderError {
  std::int32_t Number = 0;
  Text Source;
  Text Description;
};

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

  /// Runs a statement; any result is dropped. With a receiver, the number of rows touched is put into it, and a number
  /// that does not fit raises 6 (the statement has then run).
  void Execute(const Text& statement);
  void Execute(const Text& statement, std::int16_t& recordsAffected);
  void Execute(const Text& statement, std::int32_t& recordsAffected);
  void Execute(const Text& statement, Text& recordsAffected);

 protected:
  enum class Count { NotAsked, Asked };

  /// The number of rows touched. Only meaningful when it was asked for.
  virtual std::int64_t Run(const Text& statement, Count count) = 0;

  friend class TracedConnection;
};

enum class CursorType : std::int16_t { Keyset = 1, Static = 3 };
enum class LockType : std::int16_t { ReadOnly = 1, Optimistic = 3 };
enum class CommandType : std::int16_t { Unspecified = -1, SqlText = 1 };

/// The rows of one query, read forward. It stays readable while other statements run on its connection, and does not
/// see what they change.
class Recordset {
 public:
  virtual ~Recordset() = default;

  virtual void PutActiveConnection(std::shared_ptr<Connection> connection) = 0;
  virtual void Open(const Text& source, std::shared_ptr<Connection> connection, CursorType cursor, LockType lock,
                    CommandType options) = 0;
  virtual bool AtEnd() = 0;
  virtual bool AtBeginning() = 0;
  virtual std::int32_t RecordCount() = 0;
  virtual void MoveNext() = 0;

  /// The field of the current row, its name without regard to case; the first of that name where a join has two.
  virtual Value FieldValue(std::string_view name) = 0;

  /// 0 when closed, 1 when open.
  virtual std::int32_t State() = 0;
  virtual void Close() = 0;
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
