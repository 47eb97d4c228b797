// The job's statements as SQLite reads them.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// Puts into `translated` what SQLite is to run for a statement that was composed for SQL Server or Oracle; empty when
/// there is nothing to run. What stands inside a literal, a quoted name or a comment never changes.
///
/// N'…' loses its N; a blank goes between a number and the word glued to it; the dates of date_literals.h become
/// 'YYYY-MM-DD hh:mm:ss' or, for a date alone, 'YYYY-MM-DD'; UPDATE STATISTICS becomes ANALYZE; SET DATEFORMAT YMD and
/// ALTER SESSION SET CURRENT_SCHEMA become nothing.
///
/// Raises -2147217913 for a date that does not exist.
void TranslateForSqlite(std::string_view statement, Text& translated);

}  // namespace zenqay
