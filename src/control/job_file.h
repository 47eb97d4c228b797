// The job file: which databases and ERPs there are, and which jobs copy from the one into the other.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "control/duration.h"

namespace zenqay {

/// Where a password comes from. It never stands in the file itself.
struct PasswordSource {
  enum class Kind { Credential, File, Environment };

  Kind kind = Kind::Credential;
  Text name;   // of the credential or the variable; the path of the file
  Text place;  // "zenqay.toml:4:12"
};

struct DatabaseSettings {
  Text name;
  Text connection;  // without its password; the path of an embedded database is absolute
  Text catalogue;   // item 2 of a job's line
  std::int16_t platform = 1;
  std::optional<PasswordSource> password;
  bool isEmbedded = false;  // a file of this machine
  int parallel = 1;
  Text place;  // of the connection
};

struct ErpSettings {
  Text name;
  Text home;
  Text generation;
  Text busComponent;
  Text place;  // of the home
};

enum class Method : std::int16_t { Full = 1, OnlyChanged = 2 };
enum class ClockChange { Full, Warn };

struct JobSettings {
  Text name;
  Text database;  // its name in the file
  Text erp;
  std::vector<Text> tables;  // names or ids; empty stands for all of the generation's group
  Method method = Method::OnlyChanged;
  Text logs;
  bool hasStatusComponent = false;
  std::int32_t statusHandle = -1;
  std::int32_t statusInstance = 0;
  int retryTimes = 0;
  Seconds retryWait{30};
  Seconds timeout{0};  // 0: none
  Text sweepLimit;     // "10%" or "500"; empty: that of the ERP's components file
  ClockChange onClockChange = ClockChange::Full;
  Text place;  // of the tables, or of the job where none are named
};

/// How tasks are handed to the batch system.
struct BatchSettings {
  Text shared;                // the directory, on a disk of all nodes, in which tasks leave what became of them
  Text node;                  // this machine's name as a node; empty: the batch system is asked
  std::vector<Text> options;  // for each of its jobs
  Seconds requeueWait{std::chrono::minutes{3}};  // for the lock of a dead session, in a task that is begun anew
  Text place;                                    // of the directory, or of the file where none is named
};

struct JobFile {
  Text path;       // absolute
  Text directory;  // that of the path
  std::map<Text, DatabaseSettings> databases;
  std::map<Text, ErpSettings> erps;
  std::map<Text, JobSettings> jobs;
  BatchSettings batch;
  Seconds keepHistory{std::chrono::hours{24} * 400};

  /// Raises WrongUsage with the nearest name for a job that there is not.
  const JobSettings& Job(const Text& name) const;
  const DatabaseSettings& DatabaseOf(const JobSettings& job) const { return databases.at(job.database); }
  const ErpSettings& ErpOf(const JobSettings& job) const { return erps.at(job.erp); }
};

/// Whether the text can be an option of sbatch, with its value behind "=". Any other word would stand for a script.
bool IsBatchOption(const Text& text);

/// Whether an option of sbatch makes of a submission what it is not: an array of another size, a script of its own, a
/// command that waits, or none at all.
bool IsAgainstSubmission(const Text& option);

/// The file that counts: `named` (by --file), else the one that `variable` names (ZENQAY_FILE), else ./zenqay.toml,
/// else /etc/zenqay/zenqay.toml. Raises WrongUsage when the one that is named, or any at all, is missing.
Text FindJobFile(const Text& named, const Text& variable);

/// Reads the file. Raises WrongUsage with all that is wrong with it, a line for each: the place as
/// "zenqay.toml:12:5: ", then what is wrong, with the nearest right word. Relative paths become absolute from the
/// file's directory.
JobFile ReadJobFile(const Text& path);

/// The same from a text; `path` is what the places and the paths are told by.
JobFile ReadJobFileText(const Text& text, const Text& path);

}  // namespace zenqay
