#include "erp/session.h"

#include "erp/component_contract.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"
#include "process/logs.h"

namespace zenqay {
namespace {

bool AdapterIsNewEnough(modDeclarations& process) {
  return AdapterVersion(process) > kLastRefusedVersion;
}

}  // namespace

double AdapterVersion(modDeclarations& process) {
  const Object info = process.components.Create(kAdapterInfoClass);
  return info.Get("getVersion").AsDouble();
}

bool OpenErpSession(modDeclarations& process) {
  try {
    if (!AdapterIsNewEnough(process)) return false;
    if (process.ErpSession.IsNothing()) {
      const Object access = process.components.Create(kAdapterAccessClass);
      const Object toolkit = access.Get("kxiToolKit_getDefaultToolkit").AsObject();
      process.ErpSession = toolkit.Get("createUserSession").AsObject();
    }
    return true;
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    process.ErpSession.Release();
    // The label's text stands in the place of a directory: unless it names one, this write fails, and that failure
    // ends the process's start.
    WriteStartupErrorLog(process, GetLabel(process, "SLBL0278"), error);
    return false;
  }
}

Object RegisterManager(modDeclarations& process, const Object& manager) {
  if (process.ErpSession.IsNothing()) return manager;
  Value reference = manager;
  CallNamed(process.ErpSession, "addManager", Argument::ByReference(reference));
  return reference.AsObject();
}

}  // namespace zenqay
