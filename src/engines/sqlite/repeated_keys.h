// UPDATEs that write again what they find a row by.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// An UPDATE that finds rows by columns that it also sets. Where both values are the same, setting them changes
/// nothing, but SQLite takes the row out of the column's index and puts it in again, and writes the index's page too.
///
///     UPDATE SITE SET SITE = ?, CUSTOMER = ? WHERE SITE =?     the shape of the statement
///     UPDATE SITE SET CUSTOMER = ? WHERE SITE =?               without the repeated key
struct RepeatedKeys {
  /// A column that is set and compared, and which of the shape's values it is set to and compared with.
  struct Key {
    Text column;
    std::size_t set = 0;
    std::size_t compared = 0;
  };

  Text table;
  std::vector<Key> keys;  // in the order in which they are set
  Text without;           // the shape, in which the keys are not set
};

/// Nothing for any other statement, and for one that sets nothing else.
std::optional<RepeatedKeys> FindRepeatedKeys(std::string_view shape);

}  // namespace zenqay
