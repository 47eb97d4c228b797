// The operations of the rows of one listing, by name.
#pragma once

#include <unordered_map>

#include "base/text_functions.h"

namespace zenqay {

enum class RowVerb { Has, Get, Set, HasOldValues, GetOldValues };

struct RowOperation {
  RowVerb verb = RowVerb::Has;
  std::size_t column = 0;  // of Has, Get and Set
};

/// A row is asked up to a dozen times, each time by name: finding one takes no memory. Names are matched without regard
/// to the case of A to Z.
class OperationTable {
 public:
  /// Of operations with the same name the first one stays.
  void Add(Text name, RowOperation operation) { operations_.emplace(std::move(name), operation); }

  /// Adds hasX, getX and setX of a column X.
  void AddAccessors(const Text& columnName, std::size_t column);

  /// nullptr for a name that is not there.
  const RowOperation* Find(std::string_view name) const;

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const;
  };
  struct Equal {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const { return EqualsIgnoringCase(left, right); }
  };

  std::unordered_map<Text, RowOperation, Hash, Equal> operations_;
};

}  // namespace zenqay
