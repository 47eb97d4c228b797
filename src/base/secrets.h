// Keeping passwords out of every output.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// The text with the value behind each "password=" and "pwd=" (no regard to case, blanks around the equals sign) up to
/// the next ";" or the end of a quoted value replaced by "***".
Text WithoutSecrets(std::string_view text);

}  // namespace zenqay
