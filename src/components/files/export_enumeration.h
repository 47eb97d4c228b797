// What a listing of an ERP file gives: the rows that were asked for, in the order of the file.
#pragma once

#include <optional>

#include "components/files/export_row.h"
#include "components/files/file_component.h"
#include "components/files/key_range.h"

namespace zenqay {

/// The time of the changes that are asked for, in whole seconds of UTC, both ends included.
struct ChangePeriod {
  DateTime from;
  DateTime to;
  std::size_t column = 0;  // ChangedAt
};

/// Which rows a listing gives, and which of their columns answer.
struct RowSelection {
  std::vector<KeyRange> ranges;
  std::optional<ChangePeriod> period;
  std::vector<std::size_t> silentColumns;    // not asked for: absent in every row
  std::vector<std::size_t> oldColumns;       // asked for with their old values
  std::optional<std::uint64_t> recordCount;  // how many records the file must have, selected or not
};

/// Reads the rows of a file behind its header, each one when it is asked for.
class ExportRows {
 public:
  ExportRows(CsvReader reader, std::shared_ptr<const RowShape> shape, RowSelection selection);

  /// The next row that is selected, nullptr behind the last one. Raises 13 for a record that is broken, has another
  /// number of cells than the header or a cell that does not read as its column's type, selected or not; and behind the
  /// last record when there were more or fewer than there must be.
  std::shared_ptr<ExportRow> Next();

 private:
  void RequireSound() const;
  void RequireWhole() const;
  bool IsSelected() const;
  std::shared_ptr<ExportRow> MakeRow();
  DateTime ChangedAt() const;
  [[noreturn]] void RaiseInColumn(std::size_t column, std::string_view what) const;

  CsvReader reader_;
  std::shared_ptr<const RowShape> shape_;
  RowSelection selection_;
  CsvRecord record_;
  std::uint64_t recordsRead_ = 0;
};

/// Answers hasMoreElements and nextElement. It reads no further than the row that is asked about, so everything in
/// front of a broken row is handed on first; from there on every call raises that row's error.
class ExportEnumeration : public FileComponent {
 public:
  /// Without `rows` it is an enumeration without elements.
  ExportEnumeration(Text classId, std::optional<ExportRows> rows);

  Value Call(std::string_view operation, Arguments arguments) override;

 private:
  bool HasMoreElements();
  Value NextElement();

  std::optional<ExportRows> rows_;
  std::shared_ptr<ExportRow> next_;
  std::optional<RuntimeError> failure_;
};

}  // namespace zenqay
