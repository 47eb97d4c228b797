#include "control/nearest_word.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(NearestWordHint, NamesTheWordThatDiffersByASlipAndElseAllOfThem) {
  const std::vector<Text> words = {"connection", "name", "parallel"};
  struct Case {
    Text written;
    Text hint;
  };
  const Case cases[] = {
      {"conection", " (did you mean \"connection\"?)"},
      {"Parallel", " (did you mean \"parallel\"?)"},
      {"nmae", " (did you mean \"name\"?)"},
      {"paralel-jobs", " (there are: connection, name, parallel)"},
      {"x", " (there are: connection, name, parallel)"},
      {"", " (there are: connection, name, parallel)"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(NearestWordHint(c.written, words), c.hint) << c.written;
  }
}

TEST(NearestWordHint, SaysNothingWithoutWords) {
  EXPECT_EQ(NearestWordHint("name", {}), "");
}

}  // namespace
}  // namespace zenqay
