#include "base/secrets.h"

#include <algorithm>

namespace zenqay {
namespace {

/// The end of a value in quotes or braces, whose `close` is doubled inside it; the end of the text for one left open.
std::size_t QuotedEnd(std::string_view text, std::size_t from, char close) {
  for (std::size_t at = text.find(close, from); at < text.size(); at = text.find(close, at + 2)) {
    if (at + 1 == text.size() || text[at + 1] != close) return at + 1;
  }
  return text.size();
}

/// The end of the value that starts at `from`: behind its closing quote or brace, or at the next ";".
std::size_t ValueEnd(std::string_view text, std::size_t from) {
  if (from == text.size()) return from;
  const char open = text[from];
  if (open == '"' || open == '\'') return QuotedEnd(text, from + 1, open);
  if (open == '{') return QuotedEnd(text, from + 1, '}');
  return std::min(text.find(';', from), text.size());
}

/// Where the value of a secret key that stands at `at` begins; npos when none stands there.
std::size_t SecretValueAt(std::string_view text, std::size_t at) {
  for (const std::string_view key : {"password", "pwd"}) {
    if (!StartsWithIgnoringCase(text.substr(at), key)) continue;
    const auto sign = text.find_first_not_of(' ', at + key.size());
    if (sign == std::string_view::npos || text[sign] != '=') continue;
    return std::min(text.find_first_not_of(' ', sign + 1), text.size());
  }
  return std::string_view::npos;
}

}  // namespace

Text WithoutSecrets(std::string_view text) {
  Text clean;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t value = SecretValueAt(text, at);
    if (value == std::string_view::npos) {
      clean += text[at++];
    } else {
      clean.append(text, at, value - at).append("***");
      at = ValueEnd(text, value);
    }
  }
  return clean;
}

}  // namespace zenqay
