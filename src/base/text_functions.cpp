#include "base/text_functions.h"

#include <algorithm>

namespace zenqay {
namespace {

constexpr char LowerCased(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

Text Trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  const auto last = text.find_last_not_of(' ');
  return Text(text.substr(first, last - first + 1));
}

Text TrimLeft(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? Text() : Text(text.substr(first));
}

Text Replaced(std::string_view text, std::string_view mark, std::string_view replacement) {
  Text result;
  std::size_t from = 0;
  while (!mark.empty()) {
    const auto found = text.find(mark, from);
    if (found == std::string_view::npos) break;
    result.append(text, from, found - from).append(replacement);
    from = found + mark.size();
  }
  return result.append(text.substr(from));
}

std::vector<std::string_view> Split(std::string_view text, std::string_view mark) {
  std::vector<std::string_view> parts;
  for (auto at = text.find(mark); at != std::string_view::npos; at = text.find(mark)) {
    parts.push_back(text.substr(0, at));
    text.remove_prefix(at + mark.size());
  }
  parts.push_back(text);
  return parts;
}

Text OneLine(std::string_view text) {
  constexpr std::string_view kLineEnds = "\r\n";
  if (text.find_first_of(kLineEnds) == std::string_view::npos) return Text(text);
  Text line;
  while (!text.empty()) {
    const Text part = Trim(text.substr(0, text.find_first_of(kLineEnds)));
    if (!line.empty() && !part.empty()) line += ' ';
    line += part;
    text.remove_prefix(std::min(text.find_first_of(kLineEnds), text.size() - 1) + 1);
  }
  return line;
}

Text LowerCased(std::string_view text) {
  Text result(text);
  for (char& c : result) c = LowerCased(c);
  return result;
}

Text UpperCased(std::string_view text) {
  Text result(text);
  for (char& c : result) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return result;
}

bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), text.begin(),
                                                    [](char a, char b) { return LowerCased(a) == LowerCased(b); });
}

bool IsAscii(std::string_view text) {
  unsigned char bits = 0;
  for (const char c : text) bits |= static_cast<unsigned char>(c);  // without a way out it can be vectorized
  return bits < 0x80;
}

}  // namespace zenqay
