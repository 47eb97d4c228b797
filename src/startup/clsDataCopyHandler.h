// The job handler: starts one job and tells the status component what the job's events say.
#pragma once

#include <memory>

#include "job/clsDataCopy.h"

namespace zenqay {

class clsDataCopyHandler : public DataCopyEvents {
 public:
  explicit clsDataCopyHandler(modDeclarations& process) : process_(process) {}

  /// Runs one job: one table, or all tables of the group for table id 128. A failure is recorded in the start-up log
  /// and goes no further, unless that record cannot be written.
  void HandleDataCopy(const Text& ConnString, const Text& DBName, std::int16_t iTableID, std::int16_t SyncMethod,
                      const Text& LogDirectory, const Text& BusComponent, std::int32_t DatabasePlatform);

  void DataCopyJob_DataCopyAlreadyInProgress(Value iTime, Value iTableName) override;
  void DataCopyJob_DataCopyComplete(Value iTime, Value iTableName, Value icount, Value ucount, Value dcount) override;
  void DataCopyJob_DataCopydone() override;
  void DataCopyJob_DataCopyError(Value iTime, Value iTableName, Value ieNumber, Value ieMessage) override;
  void DataCopyJob_DataCopyStarted(Value iTime, Value iTableName) override;

 private:
  void ObtainStatusComponent(Object& creator);

  /// The table id that the look-ups use; the status calls keep the event's own.
  std::int32_t LookupId(const Value& iTableName) const;

  void SendMessage(Value& iTime, const Text& message);
  void SendSyncStatus(Value& iTableName, std::int16_t status);
  void SendTableStatus(Value& iTableName, std::int32_t status);

  modDeclarations& process_;
  std::unique_ptr<clsDataCopy> DataCopyJob;
  Object StatusComponent;
  Value StatusDetail = Text();  // goes out empty; the status component may hand back a text, which nobody reads
  Value StatusMessage = Text();
};

}  // namespace zenqay
