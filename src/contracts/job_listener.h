// Who hears of a job what its events do not say.
#pragma once

#include <cstdint>
#include <optional>

#include "base/runtime_error.h"

namespace zenqay {

/// Where a job is with a table.
enum class JobPhase {
  Start,    // the table is not taken
  Copy,     // it is taken
  Release,  // it is being given back
  End,      // it has been, or the job found it in use
};

/// The rows of a pass so far.
struct RowCounts {
  std::int64_t met = 0;
  std::int64_t inserted = 0;
  std::int64_t updated = 0;
  std::int64_t deleted = 0;

  bool operator==(const RowCounts&) const = default;
};

/// This one hears nothing. What an operation does must not fail.
class JobListener {
 public:
  virtual ~JobListener() = default;

  /// True when the rows that a sweep takes are to be counted, which a database may have to be asked for.
  virtual bool wantsSweptRows() const { return false; }

  virtual void TableBegins(std::int32_t /*tableId*/, const Text& /*name*/) {}
  virtual void PhaseBegins(JobPhase) {}

  /// A flag that is set has been taken as left behind.
  virtual void TakesOver() {}

  /// Behind each row of a pass.
  virtual void RowDone(const RowCounts&) {}

  /// Behind the last row; `swept` are the rows that a full copy's sweep took, which stand in `deleted` too.
  virtual void PassDone(const RowCounts&, std::optional<std::int64_t> /*swept*/) {}

  /// A failure goes into the run log or the start-up log.
  virtual void Recorded(const RuntimeError&) {}
};

}  // namespace zenqay
