// What zenqayctl knows, as JSON. Only sources include this.
#pragma once

#include <nlohmann/json.hpp>

#include "control/history.h"

namespace zenqay {

/// On one line; what is no UTF-8 is replaced.
Text JsonText(const nlohmann::ordered_json& value);

nlohmann::ordered_json FailureJson(const JobFailure& failure);
nlohmann::ordered_json TableJson(const TableRun& run);
nlohmann::ordered_json TableJson(const PastTable& table);
nlohmann::ordered_json RunJson(const PastRun& run);

}  // namespace zenqay
