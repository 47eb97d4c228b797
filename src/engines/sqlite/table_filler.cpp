#include "engines/sqlite/table_filler.h"

#include <sqlite3.h>

#include <algorithm>

#include "engines/dialect/translation.h"
#include "engines/provider_errors.h"

namespace zenqay {
namespace {

/// Naming the file, since it is none that its reader knows.
[[noreturn]] void RaiseFailure(sqlite3* database) {
  const Text message = Text(sqlite3_errmsg(database)) + ": " + sqlite3_db_filename(database, "main");
  RaiseReported("SQLite", message, "HY000", sqlite3_extended_errcode(database));
}

void Require(sqlite3* database, int code) {
  if (code != SQLITE_OK && code != SQLITE_DONE && code != SQLITE_ROW) RaiseFailure(database);
}

}  // namespace

/// Rows on their way into one table.
class TableFiller::Inserting : public RowSink {
 public:
  Inserting(sqlite3* database, const Text& table, const TableSchema& schema) : database_(database) {
    Text names;
    Text marks;
    for (const Text& column : schema.columns) {
      names += (names.empty() ? "" : ", ") + QuotedName(column);
      marks += marks.empty() ? "?" : ", ?";
      isPadded_.push_back(std::ranges::find(schema.padded, column) != schema.padded.end());
    }
    const Text insert = "INSERT INTO " + QuotedName(table) + " (" + names + ") VALUES (" + marks + ")";
    Require(database, sqlite3_prepare_v2(database, insert.c_str(), -1, &statement_, nullptr));
  }
  Inserting(const Inserting&) = delete;
  Inserting& operator=(const Inserting&) = delete;
  ~Inserting() override { sqlite3_finalize(statement_); }

  void PutColumns(std::vector<Text>) override {}
  void AddNull() override { Require(database_, sqlite3_bind_null(statement_, ++column_)); }
  void AddInteger(std::int32_t value) override { Require(database_, sqlite3_bind_int(statement_, ++column_, value)); }
  void AddDouble(double value) override { Require(database_, sqlite3_bind_double(statement_, ++column_, value)); }
  void AddText(std::string_view value) override {
    const bool isPadded = isPadded_[static_cast<std::size_t>(column_)];
    if (isPadded) value = value.substr(0, value.find_last_not_of(' ') + 1);
    Bind(value);
  }
  void AddDateTime(DateTime value) override {
    date_.clear();
    AppendDate(date_, value, value.TimeOnly() != DateTime());
    Bind(date_);
  }
  void EndRow() override {
    Require(database_, sqlite3_step(statement_));
    sqlite3_reset(statement_);
    column_ = 0;
  }

 private:
  void Bind(std::string_view text) {
    Require(database_,
            sqlite3_bind_text64(statement_, ++column_, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
  }

  sqlite3* database_;
  sqlite3_stmt* statement_ = nullptr;
  int column_ = 0;  // that was bound last
  std::vector<bool> isPadded_;
  Text date_;  // kept for its memory
};

TableFiller::TableFiller(const Text& path) {
  sqlite3* database = nullptr;
  const int code = sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  database_.reset(database);
  if (code != SQLITE_OK) RaiseReported("SQLite", Text(sqlite3_errmsg(database)) + ": " + path, "08001", code);
  Run("PRAGMA journal_mode = OFF");
  Run("PRAGMA synchronous = OFF");
  Run("PRAGMA cache_size = -8192");
  Run("PRAGMA ignore_check_constraints = ON");  // what stands there may be older than a limit
  Run("BEGIN");
}

RowSink& TableFiller::Begin(const Text& table, const TableSchema& schema) {
  MakeKeys();
  Run(schema.statements.front());
  keys_.assign(schema.statements.begin() + 1, schema.statements.end());
  inserting_ = std::make_shared<Inserting>(database_.get(), table, schema);
  return *inserting_;
}

void TableFiller::Run(const Text& statement) {
  Require(database_.get(), sqlite3_exec(database_.get(), statement.c_str(), nullptr, nullptr, nullptr));
}

void TableFiller::Finish() {
  MakeKeys();
  Run("COMMIT");
}

void TableFiller::MakeKeys() {
  inserting_.reset();
  for (const Text& key : keys_) Run(key);
  keys_.clear();
}

void TableFiller::CloseDatabase::operator()(sqlite3* database) const {
  sqlite3_close(database);
}

}  // namespace zenqay
