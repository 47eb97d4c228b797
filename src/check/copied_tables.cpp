#include "check/copied_tables.h"

#include <algorithm>

#include "entities/entity.h"

namespace zenqay {
namespace {

bool IsJoinedByExpiry(const Text& tableName) {
  const Entity* entity = FindEntity(tableName);
  return entity != nullptr && std::ranges::any_of(entity->sources, &EntitySource::isFollowedByWarrantyExpiry);
}

}  // namespace

bool HasCopy(const Text& tableName) {
  return FindEntity(tableName) != nullptr;
}

bool HasCopy(const Text& tableName, const Text& generation) {
  const Entity* entity = FindEntity(tableName);
  return entity != nullptr && entity->SourceUnder(generation) != nullptr;
}

std::vector<Text> CopiedNames() {
  std::vector<Text> names;
  for (const Entity* entity : Entities()) names.emplace_back(entity->name);
  return names;
}

bool MustFollow(const Text& tableName, const Text& other) {
  return EqualsIgnoringCase(tableName, other) || (IsJoinedByExpiry(tableName) && IsJoinedByExpiry(other));
}

}  // namespace zenqay
