// Components that write the trace. They exist only while a trace is written.
#pragma once

#include "contracts/value.h"
#include "trace/trace.h"

namespace zenqay {

class TracedComponents : public ComponentHost {
 public:
  TracedComponents(ComponentHost& inner, Trace& trace) : inner_(inner), trace_(trace) {}

  void RequireUsable() override {
    trace_.RequireUsable();
    inner_.RequireUsable();
  }
  Object Create(const Text& classId) override;

 private:
  ComponentHost& inner_;
  Trace& trace_;
};

}  // namespace zenqay
