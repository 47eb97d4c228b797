#include "engines/sqlite/rewritten_copy.h"

#include <sqlite3.h>

#include <memory>

#include "engines/provider_errors.h"
#include "engines/sqlite/read_only_file.h"

namespace zenqay {
namespace {

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
};
struct Finalize {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

Text InQuotes(std::string_view text, const char* quote) {
  return quote + Replaced(text, quote, Text(quote) + quote) + quote;
}

std::string_view TextOf(sqlite3_value* value) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return text == nullptr ? std::string_view()
                         : std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

/// The new file, with the old one attached as "original", which nothing writes to.
class RewrittenFile {
 public:
  RewrittenFile(const Text& from, const Text& to, const Rewriting& rewriting) : from_(from), rewriting_(rewriting) {
    sqlite3* opened = nullptr;
    const int code = sqlite3_open_v2(to.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI, nullptr);
    database_.reset(opened);
    Require(code);
    const ReadOnlyFile file = ReadOnlyFile::At(from);
    Run("ATTACH " + InQuotes(file.uri, "'") + " AS original");
    if (file.isAlone) Run("PRAGMA original.locking_mode = EXCLUSIVE");
    Require(sqlite3_create_function_v2(opened, "rewritten", 3, SQLITE_UTF8, this, Rewrite, nullptr, nullptr, nullptr));
  }

  std::vector<RewrittenTable> Fill() {
    Run("PRAGMA journal_mode = OFF");             // nobody needs a half of it
    Run("PRAGMA ignore_check_constraints = ON");  // what stands there may be older than a limit
    for (const char* kept : {"user_version", "application_id"}) {
      Run(Text("PRAGMA ") + kept + " = " + Cells(Text("PRAGMA original.") + kept).front().front());
    }
    Run("BEGIN");
    std::vector<RewrittenTable> tables;
    // Indexes and the rest come behind the rows.
    for (const auto& entry : Cells("SELECT name, type, sql FROM original.sqlite_master WHERE sql IS NOT NULL AND name "
                                   "NOT LIKE 'sqlite_%' ORDER BY type <> 'table', rowid")) {
      Run(rewriting_.declaration(entry[2]));
      if (entry[1] == "table") tables.push_back(FillTable(entry[0]));
    }
    CopyStatistics();
    Run("COMMIT");
    return tables;
  }

 private:
  using Row = std::vector<Text>;

  void Require(int code) const {
    if (code == SQLITE_OK || code == SQLITE_DONE || code == SQLITE_ROW) return;
    const Text message = sqlite3_errmsg(database_.get());
    RaiseReported("SQLite", message + ": " + from_, "HY000", sqlite3_extended_errcode(database_.get()));
  }

  Statement Prepared(const Text& text) const {
    sqlite3_stmt* prepared = nullptr;
    Require(sqlite3_prepare_v2(database_.get(), text.c_str(), static_cast<int>(text.size()), &prepared, nullptr));
    return Statement(prepared);
  }

  void Run(const Text& text) const {
    const Statement statement = Prepared(text);
    int code = sqlite3_step(statement.get());
    while (code == SQLITE_ROW) code = sqlite3_step(statement.get());
    Require(code);
  }

  /// For the short answers that the schema gives.
  std::vector<Row> Cells(const Text& query) const {
    const Statement statement = Prepared(query);
    std::vector<Row> rows;
    int code = sqlite3_step(statement.get());
    for (; code == SQLITE_ROW; code = sqlite3_step(statement.get())) {
      Row& row = rows.emplace_back();
      for (int column = 0; column < sqlite3_column_count(statement.get()); ++column) {
        row.emplace_back(TextOf(sqlite3_column_value(statement.get(), column)));
      }
    }
    Require(code);
    return rows;
  }

  RewrittenTable FillTable(const Text& table) {
    changed_ = 0;
    Text cells;
    for (const Row& column : Cells("SELECT name FROM pragma_table_info(" + InQuotes(table, "'") + ", 'original')")) {
      cells += (cells.empty() ? "" : ", ") + Text("rewritten(") + InQuotes(table, "'") + ", " +
               InQuotes(column[0], "'") + ", " + InQuotes(column[0], "\"") + ")";
    }
    const Text name = rewriting_.name(table);
    // Without an index the rows come in their own order.
    Run("INSERT INTO main." + InQuotes(name, "\"") + " SELECT " + cells + " FROM original." + InQuotes(table, "\"") +
        " NOT INDEXED");
    return {.name = name, .rows = sqlite3_changes64(database_.get()), .changed = changed_};
  }

  /// By which the engine chooses in what order it reads the rows of a join.
  void CopyStatistics() {
    if (Cells("SELECT 1 FROM original.sqlite_master WHERE name = 'sqlite_stat1'").empty()) return;
    Run("ANALYZE main.sqlite_master");  // makes the table for them
    for (const Row& of : Cells("SELECT tbl, coalesce(idx, ''), stat FROM original.sqlite_stat1")) {
      const Text index = of[1].empty() ? "NULL" : InQuotes(rewriting_.name(of[1]), "'");
      Run("INSERT INTO main.sqlite_stat1 VALUES (" + InQuotes(rewriting_.name(of[0]), "'") + ", " + index + ", " +
          InQuotes(of[2], "'") + ")");
    }
  }

  /// rewritten(table, column, value)
  static void Rewrite(sqlite3_context* context, int, sqlite3_value** arguments) {
    try {
      static_cast<RewrittenFile*>(sqlite3_user_data(context))->Answer(context, arguments);
    } catch (const std::exception& failure) {
      sqlite3_result_error(context, failure.what(), -1);
    }
  }

  void Answer(sqlite3_context* context, sqlite3_value** arguments) {
    sqlite3_value* value = arguments[2];
    const int type = sqlite3_value_type(value);
    if (type == SQLITE_NULL) return;
    if (type == SQLITE_BLOB) {
      ++changed_;
      return static_cast<void>(
          sqlite3_result_zeroblob64(context, static_cast<sqlite3_uint64>(sqlite3_value_bytes(value))));
    }
    const Text table(TextOf(arguments[0]));
    const Text column(TextOf(arguments[1]));
    if (type == SQLITE_INTEGER) {
      const std::int64_t number = sqlite3_value_int64(value);
      const std::int64_t rewritten = rewriting_.integer(table, column, number);
      changed_ += rewritten != number ? 1 : 0;
      return sqlite3_result_int64(context, rewritten);
    }
    if (type == SQLITE_FLOAT) return sqlite3_result_value(context, value);
    const std::string_view text = TextOf(value);
    const Text rewritten = rewriting_.text(table, column, text);
    changed_ += rewritten != text ? 1 : 0;
    sqlite3_result_text64(context, rewritten.data(), rewritten.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  }

  Text from_;
  const Rewriting& rewriting_;
  std::unique_ptr<sqlite3, CloseDatabase> database_;
  std::int64_t changed_ = 0;
};

}  // namespace

std::vector<RewrittenTable> CopyRewritten(const Text& from, const Text& to, const Rewriting& rewriting) {
  return RewrittenFile(from, to, rewriting).Fill();
}

}  // namespace zenqay
