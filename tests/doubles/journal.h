// One text of everything that the job said to the outside, in order: what a test compares whole.
#pragma once

#include <exception>
#include <optional>
#include <utility>

#include "base/runtime_error.h"
#include "contracts/value.h"

namespace zenqay {

class Journal {
 public:
  /// Writes a line. Raises when FailAtLine chose it.
  void Line(const Text& line);

  /// Writes a line behind which no call stands. It cannot be chosen to fail.
  void Note(const Text& line) { text_ += line + "\n"; }

  const Text& text() const { return text_; }

  /// The text since the last Take.
  Text Take() { return std::exchange(text_, {}); }

  /// Makes the call fail that writes the line at `index`, counted from 0 and from now on: a double writes its line when
  /// it is called, and answers behind that.
  void FailAtLine(std::size_t index, const RuntimeError& error) { FailAtLine(index, std::make_exception_ptr(error)); }
  void FailAtLine(std::size_t index, std::exception_ptr thrown) { failure_.emplace(Failure{index, std::move(thrown)}); }

 private:
  struct Failure {
    std::size_t linesBefore;
    std::exception_ptr thrown;
  };

  Text text_;
  std::optional<Failure> failure_;
};

/// The link names stay apart from other helpers of tests that show values in their own way.
inline namespace journal_text {

/// A value with its type: "text", i16(1), i32(1), dbl(2.5), true, time(10:11:12 AM), empty, null, nothing, <name> for a
/// scripted object, field(TableID=5) for a field, high(8) for a text of eight characters of code 127; behind "&" when
/// it is passed by reference.
Text Shown(const Value& value);
Text Shown(const Argument& argument);
Text Shown(Arguments arguments);

}  // namespace journal_text
}  // namespace zenqay
