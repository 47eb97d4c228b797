#include "process/safeguards.h"

#include <algorithm>

namespace zenqay {
namespace {

constexpr std::int64_t kWhole = 100'00;  // hundredths of a percent

bool IsDigits(std::string_view text) {
  return text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Digits with up to two places behind a point, in hundredths.
std::optional<std::int64_t> Hundredths(std::string_view text) {
  const std::size_t point = text.find('.');
  const std::string_view whole = text.substr(0, point);
  Text places(point == std::string_view::npos ? "" : text.substr(point + 1));
  const bool isNumber =
      !whole.empty() && whole.size() <= 3 && IsDigits(whole) && IsDigits(places) && places.size() <= 2;
  const bool endsWithPoint = point != std::string_view::npos && places.empty();
  if (!isNumber || endsWithPoint) return std::nullopt;
  places.resize(2, '0');
  return std::stoll(Text(whole) + places);
}

}  // namespace

std::optional<SweepLimit> SweepLimit::Read(const Text& text) {
  if (text.ends_with('%')) {
    const auto share = Hundredths(std::string_view(text).substr(0, text.size() - 1));
    if (!share || *share > kWhole) return std::nullopt;
    return SweepLimit(text, *share, true);
  }
  if (text.empty() || text.size() > 15 || !IsDigits(text)) return std::nullopt;
  return SweepLimit(text, std::stoll(text), false);
}

bool SweepLimit::IsExceededBy(std::int64_t swept, std::int64_t before) const {
  return isShare_ ? swept * kWhole > amount_ * before : swept > amount_;
}

const SweepLimit* SweepLimits::For(const Text& table) const {
  const auto own = std::find_if(ofTables.begin(), ofTables.end(),
                                [&](const auto& entry) { return EqualsIgnoringCase(entry.first, table); });
  if (own != ofTables.end()) return &own->second;
  return general ? &*general : nullptr;
}

}  // namespace zenqay
