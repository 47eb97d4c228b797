#include "system/append_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "doubles/child_process.h"
#include "doubles/outcome.h"
#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

struct LogDirectory {
  TempDirectory directory;

  Text PathOf(const Text& name) const { return directory.path().string() + "\\" + name; }

  void Link(const Text& name, const Text& target) const {
    std::filesystem::create_symlink(target, directory.path() / name);
  }
};

void WriteRecord(AppendFile& file, const Text& path, const std::vector<Text>& lines) {
  file.Open(path);
  for (const Text& line : lines) file.WriteLine(line);
  file.Close();
}

TEST(AppendFile, EndsItsLinesWithCrLf) {
  const LogDirectory logs;
  AppendFile file;

  WriteRecord(file, logs.PathOf("a.log"), {"one", "", "two"});

  EXPECT_EQ(logs.directory.Read("a.log"), "one\r\n\r\ntwo\r\n");
}

TEST(AppendFile, AppendsToWhatIsThere) {
  const LogDirectory logs;
  logs.directory.Write("a.log", "before\n");
  AppendFile file;

  WriteRecord(file, logs.PathOf("a.log"), {"one"});
  WriteRecord(file, logs.PathOf("a.log"), {"two"});

  EXPECT_EQ(logs.directory.Read("a.log"), "before\none\r\ntwo\r\n");
}

TEST(AppendFile, WritesInTheCodePage) {
  const LogDirectory logs;
  AppendFile file;

  WriteRecord(file, logs.PathOf("a.log"), {"é € ž 東 😀 \xFF"});

  EXPECT_EQ(logs.directory.Read("a.log"), "\xE9 \x80 \x9E ? ? ?\r\n");
}

TEST(AppendFile, TakesTheDriveForTheRootDirectory) {
  const LogDirectory logs;
  AppendFile file;

  WriteRecord(file, "C:" + Replaced(logs.PathOf("a.log"), "/", "\\"), {"one"});

  EXPECT_EQ(logs.directory.Read("a.log"), "one\r\n");
}

TEST(AppendFile, LetsASecondWriterInBetweenItsLines) {
  const LogDirectory logs;
  AppendFile first;
  AppendFile second;

  first.Open(logs.PathOf("a.log"));
  second.Open(logs.PathOf("a.log"));
  first.WriteLine("one");
  second.WriteLine("two");
  first.WriteLine("three");
  first.Close();
  second.Close();

  EXPECT_EQ(logs.directory.Read("a.log"), "one\r\ntwo\r\nthree\r\n");
}

TEST(AppendFile, ReachesTheFileAtEachLine) {
  const LogDirectory logs;
  AppendFile file;

  file.Open(logs.PathOf("a.log"));
  file.WriteLine("one");

  EXPECT_EQ(logs.directory.Read("a.log"), "one\r\n");
}

TEST(AppendFile, Raises55WhenAFailedWriteLeftItOpen) {
  const LogDirectory logs;
  logs.Link("full.log", "/dev/full");
  AppendFile file;
  file.Open(logs.PathOf("full.log"));

  EXPECT_EQ(Raised([&] { file.WriteLine("one"); }), "61 ZenqayDBSync: Disk full: " + logs.PathOf("full.log"));
  EXPECT_TRUE(file.isOpen());
  EXPECT_EQ(Raised([&] { file.Open(logs.PathOf("a.log")); }),
            "55 ZenqayDBSync: File already open: " + logs.PathOf("full.log"));
  EXPECT_FALSE(std::filesystem::exists(logs.directory.path() / "a.log"));
  file.Close();
  WriteRecord(file, logs.PathOf("a.log"), {"one"});

  EXPECT_EQ(logs.directory.Read("a.log"), "one\r\n");
}

TEST(AppendFile, Raises52WhenItIsWrittenWithoutBeingOpen) {
  AppendFile file;

  EXPECT_EQ(Raised([&] { file.WriteLine("one"); }), "52 ZenqayDBSync: Bad file name or number");
}

TEST(AppendFile, Raises75ForAnEmptyPathAndForWhatIsNoFile) {
  const LogDirectory logs;
  const Text directory = logs.directory.path().string();
  const Text longName = logs.PathOf(Text(300, 'x'));
  logs.Link("loop", "loop");
  AppendFile file;

  EXPECT_EQ(Raised([&] { file.Open(""); }), "75 ZenqayDBSync: Path/File access error");
  EXPECT_EQ(Raised([&] { file.Open(directory); }), "75 ZenqayDBSync: Path/File access error: " + directory);
  EXPECT_EQ(Raised([&] { file.Open(longName); }), "75 ZenqayDBSync: Path/File access error: " + longName);
  EXPECT_EQ(Raised([&] { file.Open(logs.PathOf("loop")); }),
            "75 ZenqayDBSync: Path/File access error: " + logs.PathOf("loop"));
  EXPECT_FALSE(file.isOpen());
}

TEST(AppendFile, Raises76ForAMissingDirectory) {
  const LogDirectory logs;
  logs.directory.Write("file", "");
  AppendFile file;

  EXPECT_EQ(Raised([&] { file.Open(logs.PathOf("none\\a.log")); }),
            "76 ZenqayDBSync: Path not found: " + logs.PathOf("none\\a.log"));
  EXPECT_EQ(Raised([&] { file.Open(logs.PathOf("file\\a.log")); }),
            "76 ZenqayDBSync: Path not found: " + logs.PathOf("file\\a.log"));
}

TEST(AppendFile, Raises70WithoutThePermission) {
  const LogDirectory logs;
  logs.directory.Write("a.log", "");
  ::chmod((logs.directory.path() / "a.log").c_str(), 0444);
  ::chmod(logs.directory.path().c_str(), 0555);

  const ChildRun run = RunInChild([&] {
    DropPrivileges();
    AppendFile file;
    const Text inFile = Raised([&] { file.Open(logs.PathOf("a.log")); });
    return inFile + "\n" + Raised([&] { file.Open(logs.PathOf("new.log")); });
  });

  ::chmod(logs.directory.path().c_str(), 0755);
  EXPECT_EQ(run.result, "70 ZenqayDBSync: Permission denied: " + logs.PathOf("a.log") +
                            "\n70 ZenqayDBSync: Permission denied: " + logs.PathOf("new.log"));
}

TEST(AppendFile, RaisesWhatAHalfWrittenLineFailsWith) {
  const LogDirectory logs;

  const ChildRun run = RunInChild([&] {
    const rlimit sixBytes = {6, 6};
    ::setrlimit(RLIMIT_FSIZE, &sixBytes);
    ::signal(SIGXFSZ, SIG_IGN);
    AppendFile file;
    file.Open(logs.PathOf("a.log"));
    return Raised([&] { file.WriteLine("one two three"); });
  });

  EXPECT_EQ(run.result, "75 ZenqayDBSync: Path/File access error: " + logs.PathOf("a.log"));
  EXPECT_EQ(logs.directory.Read("a.log"), "one tw");
}

TEST(AppendFile, RaisesWhatClosingFailsWithAndIsFreeAgain) {
  const LogDirectory logs;

  const ChildRun run = RunInChild([&] {
    AppendFile file;
    file.Open(logs.PathOf("a.log"));
    for (int descriptor = 3; descriptor < 64; ++descriptor) {
      struct stat opened {};
      struct stat log {};
      const bool known =
          ::fstat(descriptor, &opened) == 0 && ::stat((logs.directory.path() / "a.log").c_str(), &log) == 0;
      if (known && opened.st_ino == log.st_ino) ::close(descriptor);
    }
    const Text closing = Raised([&] { file.Close(); });
    return closing + (file.isOpen() ? ", open" : ", free");
  });

  EXPECT_EQ(run.result, "75 ZenqayDBSync: Path/File access error: " + logs.PathOf("a.log") + ", free");
}

}  // namespace
}  // namespace zenqay
