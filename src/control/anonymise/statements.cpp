// Statements: what stands in literals is the customer's.
#include <algorithm>

#include "control/anonymise/anonymiser.h"
#include "engines/dialect/sql_tokens.h"

namespace zenqay {
namespace {

using Kind = SqlToken::Kind;

constexpr std::string_view kOracleDateForm = "yyyy-mm-dd HH24:MI:SS";

bool NamesTableBehind(std::string_view word) {
  return EqualsIgnoringCase(word, "INTO") || EqualsIgnoringCase(word, "UPDATE") || EqualsIgnoringCase(word, "FROM");
}

/// Empty where the statement names none.
std::string_view TableOf(std::string_view statement) {
  SqlTokens tokens(statement);
  bool isTable = false;
  for (SqlToken token = tokens.Next(); token.kind != Kind::End; token = tokens.Next()) {
    if (token.kind != Kind::Word) continue;
    if (isTable) return token.text;
    isTable = NamesTableBehind(token.text);
  }
  return {};
}

/// Follows a statement, so that it knows the column of each value.
class ColumnOfValue {
 public:
  void See(const SqlToken& token) {
    if (token.kind == Kind::Word) {
      SeeWord(token.text);
    } else if (token.text == "(") {
      ++depth_;
    } else if (token.text == ")") {
      --depth_;
    } else if (token.text == "=") {
      compared_ = lastWord_;
    } else if (token.text == "," && isInValues_ && depth_ == 1) {
      ++value_;
    }
  }

  std::string_view column() const {
    if (!isInValues_) return compared_;
    return value_ < columns_.size() ? columns_[value_] : std::string_view();
  }

 private:
  void SeeWord(std::string_view word) {
    lastWord_ = word;
    if (EqualsIgnoringCase(word, "VALUES")) {
      isInValues_ = true;
    } else if (depth_ == 1 && !isInValues_) {
      columns_.push_back(word);
    }
  }

  int depth_ = 0;
  bool isInValues_ = false;
  std::size_t value_ = 0;
  std::string_view lastWord_;
  std::string_view compared_;
  std::vector<std::string_view> columns_;
};

/// What a declaration compares with: the name of a type, a pattern of digits.
bool IsOfDeclarations(std::string_view literal, const Vocabulary& vocabulary) {
  if (literal.find("[0-9]") != std::string_view::npos)
    return literal.find_first_not_of("[0-9]*-") == std::string_view::npos;
  return vocabulary.IsName(literal);
}

/// Of a literal without N. A statement of the job has dates alone there.
Meaning MeaningOf(std::string_view literal, const Vocabulary& vocabulary) {
  const bool isSystem = literal == kOracleDateForm || IsOfDeclarations(literal, vocabulary);
  return isSystem ? Meaning::System : Meaning::Date;
}

/// What stands between the quotes of N'…'.
std::string_view ContentOf(const SqlToken& national) {
  return national.text.substr(2, national.text.size() - 3);
}

}  // namespace

Text Anonymiser::Statement(std::string_view statement) const {
  const std::string_view table = TableOf(statement);
  if (vocabulary_.IsRegistry(table)) return Text(statement);
  Text changed;
  changed.reserve(statement.size());
  ColumnOfValue place;
  SqlTokens tokens(statement);
  const char* from = tokens.position();
  for (SqlToken token = tokens.Next();; token = tokens.Next()) {
    changed.append(from, token.begin());
    from = token.end();
    if (token.kind == Kind::End) return changed;
    place.See(token);
    if (token.kind == Kind::NationalLiteral) {
      // Quotes are no letters: doubled ones need not be undone.
      const Meaning meaning = vocabulary_.OfColumn(table, place.column());
      changed.append("N'").append(Value(meaning, ContentOf(token))).append("'");
    } else if (token.kind == Kind::Literal) {
      const std::string_view content = token.Content();
      changed.append("'").append(Value(MeaningOf(content, vocabulary_), content)).append("'");
    } else if (token.kind == Kind::Other && (token.text.front() == '\'' || token.text.starts_with("--"))) {
      changed += Value(Meaning::Words, token.text);
    } else {
      changed += Name(token.text);
    }
  }
}

}  // namespace zenqay
