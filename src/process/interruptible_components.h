// Components whose calls can be broken off.
#pragma once

#include "contracts/interruption.h"
#include "contracts/value.h"

namespace zenqay {

/// Looks at the interruption in front of each creation and call; a call that is broken off is not made.
class InterruptibleComponents : public ComponentHost {
 public:
  InterruptibleComponents(ComponentHost& inner, const Interruption& interruption)
      : inner_(inner), interruption_(interruption) {}

  void RequireUsable() override { inner_.RequireUsable(); }
  Object Create(const Text& classId) override;

 private:
  ComponentHost& inner_;
  const Interruption& interruption_;
};

}  // namespace zenqay
