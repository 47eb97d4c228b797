// The table Site on the embedded engine: a first fill, a second full copy (all updates) and an only-changed pass of a
// tenth of the rows, each beside its floor.
//
//     site_bench DIRECTORY ROWS [PAIRS]
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>

#include "workplace.h"

namespace {

using namespace zenqay::bench;
namespace fs = std::filesystem;

constexpr int kSite = 1;
constexpr int kFull = 1;
constexpr int kOnlyChanged = 2;
constexpr const char* kGeneration = "1";

void WriteLocation(std::ofstream& file, long row, const char* description) {
  char line[160];
  std::snprintf(line, sizeof line, "L%08ld,%s %ld of the service region,C%07ld\n", row, description, row, row % 5000);
  file << line;
}

void WriteExports(const Workplace& place, long rows) {
  std::ofstream all(place.Erp("Kv40QTMtssmaLocations.csv"), std::ios::binary);
  all << "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n";
  for (long row = 0; row < rows; ++row) WriteLocation(all, row, "Location number");
}

void WriteChanges(const Workplace& place, long rows) {
  std::ofstream changes(place.Erp("Kv40QTMtssmaLocations.changes.csv"), std::ios::binary);
  changes << "ChangedAt,ActionType,Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n";
  const std::string now = UtcNow();
  for (long row = 0; row < rows; row += 10) {
    changes << now << ",U,";
    WriteLocation(changes, row, "Changed location");
  }
}

/// An only-changed job that finds no change: what starting and ending costs.
double EmptyJobMilliseconds(const Workplace& place, const fs::path& database) {
  std::vector<double> milliseconds;
  for (int i = 0; i < 11; ++i) {
    const Cost cost = RunChild({ZENQAY_PROGRAM, place.CommandLine(database, kSite, kOnlyChanged, kGeneration)});
    milliseconds.push_back(cost.wallSeconds * 1000);
  }
  return Median(milliseconds);
}

void Run(const fs::path& directory, long rows, int pairs) {
  const Workplace place(directory);
  Figures figures;
  const fs::path empty = place.CreateDatabase("empty.db");
  const double emptyJob = EmptyJobMilliseconds(place, place.CreateDatabase("idle.db"));

  WriteExports(place, rows);
  const fs::path filled = place.CreateDatabase("filled.db");
  const fs::path fill = place.RecordStatements(filled, kSite, kFull, kGeneration);
  figures.AddPhase("site.first_fill", rows, place.RunPairs(empty, fill, kSite, kFull, kGeneration, pairs));

  const fs::path again = directory / "again.db";
  fs::copy_file(filled, again, fs::copy_options::overwrite_existing);
  const fs::path copy = place.RecordStatements(again, kSite, kFull, kGeneration);
  figures.AddPhase("site.second_copy", rows, place.RunPairs(filled, copy, kSite, kFull, kGeneration, pairs));

  WriteChanges(place, rows);
  const fs::path change = place.RecordStatements(again, kSite, kOnlyChanged, kGeneration);
  figures.AddPhase("site.only_changed", (rows + 9) / 10,
                   place.RunPairs(filled, change, kSite, kOnlyChanged, kGeneration, pairs));

  figures.Add("site.empty_job.wall_ms", emptyJob);
  figures.Print();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  try {
    Run(argv[1], std::atol(argv[2]), argc > 3 ? std::atoi(argv[3]) : 5);
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "site_bench: %s\n", fault.what());
    return 1;
  }
  return 0;
}
