// A new file of the embedded engine, filled with rows.
#pragma once

#include <memory>

#include "engines/row_sink.h"
#include "engines/table_schema.h"

struct sqlite3;
struct sqlite3_stmt;

namespace zenqay {

/// Makes the file and keeps it open. Nothing is safe before Finish; a file that is not finished is of no use. Whatever
/// fails names its path.
class TableFiller {
 public:
  /// Raises -2147467259 when the file cannot be made.
  explicit TableFiller(const Text& path);

  /// Makes the table and gives what takes its rows, which lives until the next table or Finish.
  RowSink& Begin(const Text& table, const TableSchema& schema);

  /// What stands in the tables besides rows.
  void Run(const Text& statement);

  void Finish();

 private:
  class Inserting;
  struct CloseDatabase {
    void operator()(sqlite3* database) const;
  };

  void MakeKeys();

  std::unique_ptr<sqlite3, CloseDatabase> database_;
  std::shared_ptr<Inserting> inserting_;  // null between tables
  std::vector<Text> keys_;                // statements for when the rows are there
};

}  // namespace zenqay
