// The library of an installed Java runtime, found and loaded while the program runs.
#pragma once

#include <jni.h>

namespace zenqay {

using CreateJavaMachine = jint(JNICALL*)(JavaVM** machine, void** environment, void* arguments);

/// Loads the runtime that JAVA_HOME names, or else the one of the `java` command, or else the first one below
/// /usr/lib/jvm (default-java in front of the others). It stays loaded. Raises 429, described by
/// nothing but what is missing.
CreateJavaMachine LoadJavaLibrary();

}  // namespace zenqay
