// What a plan says of the rows of a table, held against the rows.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "job_site.h"

namespace zenqay {

struct TestedTable {
  const char* name;
  const char* key;
  const char* others;
};

using Row = std::map<Text, nlohmann::json>;  // the values of its columns as texts, or null
using Rows = std::multiset<Row>;

Rows RowsOf(const JobSite& site, Engine engine, const TestedTable& table);

/// What the plan of a table, with all of its examples, says that is not so of the rows before and after the run; empty
/// when all of it is.
Text FaultOf(const TestedTable& tested, const nlohmann::json& table, Rows before, Rows after);

}  // namespace zenqay
