#include "process/safeguards.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

Text Shown(const Text& limit, std::int64_t swept, std::int64_t before) {
  const std::optional<SweepLimit> read = SweepLimit::Read(limit);
  if (!read) return "no limit";
  return read->IsExceededBy(swept, before) ? "exceeded" : "kept";
}

TEST(SweepLimit, IsKeptByExactlyItsRowsAndExceededByOneMore) {
  struct Case {
    const char* limit;
    std::int64_t swept;
    std::int64_t before;
    const char* shown;
  };
  const Case cases[] = {
      {"10%", 0, 0, "kept"},        {"10%", 100, 1000, "kept"},       {"10%", 101, 1000, "exceeded"},
      {"10%", 1, 9, "exceeded"},    {"0%", 0, 1000, "kept"},          {"0%", 1, 1000, "exceeded"},
      {"100%", 1000, 1000, "kept"}, {"12.5%", 125, 1000, "kept"},     {"12.5%", 126, 1000, "exceeded"},
      {"0.01%", 1, 10'000, "kept"}, {"0.01%", 2, 10'000, "exceeded"}, {"0", 0, 7, "kept"},
      {"0", 1, 7, "exceeded"},      {"120", 120, 0, "kept"},          {"120", 121, 1'000'000, "exceeded"},
      {"33.3%", 333, 1000, "kept"}, {"33.3%", 334, 1000, "exceeded"},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(Shown(each.limit, each.swept, each.before), each.shown) << each.limit << " " << each.swept;
  }
}

TEST(SweepLimit, IsNoOtherText) {
  for (const char* text : {"", "%", "x", "10 %", " 10%", "-1", "-1%", "101%", "100.01%", "1.%", ".5%", "1.234%", "1.5",
                           "1e3", "1234567890123456"}) {
    EXPECT_EQ(Shown(text, 1, 1), "no limit") << text;
  }
}

TEST(SweepLimits, GiveATableItsOwnLimitInAnyCaseAndElseTheGeneralOne) {
  SweepLimits limits;
  EXPECT_EQ(limits.For("SITE"), nullptr);

  limits.ofTables.emplace_back("Site", *SweepLimit::Read("50"));
  EXPECT_EQ(limits.For("SITE")->text(), "50");
  EXPECT_EQ(limits.For("OBJECT"), nullptr);

  limits.general = SweepLimit::Read("10%");
  EXPECT_EQ(limits.For("site")->text(), "50");
  EXPECT_EQ(limits.For("OBJECT")->text(), "10%");
}

}  // namespace
}  // namespace zenqay
