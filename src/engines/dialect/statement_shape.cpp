#include "engines/dialect/statement_shape.h"

#include <algorithm>
#include <initializer_list>

#include "engines/dialect/date_literals.h"

namespace zenqay {
namespace {

using TokenKind = SqlToken::Kind;
using Kind = StatementValue::Kind;

constexpr std::size_t kMostDigits = 18;  // all of them fit into 64 bits

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::any_of(words.begin(), words.end(), [&](std::string_view one) { return EqualsIgnoringCase(word, one); });
}

bool IsInteger(std::string_view number) {
  return number.size() <= kMostDigits && number.find_first_not_of("0123456789") == std::string_view::npos;
}

/// One statement. What is no value is copied in runs, up to the next value.
class Shaping {
 public:
  Shaping(std::string_view statement, StatementShape& shape)
      : tokens_(statement),
        uncopied_(statement.data()),
        end_(statement.data() + statement.size()),
        text_(shape.text),
        values_(shape.values) {}

  bool Run() {
    if (!IsOneOf(tokens_.Next().text, {"UPDATE", "INSERT", "DELETE"})) return false;
    for (SqlToken token = tokens_.Next(); token.kind != TokenKind::End; token = tokens_.Next()) {
      if (!Take(token)) return false;
    }
    CopyUpTo(end_);
    return !values_.empty();
  }

 private:
  /// What the token before was, as far as it says what the next one may be.
  enum class Previous { Other, Opener, Sign, Value };

  bool Take(const SqlToken& token) {
    if (previous_ == Previous::Value && !EndsValue(token)) return false;
    switch (token.kind) {
      case TokenKind::Word:
        return TakeWord(token);
      case TokenKind::Number:
        return IsInteger(token.text) && TakeValue(token, {.kind = Kind::Integer, .text = token.text});
      case TokenKind::Literal:
        if (const std::optional<DateLiteral> date = TakeDate(token, tokens_)) return TakeDateValue(token, *date);
        return TakeValue(token, {.kind = Kind::Literal, .text = token.Content()});
      case TokenKind::NationalLiteral:
        return TakeValue(token, {.kind = Kind::Literal, .text = token.text.substr(2, token.text.size() - 3)});
      default:
        return TakeOther(token);
    }
  }

  /// A value is a whole expression, so its type is that of its place alone.
  static bool EndsValue(const SqlToken& token) {
    if (token.kind == TokenKind::Other) return token.text == "," || token.text == ")";
    return token.kind == TokenKind::Word && IsOneOf(token.text, {"AND", "OR", "WHERE"});
  }

  bool TakeWord(const SqlToken& word) {
    if (const std::optional<DateLiteral> date = TakeDate(word, tokens_)) return TakeDateValue(word, *date);
    const bool isStoredNull = previous_ == Previous::Opener && !isBehindWhere_ && EqualsIgnoringCase(word.text, "NULL");
    if (isStoredNull) return TakeValue(word, {.kind = Kind::Null});
    const char first = word.text.front();
    const bool isParameter = first == '@' || first == '$' || first == '#';
    if (isParameter || IsOneOf(word.text, {"SELECT", "ORDER", "RETURNING", "LIKE"})) return false;
    isBehindWhere_ = isBehindWhere_ || EqualsIgnoringCase(word.text, "WHERE");
    const bool isGlued = previous_ == Previous::Value && word.begin() == uncopied_;
    if (isGlued) text_ += ' ';
    previous_ = Previous::Other;
    return true;
  }

  bool TakeOther(const SqlToken& token) {
    if (const std::optional<DateLiteral> date = TakeDate(token, tokens_)) return TakeDateValue(token, *date);
    const char first = token.text.front();
    // A name in quotes; a comment, a name in brackets and what has no end are longer than a character, too.
    const bool isName = first == '"' && token.text.size() > 1 && token.text.back() == '"';
    if (token.text.size() > 1 && !isName) return false;
    switch (first) {
      case '=':
      case '<':
      case '>':
      case '(':
      case ',':
        previous_ = Previous::Opener;
        return true;
      case '-':
        previous_ = previous_ == Previous::Opener ? Previous::Sign : Previous::Other;
        return true;
      case '\'':
      case '[':
      case '`':
      case '?':
      case ':':
      case ';':
      case '{':
      case '\0':
        return false;
      default:
        previous_ = Previous::Other;
        return true;
    }
  }

  bool TakeDateValue(const SqlToken& first, const DateLiteral& date) {
    if (!date.value) return false;
    return TakeValue(first, {.kind = date.hasTime ? Kind::DateTime : Kind::Date, .date = *date.value});
  }

  bool TakeValue(const SqlToken& first, StatementValue value) {
    const bool isSigned = previous_ == Previous::Sign && value.kind == Kind::Integer;
    if (previous_ != Previous::Opener && !isSigned) return false;
    CopyUpTo(first.begin());
    value.at = text_.size();
    values_.push_back(value);
    text_ += '?';
    uncopied_ = tokens_.position();
    previous_ = Previous::Value;
    return true;
  }

  void CopyUpTo(const char* position) {
    text_.append(uncopied_, position);
    uncopied_ = position;
  }

  SqlTokens tokens_;
  Previous previous_ = Previous::Other;
  bool isBehindWhere_ = false;
  const char* uncopied_;
  const char* end_;
  Text& text_;
  std::vector<StatementValue>& values_;
};

}  // namespace

bool TakeShape(std::string_view statement, StatementShape& shape) {
  shape.text.clear();
  shape.values.clear();
  const bool isText = statement.find('\0') == std::string_view::npos;  // an engine would read up to there
  return isText && Shaping(statement, shape).Run();
}

}  // namespace zenqay
