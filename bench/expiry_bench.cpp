// The warranty expiry over all objects, on the embedded engine: a full copy of the warranties under generation 3, which
// recomputes every object, beside a floor that runs the same statements.
//
//     expiry_bench DIRECTORY ROWS [PAIRS]
#include <sqlite3.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "workplace.h"

namespace {

using namespace zenqay::bench;
namespace fs = std::filesystem;

constexpr int kWarranties = 9;
constexpr const char* kGeneration = "3";

void WriteWarranties(const Workplace& place) {
  std::ofstream(place.Erp("Kv50QTMtsctmWarranties.csv"), std::ios::binary)
      << "Warranty:text:cwte:key,Description:text:desc,NumberOfPeriods:int:nrpe,PeriodUnit:int:peru,"
         "WarrantyType:int:wttp\n"
         "W12M,12 months from installation,12,15,10\n"
         "W2Y,Two years from delivery,2,25,20\n";
}

/// Objects of both warranties, each with both dates.
void FillObjects(const fs::path& path, long rows) {
  const std::string statement =
      "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < " + std::to_string(rows) +
      ") INSERT INTO OBJECT (SITE, OBJECT, OBJECTNR, OBJECTDESC, WARRANTY, INSTALLATION_DATE, DELIVERY_DATE) "
      "SELECT printf('CFG%05d', i / 100), printf('OBJ%02d', i % 100), i, 'Object number ' || i, "
      "CASE i % 2 WHEN 0 THEN 'W12M' ELSE 'W2Y' END, date('2020-01-31', (i % 2000) || ' days'), "
      "date('2020-01-15', (i % 2000) || ' days') FROM n";
  sqlite3* database = nullptr;
  const bool filled = sqlite3_open(path.c_str(), &database) == SQLITE_OK &&
                      sqlite3_exec(database, statement.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
  const std::string fault = filled ? "" : sqlite3_errmsg(database);
  sqlite3_close(database);
  if (!filled) throw std::runtime_error("cannot fill the objects: " + fault);
}

void Run(const fs::path& directory, long rows, int pairs) {
  const Workplace place(directory);
  WriteWarranties(place);
  const fs::path before = place.CreateDatabase("before.db");
  FillObjects(before, rows);
  const fs::path recorded = directory / "recorded.db";
  fs::copy_file(before, recorded, fs::copy_options::overwrite_existing);
  const fs::path statements = place.RecordStatements(recorded, kWarranties, kFull, kGeneration);
  Figures figures;
  figures.AddPhase("expiry.all_objects", rows,
                   place.Measure(before, statements, kWarranties, kFull, kGeneration, pairs));
  figures.Print();
}

}  // namespace

int main(int argc, char** argv) {
  return RunBench("expiry_bench", argc, argv, Run);
}
