#include "contracts/platform.h"

#include <gtest/gtest.h>

#include "doubles/fake_platform.h"

namespace zenqay {
namespace {

TEST(NameCause, NamesAnErrorInOneLine) {
  Journal journal;
  FakePlatform platform(journal, "");

  platform.NameCause(RuntimeError(100, "zenqa Data Copy - Start", "No tables.\r\nThe copy cannot start."));
  platform.NameCause(RuntimeError(PlatformFault::PathNotFound, "C:\\logs\\a.log"));
  platform.NameCause(RuntimeError(-2147467259, "driver", "first\nsecond"));

  EXPECT_EQ(platform.causes,
            (std::vector<Text>{"error 100 from \"zenqa Data Copy - Start\": No tables. The copy cannot start.",
                               "error 76 from \"ZenqayDBSync\": Path not found: C:\\logs\\a.log",
                               "error -2147467259 from \"driver\": first second"}));
}

}  // namespace
}  // namespace zenqay
