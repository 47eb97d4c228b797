// Tables of the embedded engine that find their rows by number.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// The statement that makes a table, without the option WITHOUT ROWID; any other statement as it is.
Text WithRowIds(const Text& create);

}  // namespace zenqay
