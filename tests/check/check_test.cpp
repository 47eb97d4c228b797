#include "check/check.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include "check_setup.h"
#include "doubles/child_process.h"
#include "engines/engine_connection.h"
#include "engines/provider_errors.h"

namespace zenqay {
namespace {

const Text kProgramIsWell =
    "ok        log directory: HOME/log\n"
    "ok        labels: HOME/I18nText.xml\n"
    "ok        components: HOME/Components.xml\n"
    "ok        date objects\n"
    "ok        ERP adapter: version 2.4\n"
    "ok        status component: ZenqayInstHandler.InstanceHandle\n";
const Text kDatabaseIsWell =
    "ok        driver: SQLite\n"
    "ok        login: HOME/service.db\n"
    "ok        database: SERVICE\n"
    "ok        control table tstables\n"
    "ok        control table tstreenodes\n"
    "ok        control table tsi18ntext\n";
const Text kRegistry3 = "ok        registry: SITE, PROBLEM, PRIORITY, OBJECT, SITECONTRACT, CONTRACTS, WARRANTIES\n";
const Text kCanRun = "A job can run.\n=> true\n";
const Text kCannotRun = "No job can run before the lines with MEND are seen to.\n=> false\n";

const Text kObjectsExport = "erp/Kv50QTMtscfgObjects.csv";
const Text kLineOfObjects = "ok        command line: table 6, full copy, SQL Server, generation 3\n";
const Text kObjectsAreWell = "ok        table 6 OBJECT (Objects): never copied\n";
const Text kObjectsManagerIsWell = "ok        ERP component of OBJECT: Kv50QTMtscfgObjects.ObjectsManager\n";
const Text kAllIsWell =
    kLineOfObjects + kProgramIsWell + kDatabaseIsWell + kRegistry3 + kObjectsAreWell + kObjectsManagerIsWell + kCanRun;

/// What is said when all is well but for one line.
Text Instead(const Text& line, const Text& spoiltLine) {
  const Text said = Replaced(kAllIsWell, line, spoiltLine);
  return spoiltLine.find("MEND") == Text::npos ? said : Replaced(said, kCanRun, kCannotRun);
}

/// What is said when the database fails at a step: the line of the failure and what is left out behind it.
Text DatabaseEndsWith(const Text& lines) {
  return kLineOfObjects + kProgramIsWell + lines + kCannotRun;
}

class CheckOfOneTable : public testing::Test {
 protected:
  CheckOfOneTable() { setup.items[2] = "6"; }

  CheckSetup setup{"3"};
};

TEST(CheckOfAllTables, SaysWhatWorksUnderGeneration1) {
  CheckSetup setup("1");

  EXPECT_EQ(setup.Check(), "ok        command line: all tables, full copy, SQL Server, generation 1\n" +
                               kProgramIsWell + kDatabaseIsWell +
                               "ok        registry: SITE, PRODUCT, PROBLEM, PRIORITY, SYMPTOM, CONTRACTS, WARRANTIES\n"
                               "ok        table 1 SITE (Sites): never copied\n"
                               "ok        table 2 PRODUCT (Products): never copied\n"
                               "ok        table 3 PROBLEM (Problems): never copied\n"
                               "ok        table 4 PRIORITY (Priorities): never copied\n"
                               "ok        table 5 SYMPTOM (Symptoms): never copied\n"
                               "ok        table 8 CONTRACTS (Contracts): never copied\n"
                               "ok        table 9 WARRANTIES (Warranties): never copied\n"
                               "ok        ERP component of SITE: Kv40QTMtssmaLocations.LocationsManager\n"
                               "ok        ERP component of PRODUCT: Kv40QTMtssmaInstallations.InstallationsManager\n"
                               "ok        ERP component of PROBLEM: Kv40QTMtsspfProblems.ProblemsManager\n"
                               "ok        ERP component of PRIORITY: Kv40QTMtssmaPriorities.PrioritiesManager\n"
                               "ok        ERP component of SYMPTOM: Kv40QTMtsspfSymptoms.SymptomsManager\n"
                               "ok        ERP component of CONTRACTS: Kv40QTMtssmaContracts.ContractsManager\n"
                               "ok        ERP component of WARRANTIES: Kv40QTMtssmaWarranties.WarrantiesManager\n" +
                               kCanRun);
}

TEST(CheckOfAllTables, SaysWhatWorksUnderGeneration3) {
  CheckSetup setup("3");
  setup.Sql("UPDATE tstables SET lutm = '2004-01-31 10:11:12' WHERE tablename = 'SITE'");

  EXPECT_EQ(setup.Check(),
            "ok        command line: all tables, full copy, SQL Server, generation 3\n" + kProgramIsWell +
                kDatabaseIsWell + kRegistry3 +
                "ok        table 1 SITE (Sites): current up to 2004-01-31 10:11:12\n"
                "ok        table 3 PROBLEM (Problems): never copied\n"
                "ok        table 4 PRIORITY (Priorities): never copied\n"
                "ok        table 6 OBJECT (Objects): never copied\n"
                "ok        table 7 SITECONTRACT (Site contracts): never copied\n"
                "ok        table 8 CONTRACTS (Contracts): never copied\n"
                "ok        table 9 WARRANTIES (Warranties): never copied\n"
                "ok        ERP component of SITE: Kv50QTMtscfgConfigurations.ConfigurationsManager\n"
                "ok        ERP component of PROBLEM: Kv50QTMtsclmProblems.ProblemsManager\n"
                "ok        ERP component of PRIORITY: Kv50QTMtcmcsPriorities.PrioritiesManager\n"
                "ok        ERP component of OBJECT: Kv50QTMtscfgObjects.ObjectsManager\n"
                "ok        ERP component of SITECONTRACT: "
                "Kv50QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager\n"
                "ok        ERP component of CONTRACTS: Kv50QTMtsctmServiceContracts.ServiceContractsManager\n"
                "ok        ERP component of WARRANTIES: Kv50QTMtsctmWarranties.WarrantiesManager\n" +
                kCanRun);
}

TEST(CheckOfAllTables, SaysWhatWorksUnderGeneration8) {
  CheckSetup setup("8");

  EXPECT_EQ(setup.Check(),
            "ok        command line: all tables, full copy, SQL Server, generation 8\n" + kProgramIsWell +
                kDatabaseIsWell +
                "ok        registry: SITE, PROBLEM, PRIORITY, SITECONTRACT, CONTRACTS, WARRANTIES, SERIALIZEDITEM\n"
                "ok        table 1 SITE (Sites): never copied\n"
                "ok        table 3 PROBLEM (Problems): never copied\n"
                "ok        table 4 PRIORITY (Priorities): never copied\n"
                "ok        table 7 SITECONTRACT (Site contracts): never copied\n"
                "ok        table 8 CONTRACTS (Contracts): never copied\n"
                "ok        table 9 WARRANTIES (Warranties): never copied\n"
                "ok        table 10 SERIALIZEDITEM (Serialized items): never copied\n"
                "ok        ERP component of SITE: Kv61QTMtsbscClusters.ClustersManager\n"
                "ok        ERP component of PROBLEM: Kv61QTMtsclmProblems.ProblemsManager\n"
                "ok        ERP component of PRIORITY: Kv61QTMtcmcsPriorities.PrioritiesManager\n"
                "ok        ERP component of SITECONTRACT: "
                "Kv61QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager\n"
                "ok        ERP component of CONTRACTS: Kv61QTMtsctmServiceContracts.ServiceContractsManager\n"
                "ok        ERP component of WARRANTIES: Kv61QTMtsctmWarranties.WarrantiesManager\n"
                "ok        ERP component of SERIALIZEDITEM: Kv61QTMtscfgSerializedItems.SerializedItemsManager\n" +
                kCanRun);
}

TEST_F(CheckOfOneTable, LooksAtNoOther) {
  setup.Sql("DROP TABLE SITE");

  EXPECT_EQ(setup.Check(), kAllIsWell);
}

TEST_F(CheckOfOneTable, LooksForWhatAnOnlyChangedPassNeeds) {
  setup.items[3] = "2";
  setup.items.push_back("");
  setup.Sql("UPDATE tstables SET lutm = '2004-01-31 10:11:12'");

  EXPECT_EQ(setup.Check(),
            "ok        command line: table 6, only changed, SQL Server, generation 3\n"
            "ok        log directory: HOME/log\n"
            "ok        labels: HOME/I18nText.xml\n"
            "ok        components: HOME/Components.xml\n"
            "ok        date objects\n"
            "ok        ERP adapter: version 2.4\n"
            "ok        status component: switched off by the twelfth item\n"
            "ok        selection of changes\n" +
                kDatabaseIsWell + kRegistry3 +
                "ok        table 6 OBJECT (Objects): current up to 2004-01-31 10:11:12\n" + kObjectsManagerIsWell +
                kCanRun);
}

TEST_F(CheckOfOneTable, TakesTheSchemaAsOracleDoes) {
  setup.items[8] = "2";

  EXPECT_EQ(setup.Check(),
            Instead(kLineOfObjects, "ok        command line: table 6, full copy, Oracle, generation 3\n"));
}

// The command line.

const Text kBehindABadLine =
    "ok        labels: HOME/I18nText.xml\n"
    "ok        components: HOME/Components.xml\n"
    "ok        date objects\n"
    "ok        ERP adapter: version 2.4\n"
    "left out  status component: needs the command line\n"
    "left out  log directory, database and tables: needs the command line\n" +
    kCannotRun;

TEST_F(CheckOfOneTable, MendsALineOfTooFewItems) {
  setup.items.resize(6);

  EXPECT_EQ(setup.Check(),
            "MEND      command line: 9999: The command line has too few items. The data copy cannot start. Please "
            "inform your system administrator.\n" +
                kBehindABadLine);
}

TEST(CheckOfTheCommandLine, MendsWhatNoJobGetsPast) {
  struct Case {
    std::size_t item;
    Text text;
    Text said;
  };
  const std::vector<Case> cases = {
      {1, "", "item 1 is blank, it must be the connection string"},
      {3, "129", "item 3 is the table id 129, it must be 0 to 127, or 128 for all tables"},
      {3, "-1", "item 3 is the table id -1, it must be 0 to 127, or 128 for all tables"},
      {3, "40000", "6: Overflow"},
      {4, "full", "13: Type mismatch: the sync method is no number"},
      {7, "x",
       "2021004: The status handle must be a number, not \"x\". The data copy cannot start. Please inform your system "
       "administrator."},
      {9, "", "13: Type mismatch: the database platform is no number"},
      {11, "4", "item 11 is the generation \"4\", it must be 1, 3 or 8"},
  };
  CheckSetup setup("3");
  const std::vector<Text> wellItems = setup.items;
  for (const auto& [item, text, said] : cases) {
    setup.items = wellItems;
    setup.items[item - 1] = text;

    EXPECT_EQ(setup.Check(), "MEND      command line: " + said + "\n" + kBehindABadLine);
  }
}

TEST_F(CheckOfOneTable, MendsALineWithoutAGeneration) {
  setup.items.resize(10);

  EXPECT_EQ(setup.Check(),
            "MEND      command line: 9: Subscript out of range: the command line has no item 11\n" + kBehindABadLine);
}

TEST_F(CheckOfOneTable, WarnsOfItemsThatAJobTakesWithoutComplaint) {
  setup.items[2] = "6x";
  setup.items[3] = "7";
  setup.items[8] = "3";
  setup.items[9] = "x";
  setup.items.insert(setup.items.end(), {"", ""});

  EXPECT_EQ(setup.Check(),
            "warning   command line: item 3 is no whole number, it is read as table 6\n"
            "warning   command line: item 4 is neither 1 nor 2: a job copies nothing\n"
            "warning   command line: item 9 is neither 1 nor 2: the database is not set, and statements are those of "
            "SQL Server\n"
            "warning   command line: item 10 is no number: the instance is 0\n"
            "warning   command line: there are 13 items: only a line of exactly twelve switches the status component "
            "off\n" +
                Instead(kLineOfObjects, "ok        command line: table 6, method 7, platform 3, generation 3\n"));
}

// What stands beside the program.

TEST_F(CheckOfOneTable, MendsALogDirectoryThatIsMissing) {
  setup.Remove("log");

  EXPECT_EQ(setup.Check(), Instead("ok        log directory: HOME/log\n",
                                   "MEND      log directory: there is no directory HOME/log\n"));
}

TEST_F(CheckOfOneTable, WarnsOfABlankLogDirectory) {
  setup.items[4] = " ";

  EXPECT_EQ(setup.Check(), Instead("ok        log directory: HOME/log\n",
                                   "warning   log directory: item 5 is blank: the logs go to the root directory\n"));
}

TEST_F(CheckOfOneTable, WarnsOfTextsThatAreMissing) {
  setup.Edit("I18nText.xml", "SLBL0143>", "SLBL9143>");
  setup.Edit("I18nText.xml", "STIT0015>", "STIT9015>");

  EXPECT_EQ(setup.Check(), Instead("ok        labels: HOME/I18nText.xml\n",
                                   "warning   labels: HOME/I18nText.xml lacks SLBL0143, STIT0015; the keys stand in "
                                   "their place\n"));
}

TEST_F(CheckOfOneTable, WarnsOfAFileOfTextsThatIsMissing) {
  setup.Remove("I18nText.xml");

  EXPECT_EQ(setup.Check(), Instead("ok        labels: HOME/I18nText.xml\n",
                                   "warning   labels: HOME/I18nText.xml: the file is missing or cannot be read; keys "
                                   "stand in the place of all texts\n"));
}

TEST_F(CheckOfOneTable, NamesTheTextsOfTheLanguage) {
  setup.Edit("Components.xml", "</COMPONENTS>", "<TEXTS language=\"de\"/></COMPONENTS>");
  const Text missing =
      "warning   labels: HOME/I18nText.de.xml: the file is missing or cannot be read; keys stand in the "
      "place of all texts\n";

  EXPECT_EQ(setup.Check(), Instead("ok        labels: HOME/I18nText.xml\n", missing));
  std::filesystem::copy_file(ZENQAY_SHARE "/I18nText.de.xml", setup.Path("I18nText.de.xml"));
  EXPECT_EQ(setup.Check(),
            Instead("ok        labels: HOME/I18nText.xml\n", "ok        labels: HOME/I18nText.de.xml\n"));
}

TEST_F(CheckOfOneTable, MendsACatalogueThatCannotBeUsedAndLeavesTheErpOut) {
  setup.Edit("Components.xml", "kind=\"builtin\"", "kind=\"other\"");

  EXPECT_EQ(
      setup.Check(),
      kLineOfObjects +
          "ok        log directory: HOME/log\n"
          "ok        labels: HOME/I18nText.xml\n"
          "MEND      components: 5: Invalid procedure call or argument: HOME/Components.xml, line 9: unknown kind "
          "\"other\"\n"
          "left out  ERP adapter, dates and status component: needs the components\n" +
          kDatabaseIsWell + kRegistry3 + kObjectsAreWell +
          "left out  ERP components of the tables: needs the components\n" + kCannotRun);
}

TEST_F(CheckOfOneTable, TellsOfTheTraceAndMendsOneThatCouldNotBeWritten) {
  const Text components = setup.home.Read("Components.xml");
  for (const auto& [file, line] :
       {std::pair<Text, Text>("trace-%p.jsonl", "ok        trace: HOME/trace-%p.jsonl\n"),
        {"none/trace.jsonl", "MEND      trace: 75: Path/File access error: HOME/none/trace.jsonl\n"},
        {"erp", "MEND      trace: 75: Path/File access error: HOME/erp\n"}}) {
    setup.home.Write("Components.xml",
                     Replaced(components, "</COMPONENTS>", "<TRACE file=\"" + file + "\"/></COMPONENTS>"));

    EXPECT_EQ(setup.Check(), Instead("ok        date objects\n", line + "ok        date objects\n"));
  }
}

TEST_F(CheckOfOneTable, TellsTheSafeguardsThatAreAskedFor) {
  setup.Edit("Components.xml", "</COMPONENTS>",
             "<SWEEP limit=\"10%\" from=\"100\"><TABLE name=\"SITE\" limit=\"50\"/></SWEEP><LOCK/></COMPONENTS>");

  EXPECT_EQ(setup.Check(), Replaced(Instead("ok        date objects\n",
                                            "ok        sweep limit: 10%, SITE 50; never of fewer than 100 rows\n"
                                            "ok        date objects\n"),
                                    kRegistry3, kRegistry3 + "ok        table lock: a file beside the database\n"));
}

TEST_F(CheckOfOneTable, MendsComponentsThatNobodyServes) {
  setup.Remove("Components.xml");

  EXPECT_EQ(setup.Check(),
            kLineOfObjects +
                "ok        log directory: HOME/log\n"
                "ok        labels: HOME/I18nText.xml\n"
                "warning   components: there is no HOME/Components.xml: nothing but dates is served\n"
                "ok        date objects\n"
                "MEND      ERP adapter: 429: Component can't create object: "
                "java:com.korvel.k3impl.about.AdapterComponentInfo\n"
                "MEND      status component: 429: Component can't create object: ZenqayInstHandler.InstanceHandle\n" +
                kDatabaseIsWell + kRegistry3 + kObjectsAreWell +
                "MEND      ERP component of OBJECT: 429: Component can't create object: "
                "Kv50QTMtscfgObjects.ObjectsManager\n" +
                kCannotRun);
}

TEST_F(CheckOfOneTable, MendsDatesAndChangeSelectionsThatNobodyServes) {
  setup.items[3] = "2";
  setup.Sql("UPDATE tstables SET lutm = '2004-01-31 10:11:12'");
  setup.Edit("Components.xml", "\"java:java.util.\"", "\"java:java.none.\"");
  setup.Edit("Components.xml", "\"NetListSelectionCriteria.\"", "\"None.\"");

  EXPECT_EQ(setup.Check(),
            "ok        command line: table 6, only changed, SQL Server, generation 3\n"
            "ok        log directory: HOME/log\n"
            "ok        labels: HOME/I18nText.xml\n"
            "ok        components: HOME/Components.xml\n"
            "MEND      date objects: 429: Component can't create object: java:java.util.Date\n"
            "ok        ERP adapter: version 2.4\n"
            "ok        status component: ZenqayInstHandler.InstanceHandle\n"
            "MEND      selection of changes: 429: Component can't create object: "
            "NetListSelectionCriteria.NetListSelectionCriteria\n" +
                kDatabaseIsWell + kRegistry3 +
                "ok        table 6 OBJECT (Objects): current up to 2004-01-31 10:11:12\n" + kObjectsManagerIsWell +
                kCannotRun);
}

TEST_F(CheckOfOneTable, WarnsOfAnAdapterThatIsTooOldForASession) {
  setup.home.Write("erp/adapter-version.txt", "2.3\n");

  EXPECT_EQ(setup.Check(), Instead("ok        ERP adapter: version 2.4\n",
                                   "warning   ERP adapter: version 2.3, which is not newer than 2.3: a job runs "
                                   "without a session of the ERP\n"));
}

TEST_F(CheckOfOneTable, MendsAnExportThatAJobWouldStumbleOver) {
  const Text header = setup.home.Read(kObjectsExport).substr(0, setup.home.Read(kObjectsExport).find('\n') + 1);
  const struct {
    Text content;
    Text said;
  } cases[] = {
      {"", "13: Type mismatch: Kv50QTMtscfgObjects.csv, line 1, column 1: the file has no header"},
      {Replaced(header, "DeliveryDate:date", "DeliveryDate:text") + "C1,O1,1,,,,,,,\n",
       "13: Type mismatch: Kv50QTMtscfgObjects.csv, line 1, column 9: \"DeliveryDate:text:dldt\" is not declared as "
       "date"},
      {Replaced(header, ",Warranty:text:cwte", "") + "C1,O1,1,,,,,,\n",
       "438: Object doesn't support this property or method: List (Kv50QTMtscfgObjects.csv has no column Warranty)"},
      {Replaced(header, "oseq:key", "oseq") + "C1,O1,1,,,,,,,\n",
       "5: Invalid procedure call or argument: List takes 4 arguments, a lowest and a highest value for each key "
       "column "
       "of Kv50QTMtscfgObjects.csv"},
      {header + "C1,O1,1,,,,,,,\nC1,O2,two,,,,,,,\n",
       "13: Type mismatch: Kv50QTMtscfgObjects.csv, line 3, column ObjectNumber: \"two\" is no int"},
  };
  for (const auto& [content, said] : cases) {
    setup.home.Write(kObjectsExport, content);

    EXPECT_EQ(setup.Check(), Instead(kObjectsManagerIsWell, "MEND      ERP component of OBJECT: " + said + "\n"));
  }
}

TEST_F(CheckOfOneTable, MendsAnExportThatCannotBeRead) {
  setup.Remove(kObjectsExport);
  std::filesystem::create_directory(setup.Path(kObjectsExport));

  EXPECT_EQ(setup.Check(), Instead(kObjectsManagerIsWell,
                                   "MEND      ERP component of OBJECT: 75: Path/File access error: "
                                   "Kv50QTMtscfgObjects.csv (Is a directory)\n"));
}

TEST_F(CheckOfOneTable, ReadsTheChangesForAnOnlyChangedPassAndNotTheWholeExport) {
  setup.items[3] = "2";
  setup.Sql("UPDATE tstables SET lutm = '2004-01-31 10:11:12'");
  setup.home.Write(kObjectsExport, "");
  setup.home.Write("erp/Kv50QTMtscfgObjects.changes.csv", "ChangedAt,ActionType\n");

  EXPECT_EQ(
      setup.Check(),
      "ok        command line: table 6, only changed, SQL Server, generation 3\n" + kProgramIsWell +
          "ok        selection of changes\n" + kDatabaseIsWell + kRegistry3 +
          "ok        table 6 OBJECT (Objects): current up to 2004-01-31 10:11:12\n"
          "MEND      ERP component of OBJECT: 438: Object doesn't support this property or method: NetListObjects "
          "(Kv50QTMtscfgObjects.changes.csv has no column Configuration)\n" +
          kCannotRun);
}

TEST_F(CheckOfOneTable, ReadsTheExportOfSiteContractsForTheTermsOfTheirChangesToo) {
  setup.items[2] = "7";
  setup.items[3] = "2";
  setup.Sql("UPDATE tstables SET lutm = '2004-01-31 10:11:12'");
  setup.home.Write("erp/Kv50QTMtsctmContractConfigurationLines.changes.csv",
                   "ChangedAt,ActionType,ServiceContract,ContractTerms:int,Line:int,Configuration,EffectiveDate:date,"
                   "ExpiryDate:date\n");
  setup.home.Write("erp/Kv50QTMtsctmContractConfigurationLines.csv", "");

  EXPECT_EQ(setup.Check(),
            "ok        command line: table 7, only changed, SQL Server, generation 3\n" + kProgramIsWell +
                "ok        selection of changes\n" + kDatabaseIsWell + kRegistry3 +
                "ok        table 7 SITECONTRACT (Site contracts): current up to 2004-01-31 10:11:12\n"
                "MEND      ERP component of SITECONTRACT: 13: Type mismatch: "
                "Kv50QTMtsctmContractConfigurationLines.csv, line 1, column 1: the file has no header\n" +
                kCannotRun);
}

TEST_F(CheckOfOneTable, MendsAStatusFileThatCannotBeWritten) {
  setup.Edit("Components.xml", "kind=\"console\"", "kind=\"file\" file=\"gone/status.jsonl\"");

  EXPECT_EQ(setup.Check(), Instead("ok        status component: ZenqayInstHandler.InstanceHandle\n",
                                   "MEND      status component: 76: Path not found: HOME/gone/status.jsonl\n"));
}

/// Mounts a file system of one page over the directory, for this process alone, and fills it.
bool FillDiskOver(const Text& directory) {
  const bool isAlone = ::unshare(::geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS) == 0;
  if (!isAlone || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
  if (::mount("none", directory.c_str(), "tmpfs", 0, "size=4k,mode=0777") != 0) return false;
  std::ofstream(directory + "/full") << Text(4096, 'x');
  return true;
}

TEST_F(CheckOfOneTable, MendsALogDirectoryOnAFullDisk) {
  const ChildRun run = RunInChild([&] {
    if (!FillDiskOver(setup.Path("log"))) return Text("no disk of its own");
    return setup.Check();
  });

  if (run.result == "no disk of its own") GTEST_SKIP() << "this user may not mount a file system";
  EXPECT_EQ(run.result,
            Instead("ok        log directory: HOME/log\n", "MEND      log directory: the disk of HOME/log is full\n"));
}

TEST_F(CheckOfOneTable, MendsAnAdapterWhoseVersionIsNoNumber) {
  setup.home.Write("erp/adapter-version.txt", "new\n");

  EXPECT_EQ(setup.Check(),
            Instead("ok        ERP adapter: version 2.4\n", "MEND      ERP adapter: 13: Type mismatch: getVersion\n"));
}

TEST_F(CheckOfOneTable, MendsAManagerThatCannotBeCreated) {
  setup.Remove("erp/Kv50QTMtscfgObjects.csv");

  EXPECT_EQ(setup.Check(), Instead(kObjectsManagerIsWell,
                                   "MEND      ERP component of OBJECT: 429: Component can't create object: "
                                   "Kv50QTMtscfgObjects.ObjectsManager (no file HOME/erp/Kv50QTMtscfgObjects.csv)\n"));
}

TEST_F(CheckOfOneTable, MendsATableThatTheGenerationLacks) {
  setup.Sql("INSERT INTO tstreenodes VALUES ('3', 2, 'TABLE02')");
  setup.items[2] = "2";

  EXPECT_EQ(setup.Check(),
            "ok        command line: table 2, full copy, SQL Server, generation 3\n" + kProgramIsWell +
                kDatabaseIsWell +
                "ok        registry: SITE, PRODUCT, PROBLEM, PRIORITY, OBJECT, SITECONTRACT, CONTRACTS, WARRANTIES\n"
                "ok        table 2 PRODUCT (Products): never copied\n"
                "MEND      ERP component of PRODUCT: generation 3 has none, the copy would fail; take the table out of "
                "the group in tstreenodes\n" +
                kCannotRun);
}

// The database.

const Text kBehindTheLogin =
    "left out  database: needs the login\n"
    "left out  control tables: needs the login\n"
    "left out  registry: needs the login\n"
    "left out  tables and their ERP components: needs the login\n";

TEST_F(CheckOfOneTable, MendsAConnectionStringThatDoesNotRead) {
  setup.items[0] = "Provider=SQLite;geheim";

  EXPECT_EQ(setup.Check(), DatabaseEndsWith("MEND      driver: -2147467259: The connection string is malformed.\n"
                                            "left out  login: needs the driver\n"
                                            "left out  database: needs the driver\n"
                                            "left out  control tables: needs the driver\n"
                                            "left out  registry: needs the driver\n"
                                            "left out  tables and their ERP components: needs the driver\n"));
}

TEST_F(CheckOfOneTable, MendsAProviderWithoutADriver) {
  setup.items[0] = "Provider=Other;Password=geheim";

  EXPECT_EQ(setup.Check(),
            DatabaseEndsWith("MEND      driver: -2147467259: This build has no driver for the provider Other.\n"
                             "left out  login: needs the driver\n"
                             "left out  database: needs the driver\n"
                             "left out  control tables: needs the driver\n"
                             "left out  registry: needs the driver\n"
                             "left out  tables and their ERP components: needs the driver\n"));
}

TEST_F(CheckOfOneTable, MendsADatabaseFileThatIsMissing) {
  setup.Remove("service.db");

  EXPECT_EQ(
      setup.Check(),
      DatabaseEndsWith("ok        driver: SQLite\n"
                       "MEND      login: -2147467259: unable to open database file: HOME/service.db (No such file "
                       "or directory) (SQLSTATE 08001, native 14)\n" +
                       kBehindTheLogin));
}

TEST_F(CheckOfOneTable, MendsAFileThatIsNoDatabase) {
  setup.home.Write("service.db", Text(1000, 'x'));

  EXPECT_EQ(setup.Check(),
            DatabaseEndsWith(
                "ok        driver: SQLite\n"
                "MEND      login: -2147467259: file is not a database: HOME/service.db (SQLSTATE 08001, native 26)\n" +
                kBehindTheLogin));
}

/// A server that refuses to let anybody in, and is talkative about it.
class RefusingDatabase : public LocalDatabases {
 public:
  std::shared_ptr<Connection> CreateConnection() override { return std::make_shared<Refused>(); }

 private:
  class Refused : public EngineConnection {
   public:
    Refused() : EngineConnection(std::make_shared<Interruption>()) {}

    void Open() override {
      const std::vector<ProviderError> items = {
          {-2147217843, "Driver", "Login failed for user 'sync'\n(UID=sync;PWD={geheim})", "28000", 18456},
          {-2147467259, "Driver", "Connection closed."}};
      ErrorCollection()->Replace(items);
      throw RuntimeError(items);
    }
  };
};

TEST_F(CheckOfOneTable, MendsARefusedLoginWithAllThatTheDriverSaysButPasswords) {
  RefusingDatabase database;

  EXPECT_EQ(setup.Check(database), DatabaseEndsWith("ok        driver: SQLite\n"
                                                    "MEND      login: -2147217843: Login failed for user 'sync' "
                                                    "(UID=sync;PWD=***) (SQLSTATE 28000, native 18456)\n"
                                                    "MEND      login: -2147467259: Connection closed.\n" +
                                                    kBehindTheLogin));
}

/// A server with the contents of the setup's file, and locks of its own.
class ServerWithLocks : public LocalDatabases {
 public:
  explicit ServerWithLocks(const Text& file) : file_(file) {}

  bool isFree = true;
  std::optional<RuntimeError> fault;
  Text asked;

  std::shared_ptr<Connection> CreateConnection() override { return std::make_shared<Session>(*this); }

 private:
  class Session : public EngineConnection {
   public:
    explicit Session(ServerWithLocks& server) : EngineConnection(std::make_shared<Interruption>()), server_(server) {}

    void PutConnectionString(const Text&) override {
      EngineConnection::PutConnectionString("Provider=SQLite;Mode=Read;Data Source=" + server_.file_);
    }
    bool TakeLock(const Text& name) override {
      server_.asked += "take " + name + "\n";
      if (server_.fault) throw *server_.fault;
      return server_.isFree;
    }
    void GiveLockBack(const Text& name) override { server_.asked += "give back " + name + "\n"; }

   private:
    ServerWithLocks& server_;
  };

  Text file_;
};

TEST_F(CheckOfOneTable, ProvesTheLocksOfAServerByOneThatNoJobAsksForAndMendsThoseThatAreNone) {
  setup.Edit("Components.xml", "</COMPONENTS>", "<LOCK/></COMPONENTS>");
  setup.items[0] = "Driver=Server";
  const Text isServer = Replaced(
      Replaced(kAllIsWell, "ok        driver: SQLite\n", "ok        driver: named by the connection string itself\n"),
      "ok        login: HOME/service.db\n", "ok        login\n");
  ServerWithLocks server(setup.Path("service.db"));

  EXPECT_EQ(setup.Check(server), Replaced(isServer, kRegistry3, kRegistry3 + "ok        table lock: the database's\n"));
  EXPECT_EQ(server.asked, "take zenqay-dbsync-check\ngive back zenqay-dbsync-check\n");

  server.asked.clear();
  server.isFree = false;  // another check has it, so there are locks
  EXPECT_EQ(setup.Check(server), Replaced(isServer, kRegistry3, kRegistry3 + "ok        table lock: the database's\n"));
  EXPECT_EQ(server.asked, "take zenqay-dbsync-check\n");

  server.fault.emplace(-2147467259, "ZenqayDBSync", "The lock excludes nobody.");
  EXPECT_EQ(setup.Check(server),
            Replaced(Replaced(isServer, kCanRun, kCannotRun), kRegistry3,
                     kRegistry3 + "MEND      table lock: -2147467259: The lock excludes nobody.\n"));
}

TEST_F(CheckOfOneTable, MendsAControlTableThatIsMissingAndColumnsOfAnother) {
  setup.Sql("DROP TABLE tsi18ntext; ALTER TABLE tstables DROP COLUMN lutm; ALTER TABLE tstables DROP COLUMN reqd");

  EXPECT_EQ(
      setup.Check(),
      DatabaseEndsWith(
          "ok        driver: SQLite\n"
          "ok        login: HOME/service.db\n"
          "ok        database: SERVICE\n"
          "MEND      control table tstables: it lacks the column lutm, reqd\n"
          "ok        control table tstreenodes\n"
          "MEND      control table tsi18ntext: -2147217865: no such table: tsi18ntext (SQLSTATE 42S02, native 1)\n"
          "left out  registry: needs the control tables\n"
          "left out  tables and their ERP components: needs the control tables\n"));
}

TEST_F(CheckOfOneTable, MendsAnEmptyRegistry) {
  setup.Sql("UPDATE tstables SET productid = '4009'");

  EXPECT_EQ(setup.Check(),
            DatabaseEndsWith(kDatabaseIsWell +
                             "MEND      registry: no row of tstables with the productid 4010 has a node in the group 3 "
                             "of tstreenodes whose label stands in tsi18ntext\n"
                             "left out  tables and their ERP components: needs the registry\n"));
}

TEST_F(CheckOfOneTable, MendsATableIdThatTheRegistryCannotHold) {
  setup.Sql(
      "UPDATE tstables SET tableid = 129 WHERE tableid = 7; UPDATE tstreenodes SET tableid = 129 WHERE tableid = 7");

  EXPECT_EQ(setup.Check(),
            DatabaseEndsWith(kDatabaseIsWell +
                             "MEND      registry: 9: Subscript out of range (a tableid of this product's rows in "
                             "tstables must be 0 to 128)\n"
                             "left out  tables and their ERP components: needs the registry\n"));
}

// The tables.

TEST_F(CheckOfOneTable, MendsATableThatIsNotRegistered) {
  setup.items[2] = "2";

  EXPECT_EQ(setup.Check(),
            "ok        command line: table 2, full copy, SQL Server, generation 3\n" + kProgramIsWell +
                kDatabaseIsWell + kRegistry3 +
                "MEND      table 2: it has no row in tstables with a name and the productid 4010, no node in the group "
                "3, or no caption in tsi18ntext\n" +
                kCannotRun);
}

TEST_F(CheckOfOneTable, MendsATableWithoutACopy) {
  setup.Sql("UPDATE tstables SET tablename = 'OBJECTS' WHERE tableid = 6");

  EXPECT_EQ(setup.Check(),
            kLineOfObjects + kProgramIsWell + kDatabaseIsWell +
                "ok        registry: SITE, PROBLEM, PRIORITY, OBJECTS, SITECONTRACT, CONTRACTS, WARRANTIES\n"
                "MEND      table 6 OBJECTS (Objects): there is no copy for a table of this name; the name in tstables "
                "decides which entity is copied\n" +
                kCannotRun);
}

TEST_F(CheckOfOneTable, MendsALocalTableThatIsMissing) {
  setup.items[2] = "1";
  setup.Sql("DROP TABLE SITE");

  EXPECT_EQ(setup.Check(), "ok        command line: table 1, full copy, SQL Server, generation 3\n" + kProgramIsWell +
                               kDatabaseIsWell + kRegistry3 +
                               "MEND      table 1 SITE (Sites): the local table SITE: -2147217865: no such table: SITE "
                               "(SQLSTATE 42S02, native 1)\n"
                               "ok        ERP component of SITE: Kv50QTMtscfgConfigurations.ConfigurationsManager\n" +
                               kCannotRun);
}

TEST_F(CheckOfOneTable, MendsColumnsThatTheStatementsName) {
  setup.Sql("ALTER TABLE OBJECT DROP COLUMN ITEM; ALTER TABLE OBJECT DROP COLUMN upd_flag");

  EXPECT_EQ(setup.Check(),
            Instead(kObjectsAreWell,
                    "MEND      table 6 OBJECT (Objects): the local table OBJECT lacks the column ITEM, upd_flag\n"));
}

TEST_F(CheckOfOneTable, MendsTheColumnOfContractsThatOnlyGeneration8Fills) {
  CheckSetup generation8("8");
  generation8.items[2] = "8";
  generation8.Sql("ALTER TABLE CONTRACTS DROP COLUMN CONTRACTS");

  EXPECT_EQ(generation8.Check(),
            "ok        command line: table 8, full copy, SQL Server, generation 8\n" + kProgramIsWell +
                kDatabaseIsWell +
                "ok        registry: SITE, PROBLEM, PRIORITY, SITECONTRACT, CONTRACTS, WARRANTIES, SERIALIZEDITEM\n"
                "MEND      table 8 CONTRACTS (Contracts): the local table CONTRACTS lacks the column CONTRACTS\n"
                "ok        ERP component of CONTRACTS: Kv61QTMtsctmServiceContracts.ServiceContractsManager\n" +
                kCannotRun);
}

TEST_F(CheckOfOneTable, MendsWhatTheWarrantyExpiryNeeds) {
  setup.Sql("ALTER TABLE OBJECT DROP COLUMN WEXPIRY_DATE; DROP TABLE WARRANTIES");

  EXPECT_EQ(setup.Check(),
            Instead(kObjectsAreWell,
                    "MEND      table 6 OBJECT (Objects): the warranty expiry needs OBJECT to have the column "
                    "WEXPIRY_DATE\n"
                    "MEND      table 6 OBJECT (Objects): the warranty expiry needs WARRANTIES: -2147217865: no such "
                    "table: WARRANTIES (SQLSTATE 42S02, native 1)\n"));
}

TEST_F(CheckOfOneTable, AsksForNoWarrantyExpiryOnOracle) {
  setup.items[8] = "2";
  setup.Sql("DROP TABLE WARRANTIES");

  EXPECT_EQ(setup.Check(),
            Instead(kLineOfObjects, "ok        command line: table 6, full copy, Oracle, generation 3\n"));
}

TEST_F(CheckOfOneTable, WarnsOfATableWithoutTheKeyOfItsRows) {
  setup.Sql("CREATE TABLE copied AS SELECT * FROM OBJECT; DROP TABLE OBJECT; ALTER TABLE copied RENAME TO OBJECT");
  const Text warning =
      "warning   table 6 OBJECT (Objects): the local table OBJECT has no primary or unique key over SITE, OBJECT, "
      "OBJECTNR: the whole table may be read for each row, and nothing keeps a row from standing twice\n";

  EXPECT_EQ(setup.Check(), Instead(kObjectsAreWell, warning));

  setup.Sql(
      "CREATE UNIQUE INDEX fewer ON OBJECT (SITE, OBJECT); CREATE INDEX plain ON OBJECT (SITE, OBJECT, OBJECTNR)");
  EXPECT_EQ(setup.Check(), Instead(kObjectsAreWell, warning));

  setup.Sql("CREATE UNIQUE INDEX whole ON OBJECT (OBJECTNR, SITE, OBJECT)");
  EXPECT_EQ(setup.Check(), kAllIsWell);
}

TEST_F(CheckOfOneTable, WarnsOfObjectsThatTheWarrantyExpiryFailsAt) {
  setup.Sql(
      "INSERT INTO WARRANTIES (WARRANTY, NUMBER_OF_PERIODS, PERIOD_UNIT, WARRANTY_TYPE) VALUES ('D', 1, 25, 20), ('I', "
      "1, 25, 10);"
      "INSERT INTO OBJECT (SITE, OBJECT, OBJECTNR, WARRANTY, DELIVERY_DATE) VALUES ('S1', 'O1', 1, 'D', NULL), ('S2', "
      "'O2', 2, 'D', '2004-01-31'), ('S3', 'O3', 3, 'I', NULL), ('S4', 'O4', 4, NULL, NULL)");
  const Text warning =
      "warning   table 6 OBJECT (Objects): the warranty expiry fails at the first object that has a warranty and no "
      "delivery date, and the objects behind it get none; there are ";

  EXPECT_EQ(setup.Check(), Instead(kObjectsAreWell, warning + "1: S1/O1/1\n"));

  setup.Sql(
      "INSERT INTO OBJECT (SITE, OBJECT, OBJECTNR, WARRANTY) VALUES ('S1', 'O1', 2, 'D'), ('S1', 'O1', 3, 'D'), ('S1', "
      "'O1', 4, 'D'), ('S1', 'O1', 5, 'D'), ('S1', 'O1', 6, 'D')");
  EXPECT_EQ(setup.Check(), Instead(kObjectsAreWell, warning + "6: S1/O1/1, S1/O1/2, S1/O1/3, S1/O1/4, S1/O1/5, …\n"));
}

TEST_F(CheckOfOneTable, WarnsOfATableInUseAndSaysHowToFreeIt) {
  setup.Sql("UPDATE tstables SET in_use = 1 WHERE tablename = 'OBJECT'");

  EXPECT_EQ(setup.Check(),
            Instead(kObjectsAreWell,
                    "warning   table 6 OBJECT (Objects): a copy of it is running, or died and left it in use; then: "
                    "UPDATE tstables SET in_use = 0 WHERE tablename = 'OBJECT'\n"));
}

TEST_F(CheckOfOneTable, WarnsOfABlankCaption) {
  setup.Sql("UPDATE tsi18ntext SET text = ' ' WHERE label = 'TABLE06'");

  EXPECT_EQ(setup.Check(), Instead(kObjectsAreWell, "warning   table 6 OBJECT: its caption in tsi18ntext is blank\n"));
}

TEST_F(CheckOfOneTable, WarnsOfAnOnlyChangedPassBeforeAFullCopy) {
  setup.items[3] = "2";

  EXPECT_EQ(setup.Check(),
            "ok        command line: table 6, only changed, SQL Server, generation 3\n" + kProgramIsWell +
                "ok        selection of changes\n" + kDatabaseIsWell + kRegistry3 +
                "warning   table 6 OBJECT (Objects): it was never copied: all changes since 1 January 1970 would be "
                "asked for; run a full copy first\n" +
                kObjectsManagerIsWell + kCanRun);
}

TEST_F(CheckOfOneTable, MendsAnUpdateTimeThatIsNoDateWhereThePassReadsIt) {
  setup.items[3] = "2";
  setup.Sql("UPDATE tstables SET lutm = 'yesterday' WHERE tablename = 'OBJECT'");

  EXPECT_EQ(setup.Check(), "ok        command line: table 6, only changed, SQL Server, generation 3\n" +
                               kProgramIsWell + "ok        selection of changes\n" + kDatabaseIsWell + kRegistry3 +
                               "MEND      table 6 OBJECT (Objects): its row in tstables: 13: Type mismatch\n" +
                               kObjectsManagerIsWell + kCannotRun);
}

TEST(CheckOfAllTables, MendsANodeOfTheGroupWithoutATable) {
  CheckSetup setup("3");
  setup.Sql(
      "DELETE FROM tstreenodes WHERE groupid = '3' AND tableid <> 1; INSERT INTO tstreenodes VALUES ('3', 40, "
      "'GROUP')");

  EXPECT_EQ(
      setup.Check(),
      "ok        command line: all tables, full copy, SQL Server, generation 3\n" + kProgramIsWell + kDatabaseIsWell +
          "ok        registry: SITE\n"
          "ok        table 1 SITE (Sites): never copied\n"
          "MEND      table 40: it has no row in tstables with a name and the productid 4010, no node in the group "
          "3, or no caption in tsi18ntext\n"
          "ok        ERP component of SITE: Kv50QTMtscfgConfigurations.ConfigurationsManager\n" +
          kCannotRun);
}

// What the user of the process may do.

/// The check of somebody who may not do what the super-user may.
Text CheckOfNobody(CheckSetup& setup) {
  std::filesystem::permissions(setup.home.path(), std::filesystem::perms(0755));
  const ChildRun run = RunInChild([&] {
    DropPrivileges();
    return setup.Check();
  });
  return run.result;
}

TEST_F(CheckOfOneTable, MendsAFileAndALogDirectoryThatMayNotBeWritten) {
  std::filesystem::permissions(setup.Path("service.db"), std::filesystem::perms(0444));
  std::filesystem::permissions(setup.Path("log"), std::filesystem::perms(0555));

  EXPECT_EQ(CheckOfNobody(setup),
            Replaced(Instead("ok        login: HOME/service.db\n",
                             "MEND      login: the file HOME/service.db may not be written\n"),
                     "ok        log directory: HOME/log\n", "MEND      log directory: HOME/log may not be written\n"));
}

TEST_F(CheckOfOneTable, MendsADatabaseWhoseLogCouldNotBeWritten) {
  if (::geteuid() != 0) GTEST_SKIP() << "takes somebody else's directory";
  std::filesystem::permissions(setup.Path("service.db"), std::filesystem::perms(0666));
  std::filesystem::permissions(setup.Path("log"), std::filesystem::perms(0777));

  EXPECT_EQ(CheckOfNobody(setup),
            Instead("ok        login: HOME/service.db\n",
                    "MEND      login: the directory of HOME/service.db may not be written, where its log stands\n"));
}

// What it leaves behind.

TEST(CheckLeaves, NothingBehindBesideADatabaseThatNobodyUses) {
  CheckSetup setup;
  setup.Edit("Components.xml", "</COMPONENTS>", "<TRACE file=\"trace.jsonl\"/><LOCK/></COMPONENTS>");
  const auto before = setup.Everything();

  setup.Check();

  EXPECT_EQ(setup.Everything(), before);
}

TEST(CheckLeaves, ATraceOfAnEarlierRunAsItIs) {
  CheckSetup setup;
  setup.Edit("Components.xml", "</COMPONENTS>", "<TRACE file=\"trace.jsonl\"/></COMPONENTS>");
  setup.home.Write("trace.jsonl", "earlier\n");

  setup.Check();

  EXPECT_EQ(setup.home.Read("trace.jsonl"), "earlier\n");
}

TEST(CheckLeaves, ADatabaseWithoutAWriteAheadLogInItsMode) {
  CheckSetup setup;
  setup.Sql("PRAGMA journal_mode = DELETE");
  const auto before = setup.Everything();

  const Text said = setup.Check();

  EXPECT_EQ(said.substr(said.find("A job")), kCanRun);
  EXPECT_EQ(setup.Everything(), before);
}

}  // namespace
}  // namespace zenqay
