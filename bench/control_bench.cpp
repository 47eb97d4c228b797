// zenqayctl run of ten tables on a PostgreSQL server, one, four and ten at a time; on loopback, and through a network
// that takes a millisecond each way. The floor of one at a time are jobs over all tables, that of four and ten is one
// at a time. All rows are there already, so each is an update. Objects and warranties, which follow each other, have a
// quarter of the rows.
//
// And what the control channel costs a job, in instructions, which valgrind counts.
//
//     control_bench DIRECTORY ROWS [ROUNDS]
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <optional>

#include "delay_proxy.h"
#include "doubles/postgres_server.h"
#include "site_exports.h"

namespace {

using namespace zenqay::bench;
namespace fs = std::filesystem;

constexpr int kAllTables = 128;
constexpr int kSite = 1;
constexpr int kFull = 1;
constexpr const char* kGenerations[] = {"3", "1", "8"};
constexpr const char* kDatabase = "service";
constexpr long kRowsOfChannelJob = 5000;

/// The exports of seven tables under generation 3, of two more under 1, and of the tenth under 8.
void WriteExports(const Workplace& place, long rows) {
  const auto write = [&](const char* name, long count, const char* header, const char* format) {
    std::ofstream file(place.Erp(std::string(name) + ".csv"), std::ios::binary);
    file << header << "\n";
    for (long row = 1; row <= count; ++row) {
      char line[300];
      std::snprintf(line, sizeof line, format, row, row);
      file << line << "\n";
    }
  };
  const long few = rows / 4;
  write("Kv50QTMtscfgConfigurations", rows,
        "Configuration:text:ccfg:key,SoldtoBusinessPartner:text:ofbp:key,ConfigurationDescription:text:desc",
        "C%06ld,BP1,Configuration %ld");
  write("Kv50QTMtsclmProblems", rows, "Problem:text:cprl:key,Description:text:desc,CallType:text:cltp",
        "P%06ld,Problem %ld,CORR");
  write("Kv50QTMtcmcsPriorities", rows, "Priority:int:prio:key,Description:text:dsca", "%ld,Priority %ld");
  write("Kv50QTMtscfgObjects", few,
        "Configuration:text:ccfg:key,Object:text:crob:key,ObjectNumber:int:oseq:key,Description:text:desc,"
        "DerivedFromItem:text:item,DerivedFromItemDescription:text,SerialNumber:text:cser,InstallationDate:date:indt,"
        "DeliveryDate:date:dldt,Warranty:text:cwte",
        "C000001,PUMP,%ld,Object %ld,ITEM,Pump,SN1,2024-01-31,2024-01-15,W000001");
  write("Kv50QTMtsctmContractConfigurationLines", rows,
        "ServiceContract:text:csco:key,ContractTerms:int:term:key,Line:int:seqn:key,Configuration:text:ccfg,"
        "EffectiveDate:date:efdt,ExpiryDate:date:exdt",
        "S%06ld,1,10,C%06ld,2024-01-01,2026-12-31");
  write("Kv50QTMtsctmServiceContracts", rows,
        "ServiceContract:text:csco:key,Description:text:desc,ContractStatus:int:scon", "S%06ld,Contract %ld,10");
  write("Kv50QTMtsctmWarranties", few,
        "Warranty:text:cwte:key,Description:text:desc,NumberOfPeriods:int:nrpe,PeriodUnit:int:peru,"
        "WarrantyType:int:wttp",
        "W%06ld,Warranty %ld,12,15,10");
  write("Kv40QTMtssmaInstallations", rows,
        "Installation:text:cins:key,Description:text:desc,Location:text:cloc,Contract:text:ccon,Warranty:text:cgua,"
        "WarrantyExpiryDate:date:gdat,MaintenanceStartDate:date:sdat,MaintenanceEndDate:date:edat",
        "I%06ld,Installation %ld,L1,S1,W1,2027-03-31,2025-04-01,2027-03-31");
  write("Kv40QTMtsspfSymptoms", rows, "Symptom:text:csym:key,Description:text:desc", "Y%06ld,Symptom %ld");
  write("Kv61QTMtscfgSerializedItems", rows,
        "Item:text:item:key,SerialNumber:text:sern:key,Description:text:desc,Cluster:text:clst,"
        "SoldtoBusinessPartner:text:ofbp,AlternateSerialNumber:text,Warranty:text,InstallationTime:datetime,"
        "DeliveryTime:datetime",
        "SRV,X%06ld,Item %ld,CL1,BP1,A1,W1,2025-01-15T09:30:00,2025-01-10T14:00:00");
}

class Bench {
 public:
  Bench(const fs::path& directory, long rows, int rounds) : place_(directory), rows_(rows), rounds_(rounds) {
    WriteExports(place_, rows);
    server_.Psql("postgres", "CREATE ROLE bench LOGIN SUPERUSER PASSWORD 'bench'");
    server_.Psql("postgres", std::string("CREATE DATABASE ") + kDatabase);
    const std::string schema = ZENQAY_SHARE "/schema/";
    server_.PsqlFiles(kDatabase, {schema + "postgresql.sql", schema + "control-rows.sql"});
    server_.Psql(kDatabase,
                 "DELETE FROM tstreenodes WHERE groupid = '1' AND tableid NOT IN (2, 5);"
                 "DELETE FROM tstreenodes WHERE groupid = '8' AND tableid <> 10;");
    Write("password", "bench");
    ::chmod((place_.path() / "password").c_str(), 0600);
    ::setenv("XDG_STATE_HOME", place_.path().c_str(), 1);
  }

  void Run() {
    RunAllTables(server_.port());  // the first fill
    Measure("control.direct", server_.port());
    {
      const DelayProxy network(server_.port(), std::chrono::milliseconds(1));
      Measure("control.network", network.port());
    }
    CountChannel();
    figures_.Print();
  }

 private:
  void Write(const std::string& name, const std::string& content) const {
    std::ofstream(place_.path() / name, std::ios::binary) << content;
  }

  static std::string String(int port) {
    return "Driver=PostgreSQL Unicode;Server=127.0.0.1;Port=" + std::to_string(port) + ";Database=" + kDatabase +
           ";Uid=bench";
  }

  Cost RunAllTables(int port) const {
    Cost sum;
    for (const char* generation : kGenerations) {
      const Cost cost =
          RunChild({ZENQAY_PROGRAM, place_.CommandLineFor(String(port) + ";Pwd=bench", kAllTables, kFull, generation)});
      sum.wallSeconds += cost.wallSeconds;
      sum.cpuSeconds += cost.cpuSeconds;
      sum.peakMib = std::max(sum.peakMib, cost.peakMib);
    }
    return sum;
  }

  Cost RunSideBySide(int port, int parallel) const {
    std::string file = "[database.service]\nconnection = \"" + String(port) +
                       "\"\npassword = { file = \"password\" }\nparallel = " + std::to_string(parallel) + "\n";
    for (const std::string generation : kGenerations) {
      file += "[erp.g" + generation + "]\nhome = \".\"\ngeneration = " + generation + "\nbus-component = \"MAIN\"\n" +
              "[job.g" + generation + "]\ndatabase = \"service\"\nerp = \"g" + generation +
              "\"\nmethod = \"full\"\nlogs = \"log\"\n";
    }
    Write("zenqay.toml", file);
    return RunChild({ZENQAY_CTL, "--file", (place_.path() / "zenqay.toml").string(), "run", "g3", "g1", "g8"});
  }

  void Measure(const std::string& name, int port) {
    Measured oneBesideJobs;
    std::map<int, Measured> besideOne;
    for (int round = 0; round < rounds_; ++round) {
      const Cost jobs = RunAllTables(port);
      const Cost one = RunSideBySide(port, 1);
      oneBesideJobs.floors.Add(one, jobs);
      for (const int parallel : {4, 10}) besideOne[parallel].floors.Add(RunSideBySide(port, parallel), one);
    }
    const long rowsOfAll = 8 * rows_ + 2 * (rows_ / 4);
    figures_.AddPhase(name + ".1", rowsOfAll, oneBesideJobs);
    for (const auto& [parallel, measured] : besideOne) {
      figures_.AddPhase(name + "." + std::to_string(parallel), rowsOfAll, measured);
    }
  }

  /// How many instructions a program and all that it calls takes.
  double InstructionsOf(const std::string& line, const std::string& channel) const {
    Write("line", line);
    const std::string directory = place_.path().string();
    const std::string counted = directory + "/instructions";
    const std::string variable = channel.empty() ? "" : "ZENQAY_CONTROL_FD=3 ";
    const std::string command =
        variable + "valgrind --tool=callgrind --callgrind-out-file=/dev/null " ZENQAY_PROGRAM " - <" + directory +
        "/line 2>" + counted + " >/dev/null" + (channel.empty() ? "" : " 3> " + channel);
    if (std::system(command.c_str()) != 0) throw std::runtime_error("valgrind does not run");
    std::ifstream file(counted);
    const std::string said{std::istreambuf_iterator<char>(file), {}};
    const std::string mark = "Collected : ";
    const std::size_t at = said.find(mark);
    if (at == std::string::npos) throw std::runtime_error("valgrind does not count: " + said);
    return std::atof(said.c_str() + at + mark.size());
  }

  void CountChannel() {
    WriteLocations(place_, kRowsOfChannelJob);
    const auto job = [&](const char* database) {
      return place_.CommandLine(place_.CreateDatabase(database), kSite, kFull, "1");
    };
    const double without = InstructionsOf(job("without.db"), "");
    const double with = InstructionsOf(job("with.db"), place_.path().string() + "/channel");
    figures_.Add("control.channel_instruction_ratio", with / without);
  }

  Workplace place_;
  long rows_;
  int rounds_;
  zenqay::PostgresServer server_{{"synchronous_commit=off", "max_connections=100"}};
  Figures figures_;
};

}  // namespace

int main(int argc, char** argv) {
  return RunBench("control_bench", argc, argv,
                  [](const fs::path& directory, long rows, int rounds) { Bench(directory, rows, rounds).Run(); });
}
