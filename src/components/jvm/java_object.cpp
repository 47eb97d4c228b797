#include "components/jvm/java_object.h"

#include <algorithm>
#include <vector>

#include "base/runtime_error.h"
#include "contracts/connection.h"

namespace zenqay {
namespace {

const Field* FieldIn(const Value& value) {
  const Object* object = value.If<Object>();
  return object == nullptr ? nullptr : dynamic_cast<const Field*>(object->component().get());
}

bool IsField(const Argument& argument) {
  return FieldIn(argument.value()) != nullptr;
}

Value WithoutField(const Value& value) {
  const Field* field = FieldIn(value);
  return field == nullptr ? value : field->Default();
}

}  // namespace

JavaObject::JavaObject(std::shared_ptr<JavaMachine> machine, JavaClass& type, jobject object, const Text& source)
    : machine_(std::move(machine)), type_(type), object_(machine_->env().NewGlobalRef(object)), source_(source) {
  if (object_ == nullptr) throw RuntimeError(PlatformFault::Automation, "the Java machine is out of memory", source);
}

JavaObject::~JavaObject() {
  machine_->env().DeleteGlobalRef(object_);
}

const JavaObject* JavaObject::From(const Value& value) {
  const Object* object = value.If<Object>();
  return object == nullptr ? nullptr : dynamic_cast<const JavaObject*>(object->component().get());
}

Value JavaObject::Call(std::string_view operation, Arguments arguments) {
  return Invoke(type_.MethodsNamed(operation), operation, arguments);
}

Value JavaObject::Get(std::string_view property) {
  const JavaClass::Property& reader = type_.ReaderOf(property);
  if (reader.field != nullptr) return ReadField(target(), *reader.field);
  return Invoke(reader.methods, property, {});
}

void JavaObject::Put(std::string_view property, const Value& value) {
  const JavaClass::Property& writer = type_.WriterOf(property);
  if (writer.field != nullptr) return WriteField(target(), *writer.field, WithoutField(value));
  Argument argument(value);
  Invoke(writer.methods, property, Arguments(&argument, 1));
}

void JavaObject::RequireCallable(std::string_view operation, std::size_t argumentCount) {
  const JavaClass::Overloads& methods = type_.MethodsNamed(operation);
  if (methods.empty()) RaiseNoSuchOperation(operation, source_);
  const auto takesThem = [&](const JavaMethod* method) { return method->parameters.size() == argumentCount; };
  if (std::ranges::any_of(methods, takesThem)) return;
  Text about = Text(operation) + " with " + std::to_string(argumentCount) + " arguments, there is ";
  for (const JavaMethod* method : methods) about += (method == methods.front() ? "" : ", ") + method->signature;
  throw RuntimeError(PlatformFault::WrongNumberOfArguments, about, source_);
}

Value JavaObject::Default() const {
  RaiseNoSuchOperation("it has no default value", source_);
}

Value JavaObject::Invoke(const JavaClass::Overloads& methods, std::string_view operation, Arguments arguments) {
  if (methods.empty()) RaiseNoSuchOperation(operation, source_);
  if (std::ranges::any_of(arguments, IsField)) {
    std::vector<Argument> values;
    for (const Argument& argument : arguments) values.emplace_back(WithoutField(argument.value()));
    return Invoke(methods, operation, values);
  }
  const JavaMethod& method = ChooseMethod(machine_->env(), methods, arguments, operation, source_);
  return CallMethod(target(), method, arguments);
}

}  // namespace zenqay
