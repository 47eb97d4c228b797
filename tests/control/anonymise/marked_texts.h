// Texts in which what must change stands between ‹ and ›.
#pragma once

#include "control/anonymise/anonymiser.h"

namespace zenqay {

inline constexpr KeyedHash::Key kTestKey = {3, 4};

/// "SITE = N'‹A1›'" as the customer has it: SITE = N'A1'.
inline Text Original(const Text& marked) {
  return Replaced(Replaced(marked, "‹", ""), "›", "");
}

/// The same with other words in the marked places.
inline Text Expected(const Text& marked) {
  const TextMapping mapping(kTestKey);
  Text expected;
  const std::vector<std::string_view> parts = Split(marked, "‹");
  expected += parts[0];
  for (std::size_t i = 1; i < parts.size(); ++i) {
    const std::vector<std::string_view> halves = Split(parts[i], "›");
    expected.append(mapping.Changed(halves[0])).append(halves[1]);
  }
  return expected;
}

}  // namespace zenqay
