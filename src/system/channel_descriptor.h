// A descriptor that this process was started with, to tell its starter something.
#pragma once

#include <atomic>
#include <chrono>
#include <string_view>

namespace zenqay {

/// A pipe or a socket. It is closed with the object.
class ChannelDescriptor {
 public:
  enum class Outcome {
    Written,
    NotNow,      // the reader stands still; nothing was written
    Broken,      // nothing more can be written
    ReaderGone,  // nor will anybody read it
  };

  /// Makes it non-blocking, and closed in programs that this process starts. `number` may be any.
  explicit ChannelDescriptor(int number);
  ChannelDescriptor(const ChannelDescriptor&) = delete;
  ChannelDescriptor& operator=(const ChannelDescriptor&) = delete;
  ~ChannelDescriptor();

  /// False for a number that was no open descriptor, and behind GiveUp.
  bool isOpen() const { return isOpen_; }

  /// Writes all of the bytes, waiting for the reader as long as `patience`. Bytes that were begun are waited for a
  /// second in any case; behind a piece of a line nothing more is written.
  Outcome Write(std::string_view bytes, std::chrono::milliseconds patience) const;

  /// From any thread.
  bool HasReader() const;

  void GiveUp() { isOpen_ = false; }

 private:
  int number_;
  bool wasOpen_ = false;
  std::atomic<bool> isOpen_;
};

}  // namespace zenqay
