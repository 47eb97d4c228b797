// The same job on the ERP files and on a Java adapter that reads the same exports: the database is told the same.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "e2e/program_fixture.h"

namespace zenqay {
namespace {

using nlohmann::ordered_json;

constexpr const char* kLines = "Kv50QTMtsctmContractConfigurationLines";
constexpr const char* kContracts = "Kv50QTMtsctmServiceContracts";

constexpr const char* kLineHeader =
    "ServiceContract:text:csco:key,ContractTerms:int:term:key,Line:int:seqn:key,Configuration:text:ccfg,"
    "EffectiveDate:date:efdt,ExpiryDate:date:exdt";
constexpr const char* kContractHeader = "ServiceContract:text:csco:key,Description:text:desc,ContractStatus:int:scon";

constexpr const char* kLineRows =
    "SC1,1,10,CFG1,2024-01-01,2026-12-31\n"
    "SC1,2,10,CFG1,2025-01-01,\n"
    "SC2,1,20,CFG2,,\"\"\n"
    "SC3,0,0,\"CFG \"\"3\"\"\",,2026-01-01\n";

/// Moved to another site, new, new without a term that can be found, gone; before the
/// last copy.
constexpr const char* kLineChanges =
    "2010-01-01T00:00:00Z,U,SC1,,10,CFG9,2024-01-01,2026-12-31,CFG1,2024-01-01\n"
    "2010-01-01T00:00:00Z,I,SC2,,20,CFG2,2026-01-01,,,\n"
    "2010-01-01T00:00:00Z,U,SC2,,20,CFG2,2026-01-02,,,2026-01-01\n"
    "2010-01-01T00:00:00Z,I,SC7,,30,CFG7,,,,\n"
    "2010-01-01T00:00:00Z,D,SC3,,0,CFG3,,,,\n"
    "1999-01-01T00:00:00Z,D,SC1,,10,CFG9,,,,\n";

constexpr const char* kContractRows =
    "SC1,Gold – Kläranlage,10\n"
    "SC2,\"St. Mary's, wing \"\"B\"\" 😀\",10\n"
    "SC3,,5\n"
    "SC4,\"\",\n";

/// Entered the status, left it, changed its text, new in and out of it, gone.
constexpr const char* kContractChanges =
    "2010-01-01T00:00:00Z,U,SC3,In force,10,Offer,5\n"
    "2010-01-01T00:00:00Z,U,SC1,Gold,20,,10\n"
    "2010-01-01T00:00:00Z,U,SC2,Silver,10,Old silver,10\n"
    "2010-01-01T00:00:00Z,I,SC5,New,10,,\n"
    "2010-01-01T00:00:00Z,I,SC6,Offer,5,,\n"
    "2010-01-01T00:00:00Z, D,SC4,,,,\n";

/// A home with the exports of both entities, on one of the two hosts.
struct Home {
  explicit Home(std::string hosts) {
    if (const auto at = hosts.find("<exports>"); at != std::string::npos) {
      hosts.replace(at, std::string("<exports>").size(), home.path() + "/erp");
    }
    home.WriteExport(std::string(kLines) + ".csv", std::string(kLineHeader) + "\n" + kLineRows);
    home.WriteExport(std::string(kContracts) + ".csv", std::string(kContractHeader) + "\n" + kContractRows);
    home.WriteExport(std::string(kLines) + ".changes.csv", std::string("ChangedAt,ActionType,") + kLineHeader +
                                                               ",Old.Configuration,Old.EffectiveDate\n" + kLineChanges);
    home.WriteExport(std::string(kContracts) + ".changes.csv", std::string("ChangedAt,ActionType,") + kContractHeader +
                                                                   ",Old.Description,Old.ContractStatus\n" +
                                                                   kContractChanges);
    home.directory().Write("Components.xml", "<COMPONENTS>\n" + hosts +
                                                 "<HOST prefix=\"ZenqayInstHandler.\" kind=\"console\"/>\n"
                                                 "<TRACE file=\"trace.jsonl\"/>\n</COMPONENTS>\n");
  }

  /// The statements of one job as its trace has them, the time masked, behind them how it ended.
  std::string Statements(const std::string& tableId, const std::string& syncMethod) const {
    CommandLine line = home.Line();
    line.tableId = tableId;
    line.syncMethod = syncMethod;
    line.generation = "3";
    const ProgramRun run = home.Run(line, {.timeZone = "America/New_York"});
    std::ifstream trace(home.path() + "/trace.jsonl");
    std::string statements;
    for (std::string text; std::getline(trace, text);) {
      const auto parsed = ordered_json::parse(text);
      if (parsed.at("kind") == "sql") statements += parsed.at("text").get<std::string>() + "\n";
    }
    return home.Masked(statements) + home.Report(run);
  }

  ProgramHome home;
};

std::string FileHosts() {
  return "<HOST prefix=\"java:com.korvel.\" kind=\"files\" directory=\"erp\"/>\n"
         "<HOST prefix=\"Kv\" kind=\"files\" directory=\"erp\"/>\n"
         "<HOST prefix=\"NetListSelectionCriteria.\" kind=\"files\" directory=\"erp\"/>\n"
         "<HOST prefix=\"java:java.util.\" kind=\"builtin\"/>\n";
}

std::string JavaHosts() {
  return std::string("<HOST prefix=\"java:com.korvel.\" kind=\"jvm\" classpath=\"") + ZENQAY_TEST_ADAPTER +
         "\" options=\"-Xmx64m -Dadapter.exports=<exports>\"/>\n"
         "<HOST prefix=\"Kv\" kind=\"jvm\"/>\n"
         "<HOST prefix=\"NetListSelectionCriteria.\" kind=\"jvm\"/>\n"
         "<HOST prefix=\"java:java.util.\" kind=\"jvm\"/>\n";
}

/// A full copy, an only-changed pass and a second full copy of a table, one after the other.
std::string Jobs(const std::string& hosts, const std::string& tableId) {
  Home home(hosts);
  std::string statements;
  statements += home.Statements(tableId, "1") + "\n";
  home.home.Execute("UPDATE tstables SET lutm = '2004-01-31 10:11:12'");
  statements += home.Statements(tableId, "2") + "\n";
  statements += home.Statements(tableId, "1") + "\n";
  return statements;
}

TEST(JavaAdapter, GivesTheStatementsOfTheErpFilesForSiteContracts) {
  const std::string expected = Jobs(FileHosts(), "7");

  const std::string statements = Jobs(JavaHosts(), "7");

  EXPECT_EQ(statements, expected);
  EXPECT_NE(statements.find("SITE =N'CFG1' AND CONTRACT =N'SC1'AND TERM = 2AND LINE = 10"), std::string::npos)
      << statements;
}

TEST(JavaAdapter, GivesTheStatementsOfTheErpFilesForContracts) {
  const std::string expected = Jobs(FileHosts(), "8");

  const std::string statements = Jobs(JavaHosts(), "8");

  EXPECT_EQ(statements, expected);
  EXPECT_NE(statements.find("INSERT INTO CONTRACTS (CONTRACT ,CDESCRIPTION ,upd_flag )VALUES (N'SC3',N'In force',0)"),
            std::string::npos)
      << statements;
}

/// In an all-tables run the table is named by a field of the registry's rows.
TEST(JavaStatusComponent, IsToldWhatEveryOtherOneIs) {
  const ProgramHome home;
  home.directory().Write("Components.xml",
                         "<COMPONENTS>\n" + FileHosts() +
                             "<HOST prefix=\"ZenqayInstHandler.\" kind=\"jvm\" classpath=\"" + ZENQAY_TEST_ADAPTER +
                             "\" options=\"-Xmx64m -Dstatus.file=" + home.path() + "/status\"/>\n</COMPONENTS>\n");
  home.WriteExport(std::string(kContracts) + ".csv", std::string(kContractHeader) + "\n" + kContractRows);
  home.Execute("DELETE FROM tstreenodes WHERE tableid NOT IN (1, 8)");
  CommandLine line = home.Line();
  line.tableId = "128";
  line.statusHandle = "7";
  line.instance = "4";
  line.generation = "3";

  home.Run(line);

  EXPECT_EQ(home.Masked(home.directory().Read("status")),
            "4 message <time> Copy of Sites (ERP table 110) started.\n"
            "4 sync 1 1\n"
            "4 table 7 1 2 <>\n"
            "4 message <time> Copy of Sites (ERP table 110) failed.\n"
            "4 alert <time> Table SITE could not be copied (-1). See the log file <home>/logs\\SITE_<day>.log.\n"
            "4 sync 1 3\n"
            "4 table 7 1 16 <>\n"
            "4 message <time> Copy of Contracts (ERP table 300) started.\n"
            "4 sync 8 1\n"
            "4 table 7 8 2 <>\n"
            "4 message <time> Copy of Contracts (ERP table 300) complete: 4 copied, 0 updated, 0 deleted.\n"
            "4 sync 8 2\n"
            "4 table 7 8 4 <>\n");
}

}  // namespace
}  // namespace zenqay
