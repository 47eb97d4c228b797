#include "doubles/journal.h"

#include "base/numbers.h"
#include "contracts/connection.h"
#include "doubles/scripted_components.h"

namespace zenqay {
namespace {

Text ShownText(const Text& text) {
  const bool high = !text.empty() && text.find_first_not_of('\x7f') == Text::npos;
  return high ? "high(" + std::to_string(text.size()) + ")" : "\"" + text + "\"";
}

Text ShownObject(const Object& object) {
  if (object.IsNothing()) return "nothing";
  const auto* component = object.component().get();
  if (const auto* scripted = dynamic_cast<const ScriptedObject*>(component)) return "<" + scripted->name() + ">";
  if (const auto* field = dynamic_cast<const Field*>(component)) {
    return "field(" + field->name() + "=" + field->Default().Joined() + ")";
  }
  return "<object>";
}

}  // namespace

void Journal::Line(const Text& line) {
  text_ += line + "\n";
  if (failure_ && failure_->linesBefore-- == 0) std::rethrow_exception(std::exchange(failure_, {})->thrown);
}

inline namespace journal_text {

Text Shown(const Value& value) {
  if (value.Is<Empty>()) return "empty";
  if (value.IsNull()) return "null";
  if (const bool* held = value.If<bool>()) return *held ? "true" : "false";
  if (const auto* held = value.If<std::int16_t>()) return "i16(" + std::to_string(*held) + ")";
  if (const auto* held = value.If<std::int32_t>()) return "i32(" + std::to_string(*held) + ")";
  if (const auto* held = value.If<double>()) return "dbl(" + NumberText(*held) + ")";
  if (const Text* held = value.If<Text>()) return ShownText(*held);
  if (const DateTime* held = value.If<DateTime>()) return "time(" + DefaultText(*held) + ")";
  return ShownObject(value.AsObject());
}

Text Shown(const Argument& argument) {
  return (argument.byReference() ? "&" : "") + Shown(argument.value());
}

Text Shown(Arguments arguments) {
  Text list;
  for (const Argument& argument : arguments) list += (list.empty() ? "" : ", ") + Shown(argument);
  return list;
}

}  // namespace journal_text
}  // namespace zenqay
