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
constexpr const char* kGenerations[] = {"3", "1", "8"};
constexpr const char* kDatabase = "service";
constexpr long kRowsOfChannelJob = 5000;

class Bench {
 public:
  Bench(const fs::path& directory, long rows, int rounds) : place_(directory), rows_(rows), rounds_(rounds) {
    WriteExportsOfTenTables(place_, rows);
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
