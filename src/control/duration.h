// Spans of time as people write and read them.
#pragma once

#include <chrono>
#include <optional>

#include "base/text_functions.h"

namespace zenqay {

using Seconds = std::chrono::seconds;

/// Reads "30s", "10m", "2h" or "90d". Nothing for any other text, and for more than 100 years.
std::optional<Seconds> ReadDuration(std::string_view text);

/// "0:07", "12:34", "1:02:03", "3 d 4 h"
Text DurationText(Seconds span);

}  // namespace zenqay
