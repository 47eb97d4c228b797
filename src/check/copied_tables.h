// What the controlling program asks of the entities: which tables have a copy, under which generation.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// True when a table of this name can be copied under any generation; the case does not count.
bool HasCopy(const Text& tableName);

/// True when the components of the generation have what a table of this name is copied from.
bool HasCopy(const Text& tableName, const Text& generation);

/// The names that have a copy, in lower case.
std::vector<Text> CopiedNames();

/// The tables that the statements of a table's copy name: the control tables, the table itself and, on a platform whose
/// copies end in the warranty expiry, what that joins.
std::vector<Text> TablesNamedBy(const Text& tableName, const Text& generation, std::int16_t platform);

/// The columns by which a row's statements find its local row; all columns that they name. Empty for a table that
/// nothing is copied into.
std::vector<Text> KeyColumnsOf(const Text& tableName, const Text& generation);
std::vector<Text> CopiedColumnsOf(const Text& tableName, const Text& generation);

/// Whether the copy of the table ends in the warranty expiry.
bool EndsInWarrantyExpiry(const Text& tableName, const Text& generation, std::int16_t platform);

/// True when the copies of two tables of one database must follow each other: a table with itself, and objects with
/// warranties, whose copies both end in the expiry that joins the two.
bool MustFollow(const Text& tableName, const Text& other);

}  // namespace zenqay
