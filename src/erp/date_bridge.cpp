#include "erp/date_bridge.h"

#include "base/numbers.h"
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
  parts.year = RoundToInt16(date.Call("getYear").AsDouble() + 1900);
  parts.month = RoundToInt16(date.Call("getMonth").AsDouble() + 1);
  parts.day = RoundToInt16(date.Call("getDate").AsDouble());
  parts.hour = RoundToInt16(date.Call("getHours").AsDouble());
  parts.minute = RoundToInt16(date.Call("getMinutes").AsDouble());
  parts.second = RoundToInt16(date.Call("getSeconds").AsDouble());
  return DateTime::FromParts(parts);
}

/// January 1900 and everything before it counts as no date. All three fields are asked for, whatever the first says.
bool IsNoDate(const Object& date) {
  const std::int32_t year = date.Call("getYear").AsInt32();
  const std::int32_t month = date.Call("getMonth").AsInt32();
  const std::int32_t yearAgain = date.Call("getYear").AsInt32();
  return (year == 0 && month == 0) || yearAgain < 0;
}

}  // namespace

void InitErpDateLimits(modDeclarations& process) {
  process.MinimumDate = process.components.Create(kDateClass);
  process.MaximumDate = process.components.Create(kDateClass);
  Object calendar = process.components.Create(kCalendarClass);
  const Value field = calendar.Get("ZONE_OFFSET");
  const double zoneMilliseconds = calendar.Call("get", field).AsDouble();
  const std::int32_t zoneMinutes = RoundToInt32(zoneMilliseconds / 1000 / 60 * -1);
  calendar.Release();

  process.MinimumDate.Call("setTime", 0);
  process.MinimumDate.Call("setDate", 1);
  process.MinimumDate.Call("setmonth", 0);
  process.MinimumDate.Call("SetYear", 70);
  process.MinimumDate.Call("setMinutes", -zoneMinutes);

  process.MaximumDate.Call("setDate", 19);
  process.MaximumDate.Call("setmonth", 0);
  process.MaximumDate.Call("SetYear", 138);
  process.MaximumDate.Call("setHours", 3);
  process.MaximumDate.Call("setMinutes", 14 - zoneMinutes);
  process.MaximumDate.Call("setSeconds", 7);
}

bool ConvertErpDateToSql(modDeclarations& process, const Object& date, bool) {
  try {
    process.DateLiteral.clear();
    if (IsNoDate(date)) return false;
    if (ShiftsByZone(process)) {
      Object now = process.components.Create(kDateClass);
      const std::int32_t zoneOffset = now.Call("getTimeZoneOffset").AsInt32();
      now.Release();
      const std::int32_t minutes = date.Call("getMinutes").AsInt32();
      date.Call("setMinutes", CheckedAdd(minutes, zoneOffset));
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
  date.Call("setDate", today.day);
  date.Call("setmonth", today.month - 1);
  date.Call("SetYear", today.year - 1900);
  date.Call("setHours", process.platform.Now().Parts().hour);
  date.Call("setMinutes", process.platform.Now().Parts().minute);
  date.Call("setSeconds", process.platform.Now().Parts().second);
  return date;
}

Text GetCurrentSqlDateTime(modDeclarations& process) {
  try {
    const Object date = process.components.Create(kDateClass);
    if (ShiftsByZone(process)) {
      const std::int32_t minutes = date.Call("getMinutes").AsInt32();
      const std::int32_t zoneOffset = date.Call("getTimeZoneOffset").AsInt32();
      date.Call("setMinutes", CheckedAdd(minutes, zoneOffset));
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
