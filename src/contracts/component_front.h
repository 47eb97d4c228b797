// An object in front of a component's own, such as one that looks at each call before it is made.
#pragma once

#include <memory>
#include <vector>

#include "contracts/value.h"

namespace zenqay {

class ComponentFront : public Component {
 public:
  explicit ComponentFront(Object inner) : inner_(std::move(inner)) {}

  const Object& inner() const { return inner_; }
  Value Default() const override { return inner_.Default(); }
  void RequireCallable(std::string_view operation, std::size_t argumentCount) override {
    inner_.RequireCallable(operation, argumentCount);
  }

 protected:
  /// The component behind the front, whose failures come as they are: what asked in front of it names the operation.
  Component& behind() const { return *inner_.component(); }

 private:
  Object inner_;
};

/// What the component gets to see: its own objects, not those in front of them.
inline Value BehindFront(const Value& value) {
  const Object* object = value.If<Object>();
  if (object == nullptr) return value;
  const auto* front = dynamic_cast<const ComponentFront*>(object->component().get());
  return front == nullptr ? value : Value(front->inner());
}

/// What the caller gets to see: an object with a front before it, which is made from the object and `what`. Any other
/// value stays as it is.
template <typename Front, typename... What>
Value WithFront(Value value, What&&... what) {
  const Object* object = value.If<Object>();
  if (object == nullptr || object->IsNothing()) return value;
  return Object(std::make_shared<Front>(*object, std::forward<What>(what)...));
}

/// Calls an operation of the component behind a front: the component gets its own objects, and what it assigns to the
/// caller's variables is given to them through `withFront`.
template <typename PutFront>
Value CallBehindFront(Component& behind, std::string_view operation, Arguments arguments, PutFront withFront) {
  std::vector<Value> variables;
  for (const Argument& argument : arguments) variables.push_back(BehindFront(argument.value()));
  std::vector<Argument> passed;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    passed.push_back(arguments[i].byReference() ? Argument::ByReference(variables[i]) : Argument(variables[i]));
  }
  const std::vector<Value> before = variables;
  Value result = behind.Call(operation, Arguments(passed));
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (variables[i] != before[i]) arguments[i].Assign(withFront(variables[i]));
  }
  return result;
}

}  // namespace zenqay
