// The two passes are written once, as CopyFull and CopyOnlyChanged of the job; what an entity says to them is what is
// particular to it.
#pragma once

#include <functional>
#include <vector>

#include "entities/entity.h"
#include "erp/component_contract.h"
#include "process/modDeclarations.h"

namespace zenqay {

/// An entity's way into the ERP, as far as a pass has got with it.
struct ErpSource {
  Manager manager;
  Text tableCode;  // of a net-change listing
  Text erpLabel;   // the text that names the ERP in a failure's description
};

/// How a pass gets into the ERP.
using Opening = std::function<void(ErpSource&)>;

struct FullCopy {
  const Entity& entity;
  Opening open;  // left out where the manager of the generation is opened as everywhere
  std::function<Enumeration(const Manager&)> list;
  std::function<void(const Row&)> apply;
};

/// A range over one key field of a net-change listing.
struct ListingRange {
  Text fieldName;
  Value from;
  Value to;
};

/// A field that a net-change listing is asked for: its new value, or its old value as well.
struct OutputField {
  OutputField(const char* fieldName, bool wantsOld = false) : name(fieldName), withOld(wantsOld) {}

  Text name;
  bool withOld;
};
inline OutputField WithOld(const char* name) {
  return {name, true};
}

struct OnlyChangedPass {
  const Entity& entity;
  Text failureSource;              // what the source of a failure names
  ErpSource erp;                   // what is settled before the failure path is armed; the opening settles the rest
  Opening open;                    // as in a full copy
  std::size_t parameterCount = 1;  // parameter objects that are created; the ranges use the first of them
  std::vector<ListingRange> ranges;
  std::vector<OutputField> fields;                             // asked for in this order
  Text listing;                                                // the manager's operation
  std::function<void(const Row&, const Text& action)> change;  // applies or deletes; the action is trimmed
};

/// Opens the entity for a pass: creates the manager of the generation, takes its ERP table and the ERP's name. Under a
/// generation without the entity nothing is opened, and the first use of the manager fails.
void OpenSource(modDeclarations& process, const Entity& entity, const Opening& open, ErpSource& erp);

/// By which the entity's rows are known; those of its first generation where the generation does not have it, since
/// some classes are asked for under every one.
std::span<const KeyField> KeysOf(const modDeclarations& process, const Entity& entity);

}  // namespace zenqay
