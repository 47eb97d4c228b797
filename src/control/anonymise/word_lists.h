// The words that stand in no table of the program.
#pragma once

#include <string_view>

namespace zenqay {

/// The words of the statements that the job composes, and of how a local table is declared.
std::string_view StatementWords();

/// Words of which databases, their drivers and the operating system make messages, and those of the program's own that
/// are neither labels nor on the page of failures.
std::string_view MessageWords();

/// docs/failures.md, which quotes every text that a log can hold.
std::string_view FailuresPage();

}  // namespace zenqay
