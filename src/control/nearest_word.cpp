#include "control/nearest_word.h"

#include <algorithm>

namespace zenqay {
namespace {

/// How many letters must be changed, added, dropped or swapped with their neighbour to make one of the other.
std::size_t Distance(const Text& a, const Text& b) {
  std::vector<std::vector<std::size_t>> steps(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        steps[i][j] = i + j;
        continue;
      }
      const std::size_t changed = steps[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      steps[i][j] = std::min({steps[i - 1][j] + 1, steps[i][j - 1] + 1, changed});
      const bool isSwapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (isSwapped) steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
    }
  }
  return steps[a.size()][b.size()];
}

}  // namespace

Text NearestWordHint(std::string_view written, const std::vector<Text>& words) {
  if (words.empty()) return "";
  const Text lower = LowerCased(written.substr(0, 100));
  const auto nearest = std::min_element(words.begin(), words.end(), [&](const Text& a, const Text& b) {
    return Distance(lower, LowerCased(a)) < Distance(lower, LowerCased(b));
  });
  const std::size_t slips = std::max<std::size_t>(1, std::max(lower.size(), nearest->size()) / 3);
  if (Distance(lower, LowerCased(*nearest)) <= slips) return " (did you mean \"" + *nearest + "\"?)";
  return " (there are: " + JoinedWords(words) + ")";
}

Text JoinedWords(const std::vector<Text>& words) {
  Text joined;
  for (const Text& word : words) joined += (joined.empty() ? "" : ", ") + word;
  return joined;
}

}  // namespace zenqay
