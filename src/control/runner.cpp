#include "control/runner.h"

#include <algorithm>

#include "base/runtime_error.h"
#include "check/copied_tables.h"
#include "contracts/control_channel.h"

namespace zenqay {
namespace {

using Moment = TableRun::Moment;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds kTick{500};
constexpr int kLooksAtLock = 36;  // one in five seconds of three minutes

bool Runs(const TableRun& run) {
  return run.state == TableState::Beginning || run.state == TableState::Copying;
}

/// The process of a table that runs.
struct Running {
  Running(std::size_t index, const ChildStart& start) : which(index), process(start) {}

  std::size_t which;
  ChildProcess process;
  LineBuffer channel;
  LineBuffer errors;
  Asked asked = Asked::No;
  Moment askedAt;
};

class Runner {
 public:
  Runner(std::vector<TableRun>& runs, const RunnerSettings& settings, SignalWatch& signals,
         const std::vector<RunListener*>& listeners)
      : runs_(runs), settings_(settings), signals_(signals), listeners_(listeners), began_(Clock::now()) {}

  std::optional<int> Run() {
    for (;;) {
      TakeSignal();
      TimeOut();
      StartWhatMay();
      EndWhatWasAskedLongAgo();
      for (RunListener* listener : listeners_) listener->Tick(runs_);
      const bool isOver = running_.empty() &&
                          std::all_of(runs_.begin(), runs_.end(), [](const TableRun& run) { return IsEnd(run.state); });
      if (isOver) return stop_;
      WaitForInput(Descriptors(), static_cast<int>(UntilNextDeed().count()));
      TakeSignal();  // before the ends of jobs that were sent the same signal
      for (const auto& running : running_) Listen(*running);
      Reap();
    }
  }

 private:
  void Tell(std::size_t which) {
    for (RunListener* listener : listeners_) listener->Changed(runs_, which);
  }

  void TakeSignal() {
    const std::optional<int> signal = signals_.TakeStop();
    if (!signal) return;
    const Moment now = Clock::now();
    if (!stop_) {
      stop_ = signal;
      stoppedAt_ = now;
      for (const auto& running : running_) Ask(*running, Asked::BySignal);
      for (std::size_t which = 0; which < runs_.size(); ++which) Skip(which, Asked::BySignal);
    } else if (now - stoppedAt_ > settings_.patience) {
      for (const auto& running : running_) running->process.Ask();
    }
  }

  void Skip(std::size_t which, Asked asked) {
    if (runs_[which].state != TableState::Waiting) return;
    ConcludeSkipped(runs_[which], asked);
    Tell(which);
  }

  static void Ask(Running& running, Asked asked) {
    if (running.asked != Asked::No) return;
    running.asked = asked;
    running.askedAt = Clock::now();
    running.process.Ask();
  }

  bool IsOverdue(const TableRun& run) const {
    return run.task.timeout > Seconds(0) && Clock::now() - began_ >= run.task.timeout;
  }

  void TimeOut() {
    for (std::size_t which = 0; which < runs_.size(); ++which) {
      if (IsOverdue(runs_[which])) Skip(which, Asked::ByTimeout);
    }
    for (const auto& running : running_) {
      if (IsOverdue(runs_[running->which])) Ask(*running, Asked::ByTimeout);
    }
  }

  void EndWhatWasAskedLongAgo() {
    for (const auto& running : running_) {
      const bool isLongAgo = running->asked != Asked::No && Clock::now() - running->askedAt >= settings_.grace;
      if (isLongAgo) running->process.Kill();
    }
  }

  void StartWhatMay() {
    while (const auto next = NextToStart(runs_, settings_.parallel, Clock::now())) Start(*next);
  }

  void Start(std::size_t which) {
    TableRun& run = runs_[which];
    BeginAttempt(run, Clock::now());
    ChildStart start = {.program = settings_.program,
                        .arguments = {"-"},
                        .input = run.task.commandLine + "\n",
                        .environment = {{"ZENQAY_HOME", run.task.home}},
                        .channelVariable = channel::kDescriptorVariable};
    for (const Text& name : settings_.withheld) start.environment.emplace(name, std::nullopt);
    start.environment[channel::kSweepLimitVariable] =
        run.task.sweepLimit.empty() ? std::nullopt : std::optional(run.task.sweepLimit);
    try {
      running_.push_back(std::make_unique<Running>(which, start));
      run.pid = running_.back()->process.pid();
    } catch (const RuntimeError& error) {
      ConcludeUnstarted(run, error.description());
    }
    Tell(which);
  }

  std::vector<int> Descriptors() const {
    std::vector<int> all = {signals_.descriptor()};
    for (const auto& running : running_) {
      all.push_back(running->process.channel());
      all.push_back(running->process.errors());
    }
    return all;
  }

  /// The time until something is to be done without anything being heard, at most a tick.
  Milliseconds UntilNextDeed() const {
    const Moment now = Clock::now();
    Milliseconds shortest = kTick;
    const auto consider = [&](Moment due) {
      const auto left = std::chrono::ceil<Milliseconds>(due - now);
      shortest = std::clamp(left, Milliseconds(0), shortest);
    };
    for (const TableRun& run : runs_) {
      if (run.state == TableState::Waiting && run.notBefore > now) consider(run.notBefore);
      if (!IsEnd(run.state) && run.task.timeout > Seconds(0) && !IsOverdue(run)) consider(began_ + run.task.timeout);
    }
    for (const auto& running : running_) {
      if (running->asked != Asked::No) consider(running->askedAt + settings_.grace);
    }
    return shortest;
  }

  void Listen(Running& running, bool atEnd = false) {
    TableRun& run = runs_[running.which];
    running.process.ReadChannel(running.channel.rest());
    running.process.ReadErrors(running.errors.rest());
    for (const Text& text : running.channel.TakeLines()) {
      const std::optional<ChannelLine> line = ReadChannelLine(text);
      if (line && Hear(run, *line)) Tell(running.which);
    }
    for (const Text& line : running.errors.TakeLines(atEnd)) HearWords(run, line);
  }

  void Reap() {
    std::erase_if(running_, [this](const auto& running) {
      const std::optional<ProcessEnd> end = running->process.Ended();
      if (!end) return false;
      Listen(*running, true);
      Settle(*running, *end);
      return true;
    });
  }

  void Settle(const Running& running, const ProcessEnd& end) {
    TableRun& run = runs_[running.which];
    run.ended = Clock::now();
    Conclude(run, end, running.asked);
    const bool waits = WaitsForDeadSession(run);
    const bool mayTry = waits || (CanHeal(run) && run.attempts <= run.task.retryTimes);
    if (mayTry && running.asked == Asked::No && !stop_) {
      run.words = StateWord(run.state) + (run.words.empty() ? "" : ", " + run.words);
      run.state = TableState::Waiting;
      run.notBefore = run.ended + (waits ? LookAtLockAfter() : Milliseconds(run.task.retryWait));
    }
    Tell(running.which);
  }

  Milliseconds LookAtLockAfter() const { return Milliseconds(settings_.deadSessionWait) / kLooksAtLock; }

  bool WaitsForDeadSession(const TableRun& run) const {
    return run.state == TableState::InUse && run.ended + LookAtLockAfter() < began_ + settings_.deadSessionWait;
  }

  std::vector<TableRun>& runs_;
  const RunnerSettings& settings_;
  SignalWatch& signals_;
  const std::vector<RunListener*>& listeners_;
  const Moment began_;
  std::vector<std::unique_ptr<Running>> running_;
  std::optional<int> stop_;
  Moment stoppedAt_;
};

}  // namespace

std::optional<std::size_t> NextToStart(const std::vector<TableRun>& runs, const std::map<Text, int>& parallel,
                                       Moment now) {
  const auto mayStart = [&](const TableRun& run) {
    if (run.state != TableState::Waiting || run.notBefore > now) return false;
    int taken = 0;
    for (const TableRun& other : runs) {
      if (!Runs(other) || other.task.database != run.task.database) continue;
      if (MustFollow(run.task.table, other.task.table)) return false;
      ++taken;
    }
    return taken < parallel.at(run.task.database);
  };
  const auto found = std::find_if(runs.begin(), runs.end(), mayStart);
  if (found == runs.end()) return std::nullopt;
  return static_cast<std::size_t>(found - runs.begin());
}

std::optional<int> RunTables(std::vector<TableRun>& runs, const RunnerSettings& settings, SignalWatch& signals,
                             const std::vector<RunListener*>& listeners) {
  return Runner(runs, settings, signals, listeners).Run();
}

}  // namespace zenqay
