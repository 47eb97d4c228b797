// A statement in its tokens: nothing but blanks stands between them, and each has the form of its kind.
#include "engines/dialect/sql_tokens.h"

#include "fuzz/fuzz.h"

using namespace zenqay;

namespace {

using Kind = SqlToken::Kind;

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t\n\r\f\v") == std::string_view::npos;
}

/// True for '…' in which every quote is doubled.
bool IsLiteral(std::string_view text) {
  if (text.size() < 2 || text.front() != '\'' || text.back() != '\'') return false;
  const Text content = Replaced(text.substr(1, text.size() - 2), "''", "");
  return content.find('\'') == Text::npos;
}

bool IsNationalLiteral(std::string_view text) {
  return (text.starts_with('N') || text.starts_with('n')) && IsLiteral(text.substr(1));
}

bool HasItsForm(const SqlToken& token) {
  switch (token.kind) {
    case Kind::End:
      return token.text.empty();
    case Kind::Word:
      return token.text.find_first_of(" '\"[]().,;=<>+-*/{}") == std::string_view::npos;
    case Kind::Number:
      return token.text.find_first_of("0123456789") <= 1;
    case Kind::Literal:
      return IsLiteral(token.text);
    case Kind::NationalLiteral:
      return IsNationalLiteral(token.text);
    case Kind::Other:
      return !token.text.empty() && !IsLiteral(token.text);
  }
  return false;
}

}  // namespace

FUZZ(input) {
  SqlTokens tokens(input);
  const char* position = input.data();
  for (bool atEnd = false; !atEnd;) {
    SqlTokens ahead = tokens;
    const SqlToken token = tokens.Next();

    Hold(ahead.Next().begin() == token.begin(), "a copy reads the same");
    Hold(HasItsForm(token), "a token has the form of its kind");
    Hold(token.begin() >= position && token.end() == tokens.position(), "tokens follow each other");
    Hold(IsBlank(std::string_view(position, token.begin())), "only blanks are skipped");
    position = token.end();
    atEnd = token.kind == Kind::End;
  }
  Hold(position == input.data() + input.size(), "the tokens reach the statement's end");
}
