// The code page of the log files.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// The text in Windows-1252. Each code point that the page lacks, and each byte that is no UTF-8, becomes one "?".
Text ToWindows1252(std::string_view utf8);

/// The text in UTF-8. Each of the five bytes that mean nothing in Windows-1252 becomes a "?".
Text FromWindows1252(std::string_view bytes);

}  // namespace zenqay
