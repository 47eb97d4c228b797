// A job whose seams and events are traced.
#include "trace/traced_process.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "doubles/process_fixture.h"
#include "doubles/trace_text.h"

namespace zenqay {
namespace {

/// Sinks that write into the journal and fail when it says so.
class JournaledEvents : public DataCopyEvents {
 public:
  explicit JournaledEvents(Journal& journal) : journal_(journal) {}

  void DataCopyJob_DataCopyAlreadyInProgress(Value iTime, Value iTableName) override {
    journal_.Line("in use " + Shown(iTime) + " " + Shown(iTableName));
  }
  void DataCopyJob_DataCopyComplete(Value iTime, Value iTableName, Value icount, Value ucount, Value dcount) override {
    journal_.Line("complete " + Shown(iTime) + " " + Shown(iTableName) + " " + Shown(icount) + " " + Shown(ucount) +
                  " " + Shown(dcount));
  }
  void DataCopyJob_DataCopydone() override { journal_.Line("done"); }
  void DataCopyJob_DataCopyError(Value iTime, Value iTableName, Value ieNumber, Value ieMessage) override {
    journal_.Line("error " + Shown(iTime) + " " + Shown(iTableName) + " " + Shown(ieNumber) + " " + Shown(ieMessage));
  }
  void DataCopyJob_DataCopyStarted(Value iTime, Value iTableName) override {
    journal_.Line("started " + Shown(iTime) + " " + Shown(iTableName));
  }

 private:
  Journal& journal_;
};

struct TracedFixture : ProcessFixture {
  Trace trace{(directory.path() / "trace.jsonl").string(), "1.2.3"};
  TracedProcess traced{platform, components, database, trace};
  JournaledEvents sinks{journal};

  Text Lines() const { return WithoutTimes(directory.Read("trace.jsonl")); }
};

const Value kTime = DateTime::FromParts({1899, 12, 30, 10, 11, 12});

TEST(TracedProcess, WritesEachEventAndHandsItToItsSink) {
  TracedFixture fixture;
  DataCopyEvents& events = fixture.traced.process.eventsThrough(fixture.sinks);

  events.DataCopyJob_DataCopyStarted(kTime, std::int16_t{5});
  events.DataCopyJob_DataCopyComplete(kTime, std::int16_t{5}, 1, 2, 3);
  events.DataCopyJob_DataCopyAlreadyInProgress(kTime, std::int16_t{6});
  events.DataCopyJob_DataCopyError(kTime, std::int16_t{7}, std::int16_t{-1}, "See the log file.");
  events.DataCopyJob_DataCopydone();

  EXPECT_EQ(fixture.journal.Take(),
            "started time(10:11:12 AM) i16(5)\n"
            "complete time(10:11:12 AM) i16(5) i32(1) i32(2) i32(3)\n"
            "in use time(10:11:12 AM) i16(6)\n"
            "error time(10:11:12 AM) i16(7) i16(-1) \"See the log file.\"\n"
            "done\n");
  EXPECT_EQ(fixture.Lines(),
            R"({"n":1,"kind":"event","name":"DataCopyStarted","args":["10:11:12 AM",5]})"
            "\n"
            R"({"n":2,"kind":"event","name":"DataCopyComplete","args":["10:11:12 AM",5,1,2,3]})"
            "\n"
            R"({"n":3,"kind":"event","name":"DataCopyAlreadyInProgress","args":["10:11:12 AM",6]})"
            "\n"
            R"({"n":4,"kind":"event","name":"DataCopyError","args":["10:11:12 AM",7,-1,"See the log file."]})"
            "\n"
            R"({"n":5,"kind":"event","name":"DataCopydone","args":[]})"
            "\n");
}

TEST(TracedProcess, WritesAnEventBeforeItsSinkIsCalled) {
  TracedFixture fixture;
  DataCopyEvents& events = fixture.traced.process.eventsThrough(fixture.sinks);
  fixture.journal.FailAtLine(0, {440, "status", "gone"});

  EXPECT_EQ(Raised([&] { events.DataCopyJob_DataCopydone(); }), "440 status: gone");

  EXPECT_EQ(fixture.Lines(), R"({"n":1,"kind":"event","name":"DataCopydone","args":[]})"
                             "\n");
}

TEST(TracedProcess, WritesWhatGoesThroughEachSeam) {
  TracedFixture fixture;
  modDeclarations& process = fixture.traced.process;
  fixture.components.Register("A.B", "b");

  process.components.Create("A.B");
  process.database.CreateConnection()->Open();
  process.platform.ShowMessageBox("box");

  EXPECT_EQ(fixture.journal.Take(), "create A.B\nopen\nbox box\n");
  EXPECT_EQ(fixture.Lines(), R"({"n":1,"kind":"create","class":"A.B","id":1})"
                             "\n"
                             R"({"n":2,"kind":"open","connection":1})"
                             "\n"
                             R"({"n":3,"kind":"box","text":"box"})"
                             "\n");
}

TEST(ProcessWithoutATrace, HandsEventsStraightToTheSinks) {
  ProcessFixture fixture;
  JournaledEvents sinks(fixture.journal);

  EXPECT_EQ(&fixture.process.eventsThrough(sinks), &sinks);
}

}  // namespace
}  // namespace zenqay
