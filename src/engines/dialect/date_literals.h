// The forms in which the job writes a date into a statement.
#pragma once

#include <optional>

#include "base/date_time.h"
#include "engines/dialect/sql_tokens.h"

namespace zenqay {

struct DateLiteral {
  std::string_view text;          // as it stands between its quotes
  bool hasTime = false;           // true for a date-time, false for a date alone
  std::optional<DateTime> value;  // missing when the text names no day or no time that exists
};

/// Takes the date that starts with the token `first`, whose followers `tokens` reads next. Nothing, and `tokens` as it
/// was, when none starts there. The forms, their words without regard to case:
///
///     CONVERT(DATETIME,'2004-01-31 10:11:12',120)
///     CONVERT(DATETIME,'1/31/2004',101)            also with a time, "10:11:12 AM"
///     TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS')
///     {d '2004-01-31'}
///     'Jan 31, 2004 10:11:12 AM'                   any plain literal of just this form
std::optional<DateLiteral> TakeDate(const SqlToken& first, SqlTokens& tokens);

}  // namespace zenqay
