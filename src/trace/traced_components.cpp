#include "trace/traced_components.h"

#include "trace/traced.h"

namespace zenqay {

using nlohmann::ordered_json;

namespace {

class TracedComponent;

/// What the components get to see: their own objects, not the wrappers.
Value Unwrapped(const Value& value);

/// What the job gets to see: wrappers.
Value Wrapped(const Value& value, Trace& trace);

class TracedComponent : public Component {
 public:
  TracedComponent(Object inner, Trace& trace) : inner_(std::move(inner)), trace_(trace) {}

  const Object& inner() const { return inner_; }

  Value Call(std::string_view operation, Arguments arguments) override {
    return Record(Text(operation), Shown(arguments), [&] {
      std::vector<Value> variables;
      for (const Argument& argument : arguments) variables.push_back(Unwrapped(argument.value()));
      std::vector<Argument> passed;
      for (std::size_t i = 0; i < arguments.size(); ++i) {
        passed.push_back(arguments[i].byReference() ? Argument::ByReference(variables[i]) : Argument(variables[i]));
      }
      const std::vector<Value> before = variables;
      const Value result = inner_.Call(operation, Arguments(passed));
      for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (variables[i] != before[i]) arguments[i].Assign(Wrapped(variables[i], trace_));
      }
      return result;
    });
  }

  Value Get(std::string_view property) override {
    return Record("get " + Text(property), ordered_json::array(), [&] { return inner_.Get(property); });
  }

  void Put(std::string_view property, const Value& value) override {
    Record("put " + Text(property), ordered_json::array({trace_.Shown(Unwrapped(value))}), [&] {
      inner_.Put(property, Unwrapped(value));
      return Value();
    });
  }

  Value Default() const override { return inner_.Default(); }

 private:
  ordered_json Shown(Arguments arguments) const {
    ordered_json shown = ordered_json::array();
    for (const Argument& argument : arguments) shown.push_back(trace_.Shown(Unwrapped(argument.value())));
    return shown;
  }

  template <typename Work>
  Value Record(const Text& operation, ordered_json shownArguments, Work work) {
    ordered_json line = {{"id", trace_.IdOf(inner_)}, {"op", operation}, {"args", std::move(shownArguments)}};
    const Value result = Traced(trace_, "call", std::move(line), [&](ordered_json& done) {
      Value returned = work();
      done["returns"] = trace_.Shown(returned);
      return returned;
    });
    return Wrapped(result, trace_);
  }

  Object inner_;
  Trace& trace_;
};

Value Unwrapped(const Value& value) {
  const Object* object = value.If<Object>();
  if (object == nullptr) return value;
  const auto* traced = dynamic_cast<const TracedComponent*>(object->component().get());
  return traced == nullptr ? value : Value(traced->inner());
}

Value Wrapped(const Value& value, Trace& trace) {
  const Object* object = value.If<Object>();
  if (object == nullptr || object->IsNothing()) return value;
  return Object(std::make_shared<TracedComponent>(*object, trace));
}

}  // namespace

Object TracedComponents::Create(const Text& classId) {
  const Object created = Traced(trace_, "create", {{"class", classId}}, [&](ordered_json& line) {
    Object object = inner_.Create(classId);
    line["id"] = trace_.IdOf(object);
    return object;
  });
  return Wrapped(created, trace_).AsObject();
}

}  // namespace zenqay
