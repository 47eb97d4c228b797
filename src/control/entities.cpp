#include "control/entities.h"

#include "check/entity_needs.h"

namespace zenqay {
namespace {

bool IsJoinedByExpiry(const Text& tableName) {
  return EqualsIgnoringCase(tableName, "object") || EqualsIgnoringCase(tableName, "warranties");
}

}  // namespace

bool HasCopy(const Text& tableName) {
  for (const Text& name : EntityNames()) {
    if (EqualsIgnoringCase(name, tableName)) return true;
  }
  return false;
}

bool HasCopy(const Text& tableName, const Text& generation) {
  return NeedsOf(tableName, generation).has_value();
}

const std::vector<Text>& CopiedNames() {
  return EntityNames();
}

bool MustFollow(const Text& tableName, const Text& other) {
  return EqualsIgnoringCase(tableName, other) || (IsJoinedByExpiry(tableName) && IsJoinedByExpiry(other));
}

}  // namespace zenqay
