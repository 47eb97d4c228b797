// The operations of the rows of one listing, by name.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

enum class RowVerb { Has, Get, Set, HasOldValues, GetOldValues };

struct RowOperation {
  RowVerb verb = RowVerb::Has;
  std::size_t column = 0;  // of Has, Get and Set
};

/// A row is asked up to a dozen times, each time by name: finding one takes no memory and about as long as hashing the
/// name. Names are matched without regard to the case of A to Z.
class OperationTable {
 public:
  /// Of operations with the same name the first one stays.
  void Add(Text name, RowOperation operation);

  /// Adds hasX, getX and setX of a column X.
  void AddAccessors(const Text& columnName, std::size_t column);

  /// nullptr for a name that is not there.
  const RowOperation* Find(std::string_view name) const;

 private:
  struct Entry {
    std::uint64_t hash;
    Text name;
    RowOperation operation;
  };

  void Place(std::size_t entry);
  void Grow();

  std::vector<Entry> entries_;
  std::vector<std::uint32_t> slots_;  // open addressing: an entry's number from 1, 0 where nothing stands
};

}  // namespace zenqay
