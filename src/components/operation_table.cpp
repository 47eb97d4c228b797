#include "components/operation_table.h"

#include <cstring>

namespace zenqay {
namespace {

/// Setting this bit in every byte makes the letters of both cases equal. It makes some other characters equal as well,
/// which costs a hash no more than a second look.
constexpr std::uint64_t kCaseBits = 0x2020202020202020;

std::uint64_t Mixed(std::uint64_t hash, std::uint64_t eightBytes) {
  hash = (hash ^ (eightBytes | kCaseBits)) * 0x9E3779B97F4A7C15;
  return hash ^ (hash >> 32);
}

std::uint64_t HashOf(std::string_view name) {
  std::uint64_t hash = name.size();
  std::uint64_t eightBytes = 0;
  for (; name.size() >= sizeof eightBytes; name.remove_prefix(sizeof eightBytes)) {
    std::memcpy(&eightBytes, name.data(), sizeof eightBytes);
    hash = Mixed(hash, eightBytes);
  }
  eightBytes = 0;
  std::memcpy(&eightBytes, name.data(), name.size());
  return Mixed(hash, eightBytes);
}

}  // namespace

void OperationTable::Add(Text name, RowOperation operation) {
  entries_.push_back({HashOf(name), std::move(name), operation});
  if (entries_.size() * 2 > slots_.size()) {
    Grow();
  } else {
    Place(entries_.size() - 1);
  }
}

void OperationTable::AddAccessors(const Text& columnName, std::size_t column) {
  Add("has" + columnName, {RowVerb::Has, column});
  Add("get" + columnName, {RowVerb::Get, column});
  Add("set" + columnName, {RowVerb::Set, column});
}

const RowOperation* OperationTable::Find(std::string_view name) const {
  if (slots_.empty()) return nullptr;
  const std::uint64_t hash = HashOf(name);
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t slot = hash & mask; slots_[slot] != 0; slot = (slot + 1) & mask) {
    const Entry& entry = entries_[slots_[slot] - 1];
    if (entry.hash != hash) continue;
    if (entry.name == name || EqualsIgnoringCase(entry.name, name)) return &entry.operation;
  }
  return nullptr;
}

void OperationTable::Place(std::size_t entry) {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = entries_[entry].hash & mask;
  while (slots_[slot] != 0) slot = (slot + 1) & mask;
  slots_[slot] = static_cast<std::uint32_t>(entry + 1);
}

void OperationTable::Grow() {
  slots_.assign(slots_.empty() ? 16 : slots_.size() * 2, 0);
  for (std::size_t entry = 0; entry < entries_.size(); ++entry) Place(entry);
}

}  // namespace zenqay
