// The table Site on a PostgreSQL server: a first fill and a second full copy (all updates), each beside its floor, a
// plain ODBC loop over the same statements, and its peer, the same upserts by pyodbc. None of them waits for the disk
// at a commit. Behind that, the second copy of a tenth of the rows where they do.
//
//     postgres_bench DIRECTORY ROWS [PAIRS]
#include <cstdio>
#include <cstdlib>

#include "doubles/postgres_server.h"
#include "site_exports.h"

namespace {

using namespace zenqay::bench;
namespace fs = std::filesystem;

constexpr const char* kGeneration = "1";

class Bench {
 public:
  Bench(const fs::path& directory, long rows, int pairs, const std::vector<std::string>& settings)
      : place_(directory), rows_(rows), pairs_(pairs), server_(settings) {
    WriteLocations(place_, rows);
    server_.Psql("postgres", "CREATE ROLE bench LOGIN SUPERUSER PASSWORD 'bench'");
    server_.Psql("postgres", "CREATE DATABASE before");
    const std::string schema = ZENQAY_SHARE "/schema/";
    server_.PsqlFiles("before", {schema + "postgresql.sql", schema + "control-rows.sql"});
  }

  void MeasureCopies(Figures& figures) {
    const fs::path fill = RecordOn("filled", "before");
    figures.AddPhase("postgres.first_fill", rows_, Measure("before", fill));
    const fs::path copy = RecordOn("again", "filled");
    figures.AddPhase("postgres.second_copy", rows_, Measure("filled", copy));
  }

  void MeasureWaits(Figures& figures) {
    RecordOn("filled", "before");
    const fs::path copy = RecordOn("again", "filled");
    figures.AddPhase("postgres.all_wait", rows_, Measure("filled", copy, ";Row Commit=AtOnce"));
    figures.AddPhase("postgres.others_wait", rows_, Measure("filled", copy));
  }

 private:
  void CreateFrom(const std::string& database, const std::string& original) const {
    server_.Psql("postgres", "DROP DATABASE IF EXISTS " + database);
    server_.Psql("postgres", "CREATE DATABASE " + database + " TEMPLATE " + original);
    server_.Psql("postgres", "CHECKPOINT");  // what is still unwritten is nobody's cost
  }

  std::string JobOn(const std::string& database, const std::string& more = "") const {
    return place_.CommandLineFor(String(database) + more, kSite, kFull, kGeneration);
  }

  std::string String(const std::string& database) const {
    return "Driver=PostgreSQL Unicode;Server=127.0.0.1;Port=" + std::to_string(server_.port()) +
           ";Database=" + database + ";Uid=bench;Pwd=bench";
  }

  fs::path RecordOn(const std::string& database, const std::string& original) const {
    CreateFrom(database, original);
    return place_.RecordJob(JobOn(database), "statements-" + database + ".sql0");
  }

  /// `more` stands in the job's connection string alone.
  Measured Measure(const std::string& original, const fs::path& statements, const std::string& more = "") {
    const std::string peer = ZENQAY_BENCH_SOURCE "/odbc_peer.py";
    const std::string locations = place_.Erp("Kv40QTMtssmaLocations.csv").string();
    return MeasureInTurn({{ZENQAY_PROGRAM, JobOn("work", more)},
                          {ZENQAY_ODBC_FLOOR, String("work"), statements.string()},
                          {"/usr/bin/python3", peer, String("work"), locations}},
                         pairs_, [&](const std::vector<std::string>& program) {
                           CreateFrom("work", original);
                           return RunChild(program);
                         });
  }

  Workplace place_;
  long rows_;
  int pairs_;
  zenqay::PostgresServer server_;
};

void Run(const fs::path& directory, long rows, int pairs) {
  Figures figures;
  Bench(directory, rows, pairs, {"synchronous_commit=off"}).MeasureCopies(figures);
  Bench(directory, rows / 10, pairs, {"fsync=on"}).MeasureWaits(figures);
  figures.Print();
}

}  // namespace

int main(int argc, char** argv) {
  return RunBench("postgres_bench", argc, argv, Run);
}
