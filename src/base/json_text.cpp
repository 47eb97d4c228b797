#include "base/json_text.h"

#include <nlohmann/json.hpp>

namespace zenqay {

Text JsonText(const nlohmann::ordered_json& value) {
  return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace zenqay
