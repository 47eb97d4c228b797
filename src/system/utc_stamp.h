// The time for machines to read.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// Now: "2026-01-31T10:11:12.345Z".
Text UtcStamp();

}  // namespace zenqay
