#include "components/files/key_range.h"

#include <limits>

#include "base/numbers.h"
#include "base/runtime_error.h"

namespace zenqay {
namespace {

[[noreturn]] void RaiseBound(const ExportColumn& column, std::string_view what, const Text& classId) {
  Text about = "a bound of " + column.name + " ";
  throw RuntimeError(PlatformFault::TypeMismatch, about.append(what), classId);
}

void RequireTextOrNumber(const ExportColumn& column, const Value& bound, const Text& classId) {
  if (bound.IsNull()) throw RuntimeError(PlatformFault::InvalidUseOfNull, "a bound of " + column.name, classId);
  const bool isNumber = bound.Is<std::int16_t>() || bound.Is<std::int32_t>() || bound.Is<double>();
  if (isNumber || bound.Is<Text>() || bound.Is<Empty>()) return;
  RaiseBound(column, "is neither a text nor a number", classId);
}

double NumberOf(const ExportColumn& column, const Value& bound, const Text& classId) {
  const Text* text = bound.If<Text>();
  if (text != nullptr && !IsNumeric(*text)) RaiseBound(column, "is no number", classId);
  return bound.AsDouble();
}

bool AdmitsEveryText(std::string_view highest) {
  return !highest.empty() && highest.find_first_not_of('\x7F') == std::string_view::npos;
}

}  // namespace

KeyRange::KeyRange(const ExportColumns& columns, std::size_t column, const Value& low, const Value& high,
                   const Text& classId)
    : column_(column), isNumber_(columns[column].type == ColumnType::Int) {
  RequireTextOrNumber(columns[column], low, classId);
  RequireTextOrNumber(columns[column], high, classId);
  if (isNumber_) {
    lowNumber_ = NumberOf(columns[column], low, classId);
    highNumber_ = NumberOf(columns[column], high, classId);
  } else {
    lowText_ = low.AsText();
    highText_ = high.AsText();
    hasHighText_ = !AdmitsEveryText(highText_);
  }
}

bool KeyRange::Admits(const CsvRecord& record) const {
  std::string_view text = record.TextOf(column_);
  if (text == kNullCell) text = {};
  if (isNumber_) {
    const std::int32_t number = IntOf(text);
    return lowNumber_ <= number && number <= highNumber_;
  }
  return lowText_ <= text && (!hasHighText_ || text <= highText_);
}

Text KeyRange::KeyOf(const CsvRecord& record) const {
  const std::string_view text = record.TextOf(column_);
  if (isNumber_) return std::to_string(IntOf(text));
  return text == kNullCell ? Text() : Text(text);
}

std::optional<Text> KeyRange::OnlyKey() const {
  if (!isNumber_) return lowText_ == highText_ && hasHighText_ ? std::optional(lowText_) : std::nullopt;
  constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
  if (lowNumber_ != highNumber_ || !(lowNumber_ >= kLowest && lowNumber_ <= kHighest)) return {};
  const auto number = static_cast<std::int32_t>(lowNumber_);
  return number == lowNumber_ ? std::optional(std::to_string(number)) : std::nullopt;
}

std::vector<std::size_t> KeyColumnsOf(const ExportColumns& columns) {
  std::vector<std::size_t> keys;
  for (std::size_t column = 0; column < columns.size(); ++column) {
    if (columns[column].isKey) keys.push_back(column);
  }
  return keys;
}

}  // namespace zenqay
