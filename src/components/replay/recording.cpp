#include "components/replay/recording.h"

namespace zenqay {
namespace {

using nlohmann::ordered_json;

constexpr int kVersion = 2;  // the newest form of a trace that is known here

}  // namespace

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
  if (version == head.end() || !version->is_number_integer() || *version > kVersion) {
    throw RuntimeError(PlatformFault::InvalidCall, Place(1) + ": a trace of a form that this program does not know");
  }
  return true;
}

RecordedCall Recording::Take(const AskedCall& asked) {
  for (std::size_t i = 0; i < ahead_.size(); ++i) {
    if (ahead_[i].Answers(asked)) return TakeAt(i);
  }
  while (ahead_.size() < kLooksAhead && ReadOn()) {
    if (ahead_.back().Answers(asked)) return TakeAt(ahead_.size() - 1);
  }
  RaiseUnlike(asked);
}

/// Behind a call that was passed over, the run stays where it is.
RecordedCall Recording::TakeAt(std::size_t index) {
  RecordedCall taken = std::move(ahead_[index]);
  ahead_.erase(ahead_.begin() + static_cast<std::ptrdiff_t>(index));
  passedOver_ = index < passedOver_ ? passedOver_ - 1 : index;
  for (; passedOver_ > kKeepsPassedOver; --passedOver_) ahead_.pop_front();
  return taken;
}

/// False behind the last call.
bool Recording::ReadOn() {
  Text text;
  while (!isCutOff_ && std::getline(file_, text)) {
    const bool isWhole = !file_.eof();
    try {
      auto call = RecordedCall::Read(text, linesRead_ + 1);
      ++linesRead_;
      if (!call) continue;
      ahead_.push_back(std::move(*call));
      return true;
    } catch (const ordered_json::exception&) {
      isCutOff_ = !isWhole;
      if (isCutOff_) return false;
      file_.setstate(std::ios::failbit);
      throw RuntimeError(PlatformFault::InvalidCall, Place(linesRead_ + 1) + ": this is no line of a trace");
    }
  }
  return false;
}

Text Recording::Place(std::int64_t line) const {
  return path_ + ", line " + std::to_string(line);
}

void Recording::RaiseUnlike(const AskedCall& asked) const {
  const auto fault = asked.classId.empty() ? PlatformFault::InvalidCall : PlatformFault::CannotCreateObject;
  if (passedOver_ < ahead_.size()) {
    const RecordedCall& next = ahead_[passedOver_];
    throw RuntimeError(fault, Place(next.line) + ": the recorded run went on with " + next.call.Shown() +
                                  ", not with " + asked.Shown());
  }
  const Text end =
      isCutOff_ ? "within line " + std::to_string(linesRead_ + 1) : "at line " + std::to_string(linesRead_);
  throw RuntimeError(fault, path_ + ": the trace ends " + end + ", in front of " + asked.Shown());
}

}  // namespace zenqay
