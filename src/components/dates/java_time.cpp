#include "components/dates/java_time.h"

#include <algorithm>
#include <ctime>

#include "base/runtime_error.h"

namespace zenqay {
namespace {

constexpr std::int64_t kDay = 86'400'000;
constexpr std::int64_t kDayInSeconds = 86'400;
constexpr std::int64_t kYear1900InSeconds = -2'208'988'800;
constexpr std::int64_t kEndOfYear2037InSeconds = 2'145'916'799;

/// 15 October 1582 in days from 1 January 1970.
constexpr std::int64_t kFirstGregorianDay = -141'427;

constexpr std::int64_t FloorDivide(std::int64_t number, std::int64_t divisor) {
  return number / divisor - (number % divisor < 0 ? 1 : 0);
}

/// 1 March of a year in days from 1 January 1970. With the leap day at its end, a year needs no cases.
std::int64_t FirstOfMarch(std::int64_t year, JavaCalendar calendar) {
  const std::int64_t julian = 365 * year + FloorDivide(year, 4) - 719'470;
  if (calendar == JavaCalendar::Julian) return julian;
  return julian - FloorDivide(year, 100) + FloorDivide(year, 400) + 2;
}

/// The days from 1 March to the first of the month that comes `months` after March.
constexpr std::int64_t DaysOfMonths(std::int64_t months) {
  return (153 * months + 2) / 5;
}

std::int64_t DayOf(const JavaFields& fields, JavaCalendar calendar) {
  const bool beforeMarch = fields.month < 3;
  const std::int64_t firstOfMarch = FirstOfMarch(std::int64_t{fields.year} - (beforeMarch ? 1 : 0), calendar);
  return firstOfMarch + DaysOfMonths(fields.month + (beforeMarch ? 9 : -3)) + fields.day - 1;
}

std::int64_t TimeOfDay(const JavaFields& fields) {
  return ((fields.hour * std::int64_t{60} + fields.minute) * 60 + fields.second) * 1000 + fields.millisecond;
}

struct LocalTime {
  std::int64_t day;        // from 1 January 1970
  std::int64_t timeOfDay;  // in milliseconds
};

LocalTime LocalTimeAt(std::int64_t instant) {
  const std::int64_t day = FloorDivide(instant, kDay);
  const std::int64_t timeOfDay = (instant % kDay + kDay) % kDay + OffsetAt(instant);
  const std::int64_t carry = FloorDivide(timeOfDay, kDay);
  return {.day = day + carry, .timeOfDay = timeOfDay - carry * kDay};
}

std::tm SystemTimeAt(std::time_t second) {
  std::tm local;
  if (localtime_r(&second, &local) == nullptr) throw RuntimeError(PlatformFault::Overflow);
  return local;
}

/// A few zones call their winter the saved time (Dublin), so what the clock shows outside daylight saving is not
/// always the standard. It is the smaller one of the offset and of the one on the other side of the change into it,
/// when that change has daylight saving begin or end and lies within a year.
std::int64_t StandardOffsetInSeconds(std::int64_t second) {
  constexpr int kWeeksBack = 53;
  const std::tm local = SystemTimeAt(second);
  for (std::int64_t week = 1; week <= kWeeksBack; ++week) {
    const std::tm earlier = SystemTimeAt(second - week * 7 * kDayInSeconds);
    if (earlier.tm_isdst != local.tm_isdst) return std::min(earlier.tm_gmtoff, local.tm_gmtoff);
  }
  return local.tm_gmtoff;
}

std::int64_t OffsetInSeconds(std::int64_t second) {
  return second < kYear1900InSeconds ? StandardOffsetInSeconds(kEndOfYear2037InSeconds)
                                     : SystemTimeAt(second).tm_gmtoff;
}

/// Around a change, the offset after it holds from the moment at which a clock that shows it reaches the change.
std::int64_t OffsetOfLocalTimeInSeconds(std::int64_t localSecond) {
  const std::int64_t before = OffsetInSeconds(localSecond - kDayInSeconds);
  const std::int64_t after = OffsetInSeconds(localSecond + kDayInSeconds);
  if (before == after) return before;
  return OffsetInSeconds(localSecond - after) == after ? after : before;
}

}  // namespace

JavaCalendar CalendarAt(std::int64_t instant) {
  return LocalTimeAt(instant).day >= kFirstGregorianDay ? JavaCalendar::Gregorian : JavaCalendar::Julian;
}

JavaFields FieldsAt(std::int64_t instant, JavaCalendar calendar) {
  const LocalTime local = LocalTimeAt(instant);
  std::int64_t year = 1970 + FloorDivide(local.day * 400, 146'097);
  while (FirstOfMarch(year + 1, calendar) <= local.day) ++year;
  while (FirstOfMarch(year, calendar) > local.day) --year;
  const std::int64_t dayOfYear = local.day - FirstOfMarch(year, calendar);
  const std::int64_t months = (5 * dayOfYear + 2) / 153;
  const bool beforeMarch = months >= 10;
  return {.calendar = calendar,
          .year = static_cast<std::int32_t>(year + (beforeMarch ? 1 : 0)),
          .month = static_cast<std::int32_t>(months + (beforeMarch ? -9 : 3)),
          .day = static_cast<std::int32_t>(dayOfYear - DaysOfMonths(months) + 1),
          .hour = static_cast<std::int32_t>(local.timeOfDay / 3'600'000),
          .minute = static_cast<std::int32_t>(local.timeOfDay / 60'000 % 60),
          .second = static_cast<std::int32_t>(local.timeOfDay / 1000 % 60),
          .millisecond = static_cast<std::int32_t>(local.timeOfDay % 1000)};
}

std::int64_t InstantOf(const JavaFields& fields) {
  const auto day = static_cast<std::uint64_t>(DayOf(fields, fields.calendar));
  const std::uint64_t localTime = day * kDay + static_cast<std::uint64_t>(TimeOfDay(fields));
  const std::int64_t offset =
      OffsetOfLocalTimeInSeconds(FloorDivide(static_cast<std::int64_t>(localTime), 1000)) * 1000;
  return static_cast<std::int64_t>(localTime - static_cast<std::uint64_t>(offset));
}

bool IsFromFirstGregorianDay(const JavaFields& fields) {
  return DayOf(fields, JavaCalendar::Gregorian) + FloorDivide(TimeOfDay(fields), kDay) >= kFirstGregorianDay;
}

std::int32_t OffsetAt(std::int64_t instant) {
  return static_cast<std::int32_t>(OffsetInSeconds(FloorDivide(instant, 1000)) * 1000);
}

std::int32_t StandardOffsetAt(std::int64_t instant) {
  return static_cast<std::int32_t>(StandardOffsetInSeconds(FloorDivide(instant, 1000)) * 1000);
}

}  // namespace zenqay
