// The connection string, read as the platform's data access reads it.
#pragma once

#include <utility>
#include <vector>

#include "runtime/text_functions.h"

namespace zenqay {

/// Keys and values: `Key=Value;Key="value; with a separator";…`. Keys are compared without case, blanks around keys and
/// values do not count, and a value that starts with ", ' or { goes to its closing mark; the mark itself is written
/// twice inside. Of a key that stands more than once the last value counts, but the first of Provider.
class ConnectionString {
 public:
  /// Raises -2147467259 for a text of another form. No error ever repeats the text, since it may hold a password.
  explicit ConnectionString(std::string_view text);

  /// The value of a key; empty when it is missing.
  Text Value(std::string_view key) const;

 private:
  void Put(Text key, Text value);

  std::vector<std::pair<Text, Text>> entries_;
};

}  // namespace zenqay
