#include "system/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace zenqay {

TerminalSize StandardOutputSize() {
  const char* kind = std::getenv("TERM");
  if (::isatty(STDOUT_FILENO) == 0 || kind == nullptr || std::string_view(kind) == "dumb") return {};
  winsize size{};
  const bool isKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 && size.ws_row > 0;
  return isKnown ? TerminalSize{size.ws_col, size.ws_row} : TerminalSize{80, 24};
}

}  // namespace zenqay
