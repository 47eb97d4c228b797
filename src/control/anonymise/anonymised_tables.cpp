#include "control/anonymise/anonymised_tables.h"

namespace zenqay {

std::vector<RewrittenTable> AnonymiseTables(const Text& from, const Text& to, const Anonymiser& anonymiser) {
  const Vocabulary& vocabulary = anonymiser.vocabulary();
  return CopyRewritten(
      from, to,
      {.declaration = [&](std::string_view text) { return anonymiser.Statement(text); },
       .name = [&](std::string_view name) { return anonymiser.Name(name); },
       .text = [&](const Text& table, const Text& column,
                   std::string_view text) { return anonymiser.Value(vocabulary.OfColumn(table, column), text); },
       .integer =
           [&](const Text& table, const Text& column, std::int64_t number) {
             return vocabulary.OfColumn(table, column) == Meaning::Words ? anonymiser.Number(number) : number;
           }});
}

}  // namespace zenqay
