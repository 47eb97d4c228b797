// A directory with everything that a job needs: exports, catalogue, texts, logs and database files.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "figures.h"

namespace zenqay::bench {

constexpr int kSite = 1;  // as command lines name the table
constexpr int kFull = 1;  // as they name the method

class Workplace {
 public:
  /// Makes the directory anew, with a catalogue that serves the ERP from `erp`, and names it to the programs that are
  /// started from here.
  explicit Workplace(const std::filesystem::path& directory);

  const std::filesystem::path& path() const { return directory_; }
  std::filesystem::path Erp(const std::string& file) const { return directory_ / "erp" / file; }

  /// A database file with the reference schema and the control rows.
  std::filesystem::path CreateDatabase(const std::string& name) const;

  /// The command line of a job on a database file, without a status component.
  std::string CommandLine(const std::filesystem::path& database, int tableId, int syncMethod,
                          const std::string& generation) const;

  /// The same for a database of any kind.
  std::string CommandLineFor(const std::string& connectionString, int tableId, int syncMethod,
                             const std::string& generation) const;

  /// Writes down the job's statements, which changes the database as the job does.
  std::filesystem::path RecordStatements(const std::filesystem::path& database, int tableId, int syncMethod,
                                         const std::string& generation) const;

  /// The same for a job on a database of any kind, into a file of this name.
  std::filesystem::path RecordJob(const std::string& commandLine, const std::string& file) const;

  /// The database that a measured program works on.
  std::filesystem::path WorkDatabase() const { return directory_ / "work.db"; }

  /// Puts a copy of a database where a measured program works.
  void CopyToWork(const std::filesystem::path& database) const;

  /// Runs the job, its floor and its peer in turn, each on a copy of `before`, so many times. `peer` is its
  /// command line on the work database; empty for none.
  Measured Measure(const std::filesystem::path& before, const std::filesystem::path& statements, int tableId,
                   int syncMethod, const std::string& generation, int times,
                   const std::vector<std::string>& peer = {}) const;

 private:
  std::filesystem::path directory_;
};

/// A benchmark's whole main: `NAME DIRECTORY ROWS [PAIRS]`, five pairs where none are named. Returns the exit status.
int RunBench(const char* name, int argc, char** argv,
             void (*run)(const std::filesystem::path& directory, long rows, int pairs));

/// The moment as exports have it: 2026-01-31T10:11:12Z.
std::string UtcNow();

}  // namespace zenqay::bench
