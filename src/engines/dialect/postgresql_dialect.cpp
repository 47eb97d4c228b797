#include "engines/dialect/postgresql_dialect.h"

#include <charconv>
#include <limits>

#include "engines/dialect/translation.h"

namespace zenqay {
namespace {

constexpr EngineForms kForms = {
    .engine = "PostgreSQL", .dateTimePrefix = "timestamp ", .datePrefix = "date ", .likeHasEscapeCharacter = true};

/// As PostgreSQL reads a number: an integer, or a bigint where it does not fit.
bool IsBigint(std::string_view digits) {
  std::int64_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number > std::numeric_limits<std::int32_t>::max();
}

char TypeLetterOf(const StatementValue& value) {
  switch (value.kind) {
    case StatementValue::Kind::Integer:
      return IsBigint(value.text) ? 'b' : 'i';
    case StatementValue::Kind::DateTime:
      return 't';
    case StatementValue::Kind::Date:
      return 'd';
    default:
      return 'u';
  }
}

std::string_view TypeOf(const StatementValue& value) {
  switch (TypeLetterOf(value)) {
    case 'b':
      return "bigint";
    case 'i':
      return "integer";
    case 't':
      return "timestamp";
    case 'd':
      return "date";
    default:
      return "unknown";
  }
}

void AppendValue(const StatementValue& value, Text& text) {
  switch (value.kind) {
    case StatementValue::Kind::Null:
      text += "NULL";
      return;
    case StatementValue::Kind::Integer:
      text += value.text;
      return;
    case StatementValue::Kind::Literal:
      ((text += '\'') += value.text) += '\'';
      return;
    default:
      AppendDate(text += '\'', value.date, value.kind == StatementValue::Kind::DateTime);
      text += '\'';
  }
}

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

void AppendPostgreSqlTypes(const StatementShape& shape, Text& letters) {
  for (const StatementValue& value : shape.values) letters += TypeLetterOf(value);
}

Text PreparationForPostgreSql(const Text& name, const StatementShape& shape) {
  Text types;
  Text parameters;
  std::size_t uncopied = 0;
  for (std::size_t i = 0; i < shape.values.size(); ++i) {
    const StatementValue& value = shape.values[i];
    if (i > 0) types += ',';
    types += TypeOf(value);
    parameters.append(shape.text, uncopied, value.at - uncopied);
    parameters += '$' + std::to_string(i + 1);
    uncopied = value.at + 1;
  }
  parameters.append(shape.text, uncopied);
  return "PREPARE " + name + " (" + types + ") AS " + parameters;
}

void ExecutionForPostgreSql(const Text& name, const StatementShape& shape, Text& execution) {
  execution = "EXECUTE ";
  execution += name;
  char before = '(';
  for (const StatementValue& value : shape.values) {
    execution += before;
    AppendValue(value, execution);
    before = ',';
  }
  execution += ')';
}

}  // namespace zenqay
