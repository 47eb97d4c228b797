#include "base/date_time.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>

#include "base/runtime_error.h"

namespace zenqay {
namespace {

using std::chrono::day;
using std::chrono::days;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;

constexpr std::int64_t kSecondsPerDay = 86'400;
constexpr sys_days kZeroDate = year(1899) / month(12) / day(30);

std::int64_t WholeDays(DateTime value) {
  const std::int64_t truncated = value.seconds() / kSecondsPerDay;
  return value.seconds() % kSecondsPerDay < 0 ? truncated - 1 : truncated;
}

template <typename... Numbers>
Text Formatted(const char* format, Numbers... numbers) {
  char text[64];
  const int length = std::snprintf(text, sizeof text, format, numbers...);
  return Text(text, static_cast<std::size_t>(length));
}

/// Takes `least` to `most` digits off the front of `text`.
bool TakeDigits(std::string_view& text, std::size_t least, std::size_t most, int& number) {
  std::size_t digits = 0;
  while (digits < text.size() && digits < most && text[digits] >= '0' && text[digits] <= '9') ++digits;
  if (digits < least) return false;
  std::from_chars(text.data(), text.data() + digits, number);
  text.remove_prefix(digits);
  return true;
}

bool TakeChar(std::string_view& text, char c) {
  if (text.empty() || text.front() != c) return false;
  text.remove_prefix(1);
  return true;
}

}  // namespace

DateTime DateTime::FromParts(const DateTimeParts& parts) {
  const std::int64_t monthsFromYearZero = parts.year * std::int64_t{12} + parts.month - 1;
  const std::int64_t wholeYear = monthsFromYearZero >= 0 ? monthsFromYearZero / 12 : (monthsFromYearZero - 11) / 12;
  if (wholeYear < 1 || wholeYear > 9999) throw RuntimeError(PlatformFault::InvalidCall, "year outside 1 to 9999");
  const auto monthOfYear = static_cast<unsigned>(monthsFromYearZero - wholeYear * 12 + 1);
  const sys_days firstOfMonth = year(static_cast<int>(wholeYear)) / month(monthOfYear) / day(1);
  const std::int64_t dayCount = (firstOfMonth - kZeroDate).count() + std::int64_t{parts.day} - 1;
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
  const DateTime sum(value.seconds() + dayCount * kSecondsPerDay);
  if (sum < first || sum > last) throw RuntimeError(PlatformFault::Overflow);
  return sum;
}

DateTime AddMonths(DateTime value, std::int64_t months) {
  DateTimeParts parts = value.Parts();
  const std::int64_t month = parts.year * std::int64_t{12} + parts.month - 1 + months;
  const std::int64_t wholeYear = month >= 0 ? month / 12 : (month - 11) / 12;
  if (wholeYear < 1 || wholeYear > 9999) throw RuntimeError(PlatformFault::InvalidCall, "year outside 1 to 9999");
  parts.year = static_cast<int>(wholeYear);
  parts.month = static_cast<int>(month - wholeYear * 12) + 1;
  const auto lastDay = year(parts.year) / std::chrono::month(static_cast<unsigned>(parts.month)) / std::chrono::last;
  parts.day = std::min(parts.day, static_cast<int>(static_cast<unsigned>(lastDay.day())));
  return DateTime::FromParts(parts);
}

DateTime AddYears(DateTime value, std::int64_t years) {
  return AddMonths(value, years * 12);
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
  DateTimeParts parts;
  if (!TakeDigits(text, 1, 4, parts.year) || !TakeChar(text, '-') || !TakeDigits(text, 2, 2, parts.month) ||
      !TakeChar(text, '-') || !TakeDigits(text, 2, 2, parts.day)) {
    return false;
  }
  if (!text.empty()) {
    if (!TakeChar(text, ' ') && !TakeChar(text, 'T')) return false;
    if (!TakeDigits(text, 2, 2, parts.hour) || !TakeChar(text, ':') || !TakeDigits(text, 2, 2, parts.minute) ||
        !TakeChar(text, ':') || !TakeDigits(text, 2, 2, parts.second)) {
      return false;
    }
    int fraction = 0;
    if (TakeChar(text, '.') && !TakeDigits(text, 1, 9, fraction)) return false;
  }
  const year_month_day date(year(parts.year), month(static_cast<unsigned>(parts.month)),
                            day(static_cast<unsigned>(parts.day)));
  if (!text.empty() || parts.year < 1 || !date.ok() || parts.hour > 23 || parts.minute > 59 || parts.second > 59) {
    return false;
  }
  value = DateTime::FromParts(parts);
  return true;
}

}  // namespace zenqay
