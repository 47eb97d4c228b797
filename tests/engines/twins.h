// Two databases with the same contents, of which one gets every statement by its shape and the other as composed.
//
//     Twins twins(shapedConnectionString, composedConnectionString);
//     twins.CreateConnection();  // whose statements go to both, and must come to the same
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>

#include "engines/databases.h"
#include "engines/dialect/statement_shape.h"

namespace zenqay {

/// Without the row that is named as the first one to fail: in which order a server comes to rows is its own.
inline Text WithoutFailingRow(Text text) {
  for (auto at = text.find(" DETAIL: Failing row"); at != Text::npos; at = text.find(" DETAIL: Failing row", at)) {
    text.erase(at, text.find("; Error", at) - at);
  }
  return text;
}

/// Everything that a failure says.
inline Text EverythingOf(const RuntimeError& failure) {
  Text all = std::to_string(failure.number()) + " " + failure.source() + ": " + failure.description() + " [" +
             failure.statement() + "]";
  for (const ProviderError& item : failure.items()) {
    all += "\n  " + std::to_string(item.Number) + " " + item.Source + ": " + item.Description + " " + item.SqlState +
           " " + std::to_string(item.NativeError);
  }
  return WithoutFailingRow(all);
}

class TwinConnection : public Connection {
 public:
  TwinConnection(Database& databases, Text composedString)
      : shaped_(databases.CreateConnection()), composed_(databases.CreateConnection()) {
    composed_->PutConnectionString(composedString);
  }

  void PutConnectionTimeout(std::int16_t seconds) override { shaped_->PutConnectionTimeout(seconds); }
  void PutCommandTimeout(std::int16_t seconds) override { shaped_->PutCommandTimeout(seconds); }
  void PutConnectionString(const Text& text) override { shaped_->PutConnectionString(text); }
  void Open() override {
    shaped_->Open();
    composed_->Open();
  }
  void PutDefaultDatabase(const Text& name) override { shaped_->PutDefaultDatabase(name); }
  Text DefaultDatabase() override { return shaped_->DefaultDatabase(); }
  std::shared_ptr<Errors> ErrorCollection() override { return shaped_->ErrorCollection(); }
  void Close() override {
    shaped_->Close();
    composed_->Close();
  }
  bool TakeLock(const Text& name) override { return shaped_->TakeLock(name); }
  void GiveLockBack(const Text& name) override { shaped_->GiveLockBack(name); }

  /// A comment in front keeps a statement from being taken apart, and says nothing to the database.
  std::int64_t Run(const Text& statement, Count count) override {
    StatementShape shape;
    const bool isShaped = TakeShape(statement, shape);
    const Text prefix = isShaped ? "/**/" : "";
    if (isShaped) ++shapes_;
    std::int64_t rows = 0;
    const auto run = [&](Connection& connection, const Text& text) {
      try {
        rows = connection.Run(text, count);
        return "touched " + std::to_string(rows);
      } catch (const RuntimeError& failure) {
        return Replaced(EverythingOf(failure), "[" + prefix, "[");  // it travels with the statement
      }
    };
    const Text composed = run(*composed_, prefix + statement);
    const Text shaped = run(*shaped_, statement);
    EXPECT_EQ(shaped, composed) << statement;
    if (!shaped.starts_with("touched ")) throw RuntimeError(1, "Twins", shaped);
    return rows;
  }

  std::unique_ptr<QueryRows> RowsOf(const Text& query, CursorType cursor, LockType lock, CommandType options) override {
    return shaped_->RowsOf(query, cursor, lock, options);
  }

  /// How many statements had a shape.
  int shapes() const { return shapes_; }

  /// What the query gives on both, or the first difference as a failure of the test.
  void Compare(const Text& query) {
    const Text composed = RowsOn(*composed_, query);
    EXPECT_EQ(RowsOn(*shaped_, query), composed) << query;
  }

 private:
  static Text RowsOn(Connection& connection, const Text& query) {
    const auto rows = connection.RowsOf(query, CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
    Text all;
    while (rows->Next()) {
      for (std::size_t i = 0; i < rows->columns().size(); ++i) all += rows->Field(i).Joined() + "|";
      all += "\n";
    }
    return all;
  }

  std::shared_ptr<Connection> shaped_;
  std::shared_ptr<Connection> composed_;
  int shapes_ = 0;
};

class Twins : public Database {
 public:
  Twins(Text shapedString, Text composedString)
      : shapedString_(std::move(shapedString)), composedString_(std::move(composedString)) {}

  std::shared_ptr<Connection> CreateConnection() override { return Connect(); }
  std::shared_ptr<Recordset> CreateRecordset() override { return databases_.CreateRecordset(); }

  /// One that is open.
  std::shared_ptr<TwinConnection> Opened() {
    std::shared_ptr<TwinConnection> connection = Connect();
    connection->PutConnectionString(shapedString_);
    connection->Open();
    return connection;
  }

  const Text& shapedString() const { return shapedString_; }

 private:
  std::shared_ptr<TwinConnection> Connect() { return std::make_shared<TwinConnection>(databases_, composedString_); }

  LocalDatabases databases_;
  Text shapedString_;
  Text composedString_;
};

/// Runs generated statements on both, as many as ZENQAY_STATEMENTS says (4,000 otherwise), and compares the tables now
/// and then. Enough of them must have a shape, touch rows, at least one of `touching`, and fail.
template <typename Statements, typename Compare>
void RunGenerated(TwinConnection& connection, Statements statements, Compare compare, int touching) {
  const char* asked = std::getenv("ZENQAY_STATEMENTS");
  const int count = asked == nullptr ? 4'000 : std::atoi(asked);
  int touched = 0;
  int failed = 0;
  for (int i = 1; i <= count && !testing::Test::HasFailure(); ++i) {
    try {
      touched += connection.Run(statements.Next(), Connection::Count::Asked) > 0 ? 1 : 0;
    } catch (const RuntimeError&) {
      ++failed;
    }
    if (i % 250 == 0) compare();
  }
  compare();
  EXPECT_GT(connection.shapes(), count / 2);
  EXPECT_GT(touched, count / touching);
  EXPECT_GT(failed, count / 10);
}

}  // namespace zenqay
