// Guessing what somebody meant to write.
#pragma once

#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// ` (did you mean "parallel"?)` for the word that differs least, without regard to case, where that is little enough
/// to be a slip; otherwise the words there are: ` (there are: a, b)`. Empty when there are none.
Text NearestWordHint(std::string_view written, const std::vector<Text>& words);

/// The words with ", " between them.
Text JoinedWords(const std::vector<Text>& words);

}  // namespace zenqay
