// The Java machine of the process: started once, ended with its last object.
#pragma once

#include <jni.h>

#include <memory>
#include <vector>

#include "components/jvm/java_class.h"
#include "components/jvm/jvm_settings.h"

namespace zenqay {

/// All calls come from the thread that started the machine.
class JavaMachine {
 public:
  /// Raises 429, described by nothing but the reason, also where the machine would rather end the process. A process
  /// has one machine in its life: a second one, or one after a failure, fails too.
  static std::shared_ptr<JavaMachine> Start(const JvmSettings& settings);

  /// Lets the adapter's shutdown hooks run. A thread of the adapter that does not end holds the process up for no
  /// longer than a few seconds; standard error then says so.
  ~JavaMachine();
  JavaMachine(const JavaMachine&) = delete;
  JavaMachine& operator=(const JavaMachine&) = delete;

  JNIEnv& env() const { return *env_; }
  const JavaTypes& types() const { return *types_; }

  /// The class, or the class of the object: read once, kept as long as the machine.
  JavaClass& Known(jclass type);
  JavaClass& ClassOf(jobject object);

 private:
  JavaMachine(JavaVM* machine, JNIEnv* env) : machine_(machine), env_(env) {}

  void Prepare(const JvmSettings& settings);

  JavaVM* machine_;
  JNIEnv* env_;
  std::unique_ptr<JavaTypes> types_;
  std::vector<std::unique_ptr<JavaClass>> classes_;  // the one used last in front: an adapter's rows ask in runs
};

}  // namespace zenqay
