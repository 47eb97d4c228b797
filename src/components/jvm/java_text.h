// Texts on their way between UTF-8 and Java's UTF-16.
#pragma once

#include <jni.h>

#include "base/text_functions.h"
#include "components/jvm/java_references.h"

namespace zenqay {

/// The text of a string that is not null. Raises 13 for half of a surrogate pair.
Text TextOf(JNIEnv& env, jstring string, const Text& source);

/// Raises 13 for a text that is no UTF-8. Without memory for it the reference is empty and an exception pending.
Local<> StringOf(JNIEnv& env, std::string_view text, const Text& source);

/// The text of UTF-16 units.
Text TextOfUnits(const jchar* units, std::size_t count, const Text& source);

}  // namespace zenqay
