#include "erp/session.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "doubles/process_fixture.h"
#include "doubles/refusing_log_file.h"

namespace zenqay {
namespace {

constexpr const char* kInfo = "java:com.korvel.k3impl.about.AdapterComponentInfo";
constexpr const char* kAccess = "java:com.korvel.k3.kxi1.AccessForCom";

const Text kVersionIsAsked =
    "create java:com.korvel.k3impl.about.AdapterComponentInfo\n"
    "get info.getVersion\n";
const Text kSessionIsCreated =
    "create java:com.korvel.k3.kxi1.AccessForCom\n"
    "get access.kxiToolKit_getDefaultToolkit\n"
    "get toolkit.createUserSession\n";

/// An adapter, and a program directory whose I18nText.xml gives label SLBL0278 the text `label`.
class Adapter {
 public:
  explicit Adapter(const Value& version, const Text& label = "") : fixture(1, program.path().string()) {
    program.Write("I18nText.xml", "<I18NTEXT><SLBL0278>" + label +
                                      "</SLBL0278><SLBL0143>Date: %1 Time: %2</SLBL0143>"
                                      "<SLBL0374>The data copy failed.</SLBL0374></I18NTEXT>");
    info = fixture.components.Register(kInfo, "info");
    access = fixture.components.Register(kAccess, "access");
    toolkit = fixture.components.Make("toolkit");
    info->Answers("getVersion", version);
    access->Answers("kxiToolKit_getDefaultToolkit", Object(toolkit));
    toolkit->Answers("createUserSession", Object(fixture.components.Make("session")));
  }

  Text Session() const { return Shown(Value(fixture.process.ErpSession)); }

  TempDirectory program;
  ProcessFixture fixture;
  std::shared_ptr<ScriptedObject> info;
  std::shared_ptr<ScriptedObject> access;
  std::shared_ptr<ScriptedObject> toolkit;
};

TEST(OpenErpSession, CreatesASessionThroughTheToolkitOfANewEnoughAdapter) {
  Adapter adapter("2.4");

  EXPECT_TRUE(OpenErpSession(adapter.fixture.process));

  EXPECT_EQ(adapter.fixture.journal.Take(), kVersionIsAsked + kSessionIsCreated);
  EXPECT_EQ(adapter.Session(), "<session>");
}

TEST(OpenErpSession, RefusesVersion2Point3AndAcceptsWhatIsStrictlyNewerAsANumber) {
  struct Case {
    Value version;
    bool newEnough;
  };
  const Case cases[] = {
      {"2.3", false},
      {2.3, false},
      {"2.30", false},
      {"2.29", false},
      {"2", false},
      {"-10", false},
      {"0", false},
      {std::int16_t{2}, false},
      {Value(), false},
      {"2.31", true},
      {2.31, true},
      {"2.4", true},
      {2.4, true},
      {"10", true},
      {" 2.31 ", true},
      {3, true},
      {"2.300000000001", true},
      {"1e1", true},
  };
  for (const Case& c : cases) {
    Adapter adapter(c.version);

    EXPECT_EQ(OpenErpSession(adapter.fixture.process), c.newEnough) << Shown(c.version);

    EXPECT_EQ(adapter.fixture.journal.Take(), kVersionIsAsked + (c.newEnough ? kSessionIsCreated : ""));
    EXPECT_EQ(adapter.Session(), c.newEnough ? "<session>" : "nothing");
  }
}

TEST(OpenErpSession, WritesNoLogRecordWhenTheVersionIsRefused) {
  const TempDirectory logs;
  Adapter adapter("2.3", logs.path().string());

  EXPECT_FALSE(OpenErpSession(adapter.fixture.process));

  EXPECT_TRUE(std::filesystem::is_empty(logs.path()));
  EXPECT_EQ(adapter.fixture.Causes(), "");
}

TEST(OpenErpSession, OnlyTestsTheVersionWhenThereIsASession) {
  Adapter adapter("2.4");
  adapter.fixture.process.ErpSession = Object(adapter.fixture.components.Make("former"));

  EXPECT_TRUE(OpenErpSession(adapter.fixture.process));

  EXPECT_EQ(adapter.fixture.journal.Take(), kVersionIsAsked);
  EXPECT_EQ(adapter.Session(), "<former>");
}

TEST(OpenErpSession, LeavesTheSessionAloneWhenALaterCallFindsAnOldVersion) {
  Adapter adapter("2.3");
  adapter.fixture.process.ErpSession = Object(adapter.fixture.components.Make("former"));

  EXPECT_FALSE(OpenErpSession(adapter.fixture.process));

  EXPECT_EQ(adapter.Session(), "<former>");
}

TEST(OpenErpSession, EmptiesTheSessionWhenALaterCallFails) {
  const TempDirectory logs;
  Adapter adapter("unknown", logs.path().string());
  adapter.fixture.process.ErpSession = Object(adapter.fixture.components.Make("former"));

  EXPECT_FALSE(OpenErpSession(adapter.fixture.process));

  EXPECT_EQ(adapter.Session(), "nothing");
}

TEST(OpenErpSession, IsContentWithAToolkitThatCreatesNoSession) {
  Adapter adapter("2.4");
  adapter.toolkit->Answers("createUserSession", Object());

  EXPECT_TRUE(OpenErpSession(adapter.fixture.process));

  EXPECT_EQ(adapter.Session(), "nothing");
}

/// The start-up log that a failure leaves in the directory that the label names.
Text StartupLog(const Text& number) {
  return "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
         "The data copy failed.\r\n"
         "Error is - " +
         number + "\r\n";
}

TEST(OpenErpSession, TakesTheFailurePathForAVersionThatIsNotANumber) {
  struct Case {
    Value version;
    const char* error;
  };
  const Case cases[] = {
      {"unknown", "13: Type mismatch: getVersion"},    {"2.4.1", "13: Type mismatch: getVersion"},
      {"2,4", "13: Type mismatch: getVersion"},        {"", "13: Type mismatch: getVersion"},
      {Null(), "94: Invalid use of Null: getVersion"}, {Object(), "91: Object variable not set: getVersion"}};
  for (const Case& c : cases) {
    const TempDirectory logs;
    Adapter adapter(c.version, logs.path().string());

    EXPECT_FALSE(OpenErpSession(adapter.fixture.process));

    EXPECT_EQ(logs.Read("ZenqayDBSync.log"), StartupLog(c.error));
    EXPECT_EQ(adapter.fixture.journal.Take(), kVersionIsAsked);
    EXPECT_EQ(adapter.Session(), "nothing");
  }
}

/// Lets one step of opening a session fail.
struct FailingStep {
  void (*breakIt)(Adapter& adapter);
  Text journal;
  const char* error;
};

const RuntimeError kBridgeFailed(-2147467259, "bridge", "no connection");

const FailingStep kFailingSteps[] = {
    {[](Adapter& a) { a.fixture.components.FailCreation(kInfo, kBridgeFailed); },
     "create java:com.korvel.k3impl.about.AdapterComponentInfo\n", "-2147467259: no connection"},
    {[](Adapter& a) { a.info->Fails("getVersion", kBridgeFailed); }, kVersionIsAsked,
     "-2147467259: no connection: getVersion"},
    {[](Adapter& a) { a.fixture.components.FailCreation(kAccess, kBridgeFailed); },
     kVersionIsAsked + "create java:com.korvel.k3.kxi1.AccessForCom\n", "-2147467259: no connection"},
    {[](Adapter& a) { a.access->Fails("kxiToolKit_getDefaultToolkit", kBridgeFailed); },
     kVersionIsAsked + "create java:com.korvel.k3.kxi1.AccessForCom\n"
                       "get access.kxiToolKit_getDefaultToolkit\n",
     "-2147467259: no connection: kxiToolKit_getDefaultToolkit"},
    {[](Adapter& a) { a.access->Answers("kxiToolKit_getDefaultToolkit", Object()); },
     kVersionIsAsked + "create java:com.korvel.k3.kxi1.AccessForCom\n"
                       "get access.kxiToolKit_getDefaultToolkit\n",
     "91: Object variable not set"},
    {[](Adapter& a) { a.toolkit->Fails("createUserSession", kBridgeFailed); }, kVersionIsAsked + kSessionIsCreated,
     "-2147467259: no connection: createUserSession"},
};

TEST(OpenErpSession, RecordsTheFailureOfEachStepAndGivesFalse) {
  for (const FailingStep& step : kFailingSteps) {
    const TempDirectory logs;
    Adapter adapter("2.4", logs.path().string());
    step.breakIt(adapter);

    EXPECT_FALSE(OpenErpSession(adapter.fixture.process));

    EXPECT_EQ(adapter.fixture.journal.Take(), step.journal);
    EXPECT_EQ(logs.Read("ZenqayDBSync.log"), StartupLog(step.error));
    EXPECT_EQ(adapter.Session(), "nothing");
    EXPECT_EQ(adapter.fixture.RunLog(), "");
    EXPECT_EQ(adapter.fixture.Causes(), "");
  }
}

TEST(OpenErpSession, FailsWithTheLogWhenTheLabelsTextNamesNoDirectory) {
  Adapter adapter("unknown", "no such directory");
  adapter.fixture.process.ErpSession = Object(adapter.fixture.components.Make("former"));

  const Text raised = Raised([&] { OpenErpSession(adapter.fixture.process); });

  EXPECT_EQ(raised, "76 ZenqayDBSync: Path not found: no such directory\\ZenqayDBSync.log");
  EXPECT_EQ(adapter.fixture.Causes(), "error 13 from \"ZenqayDBSync\": Type mismatch: getVersion\n");
  EXPECT_EQ(adapter.Session(), "nothing");
}

TEST(OpenErpSession, TakesTheKeyForADirectoryWhenThereIsNoSuchLabel) {
  Adapter adapter("unknown");
  adapter.program.Write("I18nText.xml", "<I18NTEXT/>");

  const Text raised = Raised([&] { OpenErpSession(adapter.fixture.process); });

  EXPECT_EQ(raised, "76 ZenqayDBSync: Path not found: SLBL0278\\ZenqayDBSync.log");
}

TEST(OpenErpSession, RecordsInDriveCWhenTheLabelsTextIsBlank) {
  for (const char* blank : {"", "   "}) {
    Adapter adapter("unknown", blank);
    if (*blank == '\0') adapter.program.Write("I18nText.xml", "<I18NTEXT><SLBL0278></SLBL0278></I18NTEXT>");
    RefusingLogFile refusing;  // so that the root stays clean
    adapter.fixture.platform.log = &refusing;

    const Text raised = Raised([&] { OpenErpSession(adapter.fixture.process); });

    EXPECT_EQ(raised, R"(70 ZenqayDBSync: Permission denied: C:\ZenqayDBSync.log)");
  }
}

TEST(RegisterManager, AddsTheManagerToTheSessionByReference) {
  ProcessFixture fixture;
  const auto session = fixture.components.Make("session");
  session->Answers("addManager", Value());
  fixture.process.ErpSession = Object(session);

  RegisterManager(fixture.process, Object(fixture.components.Make("locations")));
  RegisterManager(fixture.process, Object());

  EXPECT_EQ(fixture.journal.Take(),
            "session.addManager(&<locations>)\n"
            "session.addManager(&nothing)\n");
}

TEST(RegisterManager, GivesTheManagerThatTheSessionPutInItsPlace) {
  ProcessFixture fixture;
  const Object first(fixture.components.Make("first"));
  const Object second(fixture.components.Make("second"));
  const auto session = fixture.components.Make("session");
  session->Does("addManager", [second](Arguments arguments) {
    arguments[0].Assign(second);
    return Value();
  });
  fixture.process.ErpSession = Object(session);

  EXPECT_EQ(RegisterManager(fixture.process, first), second);

  session->Answers("addManager", Value());
  EXPECT_EQ(RegisterManager(fixture.process, first), first);
}

TEST(RegisterManager, DoesNothingWithoutASession) {
  ProcessFixture fixture;
  const Object manager(fixture.components.Make("locations"));

  EXPECT_EQ(RegisterManager(fixture.process, manager), manager);

  EXPECT_EQ(fixture.journal.Take(), "");
}

TEST(RegisterManager, PassesAFailureToItsCaller) {
  ProcessFixture fixture;
  const auto session = fixture.components.Make("session");
  session->Fails("addManager", kBridgeFailed);
  fixture.process.ErpSession = Object(session);

  const Text raised = Raised([&] { RegisterManager(fixture.process, Object(fixture.components.Make("locations"))); });

  EXPECT_EQ(raised, "-2147467259 bridge: no connection: addManager");
}

}  // namespace
}  // namespace zenqay
