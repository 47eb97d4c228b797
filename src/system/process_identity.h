// Which process it is, of all that ever had its number.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// A process of one machine: its number comes again, the time of its start since the machine's boot does not.
struct ProcessIdentity {
  Text host;
  Text boot;  // the id of the machine's boot
  int pid = 0;
  Text start;  // in the kernel's ticks since the boot

  bool operator==(const ProcessIdentity&) const = default;
};

/// Of a process of this machine; without a start when it has gone.
ProcessIdentity IdentityOf(int pid);
ProcessIdentity OwnIdentity();

/// Whether the process lives. Only this machine's can be looked at.
enum class Life { Alive, Gone, OnAnotherMachine };
Life LifeOf(const ProcessIdentity& identity);

}  // namespace zenqay
