// A component that is a Java object.
#pragma once

#include <jni.h>

#include "components/jvm/java_call.h"
#include "contracts/value.h"

namespace zenqay {

/// Holds the one global reference to its object, and the machine as long as it lives. A field of a recordset that is
/// given to an operation or a property stands for what it holds in the current row, read once.
class JavaObject : public Component {
 public:
  /// `object` is a reference of the caller's own. `source`, the source of errors, is kept with the class. Raises 440
  /// when the machine has no memory for another reference.
  JavaObject(std::shared_ptr<JavaMachine> machine, JavaClass& type, jobject object, const Text& source);
  ~JavaObject() override;

  /// Null for everything that is no Java object.
  static const JavaObject* From(const Value& value);

  Value Call(std::string_view operation, Arguments arguments) override;
  Value Get(std::string_view property) override;
  void Put(std::string_view property, const Value& value) override;
  void RequireCallable(std::string_view operation, std::size_t argumentCount) override;
  Value Default() const override;

  jobject reference() const { return object_; }
  const JavaClass& type() const { return type_; }

 private:
  JavaTarget target() const { return {machine_, object_, type_, source_}; }
  Value Invoke(const JavaClass::Overloads& methods, std::string_view operation, Arguments arguments);

  std::shared_ptr<JavaMachine> machine_;
  JavaClass& type_;
  jobject object_;
  const Text& source_;
};

}  // namespace zenqay
