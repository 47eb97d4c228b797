#include "components/jvm/java_class.h"

#include <algorithm>

#include "components/jvm/java_exception.h"
#include "components/jvm/java_text.h"

namespace zenqay {
namespace {

// Java's modifiers.
constexpr jint kStatic = 0x8;
constexpr jint kFinal = 0x10;
constexpr jint kBridge = 0x40;

/// Asks objects of the reflection. Every reference it gives ends with the frame around it.
class Reflection {
 public:
  Reflection(JNIEnv& env, const Text& source, const char* className)
      : env_(env), source_(source), class_(env.FindClass(className)) {
    RaisePending(env_, className, source_);
  }

  template <typename Reference>
  Reference Ask(jobject object, const char* method, const char* signature) const {
    const jobject answer = env_.CallObjectMethod(object, Method(method, signature));
    RaisePending(env_, method, source_);
    return static_cast<Reference>(answer);
  }

  jint Modifiers(jobject object) const {
    const jint modifiers = env_.CallIntMethod(object, Method("getModifiers", "()I"));
    RaisePending(env_, "getModifiers", source_);
    return modifiers;
  }

  Text Name(jobject object) const {
    return TextOf(env_, Ask<jstring>(object, "getName", "()Ljava/lang/String;"), source_);
  }

 private:
  jmethodID Method(const char* method, const char* signature) const {
    const jmethodID id = env_.GetMethodID(class_, method, signature);
    RaisePending(env_, method, source_);
    return id;
  }

  JNIEnv& env_;
  const Text& source_;
  jclass class_;
};

std::vector<JavaType> TypesOf(JNIEnv& env, const JavaTypes& types, jobjectArray classes) {
  std::vector<JavaType> described;
  for (jsize at = 0; at < env.GetArrayLength(classes); ++at) {
    const Local<jclass> type(env, static_cast<jclass>(env.GetObjectArrayElement(classes, at)));
    described.push_back(types.TypeOf(type.get()));
  }
  return described;
}

Text ParametersText(const std::vector<JavaType>& parameters) {
  Text text = "(";
  for (const JavaType& parameter : parameters) text.append(text.size() == 1 ? "" : ", ").append(parameter.name);
  return text + ")";
}

/// True when the newcomer is to stand in the place of one with the same parameters.
bool IsBetter(const JavaMethod& newcomer, const JavaMethod& present, std::string_view name) {
  if (newcomer.name == present.name) return present.isBridge && !newcomer.isBridge;
  return newcomer.name == name;
}

}  // namespace

JavaClass::JavaClass(JNIEnv& env, const JavaTypes& types, jclass type)
    : env_(env),
      types_(types),
      type_(static_cast<jclass>(env.NewGlobalRef(type))),
      name_(types.NameOf(type)),
      valueKind_(types.ValueKindOf(type)),
      isIterator_(types.IsIterator(type)) {}

const JavaClass::Overloads& JavaClass::MethodsNamed(std::string_view name) {
  if (const auto known = overloads_.find(name); known != overloads_.end()) return known->second;
  Read();
  Overloads found = CollectMethods(name);
  if (found.empty() && isIterator_) {
    if (EqualsIgnoringCase(name, "hasMoreElements")) found = CollectMethods("hasNext");
    if (EqualsIgnoringCase(name, "nextElement")) found = CollectMethods("next");
  }
  return overloads_.emplace(name, std::move(found)).first->second;
}

const JavaClass::Property& JavaClass::ReaderOf(std::string_view property) {
  if (const auto known = readers_.find(property); known != readers_.end()) return known->second;
  Read();
  return readers_.emplace(property, MakeReader(property)).first->second;
}

const JavaClass::Property& JavaClass::WriterOf(std::string_view property) {
  if (const auto known = writers_.find(property); known != writers_.end()) return known->second;
  Read();
  return writers_.emplace(property, MakeWriter(property)).first->second;
}

JavaClass::Property JavaClass::MakeReader(std::string_view property) {
  const Text name(property);
  const Overloads own = MethodsNamed(name);
  for (const JavaMethod* method : own) {
    if (method->parameters.empty()) return {.methods = {method}};
  }
  if (const JavaField* field = FindField(name)) return {.field = field};
  for (const Text& getter : {"get" + name, "is" + name}) {
    for (const JavaMethod* method : MethodsNamed(getter)) {
      if (method->parameters.empty()) return {.methods = {method}};
    }
  }
  return {.methods = own};  // they all take arguments, which is what the error then says
}

JavaClass::Property JavaClass::MakeWriter(std::string_view property) {
  const JavaField* field = FindField(property);
  if (field != nullptr && !field->isFinal) return {.field = field};
  return {.methods = MethodsNamed("set" + Text(property))};
}

void JavaClass::Read() {
  if (isRead_) return;
  methods_.clear();
  fields_.clear();
  ReadMethods();
  ReadFields();
  isRead_ = true;
}

void JavaClass::ReadMethods() {
  const LocalFrame frame(env_);
  const Reflection classes(env_, name_, "java/lang/Class");
  const Reflection methods(env_, name_, "java/lang/reflect/Method");
  const auto all = classes.Ask<jobjectArray>(type_, "getMethods", "()[Ljava/lang/reflect/Method;");
  for (jsize at = 0; at < env_.GetArrayLength(all); ++at) {
    const LocalFrame inner(env_);
    const jobject reflected = env_.GetObjectArrayElement(all, at);
    const jint modifiers = methods.Modifiers(reflected);
    JavaMethod method{.name = methods.Name(reflected),
                      .id = env_.FromReflectedMethod(reflected),
                      .isStatic = (modifiers & kStatic) != 0,
                      .isBridge = (modifiers & kBridge) != 0};
    method.result = types_.TypeOf(methods.Ask<jclass>(reflected, "getReturnType", "()Ljava/lang/Class;"));
    method.parameters =
        TypesOf(env_, types_, methods.Ask<jobjectArray>(reflected, "getParameterTypes", "()[Ljava/lang/Class;"));
    method.signature = method.name + ParametersText(method.parameters);
    methods_.push_back(std::move(method));
  }
}

void JavaClass::ReadFields() {
  const LocalFrame frame(env_);
  const Reflection classes(env_, name_, "java/lang/Class");
  const Reflection fields(env_, name_, "java/lang/reflect/Field");
  const auto all = classes.Ask<jobjectArray>(type_, "getFields", "()[Ljava/lang/reflect/Field;");
  for (jsize at = 0; at < env_.GetArrayLength(all); ++at) {
    const LocalFrame inner(env_);
    const jobject reflected = env_.GetObjectArrayElement(all, at);
    const jint modifiers = fields.Modifiers(reflected);
    JavaField field{.name = fields.Name(reflected),
                    .id = env_.FromReflectedField(reflected),
                    .isStatic = (modifiers & kStatic) != 0,
                    .isFinal = (modifiers & kFinal) != 0};
    field.type = types_.TypeOf(fields.Ask<jclass>(reflected, "getType", "()Ljava/lang/Class;"));
    fields_.push_back(std::move(field));
  }
}

JavaClass::Overloads JavaClass::CollectMethods(std::string_view name) const {
  Overloads found;
  for (const JavaMethod& method : methods_) {
    if (!EqualsIgnoringCase(method.name, name)) continue;
    const auto rival = std::find_if(found.begin(), found.end(), [&](const JavaMethod* present) {
      const bool canReplace = present->name == method.name || present->name == name || method.name == name;
      return canReplace && ParametersText(present->parameters) == ParametersText(method.parameters);
    });
    if (rival == found.end()) {
      found.push_back(&method);
    } else if (IsBetter(method, **rival, name)) {
      *rival = &method;
    }
  }
  return found;
}

const JavaField* JavaClass::FindField(std::string_view name) const {
  const JavaField* found = nullptr;
  for (const JavaField& field : fields_) {
    if (field.name == name) return &field;
    if (found == nullptr && EqualsIgnoringCase(field.name, name)) found = &field;
  }
  return found;
}

}  // namespace zenqay
