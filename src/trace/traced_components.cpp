#include "trace/traced_components.h"

#include "contracts/component_front.h"
#include "trace/traced.h"

namespace zenqay {

using nlohmann::ordered_json;

namespace {

class TracedComponent : public ComponentFront {
 public:
  TracedComponent(Object inner, Trace& trace) : ComponentFront(std::move(inner)), trace_(trace) {}

  Value Call(std::string_view operation, Arguments arguments) override {
    return Record(Text(operation), Shown(arguments), [&] {
      return CallBehindFront(behind(), operation, arguments,
                             [this](Value value) { return WithFront<TracedComponent>(std::move(value), trace_); });
    });
  }

  Value Get(std::string_view property) override {
    return Record("get " + Text(property), ordered_json::array(), [&] { return behind().Get(property); });
  }

  void Put(std::string_view property, const Value& value) override {
    Record("put " + Text(property), ordered_json::array({trace_.Shown(BehindFront(value))}), [&] {
      behind().Put(property, BehindFront(value));
      return Value();
    });
  }

 private:
  ordered_json Shown(Arguments arguments) const {
    ordered_json shown = ordered_json::array();
    for (const Argument& argument : arguments) shown.push_back(trace_.Shown(BehindFront(argument.value())));
    return shown;
  }

  template <typename Work>
  Value Record(const Text& operation, ordered_json shownArguments, Work work) {
    ordered_json line = {{"id", trace_.IdOf(inner())}, {"op", operation}, {"args", std::move(shownArguments)}};
    Value result = Traced(trace_, "call", std::move(line), [&](ordered_json& done) {
      Value returned = work();
      done["returns"] = trace_.Shown(returned);
      return returned;
    });
    return WithFront<TracedComponent>(std::move(result), trace_);
  }

  Trace& trace_;
};

}  // namespace

Object TracedComponents::Create(const Text& classId) {
  const Object created = Traced(trace_, "create", {{"class", classId}}, [&](ordered_json& line) {
    Object object = inner_.Create(classId);
    line["id"] = trace_.IdOf(object);
    return object;
  });
  return WithFront<TracedComponent>(created, trace_).AsObject();
}

}  // namespace zenqay
