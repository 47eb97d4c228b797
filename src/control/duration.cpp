#include "control/duration.h"

#include <algorithm>
#include <cstdint>

namespace zenqay {
namespace {

std::int64_t SecondsIn(char unit) {
  switch (unit) {
    case 's':
      return 1;
    case 'm':
      return 60;
    case 'h':
      return 3600;
    case 'd':
      return 86400;
    default:
      return 0;
  }
}

Text TwoDigits(std::int64_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

}  // namespace

std::optional<Seconds> ReadDuration(std::string_view text) {
  constexpr std::int64_t kLongest = std::int64_t{100} * 366 * 86400;
  constexpr std::size_t kMostDigits = 10;
  if (text.size() < 2 || text.size() > kMostDigits + 1) return std::nullopt;
  const std::string_view digits = text.substr(0, text.size() - 1);
  if (digits.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  const std::int64_t unit = SecondsIn(text.back());
  const std::int64_t seconds = std::stoll(Text(digits)) * unit;
  if (unit == 0 || seconds > kLongest) return std::nullopt;
  return Seconds(seconds);
}

Text DurationText(Seconds span) {
  const std::int64_t all = std::max<std::int64_t>(span.count(), 0);
  const std::int64_t hours = all / 3600;
  if (hours >= 48) return std::to_string(hours / 24) + " d " + std::to_string(hours % 24) + " h";
  const std::int64_t minutes = all / 60 % 60;
  if (hours == 0) return std::to_string(minutes) + ":" + TwoDigits(all % 60);
  return std::to_string(hours) + ":" + TwoDigits(minutes) + ":" + TwoDigits(all % 60);
}

}  // namespace zenqay
