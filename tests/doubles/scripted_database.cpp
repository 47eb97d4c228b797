#include "doubles/scripted_database.h"

namespace zenqay {

class ScriptedConnection : public Connection {
 public:
  explicit ScriptedConnection(ScriptedDatabase& database) : database_(database) {}
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

  Errors& errors() { return *errors_; }

 protected:
  std::int64_t Run(const Text& statement, Count count) override {
    const bool asked = count == Count::Asked;
    const std::int64_t rows = asked ? database_.NextCount() : 0;
    database_.journal_.Line("sql " + statement + (asked ? " -> " + std::to_string(rows) : ""));
    database_.Check(statement, *errors_);
    return rows;
  }

 private:
  void Setting(const Text& text) {
    if (database_.showSettings) database_.journal_.Line("put " + text);
  }

  ScriptedDatabase& database_;
  std::shared_ptr<Errors> errors_ = std::make_shared<Errors>();
  Text name_ = "DEFAULTDB";
};

class ScriptedRecordset : public Recordset {
 public:
  explicit ScriptedRecordset(ScriptedDatabase& database) : database_(database) {}
  ~ScriptedRecordset() override { database_.NoteRelease("recordset"); }

  void PutActiveConnection(std::shared_ptr<Connection>) override {}

  void Open(const Text& source, std::shared_ptr<Connection> connection, CursorType cursor, LockType lock,
            CommandType options) override {
    database_.journal_.Line("query " + source + (database_.showQueryOptions ? OptionText(cursor, lock, options) : ""));
    database_.Check(source, static_cast<ScriptedConnection&>(*connection).errors());
    rows_ = database_.RowsOf(source);
    at_ = 0;
    open_ = true;
  }

  bool AtEnd() override { return at_ >= rows_.size(); }
  bool AtBeginning() override { return rows_.empty(); }
  std::int32_t RecordCount() override { return static_cast<std::int32_t>(rows_.size()); }
  void MoveNext() override { ++at_; }

  Value FieldValue(std::string_view name) override {
    if (AtEnd()) throw RuntimeError(3021, kPlatformSource, "no current row");
    const auto field = rows_[at_].find(LowerCased(name));
    if (field == rows_[at_].end()) throw RuntimeError(3265, kPlatformSource, "no field " + Text(name));
    return field->second;
  }

  std::int32_t State() override { return open_ ? 1 : 0; }

  void Close() override {
    database_.journal_.Line("close recordset");
    database_.CheckCall("close recordset");
    open_ = false;
  }

 private:
  static Text OptionText(CursorType cursor, LockType lock, CommandType options) {
    Text text = cursor == CursorType::Keyset ? " [keyset" : " [static";
    text += lock == LockType::Optimistic ? " optimistic" : " read-only";
    return text + (options == CommandType::SqlText ? " text]" : " unspecified]");
  }

  ScriptedDatabase& database_;
  std::vector<TableRow> rows_;
  std::size_t at_ = 0;
  bool open_ = false;
};

void ScriptedDatabase::FailOn(const Text& part, RuntimeError error, std::vector<ProviderError> items, int times) {
  failures_.push_back({part, std::move(error), std::move(items), times});
}

std::shared_ptr<Connection> ScriptedDatabase::CreateConnection() {
  return std::make_shared<ScriptedConnection>(*this);
}

std::shared_ptr<Recordset> ScriptedDatabase::CreateRecordset() {
  CheckCall("create recordset");
  return std::make_shared<ScriptedRecordset>(*this);
}

void ScriptedDatabase::Check(const Text& statement, Errors& errors) {
  if (refusesEmptyStatements && statement.empty()) {
    throw RuntimeError(-2147217908, kPlatformSource, "Command text was not set for the command object.");
  }
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
