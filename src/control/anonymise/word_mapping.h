// Words become other words of the same form, by a secret.
#pragma once

#include <span>

#include "control/anonymise/alphabets.h"
#include "control/anonymise/keyed_hash.h"

namespace zenqay {

/// A permutation of the words of each form: a word becomes another one of as many letters, each of the alphabet and the
/// case that the letter at its place had. Two words become the same one only where they are the same, without regard to
/// case or with it, and no word stays what it was.
///
/// Of digits alone the zeros in front stay, and no further ones come: so they stay numbers of as many digits. "0" is
/// the one word that stays.
class WordMapping {
 public:
  explicit WordMapping(const KeyedHash::Key& key) : hash_(key) {}

  void Change(std::span<Letter> word) const;

 private:
  struct Position {
    std::uint32_t radix;
    std::uint32_t value;
  };

  void Permute(std::span<Position> positions) const;
  void Advance(Position& only) const;
  void Round(std::span<Position> positions, std::uint64_t form, int round, bool isBack) const;
  std::uint64_t FormOf(std::span<const Position> positions) const;

  KeyedHash hash_;
};

}  // namespace zenqay
