// Bad input: each kind has its failure path, a text that names the thing and the place, and leaves the database as the
// statements before it left it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "doubles/trace_text.h"
#include "e2e/program_fixture.h"

namespace zenqay {
namespace {

constexpr const char* kLocationsFile = "Kv40QTMtssmaLocations.csv";
constexpr const char* kHeader = "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n";
constexpr const char* kTwoLocations =
    "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
    "A1,North,C7\n"
    "A2,South,\n";

/// The report of a start that failed with this error, and of nothing else.
std::string FailedStart(const std::string& error) {
  return "exit 0\n"
         "-- out\n"
         "-- err\n"
         "-- ZenqayDBSync.log\n"
         "Date: <date> Time: <time>\r\n"
         "The data copy failed.\r\n"
         "Error is - " +
         error + "\r\n";
}

/// The report of a registry that could not be loaded. Its log record fails, since there is no run log yet: the cause
/// stands on standard error.
std::string FailedRegistry(const std::string& cause) {
  return "exit 0\n"
         "-- out\n"
         "-- err\n"
         "zenqay-dbsync: " +
         cause +
         "\n"
         "-- ZenqayDBSync.log\n"
         "Date: <date> Time: <time>\r\n"
         "The data copy failed.\r\n"
         "Error is - 75: Path/File access error\r\n";
}

/// The report of a table that failed with these lines in its run log.
std::string FailedTable(const std::string& runLogLines) {
  return "exit 0\n"
         "-- out\n"
         "<time>  Copy of Sites (ERP table 110) started.\n"
         "<time>  Copy of Sites (ERP table 110) failed.\n"
         "\n"
         "Table  State     Elapsed  Last message\n"
         "    1  failed    <elapsed>  Copy of Sites (ERP table 110) failed.\n"
         "-- err\n"
         "<time>  Table SITE could not be copied (-1). See the log file <home>/logs\\SITE_<day>.log.\n"
         "-- SITE_<day>.log\n"
         "\"Date-Time :<date> : <time>\"\r\n" +
         runLogLines;
}

constexpr const char* kFullCopyFailed =
    "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n";
constexpr const char* kOnlyChangedPassFailed =
    "\"Data copy: Site - Only Changed\",\"Sites could not be copied from the ERP (generation 1).\"\r\n";

TEST(DatabaseFile, ThatIsMissingIsNamed) {
  ProgramHome home;
  std::filesystem::remove(home.path() + "/service.db");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(
      home.Report(run),
      FailedRegistry("error -2147467259 from \"SQLite\": unable to open database file: <home>/service.db (No such "
                     "file or directory)"));
  EXPECT_FALSE(std::filesystem::exists(home.path() + "/service.db"));
}

TEST(DatabaseFile, ThatIsADirectoryIsNamed) {
  ProgramHome home;
  CommandLine line = home.Line();
  line.connectionString = "Provider=SQLite;Data Source=" + home.path() + "/erp";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(home.Report(run), FailedRegistry("error -2147467259 from \"SQLite\": unable to open database file: "
                                             "<home>/erp (Is a directory)"));
}

TEST(DatabaseFile, ThatIsNoDatabaseIsNamed) {
  ProgramHome home;
  home.directory().Write("service.db", std::string(5000, 'x'));

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(home.Report(run),
            FailedRegistry("error -2147467259 from \"SQLite\": file is not a database: <home>/service.db"));
  EXPECT_EQ(home.directory().Read("service.db"), std::string(5000, 'x'));
}

TEST(DatabaseFile, ThatHasNoTablesIsRefused) {
  ProgramHome home;
  home.directory().Write("service.db", "");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(home.Report(run), FailedRegistry("error -2147217865 from \"SQLite\": no such table: tstables"));
}

/// The super-user writes to every file, so the job runs without the right to pass over a file's permissions.
TEST(DatabaseFile, ThatIsReadOnlyIsNamedAndLeftAsItIs) {
  ProgramHome home;
  const std::string before = home.directory().Read("service.db");
  std::filesystem::permissions(home.path() + "/service.db", std::filesystem::perms::owner_read);
  ProgramSettings settings;
  if (::geteuid() == 0) settings.wrapper = {"setpriv", "--bounding-set", "-dac_override,-dac_read_search"};

  const ProgramRun run = home.Run(home.Line(), settings);

  EXPECT_EQ(home.Report(run), FailedRegistry("error -2147467259 from \"SQLite\": attempt to write a readonly database: "
                                             "<home>/service.db"));
  EXPECT_EQ(home.directory().Read("service.db"), before);
}

TEST(DatabaseFile, WithoutTheDataTableFailsTheTablesCopy) {
  ProgramHome home;
  home.WriteExport(kLocationsFile, kTwoLocations);
  home.Execute("DROP TABLE SITE");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(home.Report(run), FailedTable("\"SQLite\",-2147217865,\"no such table: SITE\"\r\n"
                                          "\"SQLite\",\"no such table: SITE\"\r\n" +
                                          std::string(kFullCopyFailed)));
  EXPECT_EQ(home.SiteState(), "NULL|0\n");
}

TEST(DatabaseFile, ThatRefusesARowKeepsTheRowsBeforeIt) {
  ProgramHome home;
  home.WriteExport(kLocationsFile, kTwoLocations);
  home.Execute(
      "DROP TABLE SITE;"
      "CREATE TABLE SITE (SITE TEXT PRIMARY KEY, DESCRIPTION TEXT, CUSTOMER TEXT NOT NULL, upd_flag INTEGER);"
      "INSERT INTO SITE VALUES ('B1', 'gone', 'C1', 0)");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(home.Report(run), FailedTable("\"SQLite\",-2147217873,\"NOT NULL constraint failed: SITE.CUSTOMER\"\r\n"
                                          "\"SQLite\",\"NOT NULL constraint failed: SITE.CUSTOMER\"\r\n" +
                                          std::string(kFullCopyFailed)));
  EXPECT_EQ(home.Sites(),
            "A1|North|C7|0\n"
            "B1|gone|C1|1\n");
  EXPECT_EQ(home.SiteState(), "NULL|0\n");
}

/// No log can be written at all: the whole of it stands on standard error, and the table stays taken.
TEST(LogDirectory, ThatIsMissingEndsTheProcessBehindTheCopy) {
  ProgramHome home;
  home.WriteExport(kLocationsFile, kTwoLocations);
  CommandLine line = home.Line();
  line.logDirectory = home.path() + "/nowhere";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(home.Report(run),
            "exit 70\n"
            "-- out\n"
            "<time>  Copy of Sites (ERP table 110) started.\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  started   <elapsed>  Copy of Sites (ERP table 110) started.\n"
            "-- err\n"
            "zenqay-dbsync: error 76 from \"ZenqayDBSync\": Path not found: <home>/nowhere\\SITE_<day>.log\n"
            "zenqay-dbsync: error 76 from \"ZenqayDBSync\": Path not found: <home>/nowhere\\ZenqayDBSync.log\n"
            "zenqay-dbsync: fatal error 76: Path not found: <home>/nowhere\\ZenqayDBSync.log\n");
  EXPECT_EQ(home.Sites(),
            "A1|North|C7|0\n"
            "A2|South|NULL|0\n");
  EXPECT_EQ(home.SiteState(), "<moment>|1\n");
}

/// The failed write leaves the one log handle open, so that neither the error's own record nor the start-up log can be
/// written any more. What tells is standard error, and the trace.
TEST(RunLog, OnAFullDiskLeavesNoLogThatCouldTell) {
  ProgramHome home;
  home.RequestTrace();
  home.WriteExport(kLocationsFile, kTwoLocations);
  for (const int daysAhead : {0, 1}) {
    std::filesystem::create_symlink("/dev/full", home.path() + "/logs/SITE_" + DayNow(daysAhead) + ".log");
  }

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(run.status, 70);
  EXPECT_EQ(home.Masked(run.err),
            "zenqay-dbsync: error 61 from \"ZenqayDBSync\": Disk full: <home>/logs\\SITE_<day>.log\n"
            "zenqay-dbsync: error 55 from \"ZenqayDBSync\": File already open: <home>/logs\\SITE_<day>.log\n"
            "zenqay-dbsync: fatal error 55: File already open: <home>/logs\\SITE_<day>.log\n");
  EXPECT_FALSE(std::filesystem::exists(home.path() + "/logs/ZenqayDBSync.log"));
  std::string told;
  std::istringstream trace(home.Masked(WithoutTimes(home.directory().Read("trace.jsonl"))));
  for (std::string text; std::getline(trace, text);) {
    const auto line = nlohmann::json::parse(text);
    if (line["kind"] != "log") continue;
    told += line["file"].get<std::string>() + ": " + line["error"]["number"].dump() + " " +
            line["error"]["description"].get<std::string>() + "\n";
  }
  EXPECT_EQ(told,
            "<home>/logs\\SITE_<day>.log: 61 Disk full: <home>/logs\\SITE_<day>.log\n"
            "<home>/logs\\SITE_<day>.log: 55 File already open: <home>/logs\\SITE_<day>.log\n"
            "<home>/logs\\SITE_<day>.log: 55 File already open: <home>/logs\\SITE_<day>.log\n"
            "<home>/logs\\ZenqayDBSync.log: 55 File already open: <home>/logs\\SITE_<day>.log\n"
            "<home>/logs\\ZenqayDBSync.log: 55 File already open: <home>/logs\\SITE_<day>.log\n");
  EXPECT_EQ(home.Sites(),
            "A1|North|C7|0\n"
            "A2|South|NULL|0\n");
  EXPECT_EQ(home.SiteState(), "<moment>|1\n");
}

TEST(StartupLog, OnAFullDiskEndsTheProcess) {
  ProgramHome home;
  std::filesystem::create_symlink("/dev/full", home.path() + "/logs/ZenqayDBSync.log");
  CommandLine line = home.Line();
  line.statusHandle = "none";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(run.status, 70);
  EXPECT_EQ(home.Masked(run.err),
            "zenqay-dbsync: error 2021004 from \"zenqa Data Copy - Start\": The status handle must be a number, not "
            "\"none\". The data copy cannot start. Please inform your system administrator.\n"
            "zenqay-dbsync: fatal error 61: Disk full: <home>/logs\\ZenqayDBSync.log\n");
}

TEST(LabelFile, ThatIsMissingPutsTheKeysInPlaceOfTheTexts) {
  ProgramHome home;
  home.WriteExport(kLocationsFile, kTwoLocations);
  std::filesystem::remove(home.path() + "/I18nText.xml");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(home.Report(run),
            "exit 0\n"
            "-- out\n"
            "<time>  SLBL0009\n"
            "<time>  SLBL0010\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  complete  <elapsed>  SLBL0010\n"
            "-- err\n"
            "zenqay-dbsync: <home>/I18nText.xml: the file is missing or cannot be read\n"
            "-- SITE_<day>.log\n"
            "SLBL0143\r\n"
            "\"SLBL0375\"\r\n"
            "-- ZNQevtLG.txt\n"
            "<date> <time>  <home>/I18nText.xml: the file is missing or cannot be read\r\n");
  EXPECT_EQ(home.Sites(),
            "A1|North|C7|0\n"
            "A2|South|NULL|0\n");
}

TEST(LabelFile, ThatIsMalformedPutsTheKeysInPlaceOfTheTexts) {
  ProgramHome home;
  home.WriteExport(kLocationsFile, kTwoLocations);
  home.directory().Write("I18nText.xml",
                         "<I18NTEXT>\n<SLBL0375>Rows</SLBL0375>\n<SLBL0143>Date</SLBL0144>\n</I18NTEXT>\n");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(home.Report(run),
            "exit 0\n"
            "-- out\n"
            "<time>  SLBL0009\n"
            "<time>  SLBL0010\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  complete  <elapsed>  SLBL0010\n"
            "-- err\n"
            "zenqay-dbsync: <home>/I18nText.xml, line 3: Start-end tags mismatch\n"
            "-- SITE_<day>.log\n"
            "SLBL0143\r\n"
            "\"SLBL0375\"\r\n"
            "-- ZNQevtLG.txt\n"
            "<date> <time>  <home>/I18nText.xml, line 3: Start-end tags mismatch\r\n");
}

/// Every error of this file comes before the database is touched: there is none to touch.
TEST(ComponentsFile, ThatIsWrongIsNamedWithItsLineBeforeTheDatabaseIsTouched) {
  struct Case {
    const char* content;
    const char* error;
  };
  const Case cases[] = {
      {"<COMPONENTS>\n<HOST prefix=\"Kv\" kind=\"files\" directory=\"erp\"/>\n<HOST></COMPONENTS>\n",
       "5: Invalid procedure call or argument: <home>/Components.xml, line 3: Start-end tags mismatch"},
      {"<COMPONENTS>\n<HOST prefix=\"Kv\" kind=\"odbc\"/>\n</COMPONENTS>\n",
       "5: Invalid procedure call or argument: <home>/Components.xml, line 2: unknown kind \"odbc\""},
      {"<COMPONENTS>\n\n<HOST prefix=\"Kv\" kind=\"files\" directory=\"nowhere\"/>\n</COMPONENTS>\n",
       "76: Path not found: <home>/Components.xml, line 3: there is no directory <home>/nowhere"},
      {"<COMPONENTS>\n<HOST prefix=\"Kv\" kind=\"files\"/>\n</COMPONENTS>\n",
       "5: Invalid procedure call or argument: <home>/Components.xml, line 2: HOST has no attribute \"directory\""},
      {"<COMPONENTS>\n<HOSTS/>\n</COMPONENTS>\n",
       "5: Invalid procedure call or argument: <home>/Components.xml, line 2: unknown element \"HOSTS\""},
      {"\n<HOST prefix=\"Kv\" kind=\"builtin\"/>\n",
       "5: Invalid procedure call or argument: <home>/Components.xml, line 2: the top-level element is not COMPONENTS"},
  };
  for (const auto& [content, error] : cases) {
    SCOPED_TRACE(content);
    ProgramHome home;
    std::filesystem::remove(home.path() + "/service.db");
    home.directory().Write("Components.xml", content);

    const ProgramRun run = home.Run(home.Line());

    EXPECT_EQ(home.Report(run), FailedStart(error));
  }
}

TEST(ComponentsFile, ThatIsWrongIsNotSpokenOfWhenTheCommandLineIsWrongToo) {
  ProgramHome home;
  home.directory().Write("Components.xml", "<COMPONENTS>");

  const ProgramRun run = home.RunText("one{}two{}three{}four{}" + home.path() + "/logs{}six");

  EXPECT_EQ(home.Report(run), FailedStart("9999: The command line has too few items.\r\n"
                                          "The data copy cannot start. Please inform your system administrator."));
}

/// The session cannot be opened, and the record of that goes to a directory that has the label's text for a name.
TEST(ComponentsFile, ThatIsMissingLeavesNoWayIntoTheErp) {
  ProgramHome home;
  std::filesystem::remove(home.path() + "/Components.xml");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(
      home.Report(run),
      "exit 0\n"
      "-- out\n"
      "-- err\n"
      "zenqay-dbsync: <home>/Components.xml: the file is missing, so nothing but dates is served\n"
      "zenqay-dbsync: error 429 from \"java:com.korvel.k3impl.about.AdapterComponentInfo\": Component can't "
      "create object: java:com.korvel.k3impl.about.AdapterComponentInfo\n"
      "-- ZNQevtLG.txt\n"
      "<date> <time>  error 429 from \"java:com.korvel.k3impl.about.AdapterComponentInfo\": Component can't create "
      "object: java:com.korvel.k3impl.about.AdapterComponentInfo\r\n"
      "-- ZenqayDBSync.log\n"
      "Date: <date> Time: <time>\r\n"
      "The data copy failed.\r\n"
      "Error is - 76: Path not found: The session with the ERP adapter could not be opened.\\ZenqayDBSync.log\r\n");
  EXPECT_EQ(home.SiteState(), "NULL|0\n");
}

TEST(Export, ThatIsMissingFailsTheFullCopyAtTheManagersCreation) {
  ProgramHome home;
  home.Execute("INSERT INTO SITE VALUES ('B1', 'there', NULL, 0)");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(home.Report(run),
            FailedTable("\"Kv40QTMtssmaLocations.LocationsManager\",\"Component can't create object: "
                        "Kv40QTMtssmaLocations.LocationsManager (no file <home>/erp/Kv40QTMtssmaLocations.csv)\"\r\n"
                        "\"ZenqayDBSync\",\"Object variable not set\"\r\n"));
  EXPECT_EQ(home.Sites(), "B1|there|NULL|0\n");
  EXPECT_EQ(home.SiteState(), "NULL|0\n");
}

TEST(Export, ThatIsMissingFailsTheOnlyChangedPassAtTheManagersCreation) {
  ProgramHome home;
  CommandLine line = home.Line();
  line.syncMethod = "2";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(home.Report(run),
            FailedTable("\"Kv40QTMtssmaLocations.LocationsManager\",\"Component can't create object: "
                        "Kv40QTMtssmaLocations.LocationsManager (no file <home>/erp/Kv40QTMtssmaLocations.csv)\"\r\n"
                        "\"Data copy: Site - Only Changed\",\"Sites could not be copied from .\"\r\n"));
  EXPECT_EQ(home.SiteState(), "NULL|0\n");
}

/// The third record of each export is flawed; the two before it are copied, and no sweep follows.
TEST(Export, WithAFlawedRecordKeepsTheRecordsBeforeIt) {
  struct Case {
    const char* thirdRecord;
    const char* error;
  };
  const Case cases[] = {
      {"A3,\"We\"st,C8\n", "Type mismatch: Kv40QTMtssmaLocations.csv, line 4, column 2: broken quote"},
      {"A3,West\n",
       "Type mismatch: Kv40QTMtssmaLocations.csv, line 4, column Customer: the record ends before this "
       "column"},
      {"A3,West,C8,1\n", "Type mismatch: Kv40QTMtssmaLocations.csv, line 4, column 4: the header has no such column"},
      {"A3,W\xE4st,C8\n", "Type mismatch: Kv40QTMtssmaLocations.csv, line 4, column Description: is no UTF-8 text"},
      {"A3,\"West,C8\n", "Type mismatch: Kv40QTMtssmaLocations.csv, line 4, column 2: broken quote, nothing closes it"},
  };
  for (const auto& [thirdRecord, error] : cases) {
    SCOPED_TRACE(thirdRecord);
    ProgramHome home;
    home.Execute("INSERT INTO SITE VALUES ('A1', 'old', NULL, 0), ('A3', 'old', NULL, 0), ('B1', 'old', NULL, 0)");
    home.WriteExport(kLocationsFile, kTwoLocations + std::string(thirdRecord) + "A4,East,C9\n");

    const ProgramRun run = home.Run(home.Line());

    EXPECT_EQ(home.Report(run), FailedTable("\"Kv40QTMtssmaLocations.LocationsManager\",\"" + std::string(error) +
                                            ": hasMoreElements\"\r\n" + kFullCopyFailed));
    EXPECT_EQ(home.Sites(),
              "A1|North|C7|0\n"
              "A2|South|NULL|0\n"
              "A3|old|NULL|1\n"
              "B1|old|NULL|1\n");
    EXPECT_EQ(home.SiteState(), "NULL|0\n");
  }
}

TEST(Export, WithANullKeepsTheRecordsBeforeIt) {
  ProgramHome home;
  home.WriteExport(kLocationsFile, kTwoLocations + std::string("A3,\\N,C8\n"));

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(home.Report(run),
            FailedTable("\"ZenqayDBSync\",\"Invalid use of Null: getDescription of Location=A3\"\r\n" +
                        std::string(kFullCopyFailed)));
  EXPECT_EQ(home.Sites(),
            "A1|North|C7|0\n"
            "A2|South|NULL|0\n");
}

TEST(Export, WithAFlawedHeaderLeavesTheTableAlone) {
  struct Case {
    const char* content;
    const char* error;
  };
  const Case cases[] = {
      {"", "Type mismatch: Kv40QTMtssmaLocations.csv, line 1, column 1: the file has no header: List"},
      {"Location:text:cloc:key,Description:words\n",
       "Type mismatch: Kv40QTMtssmaLocations.csv, line 1, column 2: \"Description:words\" has an unknown type: List"},
      {"Location:text:cloc:key,Descr",
       "Object doesn't support this property or method: List (Kv40QTMtssmaLocations.csv has no column Description)"},
      {"Location:text:cloc,Description:text,Customer\n",
       "Invalid procedure call or argument: List takes 0 arguments, a lowest and a highest value for each key column "
       "of "
       "Kv40QTMtssmaLocations.csv"},
  };
  for (const auto& [content, error] : cases) {
    SCOPED_TRACE(content);
    ProgramHome home;
    home.Execute("INSERT INTO SITE VALUES ('B1', 'there', NULL, 0)");
    home.WriteExport(kLocationsFile, content);

    const ProgramRun run = home.Run(home.Line());

    EXPECT_EQ(home.Report(run), FailedTable("\"Kv40QTMtssmaLocations.LocationsManager\",\"" + std::string(error) +
                                            "\"\r\n" + kFullCopyFailed));
    EXPECT_EQ(home.Sites(), "B1|there|NULL|0\n");
    EXPECT_EQ(home.SiteState(), "NULL|0\n");
  }
}

TEST(Export, WithoutAColumnThatTheJobReadsNamesTheColumn) {
  ProgramHome home;
  home.WriteExport(kLocationsFile, "Location:text:cloc:key,Description:text:desc\nA1,North\n");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(home.Report(run),
            FailedTable("\"Kv40QTMtssmaLocations.LocationsManager\",\"Object doesn't support this property or method: "
                        "List (Kv40QTMtssmaLocations.csv has no column Customer)\"\r\n" +
                        std::string(kFullCopyFailed)));
  EXPECT_EQ(home.Sites(), "");
}

/// Priorities stand in statements as the export gives them.
TEST(Export, WithANumberDeclaredAsATextRunsNoSql) {
  ProgramHome home;
  home.Execute("INSERT INTO SITE VALUES ('B1', 'there', NULL, 0); INSERT INTO PRIORITY VALUES (6, 'there', 0)");
  home.WriteExport("Kv40QTMtssmaPriorities.csv",
                   "Priority::prno:key,Description:text:desc\n"
                   "6 WHERE 1=0; DELETE FROM SITE; UPDATE PRIORITY SET PRIORITY=6,High\n");
  CommandLine line = home.Line();
  line.tableId = "4";

  home.Run(line);

  EXPECT_EQ(
      home.Log("PRIORITY_<day>.log"),
      "\"Date-Time :<date> : <time>\"\r\n"
      "\"Kv40QTMtssmaPriorities.PrioritiesManager\",\"Type mismatch: Kv40QTMtssmaPriorities.csv, line 1, column 1: "
      "\"Priority::prno:key\" is not declared as int: List\"\r\n"
      "\"Data copy: Priorities\",\"Priorities could not be copied from the ERP (generation 1).\"\r\n");
  EXPECT_EQ(home.Sites(), "B1|there|NULL|0\n");
  EXPECT_EQ(home.Query("SELECT PRIORITY, DESCRIPTION, upd_flag FROM PRIORITY"), "6|there|0\n");
}

TEST(Export, CutOffInTheMiddleIsNotSwept) {
  ProgramHome home;
  home.Execute("INSERT INTO SITE VALUES ('B1', 'there', NULL, 0)");
  home.WriteExport(kLocationsFile, kTwoLocations);
  home.WriteExport("Kv40QTMtssmaLocations.rows", "3\n");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(home.Report(run),
            FailedTable("\"Kv40QTMtssmaLocations.LocationsManager\",\"Type mismatch: "
                        "Kv40QTMtssmaLocations.csv ends after 2 records in place of 3: hasMoreElements\"\r\n" +
                        std::string(kFullCopyFailed)));
  EXPECT_EQ(home.Sites(),
            "A1|North|C7|0\n"
            "A2|South|NULL|0\n"
            "B1|there|NULL|1\n");
  EXPECT_EQ(home.SiteState(), "NULL|0\n");
}

TEST(Export, WithAWrongTypeInRecord70000KeepsThe69999BeforeIt) {
  ProgramHome home;
  home.Execute(
      "WITH RECURSIVE numbers(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM numbers WHERE i < 70001)"
      "INSERT INTO SITE SELECT printf('S%06d', i), 'old', NULL, 0 FROM numbers");
  std::ostringstream content;
  content << "Location:text:cloc:key,Description:text:desc,Customer:text:cuno,Floor:int\n";
  for (int i = 1; i <= 70'001; ++i) {
    char key[16];
    std::snprintf(key, sizeof key, "S%06d", i);
    content << key << ",new,C7," << (i == 70'000 ? "12a" : "12") << "\n";
  }
  home.WriteExport(kLocationsFile, content.str());

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(
      home.Report(run),
      FailedTable("\"Kv40QTMtssmaLocations.LocationsManager\",\"Type mismatch: "
                  "Kv40QTMtssmaLocations.csv, line 70001, column Floor: \"12a\" is no int: hasMoreElements\"\r\n" +
                  std::string(kFullCopyFailed)));
  EXPECT_EQ(home.Query("SELECT count(*), min(SITE), max(SITE), DESCRIPTION, CUSTOMER, upd_flag FROM SITE "
                       "GROUP BY DESCRIPTION, CUSTOMER, upd_flag ORDER BY 2"),
            "69999|S000001|S069999|new|C7|0\n"
            "2|S070000|S070001|old|NULL|1\n");
  EXPECT_EQ(home.SiteState(), "NULL|0\n");
}

TEST(ChangesFile, WithAFlawedRecordKeepsTheChangesBeforeIt) {
  ProgramHome home;
  home.Execute(
      "INSERT INTO SITE VALUES ('A1', 'old', NULL, 0), ('A2', 'old', NULL, 0);"
      "UPDATE tstables SET lutm = '2024-01-31 10:00:00' WHERE tablename = 'SITE'");
  home.WriteExport(kLocationsFile, kHeader);
  home.WriteExport("Kv40QTMtssmaLocations.changes.csv",
                   "ChangedAt,ActionType,Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
                   "2024-02-01T00:00:00Z,U,A1,new,\n"
                   "2024-02-01T00:00:00Z,D,A2,,\n"
                   "1.2.2024,U,A3,new,\n"
                   "2024-02-01T00:00:00Z,I,A4,new,\n");
  CommandLine line = home.Line();
  line.syncMethod = "2";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(home.Report(run),
            FailedTable("\"Kv40QTMtssmaLocations.LocationsManager\",\"Type mismatch: "
                        "Kv40QTMtssmaLocations.changes.csv, line 4, column ChangedAt: \"1.2.2024\" is no time "
                        "YYYY-MM-DDThh:mm:ssZ: hasMoreElements\"\r\n" +
                        std::string(kOnlyChangedPassFailed)));
  EXPECT_EQ(home.Sites(), "A1|new|NULL|0\n");
  EXPECT_EQ(home.Query("SELECT lutm, in_use FROM tstables WHERE tablename = 'SITE'"), "2024-01-31 10:00:00|0\n");
}

TEST(ChangesFile, ThatSaysNothingFailsThePass) {
  ProgramHome home;
  home.Execute("UPDATE tstables SET lutm = '2024-01-31 10:00:00' WHERE tablename = 'SITE'");
  home.WriteExport(kLocationsFile, kHeader);
  home.WriteExport("Kv40QTMtssmaLocations.changes.csv", "\\NOTHING\n");
  CommandLine line = home.Line();
  line.syncMethod = "2";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(home.Report(run),
            FailedTable("\"ZenqayDBSync\",\"Object variable not set\"\r\n" + std::string(kOnlyChangedPassFailed)));
  EXPECT_EQ(home.Query("SELECT lutm, in_use FROM tstables WHERE tablename = 'SITE'"), "2024-01-31 10:00:00|0\n");
}

TEST(AFieldThatMemoryHasNoRoomFor, FailsItsTableAndLeavesItFreeWithItsRecords) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer takes more addresses than the limit leaves";
#endif
  ProgramHome home;
  home.WriteExport("Kv40QTMtssmaLocations.csv",
                   "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
                   "A1,North,C7\n"
                   "A2," +
                       std::string(15 * 1024 * 1024, 'x') + ",C7\n");

  const ProgramRun run = home.Run(home.Line(), {.wrapper = {"prlimit", "--as=112640000"}});

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(home.Sites(), "A1|North|C7|0\n");
  EXPECT_EQ(home.SiteState(), "NULL|0\n");
  EXPECT_EQ(home.Log("SITE_<day>.log"),
            "\"Date-Time :<date> : <time>\"\r\n"
            "\"ZenqayDBSync\",\"Out of memory\"\r\n"
            "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
}

}  // namespace
}  // namespace zenqay
