// What a text in the ERP files must not be.
#pragma once

#include <string_view>

namespace zenqay {

/// What is wrong with a text: it is no UTF-8 (shortest forms, no surrogates, up to U+10FFFF), or it holds a NUL byte.
/// Empty when nothing is.
std::string_view FlawOf(std::string_view bytes);

/// True for a text of U+0001 to U+007F alone: such a text has no flaw, and no part of it has one.
bool IsPlain(std::string_view bytes);

}  // namespace zenqay
