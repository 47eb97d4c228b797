#include "control/anonymise/text_mapping.h"

#include <utf8.h>

#include <iterator>

#include "base/utf8.h"

namespace zenqay {
namespace {

/// How many bytes the character at the front has; one for what is no UTF-8.
std::size_t LengthOfFirst(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x80) return 1;
  const std::string_view character = text.substr(0, first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4);
  return Utf8Length(character) == character.size() ? character.size() : 1;
}

bool IsLetter(std::string_view character) {
  const char first = character.front();
  if (character.size() == 1) {
    return (first >= '0' && first <= '9') || ((first | 0x20) >= 'a' && (first | 0x20) <= 'z');
  }
  return LetterOf(utf8::unchecked::peek_next(character.begin())).has_value();
}

}  // namespace

bool Pieces::Next(Piece& piece) {
  if (rest_.empty()) return false;
  std::size_t end = 0;
  while (end < rest_.size()) {
    const std::size_t length = LengthOfFirst(rest_.substr(end));
    const bool isLetter = IsLetter(rest_.substr(end, length));
    if (end == 0) piece.isWord = isLetter;
    if (isLetter != piece.isWord) break;
    end += length;
  }
  piece.text = rest_.substr(0, end);
  rest_.remove_prefix(end);
  return true;
}

Text TextMapping::Changed(std::string_view text) const {
  return Changed(text, [](std::string_view) { return false; });
}

Text TextMapping::Changed(std::string_view text, const std::function<bool(std::string_view word)>& stays) const {
  Text changed;
  changed.reserve(text.size());
  Pieces pieces(text);
  for (Piece piece; pieces.Next(piece);) {
    if (piece.isWord && !stays(piece.text)) {
      changed += ChangedWord(piece.text);
    } else {
      changed += piece.text;
    }
  }
  return changed;
}

Text TextMapping::ChangedWord(std::string_view word) const {
  std::vector<Letter> letters;
  letters.reserve(word.size());
  for (auto at = word.begin(); at != word.end();) letters.push_back(*LetterOf(utf8::unchecked::next(at)));
  words_.Change(letters);
  Text changed;
  changed.reserve(word.size());
  for (const Letter& letter : letters) {
    utf8::unchecked::append(CharacterAt(letter, letter.place), std::back_inserter(changed));
  }
  return changed;
}

}  // namespace zenqay
