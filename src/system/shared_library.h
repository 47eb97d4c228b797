// Libraries that are loaded while the program runs.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// What came of looking for a symbol.
struct LibrarySymbol {
  void* address = nullptr;
  Text fault;  // what is missing, when there is no address
};

/// Loads the library at a path of the operating system, which stays loaded, and looks for the symbol in it.
LibrarySymbol LoadSymbol(const Text& path, const char* symbol);

}  // namespace zenqay
