#include "doubles/scripted_components.h"

namespace zenqay {
namespace {

/// A row: every hasX, getX and setX is an operation of it.
class ScriptedRow : public ScriptedObject {
 public:
  ScriptedRow(Journal& journal, Text name, const RowFields& fields) : ScriptedObject(journal, name), journal_(journal) {
    for (const auto& [field, value] : fields) fields_.insert_or_assign(LowerCased(field), value);
  }

  Value Call(std::string_view operation, Arguments arguments) override {
    journal_.Line(name() + "." + Text(operation) + "(" + Shown(arguments) + ")");
    const Text prefix = LowerCased(operation.substr(0, 3));
    const Text field = LowerCased(operation.substr(3));
    const auto found = fields_.find(field);
    if (prefix == "has") return found != fields_.end();
    if (prefix == "get") return found == fields_.end() ? Value() : found->second;
    if (prefix == "set") {
      fields_.insert_or_assign(field, arguments[0].value());
      return {};
    }
    RaiseNoSuchOperation(operation, name());
  }

 private:
  Journal& journal_;
  std::map<Text, Value> fields_;
};

}  // namespace

ScriptedObject& ScriptedObject::AnswersInTurn(const Text& operation, std::vector<Value> values) {
  return Does(operation, [values = std::move(values), next = std::size_t{0}](Arguments) mutable {
    const Value value = values[next];
    if (next + 1 < values.size()) ++next;
    return value;
  });
}

Value ScriptedObject::Call(std::string_view operation, Arguments arguments) {
  journal_.Line(name_ + "." + Text(operation) + "(" + Shown(arguments) + ")");
  return AnswerTo(operation, arguments);
}

Value ScriptedObject::Get(std::string_view property) {
  journal_.Line("get " + name_ + "." + Text(property));
  return AnswerTo(property, {});
}

void ScriptedObject::Put(std::string_view property, const Value& value) {
  journal_.Line("put " + name_ + "." + Text(property) + " = " + Shown(value));
  Argument argument(value);
  AnswerTo(property, Arguments(&argument, 1));
}

Value ScriptedObject::AnswerTo(std::string_view operation, Arguments arguments) {
  const auto answer = answers_.find(LowerCased(operation));
  if (answer == answers_.end()) RaiseNoSuchOperation(operation, name_);
  return answer->second(arguments);
}

std::shared_ptr<ScriptedObject> ScriptedComponents::Register(const Text& classId, const Text& name) {
  const auto object = Make(name);
  RegisterInTurn(classId, {object});
  return object;
}

void ScriptedComponents::RegisterInTurn(const Text& classId, std::vector<std::shared_ptr<ScriptedObject>> objects) {
  classes_[classId] = std::move(objects);
}

std::shared_ptr<ScriptedObject> ScriptedComponents::Make(const Text& name) {
  return std::make_shared<ScriptedObject>(journal_, name);
}

Object ScriptedComponents::MakeRow(const RowFields& fields) {
  return Object(std::make_shared<ScriptedRow>(journal_, "row" + std::to_string(++rows_), fields));
}

std::shared_ptr<ScriptedObject> ScriptedComponents::MakeEnumeration(const Text& name, std::vector<Object> rows) {
  const auto enumeration = Make(name);
  const auto left = std::make_shared<std::vector<Object>>(rows.rbegin(), rows.rend());
  enumeration->Does("hasMoreElements", [left](Arguments) { return !left->empty(); });
  enumeration->Does("nextElement", [left](Arguments) {
    const Object row = left->back();
    left->pop_back();
    return row;
  });
  return enumeration;
}

Object ScriptedComponents::Handed(const Object& object) {
  const std::shared_ptr<Component> component = object.component();
  const Text name = dynamic_cast<const ScriptedObject&>(*component).name();
  const auto release = [component, name, &journal = journal_](Component*) { journal.Note("release " + name); };
  return Object(std::shared_ptr<Component>(component.get(), release));
}

void ScriptedComponents::RequireUsable() {
  journal_.Line("require usable components");
  if (unusable) throw *unusable;
}

Object ScriptedComponents::Create(const Text& classId) {
  if (const auto failure = failures_.find(classId); failure != failures_.end()) {
    journal_.Line("create " + classId);
    throw failure->second;
  }
  if (const auto known = classes_.find(classId); known != classes_.end()) {
    journal_.Line("create " + classId);
    std::vector<std::shared_ptr<ScriptedObject>>& objects = known->second;
    const Object next(objects.front());
    if (objects.size() > 1) objects.erase(objects.begin());
    return showReleases ? Handed(next) : next;
  }
  if (classId.starts_with("java:java.util.")) {
    const Object date = dates_.Create(classId);
    if (classId == "java:java.util.Date") date.Call("setTime", nowMilliseconds);
    return date;
  }
  journal_.Line("create " + classId);
  throw RuntimeError(PlatformFault::CannotCreateObject, classId, classId);
}

}  // namespace zenqay
