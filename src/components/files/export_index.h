// Finding the records of an export that a listing asks for by their keys.
#pragma once

#include "base/runtime_error.h"
#include "components/files/export_records.h"
#include "components/files/key_positions.h"
#include "components/files/key_range.h"

namespace zenqay {

/// The ranges that admit one key only.
std::vector<KeyRange> SingleKeysOf(const std::vector<KeyRange>& ranges);

/// Knows where the records of each key stand, so that many listings of one key each read the file once altogether.
class ExportIndex {
 public:
  /// Reads the file to its end, or to the failure that every listing ends with. The keys are those in the columns of
  /// `keys`, which is not empty.
  ExportIndex(ExportRecords records, std::vector<KeyRange> keys);

  /// True when the ranges admit one key in each of the index's columns, and in no other.
  bool Serves(const std::vector<KeyRange>& ranges) const;

  /// The records that may lie in ranges which the index serves, in the order of the file. Others may be among them.
  static std::unique_ptr<RecordSource> Find(std::shared_ptr<ExportIndex> index, const std::vector<KeyRange>& ranges);

  const std::shared_ptr<const RowShape>& shape() const { return records_.shape(); }

 private:
  class FoundRecords;

  ExportRecords records_;
  std::vector<KeyRange> keys_;
  KeyPositions positions_;
  std::optional<RuntimeError> failure_;
};

}  // namespace zenqay
