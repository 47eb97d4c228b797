// What the programs say of themselves.
#pragma once

#include <optional>

#include "base/text_functions.h"

namespace zenqay {

/// The answer to a command line that is nothing but `--version` or `--help`; none for every other one. `help` is the
/// program's own text.
std::optional<Text> AnswerToQuestion(const Text& commandLine, const Text& program, const Text& help);

Text ProgramVersion();

/// The help of zenqay-dbsync.
Text JobHelp();

/// What the help texts of both programs say of the items of the command line.
const char* ItemsHelp();

}  // namespace zenqay
