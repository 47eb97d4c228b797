// A file of local tables without the customer's names, keys and texts.
#pragma once

#include "control/anonymise/anonymiser.h"
#include "engines/sqlite/rewritten_copy.h"

namespace zenqay {

/// Fills the empty file `to` from the SQLite file `from`. Raises as CopyRewritten.
std::vector<RewrittenTable> AnonymiseTables(const Text& from, const Text& to, const Anonymiser& anonymiser);

}  // namespace zenqay
