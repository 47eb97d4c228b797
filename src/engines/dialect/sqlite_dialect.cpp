#include "engines/dialect/sqlite_dialect.h"

#include "engines/dialect/translation.h"

namespace zenqay {
namespace {

constexpr EngineForms kForms = {.engine = "SQLite"};

}  // namespace

void TranslateForSqlite(std::string_view statement, Text& translated) {
  translated.clear();
  SqlTokens tokens(statement);
  if (IsDateFormatSetting(tokens) || TakeSchemaSetting(tokens)) return;
  if (TakeUpdateStatistics(tokens)) translated = "ANALYZE";
  TranslateRest(tokens, statement, kForms, translated);
}

}  // namespace zenqay
