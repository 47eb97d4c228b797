#include "control/anonymise/meaning.h"

#include <algorithm>

#include "base/numbers.h"

namespace zenqay {
namespace {

/// Digits in three groups at least, and nothing else but what dates have between them. One that does not exist has the
/// form too.
bool HasFormOfDate(std::string_view text) {
  constexpr std::string_view kSeparators = "-/:,";
  constexpr std::string_view kSigns = "-/:., ";
  constexpr std::string_view kWords[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug",
                                         "Sep", "Oct", "Nov", "Dec", "AM",  "PM",  "T",   "Z"};
  int separators = 0;
  while (!text.empty()) {
    const bool isDigit = text.front() >= '0' && text.front() <= '9';
    separators += kSeparators.find(text.front()) == std::string_view::npos ? 0 : 1;
    const auto* word = std::ranges::find_if(kWords, [&](std::string_view one) { return text.starts_with(one); });
    const bool isWord = word != std::end(kWords);
    if (!isDigit && !isWord && kSigns.find(text.front()) == std::string_view::npos) return false;
    text.remove_prefix(isWord ? word->size() : 1);
  }
  return separators >= 2;
}

bool IsTruth(std::string_view text) {
  return EqualsIgnoringCase(text, "True") || EqualsIgnoringCase(text, "False");
}

}  // namespace

bool Stays(Meaning meaning, std::string_view text) {
  switch (meaning) {
    case Meaning::Number:
      return IsNumeric(text) || IsTruth(text);
    case Meaning::Date:
      return HasFormOfDate(text);
    case Meaning::System:
      return true;
    default:
      return text.empty();
  }
}

}  // namespace zenqay
