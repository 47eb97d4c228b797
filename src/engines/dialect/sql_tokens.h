// Statements as the job composes them, token by token.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// A piece of the statement, as it stands there.
struct SqlToken {
  enum class Kind {
    End,
    Word,
    Number,
    Literal,          // '…', its quotes included; never one that lacks its closing quote
    NationalLiteral,  // N'…'
    Other,            // a name in quotes or brackets, a comment, any other single character; to the end if not closed
  };

  Kind kind = Kind::End;
  std::string_view text;

  const char* begin() const { return text.data(); }
  const char* end() const { return text.data() + text.size(); }

  /// What stands between the quotes of a plain literal, doubled quotes left as they are.
  std::string_view Content() const { return text.substr(1, text.size() - 2); }
};

/// Reads a statement forward; white space between tokens is skipped. A copy looks ahead.
class SqlTokens {
 public:
  explicit SqlTokens(std::string_view statement) : rest_(statement) {}

  SqlToken Next();

  /// Takes the next token and tells whether it is this word, number or character, without regard to case.
  bool Take(std::string_view expected) { return EqualsIgnoringCase(Next().text, expected); }

  /// Where the last token ended.
  const char* position() const { return rest_.data(); }

 private:
  SqlToken Cut(SqlToken::Kind kind, std::size_t length);
  SqlToken CutBehind(SqlToken::Kind kind, std::string_view mark, std::size_t from);
  SqlToken CutLiteral();
  SqlToken CutWord();

  std::string_view rest_;
};

}  // namespace zenqay
