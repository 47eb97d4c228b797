// The rows of a result set.
#pragma once

#include "engines/odbc/diagnostics.h"
#include "engines/row_sink.h"

namespace zenqay {

/// Reads the result set that stands open on the statement into `rows`, to its end. Integers that fit 32 bits stay
/// integers, other numbers become doubles, dates and timestamps date-times (a fraction of a second is dropped), and
/// everything else text.
void ReadRows(OdbcCalls& calls, Diagnostics& diagnostics, SQLHSTMT statement, RowSink& rows);

}  // namespace zenqay
