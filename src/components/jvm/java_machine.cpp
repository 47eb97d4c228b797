#include "components/jvm/java_machine.h"

#include <algorithm>
#include <clocale>
#include <csetjmp>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <mutex>
#include <thread>

#include "base/runtime_error.h"
#include "components/jvm/java_exception.h"
#include "components/jvm/java_library.h"
#include "components/jvm/java_text.h"

namespace zenqay {
namespace {

constexpr auto kPatience = std::chrono::seconds(5);
constexpr int kFatalEnd = 70;

/// What the machine says and does while it starts. It has no other way to its hooks, which know no caller and may be
/// called by threads of the machine's own.
struct Starting {
  std::jmp_buf giveUp;  // of the thread that starts the machine, and used by it alone

  std::mutex mutex;  // of what follows
  bool isOn = false;
  std::thread::id thread;
  Text said;
};

Starting& TheStart() {
  static Starting start;
  return start;
}

/// The machine's own messages: a reason when it does not start, and standard error's when it does. Standard output
/// belongs to the status component.
jint JNICALL TakeMessage(FILE*, const char* format, va_list arguments) {
  char text[1024];
  const int length = std::vsnprintf(text, sizeof text, format, arguments);
  Starting& start = TheStart();
  const std::lock_guard lock(start.mutex);
  if (start.isOn) {
    start.said += text;
  } else {
    std::fputs(text, stderr);
  }
  return length;
}

/// True on the thread that starts the machine, while it does.
bool StartsHere() {
  Starting& start = TheStart();
  const std::lock_guard lock(start.mutex);
  return start.isOn && start.thread == std::this_thread::get_id();
}

/// The machine wants to end the process. While it starts, giving it up is enough; later, what runs in it is lost.
[[noreturn]] void EndOfMachine(const char* how) {
  if (StartsHere()) std::longjmp(TheStart().giveUp, 1);
  std::fprintf(stderr, "zenqay-dbsync: fatal error: the Java machine %s\n", how);
  std::_Exit(kFatalEnd);
}

void JNICALL TakeExit(jint) {
  EndOfMachine("was ended by the adapter");
}

void JNICALL TakeAbort() {
  EndOfMachine("broke down");
}

/// Nothing with a destructor may stand between the jump's two ends.
jint Create(CreateJavaMachine create, JavaVM*& machine, JNIEnv*& env, JavaVMInitArgs& arguments) {
  if (setjmp(TheStart().giveUp) != 0) return JNI_ERR;
  void* environment = nullptr;
  const jint result = create(&machine, &environment, &arguments);
  env = static_cast<JNIEnv*>(environment);
  return result;
}

/// The machine moves the process to the user's locale and takes signals over. What the process ignores it goes on
/// ignoring, and numbers keep their point.
class ProcessState {
 public:
  ProcessState() : locale_(std::setlocale(LC_ALL, nullptr)) {
    for (std::size_t at = 0; at < std::size(kSignals); ++at) ::sigaction(kSignals[at], nullptr, &former_[at]);
  }
  ~ProcessState() {
    std::setlocale(LC_ALL, locale_.c_str());
    for (std::size_t at = 0; at < std::size(kSignals); ++at) {
      if (former_[at].sa_handler != SIG_DFL) ::sigaction(kSignals[at], &former_[at], nullptr);
    }
  }
  ProcessState(const ProcessState&) = delete;
  ProcessState& operator=(const ProcessState&) = delete;

 private:
  static constexpr int kSignals[] = {SIGPIPE, SIGXFSZ};

  Text locale_;
  struct sigaction former_[std::size(kSignals)] = {};
};

[[noreturn]] void RaiseUnusable(const Text& why) {
  throw RuntimeError(static_cast<std::int32_t>(PlatformFault::CannotCreateObject), kPlatformSource, why);
}

Text OneLine(Text text) {
  while (text.ends_with('\n')) text.pop_back();
  return Replaced(text, "\n", " ");
}

Text ReasonOf(jint result, const Text& said) {
  if (!said.empty()) return "the Java machine does not start: " + OneLine(said);
  if (result == JNI_EEXIST) return "the Java machine does not start: the process has one already";
  return "the Java machine does not start: error " + std::to_string(result);
}

void Listen() {
  Starting& start = TheStart();
  const std::lock_guard lock(start.mutex);
  start.said.clear();
  start.thread = std::this_thread::get_id();
  start.isOn = true;
}

/// What has been said since; from now on messages go to standard error.
Text StopListening() {
  Starting& start = TheStart();
  const std::lock_guard lock(start.mutex);
  start.isOn = false;
  return std::move(start.said);
}

void CreateListening(CreateJavaMachine create, JavaVM*& machine, JNIEnv*& env, JavaVMInitArgs& arguments) {
  Listen();
  const jint result = Create(create, machine, env, arguments);
  const Text said = StopListening();
  if (result != JNI_OK) RaiseUnusable(ReasonOf(result, said));
  std::fputs(said.c_str(), stderr);
}

Text SystemProperty(JNIEnv& env, const char* name) {
  const LocalFrame frame(env);
  const jclass system = env.FindClass("java/lang/System");
  const jmethodID get = env.GetStaticMethodID(system, "getProperty", "(Ljava/lang/String;)Ljava/lang/String;");
  const auto value = static_cast<jstring>(env.CallStaticObjectMethod(system, get, env.NewStringUTF(name)));
  RaisePending(env, name, kPlatformSource);
  return value == nullptr ? Text() : TextOf(env, value, kPlatformSource);
}

}  // namespace

std::shared_ptr<JavaMachine> JavaMachine::Start(const JvmSettings& settings) {
  const CreateJavaMachine create = LoadJavaLibrary();
  std::vector<Text> texts = settings.MachineOptions();
  char messages[] = "vfprintf";
  char exit[] = "exit";
  char abort[] = "abort";
  // In front, so that they hear what is wrong with the others.
  std::vector<JavaVMOption> options = {{messages, reinterpret_cast<void*>(TakeMessage)},
                                       {exit, reinterpret_cast<void*>(TakeExit)},
                                       {abort, reinterpret_cast<void*>(TakeAbort)}};
  for (Text& text : texts) options.push_back({text.data(), nullptr});
  JavaVMInitArgs arguments{.version = JNI_VERSION_1_6,
                           .nOptions = static_cast<jint>(options.size()),
                           .options = options.data(),
                           .ignoreUnrecognized = JNI_FALSE};
  JavaVM* machine = nullptr;
  JNIEnv* env = nullptr;
  const ProcessState state;
  CreateListening(create, machine, env, arguments);
  const std::shared_ptr<JavaMachine> started(new JavaMachine(machine, env));
  started->Prepare(settings);
  return started;
}

void JavaMachine::Prepare(const JvmSettings& settings) {
  constexpr int kFirstWithoutFormerLocales = 23;
  const Text version = SystemProperty(*env_, "java.version");  // "1.8.0_392", "17.0.15"
  if (settings.AsksForFormerLocales() && std::atoi(version.c_str()) >= kFirstWithoutFormerLocales) {
    RaiseUnusable("Java " + version +
                  " writes dates in a form that no database reads: install Java 8 to 22, or set "
                  "-Djava.locale.providers in the options");
  }
  types_ = std::make_unique<JavaTypes>(*env_);
}

JavaMachine::~JavaMachine() {
  classes_.clear();
  machine_->DetachCurrentThread();  // the machine's end waits for every thread that has not left
  std::promise<void> ended;
  std::future<void> end = ended.get_future();
  std::thread([machine = machine_, ended = std::move(ended)]() mutable {
    machine->DestroyJavaVM();
    ended.set_value();
  }).detach();
  if (end.wait_for(kPatience) == std::future_status::ready) return;
  std::fputs("zenqay-dbsync: a thread of the Java adapter does not end and is left behind\n", stderr);
}

JavaClass& JavaMachine::Known(jclass type) {
  for (auto known = classes_.begin(); known != classes_.end(); ++known) {
    if (!env_->IsSameObject((*known)->type(), type)) continue;
    if (known != classes_.begin()) std::rotate(classes_.begin(), known, known + 1);
    return *classes_.front();
  }
  classes_.insert(classes_.begin(), std::make_unique<JavaClass>(*env_, *types_, type));
  return *classes_.front();
}

JavaClass& JavaMachine::ClassOf(jobject object) {
  const Local<jclass> type(*env_, env_->GetObjectClass(object));
  return Known(type.get());
}

}  // namespace zenqay
