// What a deed fails with, as one text.
#pragma once

#include "runtime/runtime_error.h"

namespace zenqay {

/// "9 ZenqayDBSync: Subscript out of range", or "nothing".
template <typename Deed>
Text Raised(Deed deed) {
  try {
    deed();
  } catch (const RuntimeError& error) {
    return std::to_string(error.number()) + " " + error.source() + ": " + error.description();
  }
  return "nothing";
}

}  // namespace zenqay
