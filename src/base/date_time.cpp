#include "base/date_time.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "base/runtime_error.h"
#include "base/text_reader.h"

namespace zenqay {
namespace {

using std::chrono::day;
using std::chrono::days;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month;
using std::chrono::year_month_day;

constexpr std::int64_t kSecondsPerDay = 86'400;
constexpr sys_days kZeroDate = year(1899) / month(12) / day(30);

/// Further than from any date to any other, so that what is added never overflows.
constexpr std::int64_t kFarthestYears = 10'000;

std::int64_t Floored(std::int64_t number, std::int64_t divisor) {
  const std::int64_t truncated = number / divisor;
  return number % divisor < 0 ? truncated - 1 : truncated;
}

std::int64_t WholeDays(DateTime value) {
  return Floored(value.seconds(), kSecondsPerDay);
}

/// January of the year 0 has the number 0. Raises 5 for a month outside the years 1 to 9999.
year_month MonthOf(std::int64_t number) {
  const std::int64_t wholeYear = Floored(number, 12);
  if (wholeYear < 1 || wholeYear > 9999) throw RuntimeError(PlatformFault::InvalidCall, "year outside 1 to 9999");
  return year(static_cast<int>(wholeYear)) / month(static_cast<unsigned>(number - wholeYear * 12 + 1));
}

std::int64_t MonthNumber(const DateTimeParts& parts) {
  return parts.year * std::int64_t{12} + parts.month - 1;
}

std::int64_t DaysUpTo(sys_days date) {
  return (date - kZeroDate).count();
}

template <typename... Numbers>
Text Formatted(const char* format, Numbers... numbers) {
  char text[64];
  const int length = std::snprintf(text, sizeof text, format, numbers...);
  return Text(text, static_cast<std::size_t>(length));
}

}  // namespace

DateTime DateTime::FromParts(const DateTimeParts& parts) {
  const std::int64_t dayCount = DaysUpTo(MonthOf(MonthNumber(parts)) / day(1)) + std::int64_t{parts.day} - 1;
  return DateTime(dayCount * kSecondsPerDay + parts.hour * std::int64_t{3600} + parts.minute * std::int64_t{60} +
                  parts.second);
}

DateTimeParts DateTime::Parts() const {
  const std::int64_t dayCount = WholeDays(*this);
  const year_month_day date(kZeroDate + days(dayCount));
  const int time = static_cast<int>(seconds_ - dayCount * kSecondsPerDay);
  return {.year = static_cast<int>(date.year()),
          .month = static_cast<int>(static_cast<unsigned>(date.month())),
          .day = static_cast<int>(static_cast<unsigned>(date.day())),
          .hour = time / 3600,
          .minute = time / 60 % 60,
          .second = time % 60};
}

DateTime DateTime::DateOnly() const {
  return DateTime(WholeDays(*this) * kSecondsPerDay);
}

DateTime DateTime::TimeOnly() const {
  return DateTime(seconds_ - DateOnly().seconds());
}

DateTime AddDays(DateTime value, std::int64_t dayCount) {
  static const DateTime first = DateTime::FromParts({.year = 1, .month = 1, .day = 1});
  static const DateTime last = DateTime::FromParts({9999, 12, 31, 23, 59, 59});
  const std::int64_t farthest = kFarthestYears * 366;
  const DateTime sum(value.seconds() + std::clamp(dayCount, -farthest, farthest) * kSecondsPerDay);
  if (sum < first || sum > last) throw RuntimeError(PlatformFault::Overflow);
  return sum;
}

DateTime AddMonths(DateTime value, std::int64_t months) {
  const std::int64_t farthest = kFarthestYears * 12;
  const DateTimeParts parts = value.Parts();
  const year_month target = MonthOf(MonthNumber(parts) + std::clamp(months, -farthest, farthest));
  const day lastDay = (target / std::chrono::last).day();
  const std::int64_t dayCount = DaysUpTo(target / std::min(day(static_cast<unsigned>(parts.day)), lastDay));
  return DateTime(dayCount * kSecondsPerDay + value.TimeOnly().seconds());
}

DateTime AddYears(DateTime value, std::int64_t years) {
  return AddMonths(value, std::clamp(years, -kFarthestYears, kFarthestYears) * 12);
}

Text ShortDate(DateTime value) {
  const DateTimeParts parts = value.Parts();
  return Formatted("%d/%d/%d", parts.month, parts.day, parts.year);
}

Text LongTime(DateTime value) {
  const DateTimeParts parts = value.Parts();
  const int hour = parts.hour % 12 == 0 ? 12 : parts.hour % 12;
  return Formatted("%d:%02d:%02d %s", hour, parts.minute, parts.second, parts.hour < 12 ? "AM" : "PM");
}

Text DefaultText(DateTime value) {
  if (value.DateOnly() == DateTime()) return LongTime(value);  // a time of day, midnight too
  if (value.TimeOnly() == DateTime()) return ShortDate(value);
  return ShortDate(value) + " " + LongTime(value);
}

Text IsoText(DateTime value) {
  const DateTimeParts parts = value.Parts();
  return Formatted("%d-%02d-%02d %02d:%02d:%02d", parts.year, parts.month, parts.day, parts.hour, parts.minute,
                   parts.second);
}

Text CompactDate(DateTime value) {
  const DateTimeParts parts = value.Parts();
  return Formatted("%04d%02d%02d", parts.year, parts.month, parts.day);
}

bool ReadIsoText(std::string_view text, DateTime& value) {
  TextReader reader(text);
  DateTimeParts parts;
  if (!reader.Number(1, 4, parts.year) || !reader.Mark("-") || !reader.Number(2, 2, parts.month) || !reader.Mark("-") ||
      !reader.Number(2, 2, parts.day)) {
    return false;
  }
  if (!reader.atEnd()) {
    if (!reader.Mark(" ") && !reader.Mark("T")) return false;
    if (!reader.Number(2, 2, parts.hour) || !reader.Mark(":") || !reader.Number(2, 2, parts.minute) ||
        !reader.Mark(":") || !reader.Number(2, 2, parts.second)) {
      return false;
    }
    int fraction = 0;
    if (reader.Mark(".") && !reader.Number(1, 9, fraction)) return false;
  }
  const year_month_day date(year(parts.year), month(static_cast<unsigned>(parts.month)),
                            day(static_cast<unsigned>(parts.day)));
  if (!reader.atEnd() || parts.year < 1 || !date.ok() || parts.hour > 23 || parts.minute > 59 || parts.second > 59) {
    return false;
  }
  value = DateTime::FromParts(parts);
  return true;
}

}  // namespace zenqay
