#include "components/replay/recorded_call.h"

#include "base/json_text.h"

namespace zenqay {
namespace {

using nlohmann::ordered_json;

bool SameArgument(const ordered_json& recorded, const ordered_json& asked) {
  if (ObjectIn(asked) == kForeignObject) return ObjectIn(recorded) > 0;
  return recorded == asked;
}

bool SameArguments(const AskedCall& recorded, const AskedCall& asked) {
  if (recorded.args.size() != asked.args.size()) return false;
  for (std::size_t i = asked.firstIsOfClock ? 1 : 0; i < asked.args.size(); ++i) {
    if (!SameArgument(recorded.args[i], asked.args[i])) return false;
  }
  return true;
}

RuntimeError ErrorIn(const ordered_json& error) {
  return {error.at("number").get<std::int32_t>(), error.at("source").get<Text>(), error.at("description").get<Text>()};
}

}  // namespace

std::int64_t ObjectIn(const ordered_json& value) {
  const auto number = value.find("object");
  return number != value.end() && number->is_number_integer() ? number->get<std::int64_t>() : 0;
}

Text AskedCall::Shown() const {
  if (!classId.empty()) return "the creation of " + classId;
  Text shown = JsonText(args);
  shown.front() = '(';
  shown.back() = ')';
  return operation + shown + " of object " + std::to_string(object);
}

std::optional<RecordedCall> RecordedCall::Read(const Text& text, std::int64_t line) {
  const ordered_json read = ordered_json::parse(text);
  const Text& kind = read.at("kind").get_ref<const Text&>();
  const bool isCreation = kind == "create";
  if (!isCreation && kind != "call") return std::nullopt;
  RecordedCall recorded{.line = line};
  if (read.contains("error")) recorded.error = ErrorIn(read["error"]);
  if (isCreation) {
    recorded.call.classId = read.at("class").get<Text>();
    if (!recorded.error) recorded.created = read.at("id").get<std::int64_t>();
    return recorded;
  }
  recorded.call.object = read.at("id").get<std::int64_t>();
  recorded.call.operation = read.at("op").get<Text>();
  recorded.call.args = read.at("args").get_ref<const ordered_json::array_t&>();
  if (!recorded.error) recorded.returned = read.at("returns");
  if (!read.contains("argsAfter")) return recorded;
  for (std::size_t i = 0; i < recorded.call.args.size(); ++i) recorded.argsAfter.push_back(read["argsAfter"].at(i));
  return recorded;
}

bool RecordedCall::Answers(const AskedCall& asked) const {
  if (call.object != asked.object || call.classId != asked.classId) return false;
  return EqualsIgnoringCase(call.operation, asked.operation) && SameArguments(call, asked);
}

}  // namespace zenqay
