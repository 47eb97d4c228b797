// What travels between the job, the components and the database: values of any type, and objects that are called by
// operation name.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <variant>

#include "base/date_time.h"
#include "base/text_functions.h"

namespace zenqay {

class Argument;
class Component;
class Value;

/// The arguments of one call. An operation may assign those that were passed by reference.
using Arguments = std::span<Argument>;

/// A reference to a late-bound component, or to nothing. Every use of an empty reference raises 91, here and nowhere
/// else.
class Object {
 public:
  Object() = default;
  Object(std::shared_ptr<Component> component) : component_(std::move(component)) {}

  bool IsNothing() const { return component_ == nullptr; }
  void Release() { component_.reset(); }

  /// Calls an operation, reads or writes a property. Names are matched without regard to case.
  Value Call(std::string_view operation) const;
  Value Call(std::string_view operation, Arguments arguments) const;
  template <typename... Args>
  requires(sizeof...(Args) > 0) Value Call(std::string_view operation, Args&&... arguments)
  const;
  Value Get(std::string_view property) const;
  void Put(std::string_view property, const Value& value) const;

  /// Raises what such a call would fail with, as far as that can be told without making it.
  void RequireCallable(std::string_view operation, std::size_t argumentCount) const;

  /// What stands for the object where a plain value is needed. Raises 438 for an object that has none.
  Value Default() const;

  const std::shared_ptr<Component>& component() const { return component_; }
  bool operator==(const Object&) const = default;

 private:
  Component& Target() const;

  std::shared_ptr<Component> component_;
};

struct Empty {
  bool operator==(const Empty&) const = default;
};

struct Null {
  bool operator==(const Null&) const = default;
};

/// One of: empty, null, boolean, 16-bit integer, 32-bit integer, double, text, date-time, object.
///
/// Conversions: null raises 94 ("Invalid use of Null"), a text that does not read as what is asked for 13, a number
/// out of range 6, an empty reference 91. An object stands for its default value where it has one.
class Value {
 public:
  Value() = default;
  Value(Null) : held_(Null()) {}
  template <std::same_as<bool> Truth>  // and no pointer, which would convert to one
  Value(Truth value) : held_(value) {}
  Value(std::int16_t value) : held_(value) {}
  Value(std::int32_t value) : held_(value) {}
  Value(double value) : held_(value) {}
  Value(Text value) : held_(std::move(value)) {}
  Value(std::string_view value) : held_(Text(value)) {}
  Value(const char* value) : held_(Text(value)) {}
  Value(std::nullptr_t) = delete;
  Value(DateTime value) : held_(value) {}
  Value(Object value) : held_(std::move(value)) {}

  template <typename T>
  bool Is() const {
    return std::holds_alternative<T>(held_);
  }
  template <typename T>
  const T* If() const {
    return std::get_if<T>(&held_);
  }
  bool IsNull() const { return Is<Null>(); }

  /// The value as text: empty reads as "", a date-time in its default form.
  Text AsText() const&;
  Text AsText() &&;

  /// The value joined to an empty text: as AsText, and null adds nothing.
  Text Joined() const;

  /// The truth of a component's answer: null counts as false, a number is true unless it is 0. A text is "True",
  /// "False" or a number.
  bool IsTrue() const;

  double AsDouble() const;
  std::int16_t AsInt16() const;
  std::int32_t AsInt32() const;
  DateTime AsDateTime() const;

  /// The reference that the value holds; empty and null are empty references. Raises 13 for anything else.
  Object AsObject() const;

  /// Comparison with a number: a text converts strictly, empty is 0, and null makes the condition false.
  bool EqualsNumber(double number) const;
  bool IsGreaterThan(double number) const;

  bool operator==(const Value&) const = default;

  const auto& held() const { return held_; }

 private:
  std::variant<Empty, Null, bool, std::int16_t, std::int32_t, double, Text, DateTime, Object> held_;
};

/// One argument of a call: a value, or a reference to a variable of the caller.
class Argument {
 public:
  Argument(Value value) : value_(std::move(value)) {}
  template <typename T>
  requires std::constructible_from<Value, T> Argument(T&& value)  // NOLINT(bugprone-forwarding-reference-overload)
      : value_(std::forward<T>(value)) {}

  static Argument ByReference(Value& variable) { return Argument(variable, &variable); }

  const Value& value() const { return value_; }
  bool byReference() const { return variable_ != nullptr; }

  /// Assigns the caller's variable; an argument that was passed by value changes for the operation alone.
  void Assign(Value value);

 private:
  Argument(const Value& value, Value* variable) : value_(value), variable_(variable) {}

  Value value_;
  Value* variable_ = nullptr;
};

/// What serves an Object: something whose operations are found by name at run time.
class Component {
 public:
  virtual ~Component() = default;

  /// Raises 438 for a name that the component does not have, 450 for a wrong number of arguments, and whatever the
  /// operation itself fails with.
  virtual Value Call(std::string_view operation, Arguments arguments) = 0;
  virtual Value Get(std::string_view property);
  virtual void Put(std::string_view property, const Value& value);

  /// For who looks beforehand whether a job could make a call, and must not make it: raises what it would fail with, as
  /// far as that can be told. Who can tell nothing raises nothing.
  virtual void RequireCallable(std::string_view, std::size_t) {}

  /// What stands for the object where a plain value is needed. Raises 438 for an object that has none.
  virtual Value Default() const;
};

/// Who creates components. Class ids are compared exactly.
class ComponentHost {
 public:
  virtual ~ComponentHost() = default;

  /// Raises what is wrong with the host's own settings. Asked once, right after the command line has been checked.
  virtual void RequireUsable() {}

  /// Raises 429, naming the class id, when no one serves it or its creation fails.
  virtual Object Create(const Text& classId) = 0;
};

/// 438 and 450 with the operation they are about.
[[noreturn]] void RaiseNoSuchOperation(std::string_view operation, std::string_view source);
void RequireArguments(std::string_view operation, Arguments arguments, std::size_t count, std::string_view source);

template <typename... Args>
requires(sizeof...(Args) > 0) Value Object::Call(std::string_view operation, Args&&... arguments)
const {
  Argument list[] = {Argument(std::forward<Args>(arguments))...};
  return Call(operation, Arguments(list));
}

}  // namespace zenqay
