// The events of a copy job.
#pragma once

#include "contracts/value.h"

namespace zenqay {

/// Who listens to a job. The job waits for each sink, and what a sink fails with leaves the step that raised the event.
///
/// `iTime` is the time of day. `iTableName` carries the table id: a 16-bit integer in a single-table job, the field
/// object of the group's query in an all-tables run.
class DataCopyEvents {
 public:
  virtual ~DataCopyEvents() = default;

  virtual void DataCopyJob_DataCopyAlreadyInProgress(Value iTime, Value iTableName) = 0;
  virtual void DataCopyJob_DataCopyComplete(Value iTime, Value iTableName, Value icount, Value ucount,
                                            Value dcount) = 0;
  virtual void DataCopyJob_DataCopydone() = 0;
  virtual void DataCopyJob_DataCopyError(Value iTime, Value iTableName, Value ieNumber, Value ieMessage) = 0;
  virtual void DataCopyJob_DataCopyStarted(Value iTime, Value iTableName) = 0;
};

}  // namespace zenqay
