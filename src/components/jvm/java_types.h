// The types of Java's parameters, results and fields, as far as values of the system can be or become them.
#pragma once

#include <jni.h>

#include <array>
#include <optional>

#include "base/date_time.h"
#include "base/text_functions.h"
#include "components/jvm/java_references.h"

namespace zenqay {

/// String is java.lang.String; Object every other class.
enum class JavaKind { Void, Boolean, Byte, Char, Short, Int, Long, Float, Double, String, Object };

inline constexpr std::size_t kJavaKinds = 11;

/// A declared type.
struct JavaType {
  JavaKind kind = JavaKind::Void;
  Text name;
  jclass reference = nullptr;   // of String and Object: lasts as long as the machine
  std::optional<JavaKind> box;  // of an Object: the kind that it wraps, as java.lang.Integer does
  unsigned holds = 0;           // of an Object: one bit for each kind whose objects it can refer to
  bool holdsDate = false;       // of an Object: it can refer to a java.util.Date
  bool mayBeValue = false;      // what it refers to may be a text, a number or a boolean

  bool Holds(JavaKind value) const { return (holds >> static_cast<unsigned>(value) & 1U) != 0; }
};

/// The classes that stand for plain values.
class JavaTypes {
 public:
  explicit JavaTypes(JNIEnv& env);

  JavaType TypeOf(jclass type) const;
  Text NameOf(jclass type) const;

  /// The kind of value that the instances of a class are, nothing where they are objects. BigDecimal and BigInteger
  /// are doubles.
  std::optional<JavaKind> ValueKindOf(jclass type) const;

  /// The object that wraps a value of a kind other than String. Without memory it is empty and an exception pending.
  Local<> Box(JavaKind kind, const jvalue& value) const;
  jvalue Unbox(JavaKind kind, jobject object) const;

  /// A java.util.Date that stands at this local time. Without memory it is empty and an exception pending.
  Local<> DateAt(const DateTimeParts& time) const;

  /// True for the classes whose `hasNext` and `next` answer as `hasMoreElements` and `nextElement`.
  bool IsIterator(jclass type) const { return env_.IsAssignableFrom(type, iterator_); }

 private:
  struct Wrapper {
    jclass type = nullptr;
    jmethodID valueOf = nullptr;  // of every kind but String
    jmethodID value = nullptr;
  };

  Wrapper WrapperOf(const char* className, const char* signature, const char* getter) const;
  const Wrapper& wrapper(JavaKind kind) const { return wrappers_[static_cast<std::size_t>(kind)]; }

  JNIEnv& env_;
  std::array<Wrapper, kJavaKinds> wrappers_;
  jclass bigDecimal_;
  jclass bigInteger_;
  jclass iterator_;
  jclass date_;
  jmethodID newDate_;
  jmethodID getName_;
};

/// A class of the runtime itself, as a global reference that lasts as long as the machine. Raises 440 without it.
jclass RuntimeClass(JNIEnv& env, const char* name);

}  // namespace zenqay
