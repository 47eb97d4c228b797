#include "runtime/platform.h"

#include <gtest/gtest.h>

#include "doubles/fake_platform.h"

namespace zenqay {
namespace {

TEST(NativePath, MapsTheSeparatorAndTheDrive) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"C:", "/"},
      {"c:", "/"},
      {"C:\\", "/"},
      {"C:\\ZenqayDBSync.log", "/ZenqayDBSync.log"},
      {"c:\\logs\\a.log", "/logs/a.log"},
      {"C:/logs/a.log", "/logs/a.log"},
      {"C:logs", "/logs"},
      {"/var/log\\Site_20040131.log", "/var/log/Site_20040131.log"},
      {"logs\\a b.log", "logs/a b.log"},
      {"\\ZNQevtLG.txt", "/ZNQevtLG.txt"},
      {"D:\\logs", "D:/logs"},
      {" C:\\logs", " C:/logs"},
      {"東\\é", "東/é"},
  };
  for (const auto& [path, native] : cases) EXPECT_EQ(NativePath(path), native) << path;
}

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
