#include "check/erp_check.h"

#include "base/numbers.h"
#include "components/files/file_manager.h"
#include "components/files/reference_headers.h"
#include "entities/entity.h"
#include "erp/date_bridge.h"
#include "erp/session.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

void CheckAdapter(modDeclarations& process, CheckReport& report) {
  constexpr const char* kStep = "ERP adapter";
  double version = 0;
  try {
    version = AdapterVersion(process);
    process.components.Create(kAdapterAccessClass);
  } catch (const RuntimeError& error) {
    return report.Mend(kStep, CheckReport::ErrorText(error));
  }
  const Text shown = "version " + NumberText(version);
  if (version > kLastRefusedVersion) return report.Ok(kStep, shown);
  report.Warn(kStep, shown + ", which is not newer than " + NumberText(kLastRefusedVersion) +
                         ": a job runs without a session of the ERP");
}

void CheckStatusComponent(modDeclarations& process, CheckReport& report) {
  constexpr const char* kStep = "status component";
  if (process.NoStatusComponent) return report.Ok(kStep, "switched off by the twelfth item");
  report.Step(kStep, [&] {
    process.components.Create(kStatusClass).RequireCallable("getInstance", 1);
    return Text(kStatusClass);
  });
}

void CheckCriteria(modDeclarations& process, CheckReport& report) {
  report.Step("selection of changes", [&] {
    for (const char* classId :
         {kCriteriaClass, kCriteriaInputClass, kCriteriaOutputClass, kCriteriaPeriodClass, kCriteriaParameterClass}) {
      process.components.Create(classId);
    }
    return Text();
  });
}

/// Every manager is asked in the same way: all keys by ranges of a lowest and a highest value, or what changed by the
/// ERP's table and the criteria.
void RequireListing(const Object& manager, const EntitySource& source, std::int16_t syncMethod) {
  const std::optional<ManagerClass> names = ManagerClass::Read(source.managerClass);
  manager.RequireCallable("Initialize", 1);
  if (syncMethod == kOnlyChanged) manager.RequireCallable("NetList" + names->plural, 2);
  if (syncMethod != kOnlyChanged || source.listsForChanges) {
    manager.RequireCallable("List", 2 * KeyCountOf(names->fileStem));
  }
  manager.RequireCallable("Close", 0);
}

}  // namespace

void CheckErp(modDeclarations& process, const JobLine* line, CheckReport& report) {
  report.Step("date objects", [&] {
    InitErpDateLimits(process);
    return Text();
  });
  CheckAdapter(process, report);
  if (line == nullptr) return report.LeaveOut("status component", "the command line");
  CheckStatusComponent(process, report);
  if (line->syncMethod == kOnlyChanged) CheckCriteria(process, report);
}

void CheckManager(modDeclarations& process, const JobLine& line, const Text& tableName, CheckReport& report) {
  const Text step = "ERP component of " + tableName;
  const Entity* entity = FindEntity(tableName);
  const EntitySource* source = entity == nullptr ? nullptr : entity->SourceUnder(process.ErpGeneration);
  if (source == nullptr) {
    return report.Mend(step, "generation " + process.ErpGeneration + " has none, the copy would fail; take the table " +
                                 "out of the group in tstreenodes");
  }
  report.Step(step, [&] {
    const Object manager = process.components.Create(source->managerClass);
    RequireListing(manager, *source, line.syncMethod);
    return Text(source->managerClass);
  });
}

}  // namespace zenqay
