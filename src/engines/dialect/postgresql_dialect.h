// The job's statements as PostgreSQL reads them.
#pragma once

#include "engines/dialect/statement_shape.h"

namespace zenqay {

/// Puts into `translated` what PostgreSQL is to run for a statement that was composed for SQL Server or Oracle; empty
/// when there is nothing to run. What stands inside a literal, a quoted name or a comment never changes; the session
/// reads a backslash there as itself.
///
/// N'…' loses its N; a blank goes between a number and the word glued to it; the dates of date_literals.h become
/// timestamp 'YYYY-MM-DD hh:mm:ss' or, for a date alone, date 'YYYY-MM-DD'; a pattern behind LIKE gets ESCAPE '', for
/// no other database has an escape character there unasked; UPDATE STATISTICS becomes ANALYZE; ALTER SESSION SET
/// CURRENT_SCHEMA becomes SET search_path; SET DATEFORMAT YMD becomes nothing.
///
/// Raises -2147217913 for a date that does not exist.
void TranslateForPostgreSql(std::string_view statement, Text& translated);

/// Appends a letter for each value of a shape, by the type that it has for PostgreSQL. Shapes with the same text and
/// the same letters share a prepared statement.
void AppendPostgreSqlTypes(const StatementShape& shape, Text& letters);

/// How a parameter stands in a statement.
enum class ParameterMark {
  Number,    // $1, as the server reads it
  Question,  // ?, as a driver does
};

/// UPDATE SITE SET CUSTOMER = $1, upd_flag = CAST($2 AS integer)
///
/// A literal has no type but what its place gives it, and so has a parameter that is declared without one.
Text ParametrizedForPostgreSql(const StatementShape& shape, ParameterMark mark);

/// Puts into `parameter` what is to be handed over for a value, as a text. False for a null.
bool ParameterForPostgreSql(const StatementValue& value, Text& parameter);

}  // namespace zenqay
