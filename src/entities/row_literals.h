// The literal of a row's field, as it stands in a statement.
#pragma once

#include "erp/component_contract.h"
#include "localdb/sql_literals.h"

namespace zenqay {

/// A field as a text. A null raises 94.
inline Text Encoded(const modDeclarations& process, const Row& row, std::string_view getX) {
  return EncodeSqlString(process, row.GetText(getX));
}

/// A field as a date.
inline Text EncodedDate(const Row& row, std::string_view getX) {
  const Value date = row.Get(getX);
  return Naming(getX, [&] { return SQLEncodeForDate(date); });
}

/// The key that rows of generation 8 have in common, of a cluster and an item. Either may be unknown and is then the
/// word NULL, which is compared by an equals sign all the same, so that no row meets it.
struct ClusterItemKey {
  ClusterItemKey(const modDeclarations& process, const Row& row) {
    if (row.Has("hasCluster")) site = Encoded(process, row, "getCluster");
    if (row.Has("hasItem")) object = Encoded(process, row, "getItem");
  }

  Text site = "NULL";
  Text object = "NULL";
};

}  // namespace zenqay
