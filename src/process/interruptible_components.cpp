#include "process/interruptible_components.h"

#include "contracts/component_front.h"

namespace zenqay {
namespace {

void PutFront(Value& value, const Interruption& interruption);

class InterruptibleComponent : public ComponentFront {
 public:
  InterruptibleComponent(Object inner, const Interruption& interruption)
      : ComponentFront(std::move(inner)), interruption_(interruption) {}

  Value Call(std::string_view operation, Arguments arguments) override {
    interruption_.Check();
    // Nearly all calls are those of rows, without arguments.
    Value result = arguments.empty() ? inner().component()->Call(operation, arguments)
                                     : CallBehindFront(inner(), operation, arguments, [this](Value value) {
                                         PutFront(value, interruption_);
                                         return value;
                                       });
    PutFront(result, interruption_);
    return result;
  }

  Value Get(std::string_view property) override {
    interruption_.Check();
    Value result = inner().Get(property);
    PutFront(result, interruption_);
    return result;
  }

  void Put(std::string_view property, const Value& value) override {
    interruption_.Check();
    inner().Put(property, BehindFront(value));
  }

 private:
  const Interruption& interruption_;
};

/// Puts a front before an object; any other value stays as it is.
void PutFront(Value& value, const Interruption& interruption) {
  const Object* object = value.If<Object>();
  if (object == nullptr || object->IsNothing()) return;
  value = Object(std::make_shared<InterruptibleComponent>(*object, interruption));
}

}  // namespace

Object InterruptibleComponents::Create(const Text& classId) {
  interruption_.Check();
  Value created = inner_.Create(classId);
  PutFront(created, interruption_);
  return created.AsObject();
}

}  // namespace zenqay
