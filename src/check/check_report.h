// What a check says: one line for each thing that it looked at.
#pragma once

#include <ostream>

#include "base/runtime_error.h"

namespace zenqay {

/// Lines of a state and a text: `ok`, `warning` (a job runs, but see to it), `MEND` (no job can run before), `left out`
/// (not looked at, since what it needs failed). Each is written at once, on one line whatever its text holds, and
/// without passwords.
class CheckReport {
 public:
  explicit CheckReport(std::ostream& out) : out_(out) {}

  void Ok(const Text& step, const Text& detail = "") { Write("ok", step, detail); }
  void Warn(const Text& step, const Text& detail) { Write("warning", step, detail); }
  void Mend(const Text& step, const Text& detail);
  void LeaveOut(const Text& step, const Text& failedStep);

  /// A step that is well or fails as a whole: `deed` gives what there is to say of it, or raises what to mend. True
  /// when it is well.
  template <typename Deed>
  bool Step(const Text& step, Deed deed) {
    try {
      const Text detail = deed();
      Ok(step, detail);
      return true;
    } catch (const RuntimeError& error) {
      Mend(step, ErrorText(error));
      return false;
    }
  }

  /// True when nothing is to be mended.
  bool CanRun() const { return !mends_; }

  /// The last line.
  void Conclude();

  /// "13: Type mismatch"; behind what a database reported, its own words for it: "(SQLSTATE 28000, native 18456)".
  static Text ErrorText(const RuntimeError& error);
  static Text ErrorText(const ProviderError& item);

 private:
  void Write(const char* state, const Text& step, const Text& detail);

  std::ostream& out_;
  bool mends_ = false;
};

}  // namespace zenqay
