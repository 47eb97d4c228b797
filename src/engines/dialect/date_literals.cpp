#include "engines/dialect/date_literals.h"

#include <array>
#include <chrono>

#include "base/text_reader.h"

namespace zenqay {
namespace {

using Kind = SqlToken::Kind;

constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

/// The parts of a date-time as they are written, with the hour of a twelve-hour clock. They may name no real day or
/// time.
struct WrittenDate {
  int month = 0;
  int day = 0;
  int year = 0;
  int hour = 12;
  int minute = 0;
  int second = 0;
  bool isAfternoon = false;
};

bool TakeMonthName(TextReader& reader, int& month) {
  for (std::size_t index = 0; index < kMonths.size(); ++index) {
    if (!reader.Mark(kMonths[index])) continue;
    month = static_cast<int>(index) + 1;
    return true;
  }
  return false;
}

/// "10:11:12 AM" up to the end.
bool ReadTime(TextReader& reader, WrittenDate& date) {
  if (!reader.Number(1, 2, date.hour) || !reader.Mark(":") || !reader.Number(2, 2, date.minute) || !reader.Mark(":") ||
      !reader.Number(2, 2, date.second)) {
    return false;
  }
  date.isAfternoon = reader.Mark(" PM");
  return (date.isAfternoon || reader.Mark(" AM")) && reader.atEnd();
}

/// "1/31/2004", or that and " 10:11:12 AM".
bool ReadSlashDate(std::string_view text, WrittenDate& date) {
  TextReader reader(text);
  if (!reader.Number(1, 2, date.month) || !reader.Mark("/") || !reader.Number(1, 2, date.day) || !reader.Mark("/") ||
      !reader.Number(1, 4, date.year)) {
    return false;
  }
  return reader.atEnd() || (reader.Mark(" ") && ReadTime(reader, date));
}

/// "Jan 31, 2004 10:11:12 AM"
bool ReadNamedMonthDate(std::string_view text, WrittenDate& date) {
  TextReader reader(text);
  return TakeMonthName(reader, date.month) && reader.Mark(" ") && reader.Number(1, 2, date.day) && reader.Mark(", ") &&
         reader.Number(1, 4, date.year) && reader.Mark(" ") && ReadTime(reader, date);
}

std::optional<DateTime> Existing(const WrittenDate& date) {
  const std::chrono::year_month_day day(std::chrono::year(date.year),
                                        std::chrono::month(static_cast<unsigned>(date.month)),
                                        std::chrono::day(static_cast<unsigned>(date.day)));
  const bool isTime = date.hour >= 1 && date.hour <= 12 && date.minute <= 59 && date.second <= 59;
  if (!day.ok() || date.year < 1 || !isTime) return std::nullopt;
  return DateTime::FromParts({.year = date.year,
                              .month = date.month,
                              .day = date.day,
                              .hour = date.hour % 12 + (date.isAfternoon ? 12 : 0),
                              .minute = date.minute,
                              .second = date.second});
}

DateLiteral FromSlashDate(std::string_view text) {
  WrittenDate date;
  if (!ReadSlashDate(text, date)) return {text, true, std::nullopt};
  return {text, true, Existing(date)};
}

DateLiteral FromIsoDateTime(std::string_view text) {
  DateTime value;
  if (!ReadIsoText(text, value)) return {text, true, std::nullopt};
  return {text, true, value};
}

DateLiteral FromIsoDate(std::string_view text) {
  constexpr std::string_view kLongest = "2004-01-31";
  DateTime value;
  if (text.size() > kLongest.size() || !ReadIsoText(text, value)) return {text, false, std::nullopt};
  return {text, false, value};
}

std::optional<DateLiteral> TakeConvert(SqlTokens& tokens) {
  if (!tokens.Take("(") || !tokens.Take("DATETIME") || !tokens.Take(",")) return std::nullopt;
  const SqlToken literal = tokens.Next();
  if (literal.kind != Kind::Literal || !tokens.Take(",")) return std::nullopt;
  const SqlToken style = tokens.Next();
  if (!tokens.Take(")")) return std::nullopt;
  if (style.text == "120") return FromIsoDateTime(literal.Content());
  if (style.text == "101") return FromSlashDate(literal.Content());
  return std::nullopt;
}

std::optional<DateLiteral> TakeToDate(SqlTokens& tokens) {
  if (!tokens.Take("(")) return std::nullopt;
  const SqlToken literal = tokens.Next();
  if (literal.kind != Kind::Literal || !tokens.Take(",") || !tokens.Take("'yyyy-mm-dd HH24:MI:SS'"))
    return std::nullopt;
  if (!tokens.Take(")")) return std::nullopt;
  return FromIsoDateTime(literal.Content());
}

std::optional<DateLiteral> TakeBraced(SqlTokens& tokens) {
  if (!tokens.Take("d")) return std::nullopt;
  const SqlToken literal = tokens.Next();
  if (literal.kind != Kind::Literal || !tokens.Take("}")) return std::nullopt;
  return FromIsoDate(literal.Content());
}

std::optional<DateLiteral> FromNamedMonthDate(std::string_view text) {
  constexpr std::string_view kShortest = "Jan 1, 1 1:11:12 AM";
  WrittenDate date;
  if (text.size() < kShortest.size() || !ReadNamedMonthDate(text, date)) return std::nullopt;
  return DateLiteral{text, true, Existing(date)};
}

using Form = std::optional<DateLiteral> (*)(SqlTokens&);

/// The form of more than one token that starts with this one; null when none does.
Form FormStartingWith(const SqlToken& first) {
  if (first.kind == Kind::Word) {
    if (EqualsIgnoringCase(first.text, "CONVERT")) return TakeConvert;
    return EqualsIgnoringCase(first.text, "TO_DATE") ? TakeToDate : nullptr;
  }
  return first.kind == Kind::Other && first.text.front() == '{' ? TakeBraced : nullptr;
}

}  // namespace

std::optional<DateLiteral> TakeDate(const SqlToken& first, SqlTokens& tokens) {
  if (first.kind == Kind::Literal) return FromNamedMonthDate(first.Content());
  const Form takeForm = FormStartingWith(first);
  if (takeForm == nullptr) return std::nullopt;
  SqlTokens ahead = tokens;
  std::optional<DateLiteral> date = takeForm(ahead);
  if (date) tokens = ahead;
  return date;
}

}  // namespace zenqay
