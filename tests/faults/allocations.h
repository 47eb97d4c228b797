// Memory that runs out when a test wants it: the program's operator new counts, and fails where it is told.
#pragma once

#include <cstdint>

namespace zenqay {

enum class Shortage {
  Once,     // one allocation fails
  Lasting,  // every one fails, until the reserve is given back
};

/// Lets the allocation of that index fail, counted from 0 and from now.
void RunOutOfMemoryAt(std::int64_t allocation, Shortage shortage);

/// Ends all that. Gives how many allocations there were since.
std::int64_t CountAllocations();

}  // namespace zenqay
