// The two texts that the job puts in front of a person.
#pragma once

#include "process/modDeclarations.h"

namespace zenqay {

inline void ShowMessageBox(modDeclarations& process, const Text& text) {
  process.platform.ShowMessageBox(text);
  if (process.trace != nullptr) process.trace->MessageBox(text);
}

}  // namespace zenqay
