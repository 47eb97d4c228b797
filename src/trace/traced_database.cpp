#include "trace/traced_database.h"

#include "trace/traced.h"

namespace zenqay {

using nlohmann::ordered_json;

class TracedConnection : public Connection {
 public:
  TracedConnection(std::shared_ptr<Connection> inner, Trace& trace, int number)
      : inner_(std::move(inner)), trace_(trace), number_(number) {}

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

  bool TakeLock(const Text& name) override {
    return Traced(trace_, "lock", {{"connection", number_}, {"take", name}}, [&](ordered_json& line) {
      const bool got = inner_->TakeLock(name);
      line["got"] = got;
      return got;
    });
  }

  void GiveLockBack(const Text& name) override {
    Traced(trace_, "lock", {{"connection", number_}, {"give", name}}, [&](ordered_json&) {
      inner_->GiveLockBack(name);
      return true;
    });
  }

  std::int64_t Run(const Text& statement, Count count) override {
    return Traced(trace_, "sql", {{"connection", number_}, {"text", statement}}, [&](ordered_json& line) {
      const std::int64_t rows = inner_->Run(statement, count);
      if (count == Count::Asked) line["affected"] = rows;
      return rows;
    });
  }

  std::unique_ptr<QueryRows> RowsOf(const Text& query, CursorType cursor, LockType lock, CommandType options) override {
    return Traced(trace_, "query", {{"connection", number_}, {"text", query}}, [&](ordered_json& line) {
      std::unique_ptr<QueryRows> rows = inner_->RowsOf(query, cursor, lock, options);
      line["rows"] = rows->count();
      return rows;
    });
  }

 private:
  std::shared_ptr<Connection> inner_;
  Trace& trace_;
  int number_;
};

std::shared_ptr<Connection> TracedDatabase::CreateConnection() {
  return std::make_shared<TracedConnection>(inner_.CreateConnection(), trace_, ++connections_);
}

std::shared_ptr<Recordset> TracedDatabase::CreateRecordset() {
  return inner_.CreateRecordset();
}

}  // namespace zenqay
