#include <gtest/gtest.h>

#include "control/history.h"
#include "control_setup.h"
#include "doubles/time_zone.h"
#include "system/file_lock.h"

namespace zenqay {
namespace {

class Zenqayctl : public testing::Test {
 protected:
  Zenqayctl() { setup.Edit("tables = \"all\"", "tables = [\"SITE\", \"PRIORITY\"]"); }

  ControlSetup setup;
};

TEST_F(Zenqayctl, MakesAFirstJobThatCanBeRunAndOverwritesNothing) {
  const TempDirectory directory;
  const Text home = directory.path() / "new";

  EXPECT_EQ(Replaced(setup.Ctl({"init", home}), home, "NEW"),
            "Made NEW/zenqay.toml, with a database and an ERP to try it on. Next:\n"
            "\n"
            "    zenqayctl --file NEW/zenqay.toml run demo\n"
            "= 0\n");
  EXPECT_EQ(Replaced(setup.Ctl({"init", home, "--json"}), home, "NEW"),
            "! zenqayctl: NEW/zenqay.toml exists; nothing was changed\n= 2\n");
  EXPECT_EQ(setup.Ctl({"--file", home + "/zenqay.toml", "status"}),
            "JOB   TABLE         UPDATED (UTC)  AGE  STATE  LAST RUN\n"
            "demo  SITE          never               free\n"
            "demo  PROBLEM       never               free\n"
            "demo  PRIORITY      never               free\n"
            "demo  OBJECT        never               free\n"
            "demo  SITECONTRACT  never               free\n"
            "demo  CONTRACTS     never               free\n"
            "demo  WARRANTIES    never               free\n"
            "= 0\n");
}

TEST_F(Zenqayctl, RunsTheTablesOfAJobAndSaysWhatBecameOfThem) {
  setup.Script(1, kBegin + kStarted + kComplete);
  setup.Script(4, kBegin + kStarted + kFailed);
  setup.Edit("parallel = 4", "parallel = 1");

  EXPECT_EQ(setup.Ctl({"run", "demo"}),
            "TIME SITE: beginning\n"
            "TIME SITE: copying\n"
            "TIME SITE: complete, 5 rows met, 3 inserted, 2 updated, 1 deleted, SPAN\n"
            "TIME PRIORITY: beginning\n"
            "TIME PRIORITY: copying\n"
            "TIME PRIORITY: failed: 13: Type mismatch (row SITE='A1')\n"
            "\n"
            "PRIORITY: failed: 13: Type mismatch (row SITE='A1')\n"
            "    13: Type mismatch (row SITE='A1')\n"
            "      statement: UPDATE SITE\n"
            "  the records stand in HOME/log/PRIORITY_*.log and in zenqayctl history; then: zenqayctl run demo --table "
            "PRIORITY\n"
            "\n"
            "1 complete, 1 failed\n"
            "= 1\n");
}

TEST_F(Zenqayctl, RunsAsJson) {
  setup.Script(1, kBegin + kStarted + kComplete);

  EXPECT_EQ(
      setup.Ctl({"run", "demo", "--table", "site", "--changed", "--json"}),
      R"({"kind":"table","time":"TIME","job":"demo","database":"service","table":"SITE","id":1,"method":"changed",)"
      R"("state":"beginning","attempt":1})"
      "\n"
      R"({"kind":"table","time":"TIME","job":"demo","database":"service","table":"SITE","id":1,"method":"changed",)"
      R"("state":"copying","attempt":1})"
      "\n"
      R"({"kind":"table","time":"TIME","job":"demo","database":"service","table":"SITE","id":1,"method":"changed",)"
      R"("state":"complete","attempt":1,"met":5,"inserted":3,"updated":2,"deleted":1,"seconds":S})"
      "\n"
      R"({"kind":"end","time":"TIME","status":0})"
      "\n= 0\n");
}

TEST_F(Zenqayctl, GivesAJobItsLine) {
  setup.Script(4, kBegin + kStarted + kComplete);

  setup.Ctl({"run", "demo", "--table", "4", "--allow-sweep"});

  EXPECT_EQ(Replaced(setup.directory.Read("log/4.line"), setup.home(), "HOME"),
            "Provider=SQLite;Data Source=HOME/service.db{}SERVICE{}4{}1{}HOME/log{}MAIN{}-1{}{}1{}0{}3{}");
  EXPECT_EQ(setup.directory.Read("log/journal"), "begin 4 with sweep limit 100%\nend 4\n");
}

TEST_F(Zenqayctl, FindsOutBeforeAnythingIsStartedWhatCannotBeCopied) {
  setup.Edit("[job.demo]",
             "[job.other]\ndatabase = \"service\"\nerp = \"main\"\nlogs = \"log\"\ntables = [\"STIE\"]\n[job.demo]");
  EXPECT_EQ(setup.Ctl({"run", "demo", "other"}),
            "! zenqayctl: zenqay.toml:25:10: [job.other]: the database registers no table \"STIE\" for generation 3 "
            "(did you mean \"SITE\"?)\n= 2\n");
  EXPECT_EQ(setup.Ctl({"run", "demo", "--table", "OBJECT"}),
            "! zenqayctl: zenqay.toml:29:10: [job.demo]: the database registers no table \"OBJECT\" for generation 3 "
            "(there are: SITE, PRIORITY)\n= 2\n");
  setup.Sql("UPDATE tstables SET tablename = 'SITES' WHERE tableid = 1");
  EXPECT_EQ(setup.Ctl({"run", "demo", "--table", "1"}),
            "! zenqayctl: zenqay.toml:29:10: [job.demo]: the database registers no table \"SITE\" for generation 3 "
            "(did you mean \"SITES\"?)\n= 2\n");
  setup.Edit("[\"SITE\", \"PRIORITY\"]", "\"all\"");
  EXPECT_EQ(setup.Ctl({"run", "demo"}),
            "! zenqayctl: zenqay.toml:29:10: [job.demo]: table 1 is \"SITES\", and nothing is copied into a table of "
            "this name (did you mean \"site\"?)\n= 2\n");
  setup.Sql("UPDATE tstables SET tablename = 'PRODUCT2' WHERE tableid = 2");
  setup.Sql("UPDATE tstables SET tablename = 'PRODUCT' WHERE tableid = 1");
  EXPECT_EQ(setup.Ctl({"run", "demo"}),
            "! zenqayctl: zenqay.toml:29:10: [job.demo]: table 1 is \"PRODUCT\", which the ERP's generation 3 has "
            "nothing for\n= 2\n");
  EXPECT_FALSE(std::filesystem::exists(setup.Path("log/journal")));
}

TEST_F(Zenqayctl, CouldNotBeginWhenTheDatabaseIsNotReached) {
  setup.Edit("service.db", "none.db");
  setup.Edit("times = 2, wait = \"30s\"", "times = 1, wait = \"0s\"");

  EXPECT_EQ(
      setup.Ctl({"run", "demo", "--table", "SITE"}),
      "TIME SITE: could not begin: the database \"service\" is not reached: unable to open database file: "
      "HOME/none.db (No such file or directory)\n"
      "\n"
      "SITE: could not begin: the database \"service\" is not reached: unable to open database file: HOME/none.db "
      "(No such file or directory)\n"
      "  zenqayctl check demo says what to mend; then: zenqayctl run demo --table SITE\n"
      "\n"
      "1 could not begin\n"
      "= 4\n");
}

/// Since September 2016 the clock of Istanbul stays where it stood in summer.
TEST_F(Zenqayctl, CopiesInFullOnceTheClockWentForward) {
  const TimeZone zone("Europe/Istanbul");
  setup.Script(1, kBegin + kStarted + kComplete);
  setup.Sql("UPDATE tstables SET lutm = '2016-01-15 10:00:00' WHERE tableid = 1");
  const auto methodOfJob = [&] {
    const Text line = setup.directory.Read("log/1.line");
    return line.substr(line.find("{}1{}") + 5, 1);
  };

  const Text said = setup.Ctl({"run", "demo", "--table", "SITE", "--changed"});
  EXPECT_EQ(
      said.substr(said.find("! ")),
      "! zenqayctl: the clock went forward since the last update of SITE: an only-changed pass would miss changes "
      "made right after that update; it is copied in full this time\n= 0\n");
  EXPECT_EQ(methodOfJob(), "1");

  setup.Edit("# on-clock-change = \"full\"", "on-clock-change = \"warn\" #");
  const Text warned = setup.Ctl({"run", "demo", "--table", "SITE", "--changed"});
  EXPECT_EQ(warned.substr(warned.find("! ")),
            "! zenqayctl: warning: the clock went forward since the last update of SITE: an only-changed pass would "
            "miss changes made right after that update\n= 0\n");
  EXPECT_EQ(methodOfJob(), "2");

  setup.Sql("UPDATE tstables SET lutm = '2016-07-15 10:00:00' WHERE tableid = 1");
  EXPECT_EQ(setup.Ctl({"run", "demo", "--table", "SITE", "--changed"}).find("! "), Text::npos);
  EXPECT_EQ(methodOfJob(), "2");
}

TEST_F(Zenqayctl, KeepsAHistory) {
  setup.Script(1, kBegin + kStarted + kComplete);
  setup.Script(4, kBegin + kStarted + kFailed);
  setup.Edit("parallel = 4", "parallel = 1");
  EXPECT_EQ(setup.Ctl({"history"}), "RUN  STARTED  DURATION  TABLES  ROWS  OUTCOME  COMMAND\n= 0\n");
  setup.Ctl({"run", "demo"});
  setup.Ctl({"run", "demo", "--table", "SITE"});

  EXPECT_EQ(setup.Ctl({"history"}),
            "RUN  STARTED               DURATION  TABLES  ROWS  OUTCOME         COMMAND\n"
            "2    TIME  SPAN      1       5     all complete    run demo --table SITE\n"
            "1    TIME  SPAN      2       5     a table failed  run demo\n"
            "= 0\n");
  EXPECT_EQ(setup.Ctl({"history", "--limit", "1", "--json"}),
            R"([{"run":2,"command":"run demo --table SITE","started":"TIME","ended":"TIME","outcome":0,"process":P,)"
            R"("tables":1,"met":5}])"
            "\n= 0\n");
  EXPECT_EQ(setup.Ctl({"history", "3"}), "! zenqayctl: the history has no run 3\n= 2\n");
}

TEST_F(Zenqayctl, ShowsOneRunWholeWithTheEndOfItsLog) {
  const TimeZone zone("UTC");
  setup.Script(4, kBegin + kStarted + kFailed);
  setup.Ctl({"run", "demo", "--table", "PRIORITY"});
  const Text day = Replaced(UtcText(UtcNow()).substr(0, 10), "-", "");
  setup.directory.Write("log/PRIORITY_" + day + ".log", "\"first\"\r\n\"M\xfcller \x80\"\r\n");

  EXPECT_EQ(Replaced(setup.Ctl({"history", "1"}), day, "DAY"),
            "run 1: run demo --table PRIORITY\n"
            "started TIME by process N on HOST, a table failed\n"
            "\n"
            "JOB   TABLE     METHOD  STARTED               DURATION  OUTCOME  ROWS\n"
            "demo  PRIORITY  full    TIME  SPAN      failed   0 rows met, 0 inserted, 0 updated, 0 deleted\n"
            "\n"
            "demo PRIORITY: failed: 13: Type mismatch (row SITE='A1')\n"
            "    13: Type mismatch (row SITE='A1')\n"
            "      statement: UPDATE SITE\n"
            "    the end of HOME/log/PRIORITY_DAY.log:\n"
            "      \"first\"\n"
            "      \"Müller €\"\n"
            "= 0\n");
  EXPECT_EQ(
      setup.Ctl({"history", "1", "--json"}),
      R"j({"run":1,"command":"run demo --table PRIORITY","started":"TIME","ended":"TIME","outcome":1,"process":P,)j"
      R"j("tables":[{"run":1,"job":"demo","database":"service","table":"PRIORITY","method":"full",)j"
      R"j("started":"TIME","outcome":"failed","attempts":1,"ended":"TIME","met":0,"inserted":0,"updated":0,)j"
      R"j("deleted":0,"words":"13: Type mismatch (row SITE='A1')","logs":"HOME/log","process":P,"failures":[{)j"
      R"j("number":13,"source":"X","description":"Type mismatch","statement":"UPDATE SITE","key":"SITE='A1'",)j"
      R"j("during":"copy"}],"run_log":["\"first\"","\"Müller €\""]}]})j"
      "\n= 0\n");
}

TEST_F(Zenqayctl, StillRunsWithoutAHistory) {
  setup.Script(1, kBegin + kStarted + kComplete);
  setup.directory.Write("zenqay/history.db", "no database");

  EXPECT_EQ(
      setup.Ctl({"run", "demo", "--table", "SITE"}),
      "TIME SITE: beginning\n"
      "TIME SITE: copying\n"
      "TIME SITE: complete, 5 rows met, 3 inserted, 2 updated, 1 deleted, SPAN\n"
      "\n"
      "1 complete\n"
      "! zenqayctl: the history HOME/zenqay/history.db is not written: file is not a database: HOME/zenqay/history.db\n"
      "= 0\n");
}

TEST_F(Zenqayctl, ShowsHowFreshATableIsAndWhoHasIt) {
  setup.Script(1, kBegin + kStarted + kComplete);
  setup.Script(4, kBegin + kStarted + "signal 9\n");
  setup.Ctl({"run", "demo"});
  setup.Sql("UPDATE tstables SET lutm = '2026-01-15 10:00:00', in_use = 1 WHERE tableid IN (1, 4)");

  const Text status = setup.Ctl({"status", "demo"});
  const Text ages = std::regex_replace(status, std::regex("\\d+ d \\d+ h"), "AGE");
  EXPECT_EQ(std::regex_replace(ages, std::regex("   +"), "  "),  // how wide the columns are hangs on the times
            "JOB  TABLE  UPDATED (UTC)  AGE  STATE  LAST RUN\n"
            "demo  SITE  2026-01-15 10:00:00  AGE  taken by nobody that the history knows; its lock is free  complete "
            "(run 1)\n"
            "demo  PRIORITY  2026-01-15 10:00:00  AGE  taken by process N of run 1, which is gone; its lock is free  "
            "failed (run 1)\n"
            "= 0\n");
}

TEST_F(Zenqayctl, ShowsTheStateAsJson) {
  setup.Sql("UPDATE tstables SET in_use = 1 WHERE tableid = 4");

  EXPECT_EQ(setup.Ctl({"status", "demo", "--json"}),
            R"([{"job":"demo","table":"SITE","id":1,"updated":null,"taken":false,"last":null},)"
            R"({"job":"demo","table":"PRIORITY","id":4,"updated":null,"taken":true,"lock":"free","last":null}])"
            "\n= 0\n");
}

TEST_F(Zenqayctl, SaysThatAJobHoldsTheLockOfATable) {
  setup.Sql("UPDATE tstables SET in_use = 1 WHERE tableid = 4");
  const FileLock lock(setup.Path("service.db-lock"));
  ASSERT_TRUE(lock.Take("priority"));

  EXPECT_EQ(setup.Ctl({"status", "demo", "--json"}),
            R"([{"job":"demo","table":"SITE","id":1,"updated":null,"taken":false,"last":null},)"
            R"({"job":"demo","table":"PRIORITY","id":4,"updated":null,"taken":true,"lock":"held","last":null}])"
            "\n= 0\n");
  EXPECT_EQ(setup.Ctl({"unlock", "demo", "PRIORITY"}),
            "PRIORITY: it is taken by nobody that the history knows; its lock is held by a job; once you are sure that "
            "no job copies it: zenqayctl unlock demo PRIORITY --force\n= 3\n");
  EXPECT_EQ(setup.Ctl({"unlock", "demo", "PRIORITY", "--force"}),
            "PRIORITY: it was taken by nobody that the history knows, and is free now\n= 0\n");
}

TEST_F(Zenqayctl, SaysWhichDatabaseIsNotReached) {
  setup.Edit("service.db", "none.db");

  EXPECT_EQ(
      setup.Ctl({"status"}),
      "JOB  TABLE  UPDATED (UTC)  AGE  STATE  LAST RUN\n"
      "! zenqayctl: the database of demo is not reached: unable to open database file: HOME/none.db (No such file "
      "or directory)\n= 4\n");
}

/// The process of run 1 is gone, and jobs of zenqayctl hold the lock while they have a table.
TEST_F(Zenqayctl, FreesATableOnceThatADeadJobOfItsOwnLeftBehind) {
  setup.Script(1, kBegin + kStarted + "signal 9\n");
  setup.Ctl({"run", "demo", "--table", "SITE"});
  setup.Sql("UPDATE tstables SET in_use = 1 WHERE tableid = 1");

  {
    const FileLock lock(setup.Path("service.db-lock"));
    ASSERT_TRUE(lock.Take("site"));
    EXPECT_EQ(setup.Ctl({"unlock", "demo", "SITE"}),
              "SITE: it is taken by process N of run 1, which is gone; its lock is held by a job; once you are sure "
              "that no job copies it: zenqayctl unlock demo SITE --force\n= 3\n");
  }
  EXPECT_EQ(setup.Ctl({"unlock", "demo", "SITE"}),
            "SITE: it was taken by process N of run 1, which is gone, and is free now\n= 0\n");
  EXPECT_FALSE(FileLock::IsTaken(setup.Path("service.db-lock"), "site"));
  const Text run = setup.Ctl({"history", "1", "--json"});
  EXPECT_NE(run.find("\"freed\":\"TIME\""), Text::npos) << run;
  EXPECT_EQ(setup.Ctl({"unlock", "demo", "SITE"}), "SITE: it is free\n= 0\n");

  setup.Sql("UPDATE tstables SET in_use = 1 WHERE tableid = 1");  // by whom is not known
  EXPECT_EQ(setup.Ctl({"unlock", "demo", "SITE"}),
            "SITE: it is taken by nobody that the history knows; its lock is free, but a job that does not use it may "
            "have set the flag; once you are sure that no job copies it: zenqayctl unlock demo SITE --force\n= 3\n");
}

TEST_F(Zenqayctl, FreesATableThatAnybodyMayHaveOnlyByForce) {
  EXPECT_EQ(setup.Ctl({"unlock", "demo", "SITE"}), "SITE: it is free\n= 0\n");
  setup.Sql("UPDATE tstables SET in_use = 1 WHERE tableid = 1");

  EXPECT_EQ(setup.Ctl({"unlock", "demo", "site"}),
            "SITE: it is taken by nobody that the history knows; its lock is free, but a job that does not use it may "
            "have set the flag; once you are sure that no job copies it: zenqayctl unlock demo SITE --force\n= 3\n");
  EXPECT_EQ(setup.Ctl({"unlock", "demo", "SITE", "--force", "--json"}),
            "{\"table\":\"SITE\",\"deed\":\"freed\",\"words\":\"it was taken by nobody that the history knows, and is "
            "free now\"}\n= 0\n");
  EXPECT_EQ(setup.Ctl({"unlock", "demo", "SITE"}), "SITE: it is free\n= 0\n");
}

TEST_F(Zenqayctl, ChecksEachTableOfAJobAndSaysEachThingOnce) {
  setup.check = [](const Text& home, const Text& line, std::ostream& out) {
    const Text id = line.substr(line.find("SERVICE{}") + 9, 1);
    out << "ok        components: " << home << "\nMEND      table " << id << "\nNo job can run.\n";
    return id != "4";
  };

  EXPECT_EQ(setup.Ctl({"check"}),
            "demo:\n"
            "  ok        components: HOME/home\n"
            "  MEND      table 1\n"
            "  MEND      table 4\n"
            "  It cannot run before the lines with MEND are seen to.\n"
            "= 4\n");
  setup.Edit("[\"SITE\", \"PRIORITY\"]", "\"all\"");
  EXPECT_EQ(setup.Ctl({"check", "demo", "--json"}),
            R"([{"job":"demo","can_run":true,"lines":[{"state":"ok","text":"components: HOME/home"},)"
            R"({"state":"MEND","text":"table 1"}]}])"
            "\n= 0\n");
}

TEST_F(Zenqayctl, RefusesWhatItDoesNotUnderstand) {
  EXPECT_EQ(setup.Ctl({}), "! zenqayctl: A subcommand is required (zenqayctl --help)\n= 2\n");
  EXPECT_EQ(setup.Ctl({"--json", "histroy", "7"}),
            "! zenqayctl: there is no command \"histroy\" (did you mean \"history\"?) (zenqayctl --help)\n= 2\n");
  EXPECT_EQ(setup.Ctl({"run"}), "! zenqayctl: JOB is required (zenqayctl run --help)\n= 2\n");
  EXPECT_EQ(setup.Ctl({"run", "nigthly"}),
            "! zenqayctl: HOME/zenqay.toml has no job \"nigthly\" (there are: demo)\n= 2\n");
  EXPECT_EQ(setup.Ctl({"run", "demo", "--full", "--changed"}),
            "! zenqayctl: --full excludes --changed (zenqayctl run --help)\n= 2\n");
  setup.Edit("parallel = 4", "paralel = 4\ntimeout = 7");
  EXPECT_EQ(
      setup.Ctl({"status"}),
      "! zenqayctl: zenqay.toml:12:1: unknown key \"paralel\" in [database.service] (did you mean \"parallel\"?)\n"
      "zenqayctl: zenqay.toml:13:1: unknown key \"timeout\" in [database.service] (there are: connection, name, "
      "platform, parallel, password)\n= 2\n");
}

TEST_F(Zenqayctl, ExplainsEachCommandAndItsOptions) {
  for (const auto& [command, options] : CommandsAndOptions()) {
    const Text page = setup.Ctl({command, "--help"});

    EXPECT_TRUE(page.starts_with("NAME\n    zenqayctl " + command + " - ")) << page;
    EXPECT_NE(page.find("\nSYNOPSIS\n    zenqayctl " + command), Text::npos) << page;
    for (const Text& option : options) {
      EXPECT_NE(page.find(option == "SHELL" ? "bash|zsh|jobs" : option), Text::npos) << command << " " << option;
    }
  }
  EXPECT_TRUE(setup.Ctl({"--help"}).starts_with("NAME\n    zenqayctl - runs copy jobs"));
  EXPECT_EQ(setup.Ctl({"--version"}), "zenqayctl 0.1.0\n= 0\n");
}

TEST_F(Zenqayctl, CompletesCommandsOptionsAndJobs) {
  setup.directory.Write("completion", Replaced(setup.Ctl({"completion", "bash"}), "= 0\n", ""));
  setup.directory.Write(
      "try",
      "zenqayctl() { echo demo; }\n"
      "source " +
          setup.Path("completion") +
          "\n"
          "try() { COMP_WORDS=(zenqayctl \"$@\"); COMP_CWORD=$#; _zenqayctl; echo \"${COMPREPLY[*]}\"; }\n"
          "try h; try run --a; try run d; try --file x unlock ''; try completion z\n"
          "for command in run plan submit check status unlock systemd; do try $command d; done\n"
          "for option in --file --token-file --scratch --out --outcome --keep --directory; do\n"
          "  try plan $option \"${BASH_SOURCE[0]%try}compl\"\n"
          "done\n");
  const Text out = setup.Path("tried");

  ASSERT_EQ(std::system(("bash " + setup.Path("try") + " >" + out).c_str()), 0);

  Text expected = "history\n--allow-sweep\ndemo\n--json --force --help demo\nzsh\n";
  for (int command = 0; command < 7; ++command) expected += "demo\n";
  for (int option = 0; option < 7; ++option) expected += setup.Path("completion") + "\n";
  EXPECT_EQ(setup.directory.Read("tried"), expected);
  EXPECT_EQ(setup.Ctl({"completion", "jobs"}), "demo\n= 0\n");
  EXPECT_EQ(setup.Ctl({"completion", "zsh"}),
            "#compdef zenqayctl\n"
            "autoload -U +X bashcompinit && bashcompinit\n" +
                setup.directory.Read("completion") +
                "if (( $#compstate )); then _bash_complete -F _zenqayctl; fi\n"
                "= 0\n");
}

}  // namespace
}  // namespace zenqay
