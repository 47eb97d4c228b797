// The code page of the log files.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// The text in Windows-1252. Each code point that the page lacks, and each byte that is no UTF-8, becomes one "?".
Text ToWindows1252(std::string_view utf8);

}  // namespace zenqay
