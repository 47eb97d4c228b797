#include "engines/dialect/translation.h"

#include "engines/dialect/date_literals.h"
#include "engines/provider_errors.h"

namespace zenqay {
namespace {

using Kind = SqlToken::Kind;

[[noreturn]] void RaiseInvalidDate(std::string_view engine, std::string_view text) {
  const Text description = "invalid date: " + Text(text);
  RaiseReported(Text(engine), description, "22007");
}

void AppendTwoDigits(Text& text, int number) {
  text += static_cast<char>('0' + number / 10);
  text += static_cast<char>('0' + number % 10);
}

/// One statement on its way. What needs no change is copied in runs, up to the next token that does.
class Translation {
 public:
  Translation(const SqlTokens& tokens, std::string_view statement, const EngineForms& forms, Text& translated)
      : tokens_(tokens),
        uncopied_(tokens.position()),
        end_(statement.data() + statement.size()),
        forms_(forms),
        out_(translated) {}

  void Run() {
    for (SqlToken token = tokens_.Next(); token.kind != Kind::End; token = tokens_.Next()) {
      Translate(token);
      if (forms_.likeHasEscapeCharacter && IsLike(token)) TranslatePattern();
    }
    CopyUpTo(end_);
  }

 private:
  void Translate(const SqlToken& token) {
    const std::optional<DateLiteral> date = TakeDate(token, tokens_);
    const bool isGlued = token.begin() == previousEnd_;
    if (isGlued && WouldJoin(token, date.has_value())) AddBlankBefore(token);
    if (date) {
      CopyUpTo(token.begin());
      AppendLiteral(*date);
      uncopied_ = tokens_.position();
      return PutPrevious(Kind::Literal, uncopied_);
    }
    if (token.kind != Kind::NationalLiteral) return PutPrevious(token.kind, token.end());
    CopyUpTo(token.begin());
    uncopied_ = token.begin() + 1;
    PutPrevious(Kind::Literal, token.end());
  }

  /// True when the engine would read a token that stands right behind the previous one in another way than it is meant:
  /// a number and a word as one number, two literals as one. A date becomes a word and a literal.
  bool WouldJoin(const SqlToken& token, bool isDate) const {
    if (isDate) return previous_ != Kind::Other;
    switch (token.kind) {
      case Kind::Word:
        return previous_ == Kind::Number;
      case Kind::Literal:
        return previous_ == Kind::Literal;
      case Kind::NationalLiteral:
        return previous_ == Kind::Number || previous_ == Kind::Literal;
      case Kind::Other:  // a literal without an end
        return previous_ == Kind::Literal && token.text.front() == '\'';
      default:
        return false;
    }
  }

  void PutPrevious(Kind kind, const char* end) {
    previous_ = kind;
    previousEnd_ = end;
  }

  static bool IsLike(const SqlToken& token) {
    return token.kind == Kind::Word && EqualsIgnoringCase(token.text, "LIKE");
  }

  /// The literal or the column behind LIKE, which is to stand for itself but for its wildcards.
  void TranslatePattern() {
    Translate(tokens_.Next());
    for (SqlTokens ahead = tokens_; ahead.Take("."); ahead = tokens_) {
      tokens_ = ahead;
      Translate(tokens_.Next());
    }
    SqlTokens ahead = tokens_;
    if (ahead.Take("ESCAPE")) return;
    CopyUpTo(tokens_.position());
    out_ += " ESCAPE ''";
    PutPrevious(Kind::Literal, uncopied_);
  }

  void AppendLiteral(const DateLiteral& date) {
    if (!date.value) RaiseInvalidDate(forms_.engine, date.text);
    out_ += date.hasTime ? forms_.dateTimePrefix : forms_.datePrefix;
    AppendDate(out_ += '\'', *date.value, date.hasTime);
    out_ += '\'';
  }

  void CopyUpTo(const char* position) {
    out_.append(uncopied_, position);
    uncopied_ = position;
  }

  void AddBlankBefore(const SqlToken& token) {
    CopyUpTo(token.begin());
    out_ += ' ';
  }

  SqlTokens tokens_;
  Kind previous_ = Kind::End;
  const char* previousEnd_ = nullptr;
  const char* uncopied_;
  const char* end_;
  const EngineForms& forms_;
  Text& out_;
};

}  // namespace

bool IsDateFormatSetting(SqlTokens tokens) {
  return tokens.Take("SET") && tokens.Take("DATEFORMAT") && tokens.Take("YMD") && tokens.Next().kind == Kind::End;
}

bool TakeSchemaSetting(SqlTokens& tokens) {
  SqlTokens ahead = tokens;
  const bool isSetting = ahead.Take("ALTER") && ahead.Take("SESSION") && ahead.Take("SET") &&
                         ahead.Take("CURRENT_SCHEMA") && ahead.Take("=");
  if (isSetting) tokens = ahead;
  return isSetting;
}

bool TakeUpdateStatistics(SqlTokens& tokens) {
  SqlTokens ahead = tokens;
  if (!ahead.Take("UPDATE") || !ahead.Take("STATISTICS")) return false;
  const SqlTokens behind = ahead;
  const SqlToken table = ahead.Next();
  if (table.kind == Kind::End || EqualsIgnoringCase(table.text, "SET")) return false;
  tokens = behind;
  return true;
}

void AppendDate(Text& text, DateTime date, bool hasTime) {
  const DateTimeParts parts = date.Parts();
  AppendTwoDigits(text, parts.year / 100);
  AppendTwoDigits(text, parts.year % 100);
  AppendTwoDigits(text += '-', parts.month);
  AppendTwoDigits(text += '-', parts.day);
  if (!hasTime) return;
  AppendTwoDigits(text += ' ', parts.hour);
  AppendTwoDigits(text += ':', parts.minute);
  AppendTwoDigits(text += ':', parts.second);
}

void TranslateRest(const SqlTokens& tokens, std::string_view statement, const EngineForms& forms, Text& translated) {
  Translation(tokens, statement, forms, translated).Run();
}

}  // namespace zenqay
