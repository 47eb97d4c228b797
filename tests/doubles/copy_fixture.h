// One copy job between doubles: everything that it says stands in `journal`, its logs in a directory of its own.
//
//     CopyFixture copy("1");
//     copy.AddManager("Kv40QTMtssmaLocations.LocationsManager", "locations", {copy.RowWith({{"Location", "A1"}})});
//     copy.CopyTable(1, "Site", /*SyncMethod=*/1);
//     EXPECT_EQ(copy.journal.Take(), "…");
#pragma once

#include "doubles/process_fixture.h"
#include "erp/component_contract.h"
#include "job/clsDataCopy.h"

namespace zenqay {

class EmbeddedDatabase;

class CopyFixture : public ProcessFixture, public DataCopyEvents {
 public:
  /// A job of the generation on the platform, with LocalConnection open, a session named `session`, the texts of
  /// share/I18nText.xml, and the run log at RunLogPath(). The date objects stand at 31 January 2004, 10:11:12 UTC; the
  /// time zone of the process is set to UTC. The journal starts empty.
  explicit CopyFixture(const Text& generation = "1", std::int16_t databasePlatform = 1);

  /// The same on a real database; the journal then shows what is said to the ERP alone.
  CopyFixture(const Text& generation, EmbeddedDatabase& file);

  clsDataCopy job;

  /// Row operations, called one by one.
  using RowOperation = void (clsDataCopy::*)(const Row&, const Text&);
  static RowOperation ApplySiteRow() { return &clsDataCopy::ApplySiteRow; }
  static RowOperation ApplyProductRow() { return &clsDataCopy::ApplyProductRow; }
  static RowOperation ApplyProblemRow() { return &clsDataCopy::ApplyProblemRow; }
  static RowOperation ApplyPriorityRow() { return &clsDataCopy::ApplyPriorityRow; }
  static RowOperation ApplySymptomRow() { return &clsDataCopy::ApplySymptomRow; }
  static RowOperation ApplyObjectRow() { return &clsDataCopy::ApplyObjectRow; }
  static RowOperation ApplySiteContractRow() { return &clsDataCopy::ApplySiteContractRow; }
  static RowOperation ApplyContractRow() { return &clsDataCopy::ApplyContractRow; }
  static RowOperation ApplyWarrantyRow() { return &clsDataCopy::ApplyWarrantyRow; }
  static RowOperation ApplySerializedItemRow() { return &clsDataCopy::ApplySerializedItemRow; }

  void Apply(RowOperation operation, const RowFields& fields, const Text& TableName);
  void ApplyTo(RowOperation operation, const Object& row, const Text& TableName) {
    (job.*operation)(Row(row), TableName);
  }

  Object RowWith(const RowFields& fields) { return components.MakeRow(fields); }

  /// A manager of the class id that takes Initialize, List, Close and every NetList… and gives an enumeration named
  /// `rows` over the rows; and the five criteria objects, named criteria, input, output, period and parameter.
  std::shared_ptr<ScriptedObject> AddManager(const Text& classId, const Text& name, std::vector<Object> rows = {});

  /// The five criteria objects alone.
  void RegisterCriteria();

  void ApplyContractChange(const Text& action, const Object& row, const Text& TableName) {
    job.ApplyContractChange(action, Row(row), TableName);
  }

  /// An entity's copy without what CopySingleTable does around it: its failure comes out as it was raised.
  void CopySite(const Text& TableName, std::int16_t SyncMethod) { job.CopySite(TableName, "100", SyncMethod); }
  void CopyProduct(const Text& TableName, std::int16_t SyncMethod) { job.CopyProduct(TableName, "100", SyncMethod); }
  void CopyProblem(const Text& TableName, std::int16_t SyncMethod) { job.CopyProblem(TableName, "100", SyncMethod); }
  void CopyPriority(const Text& TableName, std::int16_t SyncMethod) { job.CopyPriority(TableName, "100", SyncMethod); }
  void CopySymptom(const Text& TableName, std::int16_t SyncMethod) { job.CopySymptom(TableName, "100", SyncMethod); }
  void CopyObject(const Text& TableName, std::int16_t SyncMethod) { job.CopyObject(TableName, "100", SyncMethod); }
  void CopySiteContract(const Text& TableName, std::int16_t SyncMethod) {
    job.CopySiteContract(TableName, "100", SyncMethod);
  }
  void CopyContract(const Text& TableName, std::int16_t SyncMethod) { job.CopyContract(TableName, "100", SyncMethod); }
  void CopyWarranty(const Text& TableName, std::int16_t SyncMethod) { job.CopyWarranty(TableName, "100", SyncMethod); }
  void CopySerializedItem(const Text& TableName, std::int16_t SyncMethod) {
    job.CopySerializedItem(TableName, "100", SyncMethod);
  }

  void CalculateWarrantyExpiry() { job.CalculateWarrantyExpiry(); }

  /// The expiry that the base date leads to, when it starts at the zero date.
  DateTime WarrantyExpiry(DateTime baseDate, std::int32_t numberOfPeriods, std::int32_t periodUnit) {
    DateTime expiry;
    job.ComputeWarrantyExpiry(baseDate, numberOfPeriods, periodUnit, expiry);
    return expiry;
  }

  /// The day that the clamp leaves for these counts.
  std::int32_t ClampedDay(std::int32_t months, std::int32_t years, std::int32_t day) {
    job.WarrantyMonths = months;
    job.WarrantyYears = years;
    job.WarrantyDay = day;
    job.ClampWarrantyDay();
    return job.WarrantyDay;
  }

  /// The day that the latest calculation worked with.
  std::int32_t WarrantyDay() const { return job.WarrantyDay; }

  /// Puts a table into the registry and copies it by CopySingleTable, on the business component "100".
  CopyResult CopyTable(std::int16_t tableId, const Text& tableName, std::int16_t SyncMethod);

  void SetCounters(std::int32_t icount, std::int32_t ucount, std::int32_t dcount) {
    job.icount = icount;
    job.ucount = ucount;
    job.dcount = dcount;
  }

  /// What follows a table's copy that ended well, with the counters as they stand.
  void RunPostCopy(const Text& tableName) { job.RunPostCopy(tableName); }

  /// The row of `tstables` that every state query of the job gives.
  void SetState(const TableRow& row) { database.Answer("", {row}); }

  /// "ucount 0, icount 1, dcount 0"
  Text Counters() const;

  /// The journal without the lines that begin with one of these.
  Text JournalWithout(const std::vector<Text>& beginnings);

  Text RunLogPath() const { return process.LogFilePath; }

  // Events stand in the journal: `event DataCopyStarted(time(10:11:12 AM), i16(1))`.
  void DataCopyJob_DataCopyAlreadyInProgress(Value iTime, Value iTableName) override;
  void DataCopyJob_DataCopyComplete(Value iTime, Value iTableName, Value icount, Value ucount, Value dcount) override;
  void DataCopyJob_DataCopydone() override;
  void DataCopyJob_DataCopyError(Value iTime, Value iTableName, Value ieNumber, Value ieMessage) override;
  void DataCopyJob_DataCopyStarted(Value iTime, Value iTableName) override;

 private:
  void Open(const Text& generation, const Text& connectionString);
};

}  // namespace zenqay
