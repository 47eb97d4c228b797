// The built zenqayctl: what only a process of its own shows.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include "control_setup.h"
#include "doubles/child_process.h"
#include "doubles/file_content.h"
#include "system/child_process.h"

namespace zenqay {
namespace {

class ZenqayctlProgram : public testing::Test {
 protected:
  ZenqayctlProgram() {
    setup.Edit("tables = \"all\"", "tables = [\"SITE\", \"PRIORITY\"]");
    setup.Edit("times = 2", "times = 0");
  }

  ChildStart Start(std::vector<Text> arguments) const {
    arguments.insert(arguments.begin(), {"--file", setup.Path("zenqay.toml")});
    return {.program = ZENQAYCTL,
            .arguments = std::move(arguments),
            .environment = {{"ZENQAY_DBSYNC", ZENQAY_FAKE_JOB}, {"XDG_STATE_HOME", setup.home()}}};
  }

  Text Journal() const {
    return std::filesystem::exists(setup.Path("log/journal")) ? setup.directory.Read("log/journal") : "";
  }

  void WaitForJournal(const Text& what) const {
    while (Journal().find(what) == Text::npos) ::usleep(2000);
  }

  static ProcessEnd WaitForEnd(ChildProcess& child) {
    while (!child.Ended()) ::usleep(2000);
    return *child.Ended();
  }

  static Text FileOf(int pid, const char* name) { return ContentOf("/proc/" + std::to_string(pid) + "/" + name); }

  ControlSetup setup;
};

TEST_F(ZenqayctlProgram, EndsWithTheStatusOfItsTables) {
  const Text beginFails = R"({"kind":"failure","number":9999,"description":"too few items","during":"start"})"
                          "\n";
  const Text releaseFails = R"({"kind":"failure","number":7,"description":"locked","during":"release"})"
                            "\n";
  setup.Edit("timeout = \"2h\"", "timeout = \"1s\"");
  const struct {
    const char* what;
    int status;
    Text site;
    Text priority;
  } cases[] = {
      {"all complete", 0, kBegin + kStarted + kComplete, kBegin + kStarted + kComplete},
      {"in use", 3, kBegin + kStarted + kComplete, kBegin + kInUse},
      {"failed", 1, kBegin + kInUse, kBegin + kStarted + kFailed},
      {"not freed", 1, kBegin + kStarted + kComplete, kBegin + kStarted + releaseFails + kComplete},
      {"crashed", 1, kBegin + kStarted + "signal 11\n", kBegin + kStarted + kComplete},
      {"could not begin", 4, kBegin + kStarted + kFailed, kBegin + beginFails},
      {"timed out", 124, kBegin + beginFails, kBegin + kStarted + "hold\nasked:\n"},
  };
  for (const auto& [what, status, site, priority] : cases) {
    setup.Script(1, site);
    setup.Script(4, priority);

    ChildProcess run(Start({"run", "demo"}));

    EXPECT_EQ(WaitForEnd(run), (ProcessEnd{.status = status})) << what;
  }
  setup.Script(1, kBegin + kStarted + "hold\nasked:\n");
  std::filesystem::remove(setup.Path("log/journal"));
  ChildProcess stopped(Start({"run", "demo", "--table", "SITE"}));
  WaitForJournal("begin 1");
  ::kill(stopped.pid(), SIGHUP);
  EXPECT_EQ(WaitForEnd(stopped), (ProcessEnd{.status = 128 + SIGHUP}));

  ChildProcess usage(Start({"run", "other"}));
  EXPECT_EQ(WaitForEnd(usage), (ProcessEnd{.status = 2}));

  setup.Edit("service.db", "none.db");
  ChildProcess unreached(Start({"run", "demo"}));
  EXPECT_EQ(WaitForEnd(unreached), (ProcessEnd{.status = 4}));
}

/// As in a policy that allows few algorithms.
TEST_F(ZenqayctlProgram, SaysThatTheMachineHasNoHashToAnonymiseBy) {
  setup.directory.Write("openssl.cnf",
                        "openssl_conf = all\n[all]\nproviders = few\n[few]\nbase = on\n[on]\nactivate = 1\n");
  setup.directory.Write("trace", "");
  ChildProcess child(
      {.program = "/bin/sh",
       .arguments = {"-c", "cd " + setup.home() + " && exec " ZENQAYCTL " anonymise trace --out out 2>said"},
       .environment = {{"OPENSSL_CONF", setup.Path("openssl.cnf")}}});

  EXPECT_EQ(WaitForEnd(child), (ProcessEnd{.status = 4}));
  EXPECT_EQ(setup.directory.Read("said"), "zenqayctl: the OpenSSL of this machine has no SipHash\n");
}

TEST_F(ZenqayctlProgram, AsksEachJobOnceWhenItIsInterrupted) {
  setup.Script(1, kBegin + kStarted + "hold\nasked:\n");
  setup.Script(4, kBegin + kStarted + "hold\nasked:\n");
  ChildProcess program(Start({"run", "demo"}));
  WaitForJournal("begin 1");
  WaitForJournal("begin 4");

  ::kill(program.pid(), SIGINT);

  EXPECT_EQ(WaitForEnd(program), (ProcessEnd{.status = 130}));
  const Text journal = Journal();
  for (const char* once : {"asked 1\n", "asked 4\n", "end 1\n", "end 4\n"}) {
    EXPECT_EQ(journal.find(once), journal.rfind(once)) << journal;
    EXPECT_NE(journal.find(once), Text::npos) << journal;
  }
}

TEST_F(ZenqayctlProgram, ItsJobsAreAskedToStopWhenItIsKilled) {
  setup.Script(1, kBegin + kStarted + "hold\nasked:\n");
  ChildProcess program(Start({"run", "demo", "--table", "SITE"}));
  WaitForJournal("begin 1");

  ::kill(program.pid(), SIGKILL);

  EXPECT_EQ(WaitForEnd(program), (ProcessEnd{.signal = SIGKILL}));
  WaitForJournal("end 1");
  EXPECT_EQ(Journal(), "begin 1\nasked 1\nend 1\n");

  setup.Script(4, kBegin + kStarted + kComplete);
  ChildProcess next(Start({"run", "demo", "--table", "PRIORITY"}));
  EXPECT_EQ(WaitForEnd(next), (ProcessEnd{.status = 0}));
  const auto connection = LocalDatabases().CreateConnection();
  connection->PutConnectionString("Provider=SQLite;Data Source=" + setup.Path("zenqay/history.db"));
  connection->Open();
  const auto rows = LocalDatabases().CreateRecordset();
  rows->Open("SELECT outcome FROM run WHERE id = 1", connection, CursorType::Static, LockType::ReadOnly,
             CommandType::SqlText);
  EXPECT_EQ(rows->FieldValue("outcome"), Value("lost"));
}

TEST_F(ZenqayctlProgram, ItsMemoryIsItsOwnAndALineStandsInNoListOfProcesses) {
  setup.Edit("bus-component = \"MAIN\"", "bus-component = \"geheim\"");  // as good as a password
  setup.Script(1, kBegin + kStarted + "wait go\n" + kComplete);
  ChildProcess program(Start({"run", "demo", "--table", "SITE"}));
  WaitForJournal("begin 1");
  const Text children = FileOf(program.pid(), ("task/" + std::to_string(program.pid()) + "/children").c_str());
  const int job = std::stoi(children);

  EXPECT_EQ(FileOf(job, "cmdline"), Text(ZENQAY_FAKE_JOB) + '\0' + "-" + '\0');
  EXPECT_EQ(FileOf(job, "environ").find("geheim"), Text::npos);
  EXPECT_EQ(FileOf(program.pid(), "environ").find("geheim"), Text::npos);
  for (const int pid : {program.pid(), job}) {
    EXPECT_NE(FileOf(pid, "limits").find("Max core file size        1                    1 "), Text::npos);
  }
  setup.directory.Write("log/go", "");
  EXPECT_EQ(WaitForEnd(program), (ProcessEnd{.status = 0}));
  EXPECT_EQ(setup.directory.Read("zenqay/history.db").find("geheim"), Text::npos);
}

TEST_F(ZenqayctlProgram, ChecksWithTheCheckOfTheJob) {
  setup.Edit("[\"SITE\", \"PRIORITY\"]", "[\"SITE\"]");
  const ChildRun run = RunInChild([&] {
    const Text command =
        "XDG_STATE_HOME=" + setup.home() + " " + ZENQAYCTL + " --file " + setup.Path("zenqay.toml") + " check demo";
    return std::to_string(std::system(command.c_str()));
  });

  EXPECT_EQ(run.result, "0");
  EXPECT_EQ(Replaced(run.out, setup.home(), "HOME"),
            "demo:\n"
            "  ok        command line: table 1, full copy, SQL Server, generation 3\n"
            "  ok        log directory: HOME/log\n"
            "  ok        labels: HOME/home/I18nText.xml\n"
            "  ok        components: HOME/home/Components.xml\n"
            "  ok        date objects\n"
            "  ok        ERP adapter: version 2.4\n"
            "  ok        status component: switched off by the twelfth item\n"
            "  ok        driver: SQLite\n"
            "  ok        login: HOME/service.db\n"
            "  ok        database: SERVICE\n"
            "  ok        control table tstables\n"
            "  ok        control table tstreenodes\n"
            "  ok        control table tsi18ntext\n"
            "  ok        registry: SITE, PROBLEM, PRIORITY, OBJECT, SITECONTRACT, CONTRACTS, WARRANTIES\n"
            "  ok        table 1 SITE (Sites): never copied\n"
            "  ok        ERP component of SITE: Kv50QTMtscfgConfigurations.ConfigurationsManager\n"
            "  It can run.\n");
}

TEST_F(ZenqayctlProgram, RedrawsALineForEachTableOnATerminal) {
  setup.Script(1, kBegin + kStarted + kComplete);
  const ChildRun run = RunInChild(
      [&] {
        const Text command = "TERM=xterm XDG_STATE_HOME=" + setup.home() + " ZENQAY_DBSYNC=" + ZENQAY_FAKE_JOB + " " +
                             ZENQAYCTL + " --file " + setup.Path("zenqay.toml") + " run demo --table SITE";
        return std::to_string(std::system(command.c_str()));
      },
      ChildStreams::Terminal);

  EXPECT_EQ(run.result, "0");
  const Text last = run.out.substr(run.out.rfind('\r'));
  EXPECT_EQ(std::regex_replace(last, std::regex("\\d:\\d\\d"), "0:00"),
            "\rSITE                 complete                 5 rows       0/s     0:00\x1b[K\n\x1b[J\n1 complete\n");
}

}  // namespace
}  // namespace zenqay
