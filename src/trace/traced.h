// One line of the trace for a piece of work at a seam.
#pragma once

#include <nlohmann/json.hpp>

#include "trace/trace.h"

namespace zenqay {

/// Does `work` and writes the line when it returns: `line` with what `work` gave it, or with the error in its place.
template <typename Work>
auto Traced(Trace& trace, std::string_view kind, nlohmann::ordered_json line, Work work) {
  try {
    auto result = work(line);
    trace.Write(kind, line);
    return result;
  } catch (...) {
    line["error"] = Trace::Shown(ErrorInFlight());
    trace.Write(kind, line);
    throw;
  }
}

}  // namespace zenqay
