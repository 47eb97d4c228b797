#include "erp/session.h"

#include "contracts/named_calls.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"
#include "process/logs.h"

namespace zenqay {
namespace {

bool AdapterIsNewEnough(modDeclarations& process) {
  return AdapterVersion(process) > kLastRefusedVersion;
}

Object ObjectOf(const Object& owner, std::string_view property) {
  return Naming(owner, property, [&] { return owner.Get(property).AsObject(); });
}

}  // namespace

double AdapterVersion(modDeclarations& process) {
  const Object info = process.components.Create(kAdapterInfoClass);
  return Naming(info, "getVersion", [&] { return info.Get("getVersion").AsDouble(); });
}

bool OpenErpSession(modDeclarations& process) {
  try {
    if (!AdapterIsNewEnough(process)) return false;
    if (process.ErpSession.IsNothing()) {
      const Object access = process.components.Create(kAdapterAccessClass);
      const Object toolkit = ObjectOf(access, "kxiToolKit_getDefaultToolkit");
      process.ErpSession = ObjectOf(toolkit, "createUserSession");
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
