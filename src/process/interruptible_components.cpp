#include "process/interruptible_components.h"

#include "contracts/component_front.h"

namespace zenqay {
namespace {

Value Interruptible(Value value, const Interruption& interruption);

class InterruptibleComponent : public ComponentFront {
 public:
  InterruptibleComponent(Object inner, const Interruption& interruption)
      : ComponentFront(std::move(inner)), interruption_(interruption) {}

  Value Call(std::string_view operation, Arguments arguments) override {
    interruption_.Check();
    if (arguments.empty()) return Interruptible(inner().Call(operation), interruption_);  // as nearly all calls of rows
    const auto put = [this](const Value& value) { return Interruptible(value, interruption_); };
    return put(CallBehindFront(inner(), operation, arguments, put));
  }

  Value Get(std::string_view property) override {
    interruption_.Check();
    return Interruptible(inner().Get(property), interruption_);
  }

  void Put(std::string_view property, const Value& value) override {
    interruption_.Check();
    inner().Put(property, BehindFront(value));
  }

 private:
  const Interruption& interruption_;
};

/// An object with a front before it; any other value as it is.
Value Interruptible(Value value, const Interruption& interruption) {
  const Object* object = value.If<Object>();
  if (object == nullptr || object->IsNothing()) return value;
  return Object(std::make_shared<InterruptibleComponent>(*object, interruption));
}

}  // namespace

Object InterruptibleComponents::Create(const Text& classId) {
  interruption_.Check();
  return Interruptible(inner_.Create(classId), interruption_).AsObject();
}

}  // namespace zenqay
