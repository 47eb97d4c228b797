#include "engines/odbc/prepared_shape.h"

#include <algorithm>
#include <charconv>

#include "base/text_functions.h"

namespace zenqay {
namespace {

constexpr std::int64_t kFewRuns = 64;

/// The number of characters; blanks at the end are cut off where there is no room for them.
std::int64_t CharactersOf(std::string_view literal) {
  literal = literal.substr(0, literal.find_last_not_of(' ') + 1);
  const auto begins = [](char unit) { return (unit & 0xC0) != 0x80; };
  return std::count_if(literal.begin(), literal.end(), begins) - std::count(literal.begin(), literal.end(), '\'') / 2;
}

std::int64_t MeasureOf(const StatementValue& value) {
  switch (value.kind) {
    case StatementValue::Kind::Literal:
      return CharactersOf(value.text);
    case StatementValue::Kind::Integer: {
      std::int64_t number = 0;
      std::from_chars(value.text.data(), value.text.data() + value.text.size(), number);
      return number;
    }
    default:
      return 0;
  }
}

}  // namespace

void PreparedShape::Learn(const StatementShape& shape) {
  taken_.resize(shape.values.size(), -1);
  for (std::size_t i = 0; i < taken_.size(); ++i) taken_[i] = std::max(taken_[i], MeasureOf(shape.values[i]));
}

bool PreparedShape::Takes(const StatementShape& shape) const {
  if (isRefused_) return false;
  if (!StartsWithIgnoringCase(TrimLeft(shape.text), "UPDATE")) return true;
  for (std::size_t i = 0; i < taken_.size(); ++i) {
    if (MeasureOf(shape.values[i]) > taken_[i]) return false;
  }
  return true;
}

void PreparedShape::SetPrepared(std::unique_ptr<PreparedStatement> statement) {
  statement_ = std::move(statement);
  dueAt_ = std::max(kFewRuns, runs_ * 2);
}

bool AreMeasured(std::string_view types) {
  constexpr std::string_view kMeasured[] = {
      "text", "\"character varying\"",          "character", "smallint", "integer", "bigint",
      "date", "\"timestamp without time zone\""};
  if (!types.starts_with('{') || !types.ends_with('}')) return false;
  const std::vector<std::string_view> all = Split(types.substr(1, types.size() - 2), ",");
  return std::all_of(all.begin(), all.end(), [&](std::string_view type) {
    return std::find(std::begin(kMeasured), std::end(kMeasured), type) != std::end(kMeasured);
  });
}

}  // namespace zenqay
