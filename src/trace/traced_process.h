// A process whose seams and events write the trace.
#pragma once

#include <optional>

#include "contracts/heard_events.h"
#include "process/interruptible_components.h"
#include "process/modDeclarations.h"
#include "trace/traced_components.h"
#include "trace/traced_database.h"
#include "trace/traced_platform.h"

namespace zenqay {

/// The process-wide values over the seams, with the trace in between. What they are made from must outlive them. A call
/// that is broken off does not get as far as the trace.
class TracedProcess {
 public:
  TracedProcess(Platform& platform, ComponentHost& components, Database& database, Trace& trace,
                const std::shared_ptr<Interruption>& interruption = std::make_shared<Interruption>())
      : platform_(platform, trace),
        tracedComponents_(components, trace),
        components_(tracedComponents_, *interruption),
        database_(database, trace),
        process{.platform = platform_,
                .components = components_,
                .database = database_,
                .eventsThrough = [this, &trace](DataCopyEvents& sinks) -> DataCopyEvents& {
                  return events_.emplace(sinks, [&trace](std::string_view name, std::span<const Value> arguments) {
                    trace.Event(name, arguments);
                  });
                },
                .interruption = interruption} {
    trace.TellEndTo(platform);
  }
  TracedProcess(const TracedProcess&) = delete;
  TracedProcess& operator=(const TracedProcess&) = delete;

 private:
  TracedPlatform platform_;
  TracedComponents tracedComponents_;
  InterruptibleComponents components_;
  TracedDatabase database_;
  std::optional<HeardEvents> events_;

 public:
  modDeclarations process;  // last, so that it lets go first
};

}  // namespace zenqay
