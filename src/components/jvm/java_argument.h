// Values as arguments of Java's types.
#pragma once

#include <jni.h>

#include <vector>

#include "components/jvm/java_types.h"
#include "contracts/value.h"

namespace zenqay {

/// How well a value fits a type: 0 is best, kNoFit when the type does not understand it.
inline constexpr int kNoFit = 1000;
int FitOf(JNIEnv& env, const JavaType& type, const Value& value);

/// The value as the type has it; a local reference that it needs goes to `made`. Raises 6 and 94, naming `about`.
jvalue ConvertedTo(JNIEnv& env, const JavaTypes& types, const JavaType& type, const Value& value,
                   std::vector<Local<>>& made, const Text& about, const Text& source);

/// For messages: "text", "16-bit integer", "object of java.util.Date".
Text KindText(const Value& value);

}  // namespace zenqay
