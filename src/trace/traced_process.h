// A process whose seams and events write the trace.
#pragma once

#include <optional>

#include "process/modDeclarations.h"
#include "trace/traced_components.h"
#include "trace/traced_database.h"
#include "trace/traced_events.h"
#include "trace/traced_platform.h"

namespace zenqay {

/// The process-wide values over the seams, with the trace in between. What they are made from must outlive them.
class TracedProcess {
 public:
  TracedProcess(Platform& platform, ComponentHost& components, Database& database, Trace& trace)
      : platform_(platform, trace),
        components_(components, trace),
        database_(database, trace),
        process{.platform = platform_,
                .components = components_,
                .database = database_,
                .eventsThrough = [this, &trace](DataCopyEvents& sinks) -> DataCopyEvents& {
                  return events_.emplace(sinks, trace);
                }} {
    trace.TellEndTo(platform);
  }
  TracedProcess(const TracedProcess&) = delete;
  TracedProcess& operator=(const TracedProcess&) = delete;

 private:
  TracedPlatform platform_;
  TracedComponents components_;
  TracedDatabase database_;
  std::optional<TracedEvents> events_;

 public:
  modDeclarations process;  // last, so that it lets go first
};

}  // namespace zenqay
