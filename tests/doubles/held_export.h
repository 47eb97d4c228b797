// A file that holds the program which reads it.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

namespace zenqay {

/// An export that holds the job which lists it, until the test says what stands in it.
class HeldExport {
 public:
  /// At a path where nothing is yet.
  explicit HeldExport(std::string path) : path_(std::move(path)) {
    if (::mkfifo(path_.c_str(), 0600) != 0) throw std::runtime_error("cannot make " + path_);
  }
  HeldExport(const HeldExport&) = delete;
  HeldExport& operator=(const HeldExport&) = delete;
  ~HeldExport() { Finish(); }

  /// Waits until the program has opened the export. A program that ends before fails the test.
  template <typename Program>
  void WaitUntilOpened(Program& program) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(5);
    while (descriptor_ < 0) {
      if (program.HasEnded() || std::chrono::steady_clock::now() > end)
        throw std::runtime_error(path_ + " is not read");
      descriptor_ = ::open(path_.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ::fcntl(descriptor_, F_SETFL, 0);  // from here on writing waits for its reader
  }

  void Write(const std::string& content) const {
    for (std::size_t written = 0; written < content.size();) {
      const ssize_t count = ::write(descriptor_, content.data() + written, content.size() - written);
      if (count <= 0) throw std::runtime_error("cannot write " + path_);
      written += static_cast<std::size_t>(count);
    }
  }

  /// Says that nothing follows.
  void Finish() {
    if (descriptor_ >= 0) ::close(descriptor_);
    descriptor_ = -1;
  }

 private:
  std::string path_;
  int descriptor_ = -1;
};

}  // namespace zenqay
