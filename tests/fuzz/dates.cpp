// Dates as texts, as literals of a statement and as cells, and the calendar behind them.
#include <algorithm>
#include <cstring>

#include "components/files/column_type.h"
#include "engines/dialect/date_literals.h"
#include "fuzz/fuzz.h"

using namespace zenqay;

namespace {

void CheckMoment(DateTime moment) {
  const DateTimeParts parts = moment.Parts();
  const bool isInRange = parts.year >= 1 && parts.year <= 9999 && parts.month >= 1 && parts.month <= 12 &&
                         parts.day >= 1 && parts.day <= 31 && parts.hour >= 0 && parts.hour <= 23 &&
                         parts.minute >= 0 && parts.minute <= 59 && parts.second >= 0 && parts.second <= 59;
  Hold(isInRange, "the parts of a moment are in their ranges");
  Hold(DateTime::FromParts(parts) == moment, "a moment is the one of its parts");
  DateTime read;
  Hold(ReadIsoText(IsoText(moment), read) && read == moment, "a moment is read as it was written");
}

void CheckTexts(std::string_view input) {
  DateTime moment;
  if (ReadIsoText(input, moment)) CheckMoment(moment);
  for (const ColumnType type : {ColumnType::Int, ColumnType::Date, ColumnType::DateTime}) {
    if (Reads(type, input)) ValueOf(type, input);
  }
  if (ReadUtcMoment(input, moment)) {
    CheckMoment(moment);
    Hold(Reads(ColumnType::DateTime, input.substr(0, input.size() - 1)), "a moment in UTC is one with a Z behind it");
  }
}

void CheckLiterals(std::string_view input) {
  SqlTokens tokens(input);
  for (SqlToken token = tokens.Next(); token.kind != SqlToken::Kind::End; token = tokens.Next()) {
    const char* before = tokens.position();
    const std::optional<DateLiteral> date = TakeDate(token, tokens);
    Hold(date || tokens.position() == before, "what is no date is left where it stands");
    if (!date) continue;
    const bool isInside =
        date->text.data() > token.begin() && date->text.data() + date->text.size() < tokens.position();
    Hold(isInside, "a date stands between its quotes");
    if (date->value) CheckMoment(*date->value);
    if (date->value && !date->hasTime) Hold(date->value->TimeOnly() == DateTime(), "a date alone has no time");
  }
}

/// The calendar, by numbers of any size.
void CheckCalendar(std::string_view input) {
  std::int32_t numbers[7] = {};
  std::memcpy(numbers, input.data(), std::min(input.size(), sizeof numbers));
  DateTime moment;
  const DateTimeParts parts = {numbers[0] % 12'000, numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]};
  if (!Succeeds([&] { moment = DateTime::FromParts(parts); })) return;
  DateTime last = moment;
  Succeeds([&] { last = AddDays(moment, numbers[6]); });
  Succeeds([&] { last = AddMonths(moment, numbers[6]); });
  Succeeds([&] { last = AddYears(moment, numbers[6]); });
}

}  // namespace

FUZZ(input) {
  CheckTexts(input);
  CheckLiterals(input);
  CheckCalendar(input);
}
