// The local database from the driver to the registry. It is only read, on a connection that asks for no more.
#pragma once

#include <span>

#include "check/job_line.h"

namespace zenqay {

/// Goes as far as it gets and leaves the rest out. True with an open connection in `connection` and TableRegistry
/// filled.
bool CheckDatabase(modDeclarations& process, const JobLine& line, std::shared_ptr<Connection>& connection,
                   CheckReport& report);

/// Those of the columns that the table lacks, joined with ", ". Raises what the database says of the table.
Text MissingColumns(Database& database, const std::shared_ptr<Connection>& connection, const Text& table,
                    std::span<const char* const> columns);

}  // namespace zenqay
