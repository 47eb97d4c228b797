// The standard streams, without a buffer in between.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

enum class StandardStream { Output, Error };

bool IsTerminal(StandardStream stream);

/// Writes what can be written: a stream that is closed takes nothing, and holds nothing up.
void WriteTo(StandardStream stream, std::string_view text);

/// What standard input holds, to its end. Raises 75 when it cannot be read.
Text ReadStandardInput();

}  // namespace zenqay
