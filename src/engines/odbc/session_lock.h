// The lock that a session of a database server takes, as each server has it.
#pragma once

#include <optional>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// The statements of one lock, and what their queries answer in their one field.
struct SessionLock {
  std::vector<Text> before;  // so that the server soon misses a session whose machine has vanished
  Text take;
  Text held;       // asks whether this very session holds it
  Text heldByAny;  // asks whether any session holds it: 1 or 0; empty for a server that cannot be asked
  Text giveBack;
  std::int32_t got = 1;
  std::int32_t notGot = 0;  // another session has it
  std::int32_t holds = 1;
};

/// The lock of a name, regardless of case, in the database and schema of the session. `dbms` is the name by which the
/// driver knows the server; none for a server without such locks.
std::optional<SessionLock> SessionLockOf(const Text& dbms, const Text& name);

}  // namespace zenqay
