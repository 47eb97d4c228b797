#include "erp/date_bridge.h"

#include "base/numbers.h"
#include "contracts/named_calls.h"
#include "localdb/sql_literals.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

bool ShiftsByZone(const modDeclarations& process) {
  const Text product = process.ProductId;
  return product == "4010" || product == "4009";
}

/// The date object's local fields as a date value of the system.
DateTime ReadFields(const Object& date) {
  DateTimeParts parts;
  parts.year = RoundToInt16(CallForDouble(date, "getYear") + 1900);
  parts.month = RoundToInt16(CallForDouble(date, "getMonth") + 1);
  parts.day = RoundToInt16(CallForDouble(date, "getDate"));
  parts.hour = RoundToInt16(CallForDouble(date, "getHours"));
  parts.minute = RoundToInt16(CallForDouble(date, "getMinutes"));
  parts.second = RoundToInt16(CallForDouble(date, "getSeconds"));
  return DateTime::FromParts(parts);
}

/// January 1900 and everything before it counts as no date. All three fields are asked for, whatever the first says.
bool IsNoDate(const Object& date) {
  const std::int32_t year = CallForInt32(date, "getYear");
  const std::int32_t month = CallForInt32(date, "getMonth");
  const std::int32_t yearAgain = CallForInt32(date, "getYear");
  return (year == 0 && month == 0) || yearAgain < 0;
}

}  // namespace

void InitErpDateLimits(modDeclarations& process) {
  process.MinimumDate = process.components.Create(kDateClass);
  process.MaximumDate = process.components.Create(kDateClass);
  Object calendar = process.components.Create(kCalendarClass);
  const Value field = GetNamed(calendar, "ZONE_OFFSET");
  const double zoneMilliseconds = Naming("get", [&] { return calendar.Call("get", field).AsDouble(); });
  const std::int32_t zoneMinutes = RoundToInt32(zoneMilliseconds / 1000 / 60 * -1);
  calendar.Release();

  CallNamed(process.MinimumDate, "setTime", 0);
  CallNamed(process.MinimumDate, "setDate", 1);
  CallNamed(process.MinimumDate, "setmonth", 0);
  CallNamed(process.MinimumDate, "SetYear", 70);
  CallNamed(process.MinimumDate, "setMinutes", -zoneMinutes);

  CallNamed(process.MaximumDate, "setDate", 19);
  CallNamed(process.MaximumDate, "setmonth", 0);
  CallNamed(process.MaximumDate, "SetYear", 138);
  CallNamed(process.MaximumDate, "setHours", 3);
  CallNamed(process.MaximumDate, "setMinutes", 14 - zoneMinutes);
  CallNamed(process.MaximumDate, "setSeconds", 7);
}

bool ConvertErpDateToSql(modDeclarations& process, const Object& date, bool) {
  try {
    process.DateLiteral.clear();
    if (IsNoDate(date)) return false;
    if (ShiftsByZone(process)) {
      Object now = process.components.Create(kDateClass);
      const std::int32_t zoneOffset = CallForInt32(now, "getTimeZoneOffset");
      now.Release();
      const std::int32_t minutes = CallForInt32(date, "getMinutes");
      CallNamed(date, "setMinutes", CheckedAdd(minutes, zoneOffset));
    }
    Text literal = FormatDateTimeText(ReadFields(date));
    process.DateLiteral = WrapSqlDateTime(process, literal);
    return true;
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    Interruption::LetThrough(error);
    process.platform.NameCause(error);
    process.DateLiteral.clear();
    return false;
  }
}

Object GetCurrentErpDate(modDeclarations& process) {
  const Object date = process.components.Create(kDateClass);
  const DateTimeParts today = process.platform.Now().Parts();
  CallNamed(date, "setDate", today.day);
  CallNamed(date, "setmonth", today.month - 1);
  CallNamed(date, "SetYear", today.year - 1900);
  CallNamed(date, "setHours", process.platform.Now().Parts().hour);
  CallNamed(date, "setMinutes", process.platform.Now().Parts().minute);
  CallNamed(date, "setSeconds", process.platform.Now().Parts().second);
  return date;
}

Text GetCurrentSqlDateTime(modDeclarations& process) {
  try {
    const Object date = process.components.Create(kDateClass);
    if (ShiftsByZone(process)) {
      const std::int32_t minutes = CallForInt32(date, "getMinutes");
      const std::int32_t zoneOffset = CallForInt32(date, "getTimeZoneOffset");
      CallNamed(date, "setMinutes", CheckedAdd(minutes, zoneOffset));
    }
    Text literal = FormatDateTimeText(ReadFields(date));
    return WrapSqlDateTime(process, literal);
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    Interruption::LetThrough(error);
    process.platform.NameCause(error);
    return "NULL";
  }
}

Text FormatDateTimeText(const Value& date) {
  return IsoText(date.AsDateTime());
}

Text ZeroPad(const Value& value, const Value& width) {
  const Text text = value.AsText();
  const std::int32_t zeros = width.AsInt32() - static_cast<std::int32_t>(text.size());
  if (zeros < 0) throw RuntimeError(PlatformFault::InvalidCall);
  return Text(static_cast<std::size_t>(zeros), '0') + text;
}

}  // namespace zenqay
