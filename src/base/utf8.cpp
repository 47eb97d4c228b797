#include "base/utf8.h"

namespace zenqay {
namespace {

/// The bytes that may follow a lead byte: how many, and the range of the first of them, which is what keeps out long
/// forms, surrogates and everything beyond U+10FFFF. A count of 0 is no lead byte.
struct Continuation {
  std::size_t count;
  unsigned char low;
  unsigned char high;
};

Continuation ContinuationOf(unsigned char lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return {1, 0x80, 0xBF};
  if (lead == 0xE0) return {2, 0xA0, 0xBF};
  if (lead == 0xED) return {2, 0x80, 0x9F};
  if (lead >= 0xE1 && lead <= 0xEF) return {2, 0x80, 0xBF};
  if (lead == 0xF0) return {3, 0x90, 0xBF};
  if (lead >= 0xF1 && lead <= 0xF3) return {3, 0x80, 0xBF};
  if (lead == 0xF4) return {3, 0x80, 0x8F};
  return {0, 0, 0};
}

bool IsWithin(char byte, unsigned char low, unsigned char high) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= low && value <= high;
}

/// The length of the character that the bytes start with, 0 when they start with none.
std::size_t CharacterLength(std::string_view bytes) {
  if (IsWithin(bytes.front(), 0x00, 0x7F)) return 1;
  const auto [count, low, high] = ContinuationOf(static_cast<unsigned char>(bytes.front()));
  if (count == 0 || bytes.size() <= count || !IsWithin(bytes[1], low, high)) return 0;
  for (std::size_t i = 2; i <= count; ++i) {
    if (!IsWithin(bytes[i], 0x80, 0xBF)) return 0;
  }
  return count + 1;
}

}  // namespace

bool IsPlain(std::string_view bytes) {
  bool isPlain = true;
  for (const char c : bytes) isPlain &= static_cast<signed char>(c) > 0;  // without a way out it can be vectorized
  return isPlain;
}

std::string_view FlawOf(std::string_view bytes) {
  while (!bytes.empty()) {
    if (bytes.front() == '\0') return "holds a NUL byte";
    const std::size_t length = CharacterLength(bytes);
    if (length == 0) return "is no UTF-8 text";
    bytes.remove_prefix(length);
  }
  return {};
}

}  // namespace zenqay
