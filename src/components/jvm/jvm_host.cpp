#include "components/jvm/jvm_host.h"

#include "components/jvm/java_exception.h"
#include "components/jvm/java_object.h"

namespace zenqay {
namespace {

constexpr std::string_view kPrefix = "java:";

[[noreturn]] void RaiseNotCreated(const Text& classId, const Text& why) {
  throw RuntimeError(PlatformFault::CannotCreateObject, classId + " (" + why + ")", classId);
}

/// The class's name as the machine has it, with "/" between its parts.
Text InternalName(const Text& classId) {
  const Text name = classId.starts_with(kPrefix) ? classId.substr(kPrefix.size()) : classId;
  if (name.empty() || name.find_first_of("/[;") != Text::npos) RaiseNotCreated(classId, "that is no name of a class");
  return Replaced(name, ".", "/");
}

void RequireConstructor(JNIEnv& env, jclass type, const Text& classId) {
  const LocalFrame frame(env);
  const jclass classes = env.FindClass("java/lang/Class");
  const jmethodID getConstructor =
      env.GetMethodID(classes, "getConstructor", "([Ljava/lang/Class;)Ljava/lang/reflect/Constructor;");
  const jobjectArray noTypes = env.NewObjectArray(0, classes, nullptr);
  env.CallObjectMethod(type, getConstructor, noTypes);
  if (!env.ExceptionCheck()) return;
  const Text why = TakeException(env);
  RaiseNotCreated(classId, "it has no public constructor without arguments: " + why);
}

}  // namespace

struct JvmHost::Creatable {
  JavaClass& type;
  const Text& classId;  // kept with the class
  jmethodID constructor;
};

JvmHost::JvmHost() = default;
JvmHost::~JvmHost() = default;

std::shared_ptr<ComponentHost> JvmHost::Make(const CatalogueElement& element,
                                             const std::shared_ptr<ComponentHost>& former) {
  const auto host = former == nullptr ? std::make_shared<JvmHost>() : std::static_pointer_cast<JvmHost>(former);
  try {
    host->Add(element.directory(), element.Optional("classpath"), element.Optional("options"));
  } catch (const RuntimeError& fault) {
    throw RuntimeError(fault.number(), fault.source(), fault.description() + " (" + element.Place() + ")");
  }
  return host;
}

void JvmHost::Add(const std::filesystem::path& directory, const Text& classPath, const Text& options) {
  settings_.AddClassPath(directory, classPath);
  settings_.AddOptions(options);
}

Object JvmHost::Create(const Text& classId) {
  RequireMachine(classId);
  const Creatable& found = Find(classId);
  JNIEnv& env = machine_->env();
  const Local<> created(env, env.NewObject(found.type.type(), found.constructor));
  if (env.ExceptionCheck()) RaiseNotCreated(classId, TakeException(env));
  return Object(std::make_shared<JavaObject>(machine_, found.type, created.get(), found.classId));
}

void JvmHost::RequireMachine(const Text& classId) {
  if (machine_ != nullptr) return;
  if (!failure_) {
    try {
      machine_ = JavaMachine::Start(settings_);
      return;
    } catch (const RuntimeError& error) {
      failure_ = error.description();
    }
  }
  RaiseNotCreated(classId, *failure_);
}

const JvmHost::Creatable& JvmHost::Find(const Text& classId) {
  if (const auto known = creatables_.find(classId); known != creatables_.end()) return known->second;
  JNIEnv& env = machine_->env();
  const Local<jclass> type(env, env.FindClass(InternalName(classId).c_str()));
  if (env.ExceptionCheck()) RaiseNotCreated(classId, TakeException(env));
  RequireConstructor(env, type.get(), classId);
  const jmethodID constructor = env.GetMethodID(type.get(), "<init>", "()V");
  if (env.ExceptionCheck()) RaiseNotCreated(classId, TakeException(env));
  JavaClass& known = machine_->Known(type.get());
  return creatables_.emplace(classId, Creatable{known, known.KeepClassId(classId), constructor}).first->second;
}

}  // namespace zenqay
