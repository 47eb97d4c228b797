// Says on standard error what the page refuses, without letting anybody fill a disk with it.
#pragma once

#include <chrono>
#include <mutex>
#include <ostream>

#include "base/text_functions.h"

namespace zenqay {

/// Ten lines in ten seconds; of what is beyond, the number.
class RefusalLog {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  explicit RefusalLog(std::ostream& out) : out_(out) {}

  /// From any thread. Of the words, what a log may hold: one line, not long.
  void Note(const Text& peer, int status, const Text& words) {
    NoteAt(std::chrono::steady_clock::now(), peer, status, words);
  }
  void NoteAt(Moment now, const Text& peer, int status, const Text& words);

 private:
  std::ostream& out_;
  std::mutex mutex_;
  Moment since_;
  int lines_ = 0;
  int dropped_ = 0;
};

}  // namespace zenqay
