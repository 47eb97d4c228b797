#include "engines/connection_string.h"

#include <algorithm>

#include "engines/provider_errors.h"

namespace zenqay {
namespace {

[[noreturn]] void RaiseMalformed() {
  throw RuntimeError(kGeneralProviderFailure, kPlatformSource, "The connection string is malformed.");
}

void Skip(std::string_view& rest, std::string_view characters) {
  rest.remove_prefix(std::min(rest.find_first_not_of(characters), rest.size()));
}

Text TakeKey(std::string_view& rest) {
  const std::size_t end = rest.find_first_of("=;");
  if (end == std::string_view::npos || end == 0 || rest[end] == ';') RaiseMalformed();
  const Text key = Trim(rest.substr(0, end));
  rest.remove_prefix(end + 1);
  return key;
}

Text TakeQuoted(std::string_view& rest) {
  const char closing = rest.front() == '{' ? '}' : rest.front();
  Text value;
  for (std::size_t at = 1; at < rest.size(); ++at) {
    const bool isMark = rest[at] == closing;
    const bool isDoubled = isMark && at + 1 < rest.size() && rest[at + 1] == closing;
    if (isMark && !isDoubled) {
      rest.remove_prefix(at + 1);
      return value;
    }
    value += rest[at];
    if (isDoubled) ++at;
  }
  RaiseMalformed();
}

Text TakeValue(std::string_view& rest) {
  Skip(rest, " ");
  const bool isQuoted = rest.starts_with('"') || rest.starts_with('\'') || rest.starts_with('{');
  if (!isQuoted) {
    const std::string_view value = rest.substr(0, rest.find(';'));
    rest.remove_prefix(value.size());
    return Trim(value);
  }
  Text value = TakeQuoted(rest);
  Skip(rest, " ");
  if (!rest.empty() && rest.front() != ';') RaiseMalformed();
  return value;
}

}  // namespace

std::vector<ConnectionEntry> EntriesOf(std::string_view text) {
  std::vector<ConnectionEntry> entries;
  std::string_view rest = text;
  Skip(rest, " ;");
  while (!rest.empty()) {
    Text key = TakeKey(rest);
    const std::string_view from = rest;
    Text value = TakeValue(rest);
    const Text written = Trim(from.substr(0, from.size() - rest.size()));
    entries.push_back({std::move(key), std::move(value), written});
    Skip(rest, " ;");
  }
  return entries;
}

Text WithoutEntry(std::string_view text, std::string_view key) {
  Text left;
  for (const ConnectionEntry& entry : EntriesOf(text)) {
    if (EqualsIgnoringCase(entry.key, key)) continue;
    if (!left.empty()) left += ';';
    left += entry.key + "=" + entry.written;
  }
  return left;
}

ConnectionString::ConnectionString(std::string_view text) {
  for (ConnectionEntry& entry : EntriesOf(text)) {
    const bool staysFirst = EqualsIgnoringCase(entry.key, "Provider") && Find(entry.key) != nullptr;
    if (!staysFirst) Put(entry.key, std::move(entry.value));
  }
}

Text ConnectionString::Value(std::string_view key) const {
  for (const auto& [name, value] : entries_) {
    if (EqualsIgnoringCase(name, key)) return value;
  }
  return "";
}

void ConnectionString::Put(const Text& key, Text value) {
  if (Text* held = Find(key)) {
    *held = std::move(value);
  } else {
    entries_.emplace_back(key, std::move(value));
  }
}

void ConnectionString::Remove(std::string_view key) {
  std::erase_if(entries_, [&](const auto& entry) { return EqualsIgnoringCase(entry.first, key); });
}

Text* ConnectionString::Find(std::string_view key) {
  for (auto& [name, value] : entries_) {
    if (EqualsIgnoringCase(name, key)) return &value;
  }
  return nullptr;
}

}  // namespace zenqay
