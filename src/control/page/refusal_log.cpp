#include "control/page/refusal_log.h"

#include <algorithm>

namespace zenqay {
namespace {

constexpr std::chrono::seconds kSpan{10};
constexpr int kMostLines = 10;
constexpr std::size_t kLongest = 200;

/// What a stranger sent must not steer a terminal, nor look like a line of its own.
Text Harmless(Text text) {
  if (text.size() > kLongest) text = text.substr(0, kLongest) + "...";
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
  return text;
}

}  // namespace

void RefusalLog::NoteAt(Moment now, const Text& peer, int status, const Text& words) {
  const std::lock_guard lock(mutex_);
  if (lines_ == 0 || now - since_ >= kSpan) {
    if (dropped_ > 0) out_ << "zenqayctl: refused " << dropped_ << " more\n";
    since_ = now;
    lines_ = 0;
    dropped_ = 0;
  }
  if (lines_ == kMostLines) {
    ++dropped_;
    return;
  }
  ++lines_;
  out_ << "zenqayctl: refused " << Harmless(peer) << " (" << status << "): " << Harmless(words) << std::endl;
}

}  // namespace zenqay
