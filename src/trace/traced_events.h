// Event sinks that write the trace. They exist only while a trace is written.
#pragma once

#include "contracts/data_copy_events.h"
#include "trace/trace.h"

namespace zenqay {

/// Writes each event before its sink is called.
class TracedEvents : public DataCopyEvents {
 public:
  TracedEvents(DataCopyEvents& inner, Trace& trace) : inner_(inner), trace_(trace) {}

  void DataCopyJob_DataCopyAlreadyInProgress(Value iTime, Value iTableName) override;
  void DataCopyJob_DataCopyComplete(Value iTime, Value iTableName, Value icount, Value ucount, Value dcount) override;
  void DataCopyJob_DataCopydone() override;
  void DataCopyJob_DataCopyError(Value iTime, Value iTableName, Value ieNumber, Value ieMessage) override;
  void DataCopyJob_DataCopyStarted(Value iTime, Value iTableName) override;

 private:
  DataCopyEvents& inner_;
  Trace& trace_;
};

}  // namespace zenqay
