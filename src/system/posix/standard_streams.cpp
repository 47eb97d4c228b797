#include "system/standard_streams.h"

#include <unistd.h>

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

}  // namespace zenqay
