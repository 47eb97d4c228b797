#include "components/files/selection_criteria.h"

#include <algorithm>
#include <optional>

#include "components/files/file_component.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

/// All of these objects have nothing but operations that take one value.
class CriteriaObject : public FileComponent {
 public:
  using FileComponent::FileComponent;

  Value Call(std::string_view operation, Arguments arguments) final {
    for (const char* name : Operations()) {
      if (!EqualsIgnoringCase(operation, name)) continue;
      RequireArguments(name, arguments, 1, classId());
      Take(name, arguments[0].value());
      return {};
    }
    RaiseNoSuchOperation(operation, classId());
  }

 protected:
  /// `operation` is one of Operations, spelled as there.
  virtual std::vector<const char*> Operations() const = 0;
  virtual void Take(std::string_view operation, const Value& value) = 0;

  [[noreturn]] void RaiseMisfit(std::string_view operation, std::string_view expected) const {
    Text about(operation);
    throw RuntimeError(PlatformFault::TypeMismatch, about.append(" takes ").append(expected), classId());
  }

  Text RequireText(std::string_view operation, const Value& value) const {
    const Text* text = value.If<Text>();
    if (text == nullptr) RaiseMisfit(operation, "a text");
    return *text;
  }

  template <typename Part>
  std::shared_ptr<Part> Require(std::string_view operation, const Value& value, std::string_view expected) const {
    const Object* object = value.If<Object>();
    auto part = object == nullptr ? nullptr : std::dynamic_pointer_cast<Part>(object->component());
    if (part == nullptr) RaiseMisfit(operation, expected);
    return part;
  }
};

class Period : public CriteriaObject {
 public:
  Period() : CriteriaObject(kCriteriaPeriodClass) {}

  Object from;
  Object to;

 private:
  std::vector<const char*> Operations() const override { return {"setFrom", "setTo"}; }

  void Take(std::string_view operation, const Value& value) override {
    const Object* date = value.If<Object>();
    if (date == nullptr) RaiseMisfit(operation, "a date object");
    (operation == "setFrom" ? from : to) = *date;
  }
};

class Parameter : public CriteriaObject {
 public:
  Parameter() : CriteriaObject(kCriteriaParameterClass) {}

  Text field;
  std::optional<Value> low;
  std::optional<Value> high;

 private:
  std::vector<const char*> Operations() const override { return {"setFieldName", "setFrom", "setTo"}; }

  void Take(std::string_view operation, const Value& value) override {
    if (operation == "setFieldName") {
      field = RequireText(operation, value);
    } else {
      (operation == "setFrom" ? low : high) = value;
    }
  }
};

class Input : public CriteriaObject {
 public:
  Input() : CriteriaObject(kCriteriaInputClass) {}

  std::vector<std::shared_ptr<Parameter>> parameters;

 private:
  std::vector<const char*> Operations() const override { return {"addNetListParameter"}; }

  void Take(std::string_view operation, const Value& value) override {
    parameters.push_back(Require<Parameter>(operation, value, kCriteriaParameterClass));
  }
};

class Output : public CriteriaObject {
 public:
  Output() : CriteriaObject(kCriteriaOutputClass) {}

  std::vector<Text> fields;
  std::vector<Text> fieldsWithOld;

 private:
  std::vector<const char*> Operations() const override { return {"addFieldNameWithoutOld", "addFieldNameWithOld"}; }

  void Take(std::string_view operation, const Value& value) override {
    const Text field = RequireText(operation, value);
    fields.push_back(field);
    if (operation == "addFieldNameWithOld") fieldsWithOld.push_back(field);
  }
};

class Criteria : public CriteriaObject {
 public:
  Criteria() : CriteriaObject(kCriteriaClass) {}

  std::shared_ptr<Period> period;
  std::shared_ptr<Input> input;
  std::shared_ptr<Output> output;

 private:
  std::vector<const char*> Operations() const override { return {"setNetListPeriod", "setNetListIn", "setNetListOut"}; }

  void Take(std::string_view operation, const Value& value) override {
    if (operation == "setNetListPeriod") {
      period = Require<Period>(operation, value, kCriteriaPeriodClass);
    } else if (operation == "setNetListIn") {
      input = Require<Input>(operation, value, kCriteriaInputClass);
    } else {
      output = Require<Output>(operation, value, kCriteriaOutputClass);
    }
  }
};

void RequireSet(bool isSet, std::string_view missing, const Text& classId) {
  if (isSet) return;
  Text about = "the criteria lack ";
  throw RuntimeError(PlatformFault::InvalidCall, about.append(missing), classId);
}

/// The date's instant in whole seconds. The date may be an object of any host.
DateTime UtcOf(const Object& date) {
  DateTimeParts local;
  local.year = date.Call("getYear").AsInt32() + 1900;
  local.month = date.Call("getMonth").AsInt32() + 1;
  local.day = date.Call("getDate").AsInt32();
  local.hour = date.Call("getHours").AsInt32();
  local.minute = date.Call("getMinutes").AsInt32();
  local.second = date.Call("getSeconds").AsInt32();
  const std::int64_t offsetMinutes = date.Call("getTimeZoneOffset").AsInt32();
  return DateTime(DateTime::FromParts(local).seconds() + offsetMinutes * 60);
}

FieldRange RangeOf(const Parameter& parameter, const Text& classId) {
  RequireSet(!parameter.field.empty(), "the field name of a parameter", classId);
  RequireSet(parameter.low.has_value(), "the lowest value of " + parameter.field, classId);
  RequireSet(parameter.high.has_value(), "the highest value of " + parameter.field, classId);
  return {.field = parameter.field, .low = *parameter.low, .high = *parameter.high};
}

bool Contains(const std::vector<Text>& fields, const Text& field) {
  return std::find(fields.begin(), fields.end(), field) != fields.end();
}

}  // namespace

bool IsCriteriaClass(const Text& classId) {
  return classId == kCriteriaClass || classId == kCriteriaInputClass || classId == kCriteriaOutputClass ||
         classId == kCriteriaPeriodClass || classId == kCriteriaParameterClass;
}

Object CreateCriteriaObject(const Text& classId) {
  if (classId == kCriteriaClass) return Object(std::make_shared<Criteria>());
  if (classId == kCriteriaInputClass) return Object(std::make_shared<Input>());
  if (classId == kCriteriaOutputClass) return Object(std::make_shared<Output>());
  if (classId == kCriteriaPeriodClass) return Object(std::make_shared<Period>());
  return Object(std::make_shared<Parameter>());
}

bool NetChangeCriteria::AsksFor(const Text& field) const {
  return Contains(fields, field);
}

bool NetChangeCriteria::AsksForOld(const Text& field) const {
  return Contains(fieldsWithOld, field);
}

NetChangeCriteria ReadCriteria(const Value& criteria, const Text& classId) {
  const Object* object = criteria.If<Object>();
  const auto* given = object == nullptr ? nullptr : dynamic_cast<const Criteria*>(object->component().get());
  if (given == nullptr) {
    throw RuntimeError(PlatformFault::TypeMismatch, "the criteria are no " + Text(kCriteriaClass), classId);
  }
  RequireSet(given->period != nullptr, "a period", classId);
  RequireSet(!given->period->from.IsNothing(), "the start of the period", classId);
  RequireSet(!given->period->to.IsNothing(), "the end of the period", classId);
  RequireSet(given->input != nullptr, "an input", classId);
  RequireSet(given->output != nullptr, "an output", classId);

  NetChangeCriteria read;
  for (const auto& parameter : given->input->parameters) read.ranges.push_back(RangeOf(*parameter, classId));
  read.fields = given->output->fields;
  read.fieldsWithOld = given->output->fieldsWithOld;
  read.from = UtcOf(given->period->from);
  read.to = UtcOf(given->period->to);
  return read;
}

}  // namespace zenqay
