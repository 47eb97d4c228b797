#include "system/utc_stamp.h"

#include <gtest/gtest.h>

#include <regex>

namespace zenqay {
namespace {

TEST(UtcStamp, IsTheTimeToTheMillisecond) {
  EXPECT_EQ(std::regex_replace(UtcStamp(), std::regex("[0-9]"), "0"), "0000-00-00T00:00:00.000Z");
}

}  // namespace
}  // namespace zenqay
