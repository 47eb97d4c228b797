#include "entities/entity.h"

#include <array>

#include "job/clsDataCopy.h"

namespace zenqay {

const EntitySource* Entity::SourceUnder(std::string_view generation) const {
  for (const EntitySource& source : sources) {
    if (source.generation == generation) return &source;
  }
  return nullptr;
}

std::span<const Entity* const> Entities() {
  static constexpr std::array kEntities = {
      &clsDataCopy::kSite,     &clsDataCopy::kProduct,        &clsDataCopy::kProblem,  &clsDataCopy::kSymptom,
      &clsDataCopy::kPriority, &clsDataCopy::kObject,         &clsDataCopy::kWarranty, &clsDataCopy::kSiteContract,
      &clsDataCopy::kContract, &clsDataCopy::kSerializedItem,
  };
  return kEntities;
}

const Entity* FindEntity(std::string_view tableName) {
  for (const Entity* entity : Entities()) {
    if (EqualsIgnoringCase(tableName, entity->name)) return entity;
  }
  return nullptr;
}

}  // namespace zenqay
