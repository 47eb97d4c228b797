// The time zone of the process, for one test.
#pragma once

#include <stdlib.h>
#include <time.h>

#include <optional>
#include <string>

namespace zenqay {

/// Moves the process to a time zone ("Asia/Kolkata"), and back at the end of the scope. A fixture that sets the zone
/// itself must stand in front of it.
class TimeZone {
 public:
  explicit TimeZone(const std::string& name) {
    if (const char* former = ::getenv("TZ")) former_ = former;
    ::setenv("TZ", name.c_str(), 1);
    ::tzset();
  }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
  ~TimeZone() {
    if (former_) {
      ::setenv("TZ", former_->c_str(), 1);
    } else {
      ::unsetenv("TZ");
    }
    ::tzset();
  }

 private:
  std::optional<std::string> former_;
};

}  // namespace zenqay
