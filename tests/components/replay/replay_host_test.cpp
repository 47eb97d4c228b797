// The components of a recorded run, out of its trace.
#include "components/replay/replay_host.h"

#include <gtest/gtest.h>

#include "components/replay/recording.h"
#include "doubles/outcome.h"
#include "doubles/temp_directory.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

constexpr const char* kHead =
    R"({"kind":"trace","version":2,"program":"1.1.0","pid":4711,"started":"2026-11-21T22:00:00.000Z"})"
    "\n";

/// A trace of these lines, behind a head.
struct Replay {
  TempDirectory directory;
  std::optional<ReplayHost> host;

  explicit Replay(const Text& lines, const Text& head = kHead) {
    directory.Write("trace.jsonl", head + lines);
    host.emplace(Path());
  }

  Text Path() const { return (directory.path() / "trace.jsonl").string(); }
  Object Create(const Text& classId = "A.B") { return host->Create(classId); }

  /// A failure whose description begins with the place in the trace.
  Text Unlike(const Text& what) const { return "5 ZenqayDBSync: Invalid procedure call or argument: " + Path() + what; }
};

Text Lines(std::initializer_list<const char*> lines) {
  Text all;
  for (const char* line : lines) all.append(line).append("\n");
  return all;
}

constexpr const char* kCreate = R"({"n":1,"kind":"create","class":"A.B","id":1,"ms":1})";

TEST(ReplayHost, GivesEachKindOfValueAsItWasRecorded) {
  Replay replay(Lines({kCreate, R"({"n":2,"kind":"call","id":1,"op":"a","args":[],"returns":{"empty":true},"ms":1})",
                       R"({"n":3,"kind":"call","id":1,"op":"a","args":[],"returns":null,"ms":1})",
                       R"({"n":4,"kind":"call","id":1,"op":"a","args":[],"returns":true,"ms":1})",
                       R"({"n":5,"kind":"call","id":1,"op":"a","args":[],"returns":-7,"ms":1})",
                       R"({"n":6,"kind":"call","id":1,"op":"a","args":[],"returns":5.0,"ms":1})",
                       R"({"n":7,"kind":"call","id":1,"op":"a","args":[],"returns":"Kläranlage","ms":1})",
                       R"({"n":8,"kind":"call","id":1,"op":"a","args":[],"returns":{"object":0},"ms":1})",
                       R"({"n":9,"kind":"call","id":1,"op":"a","args":[],"returns":{"field":"X","value":3},"ms":1})"}));
  const Object object = replay.Create();

  EXPECT_EQ(object.Call("a"), Value());
  EXPECT_EQ(object.Call("a"), Value(Null()));
  EXPECT_EQ(object.Call("a"), Value(true));
  EXPECT_EQ(object.Call("a"), Value(-7));
  EXPECT_EQ(object.Call("a"), Value(5.0));
  EXPECT_EQ(object.Call("a"), Value("Kläranlage"));
  EXPECT_EQ(object.Call("a"), Value(Object()));
  EXPECT_EQ(object.Call("a"), Value(3));
}

TEST(ReplayHost, AnswersPropertiesAndFailsAsTheRecordedRunDid) {
  const Text error = R"("error":{"number":5000,"source":"ERP","description":"the call failed"},"ms":1})";
  Replay replay(Lines({kCreate, R"({"n":2,"kind":"open","connection":1,"ms":1})",
                       R"({"n":3,"kind":"call","id":1,"op":"get X","args":[],"returns":2,"ms":1})"}) +
                R"({"n":4,"kind":"call","id":1,"op":"put X","args":[4],)" + error + "\n" +
                R"({"n":5,"kind":"create","class":"C.D",)" + error + "\n");
  const Object object = replay.Create();

  EXPECT_EQ(object.Get("x"), Value(2));
  EXPECT_EQ(Raised([&] { object.Put("X", 4); }), "5000 ERP: the call failed");
  EXPECT_EQ(Raised([&] { replay.Create("C.D"); }), "5000 ERP: the call failed");
}

TEST(ReplayHost, AnswersRepeatedCallsInTheRecordedOrderAndOthersInAnyOrder) {
  Replay replay(Lines({kCreate, R"({"n":2,"kind":"call","id":1,"op":"next","args":["A"],"returns":1,"ms":1})",
                       R"({"n":3,"kind":"call","id":1,"op":"next","args":["B"],"returns":2,"ms":1})",
                       R"({"n":4,"kind":"call","id":1,"op":"next","args":["A"],"returns":3,"ms":1})",
                       R"({"n":5,"kind":"call","id":1,"op":"last","args":[],"returns":4,"ms":1})"}));
  const Object object = replay.Create();

  EXPECT_EQ(object.Call("last"), Value(4));
  EXPECT_EQ(object.Call("next", "B"), Value(2));
  EXPECT_EQ(object.Call("next", "A"), Value(1));
  EXPECT_EQ(object.Call("next", "A"), Value(3));
  EXPECT_EQ(Raised([&] { object.Call("next", "A"); }),
            replay.Unlike(": the trace ends at line 6, in front of next(\"A\") of object 1"));
}

TEST(ReplayHost, NamesWhatTheRecordedRunDidInsteadOfACallThatItDidNotMake) {
  Replay replay(Lines({kCreate, R"({"n":2,"kind":"call","id":1,"op":"List","args":["",7],"returns":1,"ms":1})"}));
  const Object object = replay.Create();

  EXPECT_EQ(Raised([&] { object.Call("List", "", 8); }),
            replay.Unlike(", line 3: the recorded run went on with List(\"\",7) of object 1, not with List(\"\",8) of "
                          "object 1"));
  EXPECT_EQ(Raised([&] { object.Call("List", ""); }),
            replay.Unlike(", line 3: the recorded run went on with List(\"\",7) of object 1, not with List(\"\") of "
                          "object 1"));
  EXPECT_EQ(Raised([&] { replay.Create("C.D"); }),
            "429 ZenqayDBSync: Component can't create object: " + replay.Path() +
                ", line 3: the recorded run went on with List(\"\",7) of object 1, not with the creation of C.D");
  EXPECT_EQ(object.Call("List", "", 7), Value(1));
}

TEST(ReplayHost, ReplaysACutTraceUpToItsEndAndSaysSo) {
  Replay replay(Lines({kCreate, R"({"n":2,"kind":"call","id":1,"op":"a","args":[],"returns":1,"ms":1})"}) +
                R"({"n":3,"kind":"call","id":1,"op":"b","arg)");
  const Object object = replay.Create();

  EXPECT_EQ(object.Call("a"), Value(1));
  const Text cut = replay.Unlike(": the trace ends within line 4, in front of b() of object 1");
  EXPECT_EQ(Raised([&] { object.Call("b"); }), cut);
  EXPECT_EQ(Raised([&] { object.Call("b"); }), cut);
}

TEST(ReplayHost, EndsAtALineThatIsNoneOfATrace) {
  for (const char* broken :
       {"{\"n\":2,", "7", "{}", R"({"kind":7})", R"({"n":2,"kind":"create"})", R"({"n":2,"kind":"call","id":1})",
        R"({"n":2,"kind":"call","id":1,"op":"a","args":"x","returns":1})",
        R"({"n":2,"kind":"call","id":1,"op":"a","args":[1],"returns":1,"argsAfter":[]})",
        R"({"n":2,"kind":"call","id":1,"op":"a","args":[],"error":{}})"}) {
    Replay replay(Lines({kCreate, broken, R"({"n":3,"kind":"call","id":1,"op":"b","args":[],"returns":1,"ms":1})"}));
    const Object object = replay.Create();

    EXPECT_EQ(Raised([&] { object.Call("b"); }), replay.Unlike(", line 3: this is no line of a trace")) << broken;
    EXPECT_EQ(Raised([&] { object.Call("b"); }),
              replay.Unlike(": the trace ends at line 2, in front of b() of object 1"));
  }
}

TEST(ReplayHost, ReadsATraceOfTheFirstFormWhichHadNoHead) {
  Replay replay(Lines({R"({"n":1,"kind":"create","class":"A.B","id":1})",
                       R"({"n":2,"kind":"call","id":1,"op":"a","args":[],"returns":1})"}),
                "");

  EXPECT_EQ(replay.Create().Call("a"), Value(1));
}

class OtherHostsObject : public Component {
 public:
  Value Call(std::string_view, Arguments) override { return {}; }
};

TEST(ReplayHost, TellsObjectsInArgumentsByTheirNumbers) {
  Replay replay(Lines({kCreate, R"({"n":2,"kind":"call","id":1,"op":"make","args":[],"returns":{"object":2},"ms":1})",
                       R"({"n":3,"kind":"call","id":1,"op":"make","args":[],"returns":{"object":3},"ms":1})",
                       R"({"n":4,"kind":"call","id":1,"op":"take","args":[{"object":3}],"returns":"second","ms":1})",
                       R"({"n":5,"kind":"call","id":1,"op":"take","args":[{"object":2}],"returns":"first","ms":1})",
                       R"({"n":6,"kind":"call","id":1,"op":"take","args":[{"object":9}],"returns":"other","ms":1})",
                       R"({"n":7,"kind":"call","id":1,"op":"take","args":[{"object":0}],"returns":"none","ms":1})"}));
  const Object object = replay.Create();
  const Value first = object.Call("make");
  const Value second = object.Call("make");

  EXPECT_EQ(object.Call("take", first), Value("first"));
  EXPECT_EQ(object.Call("take", second), Value("second"));
  EXPECT_EQ(object.Call("take", Object()), Value("none"));
  EXPECT_EQ(object.Call("take", Object(std::make_shared<OtherHostsObject>())), Value("other"));
}

TEST(ReplayHost, GivesTheSameObjectWhenTheRecordedRunDid) {
  Replay replay(Lines({kCreate, R"({"n":2,"kind":"call","id":1,"op":"getX","args":[],"returns":{"object":2},"ms":1})",
                       R"({"n":3,"kind":"call","id":1,"op":"getX","args":[],"returns":{"object":2},"ms":1})",
                       R"({"n":4,"kind":"call","id":1,"op":"getX","args":[],"returns":{"object":3},"ms":1})"}));
  const Object object = replay.Create();
  std::weak_ptr<Component> first = object.Call("getX").AsObject().component();

  EXPECT_FALSE(first.expired());
  EXPECT_EQ(object.Call("getX").AsObject().component(), first.lock());
  EXPECT_NE(object.Call("getX").AsObject().component(), first.lock());
  EXPECT_TRUE(first.expired());
}

TEST(ReplayHost, AssignsWhatTheRecordedOperationAssigned) {
  Replay replay(Lines({kCreate,
                       R"({"n":2,"kind":"call","id":1,"op":"Fill","args":["before",null,7],"returns":true,)"
                       R"("argsAfter":["before",{"object":2},7],"ms":1})",
                       R"({"n":3,"kind":"call","id":2,"op":"a","args":[],"returns":1,"ms":1})"}));
  const Object object = replay.Create();
  Value text = "before";
  Value assigned = Null();

  object.Call("Fill", Argument::ByReference(text), Argument::ByReference(assigned), 7);

  EXPECT_EQ(text, Value("before"));
  EXPECT_EQ(assigned.AsObject().Call("a"), Value(1));
}

TEST(ReplayHost, ComparesNoTimeThatTheClockGave) {
  Replay replay(Lines({R"({"n":1,"kind":"create","class":"java:java.util.Date","id":1,"ms":1})",
                       R"({"n":2,"kind":"call","id":1,"op":"setHours","args":[22],"returns":{"empty":true},"ms":1})",
                       R"({"n":3,"kind":"call","id":1,"op":"getMinutes","args":[],"returns":5,"ms":1})",
                       R"({"n":4,"kind":"call","id":1,"op":"setMinutes","args":[65],"returns":{"empty":true},"ms":1})",
                       R"({"n":5,"kind":"create","class":"A.B","id":2,"ms":1})",
                       R"({"n":6,"kind":"call","id":2,"op":"writeToMessageBox","args":["1:00:00 AM","Started."],)"
                       R"("returns":{"empty":true},"ms":1})"}));
  const Object date = replay.Create(kDateClass);

  EXPECT_EQ(date.Call("setHours", 10), Value());
  EXPECT_EQ(date.Call("getMinutes"), Value(5));
  EXPECT_EQ(Raised([&] { date.Call("setMinutes", 66); }),
            replay.Unlike(", line 5: the recorded run went on with setMinutes(65) of object 1, not with "
                          "setMinutes(66) of object 1"));
  EXPECT_EQ(replay.Create().Call("writeToMessageBox", "2:00:00 PM", "Started."), Value());
}

TEST(ReplayHost, LooksFurtherOnOnlySoFar) {
  Text lines = Lines({kCreate});
  for (std::size_t i = 1; i < Recording::kLooksAhead; ++i) {
    lines += R"({"n":2,"kind":"call","id":1,"op":"a","args":[],"returns":1,"ms":1})"
             "\n";
  }
  lines += Lines({R"({"n":3,"kind":"call","id":1,"op":"b","args":[],"returns":2,"ms":1})",
                  R"({"n":4,"kind":"call","id":1,"op":"c","args":[],"returns":3,"ms":1})"});
  Replay replay(lines);
  const Object object = replay.Create();

  EXPECT_EQ(Raised([&] { object.Call("c"); }),
            replay.Unlike(", line 3: the recorded run went on with a() of object 1, not with c() of object 1"));
  EXPECT_EQ(object.Call("b"), Value(2));
  EXPECT_EQ(object.Call("c"), Value(3));
}

}  // namespace
}  // namespace zenqay
