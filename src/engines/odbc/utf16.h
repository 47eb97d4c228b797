// Texts as the wide calls of ODBC drivers have them.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// UTF-16 code units in the machine's byte order.
using WideText = std::vector<std::uint16_t>;

struct Utf16 {
  /// Replaces `wide` by the text, without a terminator. Raises -2147217913 for what is no UTF-8.
  static void Widen(std::string_view text, WideText& wide);

  /// Appends the text of `length` code units to `text`; a half of a surrogate pair becomes U+FFFD.
  static void AppendNarrow(const std::uint16_t* wide, std::size_t length, Text& text);
};

}  // namespace zenqay
