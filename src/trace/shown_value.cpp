#include "trace/shown_value.h"

#include "base/secrets.h"
#include "contracts/connection.h"

namespace zenqay {
namespace {

using nlohmann::ordered_json;

/// YYYY-MM-DDThh:mm:ss, or the long time for a time of day without a date.
Text ShownDateTime(DateTime value) {
  if (value.DateOnly() == DateTime()) return LongTime(value);
  const DateTimeParts parts = value.Parts();
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", parts.year, parts.month, parts.day, parts.hour,
                parts.minute, parts.second);
  return text;
}

}  // namespace

ordered_json ShownValue(const Value& value, const ObjectNumber& numberOf) {
  if (value.Is<Empty>()) return {{"empty", true}};
  if (value.IsNull()) return nullptr;
  if (const bool* held = value.If<bool>()) return *held;
  if (const auto* held = value.If<std::int16_t>()) return *held;
  if (const auto* held = value.If<std::int32_t>()) return *held;
  if (const auto* held = value.If<double>()) return *held;
  if (const Text* held = value.If<Text>()) return *held;
  if (const DateTime* held = value.If<DateTime>()) return ShownDateTime(*held);
  const Object object = value.AsObject();
  if (const auto* field = dynamic_cast<const Field*>(object.component().get())) {
    return {{"field", field->name()}, {"value", ShownValue(field->Default(), numberOf)}};
  }
  return {{"object", object.IsNothing() ? 0 : numberOf(object)}};
}

void CleanOfSecrets(ordered_json& value) {
  if (value.is_string()) {
    value = WithoutSecrets(value.get_ref<const Text&>());
  } else if (value.is_structured()) {
    for (ordered_json& element : value) CleanOfSecrets(element);
  }
}

}  // namespace zenqay
