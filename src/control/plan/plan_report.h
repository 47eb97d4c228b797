// A plan as people and programs read it.
#pragma once

#include <nlohmann/json.hpp>
#include <ostream>

#include "control/plan/job_plan.h"

namespace zenqay {

void WritePlan(std::ostream& out, const Plan& plan);

/// As docs/plan.schema.json says.
nlohmann::ordered_json PlanJson(const Plan& plan);

}  // namespace zenqay
