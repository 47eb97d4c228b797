#include "trace/trace.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/json_text.h"
#include "base/secrets.h"
#include "system/process_id.h"
#include "system/utc_stamp.h"
#include "trace/shown_value.h"

namespace zenqay {

using nlohmann::ordered_json;

Trace::Trace(const Text& path, Text programVersion)
    : path_(Replaced(path, "%p", std::to_string(ProcessId()))),
      isUsable_(!file_.OpenPrivate(path_)),
      programVersion_(std::move(programVersion)),
      begun_(UtcStamp()) {}

void Trace::RequireUsable() const {
  if (!isUsable_) throw RuntimeError(PlatformFault::PathAccess, path_);
}

void Trace::Write(std::string_view kind, ordered_json rest) {
  CleanOfSecrets(rest);
  Put(kind, rest);
}

void Trace::Put(std::string_view kind, const ordered_json& rest) {
  if (lines_ == 0) {
    PutLine({{"kind", "trace"},
             {"version", kTraceVersion},
             {"program", programVersion_},
             {"pid", ProcessId()},
             {"started", begun_}});
  }
  const auto passed = std::chrono::steady_clock::now() - begin_;
  ordered_json line = {{"n", ++lines_}, {"kind", kind}};
  line.update(rest);
  line["ms"] = std::chrono::floor<std::chrono::milliseconds>(passed).count();
  PutLine(line);
}

void Trace::PutLine(const ordered_json& line) {
  if (!file_.isOpen()) return;
  const auto fault = file_.WriteWhole(JsonText(line) + "\n");
  if (!fault) return;
  file_.Close();
  if (platform_ != nullptr) platform_->NameCause("the trace ends here: " + Text(FaultText(*fault)) + ": " + path_);
}

void Trace::Event(std::string_view name, std::span<const Value> arguments) {
  ordered_json shown = ordered_json::array();
  for (const Value& argument : arguments) shown.push_back(Shown(argument));
  Write("event", {{"name", name}, {"args", std::move(shown)}});
}

void Trace::LogRecord(const Text& file, const std::vector<Text>& lines) {
  // A line holds several items: taken as one text, a secret in it would swallow what stands behind it.
  Put("log", {{"file", WithoutSecrets(file)}, {"lines", lines}});
}

void Trace::LogRecord(const Text& file, const RuntimeError& error) {
  Write("log", {{"file", file}, {"error", Shown(error)}});
}

void Trace::MessageBox(const Text& text) {
  Write("box", {{"text", text}});
}

std::int64_t Trace::IdOf(const Object& object) {
  if (object.IsNothing()) return 0;
  if (known_.size() >= forgetAt_) ForgetReleased();
  Known& known = known_[object.component().get()];
  if (known.component.lock() != object.component()) known = {object.component(), ++lastId_};
  return known.id;
}

void Trace::ForgetReleased() {
  std::erase_if(known_, [](const auto& entry) { return entry.second.component.expired(); });
  forgetAt_ = std::max<std::size_t>(1024, 2 * known_.size());
}

ordered_json Trace::Shown(const Value& value) {
  return ShownValue(value, [this](const Object& object) { return IdOf(object); });
}

ordered_json Trace::Shown(const RuntimeError& error) {
  return {{"number", error.number()}, {"source", error.source()}, {"description", error.description()}};
}

}  // namespace zenqay
