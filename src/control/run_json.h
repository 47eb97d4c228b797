// What zenqayctl knows, as JSON. Only sources include this.
#pragma once

#include <nlohmann/json.hpp>

#include "base/json_text.h"
#include "control/table_status.h"

namespace zenqay {

nlohmann::ordered_json FailureJson(const JobFailure& failure);
nlohmann::ordered_json TableJson(const TableRun& run);
nlohmann::ordered_json TableJson(const PastTable& table);
nlohmann::ordered_json StatusJson(const TableStatus& status, std::int64_t now);

/// A run with the number of its tables and the rows that they met, and with all that is known of each.
nlohmann::ordered_json RunJson(const PastRun& run, const std::vector<PastTable>& tables);
nlohmann::ordered_json WholeRunJson(History& history, const PastRun& run);

}  // namespace zenqay
