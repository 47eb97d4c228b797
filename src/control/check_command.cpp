#include <algorithm>
#include <sstream>

#include "base/secrets.h"
#include "control/commands.h"
#include "control/exit_status.h"
#include "control/job_command.h"
#include "control/local_tables.h"
#include "control/run_json.h"
#include "system/child_process.h"
#include "system/own_process.h"

namespace zenqay {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::int32_t kAllTables = 128;
constexpr std::size_t kStateWidth = 10;

/// The table ids that are looked at one by one; all at once where the job takes all, or the database does not say.
std::vector<std::int32_t> IdsOf(const JobFile& file, const JobSettings& job, const DatabaseAccess& access) {
  if (job.tables.empty()) return {kAllTables};
  const Text& generation = file.ErpOf(job).generation;
  std::vector<LocalTable> known;
  try {
    known = LocalTables(file.DatabaseOf(job), access, Use::Read).OfGeneration(generation);
  } catch (const RuntimeError&) {
    return {kAllTables};  // the check says why
  }
  std::vector<std::int32_t> ids;
  for (const LocalTable& table : ChooseTables(job, generation, known, {})) ids.push_back(table.id);
  return ids;
}

/// A check runs in a process of its own: a Java machine can be had once in a process, and not given back.
CopyRun CheckOne(const Text& home, const Text& line, Surroundings& surroundings) {
  return RunInCopy([&](int output) {
    std::ostringstream said;
    const bool canRun = surroundings.check(home, line, said);
    return WriteWhole(output, said.str()) && canRun ? 0 : 1;
  });
}

/// The lines of a check but the last, which sums up, without those that another table's check has said.
std::vector<Text> NewLines(const Text& output, const std::vector<Text>& before) {
  std::vector<Text> lines;
  std::istringstream text(output);
  for (Text line; std::getline(text, line);) {
    if (std::find(before.begin(), before.end(), line) == before.end()) lines.push_back(line);
  }
  if (!lines.empty() && lines.back().ends_with(".")) lines.pop_back();
  return lines;
}

struct JobCheck {
  std::vector<Text> lines;
  bool canRun = true;
};

JobCheck CheckJob(const JobFile& file, const JobSettings& job, Surroundings& surroundings) {
  const DatabaseAccess access = AccessTo(file, file.DatabaseOf(job), surroundings.environment);
  JobCheck check;
  for (const std::int32_t id : IdsOf(file, job, access)) {
    const Text line = JobLineOf(file, job, access.connection, id, job.method);
    const CopyRun run = CheckOne(file.ErpOf(job).home, line, surroundings);
    for (const Text& said : NewLines(Replaced(run.output, access.password, "***"), check.lines)) {
      check.lines.push_back(said);
    }
    if (run.end.signal != 0) check.lines.push_back("MEND      the check " + run.end.Words());
    check.canRun = check.canRun && run.end == ProcessEnd{};
  }
  return check;
}

Json LineJson(const Text& line) {
  return {{"state", Trim(line.substr(0, kStateWidth))}, {"text", line.substr(std::min(kStateWidth, line.size()))}};
}

}  // namespace

int CheckJobs(const JobFile& file, const std::vector<Text>& jobs, bool json, Surroundings& surroundings) {
  std::vector<Text> names = jobs;
  if (names.empty()) {
    for (const auto& [name, job] : file.jobs) names.push_back(name);
  }
  Json list = Json::array();
  bool allCanRun = true;
  for (const Text& name : names) {
    const JobCheck check = CheckJob(file, file.Job(name), surroundings);
    allCanRun = allCanRun && check.canRun;
    if (json) {
      Json lines = Json::array();
      for (const Text& line : check.lines) lines.push_back(LineJson(line));
      list.push_back({{"job", name}, {"can_run", check.canRun}, {"lines", std::move(lines)}});
      continue;
    }
    surroundings.out << name << ":\n";
    for (const Text& line : check.lines) surroundings.out << "  " << line << '\n';
    surroundings.out << (check.canRun ? "  It can run.\n" : "  It cannot run before the lines with MEND are seen to.\n")
                     << std::flush;
  }
  if (json) surroundings.out << JsonText(list) << std::endl;
  return allCanRun ? kAllComplete : kCouldNotBegin;
}

}  // namespace zenqay
