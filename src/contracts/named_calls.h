// Calls of components whose failures name the operation.
#pragma once

#include "base/runtime_error.h"
#include "contracts/value.h"

namespace zenqay {

/// What `ask` makes of an object's answer; what it fails with names the operation, also where the answer does not
/// serve. An empty reference raises its 91 as everywhere: no component was asked.
template <typename Ask>
auto Naming(const Object& object, std::string_view operation, Ask ask) {
  return object.IsNothing() ? ask() : Naming(operation, ask);
}

template <typename... Args>
Value CallNamed(const Object& object, std::string_view operation, Args&&... arguments) {
  return Naming(object, operation, [&] { return object.Call(operation, std::forward<Args>(arguments)...); });
}

inline Value GetNamed(const Object& object, std::string_view property) {
  return Naming(object, property, [&] { return object.Get(property); });
}

inline void PutNamed(const Object& object, std::string_view property, const Value& value) {
  Naming(object, property, [&] { object.Put(property, value); });
}

/// The answer of a call as a whole number, and as a number.
inline std::int32_t CallForInt32(const Object& object, std::string_view operation) {
  return Naming(object, operation, [&] { return object.Call(operation).AsInt32(); });
}
inline double CallForDouble(const Object& object, std::string_view operation) {
  return Naming(object, operation, [&] { return object.Call(operation).AsDouble(); });
}

}  // namespace zenqay
