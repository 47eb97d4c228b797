#include "check/job_line.h"

#include <filesystem>

#include "base/numbers.h"
#include "process/QTMDeclarations.h"
#include "startup/modStartUp.h"
#include "system/output_file.h"
#include "system/paths.h"

namespace zenqay {
namespace {

constexpr const char* kStep = "command line";
constexpr std::size_t kItemsWithoutStatus = 12;

JobLine ReadItems(const std::vector<Text>& args) {
  return {.connectionString = Trim(args[0]),
          .database = Trim(args[1]),
          .tableId = RoundToInt16(Val(args[2])),
          .syncMethod = RoundToInt16(Val(args[3])),
          .logDirectory = Trim(args[4]),
          .platform = RoundToInt16(Val(args[8]))};
}

Text MethodName(std::int16_t method) {
  if (method == 1) return "full copy";
  return method == kOnlyChanged ? "only changed" : "method " + std::to_string(method);
}

Text PlatformName(std::int16_t platform) {
  if (platform == 1) return "SQL Server";
  return platform == 2 ? "Oracle" : "platform " + std::to_string(platform);
}

bool IsGeneration(const Text& generation) {
  return generation == kGeneration1 || generation == kGeneration3 || generation == kGeneration8;
}

/// What a job would take without complaint and not get far with.
bool CheckMeaning(const modDeclarations& process, const JobLine& line, CheckReport& report) {
  bool serves = true;
  const auto mend = [&](const Text& detail) {
    report.Mend(kStep, detail);
    serves = false;
  };
  if (line.connectionString.empty()) mend("item 1 is blank, it must be the connection string");
  if (line.tableId < 0 || line.tableId > kHighestTableId) {
    mend("item 3 is the table id " + std::to_string(line.tableId) + ", it must be 0 to 127, or 128 for all tables");
  }
  if (!IsGeneration(process.ErpGeneration)) {
    mend("item 11 is the generation \"" + process.ErpGeneration + "\", it must be 1, 3 or 8");
  }
  return serves;
}

void WarnOfItems(const std::vector<Text>& args, const modDeclarations& process, const JobLine& line,
                 CheckReport& report) {
  if (!IsNumeric(args[2])) {
    report.Warn(kStep, "item 3 is no whole number, it is read as table " + std::to_string(line.tableId));
  }
  if (line.syncMethod != 1 && line.syncMethod != kOnlyChanged) {
    report.Warn(kStep, "item 4 is neither 1 nor 2: a job copies nothing");
  }
  if (line.platform != 1 && line.platform != 2) {
    report.Warn(kStep, "item 9 is neither 1 nor 2: the database is not set, and statements are those of SQL Server");
  }
  if (!process.NoStatusComponent && !IsNumeric(args[9])) {
    report.Warn(kStep, "item 10 is no number: the instance is 0");
  }
  if (args.size() > kItemsWithoutStatus) {
    report.Warn(kStep, "there are " + std::to_string(args.size()) +
                           " items: only a line of exactly twelve switches the status component off");
  }
}

}  // namespace

bool CheckLine(modDeclarations& process, const Text& commandLine, JobLine& line, CheckReport& report) {
  const std::vector<Text> args = SplitCommandLine(commandLine);
  try {
    ValidateArguments(process, args);
    line = ReadItems(args);
  } catch (const RuntimeError& error) {
    report.Mend(kStep, CheckReport::ErrorText(error));
    return false;
  }
  const bool serves = CheckMeaning(process, line, report);
  WarnOfItems(args, process, line, report);
  if (!serves) return false;
  const Text table = line.tableId == kAllTables ? "all tables" : "table " + std::to_string(line.tableId);
  report.Ok(kStep, table + ", " + MethodName(line.syncMethod) + ", " + PlatformName(line.platform) + ", generation " +
                       process.ErpGeneration);
  return true;
}

void CheckLogDirectory(const JobLine& line, CheckReport& report) {
  constexpr const char* kLogStep = "log directory";
  // A blank one is the root of drive C.
  const Text shown = line.logDirectory.empty() ? "C:" : line.logDirectory;
  const Text path = NativePath(shown + "\\");
  std::error_code ignored;
  if (!std::filesystem::is_directory(path, ignored)) {
    report.Mend(kLogStep, "there is no directory " + shown);
  } else if (!MayWriteIn(path)) {
    report.Mend(kLogStep, shown + " may not be written");
  } else if (DiskIsFull(path)) {
    report.Mend(kLogStep, "the disk of " + shown + " is full");
  } else if (line.logDirectory.empty()) {
    report.Warn(kLogStep, "item 5 is blank: the logs go to the root directory");
  } else {
    report.Ok(kLogStep, shown);
  }
}

}  // namespace zenqay
