// Rows as columns for people.
#pragma once

#include <ostream>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// Writes the rows with two blanks between the columns, each as wide as its widest text; the last column ends a line
/// as it is. The first row holds the titles.
void WriteTextTable(std::ostream& out, const std::vector<std::vector<Text>>& rows);

}  // namespace zenqay
