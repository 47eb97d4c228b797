// Values as they stand in a trace.
#pragma once

#include <cstdint>
#include <functional>

#include "contracts/value.h"
#include "trace/json_text.h"

namespace zenqay {

/// The number that a trace knows an object by.
using ObjectNumber = std::function<std::int64_t(const Object&)>;

/// The width of an integer does not show, nor whether a text was a date-time.
nlohmann::ordered_json ShownValue(const Value& value, const ObjectNumber& numberOf);

/// No password stands in a trace, also where an item of the command line came in the wrong place.
void CleanOfSecrets(nlohmann::ordered_json& value);

}  // namespace zenqay
