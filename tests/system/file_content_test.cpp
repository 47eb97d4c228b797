#include "system/file_content.h"

#include <gtest/gtest.h>

#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

TEST(ContentOfFile, IsAllOfItByteForByte) {
  const TempDirectory directory;
  const Text bytes("a\r\n\0\xff", 5);
  directory.Write("some", bytes);
  directory.Write("none", "");

  EXPECT_EQ(ContentOfFile((directory.path() / "some").string()), bytes);
  EXPECT_EQ(ContentOfFile((directory.path() / "none").string()), "");
}

TEST(ContentOfFile, IsNothingForWhatIsNoFile) {
  const TempDirectory directory;

  EXPECT_EQ(ContentOfFile((directory.path() / "missing").string()), std::nullopt);
  EXPECT_EQ(ContentOfFile(directory.path().string()), std::nullopt);
}

}  // namespace
}  // namespace zenqay
