// The connection string, read as the platform's data access reads it.
#pragma once

#include <utility>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// One entry of a connection string.
struct ConnectionEntry {
  Text key;
  Text value;
  Text written;  // the value as it stands, in its quotes
};

/// The entries in their order. The form is that of ConnectionString.
std::vector<ConnectionEntry> EntriesOf(std::string_view text);

/// The text without the entries of a key, the others as they are written.
Text WithoutEntry(std::string_view text, std::string_view key);

/// Keys and values: `Key=Value;Key="value; with a separator";…`. Keys are compared without case, blanks around keys and
/// values do not count, and a value that starts with ", ' or { goes to its closing mark; the mark itself is written
/// twice inside. Of a key that stands more than once the last value counts, but the first of Provider.
class ConnectionString {
 public:
  /// Raises -2147467259 for a text of another form. No error ever repeats the text, since it may hold a password.
  explicit ConnectionString(std::string_view text);

  /// The value of a key; empty when it is missing.
  Text Value(std::string_view key) const;

  /// Each key once, in the order of their first entries.
  const std::vector<std::pair<Text, Text>>& entries() const { return entries_; }

  /// Gives a key a value of its own, in its place or as the last entry, and takes a key away.
  void Put(const Text& key, Text value);
  void Remove(std::string_view key);

 private:
  Text* Find(std::string_view key);

  std::vector<std::pair<Text, Text>> entries_;
};

}  // namespace zenqay
