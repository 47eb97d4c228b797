#include "control/duration.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(ReadDuration, ReadsANumberAndAUnit) {
  EXPECT_EQ(ReadDuration("0s"), Seconds(0));
  EXPECT_EQ(ReadDuration("30s"), Seconds(30));
  EXPECT_EQ(ReadDuration("10m"), Seconds(600));
  EXPECT_EQ(ReadDuration("2h"), Seconds(7200));
  EXPECT_EQ(ReadDuration("90d"), Seconds(7776000));
}

TEST(ReadDuration, RefusesEveryOtherText) {
  for (const char* text : {"", "s", "30", "30 s", "-1s", "1.5h", "1h30m", "2w", "40000d", "99999999999s"}) {
    EXPECT_EQ(ReadDuration(text), std::nullopt) << text;
  }
}

TEST(DurationText, GrowsWithTheSpan) {
  EXPECT_EQ(DurationText(Seconds(-5)), "0:00");
  EXPECT_EQ(DurationText(Seconds(7)), "0:07");
  EXPECT_EQ(DurationText(Seconds(754)), "12:34");
  EXPECT_EQ(DurationText(Seconds(3723)), "1:02:03");
  EXPECT_EQ(DurationText(Seconds(172799)), "47:59:59");
  EXPECT_EQ(DurationText(Seconds(273600)), "3 d 4 h");
}

}  // namespace
}  // namespace zenqay
