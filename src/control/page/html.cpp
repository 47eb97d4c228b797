#include "control/page/html.h"

#include <utf8.h>

namespace zenqay {
namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";

bool MayStand(char c) {
  return static_cast<unsigned char>(c) >= 0x20 || c == '\n' || c == '\t' || c == '\r';
}

void AppendEscaped(Text& to, char c) {
  switch (c) {
    case '&':
      to += "&amp;";
      break;
    case '<':
      to += "&lt;";
      break;
    case '>':
      to += "&gt;";
      break;
    case '"':
      to += "&quot;";
      break;
    case '\'':
      to += "&#39;";
      break;
    default:
      to += MayStand(c) ? Text(1, c) : kReplacement;
  }
}

}  // namespace

Html operator""_html(const char* literal, std::size_t length) {
  Html html;
  html.text_.assign(literal, length);
  return html;
}

Html Escaped(std::string_view text) {
  Text valid;
  utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid), 0xFFFD);
  Html html;
  for (const char c : valid) AppendEscaped(html.text_, c);
  return html;
}

Text GroupedDigits(std::int64_t number) {
  constexpr const char* kNarrowBlank = "\xE2\x80\xAF";
  Text digits = std::to_string(number);
  const int start = number < 0 ? 1 : 0;
  for (int at = static_cast<int>(digits.size()) - 3; at > start; at -= 3) {
    digits.insert(static_cast<std::size_t>(at), kNarrowBlank);
  }
  return digits;
}

Html MomentHtml(const Text& utc) {
  if (utc.empty()) return {};
  Text words = Replaced(utc, "T", " ");
  if (words.ends_with('Z')) words.replace(words.size() - 1, 1, " UTC");
  return "<time datetime=\""_html + Escaped(utc) + "\" title=\""_html + Escaped(words) + "\">"_html + Escaped(words) +
         "</time>"_html;
}

}  // namespace zenqay
