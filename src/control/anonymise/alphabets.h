// What a character is among those of its kind: a letter or a digit of an alphabet, or none.
#pragma once

#include <cstdint>
#include <optional>

namespace zenqay {

/// A letter or digit by its place in its alphabet. Upper and lower case of a letter share the place.
struct Letter {
  char32_t alphabet = 0;    // names it
  std::uint32_t size = 0;   // how many letters the alphabet has
  std::uint32_t place = 0;  // below `size`
  bool isLower = false;     // of two cases
};

/// Nothing for what is neither letter nor digit: blanks, punctuation, signs, control characters. Beside the alphabets
/// of the usual scripts every block of 64 code points is one, so that no letter of any script is none.
std::optional<Letter> LetterOf(char32_t character);

/// The letter of the same alphabet and case at another place.
char32_t CharacterAt(const Letter& letter, std::uint32_t place);

inline bool IsDigit(const Letter& letter) {
  return letter.alphabet == U'0';
}

}  // namespace zenqay
