// A statement in both translations: token by token it says what it said. Literals, quoted names and comments stand as
// they stood; dates are the same days and times.
#include "engines/dialect/translation.h"

#include <vector>

#include "engines/dialect/date_literals.h"
#include "engines/dialect/postgresql_dialect.h"
#include "engines/dialect/sqlite_dialect.h"
#include "fuzz/fuzz.h"

using namespace zenqay;

namespace {

using Kind = SqlToken::Kind;
using Pieces = std::vector<Text>;

Text Padded(const Text& isoText) {
  return Text(isoText.size() < 19 ? 19 - isoText.size() : 0, '0') + isoText;
}

/// What a statement is to say in a dialect. `isValid` turns false at a date that does not exist.
class Expected {
 public:
  Expected(std::string_view statement, const char* dateTimePrefix, const char* datePrefix, bool escapesPatterns)
      : tokens_(statement),
        dateTimePrefix_(dateTimePrefix),
        datePrefix_(datePrefix),
        escapesPatterns_(escapesPatterns) {}

  bool isValid = true;
  Pieces pieces;

  SqlTokens& tokens() { return tokens_; }

  void Run() {
    for (SqlToken token = tokens_.Next(); token.kind != Kind::End; token = tokens_.Next()) {
      Add(token);
      if (escapesPatterns_ && token.kind == Kind::Word && EqualsIgnoringCase(token.text, "LIKE")) AddPattern();
    }
  }

 private:
  void Add(const SqlToken& token) {
    const std::optional<DateLiteral> date = TakeDate(token, tokens_);
    if (date) return AddDate(*date);
    if (token.kind == Kind::End) return;
    const bool isNational = token.kind == Kind::NationalLiteral;
    pieces.emplace_back(isNational ? token.text.substr(1) : token.text);
  }

  void AddDate(const DateLiteral& date) {
    isValid = isValid && date.value.has_value();
    if (!date.value) return;
    const Text text = Padded(IsoText(*date.value));
    const char* prefix = date.hasTime ? dateTimePrefix_ : datePrefix_;
    if (*prefix != '\0') pieces.emplace_back(prefix);
    pieces.push_back("'" + (date.hasTime ? text : text.substr(0, 10)) + "'");
  }

  void AddPattern() {
    Add(tokens_.Next());
    for (SqlTokens ahead = tokens_; ahead.Take("."); ahead = tokens_) {
      tokens_ = ahead;
      pieces.emplace_back(".");
      Add(tokens_.Next());
    }
    SqlTokens ahead = tokens_;
    if (ahead.Take("ESCAPE")) return;
    pieces.emplace_back("ESCAPE");
    pieces.emplace_back("''");
  }

  SqlTokens tokens_;
  const char* dateTimePrefix_;
  const char* datePrefix_;
  bool escapesPatterns_;
};

Pieces PiecesOf(std::string_view translated) {
  Pieces pieces;
  SqlTokens tokens(translated);
  for (SqlToken token = tokens.Next(); token.kind != Kind::End; token = tokens.Next()) pieces.emplace_back(token.text);
  return pieces;
}

void Compare(Expected& expected, std::string_view statement, void (*translate)(std::string_view, Text&)) {
  expected.Run();
  Text translated;
  const bool succeeds = Succeeds([&] { translate(statement, translated); });
  Hold(succeeds == expected.isValid, "a translation fails for a date that does not exist, and for nothing else");
  if (succeeds) Hold(PiecesOf(translated) == expected.pieces, "a translated statement says what it said");
}

void CheckSqlite(std::string_view statement) {
  Expected expected(statement, "", "", false);
  if (IsDateFormatSetting(expected.tokens()) || TakeSchemaSetting(expected.tokens())) {
    Text translated;
    TranslateForSqlite(statement, translated);
    return Hold(translated.empty(), "SQLite gets no setting");
  }
  if (TakeUpdateStatistics(expected.tokens())) expected.pieces = {"ANALYZE"};
  Compare(expected, statement, TranslateForSqlite);
}

/// True for a statement that no database takes: its last literal, quoted name or comment has no end.
bool IsLeftOpen(std::string_view statement) {
  SqlToken last;
  SqlTokens tokens(statement);
  for (SqlToken token = tokens.Next(); token.kind != Kind::End; token = tokens.Next()) last = token;
  if (last.kind != Kind::Other) return false;
  const std::string_view text = last.text;
  if (text.starts_with("/*")) return text.size() < 4 || !text.ends_with("*/");
  if (text.starts_with("--")) return !text.ends_with('\n');
  if (text.starts_with('[')) return !text.ends_with(']');
  return text.starts_with('\'') || (text.starts_with('"') && (text.size() < 2 || !text.ends_with('"')));
}

void CheckPostgreSql(std::string_view statement) {
  if (IsLeftOpen(statement)) return;  // ESCAPE '' would stand inside
  Expected expected(statement, "timestamp", "date", true);
  if (IsDateFormatSetting(expected.tokens())) {
    Text translated;
    TranslateForPostgreSql(statement, translated);
    return Hold(translated.empty(), "PostgreSQL gets no form of dates");
  }
  if (TakeSchemaSetting(expected.tokens())) {
    expected.pieces = {"SET", "search_path", "TO"};
  } else if (TakeUpdateStatistics(expected.tokens())) {
    expected.pieces = {"ANALYZE"};
  }
  Compare(expected, statement, TranslateForPostgreSql);
}

}  // namespace

FUZZ(input) {
  CheckSqlite(input);
  CheckPostgreSql(input);
}
