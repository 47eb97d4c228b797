// Keeping a sweep from taking more of a table than it may.
#pragma once

#include "process/modDeclarations.h"

namespace zenqay {

/// Made in front of the mark. Does nothing for a table without a limit.
class SweepGuard {
 public:
  SweepGuard(modDeclarations& process, const Text& tableName);

  /// Raises 20211, with both numbers, when the rows that are still marked are more than may go.
  void RequireWithinLimit();

 private:
  std::int64_t Count(const Text& condition);

  modDeclarations& process_;
  const Text& tableName_;
  const SweepLimit* limit_;
  std::int64_t before_ = 0;
};

}  // namespace zenqay
