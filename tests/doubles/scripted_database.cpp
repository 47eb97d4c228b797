#include "doubles/scripted_database.h"

#include <set>

namespace zenqay {

namespace {

/// The columns are the fields that any of the rows has.
class ScriptedRows : public QueryRows {
 public:
  explicit ScriptedRows(std::vector<TableRow> rows) : rows_(std::move(rows)) {
    std::set<Text> names;
    for (const TableRow& row : rows_) {
      for (const auto& [name, value] : row) names.insert(name);
    }
    columns_.assign(names.begin(), names.end());
  }

  const std::vector<Text>& columns() const override { return columns_; }
  std::int64_t count() const override { return static_cast<std::int64_t>(rows_.size()); }
  bool Next() override { return ++next_ <= rows_.size(); }
  bool atRow() const override { return next_ > 0 && next_ <= rows_.size(); }
  Value Field(std::size_t column) const override { return rows_[next_ - 1].at(columns_[column]); }

 private:
  std::vector<TableRow> rows_;
  std::vector<Text> columns_;
  std::size_t next_ = 0;
};

Text OptionText(CursorType cursor, LockType lock, CommandType options) {
  Text text = cursor == CursorType::Keyset ? " [keyset" : " [static";
  text += lock == LockType::Optimistic ? " optimistic" : " read-only";
  return text + (options == CommandType::SqlText ? " text]" : " unspecified]");
}

}  // namespace

class ScriptedConnection : public Connection {
 public:
  ScriptedConnection(ScriptedDatabase& database, int number) : database_(database), number_(number) {}
  ~ScriptedConnection() override { database_.NoteRelease("connection"); }

  void PutConnectionTimeout(std::int16_t seconds) override { Setting("ConnectionTimeout " + std::to_string(seconds)); }
  void PutCommandTimeout(std::int16_t seconds) override { Setting("CommandTimeout " + std::to_string(seconds)); }
  void PutConnectionString(const Text& connectionString) override { Setting("ConnectionString " + connectionString); }

  void Open() override {
    database_.journal_.Line("open");
    database_.CheckCall("open");
  }

  void PutDefaultDatabase(const Text& name) override {
    database_.journal_.Line("put DefaultDatabase " + name);
    database_.CheckCall("put DefaultDatabase");
    name_ = name;
  }

  Text DefaultDatabase() override {
    database_.journal_.Line("get DefaultDatabase");
    database_.CheckCall("get DefaultDatabase");
    return name_;
  }

  std::shared_ptr<Errors> ErrorCollection() override { return errors_; }

  void Close() override {
    database_.journal_.Line("close");
    database_.CheckCall("close");
  }

  bool TakeLock(const Text& name) override {
    database_.journal_.Line("lock " + name + (database_.lockIsFree ? "" : " -> not got"));
    database_.CheckCall("lock");
    return database_.lockIsFree;
  }

  void GiveLockBack(const Text& name) override {
    database_.journal_.Line("unlock " + name);
    database_.CheckCall("unlock");
  }

  int number() const { return number_; }

 protected:
  std::int64_t Run(const Text& statement, Count count) override {
    const bool asked = count == Count::Asked;
    const std::int64_t rows = asked ? database_.NextCount() : 0;
    database_.journal_.Line("sql " + statement + (asked ? " -> " + std::to_string(rows) : ""));
    database_.Check(statement, *errors_);
    return rows;
  }

  std::unique_ptr<QueryRows> RowsOf(const Text& query, CursorType cursor, LockType lock, CommandType options) override {
    database_.journal_.Line("query " + query + (database_.showQueryOptions ? OptionText(cursor, lock, options) : ""));
    database_.Check(query, *errors_);
    return std::make_unique<ScriptedRows>(database_.RowsOf(query));
  }

 private:
  void Setting(const Text& text) {
    if (database_.showSettings) database_.journal_.Line("put " + text);
  }

  ScriptedDatabase& database_;
  int number_;
  std::shared_ptr<Errors> errors_ = std::make_shared<Errors>();
  Text name_ = "DEFAULTDB";
};

class ScriptedRecordset : public Recordset {
 public:
  explicit ScriptedRecordset(ScriptedDatabase& database) : database_(database) {}
  ~ScriptedRecordset() override { database_.NoteRelease("recordset"); }

  void PutActiveConnection(std::shared_ptr<Connection> connection) override {
    if (database_.showSettings) {
      const auto* own = dynamic_cast<const ScriptedConnection*>(connection.get());
      database_.journal_.Line("put ActiveConnection" + (own ? " " + std::to_string(own->number()) : ""));
    }
    Recordset::PutActiveConnection(std::move(connection));
  }

  void Close() override {
    database_.journal_.Line("close recordset");
    database_.CheckCall("close recordset");
    Recordset::Close();
  }

 private:
  ScriptedDatabase& database_;
};

void ScriptedDatabase::FailOn(const Text& part, RuntimeError error, std::vector<ProviderError> items, int times) {
  failures_.push_back({part, std::move(error), std::move(items), times});
}

std::shared_ptr<Connection> ScriptedDatabase::CreateConnection() {
  return std::make_shared<ScriptedConnection>(*this, ++connections_);
}

std::shared_ptr<Recordset> ScriptedDatabase::CreateRecordset() {
  CheckCall("create recordset");
  return std::make_shared<ScriptedRecordset>(*this);
}

void ScriptedDatabase::Check(const Text& statement, Errors& errors) {
  if (refusesEmptyStatements && statement.empty()) Raise(DatabaseFault::NoCommandText);
  for (Failure& failure : failures_) {
    if (failure.times == 0 || statement.find(failure.part) == Text::npos) continue;
    --failure.times;
    errors.Replace(failure.items);
    throw failure.error;
  }
}

void ScriptedDatabase::CheckCall(const Text& call) {
  if (const auto failure = callFailures_.find(call); failure != callFailures_.end()) throw failure->second;
}

void ScriptedDatabase::NoteRelease(const Text& what) {
  if (showReleases) journal_.Note("release " + what);
}

std::int64_t ScriptedDatabase::NextCount() {
  if (counts_.empty()) return 1;
  const std::int64_t count = counts_.front();
  counts_.pop_front();
  return count;
}

std::vector<TableRow> ScriptedDatabase::RowsOf(const Text& query) const {
  if (const auto exact = answers_.find(query); exact != answers_.end()) return exact->second;
  const auto any = answers_.find("");
  return any == answers_.end() ? std::vector<TableRow>() : any->second;
}

}  // namespace zenqay
