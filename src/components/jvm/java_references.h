// Local references, which a thread that was not called from Java must give back itself.
#pragma once

#include <jni.h>

#include <utility>

namespace zenqay {

/// Owns one local reference, or none.
template <typename Reference = jobject>
class Local {
 public:
  Local(JNIEnv& env, Reference reference) : env_(&env), reference_(reference) {}
  Local(Local&& other) noexcept : env_(other.env_), reference_(std::exchange(other.reference_, nullptr)) {}
  Local& operator=(Local&&) = delete;
  ~Local() {
    if (reference_ != nullptr) env_->DeleteLocalRef(reference_);
  }

  Reference get() const { return reference_; }
  explicit operator bool() const { return reference_ != nullptr; }

 private:
  JNIEnv* env_;
  Reference reference_;
};

/// Gives back every local reference that is made in its scope. Slower than single ones: for reflection and errors.
class LocalFrame {
 public:
  explicit LocalFrame(JNIEnv& env) : env_(env), isOpen_(env.PushLocalFrame(32) == 0) {
    if (!isOpen_) env_.ExceptionClear();  // no memory; the references then last until the machine's end
  }
  LocalFrame(const LocalFrame&) = delete;
  LocalFrame& operator=(const LocalFrame&) = delete;
  ~LocalFrame() {
    if (isOpen_) env_.PopLocalFrame(nullptr);
  }

 private:
  JNIEnv& env_;
  bool isOpen_;
};

}  // namespace zenqay
