// What a driver reports, as the failure that travels.
#pragma once

#include <vector>

#include "engines/odbc/odbc_calls.h"
#include "engines/provider_errors.h"

namespace zenqay {

class Diagnostics {
 public:
  /// `source` is the driver's name; `secrets`, the longest first, are taken out of every text.
  Diagnostics(OdbcCalls& calls, Text source, std::vector<Text> secrets)
      : calls_(calls), source_(std::move(source)), secrets_(std::move(secrets)) {}

  /// Raises every diagnostic record of the handle, as one failure, unless the call succeeded; with information
  /// is success, and so is having no (more) data.
  void Require(SQLRETURN result, SQLSMALLINT handleType, SQLHANDLE handle);

  /// The same for the call that connects. A login that is refused has the one number for that, by whichever state,
  /// number or text the driver says so; what else a server refuses is a connection that failed.
  void RequireConnected(SQLRETURN result, SQLHANDLE connection);

 private:
  std::vector<ProviderError> RecordsOf(SQLSMALLINT handleType, SQLHANDLE handle);
  Text Clean(Text text) const;

  OdbcCalls& calls_;
  Text source_;
  std::vector<Text> secrets_;
};

}  // namespace zenqay
