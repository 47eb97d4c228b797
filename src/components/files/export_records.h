// The records of an ERP file behind its header.
#pragma once

#include <optional>

#include "components/files/export_row.h"

namespace zenqay {

/// Gives records, each with as many cells as the header, and cells that read as their columns' types.
class RecordSource {
 public:
  virtual ~RecordSource() = default;

  /// False behind the last record.
  virtual bool Read(CsvRecord& record) = 0;
};

/// All records of a file, each read when it is asked for. Raises 13 for a record that is broken, has another number of
/// cells or a cell that does not read as its type, and behind the last one when `count` is given and is another.
class ExportRecords : public RecordSource {
 public:
  ExportRecords(CsvReader reader, std::shared_ptr<const RowShape> shape, std::optional<std::uint64_t> count)
      : reader_(std::move(reader)), shape_(std::move(shape)), count_(count) {}

  bool Read(CsvRecord& record) override;

  /// Where the record that was read last begins, and the record that begins there. Nothing follows ReadAt but ReadAt.
  std::uint64_t position() const { return reader_.recordStart(); }
  void ReadAt(std::uint64_t position, CsvRecord& record);

  const std::shared_ptr<const RowShape>& shape() const { return shape_; }

 private:
  void RequireSound(const CsvRecord& record) const;
  void RequireWhole() const;

  CsvReader reader_;
  std::shared_ptr<const RowShape> shape_;
  std::optional<std::uint64_t> count_;
  std::uint64_t recordsRead_ = 0;
};

/// 13 for what stands in one column of a record.
[[noreturn]] void RaiseInColumn(const RowShape& shape, const CsvRecord& record, std::size_t column,
                                std::string_view what);

}  // namespace zenqay
