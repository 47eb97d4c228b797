// The ranges that a listing admits the rows of an ERP file by.
#pragma once

#include <optional>

#include "components/files/export_header.h"

namespace zenqay {

/// The lowest and the highest value of one column, both included. Texts compare by code point, the int type by number.
class KeyRange {
 public:
  /// Bounds are texts or numbers, and numbers may be given as texts; an empty bound is "" or 0. An upper bound of
  /// U+007F characters only admits every text. Raises 94 for null, 13 for a bound that is something else.
  KeyRange(const ExportColumns& columns, std::size_t column, const Value& low, const Value& high, const Text& classId);

  /// An absent, null or empty cell counts as "" or 0. The cell must read as its column's type.
  bool Admits(const CsvRecord& record) const;

  std::size_t column() const { return column_; }

  /// What the column holds, so that equal keys are equal texts.
  Text KeyOf(const CsvRecord& record) const;

  /// The one key that is admitted, as KeyOf has it. Nothing when it is not one.
  std::optional<Text> OnlyKey() const;

 private:
  std::size_t column_;
  bool isNumber_;
  double lowNumber_ = 0;
  double highNumber_ = 0;
  Text lowText_;
  Text highText_;
  bool hasHighText_ = true;
};

/// The key columns, in the order of the header.
std::vector<std::size_t> KeyColumnsOf(const ExportColumns& columns);

}  // namespace zenqay
