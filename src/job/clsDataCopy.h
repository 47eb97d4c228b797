// One copy job: copies one table, or all tables of the generation's group, and raises what became of each.
#pragma once

#include <span>

#include "contracts/data_copy_events.h"
#include "process/modDeclarations.h"

namespace zenqay {

class Row;
class SqlText;
struct Entity;
struct FullCopy;
struct OnlyChangedPass;

/// What a table's copy came to.
enum class CopyResult : std::int16_t {
  Done = 0,     // it ran to its end, also when the table's name was unknown
  InUse = 1,    // another copy holds the table; nothing was done
  Stopped = 2,  // the job was asked to stop before it took the table; nothing was done
  Failed = -1   // the failure is in the run log and the table has been released
};

class clsDataCopy {
 public:
  clsDataCopy(modDeclarations& process, DataCopyEvents& events) : process_(process), events_(events) {}
  clsDataCopy(const clsDataCopy&) = delete;
  clsDataCopy& operator=(const clsDataCopy&) = delete;

  /// Copies one table. `LogFilePath` is the directory of the run logs. What fails outside the table's copy itself
  /// leaves this operation: no event is raised then and LocalConnection stays open. So does 18, when the job is asked
  /// to stop before it takes the table.
  void StartDataCopy(const Text& ConnectionString, const Text& LocalDatabase, std::int16_t TableID,
                     std::int16_t SyncMethod, const Text& LogFilePath, const Text& KXWBusComponent,
                     const Value& DatabasePlatform);

  /// Copies every table of the generation's group, one after the other, on one connection. A table that fails or is in
  /// use does not stop the next; what fails outside a table's copy leaves this operation. When the job is asked to
  /// stop, no further table is begun.
  void CopyAllTables(const Text& ConnectionString, const Text& LocalDatabase, std::int16_t SyncMethod,
                     const Text& LogFilePath, const Text& KXWBusComponent, const Value& DatabasePlatform);

  Text SQLEncodeForDate(const Value& i_sDateValue) const;
  Text SQLEncodeForDateTime(const Object& date) const;

  /// The description of an entity's failure: which table could not be copied from which ERP.
  Text FormatFailedMessage(const Text& sTable, const Text& sErp);

 private:
  friend class CopyFixture;  // the tests call the row operations one by one

  CopyResult CopySingleTable(const Text& ConnectionString, const Text& LocalDatabase, std::int16_t TableID,
                             std::int16_t SyncMethod, const Text& LogFilePath, const Text& KXWBusComponent);

  /// The same, and around it the lock of the table where jobs use one.
  CopyResult CopyGuardedTable(const Text& ConnectionString, const Text& LocalDatabase, std::int16_t TableID,
                              std::int16_t SyncMethod, const Text& LogFilePath, const Text& KXWBusComponent);

  // The entities, in their order: what each is, and its operations. CopyX chooses the pass by the sync method: 1 full,
  // 2 only changed, else nothing.
  friend std::span<const Entity* const> Entities();

  static const Entity kSite;
  void CopySite(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod);
  void CopySiteFull(const Text& TableName, const Text& KXWBusComponent);
  void CopySiteChanged(const Text& TableName, const Text& KXWBusComponent);
  void ApplySiteRow(const Row& row, const Text& TableName);

  static const Entity kProduct;
  void CopyProduct(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod);
  void CopyProductFull(const Text& TableName, const Text& KXWBusComponent);
  void CopyProductChanged(const Text& TableName, const Text& KXWBusComponent);
  void ApplyProductRow(const Row& row, const Text& TableName);

  static const Entity kProblem;
  void CopyProblem(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod);
  void CopyProblemFull(const Text& TableName, const Text& KXWBusComponent);
  void CopyProblemChanged(const Text& TableName, const Text& KXWBusComponent);
  void ApplyProblemRow(const Row& row, const Text& TableName);

  static const Entity kPriority;
  void CopyPriority(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod);
  void CopyPriorityFull(const Text& TableName, const Text& KXWBusComponent);
  void CopyPriorityChanged(const Text& TableName, const Text& KXWBusComponent);
  void ApplyPriorityRow(const Row& row, const Text& TableName);

  static const Entity kSymptom;
  void CopySymptom(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod);
  void CopySymptomFull(const Text& TableName, const Text& KXWBusComponent);
  void CopySymptomChanged(const Text& TableName, const Text& KXWBusComponent);
  void ApplySymptomRow(const Row& row, const Text& TableName);

  static const Entity kObject;
  void CopyObject(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod);
  void CopyObjectFull(const Text& TableName, const Text& KXWBusComponent);
  void CopyObjectChanged(const Text& TableName, const Text& KXWBusComponent);
  void ApplyObjectRow(const Row& row, const Text& TableName);

  static const Entity kSiteContract;
  void CopySiteContract(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod);
  void CopySiteContractFull(const Text& TableName, const Text& KXWBusComponent);
  void CopySiteContractChanged(const Text& TableName, const Text& KXWBusComponent);
  void ApplySiteContractRow(const Row& row, const Text& TableName);

  static const Entity kContract;
  void CopyContract(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod);
  void CopyContractFull(const Text& TableName, const Text& KXWBusComponent);
  void CopyContractChanged(const Text& TableName, const Text& KXWBusComponent);
  void ApplyContractRow(const Row& row, const Text& TableName);
  void ApplyContractChange(const Text& action, const Row& row, const Text& TableName);
  void DeleteContractRow(const Row& row, const Text& TableName);
  void UpdateContractRow(const Row& row, const Text& TableName);
  void InsertContractRow(const Row& row, const Text& TableName);

  static const Entity kWarranty;
  void CopyWarranty(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod);
  void CopyWarrantyFull(const Text& TableName, const Text& KXWBusComponent);
  void CopyWarrantyChanged(const Text& TableName, const Text& KXWBusComponent);
  void ApplyWarrantyRow(const Row& row, const Text& TableName);

  static const Entity kSerializedItem;
  void CopySerializedItem(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod);
  void CopySerializedItemFull(const Text& TableName, const Text& KXWBusComponent);
  void CopySerializedItemChanged(const Text& TableName, const Text& KXWBusComponent);
  void ApplySerializedItemRow(const Row& row, const Text& TableName);

  // Behind the copy of objects or warranties.
  void CalculateWarrantyExpiry();
  void StoreWarrantyExpiry(Recordset& row);
  void ComputeWarrantyExpiry(DateTime baseDate, std::int32_t numberOfPeriods, std::int32_t periodUnit,
                             DateTime& expiry);
  void ClampWarrantyDay();

  // The two passes, which every entity shares.
  void CopyFull(const Text& TableName, const Text& KXWBusComponent, const FullCopy& pass);
  void CopyOnlyChanged(const Text& TableName, const Text& KXWBusComponent, OnlyChangedPass& pass);
  void Sweep(const Text& TableName, RowCounts counts);
  [[noreturn]] void RaiseCopyFailure(const RuntimeError& error, const Text& failureSource, const Entity& entity,
                                     const Text& erpLabel);

  /// Runs the update of a row. True when it touched a row, which counts one, however many rows it was.
  bool CountUpdate(const SqlText& update);

  /// Runs the insert of a row, which counts only when it reports exactly one row.
  void CountInsert(const SqlText& insert);

  /// Runs the deletion of a row, which counts one, whether a row was there or not.
  void CountDelete(const SqlText& deletion);

  // The steps of CopySingleTable and of the two public operations.
  void TakeOver(const Text& TableName);
  void Dispatch(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod);
  void RunPostCopy(const Text& TableName);
  void SetRunLogPath(const Text& directory, std::int32_t tableId);
  void RaiseResult(CopyResult result, const Value& tableId);

  // Each raising takes the time of day at its moment.
  void RaiseStarted(const Value& tableId);
  void RaiseAlreadyInProgress(const Value& tableId);
  void RaiseError(const Value& tableId);
  void RaiseComplete(const Value& tableId);
  void RaiseDone();
  Value TimeOfDay();

  modDeclarations& process_;
  DataCopyEvents& events_;

  std::int32_t ucount = 0;  // rows updated in this table's copy
  std::int32_t icount = 0;  // rows inserted; a full copy folds the updated ones into it
  std::int32_t dcount = 0;  // rows deleted
  Text lutm;                // the literal of the table's new update time

  // Working values of the warranty calculation.
  std::int32_t WarrantyMonths = 0;
  std::int32_t WarrantyYears = 0;
  std::int32_t WarrantyDay = 0;
};

}  // namespace zenqay
