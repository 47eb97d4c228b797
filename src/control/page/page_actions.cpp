#include "control/page/page_actions.h"

#include <chrono>
#include <sstream>
#include <utility>

#include "control/exit_status.h"

namespace zenqay {

StartedRuns::~StartedRuns() {
  // Longer than zenqayctl waits for its jobs.
  constexpr Seconds kGrace{70};
  constexpr int kTick = 100;
  End();
  const auto until = std::chrono::steady_clock::now() + kGrace;
  while (!runs_.empty() && std::chrono::steady_clock::now() < until) {
    WaitForInput({}, kTick);
    Attend();
  }
}

ActionEnd StartedRuns::StartJob(const Text& job) {
  std::future<ActionEnd> end;
  {
    const std::lock_guard lock(mutex_);
    if (isOver_) return {false, "the page ends"};
    requests_.push_back({job, {}});
    end = requests_.back().end.get_future();
  }
  return end.get();
}

ActionEnd StartedRuns::Unlock(const JobFile& file, const Text& job, const Text& table) {
  std::ostringstream said;
  Surroundings quiet = {.environment = surroundings_.environment,
                        .jobProgram = surroundings_.jobProgram,
                        .historyPath = surroundings_.historyPath,
                        .out = said,
                        .err = said};
  int status = kCouldNotBegin;
  tables_.WithoutLook([&] { status = zenqay::Unlock(file, job, table, false, false, quiet); });
  return {status == kAllComplete, OneLine(said.str())};
}

void StartedRuns::Attend() {
  for (Request& request : TakeRequests()) Answer(request);
  std::erase_if(runs_, [this](const auto& run) { return HasEnded(run.first, *run.second); });
}

void StartedRuns::End() {
  {
    const std::lock_guard lock(mutex_);
    if (isOver_) return;
    isOver_ = true;
  }
  for (Request& request : TakeRequests()) request.end.set_value({false, "the page ends"});
  for (const auto& [job, run] : runs_) run->Ask();
}

std::vector<StartedRuns::Request> StartedRuns::TakeRequests() {
  const std::lock_guard lock(mutex_);
  return std::exchange(requests_, {});
}

void StartedRuns::Answer(Request& request) {
  try {
    request.end.set_value(Started(request.job));
  } catch (...) {
    request.end.set_exception(std::current_exception());
  }
}

ActionEnd StartedRuns::Started(const Text& job) {
  if (runs_.contains(job)) return {false, "this page's run of " + job + " has not ended"};
  runs_[job] =
      std::make_unique<ChildProcess>(ChildStart{.program = program_, .arguments = {"--file", file_, "run", job}});
  return {true, "a run of " + job + " is started"};
}

bool StartedRuns::HasEnded(const Text& job, ChildProcess& run) {
  const auto end = run.Ended();  // in front of reading, which then finds its last words
  Text said;
  Text unheard;
  run.ReadErrors(said);
  run.ReadChannel(unheard);
  if (!said.empty()) surroundings_.err << said << std::flush;
  if (end) surroundings_.err << "zenqayctl: the run of " << job << " " << end->Words() << std::endl;
  return end.has_value();
}

}  // namespace zenqay
