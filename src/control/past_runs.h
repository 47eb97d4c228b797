// What people are told of past runs.
#pragma once

#include "control/history.h"

namespace zenqay {

/// Empty for what has not ended.
Text DurationOf(const Text& started, const Text& ended);

/// The seconds that it took, or has taken so far; nothing for a table whose job was not started.
std::int64_t SecondsOf(const PastRun& run, std::int64_t now);
std::optional<std::int64_t> SecondsOf(const PastTable& table, std::int64_t now);

/// "a table failed" of a run's outcome
Text OutcomeWords(const Text& outcome);

/// The run log of the day on which the table's copy began.
Text RunLogOf(const PastTable& table);

/// The last lines of that log, without passwords. None for one that is no file, or that does not stand in the table's
/// log directory itself.
std::vector<Text> LogTailOf(const PastTable& table);

}  // namespace zenqay
