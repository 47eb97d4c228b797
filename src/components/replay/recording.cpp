#include "components/replay/recording.h"

#include "trace/trace.h"

namespace zenqay {

using nlohmann::ordered_json;

Recording::Recording(Text path) : path_(std::move(path)), file_(path_, std::ios::binary) {
  if (!file_) throw RuntimeError(PlatformFault::FileNotFound, path_);
  if (!ReadHead()) {
    throw RuntimeError(PlatformFault::InvalidCall, Place(1) + ": this is no trace");
  }
}

/// The first form of a trace had no head: its calls begin with the first line. A run that said nothing left an empty
/// file.
bool Recording::ReadHead() {
  Text line;
  if (!std::getline(file_, line)) return file_.eof();
  const ordered_json head = ordered_json::parse(line, nullptr, false);
  if (!head.is_object() || !head.contains("kind")) return false;
  if (head["kind"] != "trace") {
    file_.clear();
    file_.seekg(0);
    return head.contains("n");
  }
  linesRead_ = 1;
  const auto version = head.find("version");
  if (version == head.end() || !version->is_number_integer() || *version > kTraceVersion) {
    throw RuntimeError(PlatformFault::InvalidCall, Place(1) + ": a trace of a form that this program does not know");
  }
  return true;
}

RecordedCall Recording::Take(const AskedCall& asked) {
  if (auto held = TakeHeld(asked)) return std::move(*held);
  while (held_.size() < kLooksAhead) {
    std::optional<RecordedCall> call = ReadOn();
    if (!call) break;
    if (call->Answers(asked)) {
      PassOverTo(call->line);
      return std::move(*call);
    }
    Hold(std::move(*call));
  }
  RaiseUnlike(asked);
}

std::optional<RecordedCall> Recording::TakeHeld(const AskedCall& asked) {
  const auto lines = linesOf_.find(asked.object);
  if (lines == linesOf_.end()) return std::nullopt;
  for (const std::int64_t line : lines->second) {
    const auto held = held_.find(line);
    if (!held->second.Answers(asked)) continue;
    std::optional<RecordedCall> taken = std::move(held->second);
    Drop(held);
    PassOverTo(line);
    return taken;
  }
  return std::nullopt;
}

void Recording::Hold(RecordedCall call) {
  linesOf_[call.call.object].insert(call.line);
  held_.emplace_hint(held_.end(), call.line, std::move(call));
}

void Recording::Drop(std::map<std::int64_t, RecordedCall>::iterator held) {
  const auto lines = linesOf_.find(held->second.call.object);
  lines->second.erase(held->first);
  if (lines->second.empty()) linesOf_.erase(lines);
  held_.erase(held);
}

/// The run takes a line that is held no more. One that had been passed over leaves it where it is.
void Recording::PassOverTo(std::int64_t line) {
  if (line < place_) {
    --passedOver_;
    return;
  }
  passedOver_ += static_cast<std::size_t>(std::distance(held_.upper_bound(place_), held_.lower_bound(line)));
  place_ = line;
  for (; passedOver_ > kKeepsPassedOver; --passedOver_) Drop(held_.begin());
}

/// The next call; nothing behind the last one.
std::optional<RecordedCall> Recording::ReadOn() {
  Text text;
  while (!isCutOff_ && std::getline(file_, text)) {
    const bool isLast = file_.eof();
    try {
      auto call = RecordedCall::Read(text, linesRead_ + 1);
      ++linesRead_;
      if (call) return call;
    } catch (const ordered_json::exception&) {
      isCutOff_ = isLast;
      if (isCutOff_) break;
      file_.setstate(std::ios::failbit);
      throw RuntimeError(PlatformFault::InvalidCall, Place(linesRead_ + 1) + ": this is no line of a trace");
    }
  }
  return std::nullopt;
}

Text Recording::Place(std::int64_t line) const {
  return path_ + ", line " + std::to_string(line);
}

void Recording::RaiseUnlike(const AskedCall& asked) const {
  const auto fault = asked.classId.empty() ? PlatformFault::InvalidCall : PlatformFault::CannotCreateObject;
  if (const auto held = held_.upper_bound(place_); held != held_.end()) {
    const RecordedCall& next = held->second;
    throw RuntimeError(fault, Place(next.line) + ": the recorded run went on with " + next.call.Shown() +
                                  ", not with " + asked.Shown());
  }
  const Text end =
      isCutOff_ ? "within line " + std::to_string(linesRead_ + 1) : "at line " + std::to_string(linesRead_);
  throw RuntimeError(fault, path_ + ": the trace ends " + end + ", in front of " + asked.Shown());
}

}  // namespace zenqay
