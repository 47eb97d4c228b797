// The built program: its exit status, and what it leaves behind beside a database in use.
#include <gtest/gtest.h>
#include <stdio.h>
#include <sys/wait.h>

#include <array>

#include "check/check_help.h"
#include "check_setup.h"

namespace zenqay {
namespace {

struct ProgramRun {
  int status = -1;
  Text said;  // on both of its outputs
};

ProgramRun RunProgram(const CheckSetup& setup, const Text& commandLine) {
  const Text command = "ZENQAY_HOME='" + setup.home.path().string() + "' '" ZENQAY_CHECK "' '" + commandLine + "' 2>&1";
  FILE* output = ::popen(command.c_str(), "r");
  ProgramRun run;
  std::array<char, 4096> block{};
  for (std::size_t count = ::fread(block.data(), 1, block.size(), output); count > 0;
       count = ::fread(block.data(), 1, block.size(), output)) {
    run.said.append(block.data(), count);
  }
  const int status = ::pclose(output);
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  run.said = Replaced(run.said, setup.home.path().string(), "HOME");
  return run;
}

ProgramRun RunProgram(const CheckSetup& setup) {
  return RunProgram(setup, setup.CommandLine());
}

const Text kWellUpToTheDatabase =
    "ok        command line: table 5, full copy, SQL Server, generation 1\n"
    "ok        log directory: HOME/log\n"
    "ok        labels: HOME/I18nText.xml\n"
    "ok        components: HOME/Components.xml\n"
    "ok        date objects\n"
    "ok        ERP adapter: version 2.4\n"
    "ok        status component: ZenqayInstHandler.InstanceHandle\n"
    "ok        driver: SQLite\n";
const Text kWell = kWellUpToTheDatabase +
                   "ok        login: HOME/service.db\n"
                   "ok        database: SERVICE\n"
                   "ok        control table tstables\n"
                   "ok        control table tstreenodes\n"
                   "ok        control table tsi18ntext\n"
                   "ok        registry: SITE, PRODUCT, PROBLEM, PRIORITY, SYMPTOM, CONTRACTS, WARRANTIES\n"
                   "ok        table 5 SYMPTOM (Symptoms): never copied\n"
                   "ok        ERP component of SYMPTOM: Kv40QTMtsspfSymptoms.SymptomsManager\n"
                   "A job can run.\n";

class CheckProgram : public testing::Test {
 protected:
  CheckProgram() { setup.items[2] = "5"; }

  CheckSetup setup{"1"};
};

TEST_F(CheckProgram, EndsWith0WhenAJobCanRun) {
  const ProgramRun run = RunProgram(setup);

  EXPECT_EQ(run.said, kWell);
  EXPECT_EQ(run.status, 0);
}

TEST_F(CheckProgram, AnswersWithItsVersionAndItsHelpWhenThatIsAllItIsAskedFor) {
  const ProgramRun version = RunProgram(setup, "--version");
  const ProgramRun help = RunProgram(setup, "--help");

  EXPECT_EQ(version.said, "zenqay-dbsync-check " ZENQAY_VERSION "\n");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(help.said, CheckHelp());
  EXPECT_EQ(help.status, 0);
}

TEST_F(CheckProgram, EndsWith1WhenSomethingIsToBeMended) {
  setup.items[0] = "Provider=SQLite;Data Source=" + setup.Path("none.db") + " Password=geheim";

  const ProgramRun run = RunProgram(setup);

  EXPECT_EQ(run.said, kWellUpToTheDatabase +
                          "MEND      login: -2147467259: unable to open database file: HOME/none.db Password (No such "
                          "file or directory) (SQLSTATE 08001, native 14)\n"
                          "left out  database: needs the login\n"
                          "left out  control tables: needs the login\n"
                          "left out  registry: needs the login\n"
                          "left out  tables and their ERP components: needs the login\n"
                          "No job can run before the lines with MEND are seen to.\n");
  EXPECT_EQ(run.status, 1);
}

/// A connection of another process, which keeps the write-ahead log and its index in being.
class OtherProcess {
 public:
  explicit OtherProcess(const CheckSetup& setup) {
    sqlite3_open(setup.Path("service.db").c_str(), &database_);
    sqlite3_exec(database_, "UPDATE tstables SET lutm = '2004-01-31 10:11:12' WHERE tablename = 'SYMPTOM'", nullptr,
                 nullptr, nullptr);
  }
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;
  ~OtherProcess() { sqlite3_close(database_); }

 private:
  sqlite3* database_ = nullptr;
};

const Text kSeesTheLog = Replaced(kWell, "never copied", "current up to 2004-01-31 10:11:12");

TEST_F(CheckProgram, ReadsADatabaseInUseWithoutChangingAnythingOfIt) {
  const OtherProcess other(setup);
  const auto before = setup.Everything();

  const ProgramRun run = RunProgram(setup);

  EXPECT_EQ(run.said, kSeesTheLog);
  EXPECT_TRUE(before.contains(setup.Path("service.db-shm")));
  EXPECT_EQ(setup.Everything(), before);
}

/// The files of the database as they stand while another process works, taken to a place of their own.
void LeaveAsAfterACrash(CheckSetup& setup, const std::vector<Text>& names) {
  const TempDirectory kept;
  {
    const OtherProcess other(setup);
    for (const Text& name : names) std::filesystem::copy_file(setup.Path(name), kept.path() / name);
  }
  for (const char* name : {"service.db", "service.db-wal", "service.db-shm"}) setup.Remove(name);
  for (const Text& name : names) std::filesystem::copy_file(kept.path() / name, setup.Path(name));
}

TEST_F(CheckProgram, ReadsWhatADeadProcessLeftWithoutTakingItOver) {
  LeaveAsAfterACrash(setup, {"service.db", "service.db-wal", "service.db-shm"});
  const auto before = setup.Everything();

  const ProgramRun run = RunProgram(setup);

  EXPECT_EQ(run.said, kSeesTheLog);
  EXPECT_EQ(setup.Everything(), before);
}

TEST_F(CheckProgram, ReadsALogWithoutAnIndexWithoutMakingOne) {
  LeaveAsAfterACrash(setup, {"service.db", "service.db-wal"});
  const auto before = setup.Everything();

  const ProgramRun run = RunProgram(setup);

  EXPECT_EQ(run.said, kSeesTheLog);
  EXPECT_EQ(setup.Everything(), before);
}

TEST_F(CheckProgram, ReadsAFileWhoseNameHasAMeaningInAnAddress) {
  std::filesystem::rename(setup.Path("service.db"), setup.Path("a%41?b#c.db"));
  setup.items[0] = "Provider=SQLite;Data Source=" + setup.Path("a%41?b#c.db");

  const ProgramRun run = RunProgram(setup);

  EXPECT_EQ(run.said, Replaced(kWell, "service.db", "a%41?b#c.db"));
}

}  // namespace
}  // namespace zenqay
