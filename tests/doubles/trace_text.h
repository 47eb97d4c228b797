// What a trace says, without when and by whom it was written.
#pragma once

#include <gtest/gtest.h>

#include <regex>
#include <string>

namespace zenqay {

/// The lines behind the head, each without its milliseconds. A trace without lines may have no head.
inline std::string WithoutTimes(const std::string& trace) {
  static const std::regex head(
      R"(\{"kind":"trace","version":2,"program":"[^"]+","pid":\d+,"started":"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z"\})");
  static const std::regex milliseconds(R"(,"ms":\d+\}$)");
  std::istringstream lines(trace);
  std::string said;
  std::string line;
  if (std::getline(lines, line)) {
    EXPECT_TRUE(std::regex_match(line, head)) << line;
  }
  while (std::getline(lines, line)) {
    const std::string bare = std::regex_replace(line, milliseconds, "}");
    EXPECT_NE(bare, line);
    said += bare + "\n";
  }
  return said;
}

}  // namespace zenqay
