// A database file copied with other values in it.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// What becomes of what a file holds. Nulls and fractions of numbers stay, a blob becomes zeros.
struct Rewriting {
  std::function<Text(std::string_view declaration)> declaration;  // of a table, an index, a view, a trigger
  std::function<Text(std::string_view name)> name;                // of a table, as `declaration` makes it
  std::function<Text(const Text& table, const Text& column, std::string_view text)> text;
  std::function<std::int64_t(const Text& table, const Text& column, std::int64_t number)> integer;
};

struct RewrittenTable {
  Text name;  // as it is in the new file
  std::int64_t rows = 0;
  std::int64_t changed = 0;  // cells
};

/// Fills the empty file `to` from the SQLite file `from`, whose tables keep their order of rows. `from` and what stands
/// beside it stay as they are. Raises what SQLite says, naming `from`.
std::vector<RewrittenTable> CopyRewritten(const Text& from, const Text& to, const Rewriting& rewriting);

}  // namespace zenqay
