// The system's own date values: a day of the proleptic Gregorian calendar with a time of day in whole seconds, local
// time without a zone.
#pragma once

#include <compare>
#include <cstdint>

#include "base/text_functions.h"

namespace zenqay {

/// The parts of a date-time as people read them. month 1 to 12, day 1 to 31, hour 0 to 23.
struct DateTimeParts {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

/// A date-time counted in seconds from the zero date, 30 December 1899, 00:00:00. A time of day alone is that time on
/// the zero date.
class DateTime {
 public:
  constexpr DateTime() = default;
  constexpr explicit DateTime(std::int64_t secondsFromZeroDate) : seconds_(secondsFromZeroDate) {}

  /// Parts out of their range carry over, as day 32 or minute -5 do. Raises 5 for a year outside 1 to 9999.
  static DateTime FromParts(const DateTimeParts& parts);

  constexpr std::int64_t seconds() const { return seconds_; }
  DateTimeParts Parts() const;

  /// The day without its time, and the time without its day.
  DateTime DateOnly() const;
  DateTime TimeOnly() const;

  constexpr auto operator<=>(const DateTime&) const = default;  // NOLINT(modernize-use-nullptr): there is no 0

 private:
  std::int64_t seconds_ = 0;
};

/// Calendar arithmetic, which keeps the time of day. Months and years clamp the day to the length of the month that
/// they lead to: 31 January plus one month is the last day of February. Raises 6 where days, 5 where months or years
/// lead outside the years 1 to 9999.
DateTime AddDays(DateTime value, std::int64_t dayCount);
DateTime AddMonths(DateTime value, std::int64_t months);
DateTime AddYears(DateTime value, std::int64_t years);

/// "1/31/2004"
Text ShortDate(DateTime value);

/// "10:11:12 AM"
Text LongTime(DateTime value);

/// The default text: the short date, then a blank and the long time when it has a time of day; the long time alone on
/// the zero date.
Text DefaultText(DateTime value);

/// "2004-01-31 10:11:12", the year not padded.
Text IsoText(DateTime value);

/// "20040131"
Text CompactDate(DateTime value);

/// Reads "YYYY-MM-DD", or that with " " or "T" and "hh:mm:ss" (a fraction of a second is dropped). The year has one to
/// four digits. False when the text has another form or names a day or a time that does not exist.
bool ReadIsoText(std::string_view text, DateTime& value);

}  // namespace zenqay
