#include "components/jvm/java_text.h"

#include <array>
#include <vector>

#include "base/runtime_error.h"

namespace zenqay {
namespace {

/// Field texts are shorter than this; longer ones cost an allocation.
constexpr std::size_t kShort = 256;

[[noreturn]] void RaiseNoText(const char* what, const Text& source) {
  throw RuntimeError(PlatformFault::TypeMismatch, what, source);
}

void AppendUtf8(Text& text, char32_t point) {
  const auto add = [&](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (point < 0x80) {
    add(point);
  } else if (point < 0x800) {
    add(0xC0 | point >> 6);
    add(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    add(0xE0 | point >> 12);
    add(0x80 | (point >> 6 & 0x3F));
    add(0x80 | (point & 0x3F));
  } else {
    add(0xF0 | point >> 18);
    add(0x80 | (point >> 12 & 0x3F));
    add(0x80 | (point >> 6 & 0x3F));
    add(0x80 | (point & 0x3F));
  }
}

bool IsHigh(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool IsLow(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

/// Takes one code point off the front of the text.
char32_t TakePoint(std::string_view& text, const Text& source) {
  const auto byteAt = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const unsigned char first = byteAt(0);
  const std::size_t length = first < 0x80 ? 1 : first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (length == 0 || length > text.size()) RaiseNoText("the text is no UTF-8", source);
  char32_t point = length == 1 ? first : first & (0x7FU >> length);
  for (std::size_t at = 1; at < length; ++at) {
    if ((byteAt(at) & 0xC0) != 0x80) RaiseNoText("the text is no UTF-8", source);
    point = point << 6 | (byteAt(at) & 0x3FU);
  }
  const bool isLongForm = (length == 3 && point < 0x800) || (length == 4 && point < 0x10000);
  if (isLongForm || IsHigh(point) || IsLow(point) || point > 0x10FFFF) RaiseNoText("the text is no UTF-8", source);
  text.remove_prefix(length);
  return point;
}

/// `units` has room for as many units as the text has bytes.
std::size_t WriteUnits(std::string_view text, jchar* units, const Text& source) {
  std::size_t count = 0;
  while (!text.empty()) {
    const char32_t point = TakePoint(text, source);
    if (point < 0x10000) {
      units[count++] = static_cast<jchar>(point);
    } else {
      units[count++] = static_cast<jchar>(0xD800 + ((point - 0x10000) >> 10));
      units[count++] = static_cast<jchar>(0xDC00 + ((point - 0x10000) & 0x3FF));
    }
  }
  return count;
}

}  // namespace

Text TextOfUnits(const jchar* units, std::size_t count, const Text& source) {
  Text text;
  text.reserve(count);
  for (std::size_t at = 0; at < count; ++at) {
    char32_t point = units[at];
    if (IsHigh(point) && at + 1 < count && IsLow(units[at + 1])) {
      point = 0x10000 + ((point - 0xD800) << 10) + (units[++at] - 0xDC00U);
    } else if (IsHigh(point) || IsLow(point)) {
      RaiseNoText("the text holds half of a character", source);
    }
    AppendUtf8(text, point);
  }
  return text;
}

Text TextOf(JNIEnv& env, jstring string, const Text& source) {
  const jsize length = env.GetStringLength(string);
  const auto count = static_cast<std::size_t>(length);
  if (count <= kShort) {
    std::array<jchar, kShort> units;
    env.GetStringRegion(string, 0, length, units.data());
    return TextOfUnits(units.data(), count, source);
  }
  std::vector<jchar> units(count);
  env.GetStringRegion(string, 0, length, units.data());
  return TextOfUnits(units.data(), count, source);
}

Local<> StringOf(JNIEnv& env, std::string_view text, const Text& source) {
  if (text.size() <= kShort) {
    std::array<jchar, kShort> units;
    const std::size_t count = WriteUnits(text, units.data(), source);
    return {env, env.NewString(units.data(), static_cast<jsize>(count))};
  }
  std::vector<jchar> units(text.size());
  const std::size_t count = WriteUnits(text, units.data(), source);
  return {env, env.NewString(units.data(), static_cast<jsize>(count))};
}

}  // namespace zenqay
