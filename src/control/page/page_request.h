// What is asked of the page, and what it answers.
#pragma once

#include <map>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

struct PageRequest {
  Text method;
  Text path;                     // decoded, without the query
  std::map<Text, Text> query;    // of a name that is given twice, the first
  std::map<Text, Text> headers;  // by their names in lower case; of one that is given twice, both, with a comma
  Text peer;                     // the address that it comes from

  /// Empty when it is missing.
  Text Header(const Text& name) const {
    const auto found = headers.find(name);
    return found == headers.end() ? Text() : found->second;
  }
};

struct PageAnswer {
  int status = 200;
  Text type = "text/plain; charset=utf-8";
  Text body;
  std::map<Text, Text> headers;
  bool isEventStream = false;  // the body is what happens from now on
  Text refusal;                // why it was refused, for the log; empty when it was not
};

}  // namespace zenqay
