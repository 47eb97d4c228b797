#include "base/utf8.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>

namespace zenqay {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

constexpr bool IsHigh(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool IsLow(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

}  // namespace

std::size_t Utf8Length(std::string_view bytes) {
  return static_cast<std::size_t>(utf8::find_invalid(bytes.begin(), bytes.end()) - bytes.begin());
}

std::string_view FlawOf(std::string_view bytes) {
  const std::size_t length = Utf8Length(bytes);
  if (bytes.substr(0, length).find('\0') != std::string_view::npos) return "holds a NUL byte";
  return length == bytes.size() ? "" : "is no UTF-8 text";
}

bool IsPlain(std::string_view bytes) {
  bool isPlain = true;
  for (const char c : bytes) isPlain &= static_cast<signed char>(c) > 0;  // without a way out it can be vectorized
  return isPlain;
}

std::optional<std::size_t> WriteUtf16(std::string_view text, std::uint16_t* units) {
  if (IsAscii(text)) return static_cast<std::size_t>(std::copy(text.begin(), text.end(), units) - units);
  if (Utf8Length(text) < text.size()) return {};
  return static_cast<std::size_t>(utf8::unchecked::utf8to16(text.begin(), text.end(), units) - units);
}

bool AppendUtf16(const std::uint16_t* units, std::size_t count, Text& text) {
  bool isWhole = true;
  text.reserve(text.size() + count);
  for (std::size_t at = 0; at < count; ++at) {
    char32_t point = units[at];
    if (IsHigh(point) && at + 1 < count && IsLow(units[at + 1])) {
      point = 0x10000 + ((point - 0xD800) << 10) + (units[++at] - 0xDC00U);
    } else if (IsHigh(point) || IsLow(point)) {
      point = kReplacement;
      isWhole = false;
    }
    utf8::unchecked::append(point, std::back_inserter(text));
  }
  return isWhole;
}

}  // namespace zenqay
