#include "engines/odbc/utf16.h"

#include <iconv.h>

#include <bit>
#include <cerrno>

#include "engines/provider_errors.h"

namespace zenqay {
namespace {

constexpr const char* kUtf16 = std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

void* OpenConverter(const char* to, const char* from) {
  const iconv_t converter = iconv_open(to, from);
  if (converter == reinterpret_cast<iconv_t>(-1)) throw RuntimeError(PlatformFault::InvalidCall, kUtf16);
  return converter;
}

}  // namespace

Utf16::Utf16() : toWide_(OpenConverter(kUtf16, "UTF-8")), toNarrow_(OpenConverter("UTF-8", kUtf16)) {}

void Utf16::CloseConverter::operator()(void* converter) const {
  iconv_close(converter);
}

void Utf16::Widen(std::string_view text, WideText& wide) {
  if (IsAscii(text)) return wide.assign(text.begin(), text.end());
  wide.resize(text.size());                     // never more units than bytes
  char* from = const_cast<char*>(text.data());  // iconv's interface; it reads only
  std::size_t left = text.size();
  char* to = reinterpret_cast<char*>(wide.data());
  std::size_t room = wide.size() * sizeof(unsigned short);
  iconv(toWide_.get(), nullptr, nullptr, nullptr, nullptr);
  if (iconv(toWide_.get(), &from, &left, &to, &room) == static_cast<std::size_t>(-1)) {
    RaiseReported(kPlatformSource, "The statement is not valid UTF-8.", "22021");
  }
  wide.resize(wide.size() - room / sizeof(unsigned short));
}

void Utf16::AppendNarrow(const unsigned short* wide, std::size_t length, Text& text) {
  char* from = reinterpret_cast<char*>(const_cast<unsigned short*>(wide));
  std::size_t left = length * sizeof(unsigned short);
  iconv(toNarrow_.get(), nullptr, nullptr, nullptr, nullptr);
  while (left > 0) {
    char block[1024];
    char* to = block;
    std::size_t room = sizeof block;
    const bool isBroken =
        iconv(toNarrow_.get(), &from, &left, &to, &room) == static_cast<std::size_t>(-1) && errno != E2BIG;
    text.append(block, to);
    if (!isBroken) continue;
    text += kReplacement;
    from += sizeof(unsigned short);
    left -= sizeof(unsigned short);
  }
}

}  // namespace zenqay
