// Texts as the wide calls of ODBC drivers have them.
#pragma once

#include <memory>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// UTF-16 code units in the machine's byte order.
using WideText = std::vector<unsigned short>;

/// Converts between UTF-8 and UTF-16, also beyond the basic plane.
class Utf16 {
 public:
  Utf16();

  /// Replaces `wide` by the text, without a terminator. Raises -2147217913 for what is no UTF-8.
  void Widen(std::string_view text, WideText& wide);

  /// Appends the text of `length` code units to `text`; a half of a surrogate pair becomes U+FFFD.
  void AppendNarrow(const unsigned short* wide, std::size_t length, Text& text);

 private:
  struct CloseConverter {
    void operator()(void* converter) const;
  };

  std::unique_ptr<void, CloseConverter> toWide_;
  std::unique_ptr<void, CloseConverter> toNarrow_;
};

}  // namespace zenqay
