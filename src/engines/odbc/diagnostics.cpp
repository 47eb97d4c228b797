#include "engines/odbc/diagnostics.h"

#include <algorithm>

#include "base/secrets.h"

namespace zenqay {

namespace {

bool IsFine(SQLRETURN result) {
  return SQL_SUCCEEDED(result) || result == SQL_NO_DATA;
}

template <typename Items, typename Item>
bool IsOneOf(const Item& item, const Items& items) {
  return std::find(std::begin(items), std::end(items), item) != std::end(items);
}

// SQL Server's numbers: the login itself, its domain, disabled, locked, expired, to be changed; and, beside the first,
// a database that cannot be opened.
constexpr std::int32_t kSqlServerRefusals[] = {18456, 18452, 18470, 18486, 18487, 18488};
constexpr std::int32_t kSqlServerNoDatabase = 4060;

// Oracle's numbers: user or password, no password, locked, expired.
constexpr std::int32_t kOracleRefusals[] = {1017, 1005, 28000, 28001};

// PostgreSQL says it by its text alone, in the language of its server.
constexpr std::string_view kPostgreSqlRefusals[] = {"authentication failed for user", "no pg_hba.conf entry for",
                                                    "is not permitted to log in", "no password supplied"};

bool SaysSo(const ProviderError& record) {
  if (record.SqlState.starts_with("28")) return true;
  if (IsOneOf(record.NativeError, kSqlServerRefusals) || IsOneOf(record.NativeError, kOracleRefusals)) return true;
  const Text& text = record.Description;
  const bool isUnknownRole = text.find("role \"") != Text::npos && text.find("\" does not exist") != Text::npos;
  return isUnknownRole || std::any_of(std::begin(kPostgreSqlRefusals), std::end(kPostgreSqlRefusals),
                                      [&](std::string_view refusal) { return text.find(refusal) != Text::npos; });
}

void NumberFailedConnection(std::vector<ProviderError>& records) {
  const bool lacksDatabase = std::any_of(records.begin(), records.end(), [](const ProviderError& record) {
    return record.NativeError == kSqlServerNoDatabase;
  });
  bool isRefused = false;
  for (ProviderError& record : records) {
    const bool says = !lacksDatabase && SaysSo(record);
    if (says) record.Number = kLoginRefused;
    if (!says && record.SqlState.starts_with("42")) record.Number = kGeneralProviderFailure;
    isRefused = isRefused || says;
  }
  if (isRefused) records.front().Number = kLoginRefused;  // it speaks for all
}

}  // namespace

void Diagnostics::Require(SQLRETURN result, SQLSMALLINT handleType, SQLHANDLE handle) {
  if (!IsFine(result)) throw RuntimeError(RecordsOf(handleType, handle));
}

void Diagnostics::RequireConnected(SQLRETURN result, SQLHANDLE connection) {
  if (IsFine(result)) return;
  std::vector<ProviderError> records = RecordsOf(SQL_HANDLE_DBC, connection);
  NumberFailedConnection(records);
  throw RuntimeError(std::move(records));
}

std::vector<ProviderError> Diagnostics::RecordsOf(SQLSMALLINT handleType, SQLHANDLE handle) {
  std::vector<ProviderError> records;
  Diagnostic record;
  for (SQLSMALLINT number = 1; SQL_SUCCEEDED(calls_.GetDiagnostic(handleType, handle, number, record)); ++number) {
    records.push_back(ReportedItem(source_, Clean(record.message), record.sqlState, record.nativeError));
  }
  if (records.empty()) records.push_back(ReportedItem(source_, "The driver failed without a reason.", "HY000"));
  return records;
}

Text Diagnostics::Clean(Text text) const {
  for (const Text& secret : secrets_) text = Replaced(text, secret, "***");
  return WithoutSecrets(text);
}

}  // namespace zenqay
