// What an operation comes to, as one text.
#pragma once

#include "base/runtime_error.h"

namespace zenqay {

/// The text that the deed gives, or the error that it raises: "13 ZenqayDBSync: Type mismatch".
template <typename Deed>
Text OutcomeOf(Deed deed) {
  try {
    return deed();
  } catch (const RuntimeError& error) {
    return std::to_string(error.number()) + " " + error.source() + ": " + error.description();
  }
}

/// What the deed raises, or "nothing".
template <typename Deed>
Text Raised(Deed deed) {
  return OutcomeOf([&] {
    deed();
    return Text("nothing");
  });
}

}  // namespace zenqay
