#include "check/copied_tables.h"

#include <algorithm>

#include "entities/entity.h"
#include "postcopy/warranty_expiry.h"

namespace zenqay {
namespace {

constexpr std::int16_t kExpiryPlatform = 1;

const EntitySource* SourceOf(const Text& tableName, const Text& generation) {
  const Entity* entity = FindEntity(tableName);
  return entity == nullptr ? nullptr : entity->SourceUnder(generation);
}

bool IsJoinedByExpiry(const Text& tableName) {
  const Entity* entity = FindEntity(tableName);
  return entity != nullptr && std::ranges::any_of(entity->sources, &EntitySource::isFollowedByWarrantyExpiry);
}

}  // namespace

bool HasCopy(const Text& tableName) {
  return FindEntity(tableName) != nullptr;
}

bool HasCopy(const Text& tableName, const Text& generation) {
  return SourceOf(tableName, generation) != nullptr;
}

std::vector<Text> CopiedNames() {
  std::vector<Text> names;
  for (const Entity* entity : Entities()) names.emplace_back(entity->name);
  return names;
}

std::vector<Text> TablesNamedBy(const Text& tableName, const Text& generation, std::int16_t platform) {
  std::vector<Text> names = {"tstables", "tstreenodes", "tsi18ntext", tableName};
  if (!EndsInWarrantyExpiry(tableName, generation, platform)) return names;
  for (const ExpiryTable& table : kExpiryTables) {
    if (!EqualsIgnoringCase(table.name, tableName)) names.emplace_back(table.name);
  }
  return names;
}

std::vector<Text> KeyColumnsOf(const Text& tableName, const Text& generation) {
  std::vector<Text> columns;
  if (const EntitySource* source = SourceOf(tableName, generation)) {
    for (const KeyField& key : source->keys) columns.emplace_back(key.column);
  }
  return columns;
}

std::vector<Text> CopiedColumnsOf(const Text& tableName, const Text& generation) {
  std::vector<Text> columns;
  if (const EntitySource* source = SourceOf(tableName, generation)) {
    columns.assign(source->columns.begin(), source->columns.end());
  }
  return columns;
}

bool EndsInWarrantyExpiry(const Text& tableName, const Text& generation, std::int16_t platform) {
  const EntitySource* source = SourceOf(tableName, generation);
  return platform == kExpiryPlatform && source != nullptr && source->isFollowedByWarrantyExpiry;
}

bool MustFollow(const Text& tableName, const Text& other) {
  return EqualsIgnoringCase(tableName, other) || (IsJoinedByExpiry(tableName) && IsJoinedByExpiry(other));
}

}  // namespace zenqay
