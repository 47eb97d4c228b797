// An object in front of a component's own, such as one that looks at each call before it is made.
#pragma once

#include <vector>

#include "contracts/value.h"

namespace zenqay {

class ComponentFront : public Component {
 public:
  explicit ComponentFront(Object inner) : inner_(std::move(inner)) {}

  const Object& inner() const { return inner_; }
  Value Default() const override { return inner_.Default(); }

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

/// Calls an operation of the object behind a front: the component gets its own objects, and what it assigns to the
/// caller's variables is given to them through `put`, which may put fronts before them.
template <typename Put>
Value CallBehindFront(const Object& inner, std::string_view operation, Arguments arguments, Put put) {
  std::vector<Value> variables;
  for (const Argument& argument : arguments) variables.push_back(BehindFront(argument.value()));
  std::vector<Argument> passed;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    passed.push_back(arguments[i].byReference() ? Argument::ByReference(variables[i]) : Argument(variables[i]));
  }
  const std::vector<Value> before = variables;
  Value result = inner.Call(operation, Arguments(passed));
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (variables[i] != before[i]) arguments[i].Assign(put(variables[i]));
  }
  return result;
}

}  // namespace zenqay
