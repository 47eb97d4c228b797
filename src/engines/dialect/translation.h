// What every engine that does not read the job's SQL as it stands needs of a statement.
#pragma once

#include "base/date_time.h"
#include "engines/dialect/sql_tokens.h"

namespace zenqay {

/// What sets one engine's texts apart from another's.
struct EngineForms {
  std::string_view engine;              // the source of a failure
  std::string_view dateTimePrefix;      // what stands in front of 'YYYY-MM-DD hh:mm:ss'
  std::string_view datePrefix;          // what stands in front of 'YYYY-MM-DD'
  bool likeHasEscapeCharacter = false;  // a backslash in a pattern would escape the character behind it
};

/// SET DATEFORMAT YMD
bool IsDateFormatSetting(SqlTokens tokens);

/// Takes the front of ALTER SESSION SET CURRENT_SCHEMA =; the name follows. Nothing when another statement stands
/// there.
bool TakeSchemaSetting(SqlTokens& tokens);

/// Takes UPDATE STATISTICS where the name of a table follows. STATISTICS may be the name of a table itself.
bool TakeUpdateStatistics(SqlTokens& tokens);

/// Appends "2004-01-31 10:11:12" or, for a date alone, "2004-01-31".
void AppendDate(Text& text, DateTime date, bool hasTime);

/// Appends to `translated` what is left of the statement behind `tokens`, where N'…' loses its N, a blank goes between
/// a number and the word glued to it, and the dates of date_literals.h become the engine's. What stands inside a
/// literal, a quoted name or a comment never changes. Raises -2147217913 for a date that does not exist.
void TranslateRest(const SqlTokens& tokens, std::string_view statement, const EngineForms& forms, Text& translated);

}  // namespace zenqay
