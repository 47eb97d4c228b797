#include "control/anonymise/alphabets.h"

#include <algorithm>
#include <string_view>

namespace zenqay {
namespace {

/// Letters whose code points follow each other. The lower ones of two cases stand `toLower` behind the upper ones.
struct Range {
  char32_t first;
  std::uint32_t size;
  std::uint32_t toLower;
};

constexpr Range kRanges[] = {
    {U'0', 10, 0},          // ASCII
    {U'A', 26, 32},         //
    {U'\u0400', 16, 80},    // Cyrillic, the further letters
    {U'\u0410', 32, 32},    //
    {U'\u3041', 86, 0},     // Hiragana
    {U'\u30A1', 90, 0},     // Katakana
    {U'\u4E00', 20992, 0},  // Han
    {U'\uAC00', 11172, 0},  // Hangul
};

/// The others of two cases: those of Windows-1252, of the rest of Latin Extended-A, of Greek. A letter is written in as
/// many bytes of UTF-8 as each other one of its alphabet.
constexpr std::u32string_view kUpper[] = {
    U"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝÞŠŒŽŸ",
    U"ĀĂĄĆĈĊČĎĐĒĔĖĘĚĜĞĠĢĤĦĨĪĬĮĲĴĶĹĻĽĿŁŃŅŇŊŌŎŐŔŖŘŚŜŞŢŤŦŨŪŬŮŰŲŴŶŹŻ",
    U"ΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩ",
};
constexpr std::u32string_view kLower[] = {
    U"àáâãäåæçèéêëìíîïðñòóôõöøùúûüýþšœžÿ",
    U"āăąćĉċčďđēĕėęěĝğġģĥħĩīĭįĳĵķĺļľŀłńņňŋōŏőŕŗřśŝşţťŧũūŭůűųŵŷźż",
    U"αβγδεζηθικλμνξοπρστυφχψω",
};
static_assert(kUpper[0].size() == kLower[0].size() && kUpper[1].size() == kLower[1].size() &&
              kUpper[2].size() == kLower[2].size());

/// Code points that hold no letters: punctuation, signs, symbols, pictures, what a broken text was replaced by.
constexpr struct {
  char32_t first;
  char32_t last;
} kSigns[] = {{0x0000, 0x00BF}, {0x00D7, 0x00D7}, {0x00DF, 0x00DF}, {0x00F7, 0x00F7},  {0x2000, 0x2BFF},
              {0x3000, 0x3020}, {0xD800, 0xDFFF}, {0xFFF0, 0xFFFF}, {0x1F000, 0x1FAFF}};

constexpr char32_t kBlock = 64;
constexpr char32_t kBlockMark = 0x80000000;  // in the name of an alphabet that is a block

std::optional<Letter> InRanges(char32_t character) {
  for (const Range& range : kRanges) {
    const std::uint32_t upper = character - range.first;
    if (upper < range.size) return Letter{range.first, range.size, upper, false};
    const std::uint32_t lower = upper - range.toLower;
    if (range.toLower > 0 && lower < range.size) return Letter{range.first, range.size, lower, true};
  }
  return {};
}

std::optional<Letter> InPairs(char32_t character) {
  constexpr char32_t kBehindThem = 0x400;
  if (character >= kBehindThem) return {};
  for (std::size_t i = 0; i < std::size(kUpper); ++i) {
    const auto size = static_cast<std::uint32_t>(kUpper[i].size());
    const std::size_t upper = kUpper[i].find(character);
    if (upper < size) return Letter{kUpper[i][0], size, static_cast<std::uint32_t>(upper), false};
    const std::size_t lower = kLower[i].find(character);
    if (lower < size) return Letter{kUpper[i][0], size, static_cast<std::uint32_t>(lower), true};
  }
  return {};
}

bool IsOfABlock(char32_t character) {
  const bool isSign = std::ranges::any_of(
      kSigns, [&](const auto& signs) { return character >= signs.first && character <= signs.last; });
  return !isSign && !InRanges(character) && !InPairs(character);
}

/// The letters of the block that belong to no other alphabet.
std::optional<Letter> InBlock(char32_t character) {
  if (!IsOfABlock(character)) return {};
  const char32_t block = character / kBlock * kBlock;
  Letter letter = {.alphabet = kBlockMark | block};
  for (char32_t other = block; other < block + kBlock; ++other) {
    if (!IsOfABlock(other)) continue;
    if (other < character) ++letter.place;
    ++letter.size;
  }
  return letter;
}

char32_t InBlockAt(char32_t block, std::uint32_t place) {
  char32_t character = block;
  while (!IsOfABlock(character) || place-- > 0) ++character;
  return character;
}

}  // namespace

std::optional<Letter> LetterOf(char32_t character) {
  if (const auto letter = InRanges(character)) return letter;
  if (character < 0x80) return {};
  if (const auto letter = InPairs(character)) return letter;
  return InBlock(character);
}

char32_t CharacterAt(const Letter& letter, std::uint32_t place) {
  for (const Range& range : kRanges) {
    if (range.first == letter.alphabet) return range.first + place + (letter.isLower ? range.toLower : 0);
  }
  for (std::size_t i = 0; i < std::size(kUpper); ++i) {
    if (kUpper[i][0] == letter.alphabet) return (letter.isLower ? kLower : kUpper)[i][place];
  }
  return InBlockAt(letter.alphabet & ~kBlockMark, place);
}

}  // namespace zenqay
