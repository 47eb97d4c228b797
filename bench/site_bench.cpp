// The table Site on the embedded engine: a first fill, a second full copy (all updates) and an only-changed pass of a
// tenth of the rows, each beside its floor; the copies also beside their peer, a script with bound parameters.
//
//     site_bench DIRECTORY ROWS [PAIRS]

#include "site_exports.h"
#include "workplace.h"

namespace {

using namespace zenqay::bench;
namespace fs = std::filesystem;

constexpr int kOnlyChanged = 2;
constexpr const char* kGeneration = "1";

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

  WriteLocations(place, rows);
  const std::vector<std::string> peer = {"/usr/bin/python3", ZENQAY_BENCH_SOURCE "/sqlite_peer.py",
                                         place.WorkDatabase().string(),
                                         place.Erp("Kv40QTMtssmaLocations.csv").string()};
  const fs::path filled = place.CreateDatabase("filled.db");
  const fs::path fill = place.RecordStatements(filled, kSite, kFull, kGeneration);
  figures.AddPhase("site.first_fill", rows, place.Measure(empty, fill, kSite, kFull, kGeneration, pairs, peer));

  const fs::path again = directory / "again.db";
  fs::copy_file(filled, again, fs::copy_options::overwrite_existing);
  const fs::path copy = place.RecordStatements(again, kSite, kFull, kGeneration);
  figures.AddPhase("site.second_copy", rows, place.Measure(filled, copy, kSite, kFull, kGeneration, pairs, peer));

  WriteLocationChanges(place, rows);
  const fs::path change = place.RecordStatements(again, kSite, kOnlyChanged, kGeneration);
  figures.AddPhase("site.only_changed", (rows + 9) / 10,
                   place.Measure(filled, change, kSite, kOnlyChanged, kGeneration, pairs));

  figures.Add("site.empty_job.wall_ms", emptyJob);
  figures.Print();
}

}  // namespace

int main(int argc, char** argv) {
  return RunBench("site_bench", argc, argv, Run);
}
