#include "startup/clsDataCopyHandler.h"

#include "contracts/named_calls.h"
#include "localdb/table_registry.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"
#include "process/logs.h"
#include "process/status_codes.h"
#include "startup/modStartUp.h"

namespace zenqay {
void clsDataCopyHandler::HandleDataCopy(const Text& ConnString, const Text& DBName, std::int16_t iTableID,
                                        std::int16_t SyncMethod, const Text& LogDirectory, const Text& BusComponent,
                                        std::int32_t DatabasePlatform) {
  Object creator;  // of the status component; behind a failure it goes once that is recorded
  try {
    if (!process_.NoStatusComponent) ObtainStatusComponent(creator);
    DataCopyJob = std::make_unique<clsDataCopy>(process_, process_.eventsThrough(*this));
    process_.AllTablesRun = false;
    if (iTableID != kAllTables) {
      DataCopyJob->StartDataCopy(ConnString, DBName, iTableID, SyncMethod, LogDirectory, BusComponent,
                                 DatabasePlatform);
    } else {
      process_.AllTablesRun = true;
      DataCopyJob->CopyAllTables(ConnString, DBName, SyncMethod, LogDirectory, BusComponent, DatabasePlatform);
    }
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    WriteStartupErrorLog(process_, LogDirectory, error);
  }
}

void clsDataCopyHandler::ObtainStatusComponent(Object& creator) {
  creator = process_.components.Create(kStatusClass);
  Value instance = process_.InstanceNumber;
  StatusComponent = Naming(creator, "getInstance",
                           [&] { return creator.Call("getInstance", Argument::ByReference(instance)).AsObject(); });
  process_.InstanceNumber = instance.AsInt16();  // passed by reference, so the component may change it
  PutNamed(creator, "CurrentInstanceNumber", process_.InstanceNumber);
  creator.Release();
  if (StatusComponent.IsNothing()) throw RuntimeError(100, "Handle Data Copy", GetLabel(process_, "SLBL0120"));
}

void clsDataCopyHandler::DataCopyJob_DataCopyAlreadyInProgress(Value iTime, Value iTableName) {
  if (!process_.NoStatusComponent) {
    const std::int32_t id = LookupId(iTableName);
    SendMessage(iTime, FilledLabel(process_, "SLBL0007", GetTableCaption(process_, id), GetErpTableId(process_, id)));
  }
  SendTableStatus(iTableName, kTableInUse);
}

void clsDataCopyHandler::DataCopyJob_DataCopyComplete(Value iTime, Value iTableName, Value icount, Value ucount,
                                                      Value dcount) {
  if (!process_.NoStatusComponent) {
    const std::int32_t id = LookupId(iTableName);
    SendMessage(iTime, FilledLabel(process_, "SLBL0010", GetTableCaption(process_, id), GetErpTableId(process_, id),
                                   icount.AsText(), ucount.AsText(), dcount.AsText()));
    SendSyncStatus(iTableName, kSyncComplete);
  }
  SendTableStatus(iTableName, kTableComplete);
}

void clsDataCopyHandler::DataCopyJob_DataCopydone() {
  if (!process_.NoStatusComponent) StatusComponent.Release();
}

void clsDataCopyHandler::DataCopyJob_DataCopyError(Value iTime, Value iTableName, Value ieNumber, Value ieMessage) {
  if (!process_.NoStatusComponent) {
    const std::int32_t id = LookupId(iTableName);
    SendMessage(iTime, FilledLabel(process_, "SLBL0006", GetTableCaption(process_, id), GetErpTableId(process_, id)));
    StatusMessage =
        FilledLabel(process_, "SLBL0133", GetTableName(process_, id), ieNumber.AsText(), ieMessage.AsText());
    CallNamed(StatusComponent, "WriteToAlertBox", Argument::ByReference(iTime), Argument::ByReference(StatusMessage));
    SendSyncStatus(iTableName, kSyncFailed);
  }
  SendTableStatus(iTableName, kTableFailed);
}

void clsDataCopyHandler::DataCopyJob_DataCopyStarted(Value iTime, Value iTableName) {
  if (!process_.NoStatusComponent) {
    const std::int32_t id = LookupId(iTableName);
    SendMessage(iTime, FilledLabel(process_, "SLBL0009", GetTableCaption(process_, id), GetErpTableId(process_, id)));
    SendSyncStatus(iTableName, kSyncStarted);
  }
  SendTableStatus(iTableName, kTableStarted);
}

std::int32_t clsDataCopyHandler::LookupId(const Value& iTableName) const {
  Text id = iTableName.AsText();
  const Text product = process_.ProductId;
  if (product == "1028" && iTableName.EqualsNumber(99)) id = "18";
  return Value(id).AsInt32();
}

void clsDataCopyHandler::SendMessage(Value& iTime, const Text& message) {
  StatusMessage = message;
  CallNamed(StatusComponent, "writeToMessageBox", Argument::ByReference(iTime), Argument::ByReference(StatusMessage));
}

void clsDataCopyHandler::SendSyncStatus(Value& iTableName, std::int16_t status) {
  CallNamed(StatusComponent, "UpdateSyncStatus", Argument::ByReference(iTableName), status);
}

void clsDataCopyHandler::SendTableStatus(Value& iTableName, std::int32_t status) {
  if (!process_.TableStatusEnabled) return;
  Value handle = process_.StatusHandle;
  CallNamed(StatusComponent, "UpdateStatusByTable", Argument::ByReference(handle), Argument::ByReference(iTableName),
            status, Argument::ByReference(StatusDetail));
  process_.StatusHandle = handle.AsInt32();  // passed by reference too
}

}  // namespace zenqay
