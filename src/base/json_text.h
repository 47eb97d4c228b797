// JSON as it is written.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "base/text_functions.h"

namespace zenqay {

/// On one line; what is no UTF-8 is replaced.
Text JsonText(const nlohmann::ordered_json& value);

}  // namespace zenqay
