#include "engines/provider_errors.h"

namespace zenqay {
namespace {

constexpr std::int32_t kNoSuchTable = -2147217865;
constexpr std::int32_t kStatementRefused = -2147217900;
constexpr std::int32_t kConstraintViolated = -2147217873;
constexpr std::int32_t kValueTooLarge = -2147217833;
constexpr std::int32_t kValueUnreadable = -2147217913;
constexpr std::int32_t kTimeExpired = -2147217871;

}  // namespace

std::int32_t ProviderNumber(std::string_view sqlState) {
  if (sqlState == "42S02" || sqlState == "42P01") return kNoSuchTable;
  if (sqlState.starts_with("42") || sqlState == "37000") return kStatementRefused;
  if (sqlState.starts_with("23")) return kConstraintViolated;
  if (sqlState == "28000") return kLoginRefused;
  if (sqlState == "22001" || sqlState == "22003") return kValueTooLarge;
  if (sqlState.starts_with("22")) return kValueUnreadable;
  if (sqlState == "HYT00") return kTimeExpired;
  return kGeneralProviderFailure;
}

ProviderError ReportedItem(Text source, std::string_view description, Text sqlState, std::int32_t nativeError) {
  const std::int32_t number = ProviderNumber(sqlState);
  return {number, std::move(source), OneLine(description), std::move(sqlState), nativeError};
}

void RaiseReported(Text source, std::string_view description, Text sqlState, std::int32_t nativeError) {
  throw RuntimeError(std::vector{ReportedItem(std::move(source), description, std::move(sqlState), nativeError)});
}

}  // namespace zenqay
