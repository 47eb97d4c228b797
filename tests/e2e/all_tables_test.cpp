// All tables of a generation, on the demo's exports: the tables after a full copy, after a second one, and after an
// only-changed pass beside a full copy of the ERP's end state.
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>

#include "doubles/file_content.h"
#include "e2e/program_fixture.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

const fs::path kDemo = fs::path(ZENQAY_SHARE) / "demo";

void TakeExports(const ProgramHome& home, const char* state) {
  for (const fs::directory_entry& file : fs::directory_iterator(kDemo / state)) {
    home.WriteExport(file.path().filename().string(), ContentOf(file.path()));
  }
}

/// The changes of the demo, stamped with this moment.
void TakeChanges(const ProgramHome& home) {
  const std::string now = UtcMoment(0, 'T') + "Z";
  for (const fs::directory_entry& file : fs::directory_iterator(kDemo / "changes")) {
    std::string changes = ContentOf(file.path());
    for (auto at = changes.find("@NOW@"); at != std::string::npos; at = changes.find("@NOW@")) {
      changes.replace(at, 5, now);
    }
    home.WriteExport(file.path().filename().string(), changes);
  }
}

void CopyAll(const ProgramHome& home, const std::string& generation, const std::string& syncMethod) {
  CommandLine line = home.Line();
  line.tableId = "128";
  line.syncMethod = syncMethod;
  line.generation = generation;
  const ProgramRun run = home.Run(line);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
}

std::string Table(const ProgramHome& home, const std::string& name, const std::string& order) {
  return name + "\n" + home.Query("SELECT * FROM " + name + " ORDER BY " + order);
}

std::string Sites(const ProgramHome& home) {
  return Table(home, "SITE", "SITE");
}
std::string Products(const ProgramHome& home) {
  return Table(home, "PRODUCT", "PRODUCT");
}
std::string Problems(const ProgramHome& home) {
  return Table(home, "PROBLEM", "PROBLEM");
}
std::string Priorities(const ProgramHome& home) {
  return Table(home, "PRIORITY", "PRIORITY");
}
std::string Symptoms(const ProgramHome& home) {
  return Table(home, "SYMPTOM", "SYMPTOM");
}
std::string Objects(const ProgramHome& home) {
  return Table(home, "OBJECT", "SITE, OBJECT, OBJECTNR");
}
std::string SiteContracts(const ProgramHome& home) {
  return Table(home, "SITECONTRACT", "CONTRACT, TERM, LINE, OBJECTNR");
}
std::string Contracts(const ProgramHome& home) {
  return Table(home, "CONTRACTS", "CONTRACT, CONTRACTS");
}
std::string Warranties(const ProgramHome& home) {
  return Table(home, "WARRANTIES", "WARRANTY");
}
std::string SerializedItems(const ProgramHome& home) {
  return Table(home, "SERIALIZEDITEM", "OBJECT, OBJECTNR");
}

std::string AllTables(const ProgramHome& home) {
  return Sites(home) + Products(home) + Problems(home) + Priorities(home) + Symptoms(home) + Objects(home) +
         SiteContracts(home) + Contracts(home) + Warranties(home) + SerializedItems(home);
}

/// The state of every table of the registry, without its time.
std::string States(const ProgramHome& home) {
  return home.Query("SELECT tableid, lutm IS NOT NULL, in_use FROM tstables ORDER BY tableid");
}

constexpr const char* kGeneration1 =
    "SITE\n"
    "AMS01|Amsterdam - Herengracht office|C10021|0\n"
    "BER02|Berlin, Köpenicker Straße 31|C10044|0\n"
    "DUB01|St. Stephen's Green|C10044|0\n"
    "GVA01|Genève – Quai du Mont-Blanc|C10087|0\n"
    "LIS01|Lisboa|NULL|0\n"
    "MAD03|Planta \"Norte\", Alcobendas|C10112|0\n"
    "OSL01|NULL|C10113|0\n"
    "PAR07|Paris La Défense||0\n"
    "TYO01|東京サービスセンター|C10200|0\n"
    "WAW01|Warszawa Śródmieście|C10201|0\n"
    "PRODUCT\n"
    "CHL-100|Chiller 100 kW|AMS01|CT-0001|2025-04-01|2027-03-31|24M|2027-03-31|0\n"
    "CHL-200|Chiller \"Twin\" 200 kW|BER02|   |2026-01-01|NULL|12M|2026-12-31|0\n"
    "PMP-001|Pumpe für Kühlwasser|DUB01|NULL|NULL|NULL|NULL|NULL|0\n"
    "PMP-002|O'Neill booster pump|DUB01|CT-0002|2024-02-29|2028-02-29|12M|NULL|0\n"
    "UPS-900|無停電電源装置 900|TYO01|CT-0003|2025-07-01|2028-06-30|36M|2028-06-30|0\n"
    "PROBLEM\n"
    "LEAK|Leak|NULL|0\n"
    "NOISE|Noise, vibration|NULL|0\n"
    "NOPWR|NULL|NULL|0\n"
    "OVERHEAT|Überhitzung|NULL|0\n"
    "PRIORITY\n"
    "0|Emergency|0\n"
    "1|Within 4 hours|0\n"
    "5|Next working day|0\n"
    "999|When convenient|0\n"
    "SYMPTOM\n"
    "ALARM|Alarm on the panel|0\n"
    "DRIP|Water on the floor, dripping|0\n"
    "SMELL|Odeur de brûlé|0\n"
    "STOP|NULL|0\n"
    "OBJECT\n"
    "SITECONTRACT\n"
    "CONTRACTS\n"
    "CT-0001|NULL|Full service Amsterdam|0\n"
    "CT-0002|NULL|Inspection only|0\n"
    "CT-0003|NULL|サービス契約|0\n"
    "CT-0004|NULL|Draft for Lisboa|0\n"
    "CT-0005|NULL|Expired 2019|0\n"
    "WARRANTIES\n"
    "12M|Twelve months|NULL|NULL|NULL|0\n"
    "24M|Twenty-four months|NULL|NULL|NULL|0\n"
    "36M|NULL|NULL|NULL|NULL|0\n"
    "SERIALIZEDITEM\n";

constexpr const char* kGeneration3 =
    "SITE\n"
    "CFG00001|Pump station Noordwijk|BP0000010|0\n"
    "CFG00002|Filter house \"West\"|BP0000010|0\n"
    "CFG00003|Kläranlage Süd|BP0000011|0\n"
    "CFG00004|NULL|BP0000012|0\n"
    "CFG00005|St. Mary's Hospital – chillers|BP0000013|0\n"
    "CFG00006|Unassigned spare skid|NULL|0\n"
    "PRODUCT\n"
    "PROBLEM\n"
    "P-BLOCK|Blocked filter|CORR|0\n"
    "P-CAL|Calibration due|PREV|0\n"
    "P-LEAK|Leak at the \"B\" seal|CORR|0\n"
    "P-UNKN|NULL|NULL|0\n"
    "PRIORITY\n"
    "0|Immediate|0\n"
    "10|Urgent|0\n"
    "50|Normal|0\n"
    "999|Low|0\n"
    "SYMPTOM\n"
    "OBJECT\n"
    // The expiry: 12 months from 31 January 2024; one quarter from the delivery; two years from 29 February; 30 days
    // from the delivery; none without an installation date; six weeks from 31 May; none without a warranty.
    "CFG00001|PUMP|0|Main pump|ITM-PUMP|Centrifugal pump|SN-0001|W12M|2024-01-31|2024-01-15|2025-01-30 00:00:00|0\n"
    "CFG00001|PUMP|1|Stand-by pump|ITM-PUMP|Centrifugal pump|SN-0002|W1Q|2023-12-31|2023-12-15|2024-03-14 "
    "00:00:00|0\n"
    "CFG00001|VALVE|9999|Valve \"V9\"|ITM-VALVE|Gate valve|NULL|W2Y|2024-02-29|2024-02-20|2026-02-27 00:00:00|0\n"
    "CFG00002|FILTER|1|Filter's housing|ITM-FLT|NULL|SN-0100|W30D|NULL|2025-03-10|2025-04-08 00:00:00|0\n"
    "CFG00003|BLOWER|1|Gebläse|ITM-BLW|Drehkolbengebläse|SN-0200|W12M|NULL|2025-05-05|NULL|0\n"
    "CFG00003|BLOWER|2|Gebläse|ITM-BLW|Drehkolbengebläse|SN-0201|W6W|2025-05-31|2025-05-05|2025-07-11 00:00:00|0\n"
    "CFG00005|CHILLER|1|冷凍機|ITM-CHL|NULL|SN-0300|NULL|2025-08-15|2025-08-01|NULL|0\n"
    "SITECONTRACT\n"
    "CFG00001|SC0000001|NULL|NULL|1|10|2024-01-01|2026-12-31|0\n"
    "CFG00002|SC0000001|NULL|NULL|1|20|2024-01-01|NULL|0\n"
    "CFG00003|SC0000002|NULL|NULL|1|10|2025-01-01|2025-12-31|0\n"
    "CFG00003|SC0000002|NULL|NULL|2|120|2026-01-01|2026-12-31|0\n"
    "CFG00005|SC0000003|NULL|NULL|0|0|NULL|NULL|0\n"
    "CONTRACTS\n"
    "SC0000001|NULL|Gold – pump stations|0\n"
    "SC0000002|NULL|Silver, Kläranlage|0\n"
    "SC0000003|NULL|St. Mary's Hospital|0\n"
    "WARRANTIES\n"
    "W12M|12 months from installation|12|15|10|0\n"
    "W1Q|One quarter from delivery|1|20|20|0\n"
    "W2Y|Two years from installation|2|25|10|0\n"
    "W30D|30 days from delivery|30|5|20|0\n"
    "W6W|Six weeks from installation|6|10|10|0\n"
    "SERIALIZEDITEM\n";

constexpr const char* kGeneration8 =
    "SITE\n"
    "CL-0001|Data centre Frankfurt|BP0000020|0\n"
    "CL-0002|Datacenter Århus|BP0000021|0\n"
    "CL-0003|Rack \"R7\" – O'Hare|BP0000022|0\n"
    "CL-0004|NULL|BP0000023|0\n"
    "CL-0005|Σέρβις Αθήνα|NULL|0\n"
    "PRODUCT\n"
    "PROBLEM\n"
    "DISK|Disk failure|NULL|0\n"
    "FAN|Fan noise|NULL|0\n"
    "LINK|Link down, port \"12\"|NULL|0\n"
    "PRIORITY\n"
    "0|P1|0\n"
    "1|P2|0\n"
    "999|P4|0\n"
    "SYMPTOM\n"
    "OBJECT\n"
    "SITECONTRACT\n"
    "CL-0001|SVC000001|SRV-R740|X0001|1|NULL|2025-01-01|2027-12-31|0\n"
    "CL-0001|SVC000001|SRV-R740|X0002|1|NULL|2025-01-01|2027-12-31|0\n"
    "CL-0002|SVC000002|SW-48P|X0100|1|NULL|2025-06-01|NULL|0\n"
    "NULL|SVC000003|SRV-R740|X0003|2|NULL|NULL|NULL|0\n"
    "CONTRACTS\n"
    "SVC000001|NULL|Datacenter Gold|0\n"
    "SVC000002|NULL|Århus – næste dag|0\n"
    "SVC000003|NULL|O'Hare rack|0\n"
    "SVC000004|NULL|Draft|0\n"
    "WARRANTIES\n"
    "NBD36|Next business day|36|15|10|0\n"
    "RTB12|Return to bench|12|15|20|0\n"
    "SERIALIZEDITEM\n"
    "SRV-R740|X0001|Rack server|CL-0001|ALT-0001|NBD36|2025-01-15 09:30:00|2025-01-10 14:00:00|BP0000020|0\n"
    "SRV-R740|X0002|Rack server|CL-0001|ALT-0002|NBD36|2025-01-15 10:00:00|2025-01-10 14:00:00|BP0000020|0\n"
    "SRV-R740|X0003|Rack server \"spare\"|NULL|NULL|RTB12|NULL|NULL|BP0000022|0\n"
    "SW-48P|X0100|Zürich's switch|CL-0002|ALT-0100|NBD36|2025-06-01 00:00:00|2025-05-28 23:59:59|BP0000021|0\n";

std::string Expected(const std::string& generation) {
  return generation == "1" ? kGeneration1 : generation == "3" ? kGeneration3 : kGeneration8;
}

class AllTablesOf : public testing::TestWithParam<std::string> {
 protected:
  std::string generation() const { return GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(Generation, AllTablesOf, testing::Values("1", "3", "8"));

TEST_P(AllTablesOf, HoldWhatTheExportsSayAfterAFullCopy) {
  ProgramHome home;
  TakeExports(home, "erp");

  CopyAll(home, generation(), "1");

  EXPECT_EQ(AllTables(home), Expected(generation()));
}

TEST_P(AllTablesOf, AreAllReleasedWithATimeAfterAFullCopy) {
  ProgramHome home;
  TakeExports(home, "erp");

  CopyAll(home, generation(), "1");

  const std::string expected =
      generation() == "1"   ? "1|1|0\n2|1|0\n3|1|0\n4|1|0\n5|1|0\n6|0|0\n7|0|0\n8|1|0\n9|1|0\n10|0|0\n"
      : generation() == "3" ? "1|1|0\n2|0|0\n3|1|0\n4|1|0\n5|0|0\n6|1|0\n7|1|0\n8|1|0\n9|1|0\n10|0|0\n"
                            : "1|1|0\n2|0|0\n3|1|0\n4|1|0\n5|0|0\n6|0|0\n7|1|0\n8|1|0\n9|1|0\n10|1|0\n";
  EXPECT_EQ(States(home), expected);
}

TEST_P(AllTablesOf, ChangeInASecondFullCopyOnlyWhereABlankContractBecomesNull) {
  ProgramHome home;
  TakeExports(home, "erp");
  CopyAll(home, generation(), "1");

  CopyAll(home, generation(), "1");

  std::string expected = Expected(generation());
  const auto blank = expected.find("BER02|   |");
  if (blank != std::string::npos) expected.replace(blank, 10, "BER02|NULL|");
  EXPECT_EQ(AllTables(home), expected);
}

TEST_P(AllTablesOf, InsertRowsThatReadNullAnewInASecondFullCopyAndSweepTheOldOnes) {
  ProgramHome home;
  TakeExports(home, "erp");
  CopyAll(home, generation(), "1");
  const std::string rowsThatReadNull =
      "SELECT rowid FROM SITECONTRACT WHERE SITE IS NULL UNION ALL "
      "SELECT rowid FROM SERIALIZEDITEM WHERE SITE IS NULL";
  const std::string before = home.Query(rowsThatReadNull);
  home.Execute("UPDATE SITECONTRACT SET LINE = 77 WHERE SITE IS NULL");

  CopyAll(home, generation(), "1");

  EXPECT_EQ(before.empty(), generation() != "8");
  EXPECT_EQ(home.Query("SELECT COUNT(*) FROM SITECONTRACT WHERE LINE = 77"), "0\n");
  EXPECT_EQ(home.Query(rowsThatReadNull).size(), before.size());
}

/// A job on the first exports and then on the changes, beside one that copies the ERP's end state in full.
class ChangesOf : public AllTablesOf {
 protected:
  void SetUp() override {
    TakeExports(followed, "erp");
    CopyAll(followed, generation(), "1");
    TakeExports(followed, "end");
    TakeChanges(followed);
    CopyAll(followed, generation(), "2");

    TakeExports(copied, "end");
    CopyAll(copied, generation(), "1");
  }

  ProgramHome followed;
  ProgramHome copied;
};

INSTANTIATE_TEST_SUITE_P(Generation, ChangesOf, testing::Values("1", "3", "8"));

TEST_P(ChangesOf, LeadToTheEndStateInEveryTableButContracts) {
  EXPECT_EQ(Sites(followed), Sites(copied));
  EXPECT_EQ(Products(followed), Products(copied));
  EXPECT_EQ(Problems(followed), Problems(copied));
  EXPECT_EQ(Priorities(followed), Priorities(copied));
  EXPECT_EQ(Symptoms(followed), Symptoms(copied));
  EXPECT_EQ(Objects(followed), Objects(copied));
  EXPECT_EQ(SiteContracts(followed), SiteContracts(copied));
  EXPECT_EQ(Warranties(followed), Warranties(copied));
  EXPECT_EQ(SerializedItems(followed), SerializedItems(copied));
  EXPECT_NE(AllTables(followed), Expected(generation()));
}

TEST_P(ChangesOf, FollowContractsIntoAndOutOfTheirStatus) {
  const std::string expected1 =
      "CONTRACTS\n"
      // CT-0001 left the status, CT-0005 is deleted, CT-0006 is new in the status, CT-0007 is new outside it.
      "CT-0002|NULL|Inspection only, extended|0\n"
      "CT-0003|NULL|サービス契約|0\n"
      "CT-0004|NULL|Draft for Lisboa|0\n"
      "CT-0006|NULL|New in the copied status|0\n";
  const std::string expected3 =
      "CONTRACTS\n"
      "SC0000001|NULL|Gold – pump stations|0\n"
      "SC0000002|NULL|Silver, Kläranlage Süd|0\n"
      // SC0000003 is deleted, SC0000004 enters the status, SC0000005 is new outside it.
      "SC0000004|NULL|Bronze 2026|0\n";
  const std::string expected8 =
      "CONTRACTS\n"
      // A contract that is new in the status stands under its site, in a column of its own.
      "NULL|CL-0006|Edge Brno|0\n"
      "SVC000001|NULL|Datacenter Platinum|0\n"
      "SVC000003|NULL|O'Hare rack|0\n"
      "SVC000004|NULL|Draft|0\n";

  EXPECT_EQ(Contracts(followed), generation() == "1" ? expected1 : generation() == "3" ? expected3 : expected8);
}

TEST(ChangesOfGeneration3, MoveTheExpiryOfEveryObjectWithItsWarranty) {
  ProgramHome home;
  TakeExports(home, "erp");
  CopyAll(home, "3", "1");
  home.WriteExport("Kv50QTMtsctmWarranties.changes.csv",
                   "ChangedAt,ActionType,Warranty:text:cwte:key,NumberOfPeriods:int:nrpe,PeriodUnit:int:peru,"
                   "WarrantyType:int:wttp,Description:text:desc\n" +
                       UtcMoment(0, 'T') + "Z,U,W12M,13,15,10,\n");
  CommandLine warranties = home.Line();
  warranties.tableId = "9";
  warranties.syncMethod = "2";
  warranties.generation = "3";

  home.Run(warranties);

  // 13 months from 31 January 2024: one month to 29 February, one year to 28 February 2025, less a day.
  EXPECT_EQ(home.Query("SELECT OBJECT, OBJECTNR, WEXPIRY_DATE FROM OBJECT WHERE WARRANTY = 'W12M' ORDER BY OBJECT"),
            "BLOWER|1|NULL\n"
            "PUMP|0|2025-02-27 00:00:00\n");
}

// Where an only-changed pass leads to another state than a full copy of the ERP's end state.

constexpr const char* kLinesFile3 = "Kv50QTMtsctmContractConfigurationLines.csv";
constexpr const char* kLinesHeader3 =
    "ServiceContract:text:csco:key,ContractTerms:int:term:key,Line:int:seqn:key,Configuration:text:ccfg,"
    "EffectiveDate:date:efdt,ExpiryDate:date:exdt\n";
constexpr const char* kLineChangesFile3 = "Kv50QTMtsctmContractConfigurationLines.changes.csv";

std::string LineChanges3(const std::string& rows) {
  return std::string("ChangedAt,ActionType,") + kLinesHeader3 + rows;
}

CommandLine SiteContractLine(const ProgramHome& home, const char* syncMethod, const char* generation) {
  CommandLine line = home.Line();
  line.tableId = "7";
  line.syncMethod = syncMethod;
  line.generation = generation;
  return line;
}

TEST(ChangesOfSiteContracts, DeleteEveryLineOfTheContractAtTheSite) {
  ProgramHome home;
  home.WriteExport(kLinesFile3, kLinesHeader3 + std::string("SC1,1,10,CFG1,,\nSC1,1,20,CFG1,,\nSC1,2,10,CFG2,,\n"));
  home.Run(SiteContractLine(home, "1", "3"));
  home.WriteExport(kLineChangesFile3, LineChanges3(UtcMoment(0, 'T') + "Z,D,SC1,,10,CFG1,,\n"));

  home.Run(SiteContractLine(home, "2", "3"));

  EXPECT_EQ(home.Query("SELECT SITE, TERM, LINE FROM SITECONTRACT"), "CFG2|2|10\n");
  EXPECT_EQ(home.Log("SITECONTRACT_<day>.log"),
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITECONTRACT -  3\"\r\n"
            "Date: <date> Time: <time>\r\n"
            "\"Rows copied: SITECONTRACT -  0\"\r\n"
            "\"Rows deleted: SITECONTRACT -  2\"\r\n");
}

TEST(ChangesOfSiteContracts, PassOverLinesAbove99) {
  ProgramHome home;
  home.WriteExport(kLinesFile3, kLinesHeader3 + std::string("SC1,1,120,CFG1,2024-01-01,\n"));
  home.Run(SiteContractLine(home, "1", "3"));
  home.WriteExport(kLineChangesFile3, LineChanges3(UtcMoment(0, 'T') + "Z,U,SC1,,120,CFG1,2025-01-01,\n"));

  home.Run(SiteContractLine(home, "2", "3"));

  EXPECT_EQ(home.Query("SELECT LINE, EFFECTIVE_DATE FROM SITECONTRACT"), "120|2024-01-01\n");
}

TEST(ChangesOfSiteContracts, TakeTheLastTermThatTheErpHasForTheLine) {
  ProgramHome home;
  home.WriteExport(kLinesFile3, kLinesHeader3 + std::string("SC1,1,10,CFG1,2024-01-01,\nSC1,2,10,CFG1,2025-01-01,\n"));
  home.WriteExport(kLineChangesFile3, LineChanges3(UtcMoment(0, 'T') + "Z,U,SC1,,10,CFG1,2026-01-01,\n"));

  home.Run(SiteContractLine(home, "2", "3"));

  EXPECT_EQ(home.Query("SELECT TERM, LINE, EFFECTIVE_DATE FROM SITECONTRACT"), "2|10|2026-01-01\n");
}

TEST(ChangesOfSiteContracts, AddARowThatReadsNullWhereTheFullCopyHadOne) {
  ProgramHome home;
  const std::string header =
      "ContractTerms:int:term:key,ConfigurationLine:int:cfln:key,Cluster:text:clst,ServiceContract1:text:csco,"
      "Item:text:item,SerialNumber:text:sern,EffectiveDate:date:efdt,ExpiryDate:date:exdt\n";
  home.WriteExport("Kv61QTMtsctmContractConfigurationLines.csv", header + "1,10,,SVC1,ITEM,X1,,\n");
  home.Run(SiteContractLine(home, "1", "8"));
  home.WriteExport("Kv61QTMtsctmContractConfigurationLines.changes.csv",
                   "ChangedAt,ActionType," + header + UtcMoment(0, 'T') + "Z,U,1,10,,SVC1,ITEM,X1,2026-01-01,\n");

  home.Run(SiteContractLine(home, "2", "8"));

  EXPECT_EQ(home.Query("SELECT SITE, OBJECT, OBJECTNR, EFFECTIVE_DATE FROM SITECONTRACT ORDER BY rowid"),
            "NULL|ITEM|X1|NULL\n"
            "NULL|ITEM|X1|2026-01-01\n");
}

TEST(ChangesOfSerializedItems, ReachEveryRowOfTheItemAtTheSiteWithoutASerialNumber) {
  ProgramHome home;
  const std::string header =
      "Item:text:item:key,SerialNumber:text:sern:key,Description:text:desc,Cluster:text:clst,"
      "SoldtoBusinessPartner:text:ofbp,AlternateSerialNumber:text,Warranty:text,InstallationTime:datetime,"
      "DeliveryTime:datetime\n";
  home.WriteExport("Kv61QTMtscfgSerializedItems.csv", header + "PUMP,X1,Old,CL1,,,,,\nPUMP,X2,Old,CL1,,,,,\n");
  CommandLine line = home.Line();
  line.tableId = "10";
  line.generation = "8";
  home.Run(line);
  home.WriteExport("Kv61QTMtscfgSerializedItems.changes.csv",
                   "ChangedAt,ActionType," + header + UtcMoment(0, 'T') + "Z,U,PUMP,,New,CL1,,,,,\n");
  line.syncMethod = "2";

  home.Run(line);

  EXPECT_EQ(home.Query("SELECT OBJECTNR, OBJECTDESC FROM SERIALIZEDITEM ORDER BY OBJECTNR"), "X1|New\nX2|New\n");
}

TEST(ChangesOfObjects, LeaveAFieldAsItWasThatThePassDoesNotAskFor) {
  ProgramHome home;
  const std::string header =
      "Configuration:text:ccfg:key,Object:text:crob:key,ObjectNumber:int:oseq:key,Description:text:desc,"
      "DerivedFromItem:text:item,DerivedFromItemDescription:text:idsc,SerialNumber:text:cser,"
      "InstallationDate:date:indt,DeliveryDate:date:dldt,Warranty:text:cwte\n";
  home.WriteExport("Kv50QTMtscfgObjects.csv", header + "CFG1,PUMP,1,Old,ITM,Old item,,,,\n");
  CommandLine line = home.Line();
  line.tableId = "6";
  line.generation = "3";
  home.Run(line);
  home.WriteExport("Kv50QTMtscfgObjects.changes.csv",
                   "ChangedAt,ActionType," + header + UtcMoment(0, 'T') + "Z,U,CFG1,PUMP,1,New,ITM,New item,,,,\n");
  line.syncMethod = "2";

  home.Run(line);

  EXPECT_EQ(home.Query("SELECT OBJECTDESC, ITEMDESC FROM OBJECT"), "New|Old item\n");
}

}  // namespace
}  // namespace zenqay
