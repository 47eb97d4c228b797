#include "trace/traced_platform.h"

namespace zenqay {

void TracedLogFile::Open(const Text& path) {
  path_ = path;
  lines_.clear();
  Recorded([&] { inner_.Open(path); });
}

void TracedLogFile::WriteLine(const Text& line) {
  Recorded([&] { inner_.WriteLine(line); });
  lines_.push_back(line);
}

void TracedLogFile::Close() {
  Recorded([&] { inner_.Close(); });
  trace_.LogRecord(path_, lines_);
}

template <typename Work>
void TracedLogFile::Recorded(Work work) {
  try {
    work();
  } catch (...) {
    trace_.LogRecord(path_, ErrorInFlight());
    throw;
  }
}

void TracedPlatform::ShowMessageBox(const Text& text) {
  inner_.ShowMessageBox(text);
  trace_.MessageBox(text);
}

}  // namespace zenqay
