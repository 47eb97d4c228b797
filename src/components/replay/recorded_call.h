// One component call of a recorded run, as its line in the trace tells it.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>

#include "base/runtime_error.h"
#include "contracts/value.h"

namespace zenqay {

/// The number in `{"object":3}`; 0 for an empty reference and for every other value.
std::int64_t ObjectIn(const nlohmann::ordered_json& value);

/// What identifies a call: the class that is created, or the object, the operation and the arguments.
struct AskedCall {
  Text classId;                 // of a creation; empty for a call
  std::int64_t object = 0;      // its number in the trace
  Text operation;               // "List", "get X", "put X"
  nlohmann::ordered_json args;  // as the trace shows them
  bool firstIsOfClock = false;  // the first argument holds the time of the run, which is another in a replay

  /// "the creation of CLASS", "List("A1",2) of object 3".
  Text Shown() const;
};

/// Stands for an object of another host, whose number in the trace a replay does not know.
inline constexpr std::int64_t kForeignObject = -1;

struct RecordedCall {
  std::int64_t line = 0;  // in the file, from 1
  AskedCall call;
  std::int64_t created = 0;  // the number of the object that a creation gave
  nlohmann::ordered_json returned;
  nlohmann::ordered_json argsAfter;   // null where no argument was assigned
  std::optional<RuntimeError> error;  // in the place of a result

  /// Nothing for a line that is neither a creation nor a call. Raises what nlohmann-json does for one of another form.
  static std::optional<RecordedCall> Read(const Text& text, std::int64_t line);

  /// True when this is what is asked. Names compare without regard to case.
  bool Answers(const AskedCall& asked) const;
};

}  // namespace zenqay
