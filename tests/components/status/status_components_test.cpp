// The status components that this program brings along: for a person on the console, and for a program in a file.
#include "components/status/status_components.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <regex>

#include "doubles/child_process.h"
#include "doubles/outcome.h"
#include "doubles/temp_directory.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

Value TimeOfDay(int hour, int minute, int second) {
  return DateTime::FromParts({.hour = hour, .minute = minute, .second = second});
}

/// The status object of an instance, asked for as the job does.
Object StatusOf(ComponentHost& host, std::int16_t instance = 7) {
  const Object handle = host.Create(kStatusClass);
  Value number = instance;
  const Object status = handle.Call("getInstance", Argument::ByReference(number)).AsObject();
  handle.Put("CurrentInstanceNumber", instance);
  return status;
}

/// One event's calls, as the job makes them; each at its own second.
class Job {
 public:
  explicit Job(Object status) : status_(std::move(status)) {}

  void Message(const Text& text) { Say("writeToMessageBox", text); }
  void Alert(const Text& text) { Say("WriteToAlertBox", text); }
  void Sync(std::int16_t table, std::int16_t state) {
    Value id = table;
    status_.Call("UpdateSyncStatus", Argument::ByReference(id), state);
  }
  void Table(std::int16_t table, std::int32_t state) {
    Value handle = 5;
    Value id = table;
    Value detail = "";
    status_.Call("UpdateStatusByTable", Argument::ByReference(handle), Argument::ByReference(id), state,
                 Argument::ByReference(detail));
  }

  void Started(std::int16_t table, const Text& name) {
    Message("Copy of " + name + " started.");
    Sync(table, 1);
    Table(table, 2);
  }
  void Complete(std::int16_t table, const Text& name) {
    Message("Copy of " + name + " complete.");
    Sync(table, 2);
    Table(table, 4);
  }
  void Failed(std::int16_t table, const Text& name) {
    Message("Copy of " + name + " failed.");
    Alert("Table " + name + " could not be copied.");
    Sync(table, 3);
    Table(table, 16);
  }

 private:
  void Say(const char* operation, const Text& text) {
    Value time = TimeOfDay(10, 11, second_++);
    Value message = text;
    status_.Call(operation, Argument::ByReference(time), Argument::ByReference(message));
  }

  Object status_;
  int second_ = 0;
};

// What all of them share.

/// Every host of a status component.
struct Hosts {
  TempDirectory directory;
  ConsoleStatusHost console;
  FileStatusHost file{(directory.path() / "status.jsonl").string()};
  std::array<ComponentHost*, 2> all{&console, &file};
};

TEST(StatusHost, CreatesTheOneClass) {
  Hosts hosts;
  for (ComponentHost* host : hosts.all) {
    EXPECT_EQ(Raised([&] { host->Create("ZenqayInstHandler.Other"); }),
              "429 ZenqayInstHandler.Other: Component can't create object: ZenqayInstHandler.Other");
    EXPECT_EQ(Raised([&] { host->Create("zenqayinsthandler.instancehandle"); }),
              "429 zenqayinsthandler.instancehandle: Component can't create object: zenqayinsthandler.instancehandle");
  }
}

TEST(StatusHandle, TakesItsTwoOperationsAndNoOther) {
  Hosts hosts;
  const Text source = " ZenqayInstHandler.InstanceHandle: ";
  const Text missing = "438" + source + "Object doesn't support this property or method: ";
  for (ComponentHost* host : hosts.all) {
    const Object handle = host->Create(kStatusClass);

    EXPECT_FALSE(handle.Call("GETINSTANCE", 7).AsObject().IsNothing());
    EXPECT_EQ(Raised([&] { handle.Put("currentinstancenumber", "7"); }), "nothing");
    EXPECT_EQ(Raised([&] { handle.Call("getInstance"); }), "450" + source + "Wrong number of arguments: getInstance");
    EXPECT_EQ(Raised([&] { handle.Call("getInstance", 40000); }), "6 ZenqayDBSync: Overflow");
    EXPECT_EQ(Raised([&] { handle.Call("writeToMessageBox", "", ""); }), missing + "writeToMessageBox");
    EXPECT_EQ(Raised([&] { handle.Put("CurrentInstanceNumber", "x"); }), "13 ZenqayDBSync: Type mismatch");
    EXPECT_EQ(Raised([&] { handle.Put("Instance", 7); }), missing + "Instance");
  }
}

TEST(StatusObject, TakesItsFourOperationsWithoutRegardToCaseAndNoOther) {
  Hosts hosts;
  const Text source = " ZenqayInstHandler.InstanceHandle: ";
  const Text count = "450" + source + "Wrong number of arguments: ";
  const Object status = StatusOf(hosts.file);

  status.Call("WRITETOMESSAGEBOX", "10:11:12 AM", "one");
  status.Call("writetoalertbox", "10:11:12 AM", "two");
  status.Call("updateSyncStatus", "5", 1);
  status.Call("updatestatusbytable", 5, 6.0, 2, Value());

  EXPECT_EQ(Raised([&] { status.Call("writeToMessageBox", ""); }), count + "writeToMessageBox");
  EXPECT_EQ(Raised([&] { status.Call("WriteToAlertBox", "", "", ""); }), count + "WriteToAlertBox");
  EXPECT_EQ(Raised([&] { status.Call("UpdateSyncStatus"); }), count + "UpdateSyncStatus");
  EXPECT_EQ(Raised([&] { status.Call("UpdateStatusByTable", 1, 2, 3); }), count + "UpdateStatusByTable");
  EXPECT_EQ(Raised([&] { status.Call("UpdateSyncStatus", "x", 1); }), "13 ZenqayDBSync: Type mismatch");
  EXPECT_EQ(Raised([&] { status.Call("getInstance", 1); }),
            "438" + source + "Object doesn't support this property or method: getInstance");
  EXPECT_EQ(hosts.directory.Read("status.jsonl"),
            R"({"op":"writeToMessageBox","instance":7,"time":"10:11:12 AM","text":"one"})"
            "\n"
            R"({"op":"WriteToAlertBox","instance":7,"time":"10:11:12 AM","text":"two"})"
            "\n"
            R"({"op":"UpdateSyncStatus","instance":7,"table":5,"status":1})"
            "\n"
            R"({"op":"UpdateStatusByTable","instance":7,"handle":5,"table":6,"status":2,"detail":""})"
            "\n");
}

// The console.

/// What a job writes to its streams, the elapsed times of the table at the end as "h:mm:ss".
ChildRun OnConsole(const std::function<void(Job&)>& calls, ChildStreams streams = ChildStreams::Pipes) {
  ChildRun run = RunInChild(
      [&] {
        ConsoleStatusHost host;
        Job job(StatusOf(host));
        calls(job);
        return Text("ended");
      },
      streams);
  static const std::regex elapsed("(\n +(?:\\d+|-)  [a-z ]{8}  )0:00:0\\d(  )");
  run.out = std::regex_replace(run.out, elapsed, "$1h:mm:ss$2");
  return run;
}

TEST(ConsoleStatus, PrintsEachMessageWithItsTimeAndWhatBecameOfEachTable) {
  const ChildRun run = OnConsole([](Job& job) {
    job.Started(1, "Sites");
    job.Complete(1, "Sites");
    job.Message("Products is being copied by another job.");
    job.Table(12, 8);
    job.Started(3, "Problems");
    job.Failed(3, "Problems");
  });

  EXPECT_EQ(run.result, "ended");
  EXPECT_EQ(run.out,
            "10:11:00 AM  Copy of Sites started.\n"
            "10:11:01 AM  Copy of Sites complete.\n"
            "10:11:02 AM  Products is being copied by another job.\n"
            "10:11:03 AM  Copy of Problems started.\n"
            "10:11:04 AM  Copy of Problems failed.\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  complete  h:mm:ss  Copy of Sites complete.\n"
            "   12  in use    h:mm:ss  Products is being copied by another job.\n"
            "    3  failed    h:mm:ss  Copy of Problems failed.\n");
  EXPECT_EQ(run.err, "10:11:05 AM  Table Problems could not be copied.\n");
}

TEST(ConsoleStatus, KnowsATableInUseWithoutItsTableStatus) {
  const ChildRun run = OnConsole([](Job& job) {
    job.Message("Sites is being copied by another job.");
    job.Message("Products is being copied by another job.");
    job.Message("Copy of Problems started.");
    job.Sync(3, 1);
    job.Message("Copy of Problems complete.");
    job.Sync(3, 2);
    job.Message("Symptoms is being copied by another job.");
  });

  EXPECT_EQ(run.out,
            "10:11:00 AM  Sites is being copied by another job.\n"
            "10:11:01 AM  Products is being copied by another job.\n"
            "10:11:02 AM  Copy of Problems started.\n"
            "10:11:03 AM  Copy of Problems complete.\n"
            "10:11:04 AM  Symptoms is being copied by another job.\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    -  in use    h:mm:ss  Sites is being copied by another job.\n"
            "    -  in use    h:mm:ss  Products is being copied by another job.\n"
            "    3  complete  h:mm:ss  Copy of Problems complete.\n"
            "    -  in use    h:mm:ss  Symptoms is being copied by another job.\n");
}

TEST(ConsoleStatus, HasOneRowForEachCopyOfATableThatIsCopiedTwice) {
  const ChildRun run = OnConsole([](Job& job) {
    job.Started(1, "Sites");
    job.Complete(1, "Sites");
    job.Started(1, "Sites");
    job.Failed(1, "Sites");
  });

  EXPECT_EQ(run.out.substr(run.out.find("\n\n") + 2),
            "Table  State     Elapsed  Last message\n"
            "    1  complete  h:mm:ss  Copy of Sites complete.\n"
            "    1  failed    h:mm:ss  Copy of Sites failed.\n");
}

TEST(ConsoleStatus, ShowsATableThatNeverEndedAsStarted) {
  const ChildRun run = OnConsole([](Job& job) { job.Started(128, "Sites"); });

  EXPECT_EQ(run.out,
            "10:11:00 AM  Copy of Sites started.\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "  128  started   h:mm:ss  Copy of Sites started.\n");
}

TEST(ConsoleStatus, PrintsNoTableForAJobThatReportedNothing) {
  const ChildRun run = OnConsole([](Job&) {});

  EXPECT_EQ(run.out + run.err, "");
}

TEST(ConsoleStatus, HeedsNoStateThatItDoesNotKnow) {
  const ChildRun run = OnConsole([](Job& job) {
    job.Sync(1, 4);
    job.Sync(1, 0);
    job.Table(1, 3);
    job.Table(1, 32);
  });

  EXPECT_EQ(run.out + run.err, "");
}

TEST(ConsoleStatus, PrintsUnicodeQuotesAndPercentSignsAsTheyAre) {
  const ChildRun run = OnConsole([](Job& job) {
    job.Message("\"é\" 東 100 %s %d");
    job.Alert("\"é\" 東 100 %s %d");
    job.Sync(1, 3);
  });

  EXPECT_EQ(run.out,
            "10:11:00 AM  \"é\" 東 100 %s %d\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  failed    h:mm:ss  \"é\" 東 100 %s %d\n");
  EXPECT_EQ(run.err, "10:11:01 AM  \"é\" 東 100 %s %d\n");
}

TEST(ConsoleStatus, ShowsMidnightAsATimeOfDay) {
  const ChildRun run = RunInChild([] {
    ConsoleStatusHost host;
    const Object status = StatusOf(host);
    status.Call("WriteToAlertBox", TimeOfDay(0, 0, 0), "alert");
    return Text();
  });

  EXPECT_EQ(run.err, "12:00:00 AM  alert\n");
}

TEST(ConsoleStatus, ReplacesTheRunningTablesLineOnATerminalAndColoursItByItsState) {
  const ChildRun run = OnConsole(
      [](Job& job) {
        job.Started(1, "Sites");
        job.Complete(1, "Sites");
        job.Message("Products is being copied by another job.");
        job.Table(12, 8);
        job.Started(3, "Problems");
        job.Failed(3, "Problems");
      },
      ChildStreams::Terminal);

  EXPECT_EQ(run.out,
            "\r\033[K10:11:00 AM  Copy of Sites started."
            "\r\033[K\033[33m10:11:00 AM  Copy of Sites started.\033[0m"
            "\r\033[K10:11:01 AM  Copy of Sites complete."
            "\r\033[K\033[32m10:11:01 AM  Copy of Sites complete.\033[0m\n"
            "\r\033[K10:11:02 AM  Products is being copied by another job."
            "\r\033[K\033[36m10:11:02 AM  Products is being copied by another job.\033[0m\n"
            "\r\033[K10:11:03 AM  Copy of Problems started."
            "\r\033[K\033[33m10:11:03 AM  Copy of Problems started.\033[0m"
            "\r\033[K10:11:04 AM  Copy of Problems failed."
            "\r\033[K10:11:05 AM  Table Problems could not be copied.\n"
            "\r\033[K\033[31m10:11:04 AM  Copy of Problems failed.\033[0m\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  complete  h:mm:ss  Copy of Sites complete.\n"
            "   12  in use    h:mm:ss  Products is being copied by another job.\n"
            "    3  failed    h:mm:ss  Copy of Problems failed.\n");
}

TEST(ConsoleStatus, EndsAnOpenLineOnATerminalBeforeItsTable) {
  const ChildRun run = OnConsole([](Job& job) { job.Started(1, "Sites"); }, ChildStreams::Terminal);

  EXPECT_EQ(run.out,
            "\r\033[K10:11:00 AM  Copy of Sites started."
            "\r\033[K\033[33m10:11:00 AM  Copy of Sites started.\033[0m\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  started   h:mm:ss  Copy of Sites started.\n");
}

TEST(ConsoleStatus, SettlesATableInUseOnATerminalWithItsOwnLine) {
  const ChildRun run = OnConsole(
      [](Job& job) {
        job.Message("Sites is being copied by another job.");
        job.Message("Copy of Problems started.");
        job.Sync(3, 1);
      },
      ChildStreams::Terminal);

  EXPECT_EQ(run.out,
            "\r\033[K10:11:00 AM  Sites is being copied by another job."
            "\r\033[K\033[36m10:11:00 AM  Sites is being copied by another job.\033[0m\n"
            "\r\033[K10:11:01 AM  Copy of Problems started."
            "\r\033[K\033[33m10:11:01 AM  Copy of Problems started.\033[0m\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    -  in use    h:mm:ss  Sites is being copied by another job.\n"
            "    3  started   h:mm:ss  Copy of Problems started.\n");
}

/// Runs a whole job behind a preparation of its streams.
Text EndOfJob(const std::function<void()>& prepare) {
  return OnConsole([&](Job& job) {
           prepare();
           job.Started(1, "Sites");
           job.Failed(1, "Sites");
         })
      .result;
}

TEST(ConsoleStatus, IsNotHeldUpByAClosedOutput) {
  EXPECT_EQ(EndOfJob([] {
              ::close(STDOUT_FILENO);
              ::close(STDERR_FILENO);
            }),
            "ended");
}

TEST(ConsoleStatus, IsNotHeldUpByAPipeWhoseReaderHasGone) {
  EXPECT_EQ(EndOfJob([] {
              ::signal(SIGPIPE, SIG_IGN);  // as the process does at its start
              std::array<int, 2> ends{};
              ASSERT_EQ(::pipe(ends.data()), 0);
              ::close(ends[0]);
              ::dup2(ends[1], STDOUT_FILENO);
              ::dup2(ends[1], STDERR_FILENO);
            }),
            "ended");
}

TEST(ConsoleStatus, IsNotHeldUpByAFullDisk) {
  EXPECT_EQ(EndOfJob([] {
              ASSERT_NE(::freopen("/dev/full", "w", stdout), nullptr);
              ASSERT_NE(::freopen("/dev/full", "w", stderr), nullptr);
            }),
            "ended");
}

// The file.

TEST(FileStatus, AppendsEachCallAsOneLine) {
  TempDirectory directory;
  directory.Write("status.jsonl", "before\n");
  FileStatusHost host((directory.path() / "status.jsonl").string());
  Job job(StatusOf(host));

  job.Started(1, "Sites");
  job.Failed(1, "\"é\" \\ 東");

  EXPECT_EQ(
      directory.Read("status.jsonl"),
      "before\n"
      R"({"op":"writeToMessageBox","instance":7,"time":"10:11:00 AM","text":"Copy of Sites started."})"
      "\n"
      R"({"op":"UpdateSyncStatus","instance":7,"table":1,"status":1})"
      "\n"
      R"({"op":"UpdateStatusByTable","instance":7,"handle":5,"table":1,"status":2,"detail":""})"
      "\n"
      R"({"op":"writeToMessageBox","instance":7,"time":"10:11:01 AM","text":"Copy of \"é\" \\ 東 failed."})"
      "\n"
      R"({"op":"WriteToAlertBox","instance":7,"time":"10:11:02 AM","text":"Table \"é\" \\ 東 could not be copied."})"
      "\n"
      R"({"op":"UpdateSyncStatus","instance":7,"table":1,"status":3})"
      "\n"
      R"({"op":"UpdateStatusByTable","instance":7,"handle":5,"table":1,"status":16,"detail":""})"
      "\n");
}

TEST(FileStatus, NamesTheInstanceOfEachObject) {
  TempDirectory directory;
  FileStatusHost host((directory.path() / "status.jsonl").string());
  Job first(StatusOf(host, 0));
  Job second(StatusOf(host, -3));

  first.Sync(1, 1);
  second.Sync(1, 1);
  first.Sync(1, 2);

  EXPECT_EQ(directory.Read("status.jsonl"),
            "{\"op\":\"UpdateSyncStatus\",\"instance\":0,\"table\":1,\"status\":1}\n"
            "{\"op\":\"UpdateSyncStatus\",\"instance\":-3,\"table\":1,\"status\":1}\n"
            "{\"op\":\"UpdateSyncStatus\",\"instance\":0,\"table\":1,\"status\":2}\n");
}

TEST(FileStatus, TouchesNoFileBeforeItsFirstCall) {
  TempDirectory directory;
  FileStatusHost host((directory.path() / "none/status.jsonl").string());

  EXPECT_EQ(Raised([&] { StatusOf(host); }), "nothing");
  EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

TEST(FileStatus, FailsTheCallOnAFullDisk) {
  FileStatusHost host("/dev/full");
  Job job(StatusOf(host));

  EXPECT_EQ(Raised([&] { job.Sync(1, 1); }), "61 ZenqayInstHandler.InstanceHandle: Disk full: /dev/full");
}

TEST(FileStatus, FailsTheCallWhoseLineFoundRoomForItsBeginningAlone) {
  TempDirectory directory;
  const Text path = (directory.path() / "status.jsonl").string();

  const ChildRun run = RunInChild([&] {
    const rlimit eightBytes = {8, 8};
    ::setrlimit(RLIMIT_FSIZE, &eightBytes);
    ::signal(SIGXFSZ, SIG_IGN);
    FileStatusHost host(path);
    return Raised([&] { Job(StatusOf(host)).Sync(1, 1); });
  });

  EXPECT_EQ(run.result, "75 ZenqayInstHandler.InstanceHandle: Path/File access error: " + path);
  EXPECT_EQ(directory.Read("status.jsonl"), "{\"op\":\"U");
}

TEST(FileStatus, FailsTheCallForAPathThatCannotBeWritten) {
  TempDirectory directory;
  const Text missing = (directory.path() / "none/status.jsonl").string();
  const Text source = " ZenqayInstHandler.InstanceHandle: ";
  FileStatusHost inMissing(missing);
  FileStatusHost onDirectory(directory.path().string());

  EXPECT_EQ(Raised([&] { Job(StatusOf(inMissing)).Sync(1, 1); }), "76" + source + "Path not found: " + missing);
  EXPECT_EQ(Raised([&] { Job(StatusOf(onDirectory)).Sync(1, 1); }),
            "75" + source + "Path/File access error: " + directory.path().string());
}

TEST(FileStatus, FailsTheCallWithoutThePermission) {
  TempDirectory directory;
  directory.Write("status.jsonl", "");
  const Text path = (directory.path() / "status.jsonl").string();
  ::chmod(directory.path().c_str(), 0755);
  ::chmod(path.c_str(), 0444);

  const ChildRun run = RunInChild([&] {
    const Object status = [&] {
      FileStatusHost host(path);
      return StatusOf(host);
    }();
    DropPrivileges();
    return Raised([&] { Job(status).Sync(1, 1); });
  });

  EXPECT_EQ(run.result, "70 ZenqayInstHandler.InstanceHandle: Permission denied: " + path);
}

TEST(FileStatus, WritesAgainOnceTheDirectoryIsThere) {
  TempDirectory directory;
  FileStatusHost host((directory.path() / "late/status.jsonl").string());
  Job job(StatusOf(host));
  Raised([&] { job.Sync(1, 1); });
  std::filesystem::create_directory(directory.path() / "late");

  job.Sync(1, 2);

  EXPECT_EQ(directory.Read("late/status.jsonl"),
            "{\"op\":\"UpdateSyncStatus\",\"instance\":7,\"table\":1,\"status\":2}\n");
}

}  // namespace
}  // namespace zenqay
