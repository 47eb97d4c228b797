#include "engines/odbc/utf16.h"

#include "base/utf8.h"
#include "engines/provider_errors.h"

namespace zenqay {

void Utf16::Widen(std::string_view text, WideText& wide) {
  wide.resize(text.size());  // never more units than bytes
  const auto count = WriteUtf16(text, wide.data());
  if (!count) RaiseReported(kPlatformSource, "The statement is not valid UTF-8.", "22021");
  wide.resize(*count);
}

void Utf16::AppendNarrow(const std::uint16_t* wide, std::size_t length, Text& text) {
  AppendUtf16(wide, length, text);
}

}  // namespace zenqay
