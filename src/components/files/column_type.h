// The types of the columns of an ERP file, and what their cells stand for.
#pragma once

#include <optional>

#include "contracts/value.h"

namespace zenqay {

enum class ColumnType { Plain, Int, Date, DateTime };

/// "text", "int", "date" and "datetime". Nothing for any other name.
std::optional<ColumnType> ColumnTypeNamed(std::string_view name);
std::string_view NameOf(ColumnType type);

/// The cell that is present and null. (A quoted cell without a character is the empty text, under every type.)
inline constexpr std::string_view kNullCell = "\\N";

/// True when the cell reads as its column's type: null and the empty text always do. An int is a sign or none and
/// digits, in 32 bits; a date YYYY-MM-DD and a datetime YYYY-MM-DDThh:mm:ss, which exist in the calendar.
bool Reads(ColumnType type, std::string_view cell);

/// What a cell that reads as its type is handed on as: null, a 32-bit integer, a date object that stands at the cell's
/// local time, or the text itself.
Value ValueOf(ColumnType type, std::string_view cell);

/// The value of an int cell; null and the empty text count as 0.
std::int32_t IntOf(std::string_view cell);

/// Reads YYYY-MM-DDThh:mm:ssZ. False for any other form, and for a day or a time that does not exist.
bool ReadUtcMoment(std::string_view text, DateTime& moment);

}  // namespace zenqay
