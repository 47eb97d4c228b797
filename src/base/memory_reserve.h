// Memory that is set aside, so that a job that runs out of it can still log, release its table and tell.
#pragma once

#include <cstddef>

namespace zenqay {

/// What the failure paths of one table need is a few kB; the rest is for a heap that grows in large steps only.
inline constexpr std::size_t kMemoryReserve = std::size_t{4} << 20;

/// Sets the reserve of this process aside, unless it is already, or there is no memory for it. Nothing is written into
/// it, so it takes addresses, but no memory of the machine.
void SetMemoryAside() noexcept;

/// Gives the reserve to whoever asks for memory next. ErrorInFlight does, when memory has run out.
void GiveMemoryBack() noexcept;

}  // namespace zenqay
