// A statement taken apart: what it has in common with others of its kind, and the values that it has for itself.
#pragma once

#include <vector>

#include "base/date_time.h"

namespace zenqay {

/// A value that stands in a statement.
struct StatementValue {
  enum class Kind {
    Null,     // one that is stored; one that something is compared with stays in the shape
    Integer,  // of at most 18 digits, without a sign, which stays in the shape
    Literal,
    DateTime,  // one of the dates of date_literals.h
    Date,      // the same, a day alone
  };

  Kind kind = Kind::Null;
  std::size_t at = 0;  // where in the shape its "?" stands

  /// The digits of an integer; what stands between the quotes of a text, doubled ones as they are.
  std::string_view text;
  DateTime date;
};

struct StatementShape {
  Text text;  // the statement with a "?" for each of its values
  std::vector<StatementValue> values;
};

/// Takes an UPDATE, INSERT or DELETE apart, so that its shape can be prepared once and run with other values:
///
///     UPDATE SITE SET CUSTOMER = N'C7', upd_flag = 0WHERE SITE =N'A1'
///     UPDATE SITE SET CUSTOMER = ?, upd_flag = ? WHERE SITE =?
///
/// The values refer to the statement. False, and nothing in `shape` means anything, for what may not say the same in
/// two parts: another verb, no value or one in an unusual place, a date that does not exist, a number that is no such
/// integer, a query within, a pattern, a comment, a name in brackets. Such a statement is run whole.
bool TakeShape(std::string_view statement, StatementShape& shape);

}  // namespace zenqay
