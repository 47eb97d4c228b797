// A connection string: what is left without an entry are the other entries, as they are written.
#include "engines/connection_string.h"

#include "fuzz/fuzz.h"

using namespace zenqay;

namespace {

using Entries = std::vector<ConnectionEntry>;

bool AreSame(const Entries& one, const Entries& other) {
  if (one.size() != other.size()) return false;
  for (std::size_t i = 0; i < one.size(); ++i) {
    const bool areSame =
        one[i].key == other[i].key && one[i].value == other[i].value && one[i].written == other[i].written;
    if (!areSame) return false;
  }
  return true;
}

Entries Without(const Entries& entries, std::string_view key) {
  Entries left;
  for (const ConnectionEntry& entry : entries) {
    if (!EqualsIgnoringCase(entry.key, key)) left.push_back(entry);
  }
  return left;
}

/// The value that counts.
Text ValueIn(const Entries& entries, std::string_view key) {
  Text value;
  bool isFound = false;
  for (const ConnectionEntry& entry : entries) {
    if (!EqualsIgnoringCase(entry.key, key)) continue;
    if (!isFound || !EqualsIgnoringCase(key, "Provider")) value = entry.value;
    isFound = true;
  }
  return value;
}

}  // namespace

FUZZ(input) {
  Entries entries;
  if (!Succeeds([&] { entries = EntriesOf(input); })) {
    Hold(!Succeeds([&] { ConnectionString string(input); }), "a malformed text is no connection string");
    return;
  }
  const ConnectionString string(input);
  Hold(AreSame(EntriesOf(WithoutEntry(input, "")), entries), "without nothing everything is left");
  for (const ConnectionEntry& entry : entries) {
    Hold(!entry.key.empty(), "an entry has a key");
    Hold(AreSame(EntriesOf(WithoutEntry(input, entry.key)), Without(entries, entry.key)), "the others are left");
    Hold(string.Value(entry.key) == ValueIn(entries, entry.key), "the value that counts is found");
  }
}
