// What has become of a table's rows between two states of it.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "contracts/connection.h"

namespace zenqay {

enum class RowDeed { Insert, Change, Delete };

struct FieldDifference {
  Text column;
  std::optional<Text> before;  // nothing for NULL, and where there is no row
  std::optional<Text> after;

  bool operator==(const FieldDifference&) const = default;
};

/// A row that is inserted or deleted, with its fields that are not NULL, or one that is changed, with those that
/// differ.
struct RowDifference {
  RowDeed deed = RowDeed::Insert;
  std::vector<FieldDifference> key;
  std::vector<FieldDifference> fields;  // of the key, only what a change writes in another form

  bool operator==(const RowDifference&) const = default;
};

struct TableDifferences {
  std::int64_t rows = 0;  // before
  std::int64_t inserted = 0;
  std::int64_t changed = 0;
  std::int64_t changedByCopy = 0;  // in a column that the table's own copy writes
  std::int64_t deleted = 0;
  std::vector<RowDifference> examples;

  std::int64_t count() const { return inserted + changed + deleted; }
};

/// A table of the embedded engine as it is known to those who compare it.
struct ComparedTable {
  Text name;
  std::vector<Text> key;     // columns by which a row is known; two rows may share them
  std::vector<Text> copied;  // columns that the table's copy writes
};

/// Compares the table in the file of the connection with the one of that name in `before`, by its key, as its columns
/// compare texts. Rows of one key are taken for the same in the order of their contents, once those are found that have
/// stayed where they were. Contents are compared byte by byte, those of the key among them, and dates as dates. The
/// mark of the full copy does not count. Up to `examples` of each deed.
///
/// Leaves a temporary table "inserted_rows" behind with the row ids of those of an INSERT, until the next comparison.
TableDifferences Compare(Connection& connection, const ComparedTable& table, int examples);

/// Makes the tables of a file known to a connection as `before`.
void AttachBefore(Connection& connection, const Text& path);

}  // namespace zenqay
