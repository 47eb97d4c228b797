#include "base/numbers.h"

#include <locale.h>
#include <stdlib.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/runtime_error.h"

namespace zenqay {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// The length of the longest prefix that is a number: sign, digits with one point, exponent. 0 when there is none.
std::size_t NumberLength(std::string_view text) {
  std::size_t at = 0;
  const auto skipDigits = [&] {
    const std::size_t from = at;
    while (at < text.size() && IsDigit(text[at])) ++at;
    return at - from;
  };
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  std::size_t digits = skipDigits();
  if (at < text.size() && text[at] == '.') {
    ++at;
    digits += skipDigits();
  }
  if (digits == 0) return 0;
  const std::size_t mantissa = at;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    if (skipDigits() == 0) return mantissa;
  }
  return at;
}

/// Too small reads as zero, too large has no value. The point is a point, whatever locale a driver has set.
double ParseNumber(std::string_view number) {
  static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
  const double value = ::strtod_l(Text(number).c_str(), nullptr, plain);
  if (std::isinf(value)) throw RuntimeError(PlatformFault::Overflow);
  return value;
}

std::string_view WithoutBlanks(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

template <typename Integer>
Integer RoundTo(double value) {
  // The default rounding mode is to nearest, a half to even; nothing here changes it.
  const double rounded = std::nearbyint(value);
  if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max())) {
    throw RuntimeError(PlatformFault::Overflow);
  }
  return static_cast<Integer>(rounded);
}

template <typename Integer>
Integer Fit(std::int64_t value) {
  if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max()) {
    throw RuntimeError(PlatformFault::Overflow);
  }
  return static_cast<Integer>(value);
}

}  // namespace

bool IsNumeric(std::string_view text) {
  const std::string_view number = WithoutBlanks(text);
  return !number.empty() && NumberLength(number) == number.size();
}

double ToDouble(std::string_view text) {
  if (!IsNumeric(text)) throw RuntimeError(PlatformFault::TypeMismatch);
  return ParseNumber(WithoutBlanks(text));
}

double Val(std::string_view text) {
  const std::string_view number = WithoutBlanks(text);
  const std::size_t length = NumberLength(number);
  return length == 0 ? 0 : ParseNumber(number.substr(0, length));
}

std::int16_t RoundToInt16(double value) {
  return RoundTo<std::int16_t>(value);
}

std::int32_t RoundToInt32(double value) {
  return RoundTo<std::int32_t>(value);
}

std::int16_t FitInt16(std::int64_t value) {
  return Fit<std::int16_t>(value);
}

std::int32_t FitInt32(std::int64_t value) {
  return Fit<std::int32_t>(value);
}

std::int32_t CheckedAdd(std::int32_t left, std::int32_t right) {
  return FitInt32(static_cast<std::int64_t>(left) + right);
}

std::int32_t CheckedMultiply(std::int32_t left, std::int32_t right) {
  return FitInt32(static_cast<std::int64_t>(left) * right);
}

Text NumberText(double value) {
  if (value == 0) return "0";  // also the negative zero
  char digits[32];
  char* const end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 15).ptr;
  std::replace(digits, end, 'e', 'E');
  return Text(digits, end);
}

Text SignColumnText(std::int32_t value) {
  Text text = std::to_string(value);
  return value < 0 ? text : " " + text;
}

}  // namespace zenqay
