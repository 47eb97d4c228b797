#include "base/secrets.h"

#include <algorithm>

namespace zenqay {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kLineEnds = "\r\n";

/// What connection strings call a password, and how the word must start.
struct SecretKey {
  std::string_view word;
  bool standsAlone;  // no letter in front of it: "compass=north" keeps its value
};
constexpr SecretKey kSecretKeys[] = {{"password", false},     {"passwd", false},      {"pwd", false},
                                     {"secret", false},       {"accesstoken", false}, {"access token", false},
                                     {"access_token", false}, {"pass", true}};

/// Keys of a user, behind whose name "/" opens a password.
constexpr std::string_view kUserKeys[] = {"user id", "userid", "uid", "username", "user name", "user"};

bool IsWordCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

bool StartsWord(std::string_view text, std::size_t at) {
  return at == 0 || !IsWordCharacter(text[at - 1]);
}

std::size_t BehindBlanks(std::string_view text, std::size_t at) {
  return std::min(text.find_first_not_of(kBlanks, at), text.size());
}

/// Where the value begins when `key` and an equals sign stand at `at`; npos when they do not.
std::size_t ValueBehind(std::string_view key, std::string_view text, std::size_t at) {
  if (!StartsWithIgnoringCase(text.substr(at), key)) return std::string_view::npos;
  const std::size_t sign = BehindBlanks(text, at + key.size());
  if (sign == text.size() || text[sign] != '=') return std::string_view::npos;
  return BehindBlanks(text, sign + 1);
}

/// The end of a value in quotes or braces, whose `close` is doubled inside it; the end of the text for one left open.
std::size_t QuotedEnd(std::string_view text, std::size_t from, char close) {
  for (std::size_t at = text.find(close, from); at < text.size(); at = text.find(close, at + 2)) {
    if (at + 1 == text.size() || text[at + 1] != close) return at + 1;
  }
  return text.size();
}

/// True when a key and its equals sign stand at `at`, or nothing any more.
bool IsEntryStart(std::string_view text, std::size_t at) {
  at = BehindBlanks(text, at);
  if (at == text.size()) return true;
  const std::size_t from = at;
  while (at < text.size() && (IsWordCharacter(text[at]) || kBlanks.find(text[at]) != std::string_view::npos)) ++at;
  return at > from && at < text.size() && text[at] == '=';
}

/// The end of a bare value. A ";" ends it only in front of another entry: it may be one of the password's own.
std::size_t BareEnd(std::string_view text, std::size_t from) {
  const std::size_t end = std::min({text.find("{}", from), text.find_first_of(kLineEnds, from), text.size()});
  for (std::size_t at = text.find(';', from); at < end; at = text.find(';', at + 1)) {
    if (IsEntryStart(text.substr(0, end), at + 1)) return at;
  }
  return end;
}

/// The end of the value that starts at `from`: behind its closing quote or brace, or in front of what follows it.
std::size_t ValueEnd(std::string_view text, std::size_t from) {
  if (from == text.size()) return from;
  const char open = text[from];
  const bool isQuoted = open == '"' || open == '\'' || (open == '{' && !text.substr(from).starts_with("{}"));
  if (!isQuoted) return BareEnd(text, from);
  const std::size_t end = QuotedEnd(text, from + 1, open == '{' ? '}' : open);
  // What is no separator there shows that the quote was one of the password's own characters.
  const bool isWhole = end == text.size() || !(IsWordCharacter(text[end]) || text[end] == open);
  return isWhole ? end : BareEnd(text, end);
}

/// Where the password begins whose key stands at `at`; npos when none stands there.
std::size_t PasswordAt(std::string_view text, std::size_t at) {
  for (const SecretKey& key : kSecretKeys) {
    if (key.standsAlone && !StartsWord(text, at)) continue;
    const std::size_t value = ValueBehind(key.word, text, at);
    if (value != std::string_view::npos) return value;
  }
  return std::string_view::npos;
}

/// Where a password begins in the value of a user: behind a "/", or behind a key that no ";" keeps apart from the user,
/// as in "user=scott password=ti/ger".
std::size_t PasswordInUser(std::string_view text, std::size_t value) {
  const std::size_t slash = text.find('/', value);
  if (slash >= BareEnd(text, value)) return std::string_view::npos;
  for (std::size_t at = value; at < slash; ++at) {
    const std::size_t password = PasswordAt(text, at);
    if (password != std::string_view::npos) return password;
  }
  return slash + 1;
}

/// Where a secret begins whose key, or its user's, stands at `at`; npos when none stands there.
std::size_t SecretAt(std::string_view text, std::size_t at) {
  const std::size_t password = PasswordAt(text, at);
  if (password != std::string_view::npos || !StartsWord(text, at)) return password;
  for (const std::string_view key : kUserKeys) {
    const std::size_t value = ValueBehind(key, text, at);
    if (value != std::string_view::npos) return PasswordInUser(text, value);
  }
  return std::string_view::npos;
}

}  // namespace

Text WithoutSecrets(std::string_view text) {
  if (text.find('=') == std::string_view::npos) return Text(text);
  Text clean;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t secret = SecretAt(text, at);
    if (secret == std::string_view::npos) {
      clean += text[at++];
    } else {
      clean.append(text, at, secret - at).append("***");
      at = ValueEnd(text, secret);
    }
  }
  return clean;
}

}  // namespace zenqay
