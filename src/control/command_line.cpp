#include "control/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "base/secrets.h"
#include "control/exit_status.h"
#include "control/nearest_word.h"

namespace zenqay {
namespace {

/// What the arguments say; the fields of other commands keep their meaning for nothing given.
struct Arguments {
  Text file;
  std::vector<Text> jobs;
  Text job;
  Text table;
  Text directory = ".";
  Text shell;
  Text unitDirectory = "/etc/systemd/system";
  RunOptions run;
  PlanOptions plan;
  SubmitOptions submit;
  Text partition;
  bool full = false;
  bool changed = false;
  bool force = false;
  bool json = false;
  HistoryOptions history;
  std::int64_t pastRun = 0;
  ServeOptions serve;
  AnonymiseOptions anonymise;
};

/// The commands and options; what they stand for is told by their pages.
class CommandLine {
 public:
  explicit CommandLine(Arguments& a) {
    app.require_subcommand(1);
    app.set_version_flag("--version", "zenqayctl " ZENQAY_VERSION);
    app.add_option("--file", a.file);

    CLI::App* run = Command("run", a);
    run->add_option("JOB", a.run.jobs)->required();
    AddChoice(run, a);
    run->add_option("--outcome", a.run.outcome);

    CLI::App* plan = Command("plan", a);
    plan->add_option("JOB", a.run.jobs)->required();
    AddChoice(plan, a);
    plan->add_option("--rows", a.plan.examples)->check(CLI::NonNegativeNumber);
    plan->add_option("--keep", a.plan.keep);

    CLI::App* submit = Command("submit", a);
    CLI::Option* jobs = submit->add_option("JOB", a.run.jobs);
    submit->add_flag("--all", a.submit.all)->excludes(jobs);
    AddChoice(submit, a);
    submit->add_flag("--wait", a.submit.waits);
    submit->add_option("--partition", a.partition);

    Command("check", a)->add_option("JOB", a.jobs);
    Command("status", a)->add_option("JOB", a.jobs);

    CLI::App* unlock = Command("unlock", a);
    unlock->add_option("JOB", a.job)->required();
    unlock->add_option("TABLE", a.table)->required();
    unlock->add_flag("--force", a.force);

    CLI::App* history = Command("history", a);
    history->add_option("RUN", a.pastRun)->check(CLI::PositiveNumber);
    history->add_option("--limit", a.history.limit)->check(CLI::PositiveNumber);

    CLI::App* serve = Command("serve", a);
    serve->add_option("--listen", a.serve.listen);
    serve->add_option("--host", a.serve.hosts)->expected(1)->take_all();
    serve->add_option("--token-file", a.serve.tokenFile);
    serve->add_flag("--allow-actions", a.serve.allowActions);

    CLI::App* anonymise = Command("anonymise", a);
    anonymise->add_option("TRACE", a.anonymise.trace)->required();
    anonymise->add_option("--scratch", a.anonymise.scratch);
    anonymise->add_option("--out", a.anonymise.directory)->required();

    Command("init", a)->add_option("DIRECTORY", a.directory);
    const std::vector<Text> shells = {"bash", "zsh", "jobs"};
    Command("completion", a)->add_option("SHELL", a.shell)->required()->check(CLI::IsMember(shells));

    CLI::App* systemd = Command("systemd", a);
    systemd->add_option("JOB", a.job)->required();
    systemd->add_option("--directory", a.unitDirectory);
  }

  CLI::App app;

 private:
  CLI::App* Command(const char* name, Arguments& a) {
    CLI::App* command = app.add_subcommand(name);
    command->fallthrough();
    command->add_flag("--json", a.json);
    return command;
  }

  /// Which tables of the jobs are copied, and how.
  static void AddChoice(CLI::App* command, Arguments& a) {
    command->add_option("--table", a.run.tables)->expected(1)->take_all();
    CLI::Option* full = command->add_flag("--full", a.full);
    command->add_flag("--changed", a.changed)->excludes(full);
    command->add_flag("--allow-sweep", a.run.allowSweep);
  }
};

Text CommandOf(const CLI::App& app) {
  const auto commands = app.get_subcommands();
  return commands.empty() ? Text() : commands.front()->get_name();
}

JobFile FileOf(const Arguments& a, const Surroundings& surroundings) {
  return ReadJobFile(FindJobFile(a.file, surroundings.environment.Value("ZENQAY_FILE")));
}

Text Joined(const std::vector<Text>& words) {
  Text line;
  for (const Text& word : words) line += (line.empty() ? "" : " ") + word;
  return line;
}

/// For the shell, at whose prompt nothing but names must stand.
int WriteJobNames(const Arguments& a, Surroundings& surroundings) {
  try {
    for (const auto& [name, job] : FileOf(a, surroundings).jobs) surroundings.out << name << '\n';
  } catch (const WrongUsage&) {
    return kWrongUsage;
  }
  return kAllComplete;
}

int Dispatch(const Text& command, Arguments& a, Surroundings& surroundings) {
  if (command == "history") {
    a.history.json = a.json;
    if (a.pastRun > 0) a.history.run = a.pastRun;
    return ShowHistory(a.history, surroundings);
  }
  if (command == "anonymise") {
    a.anonymise.json = a.json;
    return Anonymise(a.anonymise, surroundings);
  }
  if (command == "init") return MakeFirstJob(a.directory, a.json, surroundings);
  if (command == "completion") {
    return a.shell == "jobs" ? WriteJobNames(a, surroundings) : WriteCompletion(a.shell, surroundings);
  }
  const JobFile file = FileOf(a, surroundings);
  if (command == "status") return ShowStatus(file, a.jobs, a.json, surroundings);
  if (command == "unlock") return Unlock(file, a.job, a.table, a.force, a.json, surroundings);
  if (command == "systemd") return WriteDropIns(file, a.job, a.unitDirectory, a.json, surroundings);
  if (command == "check") return CheckJobs(file, a.jobs, a.json, surroundings);
  if (command == "serve") {
    a.serve.json = a.json;
    return Serve(file, a.serve, surroundings);
  }
  if (a.full) a.run.method = Method::Full;
  if (a.changed) a.run.method = Method::OnlyChanged;
  a.run.json = a.json;
  if (command == "run") return RunJobs(file, a.run, surroundings);
  if (command == "plan") {
    a.plan.run = a.run;
    return PlanJobs(file, a.plan, surroundings);
  }
  a.submit.run = a.run;
  if (!a.partition.empty()) a.submit.options.insert(a.submit.options.begin(), "--partition=" + a.partition);
  return SubmitJobs(file, a.submit, surroundings);
}

/// What stands behind "--" of a submission is for the batch system.
std::vector<Text> TakeBatchOptions(std::vector<Text>& arguments) {
  const auto end = std::ranges::find(arguments, "--");
  if (end == arguments.end() || std::find(arguments.begin(), end, "submit") == end) return {};
  std::vector<Text> options(end + 1, arguments.end());
  arguments.erase(end, arguments.end());
  return options;
}

/// What is wrong with the arguments. The library says of a command that there is not, only that one is missing.
Text FaultOf(const CLI::App& app, const CLI::ParseError& fault) {
  const std::vector<Text> unread = app.get_subcommands().empty() ? app.remaining() : std::vector<Text>();
  const auto word = std::ranges::find_if(unread, [](const Text& one) { return !one.starts_with('-'); });
  if (word == unread.end()) return fault.what();
  std::vector<Text> commands;
  for (const CLI::App* command : app.get_subcommands({})) commands.push_back(command->get_name());
  return "there is no command \"" + *word + "\"" + NearestWordHint(*word, commands);
}

int Refuse(const Text& what, Surroundings& surroundings) {
  surroundings.err << "zenqayctl: " << Replaced(what, "\n", "\nzenqayctl: ") << std::endl;
  return kWrongUsage;
}

}  // namespace

int RunZenqayctl(const std::vector<Text>& arguments, Surroundings& surroundings) {
  Arguments a;
  CommandLine line(a);
  a.run.commandWords = Joined(arguments);
  std::vector<Text> own = arguments;
  a.submit.options = TakeBatchOptions(own);
  try {
    line.app.parse(std::vector<Text>(own.rbegin(), own.rend()));
    return Dispatch(CommandOf(line.app), a, surroundings);
  } catch (const CLI::CallForHelp&) {
    surroundings.out << HelpOf(CommandOf(line.app)) << std::flush;
    return kAllComplete;
  } catch (const CLI::CallForVersion& version) {
    surroundings.out << version.what() << std::endl;
    return kAllComplete;
  } catch (const CLI::ParseError& fault) {
    const Text command = CommandOf(line.app);
    return Refuse(FaultOf(line.app, fault) + " (zenqayctl " + command + (command.empty() ? "" : " ") + "--help)",
                  surroundings);
  } catch (const WrongUsage& fault) {
    return Refuse(fault.description(), surroundings);
  } catch (const std::exception& fault) {
    surroundings.err << "zenqayctl: " << WithoutSecrets(fault.what()) << std::endl;
    return kCouldNotBegin;
  }
}

std::map<Text, std::vector<Text>> CommandsAndOptions() {
  Arguments a;
  CommandLine line(a);
  std::map<Text, std::vector<Text>> all;
  for (const CLI::App* command : line.app.get_subcommands({})) {
    std::vector<Text>& options = all[command->get_name()];
    for (const CLI::Option* option : command->get_options()) {
      const Text name = option->get_name();
      if (name.find("--help") == Text::npos) options.push_back(name);
    }
  }
  return all;
}

}  // namespace zenqay
