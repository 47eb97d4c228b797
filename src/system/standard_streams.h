// Standard output and standard error, without a buffer in between.
#pragma once

#include <string_view>

namespace zenqay {

enum class StandardStream { Output, Error };

bool IsTerminal(StandardStream stream);

/// Writes what can be written: a stream that is closed takes nothing, and holds nothing up.
void WriteTo(StandardStream stream, std::string_view text);

}  // namespace zenqay
