#include "components/operation_table.h"

namespace zenqay {

void OperationTable::AddAccessors(const Text& columnName, std::size_t column) {
  Add("has" + columnName, {RowVerb::Has, column});
  Add("get" + columnName, {RowVerb::Get, column});
  Add("set" + columnName, {RowVerb::Set, column});
}

const RowOperation* OperationTable::Find(std::string_view name) const {
  const auto found = operations_.find(name);
  return found == operations_.end() ? nullptr : &found->second;
}

/// The bit that letters of both cases differ in does not count; that some other characters then hash alike costs no
/// more than a second look.
std::size_t OperationTable::Hash::operator()(std::string_view name) const {
  constexpr char kCaseBit = 0x20;
  std::size_t hash = name.size();
  for (const char c : name) hash = hash * 31 + static_cast<unsigned char>(c | kCaseBit);
  return hash;
}

}  // namespace zenqay
