// What a value is for the job, and so how much of it may change.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

enum class Meaning {
  Words,    // a key, a name, a description: all of it changes, numbers too
  Number,   // a quantity, a code, a sequence number, a truth: stays where it is one
  Date,     // stays where it has the form of a date or a time
  Message,  // a text of the program with values in it
  System,   // one of the program's own words: stays
};

/// Whether a text of this meaning stays as it is.
bool Stays(Meaning meaning, std::string_view text);

}  // namespace zenqay
