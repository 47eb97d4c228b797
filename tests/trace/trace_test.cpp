#include "trace/trace.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <csignal>
#include <nlohmann/json.hpp>

#include "doubles/child_process.h"
#include "doubles/fake_platform.h"
#include "doubles/outcome.h"
#include "doubles/scripted_database.h"
#include "doubles/temp_directory.h"
#include "doubles/trace_text.h"

namespace zenqay {
namespace {

class Thing : public Component {
 public:
  Value Call(std::string_view operation, Arguments) override { RaiseNoSuchOperation(operation, "Thing"); }
};

struct TraceFile {
  TempDirectory directory;
  Trace trace{(directory.path() / "trace.jsonl").string(), "1.2.3"};

  Text Lines() const { return WithoutTimes(directory.Read("trace.jsonl")); }

  /// One value as the trace shows it.
  Text Shown(const Value& value) { return trace.Shown(value).dump(); }
};

DateTime At(const DateTimeParts& parts) {
  return DateTime::FromParts(parts);
}

TEST(Trace, WritesALineOfEveryKindWithItsKeysInOrder) {
  TraceFile file;

  file.trace.Event("DataCopyStarted", std::vector<Value>{At({1899, 12, 30, 10, 11, 12}), std::int16_t{5}});
  file.trace.Event("DataCopyError", std::vector<Value>{At({1899, 12, 30, 0, 0, 0}), std::int16_t{5}, std::int16_t{-1},
                                                       "See the log file."});
  file.trace.Event("DataCopydone", {});
  file.trace.LogRecord("C:\\logs\\Site_20040131.log", {"Date: 1/31/2004", "\"Rows copied: Site -  1\""});
  file.trace.MessageBox("There is no copy for a table of this name.");
  file.trace.Write("open", {{"connection", 1}});
  file.trace.Write("sql", {{"connection", 1}, {"text", "UPDATE Site SET upd_flag = 1 "}});

  EXPECT_EQ(file.Lines(),
            R"({"n":1,"kind":"event","name":"DataCopyStarted","args":["10:11:12 AM",5]})"
            "\n"
            R"({"n":2,"kind":"event","name":"DataCopyError","args":["12:00:00 AM",5,-1,"See the log file."]})"
            "\n"
            R"({"n":3,"kind":"event","name":"DataCopydone","args":[]})"
            "\n"
            R"({"n":4,"kind":"log","file":"C:\\logs\\Site_20040131.log",)"
            R"("lines":["Date: 1/31/2004","\"Rows copied: Site -  1\""]})"
            "\n"
            R"({"n":5,"kind":"box","text":"There is no copy for a table of this name."})"
            "\n"
            R"({"n":6,"kind":"open","connection":1})"
            "\n"
            R"({"n":7,"kind":"sql","connection":1,"text":"UPDATE Site SET upd_flag = 1 "})"
            "\n");
}

TEST(Trace, BeginsWithWhatWritesItAndEndsEachLineWithItsTime) {
  TraceFile file;

  file.trace.MessageBox("one");
  file.trace.MessageBox("two");

  std::istringstream lines(file.directory.Read("trace.jsonl"));
  std::vector<nlohmann::ordered_json> read;
  for (Text line; std::getline(lines, line);) read.push_back(nlohmann::ordered_json::parse(line));
  ASSERT_EQ(read.size(), 3u);
  const Text started = read[0]["started"];
  read[0]["started"] = "…";
  EXPECT_EQ(read[0].dump(), R"({"kind":"trace","version":2,"program":"1.2.3","pid":)" + std::to_string(::getpid()) +
                                R"(,"started":"…"})");
  EXPECT_EQ(std::regex_replace(started, std::regex("[0-9]"), "0"), "0000-00-00T00:00:00.000Z");
  const std::int64_t first = read[1]["ms"];
  const std::int64_t second = read[2]["ms"];
  EXPECT_GE(first, 0);
  EXPECT_GE(second, first);
  read[1]["ms"] = 0;
  EXPECT_EQ(read[1].dump(), R"({"n":1,"kind":"box","text":"one","ms":0})");
}

TEST(Trace, HasTheErrorOfAFailedLogRecordInPlaceOfItsLines) {
  TraceFile file;
  const RuntimeError error(PlatformFault::PathNotFound, "C:\\logs\\a.log");

  file.trace.LogRecord("C:\\logs\\a.log", error);

  EXPECT_EQ(file.Lines(),
            R"({"n":1,"kind":"log","file":"C:\\logs\\a.log",)"
            R"("error":{"number":76,"source":"ZenqayDBSync","description":"Path not found: C:\\logs\\a.log"}})"
            "\n");
}

TEST(Trace, TakesPasswordsOutOfEveryTextButTheLinesOfARecord) {
  TraceFile file;
  const RuntimeError error(5, "pwd=1", "pwd=2");

  file.trace.LogRecord("pwd=3", {"\"pwd=***\",5,\"behind it\""});
  file.trace.LogRecord("pwd=4", error);
  file.trace.MessageBox("pwd=5");

  EXPECT_EQ(file.Lines(),
            R"({"n":1,"kind":"log","file":"pwd=***","lines":["\"pwd=***\",5,\"behind it\""]})"
            "\n"
            R"({"n":2,"kind":"log","file":"pwd=***","error":{"number":5,"source":"pwd=***","description":"pwd=***"}})"
            "\n"
            R"({"n":3,"kind":"box","text":"pwd=***"})"
            "\n");
}

TEST(TraceValue, IsShownByItsKind) {
  TraceFile file;
  const std::pair<Value, const char*> cases[] = {
      {Value(), R"({"empty":true})"},
      {Null(), "null"},
      {true, "true"},
      {false, "false"},
      {std::int16_t{-1}, "-1"},
      {std::int32_t{70000}, "70000"},
      {2.5, "2.5"},
      {"", R"("")"},
      {"a \"b\" \\ \n é 東 \x7F", R"("a \"b\" \\ \n é 東 )"
                                  "\x7F\""},
      {At({2004, 1, 31, 10, 11, 12}), R"("2004-01-31T10:11:12")"},
      {At({2004, 1, 31}), R"("2004-01-31T00:00:00")"},
      {At({987, 6, 5, 23, 59, 59}), R"("0987-06-05T23:59:59")"},
      {At({1899, 12, 29, 12, 0, 0}), R"("1899-12-29T12:00:00")"},
      {At({1899, 12, 30, 13, 0, 0}), R"("1:00:00 PM")"},
      {DateTime(), R"("12:00:00 AM")"},
      {Object(), R"({"object":0})"},
      {std::nan(""), "null"},
  };
  for (const auto& [value, shown] : cases) EXPECT_EQ(file.Shown(value), shown);
}

TEST(Trace, ShowsAByteThatIsNoUtf8AsTheReplacementCharacter) {
  TraceFile file;

  file.trace.MessageBox("a\xFFz");

  EXPECT_EQ(file.Lines(), "{\"n\":1,\"kind\":\"box\",\"text\":\"a\uFFFDz\"}\n");
}

TEST(TraceValue, OfAFieldIsItsNameAndWhatItHolds) {
  TraceFile file;
  Journal journal;
  ScriptedDatabase database(journal);
  database.Answer("Q", {{{"tableid", std::int32_t{5}}}, {{"tableid", Null()}}, {{"tableid", At({2004, 1, 31})}}});
  const auto rows = database.CreateRecordset();
  const auto connection = database.CreateConnection();
  rows->Open("Q", connection, CursorType::Keyset, LockType::Optimistic, CommandType::Unspecified);
  const Value field = Object(std::make_shared<Field>(rows, "TableID"));

  EXPECT_EQ(file.Shown(field), R"({"field":"TableID","value":5})");
  rows->MoveNext();
  EXPECT_EQ(file.Shown(field), R"({"field":"TableID","value":null})");
  rows->MoveNext();
  EXPECT_EQ(file.Shown(field), R"({"field":"TableID","value":"2004-01-31T00:00:00"})");
}

TEST(TraceObject, IsNumberedAtFirstSightAndKeepsItsNumber) {
  TraceFile file;
  const Object first(std::make_shared<Thing>());
  const Object second(std::make_shared<Thing>());

  EXPECT_EQ(file.Shown(second), R"({"object":1})");
  EXPECT_EQ(file.Shown(first), R"({"object":2})");
  EXPECT_EQ(file.Shown(second), R"({"object":1})");
  EXPECT_EQ(file.trace.IdOf(first), 2);
  EXPECT_EQ(file.trace.IdOf(Object()), 0);
}

TEST(TraceObject, AtTheAddressOfAReleasedOneIsAnother) {
  TraceFile file;
  alignas(Thing) std::array<std::byte, sizeof(Thing)> memory{};
  const auto makeHere = [&] {
    return Object(std::shared_ptr<Thing>(new (memory.data()) Thing, [](Thing* thing) { thing->~Thing(); }));
  };

  const std::int64_t first = file.trace.IdOf(makeHere());
  const std::int64_t second = file.trace.IdOf(makeHere());

  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 2);
}

/// Counts what is allocated and not given back.
template <typename T>
struct CountingAllocator {
  using value_type = T;

  explicit CountingAllocator(int& living) : live(&living) {}
  template <typename U>
  CountingAllocator(const CountingAllocator<U>& other) : live(other.live) {}

  T* allocate(std::size_t count) {
    ++*live;
    return std::allocator<T>().allocate(count);
  }
  void deallocate(T* memory, std::size_t count) {
    --*live;
    std::allocator<T>().deallocate(memory, count);
  }
  template <typename U>
  bool operator==(const CountingAllocator<U>& other) const {
    return live == other.live;
  }

  int* live;
};

TEST(TraceObject, TakesNoMemoryForLongOnceItIsReleased) {
  TraceFile file;
  int live = 0;
  const Object kept(std::make_shared<Thing>());
  file.trace.IdOf(kept);

  int highest = 0;
  for (int i = 0; i < 100'000; ++i) {
    file.trace.IdOf(Object(std::allocate_shared<Thing>(CountingAllocator<Thing>(live))));
    highest = std::max(highest, live);
  }

  EXPECT_LE(highest, 2048);
  EXPECT_EQ(file.trace.IdOf(kept), 1);
  EXPECT_EQ(file.trace.IdOf(Object(std::make_shared<Thing>())), 100'002);
}

TEST(Trace, ReplacesTheFileAtStartAndFlushesEachLine) {
  TempDirectory directory;
  directory.Write("trace.jsonl", "of the run before\n");

  Trace trace((directory.path() / "trace.jsonl").string(), "1.2.3");
  EXPECT_EQ(directory.Read("trace.jsonl"), "");
  trace.MessageBox("one");

  EXPECT_EQ(WithoutTimes(directory.Read("trace.jsonl")), "{\"n\":1,\"kind\":\"box\",\"text\":\"one\"}\n");
}

TEST(Trace, HasTheProcessIdInItsNameWhereItIsAskedFor) {
  TempDirectory directory;

  Trace trace((directory.path() / "t-%p-%p.jsonl").string(), "1.2.3");
  trace.MessageBox("one");

  const Text id = std::to_string(::getpid());
  EXPECT_EQ(WithoutTimes(directory.Read("t-" + id + "-" + id + ".jsonl")),
            "{\"n\":1,\"kind\":\"box\",\"text\":\"one\"}\n");
}

TEST(Trace, Raises75WhenItIsAskedForAndCannotBeWritten) {
  TempDirectory directory;
  const Text path = (directory.path() / "none/trace.jsonl").string();

  Trace trace(path, "1.2.3");  // says nothing yet, so that the command line is checked first
  trace.MessageBox("goes nowhere");

  EXPECT_EQ(Raised([&] { trace.RequireUsable(); }), "75 ZenqayDBSync: Path/File access error: " + path);
}

TEST(Trace, IsForItsOwnerAlone) {
  TempDirectory directory;
  directory.Write("trace.jsonl", "of a run that let others read");
  std::filesystem::permissions(directory.path() / "trace.jsonl", std::filesystem::perms(0644));

  for (const char* name : {"trace.jsonl", "new.jsonl"}) {
    Trace trace((directory.path() / name).string(), "1.2.3");

    EXPECT_EQ(std::filesystem::status(directory.path() / name).permissions(), std::filesystem::perms(0600)) << name;
  }
}

TEST(Trace, OnAFullDiskEndsWithOneCauseAndLetsTheJobGoOn) {
  TempDirectory directory;
  Journal journal;
  FakePlatform platform(journal, "");
  const std::filesystem::perms before = std::filesystem::status("/dev/full").permissions();
  Trace trace("/dev/full", "1.2.3");
  trace.TellEndTo(platform);

  trace.MessageBox("one");
  trace.MessageBox("two");

  EXPECT_EQ(platform.causes, std::vector<Text>{"the trace ends here: Disk full: /dev/full"});
  EXPECT_EQ(std::filesystem::status("/dev/full").permissions(), before);
}

TEST(Trace, KeepsNoHalfOfTheLineThatDidNotFit) {
  TempDirectory directory;
  const Text path = (directory.path() / "trace.jsonl").string();

  const ChildRun run = RunInChild([&] {
    Journal journal;
    FakePlatform platform(journal, "");
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{200, 200};  // the head and two lines
    ::setrlimit(RLIMIT_FSIZE, &limit);
    Trace trace(path, "1.2.3");
    trace.TellEndTo(platform);
    trace.MessageBox("one");
    trace.MessageBox("two");
    trace.MessageBox("three");
    return platform.causes.size() == 1 ? platform.causes[0] : "causes: " + std::to_string(platform.causes.size());
  });

  EXPECT_EQ(run.result, "the trace ends here: Path/File access error: " + path);
  EXPECT_EQ(WithoutTimes(directory.Read("trace.jsonl")),
            "{\"n\":1,\"kind\":\"box\",\"text\":\"one\"}\n"
            "{\"n\":2,\"kind\":\"box\",\"text\":\"two\"}\n");
}

}  // namespace
}  // namespace zenqay
