#include "components/jvm/java_types.h"

#include "components/jvm/java_exception.h"
#include "components/jvm/java_text.h"

namespace zenqay {
namespace {

constexpr JavaKind kWrapped[] = {JavaKind::Boolean, JavaKind::Byte, JavaKind::Char,  JavaKind::Short,
                                 JavaKind::Int,     JavaKind::Long, JavaKind::Float, JavaKind::Double};

constexpr std::pair<std::string_view, JavaKind> kPrimitives[] = {
    {"void", JavaKind::Void}, {"boolean", JavaKind::Boolean}, {"byte", JavaKind::Byte},
    {"char", JavaKind::Char}, {"short", JavaKind::Short},     {"int", JavaKind::Int},
    {"long", JavaKind::Long}, {"float", JavaKind::Float},     {"double", JavaKind::Double},
};

}  // namespace

jclass RuntimeClass(JNIEnv& env, const char* name) {
  const Local<jclass> found(env, env.FindClass(name));
  RaisePending(env, name, kPlatformSource);
  return static_cast<jclass>(env.NewGlobalRef(found.get()));
}

JavaTypes::JavaTypes(JNIEnv& env)
    : env_(env),
      bigDecimal_(RuntimeClass(env, "java/math/BigDecimal")),
      bigInteger_(RuntimeClass(env, "java/math/BigInteger")),
      iterator_(RuntimeClass(env, "java/util/Iterator")),
      date_(RuntimeClass(env, "java/util/Date")),
      newDate_(env.GetMethodID(date_, "<init>", "(IIIIII)V")),
      getName_(env.GetMethodID(RuntimeClass(env, "java/lang/Class"), "getName", "()Ljava/lang/String;")) {
  const auto set = [&](JavaKind kind, const Wrapper& wrapper) { wrappers_[static_cast<std::size_t>(kind)] = wrapper; };
  set(JavaKind::Boolean, WrapperOf("java/lang/Boolean", "Z", "booleanValue"));
  set(JavaKind::Byte, WrapperOf("java/lang/Byte", "B", "byteValue"));
  set(JavaKind::Char, WrapperOf("java/lang/Character", "C", "charValue"));
  set(JavaKind::Short, WrapperOf("java/lang/Short", "S", "shortValue"));
  set(JavaKind::Int, WrapperOf("java/lang/Integer", "I", "intValue"));
  set(JavaKind::Long, WrapperOf("java/lang/Long", "J", "longValue"));
  set(JavaKind::Float, WrapperOf("java/lang/Float", "F", "floatValue"));
  set(JavaKind::Double, WrapperOf("java/lang/Double", "D", "doubleValue"));
  // BigDecimal and BigInteger answer this one too.
  const jclass number = RuntimeClass(env, "java/lang/Number");
  wrappers_[static_cast<std::size_t>(JavaKind::Double)].value = env.GetMethodID(number, "doubleValue", "()D");
  set(JavaKind::String, {.type = RuntimeClass(env, "java/lang/String")});
  RaisePending(env, "the classes of values", kPlatformSource);
}

JavaTypes::Wrapper JavaTypes::WrapperOf(const char* className, const char* signature, const char* getter) const {
  Wrapper wrapper{.type = RuntimeClass(env_, className)};
  const Text factory = Text("(") + signature + ")L" + className + ";";
  wrapper.valueOf = env_.GetStaticMethodID(wrapper.type, "valueOf", factory.c_str());
  wrapper.value = env_.GetMethodID(wrapper.type, getter, (Text("()") + signature).c_str());
  return wrapper;
}

Text JavaTypes::NameOf(jclass type) const {
  const Local<jstring> name(env_, static_cast<jstring>(env_.CallObjectMethod(type, getName_)));
  RaisePending(env_, "getName", kPlatformSource);
  return TextOf(env_, name.get(), kPlatformSource);
}

JavaType JavaTypes::TypeOf(jclass type) const {
  JavaType described{.kind = JavaKind::Object, .name = NameOf(type)};
  for (const auto& [name, kind] : kPrimitives) {
    if (described.name != name) continue;
    described.kind = kind;
    return described;
  }
  described.reference = static_cast<jclass>(env_.NewGlobalRef(type));
  if (env_.IsSameObject(type, wrapper(JavaKind::String).type)) {
    described.kind = JavaKind::String;
    described.mayBeValue = true;
    return described;
  }
  const auto add = [&](JavaKind kind) {
    if (env_.IsAssignableFrom(wrapper(kind).type, type)) described.holds |= 1U << static_cast<unsigned>(kind);
  };
  add(JavaKind::String);
  for (const JavaKind kind : kWrapped) {
    add(kind);
    if (env_.IsSameObject(type, wrapper(kind).type)) described.box = kind;
  }
  described.holdsDate = env_.IsAssignableFrom(date_, type);
  described.mayBeValue =
      described.holds != 0 || env_.IsSameObject(type, bigDecimal_) || env_.IsSameObject(type, bigInteger_);
  return described;
}

std::optional<JavaKind> JavaTypes::ValueKindOf(jclass type) const {
  if (env_.IsSameObject(type, wrapper(JavaKind::String).type)) return JavaKind::String;
  for (const JavaKind kind : kWrapped) {
    if (env_.IsSameObject(type, wrapper(kind).type)) return kind;
  }
  if (env_.IsSameObject(type, bigDecimal_) || env_.IsSameObject(type, bigInteger_)) return JavaKind::Double;
  return {};
}

Local<> JavaTypes::Box(JavaKind kind, const jvalue& value) const {
  const Wrapper& wrapped = wrapper(kind);
  return {env_, env_.CallStaticObjectMethodA(wrapped.type, wrapped.valueOf, &value)};
}

Local<> JavaTypes::DateAt(const DateTimeParts& time) const {
  return {env_, env_.NewObject(date_, newDate_, jint{time.year - 1900}, jint{time.month - 1}, jint{time.day},
                               jint{time.hour}, jint{time.minute}, jint{time.second})};
}

jvalue JavaTypes::Unbox(JavaKind kind, jobject object) const {
  const jmethodID value = wrapper(kind).value;
  jvalue unboxed{};
  switch (kind) {
    case JavaKind::Boolean:
      unboxed.z = env_.CallBooleanMethod(object, value);
      break;
    case JavaKind::Byte:
      unboxed.b = env_.CallByteMethod(object, value);
      break;
    case JavaKind::Char:
      unboxed.c = env_.CallCharMethod(object, value);
      break;
    case JavaKind::Short:
      unboxed.s = env_.CallShortMethod(object, value);
      break;
    case JavaKind::Int:
      unboxed.i = env_.CallIntMethod(object, value);
      break;
    case JavaKind::Long:
      unboxed.j = env_.CallLongMethod(object, value);
      break;
    case JavaKind::Float:
      unboxed.f = env_.CallFloatMethod(object, value);
      break;
    case JavaKind::Double:
      unboxed.d = env_.CallDoubleMethod(object, value);
      break;
    case JavaKind::Void:
    case JavaKind::String:
    case JavaKind::Object:
      unboxed.l = object;
  }
  return unboxed;
}

}  // namespace zenqay
