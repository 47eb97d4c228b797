#include "system/paths.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace zenqay
