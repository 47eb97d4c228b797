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
    return Record(Text(operation), arguments, [&] {
      return CallBehindFront(behind(), operation, arguments,
                             [this](Value value) { return WithFront<TracedComponent>(std::move(value), trace_); });
    });
  }

  Value Get(std::string_view property) override {
    return Record("get " + Text(property), {}, [&] { return behind().Get(property); });
  }

  void Put(std::string_view property, const Value& value) override {
    Argument argument(value);
    Record("put " + Text(property), Arguments(&argument, 1), [&] {
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

  /// What an operation puts into the caller's variables is an answer too.
  ordered_json ShownAfter(Arguments arguments, ordered_json shown) const {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      if (arguments[i].byReference()) shown[i] = trace_.Shown(BehindFront(arguments[i].value()));
    }
    return shown;
  }

  template <typename Work>
  Value Record(const Text& operation, Arguments arguments, Work work) {
    const ordered_json before = Shown(arguments);
    ordered_json line = {{"id", trace_.IdOf(inner())}, {"op", operation}, {"args", before}};
    Value result = Traced(trace_, "call", std::move(line), [&](ordered_json& done) {
      Value returned = work();
      done["returns"] = trace_.Shown(returned);
      if (ordered_json after = ShownAfter(arguments, before); after != before) done["argsAfter"] = std::move(after);
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
