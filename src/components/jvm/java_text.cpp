#include "components/jvm/java_text.h"

#include <array>
#include <vector>

#include "base/runtime_error.h"
#include "base/utf8.h"

namespace zenqay {
namespace {

/// Field texts are shorter than this; longer ones cost an allocation.
constexpr std::size_t kShort = 256;

[[noreturn]] void RaiseNoText(const char* what, const Text& source) {
  throw RuntimeError(PlatformFault::TypeMismatch, what, source);
}

/// `units` has room for as many units as the text has bytes.
jsize WriteUnits(std::string_view text, jchar* units, const Text& source) {
  const auto count = WriteUtf16(text, units);
  if (!count) RaiseNoText("the text is no UTF-8", source);
  return static_cast<jsize>(*count);
}

}  // namespace

Text TextOfUnits(const jchar* units, std::size_t count, const Text& source) {
  Text text;
  if (!AppendUtf16(units, count, text)) RaiseNoText("the text holds half of a character", source);
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
    const jsize count = WriteUnits(text, units.data(), source);
    return {env, env.NewString(units.data(), count)};
  }
  std::vector<jchar> units(text.size());
  const jsize count = WriteUnits(text, units.data(), source);
  return {env, env.NewString(units.data(), count)};
}

}  // namespace zenqay
