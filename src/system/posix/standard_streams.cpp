#include "system/standard_streams.h"

#include <unistd.h>

#include <array>
#include <cerrno>

#include "base/runtime_error.h"
#include "system/posix/write_all.h"

namespace zenqay {
namespace {

int DescriptorOf(StandardStream stream) {
  return stream == StandardStream::Output ? STDOUT_FILENO : STDERR_FILENO;
}

}  // namespace

bool IsTerminal(StandardStream stream) {
  return ::isatty(DescriptorOf(stream)) == 1;
}

void WriteTo(StandardStream stream, std::string_view text) {
  WriteAll(DescriptorOf(stream), text);
}

Text ReadStandardInput() {
  Text text;
  std::array<char, 4096> piece{};
  for (;;) {
    const ssize_t count = ::read(STDIN_FILENO, piece.data(), piece.size());
    if (count == 0) return text;
    if (count > 0) text.append(piece.data(), static_cast<std::size_t>(count));
    if (count < 0 && errno != EINTR) throw RuntimeError(PlatformFault::PathAccess, "standard input");
  }
}

}  // namespace zenqay
