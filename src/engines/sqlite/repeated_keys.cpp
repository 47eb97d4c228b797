#include "engines/sqlite/repeated_keys.h"

#include <algorithm>

#include "engines/dialect/sql_tokens.h"

namespace zenqay {
namespace {

/// `COLUMN = ?`, or a word or a number in the place of the value.
struct Term {
  std::string_view column;
  std::string_view text;
  std::optional<std::size_t> value;  // which of the shape's values it is
};

/// Reads an UPDATE of one table that sets columns, and finds rows by columns that are each equal to something.
class Reading {
 public:
  explicit Reading(std::string_view shape) : tokens_(shape) {}

  std::optional<RepeatedKeys> Run() {
    std::string_view table;
    if (!tokens_.Take("UPDATE") || !TakeName(table) || !tokens_.Take("SET")) return std::nullopt;
    if (!TakeTerms(set_, ",", "WHERE") || !TakeTerms(compared_, "AND", "") || SetsOneTwice()) return std::nullopt;

    RepeatedKeys found{.table = Text(table)};
    Text kept;
    for (const Term& term : set_) {
      if (const Term* compared = ComparedWith(term)) {
        found.keys.push_back({.column = Text(term.column), .set = *term.value, .compared = *compared->value});
      } else {
        kept += (kept.empty() ? "" : ", ") + Text(term.text);
      }
    }
    if (found.keys.empty() || kept.empty()) return std::nullopt;
    found.without = "UPDATE " + found.table + " SET " + kept + " WHERE ";
    for (const Term& term : compared_) found.without += (&term == compared_.data() ? "" : " AND ") + Text(term.text);
    return found;
  }

 private:
  bool TakeName(std::string_view& name) {
    const SqlToken token = tokens_.Next();
    name = token.text;
    return token.kind == SqlToken::Kind::Word;
  }

  /// Terms with `separator` between them, up to `end`.
  bool TakeTerms(std::vector<Term>& terms, std::string_view separator, std::string_view end) {
    while (true) {
      Term& term = terms.emplace_back();
      if (!TakeTerm(term)) return false;
      const SqlToken behind = tokens_.Next();
      if (EqualsIgnoringCase(behind.text, end)) return true;
      if (!EqualsIgnoringCase(behind.text, separator)) return false;
    }
  }

  bool TakeTerm(Term& term) {
    if (!TakeName(term.column) || !tokens_.Take("=")) return false;
    const SqlToken token = tokens_.Next();
    term.text = std::string_view(term.column.data(), token.end());
    if (token.text == "?") term.value = values_++;
    return term.value || token.kind == SqlToken::Kind::Word || token.kind == SqlToken::Kind::Number;
  }

  bool SetsOneTwice() const {
    return std::any_of(set_.begin(), set_.end(), [&](const Term& one) {
      return std::count_if(set_.begin(), set_.end(), [&](const Term& other) { return IsSameColumn(one, other); }) > 1;
    });
  }

  const Term* ComparedWith(const Term& set) const {
    const auto found = std::find_if(compared_.begin(), compared_.end(), [&](const Term& compared) {
      return set.value && compared.value && IsSameColumn(set, compared);
    });
    return found == compared_.end() ? nullptr : &*found;
  }

  static bool IsSameColumn(const Term& one, const Term& other) { return EqualsIgnoringCase(one.column, other.column); }

  SqlTokens tokens_;
  std::size_t values_ = 0;
  std::vector<Term> set_;
  std::vector<Term> compared_;
};

}  // namespace

std::optional<RepeatedKeys> FindRepeatedKeys(std::string_view shape) {
  return Reading(shape).Run();
}

}  // namespace zenqay
