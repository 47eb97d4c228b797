// Runs a job and writes down every statement as the database gets it, each ended by a NUL: as SQLite reads it for
// Provider=SQLite, else as PostgreSQL does. An empty one stands where a connection opens.
//
//     statement_recorder FILE COMMANDLINE
#include <cstdio>
#include <exception>

#include "components/component_catalogue.h"
#include "engines/databases.h"
#include "engines/dialect/postgresql_dialect.h"
#include "engines/dialect/sqlite_dialect.h"
#include "startup/modStartUp.h"
#include "system/os_platform.h"

namespace {

using namespace zenqay;

class Recorder {
 public:
  Recorder(const char* path, bool isSqlite) : file_(std::fopen(path, "wb")), isSqlite_(isSqlite) {}
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;
  ~Recorder() { std::fclose(file_); }

  void RecordOpening() { std::fputc('\0', file_); }

  void Record(const Text& statement) {
    Text engineText;
    if (isSqlite_) {
      TranslateForSqlite(statement, engineText);
    } else {
      TranslateForPostgreSql(statement, engineText);
    }
    if (!engineText.empty()) std::fwrite(engineText.c_str(), 1, engineText.size() + 1, file_);
  }

 private:
  std::FILE* file_;
  bool isSqlite_;
};

class RecordedConnection : public Connection {
 public:
  RecordedConnection(std::shared_ptr<Connection> inner, Recorder& recorder)
      : inner_(std::move(inner)), recorder_(recorder) {}

  void PutConnectionTimeout(std::int16_t seconds) override { inner_->PutConnectionTimeout(seconds); }
  void PutCommandTimeout(std::int16_t seconds) override { inner_->PutCommandTimeout(seconds); }
  void PutConnectionString(const Text& text) override { inner_->PutConnectionString(text); }
  void Open() override {
    recorder_.RecordOpening();
    inner_->Open();
  }
  void PutDefaultDatabase(const Text& name) override { inner_->PutDefaultDatabase(name); }
  Text DefaultDatabase() override { return inner_->DefaultDatabase(); }
  std::shared_ptr<Errors> ErrorCollection() override { return inner_->ErrorCollection(); }
  void Close() override { inner_->Close(); }

  bool TakeLock(const Text& name) override { return inner_->TakeLock(name); }
  void GiveLockBack(const Text& name) override { inner_->GiveLockBack(name); }
  std::int64_t Run(const Text& statement, Count count) override {
    recorder_.Record(statement);
    return inner_->Run(statement, count);
  }
  std::unique_ptr<QueryRows> RowsOf(const Text& query, CursorType cursor, LockType lock, CommandType options) override {
    recorder_.Record(query);
    return inner_->RowsOf(query, cursor, lock, options);
  }

 private:
  std::shared_ptr<Connection> inner_;
  Recorder& recorder_;
};

class RecordedDatabase : public Database {
 public:
  explicit RecordedDatabase(Recorder& recorder) : recorder_(recorder) {}

  std::shared_ptr<Connection> CreateConnection() override {
    return std::make_shared<RecordedConnection>(databases_.CreateConnection(), recorder_);
  }
  std::shared_ptr<Recordset> CreateRecordset() override { return databases_.CreateRecordset(); }

 private:
  LocalDatabases databases_;
  Recorder& recorder_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  try {
    const Text commandLine = argv[2];
    OsPlatform platform(argc, argv);
    ComponentCatalogue catalogue(platform.ProgramDirectory());
    Recorder recorder(argv[1], commandLine.starts_with("Provider=SQLite;"));
    RecordedDatabase database(recorder);
    modDeclarations process{.platform = platform, .components = catalogue, .database = database};
    RunProcess(process, commandLine);
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "statement_recorder: %s\n", fault.what());
    return 1;
  }
  return 0;
}
