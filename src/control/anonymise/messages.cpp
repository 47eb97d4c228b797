// Messages: sentences of the program or of others, with values in them.
#include <algorithm>

#include "control/anonymise/anonymiser.h"

namespace zenqay {
namespace {

bool IsWordAt(std::string_view text, std::size_t at) {
  Piece piece;
  return at < text.size() && Pieces(text.substr(at)).Next(piece) && piece.isWord;
}

/// Whether the character in front of `at` is of a word.
bool IsWordBefore(std::string_view text, std::size_t at) {
  if (at == 0) return false;
  do {
    --at;
  } while (at > 0 && (text[at] & 0xC0) == 0x80);
  return IsWordAt(text, at);
}

/// The end of a quoted piece that opens at `at`, behind its closing quote; npos where none opens or none closes it. A
/// quote between letters is an apostrophe.
std::size_t QuoteEnd(std::string_view text, std::size_t at) {
  if (text[at] != '"' && text[at] != '\'') return std::string_view::npos;
  if (IsWordBefore(text, at)) return std::string_view::npos;
  std::size_t close = text.find(text[at], at + 1);
  while (close != std::string_view::npos && IsWordAt(text, close + 1)) close = text.find(text[at], close + 1);
  return close == std::string_view::npos ? close : close + 1;
}

/// The end of values in parentheses, "Key (site)=(A1)", "Failing row contains (A1, North)"; npos where none open.
std::size_t ValuesEnd(std::string_view text, std::size_t at) {
  const std::string_view before = text.substr(0, at);
  const bool opens =
      text[at] == '(' && (before.ends_with("=") || before.ends_with("is ") || before.ends_with("contains "));
  const std::size_t close = opens ? text.rfind(')') : std::string_view::npos;
  return close == std::string_view::npos || close < at ? std::string_view::npos : close + 1;
}

}  // namespace

/// "Configuration=C1, Object=O1": each value goes up to the next key.
Text Anonymiser::RowKey(std::string_view told) const {
  Text changed;
  while (!told.empty()) {
    const std::size_t sign = told.find('=');
    if (sign == std::string_view::npos) return changed += mapping_.Changed(told);
    const std::string_view name = told.substr(0, sign);
    std::size_t end = told.size();
    for (std::size_t at = told.find(", ", sign); at != std::string_view::npos; at = told.find(", ", at + 1)) {
      const std::string_view next = told.substr(at + 2);
      if (!vocabulary_.IsKeyName(next.substr(0, next.find('=')))) continue;
      end = at + 2;
      break;
    }
    const std::string_view value = told.substr(sign + 1, end - sign - 1 - (end < told.size() ? 2 : 0));
    Meaning meaning = vocabulary_.OfOperation("get" + Text(name));
    if (meaning != Meaning::Number) meaning = vocabulary_.OfColumn("object", name);
    changed.append(name).append("=").append(Value(meaning, value));
    if (end < told.size()) changed += ", ";
    told.remove_prefix(end);
  }
  return changed;
}

/// A name stays, and all of it changes otherwise.
Text Anonymiser::Quoted(std::string_view text) const {
  Pieces pieces(text);
  for (Piece piece; pieces.Next(piece);) {
    if (piece.isWord && !vocabulary_.IsName(piece.text)) return mapping_.Changed(text);
  }
  return Text(text);
}

/// Behind `before` in the text.
Text Anonymiser::FailureWord(std::string_view before, std::string_view word) const {
  constexpr std::size_t kLongestShort = 4;
  if (vocabulary_.IsProgramWord(word)) return Text(word);
  if (!IsAllDigits(word)) return mapping_.ChangedWord(word);
  const bool isProviderNumber = before.ends_with('-') && word.size() == 10 && word.starts_with("214");
  const bool isOfFailure = isProviderNumber || before.ends_with("ORA-");
  return word.size() <= kLongestShort || isOfFailure ? Text(word) : mapping_.ChangedWord(word);
}

Text Anonymiser::Sentence(std::string_view text) const {
  Text changed;
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t end = QuoteEnd(text, at);
    if (end == std::string_view::npos) end = ValuesEnd(text, at);
    if (end != std::string_view::npos) {
      const std::string_view inside = text.substr(at + 1, end - at - 2);
      changed.append(text, at, 1).append(text[at] == '(' ? mapping_.Changed(inside) : Quoted(inside));
      changed += text[end - 1];
      at = end;
      continue;
    }
    Pieces pieces(text.substr(at));
    Piece piece;
    pieces.Next(piece);
    const std::size_t length = piece.isWord ? piece.text.size() : 1;
    changed += piece.isWord ? FailureWord(text.substr(0, at), piece.text) : Text(1, text[at]);
    at += length;
  }
  return changed;
}

Text Anonymiser::Failure(std::string_view description) const {
  constexpr std::string_view kOf = " of ";
  for (std::size_t at = description.find(kOf); at != std::string_view::npos; at = description.find(kOf, at + 1)) {
    const std::string_view told = description.substr(at + kOf.size());
    const std::size_t sign = told.find('=');
    if (sign == std::string_view::npos || !vocabulary_.IsKeyName(told.substr(0, sign))) continue;
    return Sentence(description.substr(0, at)).append(kOf).append(RowKey(told));
  }
  return Sentence(description);
}

/// A record of a failure is `"source","description"`, or `"source",number,"description"` for what a database reported,
/// or that of the start-up log.
Text Anonymiser::LogLine(std::string_view line) const {
  constexpr std::string_view kStartup = "Error is - ";
  if (line.starts_with(kStartup)) {
    const std::size_t colon = std::min(line.find(": "), line.size());
    return Text(line.substr(0, colon)).append(Failure(line.substr(colon)));
  }
  const bool isQuoted = line.size() > 1 && line.starts_with('"') && line.ends_with('"');
  const std::size_t source = isQuoted ? line.find("\",") : std::string_view::npos;
  if (source == std::string_view::npos) return Message(line);
  std::size_t description = source + 2;
  while (description < line.size() && line[description] != '"') ++description;  // over the number
  if (description + 1 >= line.size()) return Failure(line);
  return Text("\"")
      .append(Failure(line.substr(1, source - 1)))
      .append(line.substr(source, description - source + 1))
      .append(Failure(line.substr(description + 1, line.size() - description - 2)))
      .append("\"");
}

}  // namespace zenqay
