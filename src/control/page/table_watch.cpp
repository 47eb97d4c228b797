#include "control/page/table_watch.h"

#include <sstream>

#include "base/secrets.h"
#include "control/exit_status.h"

namespace zenqay {
namespace {

constexpr Seconds kStaysFresh{10};
constexpr Seconds kPatience{3};

void LookAtJob(TableOverview& overview, const JobSettings& job, History& history, const OpenTasks& tasks,
               const Environment& environment) {
  std::ostringstream warnings;  // the state of the lock says them
  try {
    for (TableStatus& status : StatusOf(overview.file, job, history, tasks, environment, warnings)) {
      overview.tables.push_back(std::move(status));
    }
  } catch (const std::exception& fault) {
    overview.unreached[job.name] = WithoutSecrets(fault.what());
  }
}

}  // namespace

TableWatch::TableWatch(JobFile file, Environment environment, Text historyPath)
    : environment_(std::move(environment)), historyPath_(std::move(historyPath)) {
  auto nothingYet = std::make_shared<TableOverview>();
  nothingYet->file = std::move(file);
  seen_ = nothingYet;
  thread_ = std::thread([this] { Watch(); });
}

TableWatch::~TableWatch() {
  {
    const std::lock_guard lock(mutex_);
    isOver_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

std::shared_ptr<const TableOverview> TableWatch::Tables() {
  std::unique_lock lock(mutex_);
  const auto isFresh = [&] { return seen_->readAt != 0 && std::chrono::steady_clock::now() - seenAt_ < kStaysFresh; };
  if (!isFresh()) {
    isAsked_ = true;
    changed_.notify_all();
    changed_.wait_for(lock, kPatience, [&] { return isFresh() || isOver_; });
  }
  return seen_;
}

void TableWatch::WithoutLook(const std::function<void()>& deed) {
  const std::lock_guard lock(looking_);
  deed();
}

void TableWatch::Watch() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [&] { return isAsked_ || isOver_; });
    if (isOver_) return;
    isAsked_ = false;
    lock.unlock();
    std::shared_ptr<const TableOverview> overview = Look();
    lock.lock();
    seen_ = std::move(overview);
    seenAt_ = std::chrono::steady_clock::now();
    changed_.notify_all();
  }
}

bool TableWatch::IsOver() {
  const std::lock_guard lock(mutex_);
  return isOver_;
}

std::shared_ptr<const TableOverview> TableWatch::Look() {
  const std::lock_guard lock(looking_);
  auto overview = std::make_shared<TableOverview>();
  overview->file = seen_->file;  // this thread alone changes it
  try {
    overview->file = ReadJobFile(overview->file.path);
  } catch (const std::exception& fault) {
    overview->fileFault = fault.what();
  }
  try {
    History history(historyPath_);
    history.CloseLost();
    std::ostringstream unknown;  // how submitted tasks go; what the history has is shown then
    const OpenTasks tasks = CollectOutcomes(history, BatchSystem(environment_), unknown);
    for (const auto& [name, job] : overview->file.jobs) {
      if (IsOver()) break;  // a database that is silent takes its time
      LookAtJob(*overview, job, history, tasks, environment_);
    }
  } catch (const std::exception& fault) {
    for (const auto& [name, job] : overview->file.jobs) overview->unreached[name] = fault.what();
  }
  overview->readAt = UtcNow();
  return overview;
}

}  // namespace zenqay
