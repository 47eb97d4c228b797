#include "entities/passes.h"

#include "process/labels.h"

namespace zenqay {

void OpenSource(modDeclarations& process, const Entity& entity, const Opening& open, ErpSource& erp) {
  if (open) return open(erp);
  const EntitySource* source = entity.SourceUnder(process.ErpGeneration);
  if (source == nullptr) return;
  erp.manager = Manager(process.components.Create(source->managerClass));
  erp.tableCode = source->tableCode;
  erp.erpLabel = GetLabel(process, source->erpLabel);
}

std::span<const KeyField> KeysOf(const modDeclarations& process, const Entity& entity) {
  const EntitySource* source = entity.SourceUnder(process.ErpGeneration);
  return source == nullptr ? entity.sources.front().keys : source->keys;
}

}  // namespace zenqay
