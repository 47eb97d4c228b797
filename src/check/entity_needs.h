// What the copy of each entity finds in the local database and in the ERP, by generation.
#pragma once

#include <optional>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// An entity under one generation.
struct EntityNeeds {
  Text managerClass;          // the component that lists it
  std::vector<Text> columns;  // of the local table: all that its statements name
};

/// The names in `tstables` that have a copy, in lower case.
const std::vector<Text>& EntityNames();

/// What the entity needs that a table of this name is copied from; the case does not count. Nothing for a name without
/// a copy, and for an entity that the generation's components do not have: its copy fails.
std::optional<EntityNeeds> NeedsOf(const Text& tableName, const Text& generation);

/// What the warranty expiry reads and writes behind the copy of objects or warranties: a table and its columns.
struct ExpiryNeeds {
  const char* table;
  std::vector<Text> columns;
};
const std::vector<ExpiryNeeds>& NeedsOfWarrantyExpiry();

}  // namespace zenqay
