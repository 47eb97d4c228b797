// Dates on their way between the ERP's date objects, the system's clock and SQL.
//
// An ERP date object counts its month from 0 and its year from 1900, and carries values out of range over. What is
// stored in `tstables.lutm` is shifted by the time zone's offset on the way into SQL and shifted back on the way out.
#pragma once

#include "process/modDeclarations.h"

namespace zenqay {

/// Sets MinimumDate (1 January 1970) and MaximumDate (19 January 2038, 03:14:07) as date objects.
void InitErpDateLimits(modDeclarations& process);

/// Puts the date's SQL literal into DateLiteral and answers true. For a date of January 1900 or earlier, and after any
/// failure, DateLiteral is empty and the answer false. The date object itself is shifted by the zone's offset on the
/// way. The last argument is not read; every caller passes false.
bool ConvertErpDateToSql(modDeclarations& process, const Object& date, bool unused);

/// A new date object at the current local date and time, to the second.
Object GetCurrentErpDate(modDeclarations& process);

/// The SQL literal of now, shifted by the zone's offset; "NULL" after any failure.
Text GetCurrentSqlDateTime(modDeclarations& process);

/// Year-month-day hour:minute:second; the year as it is, the others with two digits.
Text FormatDateTimeText(const Value& date);

/// The value's text with zeros in front of it up to `width`. Raises 5 when the text is longer.
Text ZeroPad(const Value& value, const Value& width);

}  // namespace zenqay
