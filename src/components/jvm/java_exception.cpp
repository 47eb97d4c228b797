#include "components/jvm/java_exception.h"

#include "components/jvm/java_references.h"
#include "components/jvm/java_text.h"

namespace zenqay {
namespace {

/// A chain of causes may be a ring.
constexpr int kMostCauses = 8;

/// What a method without arguments gives; null when it fails, which is of no interest while another failure is told.
jobject Ask(JNIEnv& env, jobject object, const char* className, const char* method, const char* signature) {
  const jclass type = env.FindClass(className);
  const jmethodID id = type == nullptr ? nullptr : env.GetMethodID(type, method, signature);
  const jobject answer = id == nullptr ? nullptr : env.CallObjectMethod(object, id);
  const bool failed = env.ExceptionCheck();
  if (failed) env.ExceptionClear();
  return failed ? nullptr : answer;
}

/// The text as far as it can be told: half a character must not hide the failure.
Text Told(JNIEnv& env, jobject string) {
  try {
    return string == nullptr ? Text() : TextOf(env, static_cast<jstring>(string), "");
  } catch (const RuntimeError& unreadable) {
    return unreadable.description();
  }
}

Text DescriptionOf(JNIEnv& env, jthrowable exception) {
  const Text name =
      Told(env, Ask(env, env.GetObjectClass(exception), "java/lang/Class", "getName", "()Ljava/lang/String;"));
  const Text message = Told(env, Ask(env, exception, "java/lang/Throwable", "getMessage", "()Ljava/lang/String;"));
  return message.empty() ? name : name + ": " + message;
}

}  // namespace

Text TakeException(JNIEnv& env) {
  if (!env.ExceptionCheck()) return {};
  const Local<jthrowable> pending(env, env.ExceptionOccurred());
  env.ExceptionClear();
  const LocalFrame frame(env);
  Text description = DescriptionOf(env, pending.get());
  jthrowable exception = pending.get();
  for (int cause = 0; cause < kMostCauses; ++cause) {
    exception =
        static_cast<jthrowable>(Ask(env, exception, "java/lang/Throwable", "getCause", "()Ljava/lang/Throwable;"));
    if (exception == nullptr) break;
    description += "; caused by " + DescriptionOf(env, exception);
  }
  return description.empty() ? "an exception that cannot be described" : description;
}

void RaisePending(JNIEnv& env, std::string_view operation, const Text& source) {
  if (!env.ExceptionCheck()) return;
  Text about(operation);
  about += ": " + TakeException(env);
  throw RuntimeError(PlatformFault::Automation, about, source);
}

}  // namespace zenqay
