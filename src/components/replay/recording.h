// The component calls of a trace, as they are asked for again.
#pragma once

#include <fstream>
#include <map>
#include <set>
#include <unordered_map>

#include "components/replay/recorded_call.h"

namespace zenqay {

/// Each recorded call answers once. What is asked is answered by the first one like it that has not answered yet, among
/// those that were passed over and the next ones of the trace: as a rule the very next. Of a trace of any length
/// no more than these are kept.
class Recording {
 public:
  static constexpr std::size_t kLooksAhead = 10'000;  // calls
  static constexpr std::size_t kKeepsPassedOver = 5'000;

  /// `path` is one of the operating system. Raises 53 for a missing file, 5 for one that is no trace, or one of a form
  /// that is not known here.
  explicit Recording(Text path);

  /// Raises 5, for a creation 429, where the recorded run did not make the call, naming what it did instead, or that
  /// the trace ends; 5 for a line that is none of a trace, which ends the replay.
  RecordedCall Take(const AskedCall& asked);

  const Text& path() const { return path_; }

 private:
  bool ReadHead();
  std::optional<RecordedCall> ReadOn();
  std::optional<RecordedCall> TakeHeld(const AskedCall& asked);
  void Hold(RecordedCall call);
  void Drop(std::map<std::int64_t, RecordedCall>::iterator held);
  void PassOverTo(std::int64_t line);
  Text Place(std::int64_t line) const;
  [[noreturn]] void RaiseUnlike(const AskedCall& asked) const;

  Text path_;
  std::ifstream file_;
  std::int64_t linesRead_ = 0;
  std::map<std::int64_t, RecordedCall> held_;                         // read and not taken yet, by their lines
  std::unordered_map<std::int64_t, std::set<std::int64_t>> linesOf_;  // of them, by object
  std::int64_t place_ = 0;                                            // the last line that the run has come to
  std::size_t passedOver_ = 0;                                        // held lines in front of it
  bool isCutOff_ = false;                                             // within the last line
};

}  // namespace zenqay
