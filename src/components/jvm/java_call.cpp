#include "components/jvm/java_call.h"

#include <cmath>

#include "components/jvm/java_argument.h"
#include "components/jvm/java_exception.h"
#include "components/jvm/java_object.h"
#include "components/jvm/java_text.h"

namespace zenqay {
namespace {

/// A method with how well each argument fits it.
struct Candidate {
  const JavaMethod* method;
  std::vector<int> fits;
};

std::vector<Candidate> CandidatesOf(JNIEnv& env, const JavaClass::Overloads& methods, Arguments arguments) {
  std::vector<Candidate> candidates;
  for (const JavaMethod* method : methods) {
    if (method->parameters.size() != arguments.size()) continue;
    Candidate candidate{method, {}};
    bool fitsAll = true;
    for (std::size_t at = 0; at < arguments.size(); ++at) {
      candidate.fits.push_back(FitOf(env, method->parameters[at], arguments[at].value()));
      fitsAll &= candidate.fits.back() != kNoFit;
    }
    if (fitsAll) candidates.push_back(std::move(candidate));
  }
  return candidates;
}

/// True when every parameter's class is the other's or below it.
bool IsMoreSpecific(JNIEnv& env, const JavaMethod& method, const JavaMethod& other) {
  for (std::size_t at = 0; at < method.parameters.size(); ++at) {
    const JavaType& mine = method.parameters[at];
    const JavaType& theirs = other.parameters[at];
    if (mine.reference == nullptr || theirs.reference == nullptr) {
      if (mine.name != theirs.name) return false;
    } else if (!env.IsAssignableFrom(mine.reference, theirs.reference)) {
      return false;
    }
  }
  return true;
}

/// No argument fits worse, and one fits better, or its classes say more.
bool IsBetter(JNIEnv& env, const Candidate& candidate, const Candidate& other) {
  for (std::size_t at = 0; at < candidate.fits.size(); ++at) {
    if (candidate.fits[at] > other.fits[at]) return false;
  }
  if (candidate.fits != other.fits) return true;
  const bool saysMore = IsMoreSpecific(env, *candidate.method, *other.method);
  return saysMore && !IsMoreSpecific(env, *other.method, *candidate.method);
}

Text Shape(std::string_view operation, Arguments arguments) {
  Text shape(operation);
  shape += "(";
  for (const Argument& argument : arguments) {
    shape.append(&argument == arguments.data() ? "" : ", ").append(KindText(argument.value()));
  }
  return shape + ")";
}

Text Signatures(const JavaClass::Overloads& methods, std::size_t count) {
  Text signatures;
  for (const JavaMethod* method : methods) {
    if (method->parameters.size() != count) continue;
    signatures.append(signatures.empty() ? "" : ", ").append(method->signature);
  }
  return signatures;
}

[[noreturn]] void RaiseNoMethod(const JavaClass::Overloads& methods, Arguments arguments, std::string_view operation,
                                const char* what, const Text& source) {
  const Text signatures = Signatures(methods, arguments.size());
  if (signatures.empty()) throw RuntimeError(PlatformFault::WrongNumberOfArguments, operation, source);
  throw RuntimeError(PlatformFault::TypeMismatch, Shape(operation, arguments) + what + signatures, source);
}

/// What a call answers, before it is known whether it threw.
jvalue Perform(const JavaTarget& target, const JavaMethod& method, const jvalue* arguments) {
  JNIEnv& env = target.machine->env();
  const auto call = [&](auto onObject, auto onClass) {
    return method.isStatic ? (env.*onClass)(target.type.type(), method.id, arguments)
                           : (env.*onObject)(target.object, method.id, arguments);
  };
  jvalue result{};
  switch (method.result.kind) {
    case JavaKind::Void:
      call(&JNIEnv::CallVoidMethodA, &JNIEnv::CallStaticVoidMethodA);
      break;
    case JavaKind::Boolean:
      result.z = call(&JNIEnv::CallBooleanMethodA, &JNIEnv::CallStaticBooleanMethodA);
      break;
    case JavaKind::Byte:
      result.b = call(&JNIEnv::CallByteMethodA, &JNIEnv::CallStaticByteMethodA);
      break;
    case JavaKind::Char:
      result.c = call(&JNIEnv::CallCharMethodA, &JNIEnv::CallStaticCharMethodA);
      break;
    case JavaKind::Short:
      result.s = call(&JNIEnv::CallShortMethodA, &JNIEnv::CallStaticShortMethodA);
      break;
    case JavaKind::Int:
      result.i = call(&JNIEnv::CallIntMethodA, &JNIEnv::CallStaticIntMethodA);
      break;
    case JavaKind::Long:
      result.j = call(&JNIEnv::CallLongMethodA, &JNIEnv::CallStaticLongMethodA);
      break;
    case JavaKind::Float:
      result.f = call(&JNIEnv::CallFloatMethodA, &JNIEnv::CallStaticFloatMethodA);
      break;
    case JavaKind::Double:
      result.d = call(&JNIEnv::CallDoubleMethodA, &JNIEnv::CallStaticDoubleMethodA);
      break;
    case JavaKind::String:
    case JavaKind::Object:
      result.l = call(&JNIEnv::CallObjectMethodA, &JNIEnv::CallStaticObjectMethodA);
  }
  return result;
}

/// A long that is no 32-bit integer goes on as a double, as long as it is the same number.
Value LongValue(jlong number, const Text& about, const Text& source) {
  const auto converted = static_cast<double>(number);
  const bool isExact = converted < 0x1p63 && static_cast<jlong>(converted) == number;
  if (!isExact) throw RuntimeError(PlatformFault::Overflow, about, source);
  return converted;
}

Value FiniteValue(double number, const Text& about, const Text& source) {
  if (!std::isfinite(number)) throw RuntimeError(PlatformFault::Overflow, about, source);
  return number;
}

Value PlainValue(JavaKind kind, const jvalue& value, const Text& about, const Text& source) {
  switch (kind) {
    case JavaKind::Boolean:
      return value.z != JNI_FALSE;
    case JavaKind::Byte:
      return std::int16_t{value.b};
    case JavaKind::Char:
      return TextOfUnits(&value.c, 1, source);
    case JavaKind::Short:
      return std::int16_t{value.s};
    case JavaKind::Int:
      return std::int32_t{value.i};
    case JavaKind::Long:
      return LongValue(value.j, about, source);
    case JavaKind::Float:
      return FiniteValue(static_cast<double>(value.f), about, source);
    case JavaKind::Double:
      return FiniteValue(value.d, about, source);
    case JavaKind::Void:
    case JavaKind::String:
    case JavaKind::Object:
      break;
  }
  return {};
}

/// The reference is given back here.
Value ReferenceValue(const std::shared_ptr<JavaMachine>& machine, const JavaType& declared, jobject reference,
                     const Text& about, const Text& source) {
  JNIEnv& env = machine->env();
  const Local<> object(env, reference);
  if (!object) return declared.mayBeValue ? Value(Null()) : Value(Object());
  if (declared.kind == JavaKind::String) return TextOf(env, static_cast<jstring>(reference), source);
  JavaClass& type = machine->ClassOf(reference);
  const std::optional<JavaKind> kind = type.valueKind();
  if (!kind) return Object(std::make_shared<JavaObject>(machine, type, reference, type.name()));
  if (kind == JavaKind::String) return TextOf(env, static_cast<jstring>(reference), source);
  const jvalue plain = machine->types().Unbox(*kind, reference);
  return PlainValue(*kind, plain, about, source);
}

Value ResultOf(const std::shared_ptr<JavaMachine>& machine, const JavaType& type, const jvalue& result,
               const Text& about, const Text& source) {
  if (type.kind == JavaKind::String || type.kind == JavaKind::Object) {
    return ReferenceValue(machine, type, result.l, about, source);
  }
  return PlainValue(type.kind, result, about, source);
}

}  // namespace

const JavaMethod& ChooseMethod(JNIEnv& env, const JavaClass::Overloads& methods, Arguments arguments,
                               std::string_view operation, const Text& source) {
  if (arguments.empty() && methods.size() == 1 && methods[0]->parameters.empty()) return *methods[0];
  const std::vector<Candidate> candidates = CandidatesOf(env, methods, arguments);
  if (candidates.empty()) RaiseNoMethod(methods, arguments, operation, " fits none of ", source);
  for (const Candidate& candidate : candidates) {
    bool isBest = true;
    for (const Candidate& other : candidates) isBest &= &other == &candidate || IsBetter(env, candidate, other);
    if (isBest) return *candidate.method;
  }
  RaiseNoMethod(methods, arguments, operation, " fits more than one of ", source);
}

Value CallMethod(const JavaTarget& target, const JavaMethod& method, Arguments arguments) {
  JNIEnv& env = target.machine->env();
  std::vector<jvalue> passed;
  std::vector<Local<>> made;
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    passed.push_back(ConvertedTo(env, target.machine->types(), method.parameters[at], arguments[at].value(), made,
                                 method.signature, target.source));
  }
  const jvalue result = Perform(target, method, passed.data());
  if (env.ExceptionCheck()) RaisePending(env, method.name, target.source);
  return ResultOf(target.machine, method.result, result, method.signature, target.source);
}

Value ReadField(const JavaTarget& target, const JavaField& field) {
  JNIEnv& env = target.machine->env();
  jvalue value{};
  const auto read = [&](auto& into, auto get, auto getStatic) {
    into = field.isStatic ? (env.*getStatic)(target.type.type(), field.id) : (env.*get)(target.object, field.id);
  };
  switch (field.type.kind) {
    case JavaKind::Boolean:
      read(value.z, &JNIEnv::GetBooleanField, &JNIEnv::GetStaticBooleanField);
      break;
    case JavaKind::Byte:
      read(value.b, &JNIEnv::GetByteField, &JNIEnv::GetStaticByteField);
      break;
    case JavaKind::Char:
      read(value.c, &JNIEnv::GetCharField, &JNIEnv::GetStaticCharField);
      break;
    case JavaKind::Short:
      read(value.s, &JNIEnv::GetShortField, &JNIEnv::GetStaticShortField);
      break;
    case JavaKind::Int:
      read(value.i, &JNIEnv::GetIntField, &JNIEnv::GetStaticIntField);
      break;
    case JavaKind::Long:
      read(value.j, &JNIEnv::GetLongField, &JNIEnv::GetStaticLongField);
      break;
    case JavaKind::Float:
      read(value.f, &JNIEnv::GetFloatField, &JNIEnv::GetStaticFloatField);
      break;
    case JavaKind::Double:
      read(value.d, &JNIEnv::GetDoubleField, &JNIEnv::GetStaticDoubleField);
      break;
    case JavaKind::Void:
    case JavaKind::String:
    case JavaKind::Object:
      read(value.l, &JNIEnv::GetObjectField, &JNIEnv::GetStaticObjectField);
  }
  return ResultOf(target.machine, field.type, value, field.name, target.source);
}

void WriteField(const JavaTarget& target, const JavaField& field, const Value& value) {
  JNIEnv& env = target.machine->env();
  if (FitOf(env, field.type, value) == kNoFit) {
    throw RuntimeError(PlatformFault::TypeMismatch,
                       field.name + " is of type " + field.type.name + ", not " + KindText(value), target.source);
  }
  std::vector<Local<>> made;
  const jvalue converted =
      ConvertedTo(env, target.machine->types(), field.type, value, made, field.name, target.source);
  const auto write = [&](auto from, auto set, auto setStatic) {
    if (field.isStatic) {
      (env.*setStatic)(target.type.type(), field.id, from);
    } else {
      (env.*set)(target.object, field.id, from);
    }
  };
  switch (field.type.kind) {
    case JavaKind::Boolean:
      return write(converted.z, &JNIEnv::SetBooleanField, &JNIEnv::SetStaticBooleanField);
    case JavaKind::Byte:
      return write(converted.b, &JNIEnv::SetByteField, &JNIEnv::SetStaticByteField);
    case JavaKind::Char:
      return write(converted.c, &JNIEnv::SetCharField, &JNIEnv::SetStaticCharField);
    case JavaKind::Short:
      return write(converted.s, &JNIEnv::SetShortField, &JNIEnv::SetStaticShortField);
    case JavaKind::Int:
      return write(converted.i, &JNIEnv::SetIntField, &JNIEnv::SetStaticIntField);
    case JavaKind::Long:
      return write(converted.j, &JNIEnv::SetLongField, &JNIEnv::SetStaticLongField);
    case JavaKind::Float:
      return write(converted.f, &JNIEnv::SetFloatField, &JNIEnv::SetStaticFloatField);
    case JavaKind::Double:
      return write(converted.d, &JNIEnv::SetDoubleField, &JNIEnv::SetStaticDoubleField);
    case JavaKind::Void:
    case JavaKind::String:
    case JavaKind::Object:
      return write(converted.l, &JNIEnv::SetObjectField, &JNIEnv::SetStaticObjectField);
  }
}

}  // namespace zenqay
