// zenqayctl plan of a full copy of the table Site on the embedded engine, beside the job itself on the same export and
// a copy of the same database: into an empty table, with every row as it is, and with every row changed.
//
//     plan_bench DIRECTORY ROWS [PAIRS]
#include <fstream>

#include "site_exports.h"
#include "workplace.h"

namespace {

using namespace zenqay::bench;
namespace fs = std::filesystem;

constexpr const char* kGeneration = "1";

class Bench {
 public:
  Bench(const fs::path& directory, long rows, int pairs) : place_(directory), rows_(rows), pairs_(pairs) {
    std::ofstream(directory / "zenqay.toml")
        << "[database.service]\nconnection = \"Provider=SQLite;Data Source=work.db\"\n"
        << "[erp.main]\nhome = \".\"\ngeneration = " << kGeneration << "\nbus-component = \"MAIN\"\n"
        << "[job.site]\ndatabase = \"service\"\nerp = \"main\"\ntables = [\"SITE\"]\nmethod = \"full\"\nlogs = "
           "\"log\"\n";
  }

  void Run() {
    WriteLocations(place_, rows_);
    Measure("plan.first_fill", place_.CreateDatabase("empty.db"));
    const fs::path filled = place_.path() / "filled.db";
    fs::copy_file(place_.WorkDatabase(), filled, fs::copy_options::overwrite_existing);
    Measure("plan.nothing_changes", filled);
    WriteChangedLocations(place_, rows_);
    Measure("plan.all_change", filled);
    figures_.Print();
  }

 private:
  /// The job comes last, so that its work stands in the database.
  void Measure(const char* name, const fs::path& before) {
    const std::string plan = "\"" ZENQAY_CTL "\" --file \"" + (place_.path() / "zenqay.toml").string() +
                             "\" plan site; status=$?; [ $status = 5 ] || [ $status = 0 ]";
    Measured measured;
    for (int i = 0; i < pairs_; ++i) {
      place_.CopyToWork(before);
      const Cost planned = RunChild({"/bin/sh", "-c", plan});
      const Cost copied =
          RunChild({ZENQAY_PROGRAM, place_.CommandLine(place_.WorkDatabase(), kSite, kFull, kGeneration)});
      measured.floors.Add(planned, copied);
    }
    figures_.AddPhase(name, rows_, measured);
  }

  Workplace place_;
  long rows_;
  int pairs_;
  Figures figures_;
};

}  // namespace

int main(int argc, char** argv) {
  return RunBench("plan_bench", argc, argv,
                  [](const fs::path& directory, long rows, int pairs) { Bench(directory, rows, pairs).Run(); });
}
