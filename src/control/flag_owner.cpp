#include "control/flag_owner.h"

namespace zenqay {
namespace {

/// Ends behind which a job has given the table back, or never had it.
bool IsInOrder(const Text& outcome) {
  return outcome == StateWord(TableState::Complete) || outcome == StateWord(TableState::InUse) ||
         outcome == StateWord(TableState::CouldNotBegin);
}

OwnerLife LifeOfOwner(const ProcessIdentity& process) {
  switch (LifeOf(process)) {
    case Life::Alive:
      return OwnerLife::Alive;
    case Life::Gone:
      return OwnerLife::Gone;
    case Life::OnAnotherMachine:
      return OwnerLife::OnAnotherMachine;
  }
  return OwnerLife::Unknown;
}

}  // namespace

Text FlagOwner::Words() const {
  const Text who = "process " + std::to_string(process.pid) + " of run " + std::to_string(run);
  switch (life) {
    case OwnerLife::Unknown:
      return "nobody that the history knows";
    case OwnerLife::Alive:
      return who + ", which lives";
    case OwnerLife::Gone:
      return who + ", which is gone";
    case OwnerLife::OnAnotherMachine:
      return who + " on " + process.host;
  }
  return who;
}

FlagOwner OwnerOf(History& history, const Text& database, const Text& table) {
  constexpr int kLookedBack = 10;
  for (const PastTable& past : history.LatestTables(database, table, kLookedBack)) {
    if (!past.freed.empty()) break;  // who took it since is not known
    if (past.process.pid == 0 || past.outcome == StateWord(TableState::InUse)) continue;  // it did not take it
    if (IsInOrder(past.outcome)) break;
    return {.life = LifeOfOwner(past.process), .process = past.process, .run = past.run};
  }
  return {};
}

}  // namespace zenqay
