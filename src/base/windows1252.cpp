#include "base/windows1252.h"

#include <iconv.h>
#include <utf8.h>

#include <array>
#include <stdexcept>

#include "base/utf8.h"

namespace zenqay {
namespace {

constexpr const char* kUtf8 = "UTF-8";
constexpr const char* kWindows1252 = "WINDOWS-1252";

class Converter {
 public:
  Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {
    if (handle_ == reinterpret_cast<iconv_t>(-1)) throw std::runtime_error("iconv has no WINDOWS-1252");
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() { iconv_close(handle_); }

  /// One character at a time: some, such as the tags of a flag, iconv would drop without a word. One that it cannot
  /// convert becomes a "?".
  void Append(std::string_view character, Text& output) {
    std::array<char, 4> bytes{'?'};
    char* from = const_cast<char*>(character.data());  // iconv's interface; it reads only
    std::size_t left = character.size();
    char* to = bytes.data();
    std::size_t room = bytes.size();
    iconv(handle_, &from, &left, &to, &room);
    output.append(bytes.data(), to == bytes.data() ? 1 : bytes.size() - room);
  }

 private:
  iconv_t handle_;
};

void AppendAsWindows1252(Converter& converter, std::string_view utf8, Text& output) {
  for (auto end = utf8.begin(); end != utf8.end();) {
    const auto begin = end;
    utf8::unchecked::next(end);
    converter.Append({begin, end}, output);
  }
}

}  // namespace

Text ToWindows1252(std::string_view utf8) {
  if (IsAscii(utf8)) return Text(utf8);
  Converter converter(kWindows1252, kUtf8);
  Text output;
  for (;;) {
    const std::size_t length = Utf8Length(utf8);
    AppendAsWindows1252(converter, utf8.substr(0, length), output);
    if (length == utf8.size()) return output;
    output += '?';
    utf8.remove_prefix(length + 1);
  }
}

Text FromWindows1252(std::string_view bytes) {
  if (IsAscii(bytes)) return Text(bytes);
  Converter converter(kUtf8, kWindows1252);
  Text output;
  for (std::size_t at = 0; at < bytes.size(); ++at) converter.Append(bytes.substr(at, 1), output);
  return output;
}

}  // namespace zenqay
