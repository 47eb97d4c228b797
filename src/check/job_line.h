// The command line as a job reads it.
#pragma once

#include "check/check_report.h"
#include "process/modDeclarations.h"

namespace zenqay {

inline constexpr std::int16_t kOnlyChanged = 2;

/// The items that the process-wide values do not hold.
struct JobLine {
  Text connectionString;
  Text database;
  std::int16_t tableId = 0;
  std::int16_t syncMethod = 0;
  Text logDirectory;
  std::int16_t platform = 0;
};

/// Checks the items, fills the process-wide settings and `line`, and says what no job would get past or should be
/// asked for. False when the line serves for no job.
bool CheckLine(modDeclarations& process, const Text& commandLine, JobLine& line, CheckReport& report);

/// Looks whether the logs can be written. Nothing is.
void CheckLogDirectory(const JobLine& line, CheckReport& report);

}  // namespace zenqay
