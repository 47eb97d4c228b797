// How much a test of disturbances tries: a sample, or every place.
#pragma once

#include <cstdlib>
#include <string_view>

namespace zenqay {

/// True with ZENQAY_FAULTS=all in the environment, as scripts/faults sets it.
inline bool TriesAll() {
  const char* wish = std::getenv("ZENQAY_FAULTS");
  return wish != nullptr && std::string_view(wish) == "all";
}

}  // namespace zenqay
