#include "components/replay/replay_host.h"

#include <map>
#include <unordered_map>

#include "base/json_text.h"
#include "base/numbers.h"
#include "components/replay/recording.h"
#include "process/QTMDeclarations.h"
#include "trace/shown_value.h"

namespace zenqay {

using nlohmann::ordered_json;

/// What the objects of one replay share. They are numbered as in the trace.
class ReplayHost::Run : public std::enable_shared_from_this<Run> {
 public:
  explicit Run(const Text& path) : recording_(path) {}

  Recording& recording() { return recording_; }

  Object Create(const Text& classId);
  Value ValueOf(const ordered_json& shown);

  /// The arguments as the trace shows them.
  static ordered_json Shown(Arguments arguments);

  void Forget(std::int64_t number) { objects_.erase(number); }

 private:
  Object ObjectOf(std::int64_t number, const Text& classId);

  Recording recording_;
  std::unordered_map<std::int64_t, std::weak_ptr<ReplayedObject>> objects_;
};

/// Holds what each of its operations gave last, as a row holds its dates: asked again, it gives the same object.
class ReplayHost::ReplayedObject : public Component {
 public:
  ReplayedObject(std::shared_ptr<Run> run, std::int64_t number, Text classId)
      : run_(std::move(run)), number_(number), classId_(std::move(classId)) {}
  ReplayedObject(const ReplayedObject&) = delete;
  ReplayedObject& operator=(const ReplayedObject&) = delete;
  ~ReplayedObject() override { run_->Forget(number_); }

  std::int64_t number() const { return number_; }

  Value Call(std::string_view operation, Arguments arguments) override { return Answer(Text(operation), arguments); }

  Value Get(std::string_view property) override { return Answer("get " + Text(property), {}); }

  void Put(std::string_view property, const Value& value) override {
    Argument argument(value);
    Answer("put " + Text(property), Arguments(&argument, 1));
  }

 private:
  Value Answer(const Text& operation, Arguments arguments);
  bool FirstIsOfClock(const Text& operation) const;

  std::shared_ptr<Run> run_;
  std::int64_t number_;
  Text classId_;  // empty for what an operation gave
  bool isAsked_ = false;
  std::map<Text, Object> given_;  // by operation
};

Value ReplayHost::ReplayedObject::Answer(const Text& operation, Arguments arguments) {
  const RecordedCall recorded = run_->recording().Take({.object = number_,
                                                        .operation = operation,
                                                        .args = Run::Shown(arguments),
                                                        .firstIsOfClock = FirstIsOfClock(operation)});
  if (StartsWithIgnoringCase(operation, "get")) isAsked_ = true;
  if (recorded.error) throw *recorded.error;
  Value answer = run_->ValueOf(recorded.returned);
  if (const Object* object = answer.If<Object>()) given_[operation] = *object;
  for (std::size_t i = 0; i < recorded.argsAfter.size(); ++i) {
    if (recorded.argsAfter[i] != recorded.call.args[i]) arguments[i].Assign(run_->ValueOf(recorded.argsAfter[i]));
  }
  return answer;
}

/// A pass puts the time of now into a date that it has just created; the status component is told when.
bool ReplayHost::ReplayedObject::FirstIsOfClock(const Text& operation) const {
  if (classId_ == kDateClass) return !isAsked_ && StartsWithIgnoringCase(operation, "set");
  return EqualsIgnoringCase(operation, "writeToMessageBox") || EqualsIgnoringCase(operation, "WriteToAlertBox");
}

Object ReplayHost::Run::Create(const Text& classId) {
  const RecordedCall recorded = recording_.Take({.classId = classId});
  if (recorded.error) throw *recorded.error;
  return ObjectOf(recorded.created, classId);
}

Object ReplayHost::Run::ObjectOf(std::int64_t number, const Text& classId) {
  if (number == 0) return {};
  std::weak_ptr<ReplayedObject>& known = objects_[number];
  std::shared_ptr<ReplayedObject> object = known.lock();
  if (object == nullptr) {
    object = std::make_shared<ReplayedObject>(shared_from_this(), number, classId);
    known = object;
  }
  return Object(std::move(object));
}

/// An integer is 32 bits wide, whatever it was: nothing in a job tells the widths apart. No component gives a date-time
/// but as an object, so a text is a text.
Value ReplayHost::Run::ValueOf(const ordered_json& shown) {
  if (shown.is_null()) return Null();
  if (shown.is_boolean()) return shown.get<bool>();
  if (shown.is_number_integer()) return RoundToInt32(shown.get<double>());
  if (shown.is_number()) return shown.get<double>();
  if (shown.is_string()) return shown.get<Text>();
  if (shown.contains("object")) return ObjectOf(ObjectIn(shown), "");
  if (shown.contains("value")) return ValueOf(shown["value"]);
  return {};
}

ordered_json ReplayHost::Run::Shown(Arguments arguments) {
  ordered_json shown = ordered_json::array();
  for (const Argument& argument : arguments) {
    shown.push_back(ShownValue(argument.value(), [](const Object& object) {
      const auto* own = dynamic_cast<const ReplayedObject*>(object.component().get());
      return own == nullptr ? kForeignObject : own->number();
    }));
  }
  CleanOfSecrets(shown);
  return ordered_json::parse(JsonText(shown));  // as it would be read
}

ReplayHost::ReplayHost(const Text& path) : run_(std::make_shared<Run>(path)) {}

std::shared_ptr<ComponentHost> ReplayHost::Make(const CatalogueElement& element,
                                                const std::shared_ptr<ComponentHost>& former) {
  element.RequireOnly({"prefix", "kind", "file"});
  const Text path = element.RequiredPath("file");
  const auto* replay = dynamic_cast<const ReplayHost*>(former.get());
  if (replay == nullptr) return std::make_shared<ReplayHost>(path);
  if (replay->run_->recording().path() == path) return former;
  throw RuntimeError(PlatformFault::InvalidCall,
                     element.Place() + ": another trace is replayed already, " + replay->run_->recording().path());
}

Object ReplayHost::Create(const Text& classId) {
  return run_->Create(classId);
}

}  // namespace zenqay
