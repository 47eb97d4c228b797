#include "job/clsDataCopy.h"

#include "base/memory_reserve.h"
#include "entities/entity.h"
#include "localdb/copy_state.h"
#include "localdb/local_connection.h"
#include "localdb/sql_literals.h"
#include "localdb/table_registry.h"
#include "process/labels.h"
#include "process/logs.h"

namespace zenqay {

void clsDataCopy::StartDataCopy(const Text& ConnectionString, const Text& LocalDatabase, std::int16_t TableID,
                                std::int16_t SyncMethod, const Text& LogFilePath, const Text& KXWBusComponent,
                                const Value& DatabasePlatform) {
  process_.DatabasePlatform = DatabasePlatform.AsInt16();
  SetRunLogPath(LogFilePath, TableID);
  OpenLocalConnection(process_, ConnectionString, LocalDatabase);
  const CopyResult result =
      CopyGuardedTable(ConnectionString, LocalDatabase, TableID, SyncMethod, LogFilePath, KXWBusComponent);
  RaiseResult(result, TableID);
  RaiseDone();
  CloseLocalConnection(process_);
}

Text clsDataCopy::SQLEncodeForDate(const Value& i_sDateValue) const {
  return zenqay::SQLEncodeForDate(i_sDateValue);
}

Text clsDataCopy::SQLEncodeForDateTime(const Object& date) const {
  return zenqay::SQLEncodeForDateTime(date);
}

Text clsDataCopy::FormatFailedMessage(const Text& sTable, const Text& sErp) {
  return FilledLabel(process_, "SLBL0507", sTable, sErp);
}

CopyResult clsDataCopy::CopyGuardedTable(const Text& ConnectionString, const Text& LocalDatabase, std::int16_t TableID,
                                         std::int16_t SyncMethod, const Text& LogFilePath,
                                         const Text& KXWBusComponent) {
  const Text TableName = GetTableName(process_, TableID);
  process_.listener->TableBegins(TableID, TableName);
  const bool isLocked = process_.safeguards.lock != TableLock::NotUsed;
  if (isLocked) {
    try {
      process_.LocalErrors = process_.LocalConnection->ErrorCollection();
      if (!process_.LocalConnection->TakeLock(TableName)) return CopyResult::InUse;
    } catch (...) {
      const RuntimeError error = ErrorInFlight();
      WriteErrorLog(process_, error);  // the flag is not this job's
      return CopyResult::Failed;
    }
  }
  const CopyResult result =
      CopySingleTable(ConnectionString, LocalDatabase, TableID, SyncMethod, LogFilePath, KXWBusComponent);
  process_.listener->PhaseBegins(JobPhase::End);
  if (isLocked) {
    try {
      process_.LocalConnection->GiveLockBack(TableName);
    } catch (...) {
      const RuntimeError error = ErrorInFlight();
      WriteErrorLog(process_, error);  // it goes with the session
    }
  }
  return result;
}

CopyResult clsDataCopy::CopySingleTable(const Text&, const Text&, std::int16_t TableID, std::int16_t SyncMethod,
                                        const Text&, const Text& KXWBusComponent) {
  SetMemoryAside();  // anew, where the table before this one has used it up
  Text TableName;
  try {
    icount = 0;
    ucount = 0;
    dcount = 0;
    TableName = GetTableName(process_, TableID);
    process_.LocalRecordset = process_.database.CreateRecordset();
    process_.LocalErrors = process_.LocalConnection->ErrorCollection();
    process_.LocalRecordset->PutActiveConnection(process_.LocalConnection);
    const bool isTaken = IsCopyInProgress(process_, TableName);
    if (isTaken && process_.safeguards.lock != TableLock::TakesOver) return CopyResult::InUse;
    if (process_.interruption->isRequested()) return CopyResult::Stopped;
    if (isTaken) TakeOver(TableName);
    SetCopyInProgress(process_, TableName);
    process_.listener->PhaseBegins(JobPhase::Copy);
    RaiseStarted(TableID);
    process_.interruption->Allow();
    Dispatch(TableName, KXWBusComponent, SyncMethod);
    RunPostCopy(TableName);
    process_.interruption->Forbid();
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    process_.interruption->Forbid();
    // The release runs also when this run never took the table.
    WriteErrorLog(process_, error);
    process_.listener->PhaseBegins(JobPhase::Release);
    ReleaseCopyInProgress(process_, TableName);
    return CopyResult::Failed;
  }
  process_.listener->PhaseBegins(JobPhase::Release);
  try {
    ReleaseCopyInProgress(process_, TableName);
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    WriteErrorLog(process_, error);  // the copy itself is complete
  }
  return CopyResult::Done;
}

void clsDataCopy::TakeOver(const Text& TableName) {
  process_.platform.NameCause("table " + TableName +
                              " was in use although nobody holds its lock: the flag was left behind by a job that is "
                              "gone, and the copy goes on");
  process_.listener->TakesOver();
}

void clsDataCopy::Dispatch(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (const Entity* entity = FindEntity(TableName)) {
    return (this->*entity->copy)(TableName, KXWBusComponent, SyncMethod);
  }
  process_.platform.ShowMessageBox(GetLabel(process_, "SLBL0302"));
}

void clsDataCopy::RunPostCopy(const Text& TableName) {
  const bool changed = icount > 0 || ucount > 0 || dcount > 0;
  if (process_.DatabasePlatform != 1 || !changed) return;
  UpdateTableStatistics(process_, TableName);
  const Entity* entity = FindEntity(TableName);
  const EntitySource* source = entity == nullptr ? nullptr : entity->SourceUnder(process_.ErpGeneration);
  if (source != nullptr && source->isFollowedByWarrantyExpiry) CalculateWarrantyExpiry();
}

void clsDataCopy::SetRunLogPath(const Text& directory, std::int32_t tableId) {
  const Text today = CompactDate(process_.platform.Now());
  process_.LogFilePath = directory + "\\" + Trim(GetTableName(process_, tableId)) + "_" + today + ".log";
}

void clsDataCopy::RaiseResult(CopyResult result, const Value& tableId) {
  switch (result) {
    case CopyResult::InUse:
      return RaiseAlreadyInProgress(tableId);
    case CopyResult::Failed:
      return RaiseError(tableId);
    case CopyResult::Done:
      return RaiseComplete(tableId);
    case CopyResult::Stopped:
      throw RuntimeError(PlatformFault::UserInterrupt);
  }
}

Value clsDataCopy::TimeOfDay() {
  return process_.platform.Now().TimeOnly();
}

void clsDataCopy::RaiseStarted(const Value& tableId) {
  events_.DataCopyJob_DataCopyStarted(TimeOfDay(), tableId);
}

void clsDataCopy::RaiseAlreadyInProgress(const Value& tableId) {
  events_.DataCopyJob_DataCopyAlreadyInProgress(TimeOfDay(), tableId);
}

void clsDataCopy::RaiseError(const Value& tableId) {
  const Text message = FilledLabel(process_, "SLBL0455", process_.LogFilePath);
  events_.DataCopyJob_DataCopyError(TimeOfDay(), tableId, std::int16_t{-1}, message);
}

void clsDataCopy::RaiseComplete(const Value& tableId) {
  events_.DataCopyJob_DataCopyComplete(TimeOfDay(), tableId, icount, ucount, dcount);
}

void clsDataCopy::RaiseDone() {
  events_.DataCopyJob_DataCopydone();
}

}  // namespace zenqay
