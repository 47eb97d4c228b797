#include "engines/provider_errors.h"

namespace zenqay {
namespace {

constexpr std::int32_t kNoSuchTable = -2147217865;
constexpr std::int32_t kStatementRefused = -2147217900;
constexpr std::int32_t kConstraintViolated = -2147217873;
constexpr std::int32_t kLoginRefused = -2147217843;
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

ProviderFailure::ProviderFailure(std::vector<ProviderError> items)
    : RuntimeError(items.front().Number, items.front().Source, items.front().Description), items_(std::move(items)) {}

}  // namespace zenqay
