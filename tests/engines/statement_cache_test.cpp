#include "engines/statement_cache.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(StatementCache, LetsGoOfTheOneThatHasNotBeenAskedForLongest) {
  StatementCache<int> cache(2);

  EXPECT_EQ(cache.Add("a", 1), std::nullopt);
  EXPECT_EQ(cache.Add("b", 2), std::nullopt);
  EXPECT_EQ(*cache.Find("a"), 1);
  EXPECT_EQ(cache.Add("c", 3), 2);

  EXPECT_EQ(*cache.Find("a"), 1);
  EXPECT_EQ(cache.Find("b"), nullptr);
  EXPECT_EQ(*cache.Find("c"), 3);
}

TEST(StatementCache, ForgetsWhatIsDropped) {
  StatementCache<int> cache(2);
  cache.Add("a", 1);

  cache.Drop("a");

  EXPECT_EQ(cache.Find("a"), nullptr);
  EXPECT_EQ(cache.Add("b", 2), std::nullopt);
  EXPECT_EQ(cache.Add("c", 3), std::nullopt);
}

}  // namespace
}  // namespace zenqay
