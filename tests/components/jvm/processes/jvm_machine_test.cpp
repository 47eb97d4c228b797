// What only a process of its own can show of the Java machine: how it starts, fails to start, and ends.
#include <gtest/gtest.h>

#include <clocale>
#include <csignal>

#include "components/component_catalogue.h"
#include "components/jvm/jvm_fixture.h"
#include "doubles/child_process.h"
#include "doubles/outcome.h"
#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

constexpr const char* kSample = "sample.Everything";

Text NotCreated(const Text& why) {
  return Text("429 ") + kSample + ": Component can't create object: " + kSample + " (" + why + ")";
}

/// What creating an object comes to in a process of its own, under these options.
Text CreationUnder(const Text& options) {
  return RunInChild([&] {
           const auto host = MakeJvmHost(options);
           const Text first = Raised([&] { host->Create(kSample); });
           const Text second = Raised([&] { host->Create(kSample); });
           return first == second ? first : first + " | " + second;
         })
      .result;
}

/// What an operation of the sample comes to in a process of its own.
ChildRun CallUnder(const Text& options, const Text& operation) {
  return RunInChild([&] {
    const auto host = MakeJvmHost(options);
    const Object sample = host->Create(kSample);
    return Raised([&] { sample.Call(operation); });
  });
}

TEST(StartJavaMachine, SaysWhatIsMissingWithoutARuntime) {
  const ChildRun run = RunInChild([] {
    ::setenv("JAVA_HOME", "/nowhere", 1);
    return Raised([] { MakeJvmHost()->Create(kSample); });
  });

  EXPECT_EQ(run.result, NotCreated("there is no Java runtime: JAVA_HOME, which is /nowhere, has no libjvm.so"));
}

TEST(StartJavaMachine, FailsAsAnErrorWithABadOption) {
  EXPECT_EQ(CreationUnder("-Xnonsense"),
            NotCreated("the Java machine does not start: Unrecognized option: -Xnonsense"));
  EXPECT_EQ(CreationUnder("-Xmxmuch"),
            NotCreated("the Java machine does not start: Invalid maximum heap size: -Xmxmuch"));
}

/// The machine looks for memory when it has come too far to answer with an error code.
TEST(StartJavaMachine, FailsAsAnErrorWhereItWouldEndTheProcess) {
  EXPECT_EQ(CreationUnder("-XX:+UseSerialGC -Xms900000g -Xmx900000g"),
            NotCreated("the Java machine does not start: Error occurred during initialization of VM Could not reserve "
                       "enough space for 943718400000KB object heap"));
}

TEST(StartJavaMachine, LeavesSignalsAndLocaleToTheProcess) {
  const ChildRun run = RunInChild([] {
    ::setenv("LC_ALL", "C.UTF-8", 1);
    std::signal(SIGPIPE, SIG_IGN);
    const auto host = MakeJvmHost();
    host->Create(kSample);
    Text state = std::setlocale(LC_ALL, nullptr);
    for (const int number : {SIGPIPE, SIGTERM, SIGINT, SIGHUP, SIGQUIT}) {
      struct sigaction action = {};
      ::sigaction(number, nullptr, &action);
      state += action.sa_handler == SIG_IGN ? " ignored" : action.sa_handler == SIG_DFL ? " default" : " taken";
    }
    return state;
  });

  EXPECT_EQ(run.result, "C ignored default default default default");
}

TEST(StartJavaMachine, WritesNothingWhenItSucceeds) {
  const ChildRun run = CallUnder("", "aByte");

  EXPECT_EQ(run.result + "|" + run.out + "|" + run.err, "nothing||");
}

TEST(StartJavaMachine, PutsItsWarningsOnStandardError) {
  const ChildRun run = CallUnder("-Xverify:none", "aByte");

  EXPECT_EQ(run.result + "|" + run.out, "nothing|");
  EXPECT_NE(run.err.find("-Xverify:none"), Text::npos) << run.err;
}

TEST(StartJavaMachine, ReadsDatesAsDatabasesDo) {
  const ChildRun run = RunInChild([] {
    ::setenv("TZ", "UTC", 1);
    const auto host = MakeJvmHost("-Xmx64m");
    const Object date = host->Create("java:java.util.Date");
    date.Call("setTime", 1'075'543'872'000.0);
    return date.Call("toLocaleString").AsText();
  });

  EXPECT_EQ(run.result, "Jan 31, 2004 10:11:12 AM");
}

TEST(EndOfJavaMachine, RunsTheShutdownHooks) {
  const ChildRun run = CallUnder("", "sayGoodbye");

  EXPECT_EQ(run.result + "|" + run.err, "nothing|goodbye\n");
}

TEST(EndOfJavaMachine, LeavesAThreadBehindThatDoesNotEnd) {
  const ChildRun run = CallUnder("", "leaveThread");

  EXPECT_EQ(run.result + "|" + run.err,
            "nothing|zenqay-dbsync: a thread of the Java adapter does not end and is left behind\n");
}

TEST(EndOfJavaMachine, WaitsForTheLastObject) {
  const ChildRun run = RunInChild([] {
    Object sample = MakeJvmHost()->Create(kSample);
    return sample.Call("echo", "still here").AsText();
  });

  EXPECT_EQ(run.result, "still here");
}

TEST(EndOfJavaMachine, IsFatalWhenTheAdapterAsksForIt) {
  const ChildRun run = CallUnder("", "exit");

  EXPECT_EQ(run.result + "|" + run.err, "|zenqay-dbsync: fatal error: the Java machine was ended by the adapter\n");
}

TEST(JavaMemory, RaisesWhenItIsFull) {
  const ChildRun run = CallUnder("-Xmx24m", "fillMemory");

  EXPECT_EQ(run.result,
            "440 sample.Everything: Automation error: fillMemory: java.lang.OutOfMemoryError: Java heap space");
}

struct Catalogue {
  TempDirectory home;

  Text Fault(const Text& entries) {
    home.Write("Components.xml", "<COMPONENTS>\n" + entries + "\n</COMPONENTS>\n");
    const Text raised = Raised([&] { ComponentCatalogue(home.path().string()).RequireUsable(); });
    return Replaced(raised, home.path().string(), "<home>");
  }
};

TEST(ReadJvmEntry, RaisesForAClassPathThatIsNotThere) {
  Catalogue catalogue;
  std::filesystem::create_directory(catalogue.home.path() / "empty");

  EXPECT_EQ(catalogue.Fault("<HOST prefix=\"Kv\" kind=\"jvm\" classpath=\"missing.jar\"/>"),
            "76 ZenqayDBSync: Path not found: class path: <home>/missing.jar (<home>/Components.xml, line 2)");
  EXPECT_EQ(catalogue.Fault("<HOST prefix=\"Kv\" kind=\"jvm\" classpath=\"missing/*.jar\"/>"),
            "76 ZenqayDBSync: Path not found: class path: <home>/missing (<home>/Components.xml, line 2)");
  EXPECT_EQ(catalogue.Fault("<HOST prefix=\"Kv\" kind=\"jvm\" classpath=\"empty/*.jar\"/>"),
            "53 ZenqayDBSync: File not found: class path: <home>/empty/*.jar (<home>/Components.xml, line 2)");
}

TEST(ReadJvmEntry, RaisesForOptionsThatContradictEachOther) {
  Catalogue catalogue;
  const Text first = "<HOST prefix=\"Kv\" kind=\"jvm\" options=\"-Xmx256m -Da=1\"/>\n";

  EXPECT_EQ(catalogue.Fault(first + "<HOST prefix=\"Net\" kind=\"jvm\" options=\"-Xmx256m -Db=1\"/>"), "nothing");
  EXPECT_EQ(catalogue.Fault(first + "<HOST prefix=\"Net\" kind=\"jvm\" options=\"-Xmx1g\"/>"),
            "5 ZenqayDBSync: Invalid procedure call or argument: \"-Xmx1g\" contradicts \"-Xmx256m\": all entries "
            "kind=\"jvm\" share one Java machine (<home>/Components.xml, line 3)");
  EXPECT_EQ(catalogue.Fault(first + "<HOST prefix=\"Net\" kind=\"jvm\" options=\"Xmx1g\"/>"),
            "5 ZenqayDBSync: Invalid procedure call or argument: \"Xmx1g\" is no option (<home>/Components.xml, line "
            "3)");
}

TEST(ReadJvmEntry, LetsAllEntriesShareTheMachine) {
  const ChildRun run = RunInChild([] {
    TempDirectory home;
    std::filesystem::copy_file(ZENQAY_TEST_ADAPTER, home.path() / "adapter.jar");
    home.Write("Components.xml",
               "<COMPONENTS>\n"
               "<HOST prefix=\"java:java.util.\" kind=\"jvm\" options=\"-Dthe.answer=42\"/>\n"
               "<HOST prefix=\"sample.\" kind=\"jvm\" classpath=\"*.jar:adapter.jar\"/>\n"
               "</COMPONENTS>\n");
    ComponentCatalogue catalogue(home.path().string());
    const Object date = catalogue.Create("java:java.util.Date");
    const Object sample = catalogue.Create(kSample);
    return sample.Call("property", "the.answer").AsText() + " " + sample.Call("takesDate", date).AsText().substr(0, 4);
  });

  EXPECT_EQ(run.result, "42 Date");
}

}  // namespace
}  // namespace zenqay
