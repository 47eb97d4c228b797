#include "control/past_runs.h"

#include <array>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "base/secrets.h"
#include "base/windows1252.h"
#include "control/exit_status.h"
#include "system/own_process.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kTailLines = 20;
constexpr std::uintmax_t kTailBytes = std::uintmax_t{64} * 1024;

/// Names come from databases, and a directory may hold links.
bool StandsIn(const fs::path& directory, const fs::path& path) {
  std::error_code missing;
  return fs::is_regular_file(path, missing) &&
         fs::canonical(path, missing).parent_path() == fs::canonical(directory, missing);
}

std::vector<Text> LastLines(const fs::path& path) {
  std::error_code missing;
  const std::uintmax_t size = fs::file_size(path, missing);
  std::ifstream file(path, std::ios::binary);
  std::vector<Text> lines;
  const bool isCut = size > kTailBytes;
  if (isCut) file.seekg(-static_cast<std::streamoff>(kTailBytes), std::ios::end);
  for (Text line; std::getline(file, line);) {
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(WithoutSecrets(FromWindows1252(line)));
  }
  if (isCut && lines.size() > 1) lines.erase(lines.begin());  // its start may lie before
  if (lines.size() > kTailLines) lines.erase(lines.begin(), lines.end() - kTailLines);
  return lines;
}

std::int64_t SecondsBetween(const Text& started, const Text& ended, std::int64_t now) {
  return (ended.empty() ? now : SecondsOfUtc(ended)) - SecondsOfUtc(started);
}

}  // namespace

Text DurationOf(const Text& started, const Text& ended) {
  return ended.empty() ? Text() : DurationText(Seconds(SecondsOfUtc(ended) - SecondsOfUtc(started)));
}

std::int64_t SecondsOf(const PastRun& run, std::int64_t now) {
  return SecondsBetween(run.started, run.ended, now);
}

std::optional<std::int64_t> SecondsOf(const PastTable& table, std::int64_t now) {
  if (table.process.pid == 0) return std::nullopt;
  return SecondsBetween(table.started, table.ended, now);
}

Text OutcomeWords(const Text& outcome) {
  const bool isStatus = !outcome.empty() && outcome.find_first_not_of("0123456789") == Text::npos;
  if (!isStatus) return outcome;
  const int status = std::stoi(outcome);
  switch (status) {
    case kAllComplete:
      return "all complete";
    case kTableFailed:
      return "a table failed";
    case kTableInUse:
      return "a table was in use";
    case kCouldNotBegin:
      return "a job could not begin";
    case kTimedOut:
      return "timed out";
    default:
      return status > kStoppedBySignal ? "stopped by signal " + std::to_string(status - kStoppedBySignal) : outcome;
  }
}

Text RunLogOf(const PastTable& table) {
  const std::int64_t started = SecondsOfUtc(table.started);
  const std::time_t local = started + ClockOffsetAt(started);
  std::tm parts{};
  ::gmtime_r(&local, &parts);
  std::array<char, 16> day{};
  std::strftime(day.data(), day.size(), "%Y%m%d", &parts);
  return table.logs + "/" + table.table + "_" + day.data() + ".log";
}

std::vector<Text> LogTailOf(const PastTable& table) {
  const Text log = RunLogOf(table);
  return StandsIn(table.logs, log) ? LastLines(log) : std::vector<Text>{};
}

}  // namespace zenqay
