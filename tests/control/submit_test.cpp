// Submissions, with commands in the place of Slurm's that say what a test wants, and tasks that a test runs itself.
#include <gtest/gtest.h>
#include <stdlib.h>

#include "control/history.h"
#include "control_setup.h"
#include "system/process_identity.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

const Text kSbatch = R"(#!/bin/sh
cd '@DIRECTORY@' || exit 9
number=$(($(cat count 2>/dev/null || echo 40) + 1))
echo $number >count
cat >script.$number
for argument; do printf '%s\n' "$argument"; done >arguments.$number
env | sort >environment.$number
)";

/// Runs the tasks of an array as nodes would, to their ends.
const Text kRunsTasks = R"sh(
last=$(sed -n 's/^--array=0-\([0-9]*\)%.*/\1/p' arguments.$number)
[ -z "$last" ] || for task in $(seq 0 "$last"); do
  SLURM_ARRAY_TASK_ID=$task sh script.$number >>"$(sed -n 's/^--output=//p' arguments.$number | sed "s/%a/$task/")" 2>&1
done
)sh";

class Submit : public testing::Test {
 protected:
  Submit() {
    setup.Edit("tables = \"all\"", "tables = [\"SITE\", \"OBJECT\", \"WARRANTIES\"]");
    setup.Edit("times = 2", "times = 0");
    setup.directory.Write("zenqay.toml", setup.directory.Read("zenqay.toml") + "[batch]\nshared = \"shared\"\n");
    fs::create_directory(setup.Path("shared"));
    fs::create_directory(setup.Path("slurm"));
    setup.variables["PATH"] = setup.Path("slurm");
    ::setenv("ZENQAY_DBSYNC", ZENQAY_FAKE_JOB, 1);
    Command("sbatch", kSbatch + "echo $number\n");
    Command("sinfo", "#!/bin/sh\necho elsewhere n1\necho '" + OwnIdentity().host + " n2'\n");
    Command("squeue", "#!/bin/sh\ncat '" + setup.Path("slurm/tasks") + "'\n");
    Tasks({});
    for (const int table : {1, 6, 9}) setup.Script(table, kBegin + kStarted + kComplete);
  }

  ~Submit() override { ::unsetenv("ZENQAY_DBSYNC"); }

  void Command(const Text& name, const Text& script) const {
    setup.directory.Write("slurm/" + name, Replaced(script, "@DIRECTORY@", setup.Path("slurm")));
    fs::permissions(setup.Path("slurm/" + name), fs::perms::owner_all);
  }

  /// What squeue says of the tasks of the last submission: "0|0|RUNNING|n2|None".
  void Tasks(const std::vector<Text>& lines) const {
    Text said;
    for (const Text& line : lines) said += Name() + "|" + line + "\n";
    setup.directory.Write("slurm/tasks", said);
  }

  /// The name of the submission that has a directory.
  Text Name() const {
    for (const fs::directory_entry& entry : fs::directory_iterator(setup.Path("shared"))) {
      return entry.path().filename().string();
    }
    return "";
  }

  Text Shared(const Text& file) const { return "shared/" + Name() + "/" + file; }

  /// What a task leaves: of SITE 0_0, of objects and warranties 0_1.
  void RunTask(int task) const {
    const Text command =
        "SLURM_ARRAY_TASK_ID=" + std::to_string(task) + " sh " + setup.Path("slurm/script.41") + " >/dev/null";
    std::system(command.c_str());
  }

  /// As ControlSetup has it, the submission named NAME.
  Text Ctl(const std::vector<Text>& arguments) { return Plain(setup.Ctl(arguments)); }

  Text Recorded(const Text& file) const {
    return Plain(Replaced(Replaced(setup.directory.Read("slurm/" + file), setup.home(), "HOME"), ZENQAYCTL, "CTL"));
  }

  static Text Plain(const Text& text) { return std::regex_replace(text, std::regex("zenqay-[A-Za-z0-9]{6}"), "NAME"); }

  /// The tables of the last run: outcome and words.
  Text Outcomes() {
    History history(setup.Path("zenqay/history.db"));
    Text text;
    for (const PastTable& table : history.TablesOf(history.Runs(1).front().id)) {
      text += table.table + " " + table.outcome + (table.words.empty() ? "" : ": " + table.words) + "\n";
    }
    return Plain(Replaced(text, setup.home(), "HOME")) + "= " + history.Runs(1).front().outcome + "\n";
  }

  ControlSetup setup;
};

TEST_F(Submit, HandsOverAnArrayForEachDatabaseAndAJobThatCollects) {
  EXPECT_EQ(Ctl({"submit", "demo", "--partition", "night", "--full", "--", "--mem=2G", "--exclude=n3"}),
            "run 1: 3 tables in 2 tasks of 1 arrays are queued; zenqayctl status says how they go, scancel --name=NAME "
            "ends them\n= 0\n");

  EXPECT_EQ(Recorded("arguments.41"),
            "--requeue\n--partition=night\n--mem=2G\n--exclude=n3\n--job-name=NAME\n--comment=0\n--open-mode=append\n"
            "--chdir=/\n--array=0-1%4\n--output=HOME/shared/NAME/0_%a.log\n--nodelist=n2\n--parsable\n");
  EXPECT_EQ(Recorded("script.41"),
            "#!/bin/sh\n"
            "case $SLURM_ARRAY_TASK_ID in\n"
            "0) set -- --table 'demo:SITE' 'demo' ;;\n"
            "1) set -- --table 'demo:OBJECT' --table 'demo:WARRANTIES' 'demo' ;;\n"
            "esac\n"
            "exec 'CTL' --file 'HOME/zenqay.toml' run --full --outcome "
            "'HOME/shared/NAME/0_'$SLURM_ARRAY_TASK_ID.json \"$@\"\n");
  EXPECT_EQ(Recorded("arguments.42"),
            "--requeue\n--partition=night\n--mem=2G\n--job-name=NAME\n--comment=collector\n--open-mode=append\n"
            "--chdir=/\n--dependency=afterany:41\n--nodelist=n2\n--output=/dev/null\n--parsable\n");
  EXPECT_EQ(Recorded("script.42"), "#!/bin/sh\nexport XDG_STATE_HOME='HOME'\nexec 'CTL' history --limit 1\n");
  EXPECT_EQ(fs::status(setup.Path("shared/" + Name())).permissions(), fs::perms::owner_all);
}

TEST_F(Submit, SaysAsJsonWhatIsHandedOver) {
  setup.Edit("[job.demo]",
             "[database.lost]\nconnection = \"Provider=SQLite;Data Source=none.db\"\n[job.lost]\ndatabase = \"lost\"\n"
             "erp = \"main\"\nlogs = \"log\"\n[job.demo]");

  EXPECT_EQ(Ctl({"submit", "--all", "--json"}),
            R"j({"run":1,"name":"NAME","tables":3,"tasks":2,"arrays":[{"database":"service","array":41,"tasks":2}],)j"
            R"j("collector":42,"refused":[{"job":"lost","database":"lost","table":"all","id":0,"method":"changed",)j"
            R"j("state":"could not begin","attempt":0,"met":0,"inserted":0,"updated":0,"deleted":0,"seconds":S,)j"
            R"j("words":"the database \"lost\" is not reached: unable to open database file: HOME/none.db (No such )j"
            R"j(file or directory)","advice":"zenqayctl check lost says what to mend; then: zenqayctl run lost )j"
            R"j(--table all"}]})j"
            "\n= 4\n");
}

/// A name may hold anything, and no part of it is for a shell.
TEST_F(Submit, PutsNoTextThroughAShell) {
  setup.Edit("[job.demo]", "[job.\"it's $(touch HOME) `x` \\\\ \"]");

  EXPECT_EQ(Ctl({"submit", "it's $(touch HOME) `x` \\ "}),
            "run 1: 3 tables in 2 tasks of 1 arrays are queued; zenqayctl status says how they go, scancel --name=NAME "
            "ends them\n= 0\n");
  RunTask(0);
  RunTask(1);
  Ctl({"history"});

  EXPECT_EQ(Outcomes(), "SITE complete\nOBJECT complete\nWARRANTIES complete\n= 0\n");
  EXPECT_EQ(Name(), "");
}

TEST_F(Submit, KeepsTheEnvironmentToItself) {
  ::setenv("PGPASSWORD", "geheim", 1);
  ::setenv("SLURM_RESTART_COUNT", "7", 1);
  ::setenv("TNS_ADMIN", "/etc/tns", 1);

  Ctl({"submit", "demo"});

  ::unsetenv("PGPASSWORD");
  ::unsetenv("SLURM_RESTART_COUNT");
  ::unsetenv("TNS_ADMIN");
  const Text handedOn = Recorded("environment.41");
  EXPECT_EQ(handedOn.find("geheim"), Text::npos);
  EXPECT_EQ(handedOn.find("SLURM_RESTART_COUNT"), Text::npos);
  EXPECT_NE(handedOn.find("TNS_ADMIN=/etc/tns\n"), Text::npos) << handedOn;
}

TEST_F(Submit, MakesOneTaskOfTheCopiesOfOneTable) {
  setup.Edit("[job.demo]",
             "[job.other]\ndatabase = \"service\"\nerp = \"main\"\nlogs = \"log\"\ntables = [\"SITE\"]\n[job.demo]");

  Ctl({"submit", "demo", "other"});

  const Text script = Recorded("script.41");
  EXPECT_NE(script.find("0) set -- --table 'demo:SITE' --table 'other:SITE' 'demo' 'other' ;;\n"), Text::npos)
      << script;
}

TEST_F(Submit, RefusesWhatCannotBeHandedOver) {
  EXPECT_EQ(Ctl({"submit"}), "! zenqayctl: name the jobs to submit, or --all (zenqayctl submit --help)\n= 2\n");
  EXPECT_EQ(Ctl({"submit", "demo", "--all"}), "! zenqayctl: JOB excludes --all (zenqayctl submit --help)\n= 2\n");
  EXPECT_EQ(Ctl({"submit", "demo", "--", "-p", "night"}),
            "! zenqayctl: behind --: \"night\" is no option of sbatch; write a value behind =: --mem=2G\n= 2\n");
  for (const Text option : {"--array=0-3", "-a0-3", "--wait", "-W", "--wrap=true", "--test-only"}) {
    EXPECT_EQ(
        Ctl({"submit", "demo", "--", option}),
        "! zenqayctl: behind --: \"" + option + "\": arrays, scripts and waiting are zenqayctl submit's own\n= 2\n");
  }
  EXPECT_EQ(Ctl({"submit", "demo", "--table", "other:SITE"}),
            "! zenqayctl: --table other:SITE: \"other\" is not among the jobs that are asked for\n= 2\n");
  Command("sinfo", "#!/bin/sh\necho elsewhere n1\n");
  const Text noNode = Ctl({"submit", "demo"});
  EXPECT_TRUE(noNode.starts_with("! zenqayctl: zenqay.toml:SPAN: [database.service] is a file of this machine, "))
      << noNode;
  EXPECT_TRUE(
      noNode.ends_with(", which is no node of the batch system (\"node\" in [batch] names it, where it has "
                       "another name)\n= 2\n"))
      << noNode;
  setup.Edit("shared = \"shared\"", "shared = \"none\"");
  EXPECT_EQ(Ctl({"submit", "demo"}),
            "! zenqayctl: zenqay.toml:39:10: the shared directory HOME/none is missing\n= 2\n");
  setup.Edit("shared = \"none\"", "");
  EXPECT_EQ(Ctl({"submit", "demo"}),
            "! zenqayctl: zenqay.toml:38:1: [batch] lacks \"shared\": the directory, on a disk that all nodes share, "
            "in which tasks leave what became of them\n= 2\n");
  EXPECT_FALSE(fs::exists(setup.Path("slurm/count")));
}

TEST_F(Submit, RefusesAPasswordOfTheEnvironment) {
  setup.Edit("[job.demo]",
             "[database.other]\nconnection = \"Driver=X\"\npassword = { env = \"GEHEIM\" }\n[job.other]\ndatabase = "
             "\"other\"\nerp = \"main\"\nlogs = \"log\"\n[job.demo]");

  const Text said = Ctl({"submit", "other"});

  EXPECT_NE(said.find(": the password of [database.other] is in the environment, which is not handed to the batch "
                      "system: write credential or file\n= 2\n"),
            Text::npos)
      << said;
}

TEST_F(Submit, TakesTheNodeThatTheJobFileNames) {
  setup.Edit("shared = \"shared\"", "shared = \"shared\"\nnode = \"n7\"");
  Command("sinfo", "#!/bin/sh\nexit 1\n");

  EXPECT_EQ(Ctl({"submit", "demo", "--table", "SITE"}),
            "run 1: 1 tables in 1 tasks of 1 arrays are queued; zenqayctl status says how they go, scancel --name=NAME "
            "ends them\n= 0\n");
  EXPECT_NE(Recorded("arguments.42").find("--nodelist=n7\n"), Text::npos);
}

TEST_F(Submit, SaysThatSlurmIsMissing) {
  fs::remove(setup.Path("slurm/sinfo"));
  EXPECT_EQ(Ctl({"submit", "demo"}), "! zenqayctl: there is no sinfo on this machine\n= 4\n");
  EXPECT_EQ(Name(), "");
  setup.variables["PATH"] = "/nowhere";
  EXPECT_EQ(Ctl({"history"}), "RUN  STARTED  DURATION  TABLES  ROWS  OUTCOME  COMMAND\n= 0\n");
}

TEST_F(Submit, SaysWhySbatchRefuses) {
  Command("sbatch", "#!/bin/sh\necho 'sbatch: error: invalid partition specified: night' >&2\nexit 1\n");

  EXPECT_EQ(Ctl({"submit", "demo"}),
            "SITE: could not begin: it is not handed to the batch system: sbatch: error: invalid partition "
            "specified: night\n"
            "OBJECT: could not begin: it is not handed to the batch system: sbatch: error: invalid partition "
            "specified: night\n"
            "WARRANTIES: could not begin: it is not handed to the batch system: sbatch: error: invalid partition "
            "specified: night\n"
            "run 1: 0 tables in 0 tasks of 0 arrays are queued\n= 4\n");
  EXPECT_EQ(Name(), "");
  EXPECT_EQ(Outcomes(),
            "SITE could not begin: it is not handed to the batch system: sbatch: error: invalid partition specified: "
            "night\n"
            "OBJECT could not begin: it is not handed to the batch system: sbatch: error: invalid partition specified: "
            "night\n"
            "WARRANTIES could not begin: it is not handed to the batch system: sbatch: error: invalid partition "
            "specified: night\n= 4\n");
}

TEST_F(Submit, TakesNothingForANumberThatIsNone) {
  for (const auto& [said, words] :
       std::vector<std::pair<Text, Text>>{{"echo Submitted", "sbatch gave no number but \"Submitted\""},
                                          {"true", "sbatch gave no number but \"\""},
                                          {"kill -9 $$", "sbatch was ended by signal 9 (Killed)"}}) {
    Command("sbatch", "#!/bin/sh\n" + said + "\n");

    const Text answer = Ctl({"submit", "demo", "--table", "SITE"});

    EXPECT_EQ(answer.find("SITE: could not begin: it is not handed to the batch system: " + words + "\n"), 0U)
        << answer;
  }
}

TEST_F(Submit, GoesOnWithoutACollectorThatIsRefused) {
  Command("sbatch", kSbatch + "[ $number = 41 ] || { echo no more jobs >&2; exit 1; }\necho $number\n");

  EXPECT_EQ(Ctl({"submit", "demo"}),
            "run 1: 3 tables in 2 tasks of 1 arrays are queued; zenqayctl status says how they go, scancel --name=NAME "
            "ends them\n"
            "! zenqayctl: the job that collects the outcomes is not handed over: no more jobs; the next zenqayctl "
            "status or history here collects them\n= 0\n");
}

TEST_F(Submit, WaitsForTheEndOfAllTasks) {
  Command("sbatch", kSbatch + kRunsTasks + "echo $number\n");
  setup.Script(6, kBegin + kStarted + kFailed);
  setup.Script(9, kBegin + kInUse);

  EXPECT_EQ(Ctl({"submit", "demo", "--wait"}),
            "TIME SITE: complete, 5 rows met, 3 inserted, 2 updated, 1 deleted, SPAN\n"
            "TIME OBJECT: failed: 13: Type mismatch (row SITE='A1')\n"
            "TIME WARRANTIES: in use\n"
            "\n"
            "OBJECT: failed: 13: Type mismatch (row SITE='A1')\n"
            "    13: Type mismatch (row SITE='A1')\n"
            "      statement: UPDATE SITE\n"
            "  the records stand in HOME/log/OBJECT_*.log and in zenqayctl history; then: zenqayctl run demo --table "
            "OBJECT\n"
            "\n"
            "WARRANTIES: in use\n"
            "  zenqayctl status demo says who has it, and whether that job still holds its lock; once it does not: "
            "zenqayctl run demo --table WARRANTIES\n"
            "\n"
            "1 complete, 1 failed, 1 in use\n"
            "= 1\n");
  EXPECT_EQ(Name(), "");
}

TEST_F(Submit, ShowsWhatIsQueuedAndWhatRuns) {
  Ctl({"submit", "demo"});
  Tasks({"0|0|RUNNING|n2|None", "0|1|PENDING||JobArrayTaskLimit", "collector|N/A|PENDING||Dependency"});

  EXPECT_EQ(Ctl({"status"}),
            "JOB   TABLE       UPDATED (UTC)  AGE  STATE  LAST RUN\n"
            "demo  SITE        never               free   running on n2 (run 1)\n"
            "demo  OBJECT      never               free   queued: JobArrayTaskLimit (run 1)\n"
            "demo  WARRANTIES  never               free   queued: JobArrayTaskLimit (run 1)\n"
            "= 0\n");
  const Text json = Ctl({"status", "--json"});
  EXPECT_NE(json.find(R"("task":{"state":"RUNNING","node":"n2","reason":""}})"), Text::npos) << json;
  Command("squeue", "#!/bin/sh\necho 'Unable to contact slurm controller' >&2\nexit 1\n");
  EXPECT_EQ(Ctl({"status"}),
            "JOB   TABLE       UPDATED (UTC)  AGE  STATE  LAST RUN\n"
            "demo  SITE        never               free   queued (run 1)\n"
            "demo  OBJECT      never               free   queued (run 1)\n"
            "demo  WARRANTIES  never               free   queued (run 1)\n"
            "! zenqayctl: what submitted tasks are queued and run is not known: Unable to contact slurm controller\n"
            "= 0\n");
  Command("squeue", "#!/bin/sh\necho rubbish\n");
  EXPECT_TRUE(Ctl({"status"})
                  .ends_with("! zenqayctl: what submitted tasks are queued and run is not known: squeue "
                             "said what cannot be read: \"rubbish\"\n= 0\n"));
  fs::remove(setup.Path("slurm/squeue"));
  EXPECT_TRUE(Ctl({"status"})
                  .ends_with("! zenqayctl: what submitted tasks are queued and run is not known: there is no squeue on "
                             "this machine\n= 0\n"));
}

/// Each time a submission whose task of SITE has ended with its word, and the other one has not.
TEST_F(Submit, KeepsTheWordOfSlurmOfATaskWithoutAnOutcome) {
  const struct {
    Text state;
    Text outcome;
    Text status;
  } cases[] = {
      {"0|1|NODE_FAIL|n2|NodeDown",
       "could not begin: its task left no outcome; the batch system says NODE_FAIL (NodeDown)", "4"},
      {"0|1|CANCELLED||None", "stopped: its task left no outcome; the batch system says CANCELLED", "143"},
      {"0|1|PREEMPTED||None", "stopped: its task left no outcome; the batch system says PREEMPTED", "143"},
      {"0|1|TIMEOUT|n2|TimeLimit", "timed out: its task left no outcome; the batch system says TIMEOUT (TimeLimit)",
       "124"},
      {"0|1|OUT_OF_MEMORY|n2|None", "could not begin: its task left no outcome; the batch system says OUT_OF_MEMORY",
       "4"},
      {"0|7|RUNNING|n2|None", "could not begin: its task left no outcome; the batch system does not know it any more",
       "4"},
  };
  for (const auto& [state, outcome, status] : cases) {
    fs::remove(setup.Path("slurm/count"));
    Ctl({"submit", "demo"});
    RunTask(0);
    Tasks({"0|0|COMPLETED|n2|None", state});

    Ctl({"history"});
    Ctl({"history"});

    EXPECT_EQ(Outcomes(), "SITE complete\nOBJECT " + outcome + "\nWARRANTIES " + outcome + "\n= " + status + "\n");
    EXPECT_NE(Name(), "");  // its output may say more
    fs::remove_all(setup.Path("shared/" + Name()));
  }
}

TEST_F(Submit, NamesTheEndOfTheOutputOfALostTask) {
  Ctl({"submit", "demo"});
  RunTask(0);
  setup.directory.Write(Shared("0_1.log"), "first\nsh: zenqayctl: not found\n\n");
  setup.directory.Write(Shared("0_1.json"), "{\"version\":");
  Tasks({"0|1|FAILED|n2|NonZeroExitCode"});

  Ctl({"status"});

  const Text words =
      "could not begin: its task left no outcome; the batch system says FAILED (NonZeroExitCode); the end of "
      "HOME/shared/NAME/0_1.log: sh: zenqayctl: not found\n";
  EXPECT_EQ(Outcomes(), "SITE complete\nOBJECT " + words + "WARRANTIES " + words + "= 4\n");
}

/// The first table of the task is complete; the second has begun.
TEST_F(Submit, SettlesATaskThatEndedInTheMiddle) {
  setup.Script(9, kBegin + kStarted + "signal 9\n");
  Ctl({"submit", "demo"});
  RunTask(0);
  RunTask(1);
  const Text file = Shared("0_1.json");
  const Text whole = setup.directory.Read(file);
  Text middle = std::regex_replace(whole, std::regex("\"state\":\"failed\""), "\"state\":\"copying\"");
  middle = std::regex_replace(middle, std::regex("\"status\":1,|,\"words\":\"the job was[^\"]*\""), "");
  setup.directory.Write(file, middle);
  Tasks({"0|1|NODE_FAIL|n2|NodeDown"});

  Ctl({"status"});

  EXPECT_EQ(Outcomes(),
            "SITE complete\nOBJECT complete\nWARRANTIES failed: its task ended in the middle; the batch system says "
            "NODE_FAIL (NodeDown)\n= 1\n");
  setup.Sql("UPDATE tstables SET in_use = 1 WHERE tableid = 9");  // as the dead job left it
  EXPECT_EQ(Ctl({"unlock", "demo", "WARRANTIES"}),
            "WARRANTIES: it was taken by process N of run 1, which is gone, and is free now\n= 0\n");
}

TEST_F(Submit, WaitsWithItsJudgementUntilATaskHasEnded) {
  setup.Edit("shared = \"shared\"", "shared = \"shared\"\nrequeue-wait = \"1s\"");
  Ctl({"submit", "demo"});
  RunTask(0);
  RunTask(1);
  Tasks({"0|0|COMPLETED|n2|None", "0|1|PENDING||BeginTime"});  // begun anew, whatever it has left

  Ctl({"status"});
  EXPECT_EQ(Outcomes(), "SITE complete\nOBJECT complete\nWARRANTIES complete\n= running\n");

  setup.Script(9, kBegin + kInUse);
  ::setenv("SLURM_RESTART_COUNT", "1", 1);
  RunTask(1);
  ::unsetenv("SLURM_RESTART_COUNT");
  Tasks({});
  Ctl({"status"});
  EXPECT_EQ(Outcomes(),
            "SITE complete\nOBJECT complete: the task was begun anew once\nWARRANTIES in use: the task was begun anew "
            "once\n= 3\n");
  EXPECT_EQ(Name(), "");
}

TEST_F(Submit, LosesNoTaskWhileTheSharedDirectoryCannotBeListed) {
  Ctl({"submit", "demo"});
  RunTask(0);
  RunTask(1);
  const Text directory = setup.Path("shared/" + Name());
  fs::rename(setup.Path("shared"), setup.Path("unmounted"));
  const Text unknown =
      "! zenqayctl: what submitted tasks have left is not known: HOME/shared/NAME: No such file or "
      "directory\n= 0\n";

  EXPECT_TRUE(Ctl({"status"}).ends_with(unknown));
  EXPECT_TRUE(Ctl({"history"}).ends_with(unknown));
  EXPECT_EQ(Outcomes(), "SITE queued\nOBJECT queued\nWARRANTIES queued\n= running\n");

  fs::rename(setup.Path("unmounted"), setup.Path("shared"));
  Ctl({"status"});
  EXPECT_EQ(Outcomes(), "SITE complete\nOBJECT complete\nWARRANTIES complete\n= 0\n");
  EXPECT_EQ(Name(), "");
}

TEST_F(Submit, TellsATimeLimitFromARequestToStop) {
  const auto stop = [&](const Text& state) {
    fs::remove(setup.Path("slurm/count"));
    setup.Script(1, kBegin + kStarted + "hold\nasked:\n");
    Ctl({"submit", "demo", "--table", "SITE"});
    const Text command = "SLURM_ARRAY_TASK_ID=0 timeout 1 sh " + setup.Path("slurm/script.41") + " >/dev/null";
    std::system(command.c_str());
    Tasks({"0|0|" + state + "|n2|None"});
    Ctl({"status"});
    return Outcomes();
  };

  EXPECT_EQ(stop("CANCELLED"), "SITE stopped: the copy was broken off\n= 143\n");
  EXPECT_EQ(stop("TIMEOUT"), "SITE timed out: the copy was broken off; the batch system says TIMEOUT\n= 124\n");
}

/// A lock that is held for the first two looks.
TEST_F(Submit, WaitsInATaskThatIsBegunAnewForWhatIsLeftOfTheDeadOne) {
  setup.Edit("shared = \"shared\"", "shared = \"shared\"\nrequeue-wait = \"10m\"");
  setup.Script(1, kBegin + kInUse);
  setup.directory.Write("log/1.script.2", kBegin + kStarted + kComplete);
  EXPECT_TRUE(setup.Ctl({"run", "demo", "--table", "SITE", "--outcome", setup.Path("outcome")}).ends_with("= 3\n"));

  setup.Edit("requeue-wait = \"10m\"", "requeue-wait = \"2s\"");
  fs::remove(setup.Path("log/1.line"));
  setup.variables["SLURM_RESTART_COUNT"] = "1";
  EXPECT_EQ(setup.Ctl({"run", "demo", "--table", "SITE", "--outcome", setup.Path("outcome")}),
            "TIME SITE: beginning\n"
            "TIME SITE: waiting: in use\n"
            "TIME SITE: beginning (attempt 2)\n"
            "TIME SITE: copying\n"
            "TIME SITE: complete, 5 rows met, 3 inserted, 2 updated, 1 deleted, SPAN\n"
            "\n"
            "1 complete\n"
            "= 0\n");

  setup.directory.Write("log/1.script.2", kBegin + kInUse);
  setup.Edit("requeue-wait = \"2s\"", "requeue-wait = \"1s\"");
  EXPECT_TRUE(setup.Ctl({"run", "demo", "--table", "SITE", "--outcome", setup.Path("outcome")}).ends_with("= 3\n"));
}

TEST_F(Submit, SaysThatAnOutcomeCannotBeWritten) {
  EXPECT_EQ(setup.Ctl({"run", "demo", "--table", "SITE", "--outcome", setup.Path("none/outcome")}),
            "TIME SITE: beginning\n"
            "TIME SITE: copying\n"
            "TIME SITE: complete, 5 rows met, 3 inserted, 2 updated, 1 deleted, SPAN\n"
            "\n"
            "1 complete\n"
            "! zenqayctl: the outcome HOME/none/outcome is not written: Path not found\n"
            "= 0\n");
}

/// A zenqayctl that ended while it handed over; this process stands for one that still does.
TEST_F(Submit, LeavesWhatIsBeingHandedOverToItsZenqayctl) {
  fs::create_directory(setup.Path("shared/zenqay-AAAAAA"));
  const auto begin = [&](const ProcessIdentity& process) {
    History history(setup.Path("zenqay/history.db"));
    const std::int64_t run = history.BeginRun("submit demo", process);
    history.NoteBatch(run, setup.Path("shared/zenqay-AAAAAA"));
    TableRun table;
    table.task = {.job = "demo", .database = "service", .table = "SITE"};
    history.NoteTask(history.BeginTable(run, table), "0_0");
  };

  begin(OwnIdentity());
  Ctl({"history"});
  EXPECT_EQ(Outcomes(), "SITE waiting\n= running\n");

  ProcessIdentity gone = OwnIdentity();
  gone.start = "1";
  begin(gone);
  Ctl({"history"});
  EXPECT_EQ(Outcomes(),
            "SITE could not begin: its task left no outcome; the batch system does not know it any more\n= 4\n");
}

}  // namespace
}  // namespace zenqay
