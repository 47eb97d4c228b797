// Events of a copy job that somebody hears besides their sinks.
#pragma once

#include <functional>
#include <span>

#include "contracts/data_copy_events.h"

namespace zenqay {

/// Tells the listener of each event, then calls its sink. The name is the event's own, such as "DataCopyStarted", and
/// the arguments stand in the order of the sink's.
class HeardEvents : public DataCopyEvents {
 public:
  using Listener = std::function<void(std::string_view name, std::span<const Value> arguments)>;

  HeardEvents(DataCopyEvents& sinks, Listener listener) : sinks_(sinks), listener_(std::move(listener)) {}

  void DataCopyJob_DataCopyAlreadyInProgress(Value iTime, Value iTableName) override;
  void DataCopyJob_DataCopyComplete(Value iTime, Value iTableName, Value icount, Value ucount, Value dcount) override;
  void DataCopyJob_DataCopydone() override;
  void DataCopyJob_DataCopyError(Value iTime, Value iTableName, Value ieNumber, Value ieMessage) override;
  void DataCopyJob_DataCopyStarted(Value iTime, Value iTableName) override;

 private:
  void Tell(std::string_view name, std::initializer_list<Value> arguments) { listener_(name, arguments); }

  DataCopyEvents& sinks_;
  Listener listener_;
};

}  // namespace zenqay
