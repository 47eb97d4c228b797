#include "components/dates/builtin_dates.h"

#include <chrono>
#include <cmath>
#include <cstdio>

#include "base/runtime_error.h"
#include "components/dates/java_time.h"

namespace zenqay {
namespace {

std::int64_t CurrentInstant() {
  using namespace std::chrono;
  return floor<milliseconds>(system_clock::now()).time_since_epoch().count();
}

/// Java's date, with its order of events: a setter only puts its field, and whatever is asked next carries all of them
/// over at once. A field that is put to the value that it has leaves the instant alone, which tells the two passes of
/// a repeated hour apart.
class Date : public Component {
 public:
  explicit Date(std::int64_t instant) { SetInstant(instant); }
  explicit Date(const JavaFields& fields) : fields_(fields) { CarryOver(); }

  Value Call(std::string_view operation, Arguments arguments) override;

 private:
  struct Getter {
    std::string_view name;
    Value (Date::*get)();
  };
  struct Setter {
    std::string_view name;
    void (Date::*set)(const Value& value);
  };
  static const Getter kGetters[];
  static const Setter kSetters[];

  Value Year() { return EraYear(Carried()) - 1900; }
  Value Month() { return Carried().month - 1; }
  Value Day() { return Carried().day; }
  Value Hours() { return Carried().hour; }
  Value Minutes() { return Carried().minute; }
  Value Seconds() { return Carried().second; }
  Value Time();
  Value TimeZoneOffset();
  Value LocaleText();

  void SetYear(const Value& year) { Assign(fields_.year, year.AsInt32() + std::int64_t{1900}); }
  void SetMonth(const Value& month);
  void SetDay(const Value& day) { Assign(fields_.day, day.AsInt32()); }
  void SetHours(const Value& hours) { Assign(fields_.hour, hours.AsInt32()); }
  void SetMinutes(const Value& minutes) { Assign(fields_.minute, minutes.AsInt32()); }
  void SetSeconds(const Value& seconds) { Assign(fields_.second, seconds.AsInt32()); }
  void SetTime(const Value& milliseconds);

  /// The number that a year has in its era: years before 1 AD have one too.
  static std::int32_t EraYear(const JavaFields& fields) { return fields.year > 0 ? fields.year : 1 - fields.year; }

  void SetInstant(std::int64_t instant);
  void Assign(std::int32_t& field, std::int64_t value);
  const JavaFields& Carried();
  void CarryOver();

  std::int64_t instant_ = 0;
  JavaFields fields_;
  bool carried_ = false;  // instant_ and fields_ are the same time, every field in its range
};

constexpr Date::Getter Date::kGetters[] = {
    {"getYear", &Date::Year},
    {"getMonth", &Date::Month},
    {"getDate", &Date::Day},
    {"getHours", &Date::Hours},
    {"getMinutes", &Date::Minutes},
    {"getSeconds", &Date::Seconds},
    {"getTime", &Date::Time},
    {"getTimeZoneOffset", &Date::TimeZoneOffset},
    {"toLocaleString", &Date::LocaleText},
};

constexpr Date::Setter Date::kSetters[] = {
    {"setYear", &Date::SetYear},   {"setMonth", &Date::SetMonth},     {"setDate", &Date::SetDay},
    {"setHours", &Date::SetHours}, {"setMinutes", &Date::SetMinutes}, {"setSeconds", &Date::SetSeconds},
    {"setTime", &Date::SetTime},
};

Value Date::Call(std::string_view operation, Arguments arguments) {
  for (const Getter& getter : kGetters) {
    if (!EqualsIgnoringCase(operation, getter.name)) continue;
    RequireArguments(operation, arguments, 0, kDateClass);
    return (this->*getter.get)();
  }
  for (const Setter& setter : kSetters) {
    if (!EqualsIgnoringCase(operation, setter.name)) continue;
    RequireArguments(operation, arguments, 1, kDateClass);
    (this->*setter.set)(arguments[0].value());
    return {};
  }
  RaiseNoSuchOperation(operation, kDateClass);
}

Value Date::Time() {
  Carried();
  return static_cast<double>(instant_);
}

Value Date::TimeZoneOffset() {
  Carried();
  return -OffsetAt(instant_) / 60'000;
}

Value Date::LocaleText() {
  static constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  Carried();
  const JavaFields fields = FieldsAt(instant_, CalendarAt(instant_));
  const int hour = fields.hour % 12 == 0 ? 12 : fields.hour % 12;
  char text[64];
  const int length =
      std::snprintf(text, sizeof text, "%s %d, %04d %d:%02d:%02d %s", kMonths[fields.month - 1], fields.day,
                    EraYear(fields), hour, fields.minute, fields.second, fields.hour < 12 ? "AM" : "PM");
  return Text(text, static_cast<std::size_t>(length));
}

/// A month out of its range moves the year at once.
void Date::SetMonth(const Value& month) {
  const std::int64_t months = month.AsInt32();
  const std::int64_t years = months / 12 - (months % 12 < 0 ? 1 : 0);
  Assign(fields_.year, fields_.year + years);
  Assign(fields_.month, months - years * 12 + 1);
}

void Date::SetTime(const Value& milliseconds) {
  const double whole = std::nearbyint(milliseconds.AsDouble());
  if (!(std::abs(whole) < 0x1p63)) throw RuntimeError(PlatformFault::Overflow);
  SetInstant(static_cast<std::int64_t>(whole));
}

void Date::SetInstant(std::int64_t instant) {
  instant_ = instant;
  fields_ = FieldsAt(instant, CalendarAt(instant));
  carried_ = true;
}

/// A number that 32 bits do not hold wraps around, as Java's do.
void Date::Assign(std::int32_t& field, std::int64_t value) {
  const auto wrapped = static_cast<std::int32_t>(value);
  if (field == wrapped) return;
  field = wrapped;
  carried_ = false;
}

const JavaFields& Date::Carried() {
  if (!carried_) CarryOver();
  return fields_;
}

/// The year says in which calendar the fields are read. In the year of the cutover the whole date says so, and so it
/// does for years whose instants 64 bits may not hold.
void Date::CarryOver() {
  constexpr std::int32_t kCutoverYear = 1582;
  constexpr std::int32_t kLastSureYear = 280'000'000;
  const bool gregorian = fields_.year == kCutoverYear ? IsFromFirstGregorianDay(fields_) : fields_.year > kCutoverYear;
  fields_.calendar = gregorian ? JavaCalendar::Gregorian : JavaCalendar::Julian;
  const std::int64_t instant = InstantOf(fields_);
  if (fields_.year == kCutoverYear || fields_.year > kLastSureYear || fields_.year < -kLastSureYear) {
    SetInstant(instant);
    return;
  }
  const JavaCalendar calendar = CalendarAt(instant);
  instant_ = instant;
  if (calendar != fields_.calendar) {  // days or hours led over the cutover: they count in the other calendar
    fields_.calendar = calendar;
    instant_ = InstantOf(fields_);
  }
  fields_ = FieldsAt(instant_, calendar);
  carried_ = true;
}

class CalendarObject : public Component {
 public:
  explicit CalendarObject(std::int64_t instant) : instant_(instant) {}

  Value Call(std::string_view operation, Arguments arguments) override {
    if (!EqualsIgnoringCase(operation, "get")) RaiseNoSuchOperation(operation, kCalendarClass);
    RequireArguments(operation, arguments, 1, kCalendarClass);
    const std::int32_t field = arguments[0].value().AsInt32();
    if (field != kZoneOffset) {
      throw RuntimeError(PlatformFault::InvalidCall, "get(" + std::to_string(field) + "), only ZONE_OFFSET is served",
                         kCalendarClass);
    }
    return StandardOffsetAt(instant_);
  }

  Value Get(std::string_view property) override {
    if (!EqualsIgnoringCase(property, "ZONE_OFFSET")) RaiseNoSuchOperation(property, kCalendarClass);
    return kZoneOffset;
  }

 private:
  static constexpr std::int32_t kZoneOffset = 15;  // Java's number of the field

  std::int64_t instant_;
};

}  // namespace

std::shared_ptr<ComponentHost> BuiltinDateHost::Make(const CatalogueElement&, const std::shared_ptr<ComponentHost>&) {
  return std::make_shared<BuiltinDateHost>();
}

Object BuiltinDateHost::Create(const Text& classId) {
  if (classId == kDateClass) return Object(std::make_shared<Date>(CurrentInstant()));
  if (classId == kCalendarClass) return Object(std::make_shared<CalendarObject>(CurrentInstant()));
  throw RuntimeError(PlatformFault::CannotCreateObject, classId, classId);
}

Object MakeDateObject(const DateTimeParts& localTime) {
  return Object(std::make_shared<Date>(JavaFields{.year = localTime.year,
                                                  .month = localTime.month,
                                                  .day = localTime.day,
                                                  .hour = localTime.hour,
                                                  .minute = localTime.minute,
                                                  .second = localTime.second}));
}

}  // namespace zenqay
