// Components that write the trace.
#include "trace/traced_components.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "doubles/scripted_components.h"
#include "doubles/scripted_database.h"
#include "doubles/temp_directory.h"
#include "doubles/trace_text.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

constexpr const char* kLocations = "Kv40QTMtssmaLocations.LocationsManager";

struct TracedHost {
  TempDirectory directory;
  Journal journal;
  ScriptedComponents components{journal};
  Trace trace{(directory.path() / "trace.jsonl").string(), "1.2.3"};
  TracedComponents host{components, trace};
  std::shared_ptr<ScriptedObject> manager = components.Register(kLocations, "locations");

  Text Lines() const { return WithoutTimes(directory.Read("trace.jsonl")); }
};

TEST(TracedComponents, RecordCreationsCallsAndProperties) {
  TracedHost traced;
  traced.manager->Answers("Initialize", Value()).Answers("getVersion", "2.4").Answers("Number", Value());

  const Object manager = traced.host.Create(kLocations);
  Value name = "100";
  manager.Call("Initialize", Argument::ByReference(name));
  manager.Get("getVersion");
  manager.Put("Number", std::int16_t{7});

  EXPECT_EQ(traced.Lines(), R"({"n":1,"kind":"create","class":"Kv40QTMtssmaLocations.LocationsManager","id":1})"
                            "\n"
                            R"({"n":2,"kind":"call","id":1,"op":"Initialize","args":["100"],"returns":{"empty":true}})"
                            "\n"
                            R"({"n":3,"kind":"call","id":1,"op":"get getVersion","args":[],"returns":"2.4"})"
                            "\n"
                            R"({"n":4,"kind":"call","id":1,"op":"put Number","args":[7],"returns":{"empty":true}})"
                            "\n");
}

TEST(TracedComponents, HandEveryCallOnAsItWasMade) {
  TracedHost traced;
  traced.manager->Answers("List", Value()).Answers("Number", 5);

  const Object manager = traced.host.Create(kLocations);
  Value byReference = std::int16_t{3};
  manager.Call("LIST", "", Argument::ByReference(byReference), 2.5, Null(), Value(), Object());
  manager.Get("number");
  manager.Put("Number", "x");

  EXPECT_EQ(traced.journal.Take(),
            "create Kv40QTMtssmaLocations.LocationsManager\n"
            "locations.LIST(\"\", &i16(3), dbl(2.5), null, empty, nothing)\n"
            "get locations.number\n"
            "put locations.Number = \"x\"\n");
}

TEST(TracedComponents, HandTheComponentsTheirOwnObjectsAndKeepTheirNumbers) {
  TracedHost traced;
  const Object session(traced.components.Make("session"));
  traced.manager->Answers("createUserSession", session).Answers("addManager", Value());

  const Object manager = traced.host.Create(kLocations);
  const Object first = manager.Get("createUserSession").AsObject();
  const Object second = manager.Get("createUserSession").AsObject();
  Value reference = first;
  manager.Call("addManager", Argument::ByReference(reference), second, manager);
  manager.Put("createUserSession", first);

  EXPECT_EQ(traced.journal.Take(),
            "create Kv40QTMtssmaLocations.LocationsManager\n"
            "get locations.createUserSession\n"
            "get locations.createUserSession\n"
            "locations.addManager(&<session>, <session>, <locations>)\n"
            "put locations.createUserSession = <session>\n");
  EXPECT_EQ(
      traced.Lines(),
      R"({"n":1,"kind":"create","class":"Kv40QTMtssmaLocations.LocationsManager","id":1})"
      "\n"
      R"({"n":2,"kind":"call","id":1,"op":"get createUserSession","args":[],"returns":{"object":2}})"
      "\n"
      R"({"n":3,"kind":"call","id":1,"op":"get createUserSession","args":[],"returns":{"object":2}})"
      "\n"
      R"({"n":4,"kind":"call","id":1,"op":"addManager","args":[{"object":2},{"object":2},{"object":1}],)"
      R"("returns":{"empty":true}})"
      "\n"
      R"({"n":5,"kind":"call","id":1,"op":"put createUserSession","args":[{"object":2}],"returns":{"empty":true}})"
      "\n");
}

TEST(TracedComponents, RecordTheObjectsThatAnObjectGives) {
  TracedHost traced;
  const Object row = traced.components.MakeRow({{"Location", "A1"}, {"Customer", Null()}});
  const Value rows = Object(traced.components.MakeEnumeration("rows", {row}));
  traced.manager->Answers("List", rows);

  const Object manager = traced.host.Create(kLocations);
  const Object enumeration = manager.Call("List", "", Text(2, '\x7F')).AsObject();
  enumeration.Call("hasMoreElements");
  const Object element = enumeration.Call("nextElement").AsObject();
  element.Call("getLocation");
  element.Call("getCustomer");
  element.Call("hasDescription");

  EXPECT_EQ(traced.Lines(), R"({"n":1,"kind":"create","class":"Kv40QTMtssmaLocations.LocationsManager","id":1})"
                            "\n"
                            R"({"n":2,"kind":"call","id":1,"op":"List","args":["",")"
                            "\x7F\x7F"
                            R"("],"returns":{"object":2}})"
                            "\n"
                            R"({"n":3,"kind":"call","id":2,"op":"hasMoreElements","args":[],"returns":true})"
                            "\n"
                            R"({"n":4,"kind":"call","id":2,"op":"nextElement","args":[],"returns":{"object":3}})"
                            "\n"
                            R"({"n":5,"kind":"call","id":3,"op":"getLocation","args":[],"returns":"A1"})"
                            "\n"
                            R"({"n":6,"kind":"call","id":3,"op":"getCustomer","args":[],"returns":null})"
                            "\n"
                            R"({"n":7,"kind":"call","id":3,"op":"hasDescription","args":[],"returns":false})"
                            "\n");
}

TEST(TracedComponents, RecordEveryKindOfValue) {
  TracedHost traced;
  traced.manager->Answers("Take", Value());
  traced.manager->Answers("Nothing", Object());
  Journal other;
  ScriptedDatabase database(other);
  database.Answer("Q", {{{"tableid", std::int16_t{5}}}});
  const auto rows = database.CreateRecordset();
  const auto connection = database.CreateConnection();
  rows->Open("Q", connection, CursorType::Keyset, LockType::Optimistic, CommandType::Unspecified);
  const Object field(std::make_shared<Field>(rows, "TableID"));

  const Object manager = traced.host.Create(kLocations);
  manager.Call("Take", Value(), Null(), Object(), true, std::int16_t{1}, 70000, 2.5, "é 東",
               DateTime::FromParts({2004, 1, 31, 10, 11, 12}), DateTime::FromParts({1899, 12, 30, 10, 11, 12}), field);
  manager.Call("Nothing");

  EXPECT_EQ(traced.Lines(),
            R"({"n":1,"kind":"create","class":"Kv40QTMtssmaLocations.LocationsManager","id":1})"
            "\n"
            R"({"n":2,"kind":"call","id":1,"op":"Take","args":[{"empty":true},null,{"object":0},true,1,70000,2.5,)"
            R"("é 東","2004-01-31T10:11:12","10:11:12 AM",{"field":"TableID","value":5}],"returns":{"empty":true}})"
            "\n"
            R"({"n":3,"kind":"call","id":1,"op":"Nothing","args":[],"returns":{"object":0}})"
            "\n");
}

TEST(TracedComponents, NumberDateObjectsLikeAllOthers) {
  TracedHost traced;

  const Object first = traced.host.Create(kDateClass);
  const Object second = traced.host.Create(kDateClass);
  second.Call("setDate", 31);
  first.Call("setDate", 1);

  EXPECT_EQ(traced.Lines(), R"({"n":1,"kind":"create","class":"java:java.util.Date","id":1})"
                            "\n"
                            R"({"n":2,"kind":"create","class":"java:java.util.Date","id":2})"
                            "\n"
                            R"({"n":3,"kind":"call","id":2,"op":"setDate","args":[31],"returns":{"empty":true}})"
                            "\n"
                            R"({"n":4,"kind":"call","id":1,"op":"setDate","args":[1],"returns":{"empty":true}})"
                            "\n");
}

TEST(TracedComponents, RecordFailuresInPlaceOfResultsAndLetThemThrough) {
  TracedHost traced;
  const RuntimeError gone(PlatformFault::Automation, "gone", "locations");
  traced.manager->Fails("List", gone).Fails("Number", gone);
  traced.components.FailCreation("Kv40.None",
                                 RuntimeError(PlatformFault::CannotCreateObject, "Kv40.None", "Kv40.None"));

  const Object manager = traced.host.Create(kLocations);
  EXPECT_EQ(Raised([&] { traced.host.Create("Kv40.None"); }),
            "429 Kv40.None: Component can't create object: Kv40.None");
  EXPECT_EQ(Raised([&] { manager.Call("List", "a"); }), "440 locations: Automation error: gone");
  EXPECT_EQ(Raised([&] { manager.Get("Number"); }), "440 locations: Automation error: gone");
  EXPECT_EQ(Raised([&] { manager.Put("Number", 1); }), "440 locations: Automation error: gone");
  EXPECT_EQ(Raised([&] { manager.Call("Close"); }),
            "438 locations: Object doesn't support this property or method: Close");

  const Text error = R"("error":{"number":440,"source":"locations","description":"Automation error: gone"}})";
  EXPECT_EQ(traced.Lines(),
            R"({"n":1,"kind":"create","class":"Kv40QTMtssmaLocations.LocationsManager","id":1})"
            "\n"
            R"({"n":2,"kind":"create","class":"Kv40.None","error":{"number":429,"source":"Kv40.None",)"
            R"("description":"Component can't create object: Kv40.None"}})"
            "\n"
            R"({"n":3,"kind":"call","id":1,"op":"List","args":["a"],)" +
                error + "\n" + R"({"n":4,"kind":"call","id":1,"op":"get Number","args":[],)" + error + "\n" +
                R"({"n":5,"kind":"call","id":1,"op":"put Number","args":[1],)" + error +
                "\n"
                R"({"n":6,"kind":"call","id":1,"op":"Close","args":[],"error":{"number":438,"source":"locations",)"
                R"("description":"Object doesn't support this property or method: Close"}})"
                "\n");
}

TEST(TracedComponents, ShowArgumentsAsTheyWereWhenTheCallWasMadeAndHandBackWhatWasAssigned) {
  TracedHost traced;
  const Object session(traced.components.Make("session"));
  traced.manager->Does("Fill", [&](Arguments arguments) {
    arguments[0].Assign("after");
    arguments[1].Assign(session);
    arguments[2].Assign("lost");
    return Value();
  });
  traced.manager->Answers("Take", Value());

  const Object manager = traced.host.Create(kLocations);
  Value text = "before";
  Value object;
  const Value byValue = "kept";
  manager.Call("Fill", Argument::ByReference(text), Argument::ByReference(object), byValue);
  manager.Call("Take", text, object, byValue);

  EXPECT_EQ(traced.journal.Take(),
            "create Kv40QTMtssmaLocations.LocationsManager\n"
            "locations.Fill(&\"before\", &empty, \"kept\")\n"
            "locations.Take(\"after\", <session>, \"kept\")\n");
  EXPECT_EQ(
      traced.Lines(),
      R"({"n":1,"kind":"create","class":"Kv40QTMtssmaLocations.LocationsManager","id":1})"
      "\n"
      R"({"n":2,"kind":"call","id":1,"op":"Fill","args":["before",{"empty":true},"kept"],"returns":{"empty":true},)"
      R"("argsAfter":["after",{"object":2},"kept"]})"
      "\n"
      R"({"n":3,"kind":"call","id":1,"op":"Take","args":["after",{"object":2},"kept"],"returns":{"empty":true}})"
      "\n");
}

TEST(TracedComponents, WriteACallWhenItReturnsSoThatAnInnerOneComesFirst) {
  TracedHost traced;
  const auto row = traced.components.Register("Kv40.Row", "row");
  row->Answers("getKey", "A1");
  const Object innerRow = traced.host.Create("Kv40.Row");
  traced.manager->Does("Apply", [&](Arguments) { return innerRow.Call("getKey"); });

  const Object manager = traced.host.Create(kLocations);
  manager.Call("Apply");

  EXPECT_EQ(traced.Lines(), R"({"n":1,"kind":"create","class":"Kv40.Row","id":1})"
                            "\n"
                            R"({"n":2,"kind":"create","class":"Kv40QTMtssmaLocations.LocationsManager","id":2})"
                            "\n"
                            R"({"n":3,"kind":"call","id":1,"op":"getKey","args":[],"returns":"A1"})"
                            "\n"
                            R"({"n":4,"kind":"call","id":2,"op":"Apply","args":[],"returns":"A1"})"
                            "\n");
}

TEST(TracedComponents, StandForWhatTheirObjectsStandFor) {
  Journal other;
  ScriptedDatabase database(other);
  TracedHost traced;  // its objects hold a recordset of the database
  database.Answer("Q", {{{"tableid", std::int16_t{5}}}});
  const auto rows = database.CreateRecordset();
  const auto connection = database.CreateConnection();
  rows->Open("Q", connection, CursorType::Keyset, LockType::Optimistic, CommandType::Unspecified);
  traced.manager->Answers("Field", Object(std::make_shared<Field>(rows, "TableID")));

  const Object manager = traced.host.Create(kLocations);

  EXPECT_EQ(manager.Get("Field").AsInt32(), 5);
  EXPECT_EQ(Raised([&] { Value(manager).AsText(); }),
            "438 ZenqayDBSync: Object doesn't support this property or method");
}

TEST(TracedComponents, AskTheirHostWhetherItIsUsable) {
  TracedHost traced;
  EXPECT_EQ(Raised([&] { traced.host.RequireUsable(); }), "nothing");
  traced.components.unusable.emplace(PlatformFault::InvalidCall, "Components.xml");

  EXPECT_EQ(Raised([&] { traced.host.RequireUsable(); }),
            "5 ZenqayDBSync: Invalid procedure call or argument: Components.xml");
}

TEST(TracedComponents, AreNotUsableWithATraceThatCannotBeWritten) {
  TracedHost traced;
  traced.components.unusable.emplace(PlatformFault::InvalidCall, "Components.xml");
  const Text path = (traced.directory.path() / "none/trace.jsonl").string();
  Trace trace(path, "1.2.3");
  TracedComponents host(traced.components, trace);

  EXPECT_EQ(Raised([&] { host.RequireUsable(); }), "75 ZenqayDBSync: Path/File access error: " + path);
}

TEST(TracedComponents, WriteAsAnErrorWhateverWasThrown) {
  TracedHost traced;
  traced.manager->Answers("List", Value());
  const Object manager = traced.host.Create(kLocations);

  traced.journal.FailAtLine(0, std::make_exception_ptr(std::bad_alloc()));
  EXPECT_THROW(traced.host.Create("A.B"), std::bad_alloc);
  traced.journal.FailAtLine(0, std::make_exception_ptr(std::runtime_error("no more")));
  EXPECT_THROW(manager.Call("List"), std::runtime_error);

  EXPECT_EQ(traced.Lines(),
            R"({"n":1,"kind":"create","class":"Kv40QTMtssmaLocations.LocationsManager","id":1})"
            "\n"
            R"({"n":2,"kind":"create","class":"A.B","error":{"number":7,"source":"ZenqayDBSync",)"
            R"("description":"Out of memory"}})"
            "\n"
            R"({"n":3,"kind":"call","id":1,"op":"List","args":[],"error":{"number":440,"source":"ZenqayDBSync",)"
            R"("description":"Automation error: no more"}})"
            "\n");
}

}  // namespace
}  // namespace zenqay
