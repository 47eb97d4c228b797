// What the controlling program asks of the entities: which tables have a copy, under which generation.
#pragma once

#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// True when a table of this name can be copied under any generation; the case does not count.
bool HasCopy(const Text& tableName);

/// True when the components of the generation have what a table of this name is copied from.
bool HasCopy(const Text& tableName, const Text& generation);

/// The names that have a copy, in lower case.
std::vector<Text> CopiedNames();

/// True when the copies of two tables of one database must follow each other: a table with itself, and objects with
/// warranties, whose copies both end in the expiry that joins the two.
bool MustFollow(const Text& tableName, const Text& other);

}  // namespace zenqay
