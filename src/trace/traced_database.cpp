#include "trace/traced_database.h"

#include <nlohmann/json.hpp>

namespace zenqay {

using nlohmann::ordered_json;

namespace {

/// Does `work` and writes the line when it returns: `line` with what `work` gave it, or with the error in its place.
template <typename Work>
auto Traced(Trace& trace, std::string_view kind, ordered_json line, Work work) {
  try {
    const auto result = work(line);
    trace.Write(kind, line);
    return result;
  } catch (const RuntimeError& error) {
    line["error"] = Trace::Shown(error);
    trace.Write(kind, line);
    throw;
  }
}

}  // namespace

class TracedConnection : public Connection {
 public:
  TracedConnection(std::shared_ptr<Connection> inner, Trace& trace, int number)
      : inner_(std::move(inner)), trace_(trace), number_(number) {}

  const std::shared_ptr<Connection>& inner() const { return inner_; }
  int number() const { return number_; }

  void PutConnectionTimeout(std::int16_t seconds) override { inner_->PutConnectionTimeout(seconds); }
  void PutCommandTimeout(std::int16_t seconds) override { inner_->PutCommandTimeout(seconds); }
  void PutConnectionString(const Text& connectionString) override { inner_->PutConnectionString(connectionString); }
  std::shared_ptr<Errors> ErrorCollection() override { return inner_->ErrorCollection(); }

  void Open() override {
    Traced(trace_, "open", {{"connection", number_}}, [&](ordered_json&) {
      inner_->Open();
      return true;
    });
  }

  void Close() override {
    Traced(trace_, "close", {{"connection", number_}}, [&](ordered_json&) {
      inner_->Close();
      return true;
    });
  }

  void PutDefaultDatabase(const Text& name) override {
    Traced(trace_, "database", {{"connection", number_}, {"put", name}}, [&](ordered_json&) {
      inner_->PutDefaultDatabase(name);
      return true;
    });
  }

  Text DefaultDatabase() override {
    return Traced(trace_, "database", {{"connection", number_}}, [&](ordered_json& line) {
      const Text name = inner_->DefaultDatabase();
      line["get"] = name;
      return name;
    });
  }

 protected:
  std::int64_t Run(const Text& statement, Count count) override {
    return Traced(trace_, "sql", {{"connection", number_}, {"text", statement}}, [&](ordered_json& line) {
      const std::int64_t rows = inner_->Run(statement, count);
      if (count == Count::Asked) line["affected"] = rows;
      return rows;
    });
  }

 private:
  std::shared_ptr<Connection> inner_;
  Trace& trace_;
  int number_;
};

namespace {

class TracedRecordset : public Recordset {
 public:
  TracedRecordset(std::shared_ptr<Recordset> inner, Trace& trace) : inner_(std::move(inner)), trace_(trace) {}

  void PutActiveConnection(std::shared_ptr<Connection> connection) override {
    inner_->PutActiveConnection(TracedOf(connection).inner());
  }

  void Open(const Text& source, std::shared_ptr<Connection> connection, CursorType cursor, LockType lock,
            CommandType options) override {
    const TracedConnection& traced = TracedOf(connection);
    Traced(trace_, "query", {{"connection", traced.number()}, {"text", source}}, [&](ordered_json& line) {
      inner_->Open(source, traced.inner(), cursor, lock, options);
      line["rows"] = inner_->RecordCount();
      return true;
    });
  }

  bool AtEnd() override { return inner_->AtEnd(); }
  bool AtBeginning() override { return inner_->AtBeginning(); }
  std::int32_t RecordCount() override { return inner_->RecordCount(); }
  void MoveNext() override { inner_->MoveNext(); }
  Value FieldValue(std::string_view name) override { return inner_->FieldValue(name); }
  std::int32_t State() override { return inner_->State(); }
  void Close() override { inner_->Close(); }

 private:
  static TracedConnection& TracedOf(const std::shared_ptr<Connection>& connection) {
    return dynamic_cast<TracedConnection&>(*connection);
  }

  std::shared_ptr<Recordset> inner_;
  Trace& trace_;
};

}  // namespace

std::shared_ptr<Connection> TracedDatabase::CreateConnection() {
  return std::make_shared<TracedConnection>(inner_.CreateConnection(), trace_, ++connections_);
}

std::shared_ptr<Recordset> TracedDatabase::CreateRecordset() {
  return std::make_shared<TracedRecordset>(inner_.CreateRecordset(), trace_);
}

}  // namespace zenqay
