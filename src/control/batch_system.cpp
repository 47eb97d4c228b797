#include "control/batch_system.h"

#include <algorithm>

#include "base/runtime_error.h"
#include "system/child_process.h"
#include "system/own_process.h"

namespace zenqay {
namespace {

constexpr Seconds kForTaking{60};
constexpr Seconds kForSaying{15};

[[noreturn]] void Raise(const Text& what) {
  throw RuntimeError(static_cast<std::int32_t>(PlatformFault::Automation), "Slurm", what);
}

/// What a task is given of the environment, besides what begins with LC_ or SBATCH_: where programs, libraries and
/// drivers are, and how texts and times are written. Nothing of a batch job that this process may itself be part of.
bool IsHandedOn(const Text& name) {
  constexpr std::string_view kNames[] = {
      "HOME",
      "JAVA_HOME",
      "LANG",
      "LANGUAGE",
      "LD_LIBRARY_PATH",
      "LOGNAME",
      "NLS_LANG",
      "ODBCINI",
      "ODBCSYSINI",
      "ORACLE_HOME",
      "PATH",
      "PGPASSFILE",
      "PGSERVICEFILE",
      "SHELL",
      "SLURM_CONF",
      "SLURM_CLUSTERS",
      "TNS_ADMIN",
      "TZ",
      "USER",
      "ZENQAY_DBSYNC",
  };
  return name.starts_with("LC_") || name.starts_with("SBATCH_") || std::ranges::find(kNames, name) != std::end(kNames);
}

std::map<Text, std::optional<Text>> Withheld() {
  std::map<Text, std::optional<Text>> changes;
  for (const Text& entry : EnvironmentEntries()) {
    const Text name = entry.substr(0, entry.find('='));
    if (!IsHandedOn(name)) changes.emplace(name, std::nullopt);
  }
  return changes;
}

Text Joined(const std::vector<Text>& words) {
  Text list;
  for (const Text& word : words) list += (list.empty() ? "" : ",") + word;
  return list;
}

std::string_view ShortName(std::string_view host) {
  return host.substr(0, host.find('.'));
}

}  // namespace

bool BatchTask::HasEnded() const {
  constexpr std::string_view kEnds[] = {"BOOT_FAIL", "CANCELLED", "COMPLETED", "DEADLINE",      "FAILED",
                                        "NODE_FAIL", "PREEMPTED", "REVOKED",   "OUT_OF_MEMORY", "TIMEOUT"};
  return std::ranges::find(kEnds, state) != std::end(kEnds);
}

Text BatchTask::Words() const {
  Text words = state == "PENDING" ? "queued" : LowerCased(state);
  if (!node.empty()) words += " on " + node;
  return reason.empty() ? words : words + ": " + reason;
}

Text BatchSystem::Submit(const Text& script, const std::vector<Text>& options) const {
  std::vector<Text> arguments = options;
  arguments.emplace_back("--parsable");
  const Text said = Run("sbatch", arguments, script, kForTaking);
  const Text last = LastLine(said);
  const Text number = last.substr(0, last.find(';'));  // the name of a cluster may stand behind it
  if (!number.empty() && number.find_first_not_of("0123456789") == Text::npos) return number;
  Raise("sbatch gave no number but \"" + last + "\"");
}

std::map<Text, BatchTasks> BatchSystem::TasksOf(const std::vector<Text>& names) const {
  const Text said = Run("squeue",
                        {"--all", "--me", "--noheader", "--array", "--states=all", "--name=" + Joined(names),
                         "--format=%j|%k|%K|%T|%N|%r"},
                        "", kForSaying);
  std::map<Text, BatchTasks> tasks;
  for (const std::string_view line : Split(said, "\n")) {
    if (line.empty()) continue;
    const std::vector<std::string_view> fields = Split(line, "|");
    constexpr std::size_t kFields = 6;
    if (fields.size() != kFields) Raise("squeue said what cannot be read: \"" + Text(line) + "\"");
    tasks[Text(fields[0])][Text(fields[1]) + "_" + Text(fields[2])] = {
        .state = Text(fields[3]), .node = Text(fields[4]), .reason = fields[5] == "None" ? "" : Text(fields[5])};
  }
  return tasks;
}

Text BatchSystem::NodeOf(const Text& host) const {
  const Text said = Run("sinfo", {"--all", "--noheader", "--Node", "--format=%n %N"}, "", kForSaying);
  for (const std::string_view line : Split(said, "\n")) {
    const std::vector<std::string_view> fields = Split(line, " ");
    if (fields.size() == 2 && ShortName(fields[0]) == ShortName(host)) return Text(fields[1]);
  }
  return "";
}

Text BatchSystem::Run(const Text& program, const std::vector<Text>& arguments, const Text& input,
                      Seconds atMost) const {
  const Text path = environment_.Value("PATH");
  const Text found = FindProgram(program, path.empty() ? "/usr/bin:/bin" : path);
  if (found.empty()) Raise("there is no " + program + " on this machine");
  const ProgramRun run =
      RunProgram({.program = found, .arguments = arguments, .input = input, .environment = Withheld()}, atMost);
  if (run.isOutOfTime) Raise(program + " did not answer in " + std::to_string(atMost.count()) + " seconds");
  if (run.end == ProcessEnd{}) return run.output;
  const Text last = LastLine(run.errors);
  Raise(last.empty() ? program + " " + run.end.Words() : last);
}

Text LastLine(const Text& text) {
  Text last;
  for (const std::string_view line : Split(text, "\n")) {
    if (!Trim(line).empty()) last = Trim(line);
  }
  return last;
}

Text ShellWord(const Text& text) {
  return "'" + Replaced(text, "'", "'\\''") + "'";
}

}  // namespace zenqay
