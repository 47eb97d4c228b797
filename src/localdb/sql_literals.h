// Values as literals of the local database's SQL. Every value reaches a statement through one of these functions, but
// for the plain numbers that a statement shows; they are the whole defence of the statements.
#pragma once

#include "process/modDeclarations.h"

namespace zenqay {

/// A national-character literal, quotes doubled: N'it''s'. An empty text is N' ' on Oracle, which would read an empty
/// literal as NULL.
Text EncodeSqlString(const modDeclarations& process, std::string_view text);

/// Wraps a date-time text (yyyy-mm-dd hh:mm:ss) into the platform's conversion, in place, and returns it.
Text WrapSqlDateTime(const modDeclarations& process, Text& dateTime);

/// A date of the ERP, which comes as a text: {d '2003-01-31'}, or NULL when the text is empty. The text is neither
/// checked nor reformatted.
Text SQLEncodeForDate(const Value& i_sDateValue);

/// A date object of the ERP in its locale's form, in plain quotes.
Text SQLEncodeForDateTime(const Object& date);

/// A text of `length` characters of code 127: the upper end of a range over a text key of that width. Raises 5 for a
/// negative length.
Text HighValueString(std::int16_t length);

/// Refreshes the server's statistics of a table. A failure goes to the run log.
void UpdateTableStatistics(modDeclarations& process, const Text& tableName);

}  // namespace zenqay
