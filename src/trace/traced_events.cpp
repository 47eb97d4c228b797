#include "trace/traced_events.h"

namespace zenqay {

void TracedEvents::DataCopyJob_DataCopyAlreadyInProgress(Value iTime, Value iTableName) {
  trace_.Event("DataCopyAlreadyInProgress", {iTime, iTableName});
  inner_.DataCopyJob_DataCopyAlreadyInProgress(std::move(iTime), std::move(iTableName));
}

void TracedEvents::DataCopyJob_DataCopyComplete(Value iTime, Value iTableName, Value icount, Value ucount,
                                                Value dcount) {
  trace_.Event("DataCopyComplete", {iTime, iTableName, icount, ucount, dcount});
  inner_.DataCopyJob_DataCopyComplete(std::move(iTime), std::move(iTableName), std::move(icount), std::move(ucount),
                                      std::move(dcount));
}

void TracedEvents::DataCopyJob_DataCopydone() {
  trace_.Event("DataCopydone", {});
  inner_.DataCopyJob_DataCopydone();
}

void TracedEvents::DataCopyJob_DataCopyError(Value iTime, Value iTableName, Value ieNumber, Value ieMessage) {
  trace_.Event("DataCopyError", {iTime, iTableName, ieNumber, ieMessage});
  inner_.DataCopyJob_DataCopyError(std::move(iTime), std::move(iTableName), std::move(ieNumber), std::move(ieMessage));
}

void TracedEvents::DataCopyJob_DataCopyStarted(Value iTime, Value iTableName) {
  trace_.Event("DataCopyStarted", {iTime, iTableName});
  inner_.DataCopyJob_DataCopyStarted(std::move(iTime), std::move(iTableName));
}

}  // namespace zenqay
