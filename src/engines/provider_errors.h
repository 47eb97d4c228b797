// What a database reports, with the numbers that logs show.
#pragma once

#include "base/runtime_error.h"

namespace zenqay {

/// The number of what has no number of its own: connections that fail, and everything unforeseen.
inline constexpr std::int32_t kGeneralProviderFailure = -2147467259;

inline constexpr std::int32_t kLoginRefused = -2147217843;

/// The number that stands for a five-character SQLSTATE.
std::int32_t ProviderNumber(std::string_view sqlState);

/// One item of what a database reported; its text, which goes into a log, is brought on one line.
ProviderError ReportedItem(Text source, std::string_view description, Text sqlState, std::int32_t nativeError = 0);

/// Raises the report of one item.
[[noreturn]] void RaiseReported(Text source, std::string_view description, Text sqlState, std::int32_t nativeError = 0);

}  // namespace zenqay
