#include "system/replaced_file.h"

#include <gtest/gtest.h>

#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

TEST(ReplaceFile, PutsAFileOfItsOwnerInThePlaceOfTheOneThatIsThere) {
  const TempDirectory directory;
  const fs::path path = directory.path() / "file";
  directory.Write("file", "before");
  fs::permissions(path, fs::perms::all);
  std::ifstream reader(path);

  EXPECT_EQ(ReplaceFile(path.string(), "after"), std::nullopt);

  Text read;
  reader >> read;
  EXPECT_EQ(read, "before");  // whoever has it open keeps what was there
  EXPECT_EQ(directory.Read("file"), "after");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(std::distance(fs::directory_iterator(directory.path()), {}), 1);
}

TEST(ReplaceFile, LeavesNothingBehindWhereItFails) {
  const TempDirectory directory;
  fs::create_directory(directory.path() / "file");
  directory.Write("file/inside", "");

  EXPECT_EQ(ReplaceFile((directory.path() / "file").string(), "after"), PlatformFault::PathAccess);
  EXPECT_EQ(ReplaceFile((directory.path() / "none" / "file").string(), "after"), PlatformFault::PathNotFound);

  EXPECT_EQ(std::distance(fs::directory_iterator(directory.path()), {}), 1);
}

}  // namespace
}  // namespace zenqay
