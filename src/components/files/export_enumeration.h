// What a listing of an ERP file gives: the rows that were asked for, in the order of the file.
#pragma once

#include <optional>

#include "components/files/export_records.h"
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
  std::vector<std::size_t> silentColumns;  // not asked for: absent in every row
  std::vector<std::size_t> oldColumns;     // asked for with their old values
};

/// The rows that are selected of the records of a file, each one read when it is asked for.
class ExportRows {
 public:
  ExportRows(std::unique_ptr<RecordSource> records, std::shared_ptr<const RowShape> shape, RowSelection selection);

  /// The next row, nullptr behind the last one. Raises what the records raise, selected or not.
  std::shared_ptr<ExportRow> Next();

 private:
  bool IsSelected() const;
  std::shared_ptr<ExportRow> MakeRow();
  DateTime ChangedAt() const;

  std::unique_ptr<RecordSource> records_;
  std::shared_ptr<const RowShape> shape_;
  RowSelection selection_;
  CsvRecord record_;
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
