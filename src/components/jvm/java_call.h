// One call of a Java method: choosing it by the arguments, and values on their way in and out.
//
// Numbers go to every numeric type that has room for them (6 where it has not; halves to the even neighbour), texts to
// strings, booleans to booleans, Java objects to parameters of their classes; empty, null and empty references are
// null (94 for a primitive). A time goes to a java.util.Date, else to a string; an object of another host to no
// parameter. Nothing else is converted.
#pragma once

#include <jni.h>

#include "components/jvm/java_machine.h"
#include "contracts/value.h"

namespace zenqay {

/// Picks the method whose parameters fit best. Raises 450 when none takes that many arguments, 13 when none
/// understands them or several fit alike. `operation` is the name that was asked for.
const JavaMethod& ChooseMethod(JNIEnv& env, const JavaClass::Overloads& methods, Arguments arguments,
                               std::string_view operation, const Text& source);

/// An object, as its members see it.
struct JavaTarget {
  const std::shared_ptr<JavaMachine>& machine;
  jobject object;
  const JavaClass& type;
  const Text& source;  // of errors
};

/// Calls the method on the object. Raises 440 for what it throws.
Value CallMethod(const JavaTarget& target, const JavaMethod& method, Arguments arguments);

Value ReadField(const JavaTarget& target, const JavaField& field);
void WriteField(const JavaTarget& target, const JavaField& field, const Value& value);

}  // namespace zenqay
