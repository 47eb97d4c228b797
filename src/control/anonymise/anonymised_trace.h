// A trace without the customer's names, keys and texts.
#pragma once

#include "control/anonymise/anonymiser.h"

namespace zenqay {

struct AnonymisedTrace {
  std::int64_t lines = 0;
  std::int64_t changed = 0;  // texts and numbers
  bool endIsCut = false;     // the last line was not whole and is left out
};

/// Appends to the file at `to`, which is made for its owner alone, what the trace at `from` says, line by line. Raises
/// WrongUsage, naming file and line, for what is no trace.
AnonymisedTrace AnonymiseTrace(const Text& from, const Text& to, const Anonymiser& anonymiser);

}  // namespace zenqay
