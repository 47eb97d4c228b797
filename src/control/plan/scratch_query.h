// Questions to a file of the embedded engine.
#pragma once

#include <cstdint>
#include <memory>

#include "contracts/connection.h"

namespace zenqay {

std::unique_ptr<QueryRows> RowsIn(Connection& connection, const Text& query);

/// The one number that a query gives.
std::int64_t NumberIn(Connection& connection, const Text& query);

}  // namespace zenqay
