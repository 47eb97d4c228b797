// A job that is disturbed at one step of what it says to the outside.
//
// Stands in front of the real database, components and log file of a process, counts what goes through, and does at a
// chosen step what the test plans: fail, or end the process.
//
//     Disturbance disturbance;
//     disturbance.Plan(17, When::Before, [] { throw RuntimeError(PlatformFault::DiskFull); });
//     DisturbedDatabase database(databases, disturbance);
#pragma once

#include <functional>
#include <map>
#include <vector>

#include "contracts/connection.h"
#include "contracts/log_file.h"

namespace zenqay {

/// Before the step is done, or behind it, when nobody has heard yet that it was done.
enum class When { Before, Behind };

/// One thing that a job says to the outside: a statement ("UPDATE SITE …", or "open", "database", "close" of the
/// connection), a call ("create CLASS", "CLASS.operation", "CLASS.operation>operation" of what an operation gave), or
/// a step of a log record ("open PATH", "line TEXT", "close").
struct Step {
  enum class Kind { Statement, Call, Log };

  Kind kind;
  Text text;
};

class Disturbance {
 public:
  /// Does the deed at the step of that index, counted from 0. It throws, or does not return.
  void Plan(std::size_t step, When when, std::function<void()> deed) { plans_[step] = {when, std::move(deed)}; }

  /// Is told behind each step that was done.
  std::function<void(std::size_t step)> observer = [](std::size_t) {};

  const std::vector<Step>& steps() const { return steps_; }

  template <typename Work>
  auto Pass(Step::Kind kind, const Text& text, Work work) {
    const std::size_t index = steps_.size();
    steps_.push_back({kind, text});
    Disturb(index, When::Before);
    auto result = work();
    Disturb(index, When::Behind);
    observer(index);
    return result;
  }

 private:
  struct Planned {
    When when;
    std::function<void()> deed;
  };

  void Disturb(std::size_t step, When when) const {
    const auto plan = plans_.find(step);
    if (plan != plans_.end() && plan->second.when == when) plan->second.deed();
  }

  std::vector<Step> steps_;
  std::map<std::size_t, Planned> plans_;
};

/// What a failing statement reports stands in the error collection, as a database leaves it there.
class DisturbedDatabase : public Database {
 public:
  DisturbedDatabase(Database& inner, Disturbance& disturbance) : inner_(inner), disturbance_(disturbance) {}

  std::shared_ptr<Connection> CreateConnection() override;
  std::shared_ptr<Recordset> CreateRecordset() override { return inner_.CreateRecordset(); }

 private:
  Database& inner_;
  Disturbance& disturbance_;
};

/// Objects that components give are disturbed as well.
class DisturbedComponents : public ComponentHost {
 public:
  DisturbedComponents(ComponentHost& inner, Disturbance& disturbance) : inner_(inner), disturbance_(disturbance) {}

  void RequireUsable() override { inner_.RequireUsable(); }
  Object Create(const Text& classId) override;

 private:
  ComponentHost& inner_;
  Disturbance& disturbance_;
};

/// A closing that fails closes all the same.
class DisturbedLogFile : public LogFile {
 public:
  DisturbedLogFile(LogFile& inner, Disturbance& disturbance) : inner_(inner), disturbance_(disturbance) {}

  void Open(const Text& path) override;
  void WriteLine(const Text& line) override;
  void Close() override;

 private:
  LogFile& inner_;
  Disturbance& disturbance_;
};

}  // namespace zenqay
