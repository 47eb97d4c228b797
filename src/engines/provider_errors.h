// What a database reports, as the numbers that logs show and as the exception that travels.
#pragma once

#include <vector>

#include "base/runtime_error.h"
#include "contracts/connection.h"

namespace zenqay {

/// The number of what has no number of its own: connections that fail, and everything unforeseen.
inline constexpr std::int32_t kGeneralProviderFailure = -2147467259;

/// The number that stands for a five-character SQLSTATE.
std::int32_t ProviderNumber(std::string_view sqlState);

/// A failure that the database reported, with every item of its report. Number, source and description are those of
/// the first item.
class ProviderFailure : public RuntimeError {
 public:
  /// `items` holds at least one item.
  explicit ProviderFailure(std::vector<ProviderError> items);

  const std::vector<ProviderError>& items() const noexcept { return items_; }

 private:
  std::vector<ProviderError> items_;
};

}  // namespace zenqay
