#include "engines/odbc/diagnostics.h"

#include "base/secrets.h"

namespace zenqay {

void Diagnostics::Require(SQLRETURN result, SQLSMALLINT handleType, SQLHANDLE handle) {
  if (SQL_SUCCEEDED(result) || result == SQL_NO_DATA) return;
  std::vector<ProviderError> records = RecordsOf(handleType, handle);
  if (records.empty()) records.push_back({kGeneralProviderFailure, source_, "The driver failed without a reason."});
  throw ProviderFailure(std::move(records));
}

std::vector<ProviderError> Diagnostics::RecordsOf(SQLSMALLINT handleType, SQLHANDLE handle) {
  std::vector<ProviderError> records;
  Text sqlState;
  Text message;
  for (SQLSMALLINT number = 1; SQL_SUCCEEDED(calls_.GetDiagnostic(handleType, handle, number, sqlState, message));
       ++number) {
    records.push_back({ProviderNumber(sqlState), source_, Clean(message)});
  }
  return records;
}

Text Diagnostics::Clean(Text text) const {
  for (const Text& secret : secrets_) text = Replaced(text, secret, "***");
  return WithoutSecrets(text);
}

}  // namespace zenqay
