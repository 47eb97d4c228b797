// Components whose answers a test writes down beforehand.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "base/runtime_error.h"
#include "components/dates/builtin_dates.h"
#include "doubles/journal.h"

namespace zenqay {

/// An object that answers what it was told to and writes each call to the journal: `name.Operation(arguments)`, and
/// `get name.Property`, `put name.Property = value`. What it was not told raises 438, which the journal shows too.
/// Operation names are matched without regard to case, and shown as they were called.
class ScriptedObject : public Component {
 public:
  using Answer = std::function<Value(Arguments)>;

  ScriptedObject(Journal& journal, Text name) : journal_(journal), name_(std::move(name)) {}

  ScriptedObject& Answers(const Text& operation, Value value) {
    return Does(operation, [value](Arguments) { return value; });
  }
  /// One value a call; the last one stays.
  ScriptedObject& AnswersInTurn(const Text& operation, std::vector<Value> values);
  ScriptedObject& Fails(const Text& operation, RuntimeError error) {
    return Does(operation, [error](Arguments) -> Value { throw error; });
  }
  ScriptedObject& Does(const Text& operation, Answer answer) {
    answers_[LowerCased(operation)] = std::move(answer);
    return *this;
  }

  const Text& name() const { return name_; }

  Value Call(std::string_view operation, Arguments arguments) override;
  Value Get(std::string_view property) override;
  void Put(std::string_view property, const Value& value) override;

 private:
  Value AnswerTo(std::string_view operation, Arguments arguments);

  Journal& journal_;
  Text name_;
  std::map<Text, Answer> answers_;
};

/// The fields of a row: `hasX` is true for those that are there, `getX` gives their value, empty for the others.
/// ActionType is a field like any other.
using RowFields = std::vector<std::pair<Text, Value>>;

/// A component host whose class ids a test registers. Date and calendar objects are real ones, standing at the fixed
/// instant, and not in the journal unless the test registers its own.
class ScriptedComponents : public ComponentHost {
 public:
  explicit ScriptedComponents(Journal& journal) : journal_(journal) {}

  /// The instant that new date objects stand at, in milliseconds since 1970 UTC.
  double nowMilliseconds = 0;

  /// Makes the class id creatable; the same object is given at each creation.
  std::shared_ptr<ScriptedObject> Register(const Text& classId, const Text& name);

  /// Makes the class id creatable: each creation gives the next object, the last one stays.
  void RegisterInTurn(const Text& classId, std::vector<std::shared_ptr<ScriptedObject>> objects);

  /// An object that is not created by class id.
  std::shared_ptr<ScriptedObject> Make(const Text& name);

  /// A row named `row1`, `row2`, … that answers hasX, getX and setX for every name.
  Object MakeRow(const RowFields& fields);

  /// An enumeration over rows.
  std::shared_ptr<ScriptedObject> MakeEnumeration(const Text& name, std::vector<Object> rows);

  /// The journal shows `release name` when the last reference to a created object goes.
  bool showReleases = false;

  /// The object, for one who is to have it alone: the journal shows when the last reference that stems from here goes.
  Object Handed(const Object& object);

  /// Makes the creation of a class id fail.
  void FailCreation(const Text& classId, RuntimeError error) { failures_.insert_or_assign(classId, error); }

  /// What is wrong with the host's settings. The journal shows `require usable components`.
  std::optional<RuntimeError> unusable;

  void RequireUsable() override;
  Object Create(const Text& classId) override;

 private:
  Journal& journal_;
  BuiltinDateHost dates_;
  std::map<Text, std::vector<std::shared_ptr<ScriptedObject>>> classes_;
  std::map<Text, RuntimeError> failures_;
  int rows_ = 0;
};

}  // namespace zenqay
