#include <algorithm>
#include <ctime>
#include <filesystem>

#include "control/commands.h"
#include "control/exit_status.h"
#include "control/job_arrays.h"
#include "control/run_json.h"
#include "control/run_plan.h"
#include "control/run_views.h"
#include "control/submissions.h"
#include "system/output_file.h"
#include "system/private_directory.h"

namespace zenqay {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::chrono::milliseconds kLookAgain{2000};

bool ChoosesNodes(const Text& option) {
  return std::ranges::any_of(
      std::initializer_list<std::string_view>{"--exclude=", "--nodelist=", "--nodefile=", "-x", "-w"},
      [&](std::string_view one) { return option.starts_with(one); });
}

/// The directory of the outcomes, which this user must be able to write.
void RequireShared(const BatchSettings& batch) {
  if (batch.shared.empty()) {
    throw WrongUsage(batch.place +
                     ": [batch] lacks \"shared\": the directory, on a disk that all nodes share, in which tasks leave "
                     "what became of them");
  }
  std::error_code ignored;
  const Text what = batch.place + ": the shared directory " + batch.shared;
  if (!std::filesystem::is_directory(batch.shared, ignored)) throw WrongUsage(what + " is missing");
  if (!MayWriteIn(batch.shared)) throw WrongUsage(what + " cannot be written");
}

void RequireBatchOptions(const std::vector<Text>& options) {
  for (const Text& option : options) {
    if (!IsBatchOption(option)) {
      throw WrongUsage("behind --: \"" + option + "\" is no option of sbatch; write a value behind =: --mem=2G");
    }
    if (IsAgainstSubmission(option)) {
      throw WrongUsage("behind --: \"" + option + "\": arrays, scripts and waiting are zenqayctl submit's own");
    }
  }
}

/// A task has an environment of its own, which a password would have to be handed over for.
void RequireNoVariables(const JobFile& file, const std::vector<Text>& jobs) {
  for (const Text& name : jobs) {
    const DatabaseSettings& database = file.DatabaseOf(file.Job(name));
    if (!database.password || database.password->kind != PasswordSource::Kind::Environment) continue;
    throw WrongUsage(database.password->place + ": the password of [database." + database.name +
                     "] is in the environment, which is not handed to the batch system: write credential or file");
  }
}

/// The signal that asks to stop, as soon as it comes. The end of a command that was run wakes this too.
std::optional<int> SignalWithin(SignalWatch& signals, std::chrono::milliseconds span) {
  using Clock = std::chrono::steady_clock;
  const auto until = Clock::now() + span;
  for (;;) {
    if (const std::optional<int> signal = signals.TakeStop()) return signal;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now());
    if (left.count() <= 0) return std::nullopt;
    WaitForInput({signals.descriptor()}, static_cast<int>(left.count()));
  }
}

class Submission {
 public:
  Submission(const JobFile& file, const SubmitOptions& options, Surroundings& surroundings)
      : file_(file),
        options_(options),
        surroundings_(surroundings),
        plan_(file, options.run, surroundings),
        arrays_(JobArraysOf(plan_.runs)),
        batch_(surroundings.environment),
        node_(NodeOfThisMachine()),
        history_(surroundings.historyPath) {
    history_.CloseLost();
    CollectOutcomes(history_, batch_, surroundings.err);
    history_.Forget(file.keepHistory);
  }

  int Submit() {
    directory_ = MakeLastingDirectory(file_.batch.shared + "/zenqay-");
    Begin();
    for (std::size_t index = 0; index < arrays_.size(); ++index) SubmitArray(index);
    const bool isAnySubmitted =
        std::ranges::any_of(arrays_, [](const JobArray& array) { return !array.number.empty(); });
    if (!isAnySubmitted) EndUnsubmitted(history_, run_, directory_, kCouldNotBegin);
    if (isAnySubmitted) SubmitCollector();
    if (options_.waits) return Wait();
    const bool isWhole = std::ranges::none_of(plan_.runs, [](const TableRun& run) { return IsEnd(run.state); });
    Tell();
    return isWhole ? kAllComplete : kCouldNotBegin;
  }

 private:
  Text NodeOfThisMachine() const {
    const Text& named = file_.batch.node;
    const Text host = OwnIdentity().host;
    const Text node = named.empty() ? batch_.NodeOf(host) : named;
    if (!node.empty()) return node;
    for (const JobArray& array : arrays_) {
      const DatabaseSettings& database = file_.databases.at(array.database);
      if (!database.isEmbedded) continue;
      throw WrongUsage(database.place + ": [database." + database.name + "] is a file of this machine, " + host +
                       ", which is no node of the batch system (\"node\" in [batch] names it, where it has another "
                       "name)");
    }
    return "";
  }

  /// Everything is noted before the batch system gets any of it, so that nothing it has is lost with this process.
  void Begin() {
    history_.Together([&] {
      run_ = history_.BeginRun(options_.run.commandWords, OwnIdentity());
      history_.NoteBatch(run_, directory_);
      for (const TableRun& run : plan_.runs) {
        rows_.push_back(history_.BeginTable(run_, run));
        if (IsEnd(run.state)) history_.UpdateTable(rows_.back(), run);
      }
      for (std::size_t index = 0; index < arrays_.size(); ++index) {
        for (std::size_t task = 0; task < arrays_[index].tasks.size(); ++task) {
          const Text name = std::to_string(index) + "_" + std::to_string(task);
          for (const std::size_t which : arrays_[index].tasks[task]) history_.NoteTask(rows_[which], name);
        }
      }
    });
  }

  void SubmitArray(std::size_t index) {
    JobArray& array = arrays_[index];
    const DatabaseSettings& database = file_.databases.at(array.database);
    const Text number = std::to_string(index);
    std::vector<Text> options = CommonOptions(number);
    options.push_back("--array=0-" + std::to_string(array.tasks.size() - 1) + "%" + std::to_string(database.parallel));
    options.push_back("--output=" + Replaced(directory_, "%", "%%") + "/" + number + "_%a.log");
    if (database.isEmbedded) options.push_back("--nodelist=" + node_);
    try {
      array.number = batch_.Submit(ScriptOf(array, plan_.runs, CommandOf(index)), options);
      history_.Together([&] {
        for (const ArrayTask& task : array.tasks) {
          for (const std::size_t which : task) history_.NoteQueued(rows_[which]);
        }
      });
    } catch (const RuntimeError& error) {
      history_.Together([&] {
        for (const ArrayTask& task : array.tasks) {
          for (const std::size_t which : task) {
            ConcludeUnstarted(plan_.runs[which], "it is not handed to the batch system: " + error.description());
            history_.UpdateTable(rows_[which], plan_.runs[which]);
          }
        }
      });
    }
  }

  /// The first of an option counts the least: what is given on the command line comes behind the job file's, and what
  /// a submission cannot do without last.
  std::vector<Text> CommonOptions(const Text& comment) const {
    std::vector<Text> options = {"--requeue"};
    options.insert(options.end(), file_.batch.options.begin(), file_.batch.options.end());
    options.insert(options.end(), options_.options.begin(), options_.options.end());
    for (const Text& own :
         {Text("--job-name=") + Name(), "--comment=" + comment, Text("--open-mode=append"), Text("--chdir=/")}) {
      options.push_back(own);
    }
    return options;
  }

  /// What a task of the array calls.
  Text CommandOf(std::size_t index) const {
    Text command = ShellWord(surroundings_.ctlProgram) + " --file " + ShellWord(file_.path) + " run";
    if (options_.run.method) command += *options_.run.method == Method::Full ? " --full" : " --changed";
    if (options_.run.allowSweep) command += " --allow-sweep";
    return command + " --outcome " + ShellWord(directory_ + "/" + std::to_string(index) + "_") +
           "$SLURM_ARRAY_TASK_ID.json";
  }

  /// A look at the history, on the machine that has it, once nothing of the submission runs any more: every look
  /// collects.
  void SubmitCollector() {
    if (node_.empty()) {
      surroundings_.err << "zenqayctl: this machine is no node of the batch system: what becomes of the tasks comes "
                           "into the history with the next zenqayctl status or history here"
                        << std::endl;
      return;
    }
    const Text state = std::filesystem::path(surroundings_.historyPath).parent_path().parent_path().string();
    const Text script = "#!/bin/sh\nexport XDG_STATE_HOME=" + ShellWord(state) + "\nexec " +
                        ShellWord(surroundings_.ctlProgram) + " history --limit 1\n";
    std::vector<Text> options = CommonOptions("collector");
    std::erase_if(options, ChoosesNodes);  // it has its own
    Text dependency = "--dependency=afterany";
    for (const JobArray& array : arrays_) dependency += array.number.empty() ? "" : ":" + array.number;
    for (const Text& own : {dependency, "--nodelist=" + node_, Text("--output=/dev/null")}) options.push_back(own);
    try {
      collector_ = batch_.Submit(script, options);
    } catch (const RuntimeError& error) {
      surroundings_.err << "zenqayctl: the job that collects the outcomes is not handed over: " << error.description()
                        << "; the next zenqayctl status or history here collects them" << std::endl;
    }
  }

  void Tell() const {
    std::size_t tables = 0;
    std::size_t tasks = 0;
    Json list = Json::array();
    for (const JobArray& array : arrays_) {
      if (array.number.empty()) continue;
      for (const ArrayTask& task : array.tasks) tables += task.size();
      tasks += array.tasks.size();
      list.push_back(
          {{"database", array.database}, {"array", std::stoll(array.number)}, {"tasks", array.tasks.size()}});
    }
    const Text name = Name();
    if (options_.run.json) {
      Json json = {{"run", run_}, {"name", name}, {"tables", tables}, {"tasks", tasks}, {"arrays", std::move(list)}};
      json["collector"] = collector_.empty() ? Json(nullptr) : Json(std::stoll(collector_));
      json["refused"] = Json::array();
      for (const TableRun& run : plan_.runs) {
        if (IsEnd(run.state)) json["refused"].push_back(TableJson(run));
      }
      surroundings_.out << JsonText(json) << std::endl;
      return;
    }
    for (const TableRun& run : plan_.runs) {
      if (IsEnd(run.state)) {
        surroundings_.out << TitleOf(run, HaveSeveralJobs(plan_.runs)) << ": " << StateWord(run.state) << ": "
                          << run.words << '\n';
      }
    }
    surroundings_.out << "run " << run_ << ": " << tables << " tables in " << tasks << " tasks of " << list.size()
                      << " arrays are queued";
    if (tasks > 0) surroundings_.out << "; zenqayctl status says how they go, scancel --name=" << name << " ends them";
    surroundings_.out << std::endl;
  }

  int Wait() {
    SignalWatch signals;
    RunView view(surroundings_.out, surroundings_.terminal, options_.run.json);
    view.Begin(plan_.runs);
    for (;;) {
      CollectOutcomes(history_, batch_, surroundings_.err);
      TakeIn(view);
      view.Tick(plan_.runs);
      const std::optional<PastRun> run = history_.Run(run_);
      if (run && !run->ended.empty()) {
        const int status = std::stoi(run->outcome);
        view.End(plan_.runs, status);
        return status;
      }
      const std::optional<int> signal = SignalWithin(signals, kLookAgain);
      if (!signal) continue;
      surroundings_.err << "zenqayctl: the tasks go on; scancel --name=" << Name() << " ends them" << std::endl;
      return kStoppedBySignal + *signal;
    }
  }

  /// By which the batch system has all jobs of the submission.
  Text Name() const { return std::filesystem::path(directory_).filename().string(); }

  /// What the history knows of the tables now.
  void TakeIn(RunView& view) {
    const std::vector<PastTable> tables = history_.TablesOf(run_);
    for (std::size_t which = 0; which < tables.size() && which < plan_.runs.size(); ++which) {
      TableRun& run = plan_.runs[which];
      const PastTable& past = tables[which];
      const TableState state = StateOfWord(past.outcome).value_or(TableState::Waiting);
      if (state == run.state && past.attempts == run.attempts) continue;
      run.state = state;
      run.attempts = past.attempts;
      run.counts = past.counts;
      run.words = past.words;
      run.task.method = MethodOfWord(past.method);
      run.failures = history_.FailuresOf(past.id);
      const std::int64_t end = past.ended.empty() ? UtcNow() : SecondsOfUtc(past.ended);
      run.ended = TableRun::Moment::clock::now();
      run.started = run.ended - Seconds(end - SecondsOfUtc(past.started));
      view.Changed(plan_.runs, which);
    }
  }

  const JobFile& file_;
  const SubmitOptions& options_;
  Surroundings& surroundings_;
  RunPlan plan_;
  std::vector<JobArray> arrays_;
  BatchSystem batch_;
  Text node_;
  History history_;
  Text directory_;
  std::int64_t run_ = 0;
  std::vector<std::int64_t> rows_;  // of the history, one for each table of the plan
  Text collector_;
};

}  // namespace

int SubmitJobs(const JobFile& file, SubmitOptions options, Surroundings& surroundings) {
  if (options.all) {
    for (const auto& [name, job] : file.jobs) options.run.jobs.push_back(name);
  }
  if (options.run.jobs.empty()) throw WrongUsage("name the jobs to submit, or --all (zenqayctl submit --help)");
  RequireBatchOptions(options.options);
  RequireShared(file.batch);
  RequireNoVariables(file, options.run.jobs);
  return Submission(file, options, surroundings).Submit();
}

}  // namespace zenqay
