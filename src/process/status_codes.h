// What the status component is told of a table's state.
#pragma once

#include <cstdint>

namespace zenqay {

// UpdateSyncStatus: a plain sequence.
inline constexpr std::int16_t kSyncStarted = 1;
inline constexpr std::int16_t kSyncComplete = 2;
inline constexpr std::int16_t kSyncFailed = 3;

// UpdateStatusByTable: single bits.
inline constexpr std::int32_t kTableStarted = 2;
inline constexpr std::int32_t kTableComplete = 4;
inline constexpr std::int32_t kTableInUse = 8;
inline constexpr std::int32_t kTableFailed = 16;

}  // namespace zenqay
