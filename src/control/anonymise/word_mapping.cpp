#include "control/anonymise/word_mapping.h"

#include <algorithm>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {
namespace {

constexpr int kRounds = 8;
constexpr std::uint32_t kHighestRadix = 255;    // of one position: its value is one byte of what is hashed
constexpr std::size_t kPositionsOfOneHash = 8;  // 8 values below 256 are drawn from 64 bits with next to no bias

void AppendNumber(Text& bytes, std::uint64_t number) {
  for (int i = 0; i < 8; ++i) bytes += static_cast<char>(number >> (8 * i));
}

/// The greatest divisor up to the square root, so that a letter of a large alphabet is two positions of about one size.
std::uint32_t LowRadix(std::uint32_t size) {
  std::uint32_t low = 1;
  for (std::uint32_t divisor = 1; divisor * divisor <= size; ++divisor) {
    if (size % divisor == 0) low = divisor;
  }
  return low;
}

std::span<Letter> WithoutZerosInFront(std::span<Letter> digits) {
  const auto first = std::ranges::find_if(digits, [](const Letter& digit) { return digit.place != 0; });
  return digits.subspan(static_cast<std::size_t>(first - digits.begin()));
}

}  // namespace

void WordMapping::Change(std::span<Letter> word) const {
  const bool isNumber = std::ranges::all_of(word, IsDigit);
  if (isNumber) word = WithoutZerosInFront(word);
  if (word.empty()) return;
  std::vector<Position> positions;
  positions.reserve(word.size());
  for (const Letter& letter : word) {
    if (letter.size > kHighestRadix) {
      const std::uint32_t low = LowRadix(letter.size);
      positions.push_back({letter.size / low, letter.place / low});
      positions.push_back({low, letter.place % low});
    } else {
      positions.push_back({letter.size, letter.place});
    }
  }
  if (isNumber) positions.front() = {word.front().size - 1, word.front().place - 1};
  Permute(positions);
  if (isNumber) ++positions.front().value;
  const Position* position = positions.data();
  for (Letter& letter : word) {
    letter.place = (position++)->value;
    if (letter.size > kHighestRadix) {
      const std::uint32_t low = position->radix;
      letter.place = letter.place * low + (position++)->value;
    }
  }
}

/// A Feistel network there, one step, and the network back: the step leaves no word where it was, so neither does the
/// whole.
void WordMapping::Permute(std::span<Position> positions) const {
  if (positions.size() == 1) return Advance(positions.front());
  const auto moved = std::ranges::find_if(positions, [](const Position& position) { return position.radix > 1; });
  if (moved == positions.end()) return;
  const std::uint64_t form = FormOf(positions);
  for (int round = 0; round < kRounds; ++round) Round(positions, form, round, false);
  moved->value = (moved->value + 1) % moved->radix;
  for (int round = kRounds; round-- > 0;) Round(positions, form, round, true);
}

/// The values stand in a circle in the order of their hashes; each becomes the next one.
void WordMapping::Advance(Position& only) const {
  const auto hashOf = [&](std::uint32_t value) {
    Text bytes = "one of ";
    AppendNumber(bytes, only.radix);
    AppendNumber(bytes, value);
    return hash_(bytes);
  };
  const std::uint64_t own = hashOf(only.value);
  std::uint64_t least = UINT64_MAX;  // distance round the circle
  std::uint32_t next = only.value;
  for (std::uint32_t value = 0; value < only.radix; ++value) {
    if (value == only.value) continue;
    const std::uint64_t distance = hashOf(value) - own;
    if (distance > least) continue;
    least = distance;
    next = value;
  }
  only.value = next;
}

/// Shifts the values of one half by what the hash makes of the other half; or back again.
void WordMapping::Round(std::span<Position> positions, std::uint64_t form, int round, bool isBack) const {
  const std::size_t middle = positions.size() / 2;
  const bool shiftsFirst = round % 2 != 0;
  const std::span<Position> seen = shiftsFirst ? positions.subspan(middle) : positions.first(middle);
  const std::span<Position> shifted = shiftsFirst ? positions.first(middle) : positions.subspan(middle);
  Text bytes;
  AppendNumber(bytes, form);
  bytes += static_cast<char>(round);
  for (const Position& position : seen) bytes += static_cast<char>(position.value);
  const std::uint64_t seed = hash_(bytes);
  std::uint64_t drawn = seed;
  for (std::size_t i = 0; i < shifted.size(); ++i) {
    if (i > 0 && i % kPositionsOfOneHash == 0) {
      bytes.clear();
      AppendNumber(bytes, seed);
      AppendNumber(bytes, i);
      drawn = hash_(bytes);
    }
    Position& position = shifted[i];
    const auto shift = static_cast<std::uint32_t>(drawn % position.radix);
    drawn /= position.radix;
    position.value = (position.value + (isBack ? position.radix - shift : shift)) % position.radix;
  }
}

std::uint64_t WordMapping::FormOf(std::span<const Position> positions) const {
  Text bytes = "form";
  for (const Position& position : positions) bytes += static_cast<char>(position.radix);
  return hash_(bytes);
}

}  // namespace zenqay
