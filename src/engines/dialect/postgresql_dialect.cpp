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

/// Empty for what its place gives a type.
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
      return "";
  }
}

/// What stands between the quotes of a literal, each doubled one once.
void AppendContent(std::string_view literal, Text& text) {
  for (auto quote = literal.find('\''); quote != std::string_view::npos; quote = literal.find('\'')) {
    text += literal.substr(0, quote + 1);
    literal.remove_prefix(quote + 2);
  }
  text += literal;
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

Text ParametrizedForPostgreSql(const StatementShape& shape, ParameterMark mark) {
  Text text;
  std::size_t uncopied = 0;
  int number = 0;
  for (const StatementValue& value : shape.values) {
    const Text parameter = mark == ParameterMark::Number ? "$" + std::to_string(++number) : "?";
    const std::string_view type = TypeOf(value);
    text.append(shape.text, uncopied, value.at - uncopied);
    text += type.empty() ? parameter : "CAST(" + parameter + " AS " + Text(type) + ")";
    uncopied = value.at + 1;
  }
  return text.append(shape.text, uncopied);
}

bool ParameterForPostgreSql(const StatementValue& value, Text& parameter) {
  parameter.clear();
  switch (value.kind) {
    case StatementValue::Kind::Null:
      return false;
    case StatementValue::Kind::Integer:
      parameter = value.text;
      return true;
    case StatementValue::Kind::Literal:
      AppendContent(value.text, parameter);
      return true;
    default:
      AppendDate(parameter, value.date, value.kind == StatementValue::Kind::DateTime);
      return true;
  }
}

}  // namespace zenqay
