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

  /// True of a job of zenqayctl's that is not seen to live: it took the table's lock before it set the flag, so that
  /// the flag is left behind once that lock is free. Of a flag that somebody else may have set, the lock says nothing.
  bool HadLock() const { return life == OwnerLife::Gone || life == OwnerLife::OnAnotherMachine; }

  /// "process 7 of run 3, which is gone"
  Text Words() const;
};

FlagOwner OwnerOf(History& history, const Text& database, const Text& table);

}  // namespace zenqay
