// Text is UTF-8 throughout. The small text operations that the whole system shares.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zenqay {

using Text = std::string;

/// Takes the blank character, and no other white space, off both ends.
Text Trim(std::string_view text);

/// Takes the blank character off the start.
Text TrimLeft(std::string_view text);

/// Replaces every occurrence of `mark`, compared exactly, from left to right; the replacement is not searched again.
Text Replaced(std::string_view text, std::string_view mark, std::string_view replacement);

/// The parts between the marks: one more than there are marks, also where nothing stands between two of them.
std::vector<std::string_view> Split(std::string_view text, std::string_view mark);

/// The text on one line: line ends, with the blanks around them, become one blank, and none stands at its ends.
Text OneLine(std::string_view text);

/// Changes the case of A to Z. The keys that texts are compared with are ASCII, so no other letter can make them equal.
Text LowerCased(std::string_view text);
Text UpperCased(std::string_view text);

/// True when `text` starts with `prefix`, but for the case of A to Z.
bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix);

/// True when both texts are equal but for the case of A to Z. Most that are compared differ in length, or in nothing.
inline bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
  return left.size() == right.size() && (left == right || StartsWithIgnoringCase(left, right));
}

/// True when no character lies beyond U+007F.
bool IsAscii(std::string_view text);

}  // namespace zenqay
