#include "contracts/platform.h"

namespace zenqay {

void Platform::NameCause(const RuntimeError& error) {
  const Text oneLine = Replaced(Replaced(error.description(), "\r\n", " "), "\n", " ");
  NameCause("error " + std::to_string(error.number()) + " from \"" + error.source() + "\": " + oneLine);
}

}  // namespace zenqay
