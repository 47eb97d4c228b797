// The terminal that somebody may be sitting at.
#pragma once

namespace zenqay {

/// Of standard output; 0 columns when it is no terminal that can be redrawn.
struct TerminalSize {
  int columns = 0;
  int rows = 0;
};
TerminalSize StandardOutputSize();

}  // namespace zenqay
