// JSON as a text.
#pragma once

#include <nlohmann/json.hpp>

#include "base/text_functions.h"

namespace zenqay {

/// On one line; what is no UTF-8 is replaced.
inline Text JsonText(const nlohmann::ordered_json& value) {
  return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace zenqay
