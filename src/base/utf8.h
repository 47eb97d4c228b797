// Texts from outside, which may be no UTF-8 (shortest forms, no surrogates, up to U+10FFFF), and UTF-16.
#pragma once

#include <cstdint>
#include <optional>

#include "base/text_functions.h"

namespace zenqay {

/// How many bytes at the start are UTF-8. Behind them stands the end, or a byte that is no UTF-8: that one alone, what
/// follows it is looked at anew.
std::size_t Utf8Length(std::string_view bytes);

/// What a text in the ERP files must not be: no UTF-8, or one with a NUL byte. Empty when nothing is wrong.
std::string_view FlawOf(std::string_view bytes);

/// True for a text of U+0001 to U+007F alone: such a text has no flaw, and no part of it has one.
bool IsPlain(std::string_view bytes);

/// Writes the text as UTF-16 to `units`, which has room for as many units as the text has bytes, and gives their
/// number. Nothing for a text that is no UTF-8.
std::optional<std::size_t> WriteUtf16(std::string_view text, std::uint16_t* units);

/// Appends the text of UTF-16 units, U+FFFD for each half of a surrogate pair; false when there was one.
bool AppendUtf16(const std::uint16_t* units, std::size_t count, Text& text);

}  // namespace zenqay
