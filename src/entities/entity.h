// What an entity is, told once, beside its statements: under which name its table stands in `tstables`, what it is
// called, where it comes from under each generation, which columns its statements name and what follows its copy.
#pragma once

#include <cstdint>
#include <span>

#include "base/text_functions.h"
#include "erp/row_key.h"

namespace zenqay {

class clsDataCopy;

/// An entity under one generation of the ERP.
struct EntitySource {
  const char* generation;
  const char* managerClass;              // the component that lists it
  const char* tableCode;                 // of a net-change listing
  const char* erpLabel;                  // key of the text that names the ERP in a failure's description
  std::span<const char* const> columns;  // of the local table: all that the statements name
  std::span<const KeyField> keys;        // by which a row's statements find its local row
  bool isFollowedByWarrantyExpiry = false;
  bool listsForChanges = false;  // an only-changed pass completes its rows by the listing of a full copy
};

struct Entity {
  const char* name;   // in `tstables`, in lower case
  const char* label;  // key of the entity's caption
  std::span<const EntitySource> sources;
  bool hasPrimaryKey = true;  // over the keys; false where one of them may be unknown
  void (clsDataCopy::*copy)(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod);

  /// Null under a generation whose components do not have the entity. Its copy fails then.
  const EntitySource* SourceUnder(std::string_view generation) const;
};

/// All entities, in the order in which a table's name is compared with theirs.
std::span<const Entity* const> Entities();

/// The entity that a table of this name is copied from; the case does not count. Null for a name without a copy.
const Entity* FindEntity(std::string_view tableName);

}  // namespace zenqay
