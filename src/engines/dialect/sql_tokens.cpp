#include "engines/dialect/sql_tokens.h"

#include <array>

namespace zenqay {
namespace {

using Kind = SqlToken::Kind;

enum class Class : unsigned char { Other, Blank, Letter, Digit };

/// Every byte of a letter beyond ASCII counts as a letter.
constexpr std::array<Class, 256> kClasses = [] {
  std::array<Class, 256> classes{};
  for (const char c : {' ', '\t', '\n', '\r', '\f', '\v'}) classes[static_cast<unsigned char>(c)] = Class::Blank;
  for (int c = '0'; c <= '9'; ++c) classes[c] = Class::Digit;
  for (int c = 'A'; c <= 'Z'; ++c) classes[c] = classes[c + ('a' - 'A')] = Class::Letter;
  for (int c = 0x80; c <= 0xFF; ++c) classes[c] = Class::Letter;
  for (const char c : {'_', '@', '#', '$'}) classes[static_cast<unsigned char>(c)] = Class::Letter;
  return classes;
}();

Class ClassOf(char c) {
  return kClasses[static_cast<unsigned char>(c)];
}

bool IsDigitAt(std::string_view text, std::size_t at) {
  return at < text.size() && ClassOf(text[at]) == Class::Digit;
}

bool IsHexDigitAt(std::string_view text, std::size_t at) {
  if (IsDigitAt(text, at)) return true;
  return at < text.size() && (text[at] | 0x20) >= 'a' && (text[at] | 0x20) <= 'f';
}

std::size_t BehindDigits(std::string_view text, std::size_t at) {
  while (IsDigitAt(text, at)) ++at;
  return at;
}

/// 12, 1.5, .5, 1e5, 1.5E-3, 0x1F. An E that no digit follows belongs to the word behind the number, as in 1ELSE.
std::size_t NumberLength(std::string_view text) {
  if (text[0] == '0' && text.size() > 1 && (text[1] | 0x20) == 'x' && IsHexDigitAt(text, 2)) {
    std::size_t end = 2;
    while (IsHexDigitAt(text, end)) ++end;
    return end;
  }
  std::size_t end = BehindDigits(text, 0);
  if (end < text.size() && text[end] == '.') end = BehindDigits(text, end + 1);
  if (end < text.size() && (text[end] | 0x20) == 'e') {
    const bool isSigned = end + 1 < text.size() && (text[end + 1] == '+' || text[end + 1] == '-');
    const std::size_t exponent = end + (isSigned ? 2 : 1);
    if (IsDigitAt(text, exponent)) end = BehindDigits(text, exponent);
  }
  return end;
}

std::size_t WordLength(std::string_view text) {
  std::size_t end = 1;
  while (end < text.size() && ClassOf(text[end]) >= Class::Letter) ++end;
  return end;
}

/// 0 when no quote opens or none closes the literal. A doubled quote is a quote in it.
std::size_t LiteralLength(std::string_view text) {
  if (!text.starts_with('\'')) return 0;
  std::size_t quote = text.find('\'', 1);
  while (quote != std::string_view::npos && quote + 1 < text.size() && text[quote + 1] == '\'') {
    quote = text.find('\'', quote + 2);
  }
  return quote == std::string_view::npos ? 0 : quote + 1;
}

}  // namespace

SqlToken SqlTokens::Next() {
  while (!rest_.empty() && ClassOf(rest_.front()) == Class::Blank) rest_.remove_prefix(1);
  if (rest_.empty()) return {Kind::End, rest_};
  const Class first = ClassOf(rest_.front());
  if (first == Class::Letter) return CutWord();
  if (first == Class::Digit) return Cut(Kind::Number, NumberLength(rest_));
  switch (rest_.front()) {
    case '\'':
      return CutLiteral();
    case '"':
      return CutBehind(Kind::Other, "\"", 1);
    case '[':
      return CutBehind(Kind::Other, "]", 1);
    case '-':
      return rest_.starts_with("--") ? CutBehind(Kind::Other, "\n", 2) : Cut(Kind::Other, 1);
    case '/':
      return rest_.starts_with("/*") ? CutBehind(Kind::Other, "*/", 2) : Cut(Kind::Other, 1);
    case '.':
      return IsDigitAt(rest_, 1) ? Cut(Kind::Number, NumberLength(rest_)) : Cut(Kind::Other, 1);
    default:
      return Cut(Kind::Other, 1);
  }
}

SqlToken SqlTokens::Cut(Kind kind, std::size_t length) {
  const SqlToken token{kind, rest_.substr(0, length)};
  rest_.remove_prefix(length);
  return token;
}

SqlToken SqlTokens::CutBehind(Kind kind, std::string_view mark, std::size_t from) {
  const std::size_t at = rest_.find(mark, from);
  return Cut(kind, at == std::string_view::npos ? rest_.size() : at + mark.size());
}

SqlToken SqlTokens::CutLiteral() {
  const std::size_t length = LiteralLength(rest_);
  return length > 0 ? Cut(Kind::Literal, length) : Cut(Kind::Other, rest_.size());
}

/// The N of N'…' is the only word that a quote can belong to.
SqlToken SqlTokens::CutWord() {
  const std::size_t length = WordLength(rest_);
  if (length == 1 && (rest_.front() | 0x20) == 'n') {
    const std::size_t literal = LiteralLength(rest_.substr(1));
    if (literal > 0) return Cut(Kind::NationalLiteral, 1 + literal);
  }
  return Cut(Kind::Word, length);
}

}  // namespace zenqay
