// The rows of one query, read ahead and kept compact.
#pragma once

#include <cstdio>
#include <deque>
#include <memory>
#include <vector>

#include "contracts/connection.h"
#include "engines/row_sink.h"

namespace zenqay {

/// Rows that are written once, field after field in the order of the columns, and then read once, forward:
///
///     rows.PutColumns({"SITE", "upd_flag"});
///     rows.AddText("A1");
///     rows.AddInteger(0);
///     rows.EndRow();
///
///     while (rows.Next()) Show(rows.Field(0));
///
/// What goes beyond the memory limit goes to a temporary file without a name, so memory does not grow with the number
/// of rows. Raises 61 when the disk of the temporary file is full, 75 for any other failure of that file.
class RowStore : public QueryRows, public RowSink {
 public:
  static constexpr std::size_t kMemoryLimit = std::size_t{64} << 20;

  /// `memoryLimit` is in bytes.
  explicit RowStore(std::size_t memoryLimit = kMemoryLimit) : memoryLimit_(memoryLimit) {}
  RowStore(const RowStore&) = delete;
  RowStore& operator=(const RowStore&) = delete;

  void PutColumns(std::vector<Text> names) override;
  const std::vector<Text>& columns() const override { return columns_; }

  void AddNull() override;
  void AddInteger(std::int32_t value) override;
  void AddDouble(double value) override;
  void AddText(std::string_view value) override;
  void AddDateTime(DateTime value) override;
  void EndRow() override;

  std::int64_t count() const override { return count_; }
  bool Next() override;
  bool atRow() const override { return atRow_; }

  /// Null, a 32-bit integer, a double, a text or a date-time.
  Value Field(std::size_t column) const override;

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  void FinishBlock();
  void SpillBlock();
  void StartReading();
  bool TakeBlock();
  void TakeSpilledBlock();

  std::size_t memoryLimit_;
  std::vector<Text> columns_;
  std::int64_t count_ = 0;

  std::string filling_;             // the block that rows are added to; a block holds whole rows
  std::deque<std::string> blocks_;  // the first blocks, kept in memory
  std::size_t bytesInBlocks_ = 0;
  std::unique_ptr<std::FILE, CloseFile> spilled_;  // the later ones, each behind its size
  std::size_t blocksSpilled_ = 0;                  // those not yet read

  bool reading_ = false;
  bool atRow_ = false;
  std::string block_;                // the block that is being read
  std::size_t unread_ = 0;           // where in it the next row starts
  std::vector<const char*> fields_;  // where in it each field of the current row starts
};

}  // namespace zenqay
