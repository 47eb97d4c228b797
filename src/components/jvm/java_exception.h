// Java exceptions as errors of the system.
#pragma once

#include <jni.h>

#include "base/runtime_error.h"

namespace zenqay {

/// Takes the pending exception away and describes it and what caused it: "java.lang.IllegalStateException: no session;
/// caused by java.io.IOException: closed". Empty when none is pending.
Text TakeException(JNIEnv& env);

/// Raises the pending exception, if there is one: 440, its description behind the operation's.
void RaisePending(JNIEnv& env, std::string_view operation, const Text& source);

}  // namespace zenqay
