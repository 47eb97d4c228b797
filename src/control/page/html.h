// Pieces of a page.
#pragma once

#include <cstdint>

#include "base/text_functions.h"

namespace zenqay {

/// Text that stands in a page as it is. Only literals become that by themselves; what an ERP, a database or a reader
/// said can only come in escaped, so that none of it is ever taken for markup.
///
///     "<td>"_html + Escaped(table.name) + "</td>"_html
class Html {
 public:
  Html() = default;

  const Text& text() const { return text_; }
  bool empty() const { return text_.empty(); }

  Html& operator+=(const Html& more) {
    text_ += more.text_;
    return *this;
  }
  friend Html operator+(Html left, const Html& right) { return left += right; }

  friend Html operator""_html(const char* literal, std::size_t length);
  friend Html Escaped(std::string_view text);

 private:
  Text text_;
};

Html operator""_html(const char* literal, std::size_t length);

/// The text as it is read, in an element or in an attribute's quotes. What is no UTF-8, and what no page may hold,
/// becomes U+FFFD.
Html Escaped(std::string_view text);

/// A number whose digits stand in groups of three.
Text GroupedDigits(std::int64_t number);

/// A moment as the history has it, with the full moment in UTC to hover over. A script puts the reader's zone in.
Html MomentHtml(const Text& utc);

}  // namespace zenqay
