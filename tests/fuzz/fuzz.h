// What the fuzz targets share. Each says how it reads an input and what must hold, whatever the input is:
//
//     FUZZ(input) {
//       if (!Succeeds([&] { … })) return;
//       Hold(Written(read) == input, "what was read is written as it was");
//     }
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "base/runtime_error.h"

namespace zenqay {

/// Ends the run, which keeps the input in a file, when what must hold does not.
inline void Hold(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "this does not hold: %s\n", what);
  std::abort();
}

/// False when the deed ends in a RuntimeError. Any other exception ends the run.
template <typename Deed>
bool Succeeds(Deed deed) {
  try {
    deed();
    return true;
  } catch (const RuntimeError&) {
    return false;
  }
}

}  // namespace zenqay

#define FUZZ(input)                                                                      \
  static void OneInput(std::string_view input);                                          \
  extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {    \
    if (size > 0) OneInput(std::string_view(reinterpret_cast<const char*>(data), size)); \
    return 0;                                                                            \
  }                                                                                      \
  static void OneInput(std::string_view input)
