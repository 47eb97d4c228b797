#include "contracts/heard_events.h"

namespace zenqay {

void HeardEvents::DataCopyJob_DataCopyAlreadyInProgress(Value iTime, Value iTableName) {
  Tell("DataCopyAlreadyInProgress", {iTime, iTableName});
  sinks_.DataCopyJob_DataCopyAlreadyInProgress(std::move(iTime), std::move(iTableName));
}

void HeardEvents::DataCopyJob_DataCopyComplete(Value iTime, Value iTableName, Value icount, Value ucount,
                                               Value dcount) {
  Tell("DataCopyComplete", {iTime, iTableName, icount, ucount, dcount});
  sinks_.DataCopyJob_DataCopyComplete(std::move(iTime), std::move(iTableName), std::move(icount), std::move(ucount),
                                      std::move(dcount));
}

void HeardEvents::DataCopyJob_DataCopydone() {
  Tell("DataCopydone", {});
  sinks_.DataCopyJob_DataCopydone();
}

void HeardEvents::DataCopyJob_DataCopyError(Value iTime, Value iTableName, Value ieNumber, Value ieMessage) {
  Tell("DataCopyError", {iTime, iTableName, ieNumber, ieMessage});
  sinks_.DataCopyJob_DataCopyError(std::move(iTime), std::move(iTableName), std::move(ieNumber), std::move(ieMessage));
}

void HeardEvents::DataCopyJob_DataCopyStarted(Value iTime, Value iTableName) {
  Tell("DataCopyStarted", {iTime, iTableName});
  sinks_.DataCopyJob_DataCopyStarted(std::move(iTime), std::move(iTableName));
}

}  // namespace zenqay
