// The keys of a local table, as its database tells them.
#pragma once

#include <optional>
#include <set>

#include "check/job_line.h"

namespace zenqay {

/// Whether the table has a primary key or a unique one over these columns and no others; nothing where the database
/// does not say what keys there are.
std::optional<bool> HasKeyOver(Database& database, const JobLine& line, const std::shared_ptr<Connection>& connection,
                               const Text& table, const std::set<Text>& columns);

}  // namespace zenqay
