#include "system/os_platform.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <regex>

#include "doubles/child_process.h"
#include "doubles/temp_directory.h"
#include "doubles/time_zone.h"

namespace zenqay {
namespace {

/// The arguments of a process, in one piece of memory as the operating system lays them out.
class ProcessArguments {
 public:
  explicit ProcessArguments(std::initializer_list<const char*> arguments) {
    for (const char* argument : arguments) memory_ += Text(argument) + '\0';
    std::size_t at = 0;
    for (const char* argument : arguments) {
      pointers_.push_back(memory_.data() + at);
      at += Text(argument).size() + 1;
    }
    pointers_.push_back(nullptr);
  }

  int count() const { return static_cast<int>(pointers_.size()) - 1; }
  char** vector() { return pointers_.data(); }

  /// The memory as a process list shows it, "." for each zero byte.
  Text Shown() const { return Replaced(memory_, Text(1, '\0'), "."); }

 private:
  Text memory_;
  std::vector<char*> pointers_;
};

/// What a deed on a platform with these arguments gives, in a process of its own.
ChildRun OnPlatform(std::initializer_list<const char*> list, const std::function<Text(OsPlatform&)>& deed) {
  return RunInChild([&] {
    ProcessArguments arguments(list);
    OsPlatform platform(arguments.count(), arguments.vector());
    return deed(platform);
  });
}

TEST(TakeCommandLine, JoinsTheArgumentsWithSingleBlanks) {
  const std::pair<std::initializer_list<const char*>, const char*> cases[] = {
      {{"zenqay-dbsync"}, ""},
      {{"zenqay-dbsync", "a{}b"}, "a{}b"},
      {{"zenqay-dbsync", "Provider=SQLite;Data", "Source=x{}DB{}5"}, "Provider=SQLite;Data Source=x{}DB{}5"},
      {{"zenqay-dbsync", "a  b", "", "c"}, "a  b  c"},
      {{"zenqay-dbsync", ""}, ""},
  };
  for (const auto& [arguments, commandLine] : cases) {
    EXPECT_EQ(OnPlatform(arguments, [](OsPlatform& platform) { return platform.TakeCommandLine(); }).result,
              commandLine);
  }
}

TEST(TakeCommandLine, WipesTheArgumentsOutOfTheProcessesMemory) {
  const ChildRun run = RunInChild([] {
    ProcessArguments arguments({"zenqay-dbsync", "Password=secret", "x"});
    OsPlatform platform(arguments.count(), arguments.vector());
    platform.TakeCommandLine();
    return arguments.Shown();
  });

  EXPECT_EQ(run.result, "zenqay-dbsync" + Text(19, '.'));
}

TEST(SetTitle, ShowsTheTitleWhereProcessListsLook) {
  const ChildRun run = RunInChild([] {
    ProcessArguments arguments({"dbsync", "a{}b{}c{}d{}e"});
    OsPlatform platform(arguments.count(), arguments.vector());
    platform.TakeCommandLine();
    platform.SetTitle("Zenqay DB Sync");
    std::array<char, 16> name{};
    ::prctl(PR_GET_NAME, name.data());
    return arguments.Shown() + "|" + name.data();
  });

  EXPECT_EQ(run.result, "Zenqay DB Sync.......|Zenqay DB Sync");
}

TEST(SetTitle, CutsATitleThatIsLongerThanItsRoom) {
  const ChildRun run = RunInChild([] {
    ProcessArguments arguments({"db", "ab"});
    OsPlatform platform(arguments.count(), arguments.vector());
    platform.SetTitle("Zenqay DB Sync of all tables");
    std::array<char, 16> name{};
    ::prctl(PR_GET_NAME, name.data());
    return arguments.Shown() + "|" + name.data();
  });

  EXPECT_EQ(run.result, "Zenqa.|Zenqay DB Sync ");
}

TEST(OsPlatform, TakesAProcessWithoutAnyArgument) {
  const ChildRun run = RunInChild([] {
    char* none = nullptr;
    OsPlatform platform(0, &none);
    platform.SetTitle("Zenqay DB Sync");
    return "<" + platform.TakeCommandLine() + ">";
  });

  EXPECT_EQ(run.result, "<>");
}

Text LocalTime(std::time_t moment) {
  std::tm parts{};
  char text[32];
  return Text(text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", ::localtime_r(&moment, &parts)));
}

TEST(Now, IsTheLocalWallClock) {
  for (const char* zone : {"UTC", "Asia/Kolkata", "America/New_York"}) {
    const TimeZone moved(zone);
    char name[] = "zenqay-dbsync";
    char* arguments[] = {name, nullptr};
    OsPlatform platform(1, arguments);

    std::time_t before = 0;
    DateTime now;
    do {
      before = std::time(nullptr);
      now = platform.Now();
    } while (before != std::time(nullptr));  // until no second begins in between

    EXPECT_EQ(IsoText(now), LocalTime(before)) << zone;
  }
}

TEST(ProgramDirectory, IsTheOneNamedByTheEnvironment) {
  const std::pair<const char*, const char*> cases[] = {
      {"/opt/zenqay", "/opt/zenqay"}, {"/opt/zenqay//", "/opt/zenqay"}, {"/", "/"}, {"share", "share"}};
  for (const auto& [home, directory] : cases) {
    const ChildRun run = RunInChild([home = home] {
      ::setenv("ZENQAY_HOME", home, 1);
      char* none = nullptr;
      return OsPlatform(0, &none).ProgramDirectory();
    });

    EXPECT_EQ(run.result, directory);
  }
}

TEST(ProgramDirectory, IsTheOneThatTheProgramStandsInOtherwise) {
  const Text own = std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
  for (const bool empty : {false, true}) {
    const ChildRun run = RunInChild([empty] {
      ::unsetenv("ZENQAY_HOME");
      if (empty) ::setenv("ZENQAY_HOME", "", 1);
      char* none = nullptr;
      return OsPlatform(0, &none).ProgramDirectory();
    });

    EXPECT_EQ(run.result, own);
  }
}

TEST(ShowMessageBox, PrintsItsTextToStandardErrorAndReturns) {
  const ChildRun run = OnPlatform({"zenqay-dbsync"}, [](OsPlatform& platform) {
    platform.ShowMessageBox("tstables or tstreenodes table is empty .. Cannot Proceed");
    platform.ShowMessageBox("100 % é");
    return Text("returned");
  });

  EXPECT_EQ(run.result, "returned");
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "tstables or tstreenodes table is empty .. Cannot Proceed\n100 % é\n");
}

TEST(NameCause, PrintsOneLineAndNoneForTheSameCauseAtOnceAgain) {
  const ChildRun run = OnPlatform({"zenqay-dbsync"}, [](OsPlatform& platform) {
    platform.NameCause("I18nText.xml: the file is missing");
    platform.NameCause("I18nText.xml: the file is missing");
    platform.NameCause(RuntimeError(PlatformFault::PathNotFound, "a.log"));
    platform.NameCause("I18nText.xml: the file is missing");
    return Text();
  });

  EXPECT_EQ(run.err,
            "zenqay-dbsync: I18nText.xml: the file is missing\n"
            "zenqay-dbsync: error 76 from \"ZenqayDBSync\": Path not found: a.log\n"
            "zenqay-dbsync: I18nText.xml: the file is missing\n");
}

TEST(OsPlatform, OpensClosedStandardStreamsOnTheNullDevice) {
  const ChildRun run = RunInChild([] {
    for (int descriptor = 0; descriptor <= 2; ++descriptor) ::close(descriptor);
    char* none = nullptr;
    OsPlatform platform(0, &none);
    Text shown;
    for (int descriptor = 0; descriptor <= 2; ++descriptor) {
      const Text link = "/proc/self/fd/" + std::to_string(descriptor);
      shown += std::filesystem::read_symlink(link).string() + " ";
    }
    platform.ShowMessageBox("nobody reads this");
    return shown;
  });

  EXPECT_EQ(run.result, "/dev/null /dev/null /dev/null ");
}

TEST(OsPlatform, LeavesOpenStandardStreamsAlone) {
  const ChildRun run = RunInChild([] {
    ::close(0);
    char* none = nullptr;
    OsPlatform platform(0, &none);
    const bool written = ::write(STDOUT_FILENO, "out", 3) == 3 && ::write(STDERR_FILENO, "err", 3) == 3;
    return std::filesystem::read_symlink("/proc/self/fd/0").string() + (written ? "" : ", not written");
  });

  EXPECT_EQ(run.result, "/dev/null");
  EXPECT_EQ(run.out, "out");
  EXPECT_EQ(run.err, "err");
}

TEST(OsPlatform, OutlivesAClosedPipe) {
  const ChildRun run = RunInChild([] {
    char* none = nullptr;
    OsPlatform platform(0, &none);
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) return Text("no pipe");
    ::close(ends[0]);
    ::dup2(ends[1], STDERR_FILENO);
    platform.ShowMessageBox("nobody reads this");
    return Text("alive");
  });

  EXPECT_EQ(run.result, "alive");
}

/// A text with "<time>" in place of each date and time at the beginning of a line.
Text WithoutTimes(const Text& text) {
  static const std::regex time(R"((^|\n)\d+/\d+/\d{4} \d+:\d{2}:\d{2} [AP]M )");
  return std::regex_replace(text, time, "$1<time> ");
}

TEST(StartLogging, CreatesNoFileUntilACauseIsNamed) {
  const TempDirectory directory;
  const ChildRun run = OnPlatform({"zenqay-dbsync"}, [&](OsPlatform& platform) {
    platform.NameCause("before");
    platform.StartLogging(directory.path().string() + "\\ZNQevtLG.txt");
    platform.ShowMessageBox("box");
    return Text("returned");
  });

  EXPECT_EQ(run.result, "returned");
  EXPECT_EQ(run.err, "zenqay-dbsync: before\nbox\n");
  EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

TEST(StartLogging, CollectsEachCauseThatIsNamedFromThenOn) {
  const TempDirectory directory;
  directory.Write("ZNQevtLG.txt", "of the job before\r\n");
  const ChildRun run = OnPlatform({"zenqay-dbsync"}, [&](OsPlatform& platform) {
    platform.StartLogging("C:" + directory.path().string() + "\\ZNQevtLG.txt");
    platform.NameCause("one");
    platform.NameCause("one");
    platform.NameCause("é 東, Password=secret;\r\nline 2\nline 3");
    platform.NameCause(RuntimeError(PlatformFault::PathNotFound, "a.log"));
    return Text();
  });

  EXPECT_EQ(run.err,
            "zenqay-dbsync: one\n"
            "zenqay-dbsync: é 東, Password=***;\r\nline 2\nline 3\n"
            "zenqay-dbsync: error 76 from \"ZenqayDBSync\": Path not found: a.log\n");
  EXPECT_EQ(WithoutTimes(directory.Read("ZNQevtLG.txt")),
            "of the job before\r\n"
            "<time>  one\r\n"
            "<time>  \xE9 ?, Password=***; line 2 line 3\r\n"
            "<time>  error 76 from \"ZenqayDBSync\": Path not found: a.log\r\n");
}

TEST(StartLogging, SaysNothingMoreOfAFileThatCannotBeWritten) {
  const ChildRun run = OnPlatform({"zenqay-dbsync"}, [](OsPlatform& platform) {
    platform.StartLogging("/no/such/directory\\ZNQevtLG.txt");
    platform.NameCause("one");
    return Text("returned");
  });

  EXPECT_EQ(run.result, "returned");
  EXPECT_EQ(run.err, "zenqay-dbsync: one\n");
}

TEST(Log, IsFreeForTheJobWhileACauseIsNamed) {
  const TempDirectory directory;
  OnPlatform({"zenqay-dbsync"}, [&](OsPlatform& platform) {
    platform.StartLogging(directory.path().string() + "\\ZNQevtLG.txt");
    platform.Log().Open(directory.path().string() + "\\run.log");
    platform.NameCause("one");
    platform.Log().WriteLine("line");
    platform.Log().Close();
    return Text();
  });

  EXPECT_EQ(directory.Read("run.log"), "line\r\n");
  EXPECT_EQ(WithoutTimes(directory.Read("ZNQevtLG.txt")), "<time>  one\r\n");
}

}  // namespace
}  // namespace zenqay
