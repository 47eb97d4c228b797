// The tables that the command line asks for.
#pragma once

#include "check/job_line.h"

namespace zenqay {

/// Looks at each of them and gives the names of those that have a copy.
std::vector<Text> CheckTables(modDeclarations& process, const JobLine& line,
                              const std::shared_ptr<Connection>& connection, CheckReport& report);

}  // namespace zenqay
