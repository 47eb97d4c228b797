#include "process/interruptible_components.h"

#include "contracts/component_front.h"

namespace zenqay {
namespace {

class InterruptibleComponent : public ComponentFront {
 public:
  InterruptibleComponent(Object inner, const Interruption& interruption)
      : ComponentFront(std::move(inner)), interruption_(interruption) {}

  Value Call(std::string_view operation, Arguments arguments) override {
    interruption_.Check();
    // Nearly all calls are those of rows, without arguments.
    if (arguments.empty()) return WithFront(behind().Call(operation, arguments));
    return WithFront(
        CallBehindFront(behind(), operation, arguments, [this](Value value) { return WithFront(std::move(value)); }));
  }

  Value Get(std::string_view property) override {
    interruption_.Check();
    return WithFront(behind().Get(property));
  }

  void Put(std::string_view property, const Value& value) override {
    interruption_.Check();
    behind().Put(property, BehindFront(value));
  }

 private:
  Value WithFront(Value value) const {
    return zenqay::WithFront<InterruptibleComponent>(std::move(value), interruption_);
  }

  const Interruption& interruption_;
};

}  // namespace

Object InterruptibleComponents::Create(const Text& classId) {
  interruption_.Check();
  const Object created = inner_.Create(classId);
  return WithFront<InterruptibleComponent>(created, interruption_).AsObject();
}

}  // namespace zenqay
