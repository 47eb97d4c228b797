// Who has taken a table, as far as the history knows.
#pragma once

#include "control/history.h"

namespace zenqay {

enum class OwnerLife { Unknown, Alive, Gone, OnAnotherMachine };

/// The job that took the table last, when it has not given it back in order.
struct FlagOwner {
  OwnerLife life = OwnerLife::Unknown;
  ProcessIdentity process;
  std::int64_t run = 0;

  /// "process 7 of run 3, which is gone"
  Text Words() const;
};

FlagOwner OwnerOf(History& history, const Text& database, const Text& table);

}  // namespace zenqay
