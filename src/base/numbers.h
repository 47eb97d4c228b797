// Texts as numbers and numbers as integers and texts, by the one set of rules that the whole system uses.
//
// A numeric text is: blanks around, a sign, digits with at most one point, an exponent; nothing else. So "1e3", " 7",
// "+5" and ".5" are numeric, and "", "-", "1,5", "12abc", "1.5e" and "&H10" are not.
#pragma once

#include <cstdint>

#include "base/text_functions.h"

namespace zenqay {

/// True when the whole of the text reads as a number.
bool IsNumeric(std::string_view text);

/// The value of a wholly numeric text. Raises 13 for any other text, 6 for a number beyond a double.
double ToDouble(std::string_view text);

/// The value of the longest leading part that reads as a number, 0 when there is none. Raises 6 beyond a double.
double Val(std::string_view text);

/// To the nearest integer, a half to the even neighbour. Raises 6 out of range, also for what is no number.
std::int16_t RoundToInt16(double value);
std::int32_t RoundToInt32(double value);

/// Raises 6 when a count of rows does not fit its receiver.
std::int16_t FitInt16(std::int64_t value);
std::int32_t FitInt32(std::int64_t value);

/// Adds in 32 bits. Raises 6 when the sum does not fit.
std::int32_t CheckedAdd(std::int32_t left, std::int32_t right);

/// Multiplies in 32 bits. Raises 6 when the product does not fit.
std::int32_t CheckedMultiply(std::int32_t left, std::int32_t right);

/// The default text of a number: up to 15 significant digits, "1E+300" beyond them, no grouping.
Text NumberText(double value);

/// The decimal text with a sign column: " 7", " 0", "-7".
Text SignColumnText(std::int32_t value);

}  // namespace zenqay
