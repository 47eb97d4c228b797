#include "localdb/dialect/translation.h"

#include "localdb/dialect/date_literals.h"
#include "localdb/provider_errors.h"

namespace zenqay {
namespace {

using Kind = SqlToken::Kind;

[[noreturn]] void RaiseInvalidDate(std::string_view engine, std::string_view text) {
  const Text description = "invalid date: " + Text(text);
  throw ProviderFailure({{ProviderNumber("22007"), Text(engine), description}});
}

void AppendTwoDigits(Text& text, int number) {
  text += static_cast<char>('0' + number / 10);
  text += static_cast<char>('0' + number % 10);
}

void AppendDate(Text& text, const DateTimeParts& parts) {
  AppendTwoDigits(text, parts.year / 100);
  AppendTwoDigits(text, parts.year % 100);
  AppendTwoDigits(text += '-', parts.month);
  AppendTwoDigits(text += '-', parts.day);
}

void AppendTime(Text& text, const DateTimeParts& parts) {
  AppendTwoDigits(text, parts.hour);
  AppendTwoDigits(text += ':', parts.minute);
  AppendTwoDigits(text += ':', parts.second);
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
    SqlToken previous;
    for (SqlToken token = tokens_.Next(); token.kind != Kind::End; token = tokens_.Next()) {
      previous = Translate(token, previous);
      const bool isPattern = forms_.likeHasEscapeCharacter && IsLike(token);
      if (isPattern) previous = TranslatePattern(previous);
    }
    CopyUpTo(end_);
  }

 private:
  /// Returns the token that now stands in front of what follows. Two literals with nothing left between them would
  /// become one, so a blank keeps them apart.
  SqlToken Translate(const SqlToken& token, const SqlToken& previous) {
    if (token.kind == Kind::Number) return token;
    const bool isGlued = previous.end() == token.begin();
    if (token.kind == Kind::Word) {
      if (isGlued && previous.kind == Kind::Number) AddBlankBefore(token);
      if (IsNationalPrefix(token)) {
        if (isGlued && previous.kind == Kind::Literal) AddBlankBefore(token);
        CopyUpTo(token.begin());
        uncopied_ = token.end();
        return tokens_.Next();
      }
    }
    if (const std::optional<DateLiteral> date = TakeDate(token, tokens_)) {
      const bool wouldJoin = previous.kind == Kind::Literal || previous.kind == Kind::Word;
      if (isGlued && wouldJoin) AddBlankBefore(token);
      CopyUpTo(token.begin());
      AppendLiteral(*date);
      uncopied_ = tokens_.position();
      return {Kind::Literal, std::string_view(token.begin(), uncopied_)};
    }
    if (isGlued && token.kind == Kind::Literal && previous.kind == Kind::Literal) AddBlankBefore(token);
    return token;
  }

  static bool IsLike(const SqlToken& token) {
    return token.kind == Kind::Word && EqualsIgnoringCase(token.text, "LIKE");
  }

  /// The literal or the column behind LIKE, which is to stand for itself but for its wildcards.
  SqlToken TranslatePattern(const SqlToken& like) {
    SqlToken last = Translate(tokens_.Next(), like);
    for (SqlTokens ahead = tokens_; ahead.Take("."); ahead = tokens_) {
      tokens_ = ahead;
      last = tokens_.Next();
    }
    SqlTokens ahead = tokens_;
    if (ahead.Take("ESCAPE")) return last;
    CopyUpTo(tokens_.position());
    out_ += " ESCAPE ''";
    return {Kind::Literal, std::string_view(uncopied_, 0)};
  }

  /// True for the N of N'…'.
  bool IsNationalPrefix(const SqlToken& token) const {
    if (token.text.size() != 1 || (token.text[0] != 'N' && token.text[0] != 'n')) return false;
    SqlTokens ahead = tokens_;
    const SqlToken literal = ahead.Next();
    return literal.kind == Kind::Literal && literal.begin() == token.end();
  }

  void AppendLiteral(const DateLiteral& date) {
    if (!date.value) RaiseInvalidDate(forms_.engine, date.text);
    const DateTimeParts parts = date.value->Parts();
    out_ += date.hasTime ? forms_.dateTimePrefix : forms_.datePrefix;
    out_ += '\'';
    AppendDate(out_, parts);
    if (date.hasTime) AppendTime(out_ += ' ', parts);
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

void TranslateRest(const SqlTokens& tokens, std::string_view statement, const EngineForms& forms, Text& translated) {
  Translation(tokens, statement, forms, translated).Run();
}

}  // namespace zenqay
