// The process's entry: reads the command line, prepares the process and hands one job over.
//
// The command line is one text, its items separated by "{}":
//   0 connection string   1 database or schema   2 table id (128: all tables)   3 sync method (1 full, 2 only changed)
//   4 log directory       5 business component   6 status handle                7 free text
//   8 platform (1 SQL Server, 2 Oracle)          9 instance number              10 generation ("1", "3", "8")
// A twelfth item, and none behind it, switches the status component off.
#pragma once

#include <vector>

#include "process/modDeclarations.h"

namespace zenqay {

/// The table id that stands for all tables of the generation's group.
inline constexpr std::int16_t kAllTables = 128;

/// Runs the process from its command line to its end. A failure is recorded in the start-up log; what leaves this
/// operation is a failure that could not be recorded.
void RunProcess(modDeclarations& process, const Text& commandLine);

/// Checks the items and fills the settings. Raises 9999 for fewer than seven items, 9 for an item that is missing
/// behind them, 13 for a sync method or platform that is no number, 2021004 for a status handle that is none.
void ValidateArguments(modDeclarations& process, const std::vector<Text>& args);

/// The items of the command line: split at every "{}", empty items kept; an empty line has none.
std::vector<Text> SplitCommandLine(const Text& commandLine);

}  // namespace zenqay
