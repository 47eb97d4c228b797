// Sites from an export into a database file, by the built program: the rows, the states, the logs.
#include <gtest/gtest.h>

#include "e2e/program_fixture.h"

namespace zenqay {
namespace {

constexpr const char* kLocationsFile = "Kv40QTMtssmaLocations.csv";
constexpr const char* kLocationChangesFile = "Kv40QTMtssmaLocations.changes.csv";

constexpr const char* kLocationsExport =
    "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\r\n"
    "AMS01,Amsterdam - Herengracht office,C10021\r\n"
    "BER02,\"Berlin, Köpenicker Straße 31\",C10044\r\n"
    "DUB01,St. Stephen's Green,C'10'044\r\n"
    "EMO01,🚚 'Lager' ''2'',\r\n"
    "GVA01,Genève – Quai du Mont-Blanc,C10087\r\n"
    "LIN01,\"first line\r\nsecond line\",C10088\r\n"
    "MAD03,\"Planta \"\"Norte\"\"; DROP TABLE SITE; --\",C10112\r\n"
    "OSL01,,C10113\r\n"
    "PAR07,Paris La Défense,\"\"\r\n"
    "ROM01,,\r\n"
    "TYO01,東京サービスセンター,C10200\r\n"
    " w x ,  blanks  ,\" \"\r\n";

/// The rows of kLocationsExport. A field that is absent there stays NULL in a new row.
constexpr const char* kLocationsCopied =
    " w x |  blanks  | |0\n"
    "AMS01|Amsterdam - Herengracht office|C10021|0\n"
    "BER02|Berlin, Köpenicker Straße 31|C10044|0\n"
    "DUB01|St. Stephen's Green|C'10'044|0\n"
    "EMO01|🚚 'Lager' ''2''|NULL|0\n"
    "GVA01|Genève – Quai du Mont-Blanc|C10087|0\n"
    "LIN01|first line\r\nsecond line|C10088|0\n"
    "MAD03|Planta \"Norte\"; DROP TABLE SITE; --|C10112|0\n"
    "OSL01|NULL|C10113|0\n"
    "PAR07|Paris La Défense||0\n"
    "ROM01|NULL|NULL|0\n"
    "TYO01|東京サービスセンター|C10200|0\n";

constexpr const char* kReport12 =
    "<time>  Copy of Sites (ERP table 110) started.\n"
    "<time>  Copy of Sites (ERP table 110) complete: 12 copied, 0 updated, 0 deleted.\n"
    "\n"
    "Table  State     Elapsed  Last message\n"
    "    1  complete  <elapsed>  Copy of Sites (ERP table 110) complete: 12 copied, 0 updated, 0 deleted.\n";

/// Everything that the database holds but for the update time of SITE.
std::string DatabaseBesidesTheUpdateTime(const ProgramHome& home) {
  return home.Query("SELECT rowid, * FROM SITE ORDER BY rowid") +
         home.Query(
             "SELECT rowid, tablename, ERPTableID, tableid, productid, in_use, reqd, lutm IS NULL, "
             "CASE WHEN tablename <> 'SITE' THEN lutm END FROM tstables ORDER BY rowid") +
         home.Query("SELECT * FROM tstreenodes ORDER BY rowid") +
         home.Query("SELECT * FROM tsi18ntext ORDER BY rowid") +
         home.Query("SELECT type, name, sql FROM sqlite_master WHERE name NOT LIKE 'sqlite_%' ORDER BY name");
}

TEST(FullCopyOfSites, WritesWhatTheExportOfLocationsSays) {
  ProgramHome home;
  home.WriteExport(kLocationsFile, kLocationsExport);
  const std::string before = UtcMoment(0, ' ');

  const ProgramRun run = home.Run(home.Line());

  const std::string after = UtcMoment(0, ' ');
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(home.Masked(run.out), kReport12);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(home.Sites(), kLocationsCopied);
  EXPECT_EQ(home.SiteState(), "<moment>|0\n");
  const std::string lutm = home.Query("SELECT lutm FROM tstables WHERE tablename = 'SITE'");
  EXPECT_LE(before + "\n", lutm);
  EXPECT_GE(after + "\n", lutm);
  EXPECT_EQ(home.LogNames(), std::vector<std::string>{"SITE_<day>.log"});
  EXPECT_EQ(home.Log("SITE_<day>.log"),
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITE -  12\"\r\n");
}

TEST(FullCopyOfSites, WritesAnEmptyTextAsABlankWithTheStatementsForOracle) {
  ProgramHome home;
  home.WriteExport(kLocationsFile, kLocationsExport);
  CommandLine line = home.Line();
  line.platform = "2";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(home.Masked(run.out), kReport12);
  EXPECT_EQ(run.err, "");
  std::string expected = kLocationsCopied;
  const std::string empty = "PAR07|Paris La Défense||0\n";
  expected.replace(expected.find(empty), empty.size(), "PAR07|Paris La Défense| |0\n");
  EXPECT_EQ(home.Sites(), expected);
  EXPECT_EQ(home.SiteState(), "<moment>|0\n");
  EXPECT_EQ(home.Log("SITE_<day>.log"),
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITE -  12\"\r\n");
}

TEST(FullCopyOfSites, WritesWhatTheExportOfConfigurationsSays) {
  ProgramHome home;
  home.WriteExport(
      "Kv50QTMtscfgConfigurations.csv",
      "Configuration:text:ccfg:key,SoldtoBusinessPartner:text:ofbp:key,ConfigurationDescription:text:desc\n"
      "CFG00001,BP0000010,Pump station Noordwijk\n"
      "CFG00002,\"BP'00010\",\"Filter house \"\"West\"\"\"\n"
      "CFG00003,,Łódź compressor hall\n"
      "CFG00004,BP0000012,\n"
      "CFG00005,\"\",St. Mary's Hospital – chillers\n");
  CommandLine line = home.Line();
  line.generation = " 3 ";  // the blanks around it do not count

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(home.Sites(),
            "CFG00001|Pump station Noordwijk|BP0000010|0\n"
            "CFG00002|Filter house \"West\"|BP'00010|0\n"
            "CFG00003|Łódź compressor hall|NULL|0\n"
            "CFG00004|NULL|BP0000012|0\n"
            "CFG00005|St. Mary's Hospital – chillers||0\n");
  EXPECT_EQ(home.Log("SITE_<day>.log"),
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITE -  5\"\r\n");
}

TEST(FullCopyOfSites, WritesWhatTheExportOfClustersSays) {
  ProgramHome home;
  home.WriteExport("Kv61QTMtsbscClusters.csv",
                   "Cluster:text:clst:key,Description:text:desc,SoldtoBusinessPartner:text:ofbp\n"
                   "CL-0001,Data centre Frankfurt,BP0000020\n"
                   "CL-0002,\"Rack \"\"R7\"\" – O'Hare\",\n"
                   "CL-0003,,BP0000023\n"
                   "CL-0004,Σέρβις Αθήνα,\"\"\n");
  CommandLine line = home.Line();
  line.generation = "8";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(home.Sites(),
            "CL-0001|Data centre Frankfurt|BP0000020|0\n"
            "CL-0002|Rack \"R7\" – O'Hare|NULL|0\n"
            "CL-0003|NULL|BP0000023|0\n"
            "CL-0004|Σέρβις Αθήνα||0\n");
  EXPECT_EQ(home.Log("SITE_<day>.log"),
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITE -  4\"\r\n");
}

TEST(FullCopyOfSites, SweepsWhatIsNotListedAndNeverClearsAField) {
  ProgramHome home;
  home.Execute(
      "INSERT INTO SITE VALUES ('AMS01', 'old', 'OLD', 0), ('OSL01', 'kept', 'OLD', 1), ('ZZZ', 'gone', NULL, 0)");
  home.WriteExport(kLocationsFile,
                   "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
                   "AMS01,Amsterdam,\"\"\n"
                   "OSL01,,\n"
                   "NEW01,New,C1\n"
                   "NEW01,Newer,\n");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(home.Sites(),
            "AMS01|Amsterdam||0\n"
            "NEW01|Newer|C1|0\n"
            "OSL01|kept|OLD|0\n");
  EXPECT_EQ(home.Log("SITE_<day>.log"),
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITE -  4\"\r\n");
}

TEST(FullCopyOfSites, ChangesNothingButTheUpdateTimeTheSecondTime) {
  ProgramHome home;
  home.WriteExport(kLocationsFile, kLocationsExport);
  home.Run(home.Line());
  home.Execute("UPDATE tstables SET lutm = '2004-01-31 10:11:12' WHERE tablename = 'SITE'");
  const std::string before = DatabaseBesidesTheUpdateTime(home);

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(DatabaseBesidesTheUpdateTime(home), before);
  EXPECT_NE(home.Query("SELECT lutm FROM tstables WHERE tablename = 'SITE'"), "2004-01-31 10:11:12\n");
  EXPECT_EQ(home.Log("SITE_<day>.log"),
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITE -  12\"\r\n"
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITE -  12\"\r\n");
}

TEST(FullCopyOfSites, TakesOverTheErpsFormOfAKeyWhereTheDatabaseComparesWithoutCase) {
  ProgramHome home;
  home.Execute(
      "DROP TABLE SITE;"
      "CREATE TABLE SITE (SITE NVARCHAR(10) NOT NULL PRIMARY KEY COLLATE NOCASE, DESCRIPTION NVARCHAR(100), "
      "CUSTOMER NVARCHAR(20), upd_flag INTEGER NOT NULL DEFAULT 0);"
      "INSERT INTO SITE VALUES ('AMS01', 'Amsterdam', 'C1', 0)");
  home.WriteExport(kLocationsFile, "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\nams01,,\n");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(home.Sites(), "ams01|Amsterdam|C1|0\n");
}

TEST(FullCopyOfSites, EmptiesTheTableForAnExportWithoutRows) {
  ProgramHome home;
  home.Execute("INSERT INTO SITE VALUES ('AMS01', 'Amsterdam', 'C1', 0)");
  home.WriteExport(kLocationsFile, "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(home.Sites(), "");
  EXPECT_EQ(home.SiteState(), "<moment>|0\n");
  EXPECT_EQ(home.Log("SITE_<day>.log"),
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITE -  0\"\r\n");
}

TEST(FullCopyOfSites, LeavesTheTableAloneWhenTheErpListsNothing) {
  ProgramHome home;
  home.Execute("INSERT INTO SITE VALUES ('AMS01', 'Amsterdam', 'C1', 0)");
  home.WriteExport(kLocationsFile, "\\NOTHING\n");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(home.Masked(run.out),
            "<time>  Copy of Sites (ERP table 110) started.\n"
            "<time>  Copy of Sites (ERP table 110) complete: 0 copied, 0 updated, 0 deleted.\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  complete  <elapsed>  Copy of Sites (ERP table 110) complete: 0 copied, 0 updated, 0 deleted.\n");
  EXPECT_EQ(home.Sites(), "AMS01|Amsterdam|C1|0\n");
  EXPECT_EQ(home.SiteState(), "NULL|0\n");
  EXPECT_EQ(home.LogNames(), std::vector<std::string>{});
}

TEST(FullCopyOfSites, WritesItsLogInTheWindowsCodePage) {
  ProgramHome home;
  std::string texts = home.directory().Read("I18nText.xml");
  const std::string label = "Rows copied: %1";
  texts.replace(texts.find(label), label.size(), "Übernommen – €1 東: %1");
  home.directory().Write("I18nText.xml", texts);
  home.WriteExport(kLocationsFile, kLocationsExport);

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(home.Log("SITE_<day>.log"),
            "Date: <date> Time: <time>\r\n"
            "\"\xDC"
            "bernommen \x96 \x80"
            "1 ?: SITE -  12\"\r\n");
}

TEST(FullCopyOfSites, NamesItsLogAfterTheTableAndTheDay) {
  ProgramHome home;
  home.Execute("UPDATE tstables SET tablename = 'Site' WHERE tableid = 1");
  home.WriteExport(kLocationsFile, kLocationsExport);
  const std::string before = "Site_" + DayNow() + ".log";

  home.Run(home.Line());

  const std::string after = "Site_" + DayNow() + ".log";
  const std::filesystem::path logs = home.directory().path() / "logs";
  EXPECT_TRUE(std::filesystem::exists(logs / before) || std::filesystem::exists(logs / after));
  EXPECT_EQ(home.LogNames(), std::vector<std::string>{"Site_<day>.log"});
}

TEST(OnlyChangedPassOfSites, AppliesTheChangesOfLocationsSinceTheLastUpdateTime) {
  ProgramHome home;
  home.Execute(
      "INSERT INTO SITE VALUES ('AMS01', 'Amsterdam', 'C1', 0), ('LIS01', 'Lisboa', 'C2', 1), ('MAD03', 'Madrid', "
      "'C3', 0), ('OSL01', 'Oslo', 'C4', 0), ('PAR07', 'Paris', 'C5', 0);"
      "UPDATE tstables SET lutm = '2024-01-31 10:00:00' WHERE tablename = 'SITE'");
  home.WriteExport(kLocationsFile, kLocationsExport);  // not read by this pass
  home.WriteExport(kLocationChangesFile,
                   "ChangedAt,ActionType,Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
                   "2024-01-31T09:59:59Z,D,PAR07,,\n"
                   "2024-01-31T10:00:00Z,U,AMS01,Amsterdam - Herengracht 400,\n"
                   "2024-02-01T00:00:00Z,u,LIS01,Lisboa - Parque das Nações,\"\"\n"
                   "2024-02-01T00:00:01Z,I,VIE01,\"Wien, O'Connor & Söhne\",C10210\n"
                   "2024-02-01T00:00:02Z,U,ZRH01,Zürich,C10211\n"
                   "2024-02-01T00:00:03Z, D ,MAD03,,\n"
                   "2024-02-01T00:00:04Z,d,OSL01,Oslo - moved,\n"
                   "2024-02-01T00:00:05Z,D,NOT01,,\n"
                   "2024-02-01T00:00:06Z,U,TMP01,Temporary,\n"
                   "2024-02-01T00:00:07Z,D,TMP01,,\n"
                   "2024-02-01T00:00:08Z,,EMP01,,\n"
                   "2999-12-31T23:59:59Z,D,AMS01,,\n");
  CommandLine line = home.Line();
  line.syncMethod = "2";
  const std::string before = UtcMoment(0, ' ');

  const ProgramRun run = home.Run(line);

  const std::string after = UtcMoment(0, ' ');
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(home.Masked(run.out),
            "<time>  Copy of Sites (ERP table 110) started.\n"
            "<time>  Copy of Sites (ERP table 110) complete: 4 copied, 3 updated, 3 deleted.\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  complete  <elapsed>  Copy of Sites (ERP table 110) complete: 4 copied, 3 updated, 3 deleted.\n");
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(home.Sites(),
            "AMS01|Amsterdam - Herengracht 400|C1|0\n"
            "EMP01|NULL|NULL|0\n"
            "LIS01|Lisboa - Parque das Nações||0\n"
            "OSL01|Oslo - moved|C4|0\n"
            "PAR07|Paris|C5|0\n"
            "VIE01|Wien, O'Connor & Söhne|C10210|0\n"
            "ZRH01|Zürich|C10211|0\n");
  const std::string lutm = home.Query("SELECT lutm FROM tstables WHERE tablename = 'SITE'");
  EXPECT_LE(before + "\n", lutm);
  EXPECT_GE(after + "\n", lutm);
  EXPECT_EQ(home.Log("SITE_<day>.log"),
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITE -  4\"\r\n"
            "\"Rows updated: SITE -  3\"\r\n"
            "\"Rows deleted: SITE -  3\"\r\n");
}

/// What the two later generations are given: an update without a customer, an insert, a deletion.
struct Changes {
  const char* generation;
  const char* listFile;
  const char* changesFile;
  const char* header;
};

void PrintTo(const Changes& changes, std::ostream* out) {
  *out << "generation " << changes.generation;
}

class OnlyChangedPassOfSitesUnder : public testing::TestWithParam<Changes> {};

TEST_P(OnlyChangedPassOfSitesUnder, AppliesTheChangesSinceTheLastUpdateTime) {
  for (const char* platform : {"1", "2"}) {
    SCOPED_TRACE(platform);
    ProgramHome home;
    home.Execute(
        "INSERT INTO SITE VALUES ('S1', 'one', 'C1', 0), ('S2', 'two', 'C2', 0);"
        "UPDATE tstables SET lutm = '2024-01-31 10:00:00' WHERE tablename = 'SITE'");
    home.WriteExport(GetParam().listFile, std::string(GetParam().header) + "\n");
    home.WriteExport(GetParam().changesFile, "ChangedAt,ActionType," + std::string(GetParam().header) +
                                                 "\n"
                                                 "2024-01-31T09:59:59Z,D,S1,,\n"
                                                 "2024-02-01T00:00:00Z,U,S1,,Kraków's edge\n"
                                                 "2024-02-01T00:00:01Z,I,S3,C3,\"\"\n"
                                                 "2024-02-01T00:00:02Z,D,S2,,\n");
    CommandLine line = home.Line();
    line.generation = GetParam().generation;
    line.platform = platform;
    line.syncMethod = "2";

    const ProgramRun run = home.Run(line);

    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(home.Sites(),
              std::string("S1|Kraków's edge|C1|0\n") + (std::string(platform) == "2" ? "S3| |C3|0\n" : "S3||C3|0\n"));
    EXPECT_EQ(home.SiteState(), "<moment>|0\n");
    EXPECT_EQ(home.Log("SITE_<day>.log"),
              "Date: <date> Time: <time>\r\n"
              "\"Rows copied: SITE -  1\"\r\n"
              "\"Rows updated: SITE -  1\"\r\n"
              "\"Rows deleted: SITE -  1\"\r\n");
  }
}

INSTANTIATE_TEST_SUITE_P(
    , OnlyChangedPassOfSitesUnder,
    testing::Values(Changes{"1", "Kv40QTMtssmaLocations.csv", "Kv40QTMtssmaLocations.changes.csv",
                            "Location:text:cloc:key,Customer:text:cuno,Description:text:desc"},
                    Changes{"3", "Kv50QTMtscfgConfigurations.csv", "Kv50QTMtscfgConfigurations.changes.csv",
                            "Configuration:text:ccfg:key,SoldtoBusinessPartner:text:ofbp:key,"
                            "ConfigurationDescription:text:desc"},
                    Changes{"8", "Kv61QTMtsbscClusters.csv", "Kv61QTMtsbscClusters.changes.csv",
                            "Cluster:text:clst:key,SoldtoBusinessPartner:text:ofbp,Description:text:desc"}),
    [](const auto& changes) { return std::string("Generation") + changes.param.generation; });

TEST(OnlyChangedPassOfSites, MovesTheUpdateTimeOnWhenThereAreNoChanges) {
  ProgramHome home;
  home.Execute("UPDATE tstables SET lutm = '2024-01-31 10:00:00' WHERE tablename = 'SITE'");
  home.WriteExport(kLocationsFile, kLocationsExport);
  CommandLine line = home.Line();
  line.syncMethod = "2";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(home.Sites(), "");
  EXPECT_NE(home.Query("SELECT lutm FROM tstables WHERE tablename = 'SITE'"), "2024-01-31 10:00:00\n");
  EXPECT_EQ(home.Log("SITE_<day>.log"),
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITE -  0\"\r\n");
}

TEST(OnlyChangedPassOfSites, StartsIn1970ForATableWithoutAnUpdateTime) {
  ProgramHome home;
  home.WriteExport(kLocationsFile, kLocationsExport);
  home.WriteExport(kLocationChangesFile,
                   "ChangedAt,ActionType,Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
                   "1969-12-31T23:59:59Z,I,OLD01,before,\n"
                   "1970-01-02T00:00:00Z,I,NEW01,behind,\n");
  CommandLine line = home.Line();
  line.syncMethod = "2";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(home.Sites(), "NEW01|behind|NULL|0\n");
}

}  // namespace
}  // namespace zenqay
