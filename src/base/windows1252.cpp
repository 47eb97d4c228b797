#include "base/windows1252.h"

#include <iconv.h>
#include <utf8.h>

#include <stdexcept>

#include "base/utf8.h"

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

  Text Convert(std::string_view bytes) {
    Text output;
    for (;;) {
      const std::size_t length = Utf8Length(bytes);
      Append(bytes.substr(0, length), output);
      if (length == bytes.size()) return output;
      output += '?';
      bytes.remove_prefix(length + 1);
    }
  }

 private:
  void Append(std::string_view text, Text& output) {
    for (auto end = text.begin(); end != text.end();) {
      const auto begin = end;
      utf8::unchecked::next(end);
      output += ByteOf({begin, end});
    }
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
