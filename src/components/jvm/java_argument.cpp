#include "components/jvm/java_argument.h"

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "components/jvm/java_exception.h"
#include "components/jvm/java_object.h"
#include "components/jvm/java_text.h"

namespace zenqay {
namespace {

// Behind every fit of a primitive type come the classes that wrap it, then those above them.
constexpr int kWrapped = 10;
constexpr int kHeld = 20;
constexpr int kNullForPrimitive = 50;

/// The kind that a number has here; Void for what is no number.
JavaKind KindOfNumber(const Value& value) {
  if (value.Is<std::int16_t>()) return JavaKind::Short;
  if (value.Is<std::int32_t>()) return JavaKind::Int;
  if (value.Is<double>()) return JavaKind::Double;
  return JavaKind::Void;
}

/// A type of the same kind first, then wider ones, then those that may have no room.
int FitOfNumber(JavaKind number, JavaKind parameter) {
  using enum JavaKind;
  static constexpr JavaKind kForShort[] = {Short, Int, Long, Double, Float, Byte};
  static constexpr JavaKind kForInt[] = {Int, Long, Double, Float, Short, Byte};
  static constexpr JavaKind kForDouble[] = {Double, Float, Long, Int, Short, Byte};
  const auto& order = number == Short ? kForShort : number == Int ? kForInt : kForDouble;
  for (int place = 0; place < static_cast<int>(std::size(order)); ++place) {
    if (order[place] == parameter) return place;
  }
  return kNoFit;
}

bool IsNothing(const Value& value) {
  const Object* object = value.If<Object>();
  return value.Is<Empty>() || value.IsNull() || (object != nullptr && object->IsNothing());
}

bool IsPrimitive(const JavaType& type) {
  return type.kind != JavaKind::Object && type.kind != JavaKind::String;
}

/// Where the value is of a kind: the type itself, its wrapper, or a class above that.
int FitOfKind(const JavaType& type, JavaKind kind) {
  if (type.kind == kind) return 0;
  if (type.box == kind) return kWrapped;
  return type.Holds(kind) ? kHeld : kNoFit;
}

int FitOfNumber(const JavaType& type, JavaKind number) {
  if (type.kind == JavaKind::Object && !type.box) return type.Holds(number) ? kHeld : kNoFit;
  const int fit = FitOfNumber(number, type.box.value_or(type.kind));
  return fit == kNoFit ? kNoFit : fit + (type.box ? kWrapped : 0);
}

/// As a date where the type has room for one, else as a text.
int FitOfTime(const JavaType& type) {
  if (type.holdsDate) return type.name == "java.util.Date" ? 0 : kHeld;
  const int fit = FitOfKind(type, JavaKind::String);
  return fit == kNoFit ? kNoFit : fit + kWrapped;
}

[[noreturn]] void RaiseOverflow(const Text& about, const Text& source) {
  throw RuntimeError(PlatformFault::Overflow, about, source);
}

template <typename Integer>
Integer WholeNumber(double number, const Text& about, const Text& source) {
  const double whole = std::nearbyint(number);
  constexpr double kLowest = static_cast<double>(std::numeric_limits<Integer>::min());
  if (!(whole >= kLowest && whole < -kLowest)) RaiseOverflow(about, source);
  return static_cast<Integer>(whole);
}

/// A number as a primitive kind.
jvalue NumberAs(JavaKind kind, double number, const Text& about, const Text& source) {
  jvalue converted{};
  switch (kind) {
    case JavaKind::Byte:
      converted.b = WholeNumber<jbyte>(number, about, source);
      break;
    case JavaKind::Short:
      converted.s = WholeNumber<jshort>(number, about, source);
      break;
    case JavaKind::Int:
      converted.i = WholeNumber<jint>(number, about, source);
      break;
    case JavaKind::Long:
      converted.j = WholeNumber<jlong>(number, about, source);
      break;
    case JavaKind::Float:
      if (std::abs(number) > FLT_MAX) RaiseOverflow(about, source);
      converted.f = static_cast<jfloat>(number);
      break;
    default:
      converted.d = number;
  }
  return converted;
}

jvalue Keep(std::vector<Local<>>& made, JNIEnv& env, Local<> reference, const Text& about, const Text& source) {
  RaisePending(env, about, source);
  jvalue converted{};
  converted.l = reference.get();
  made.push_back(std::move(reference));
  return converted;
}

}  // namespace

int FitOf(JNIEnv& env, const JavaType& type, const Value& value) {
  if (IsNothing(value)) return IsPrimitive(type) ? kNullForPrimitive : 0;
  if (value.Is<Text>()) return FitOfKind(type, JavaKind::String);
  if (value.Is<DateTime>()) return FitOfTime(type);
  if (value.Is<bool>()) return FitOfKind(type, JavaKind::Boolean);
  if (const JavaKind number = KindOfNumber(value); number != JavaKind::Void) return FitOfNumber(type, number);
  const JavaObject* object = JavaObject::From(value);
  if (object == nullptr || type.kind != JavaKind::Object) return kNoFit;
  return env.IsInstanceOf(object->reference(), type.reference) ? 0 : kNoFit;
}

jvalue ConvertedTo(JNIEnv& env, const JavaTypes& types, const JavaType& type, const Value& value,
                   std::vector<Local<>>& made, const Text& about, const Text& source) {
  jvalue converted{};
  if (IsNothing(value)) {
    if (IsPrimitive(type)) throw RuntimeError(PlatformFault::InvalidUseOfNull, about, source);
    return converted;
  }
  if (const Text* text = value.If<Text>()) {
    return Keep(made, env, StringOf(env, *text, source), about, source);
  }
  if (const DateTime* time = value.If<DateTime>()) {
    return Keep(made, env, type.holdsDate ? types.DateAt(time->Parts()) : StringOf(env, value.AsText(), source), about,
                source);
  }
  if (const JavaObject* object = JavaObject::From(value)) {
    converted.l = object->reference();
    return converted;
  }
  if (const bool* truth = value.If<bool>()) {
    converted.z = *truth ? JNI_TRUE : JNI_FALSE;
    if (type.kind == JavaKind::Boolean) return converted;
    return Keep(made, env, types.Box(JavaKind::Boolean, converted), about, source);
  }
  if (IsPrimitive(type)) return NumberAs(type.kind, value.AsDouble(), about, source);
  const JavaKind kind = type.box.value_or(KindOfNumber(value));
  return Keep(made, env, types.Box(kind, NumberAs(kind, value.AsDouble(), about, source)), about, source);
}

Text KindText(const Value& value) {
  if (value.Is<Empty>()) return "empty";
  if (value.IsNull()) return "null";
  if (value.Is<bool>()) return "boolean";
  if (value.Is<std::int16_t>()) return "16-bit integer";
  if (value.Is<std::int32_t>()) return "32-bit integer";
  if (value.Is<double>()) return "double";
  if (value.Is<Text>()) return "text";
  if (value.Is<DateTime>()) return "date-time";
  if (IsNothing(value)) return "nothing";
  const JavaObject* object = JavaObject::From(value);
  return object == nullptr ? "object of another host" : "object of " + object->type().name();
}

}  // namespace zenqay
