#include "base/windows1252.h"

#include <iconv.h>

#include <algorithm>
#include <stdexcept>

namespace zenqay {
namespace {

class Converter {
 public:
  Converter() : handle_(iconv_open("WINDOWS-1252", "UTF-8")) {
    if (handle_ == reinterpret_cast<iconv_t>(-1)) throw std::runtime_error("iconv has no WINDOWS-1252");
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() { iconv_close(handle_); }

  Text Convert(std::string_view utf8) {
    Text output;
    while (!utf8.empty()) {
      const std::size_t length = CodePointLength(utf8);
      output += ByteOf(utf8.substr(0, length));
      utf8.remove_prefix(length);
    }
    return output;
  }

 private:
  /// The bytes of the code point that the text begins with, 1 for a byte that begins none.
  static std::size_t CodePointLength(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0xC2 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 1;
    if (length > text.size()) return 1;
    const std::string_view rest = text.substr(1, length - 1);
    const bool whole = std::all_of(rest.begin(), rest.end(), [](char c) { return (c & 0xC0) == 0x80; });
    return whole ? length : 1;
  }

  /// One code point at a time: some, such as the tags of a flag, iconv would drop without a word.
  char ByteOf(std::string_view codePoint) {
    char byte = '?';
    char* from = const_cast<char*>(codePoint.data());  // iconv's interface; it reads only
    std::size_t left = codePoint.size();
    char* to = &byte;
    std::size_t room = 1;
    iconv(handle_, &from, &left, &to, &room);  // what it cannot convert leaves the "?"
    return byte;
  }

  iconv_t handle_;
};

}  // namespace

Text ToWindows1252(std::string_view utf8) {
  if (IsAscii(utf8)) return Text(utf8);
  Converter converter;
  return converter.Convert(utf8);
}

}  // namespace zenqay
