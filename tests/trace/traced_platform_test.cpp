// The platform and its log file as they stand in a trace.
#include "trace/traced_platform.h"

#include <gtest/gtest.h>

#include "doubles/fake_platform.h"
#include "doubles/outcome.h"
#include "doubles/temp_directory.h"
#include "doubles/trace_text.h"

namespace zenqay {
namespace {

struct TracedFake {
  TempDirectory directory;
  Journal journal;
  FakePlatform inner{journal, "/opt/zenqay"};
  Trace trace{(directory.path() / "trace.jsonl").string(), "1.2.3"};
  TracedPlatform platform{inner, trace};

  Text PathOf(const Text& name) const { return directory.path().string() + "\\" + name; }
  Text Lines() const { return WithoutTimes(directory.Read("trace.jsonl")); }

  /// The beginning of a line about a log record.
  Text Record(int number, const Text& file) const {
    return "{\"n\":" + std::to_string(number) + ",\"kind\":\"log\",\"file\":\"" + Replaced(file, "\\", "\\\\") + "\",";
  }
};

TEST(TracedPlatform, WritesAMessageBoxOnceItWasShown) {
  TracedFake traced;

  traced.platform.ShowMessageBox("say \"no\"");
  traced.journal.FailAtLine(0, RuntimeError(PlatformFault::Automation));
  Raised([&] { traced.platform.ShowMessageBox("never shown"); });

  EXPECT_EQ(traced.journal.Take(), "box say \"no\"\nbox never shown\n");
  EXPECT_EQ(traced.Lines(), "{\"n\":1,\"kind\":\"box\",\"text\":\"say \\\"no\\\"\"}\n");
}

TEST(TracedPlatform, HandsEverythingElseOnAndWritesNothingOfIt) {
  TracedFake traced;

  traced.platform.SetTitle("Zenqay DB Sync");
  traced.platform.StartLogging("C:\\ZNQevtLG.txt");
  traced.platform.NameCause("a cause");
  traced.platform.NameCause(RuntimeError(PlatformFault::Overflow));

  EXPECT_EQ(traced.platform.Now(), traced.inner.now);
  EXPECT_EQ(traced.platform.ProgramDirectory(), "/opt/zenqay");
  EXPECT_EQ(traced.journal.Take(), "title Zenqay DB Sync\nlogging C:\\ZNQevtLG.txt\n");
  EXPECT_EQ(traced.inner.causes, (std::vector<Text>{"a cause", "error 6 from \"ZenqayDBSync\": Overflow"}));
  EXPECT_EQ(traced.Lines(), "");
}

TEST(TracedLogFile, WritesEachRecordAsTextWhenItsFileIsClosed) {
  TracedFake traced;
  LogFile& log = traced.platform.Log();

  log.Open(traced.PathOf("a.log"));
  log.WriteLine("東");
  log.WriteLine("\"say \"no\"\"");
  EXPECT_EQ(traced.Lines(), "");
  log.Close();
  log.Open(traced.PathOf("b.log"));
  log.WriteLine("two");
  log.Close();

  EXPECT_EQ(traced.Lines(), traced.Record(1, traced.PathOf("a.log")) + R"("lines":["東","\"say \"no\"\""]})" + "\n" +
                                traced.Record(2, traced.PathOf("b.log")) + R"("lines":["two"]})" + "\n");
  EXPECT_EQ(traced.directory.Read("a.log"), "?\r\n\"say \"no\"\"\r\n");
  EXPECT_EQ(traced.directory.Read("b.log"), "two\r\n");
}

TEST(TracedLogFile, LeavesLinesThatAreFreeOfPasswordsAsTheyAre) {
  TracedFake traced;
  LogFile& log = traced.platform.Log();

  log.Open(traced.PathOf("a.log"));
  log.WriteLine("\"pwd=***\",5,\"behind it\"");
  log.Close();

  EXPECT_EQ(traced.Lines(),
            traced.Record(1, traced.PathOf("a.log")) + R"("lines":["\"pwd=***\",5,\"behind it\""]})" + "\n");
}

TEST(TracedLogFile, WritesTheErrorOfARecordThatCannotBeOpenedUnderThePathThatWasAskedFor) {
  TracedFake traced;
  LogFile& log = traced.platform.Log();
  std::filesystem::create_symlink("/dev/full", traced.directory.path() / "full.log");
  const Text full = traced.PathOf("full.log");

  EXPECT_EQ(Raised([&] { log.Open(""); }), "75 ZenqayDBSync: Path/File access error");
  log.Open(full);
  EXPECT_EQ(Raised([&] { log.WriteLine("one"); }), "61 ZenqayDBSync: Disk full: " + full);
  EXPECT_EQ(Raised([&] { log.Open("other.log"); }), "55 ZenqayDBSync: File already open: " + full);

  const Text shown = Replaced(full, "\\", "\\\\");
  EXPECT_EQ(traced.Lines(),
            traced.Record(1, "") +
                R"("error":{"number":75,"source":"ZenqayDBSync","description":"Path/File access error"}})" + "\n" +
                traced.Record(2, full) + R"("error":{"number":61,"source":"ZenqayDBSync","description":"Disk full: )" +
                shown + "\"}}\n" + traced.Record(3, "other.log") +
                R"("error":{"number":55,"source":"ZenqayDBSync","description":"File already open: )" + shown +
                "\"}}\n");
}

/// A log file that fails only when it is closed, as on a network drive.
class LateLogFile : public LogFile {
 public:
  void Open(const Text&) override {}
  void WriteLine(const Text&) override {}
  void Close() override { throw RuntimeError(PlatformFault::DiskFull, "late.log"); }
};

TEST(TracedLogFile, WritesTheErrorOfARecordThatCannotBeClosedInPlaceOfItsLines) {
  TracedFake traced;
  LateLogFile late;
  TracedLogFile log(late, traced.trace);

  log.Open("late.log");
  log.WriteLine("one");
  EXPECT_EQ(Raised([&] { log.Close(); }), "61 ZenqayDBSync: Disk full: late.log");

  EXPECT_EQ(traced.Lines(),
            traced.Record(1, "late.log") +
                R"("error":{"number":61,"source":"ZenqayDBSync","description":"Disk full: late.log"}})" + "\n");
}

class ForgetfulLogFile : public LogFile {
 public:
  void Open(const Text&) override {}
  void WriteLine(const Text&) override { throw std::bad_alloc(); }
  void Close() override {}
};

TEST(TracedLogFile, WritesAsAnErrorWhateverWasThrown) {
  TracedFake traced;
  ForgetfulLogFile forgetful;
  TracedLogFile log(forgetful, traced.trace);

  log.Open("run.log");
  EXPECT_THROW(log.WriteLine("one"), std::bad_alloc);

  EXPECT_EQ(traced.Lines(), traced.Record(1, "run.log") +
                                R"("error":{"number":7,"source":"ZenqayDBSync","description":"Out of memory"}})" +
                                "\n");
}

}  // namespace
}  // namespace zenqay
