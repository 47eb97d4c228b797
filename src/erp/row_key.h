// The key of the row at hand, for the failures that name it.
#pragma once

#include <span>
#include <vector>

#include "contracts/value.h"

namespace zenqay {

/// One field by which a row is known: the accessor that the ERP gives it by, and the local column that it is matched
/// with.
struct KeyField {
  const char* getX;
  const char* column;
};

/// What the row at hand has answered when it was asked for its key. It asks nothing itself, since a call that only a
/// failure makes would be one more that can fail: a field that was not yet asked for is unknown.
class RowKey {
 public:
  explicit RowKey(std::span<const KeyField> fields) : fields_(fields), answers_(fields.size()) {}

  /// Another row is at hand.
  void Forget() { answers_.assign(fields_.size(), Value()); }

  void Remember(std::string_view getX, const Value& answer);

  /// "Configuration=C1, Object=O1", on one line: what is known of it.
  Text Told() const;

 private:
  std::span<const KeyField> fields_;
  std::vector<Value> answers_;  // empty while unknown
};

}  // namespace zenqay
