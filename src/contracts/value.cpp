#include "contracts/value.h"

#include "base/numbers.h"
#include "base/runtime_error.h"

namespace zenqay {
namespace {

template <typename... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;  // not every compiler deduces it from the aggregate

[[noreturn]] void RaiseNull() {
  throw RuntimeError(PlatformFault::InvalidUseOfNull);
}

constexpr double kSecondsPerDay = 24 * 60 * 60;

}  // namespace

Component& Object::Target() const {
  if (component_ == nullptr) throw RuntimeError(PlatformFault::ObjectNotSet);
  return *component_;
}

Value Object::Call(std::string_view operation) const {
  return Target().Call(operation, {});
}

Value Object::Call(std::string_view operation, Arguments arguments) const {
  return Target().Call(operation, arguments);
}

Value Object::Get(std::string_view property) const {
  return Target().Get(property);
}

void Object::Put(std::string_view property, const Value& value) const {
  Target().Put(property, value);
}

void Object::RequireCallable(std::string_view operation, std::size_t argumentCount) const {
  Target().RequireCallable(operation, argumentCount);
}

Value Object::Default() const {
  return Target().Default();
}

Text Value::AsText() && {
  if (Text* text = std::get_if<Text>(&held_)) return std::move(*text);
  return static_cast<const Value&>(*this).AsText();
}

Text Value::AsText() const& {
  return std::visit(Overloaded{
                        [](Empty) { return Text(); },
                        [](Null) -> Text { RaiseNull(); },
                        [](bool value) { return Text(value ? "True" : "False"); },
                        [](std::int16_t value) { return std::to_string(value); },
                        [](std::int32_t value) { return std::to_string(value); },
                        [](double value) { return NumberText(value); },
                        [](const Text& value) { return value; },
                        [](DateTime value) { return DefaultText(value); },
                        [](const Object& value) { return value.Default().AsText(); },
                    },
                    held_);
}

Text Value::Joined() const {
  if (const Object* object = If<Object>()) return object->Default().Joined();
  return IsNull() ? Text() : AsText();
}

bool Value::IsTrue() const {
  if (const Object* object = If<Object>()) return object->Default().IsTrue();
  if (const bool* answer = If<bool>()) return *answer;
  if (IsNull()) return false;
  if (const Text* text = If<Text>()) {
    if (EqualsIgnoringCase(*text, "True")) return true;
    if (EqualsIgnoringCase(*text, "False")) return false;
  }
  return AsDouble() != 0;
}

double Value::AsDouble() const {
  return std::visit(Overloaded{
                        [](Empty) { return 0.0; },
                        [](Null) -> double { RaiseNull(); },
                        [](bool value) { return value ? -1.0 : 0.0; },
                        [](std::int16_t value) { return static_cast<double>(value); },
                        [](std::int32_t value) { return static_cast<double>(value); },
                        [](double value) { return value; },
                        [](const Text& value) { return ToDouble(value); },
                        [](DateTime value) { return static_cast<double>(value.seconds()) / kSecondsPerDay; },
                        [](const Object& value) { return value.Default().AsDouble(); },
                    },
                    held_);
}

std::int16_t Value::AsInt16() const {
  return RoundToInt16(AsDouble());
}

std::int32_t Value::AsInt32() const {
  return RoundToInt32(AsDouble());
}

DateTime Value::AsDateTime() const {
  if (const DateTime* value = If<DateTime>()) return *value;
  if (IsNull()) RaiseNull();
  if (const Text* text = If<Text>()) {
    DateTime value;
    if (!ReadIsoText(*text, value)) throw RuntimeError(PlatformFault::TypeMismatch);
    return value;
  }
  if (const Object* object = If<Object>()) return object->Default().AsDateTime();
  const double days = AsDouble();
  if (!(days >= -693'593 && days < 2'958'466)) throw RuntimeError(PlatformFault::Overflow);  // year 1 to 9999
  return DateTime(static_cast<std::int64_t>(days * kSecondsPerDay + (days < 0 ? -0.5 : 0.5)));
}

Object Value::AsObject() const {
  if (const Object* object = If<Object>()) return *object;
  if (Is<Empty>() || IsNull()) return {};
  throw RuntimeError(PlatformFault::TypeMismatch);
}

bool Value::EqualsNumber(double number) const {
  if (const Object* object = If<Object>()) return object->Default().EqualsNumber(number);
  return !IsNull() && AsDouble() == number;
}

bool Value::IsGreaterThan(double number) const {
  if (const Object* object = If<Object>()) return object->Default().IsGreaterThan(number);
  return !IsNull() && AsDouble() > number;
}

void Argument::Assign(Value value) {
  if (variable_ != nullptr) *variable_ = value;
  value_ = std::move(value);
}

Value Component::Get(std::string_view property) {
  RaiseNoSuchOperation(property, kPlatformSource);
}

void Component::Put(std::string_view property, const Value&) {
  RaiseNoSuchOperation(property, kPlatformSource);
}

Value Component::Default() const {
  throw RuntimeError(PlatformFault::NoSuchOperation);
}

void RaiseNoSuchOperation(std::string_view operation, std::string_view source) {
  throw RuntimeError(PlatformFault::NoSuchOperation, operation, Text(source));
}

void RequireArguments(std::string_view operation, Arguments arguments, std::size_t count, std::string_view source) {
  if (arguments.size() == count) return;
  throw RuntimeError(PlatformFault::WrongNumberOfArguments, operation, Text(source));
}

}  // namespace zenqay
