#include "engines/dialect/postgresql_dialect.h"

#include "engines/dialect/translation.h"

namespace zenqay {
namespace {

constexpr EngineForms kForms = {
    .engine = "PostgreSQL", .dateTimePrefix = "timestamp ", .datePrefix = "date ", .likeHasEscapeCharacter = true};

}  // namespace

void TranslateForPostgreSql(std::string_view statement, Text& translated) {
  translated.clear();
  SqlTokens tokens(statement);
  if (IsDateFormatSetting(tokens)) return;
  if (TakeSchemaSetting(tokens)) {
    translated = "SET search_path TO";
  } else if (TakeUpdateStatistics(tokens)) {
    translated = "ANALYZE";
  }
  const bool isGlued = !translated.empty() && SqlTokens(tokens).Next().begin() == tokens.position();
  if (isGlued) translated += ' ';
  TranslateRest(tokens, statement, kForms, translated);
}

}  // namespace zenqay
