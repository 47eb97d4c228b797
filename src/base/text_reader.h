// Reads a text of a fixed form from its front.
#pragma once

#include <charconv>

#include "base/text_functions.h"

namespace zenqay {

/// Takes marks and numbers off the front of a text. Each operation answers false, and takes nothing, when something
/// else stands there.
///
///     TextReader reader("1/31");
///     reader.Number(1, 2, month) && reader.Mark("/") && reader.Number(1, 2, day) && reader.atEnd()
class TextReader {
 public:
  explicit TextReader(std::string_view text) : rest_(text) {}

  bool atEnd() const { return rest_.empty(); }

  bool Mark(std::string_view mark) {
    if (!rest_.starts_with(mark)) return false;
    rest_.remove_prefix(mark.size());
    return true;
  }

  /// A number of `leastDigits` to `mostDigits` digits, nine at most.
  bool Number(std::size_t leastDigits, std::size_t mostDigits, int& number) {
    std::size_t digits = 0;
    while (digits < rest_.size() && digits < mostDigits && rest_[digits] >= '0' && rest_[digits] <= '9') ++digits;
    if (digits < leastDigits) return false;
    std::from_chars(rest_.data(), rest_.data() + digits, number);
    rest_.remove_prefix(digits);
    return true;
  }

 private:
  std::string_view rest_;
};

}  // namespace zenqay
