#include "components/safeguard_elements.h"

#include <cstdlib>

#include "base/runtime_error.h"
#include "contracts/control_channel.h"

namespace zenqay {
namespace {

[[noreturn]] void RaiseNoLimit(const Text& place, const Text& value) {
  throw RuntimeError(PlatformFault::InvalidCall,
                     place + ": \"" + value + "\" is no limit, which is a number of rows or a share such as \"10%\"");
}

SweepLimit LimitOf(const CatalogueElement& element) {
  const Text value = element.Required("limit");
  const std::optional<SweepLimit> limit = SweepLimit::Read(value);
  if (!limit) RaiseNoLimit(element.Place(), value);
  return *limit;
}

}  // namespace

SweepLimits ReadSweep(const CatalogueElement& element) {
  element.RequireOnly({"limit", "from"});
  SweepLimits sweep;
  if (!element.Optional("limit").empty()) sweep.general = LimitOf(element);
  const Text from = element.Optional("from");
  if (!from.empty()) {
    const bool isNumber = from.size() <= 15 && from.find_first_not_of("0123456789") == Text::npos;
    if (!isNumber) {
      throw RuntimeError(PlatformFault::InvalidCall, element.Place() + ": \"" + from + "\" is no number of rows");
    }
    sweep.from = std::stoll(from);
  }
  for (const CatalogueElement& table : element.Children("TABLE")) {
    table.RequireOnly({"name", "limit"});
    sweep.ofTables.emplace_back(table.Required("name"), LimitOf(table));
  }
  return sweep;
}

TableLock ReadLock(const CatalogueElement& element) {
  element.RequireOnly({"takeover"});
  const Text takeover = element.Optional("takeover");
  if (takeover == "yes") return TableLock::TakesOver;
  if (takeover.empty() || takeover == "no") return TableLock::Used;
  throw RuntimeError(PlatformFault::InvalidCall,
                     element.Place() + ": takeover is \"yes\" or \"no\", not \"" + takeover + "\"");
}

void TakeSweepLimitOfThisRun(SweepLimits& sweep) {
  const char* value = std::getenv(channel::kSweepLimitVariable);
  if (value == nullptr || *value == '\0') return;
  const std::optional<SweepLimit> limit = SweepLimit::Read(value);
  if (!limit) RaiseNoLimit(channel::kSweepLimitVariable, value);
  sweep.general = limit;
  sweep.ofTables.clear();
}

}  // namespace zenqay
