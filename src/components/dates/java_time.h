// Local times as Java's date classes count them: the Julian calendar before 15 October 1582 and the Gregorian one
// from that day on, in the time zone of the process (TZ), which is read through the C library.
//
// Instants and offsets are milliseconds: instants since 1 January 1970 UTC, offsets positive east of Greenwich.
#pragma once

#include <cstdint>

namespace zenqay {

enum class JavaCalendar { Julian, Gregorian };

/// A local time in one of the two calendars. Every field but the month may be out of its range, and then counts for
/// the days, hours or minutes that it amounts to.
struct JavaFields {
  JavaCalendar calendar = JavaCalendar::Gregorian;
  std::int32_t year = 1970;  // 0 is 1 BC, -1 is 2 BC
  std::int32_t month = 1;    // 1 to 12
  std::int32_t day = 1;
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  std::int32_t second = 0;
  std::int32_t millisecond = 0;
};

/// The calendar that is in use at an instant.
JavaCalendar CalendarAt(std::int64_t instant);

/// The local time at an instant, in either calendar and with every field in its range.
JavaFields FieldsAt(std::int64_t instant, JavaCalendar calendar);

/// The instant of a local time. A time that a change of the clock skips is read by the offset before the change, one
/// that it repeats by the offset after it. Wraps around where 64 bits do not hold the instant, as Java does.
std::int64_t InstantOf(const JavaFields& fields);

/// True when the fields, read in the Gregorian calendar, are a time on or after its first day.
bool IsFromFirstGregorianDay(const JavaFields& fields);

/// The offset of local time from UTC. Before 1900 it is the zone's last standard offset: Java keeps no changes there.
std::int32_t OffsetAt(std::int64_t instant);

/// The offset without its share of daylight saving.
std::int32_t StandardOffsetAt(std::int64_t instant);

}  // namespace zenqay
