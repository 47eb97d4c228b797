#include "components/files/column_type.h"

#include <charconv>

#include "components/dates/builtin_dates.h"

namespace zenqay {
namespace {

constexpr std::size_t kDayLength = std::string_view("YYYY-MM-DD").size();
constexpr std::size_t kMomentLength = std::string_view("YYYY-MM-DDThh:mm:ss").size();

bool ReadInt(std::string_view text, std::int32_t& value) {
  const bool hasPlus = text.starts_with('+');
  if (hasPlus) text.remove_prefix(1);
  if (hasPlus && text.starts_with('-')) return false;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  return fault == std::errc() && end == text.data() + text.size();
}

/// The lengths and the place of the "T" leave only the form with two digits everywhere and four in the year.
bool ReadDay(std::string_view text, DateTime& day) {
  return text.size() == kDayLength && ReadIsoText(text, day);
}

bool ReadMoment(std::string_view text, DateTime& moment) {
  return text.size() == kMomentLength && text[kDayLength] == 'T' && ReadIsoText(text, moment);
}

}  // namespace

std::optional<ColumnType> ColumnTypeNamed(std::string_view name) {
  for (const ColumnType type : {ColumnType::Plain, ColumnType::Int, ColumnType::Date, ColumnType::DateTime}) {
    if (name == NameOf(type)) return type;
  }
  return {};
}

std::string_view NameOf(ColumnType type) {
  switch (type) {
    case ColumnType::Plain:
      return "text";
    case ColumnType::Int:
      return "int";
    case ColumnType::Date:
      return "date";
    case ColumnType::DateTime:
      return "datetime";
  }
  return {};
}

bool Reads(ColumnType type, std::string_view cell) {
  if (type == ColumnType::Plain || cell.empty() || cell == kNullCell) return true;
  std::int32_t number = 0;
  DateTime time;
  switch (type) {
    case ColumnType::Int:
      return ReadInt(cell, number);
    case ColumnType::Date:
      return ReadDay(cell, time);
    case ColumnType::DateTime:
      return ReadMoment(cell, time);
    default:
      return true;
  }
}

Value ValueOf(ColumnType type, std::string_view cell) {
  if (cell == kNullCell) return Null();
  if (cell.empty() || type == ColumnType::Plain || type == ColumnType::Date) return cell;
  if (type == ColumnType::Int) return IntOf(cell);
  DateTime moment;
  ReadMoment(cell, moment);
  return MakeDateObject(moment.Parts());
}

std::int32_t IntOf(std::string_view cell) {
  std::int32_t value = 0;
  ReadInt(cell, value);
  return value;
}

bool ReadUtcMoment(std::string_view text, DateTime& moment) {
  return text.ends_with('Z') && ReadMoment(text.substr(0, text.size() - 1), moment);
}

}  // namespace zenqay
