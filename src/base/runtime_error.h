// The one error type of the system: what a failure is while it travels to the failure path that handles it.
#pragma once

#include <cstdint>
#include <exception>

#include "base/text_functions.h"

namespace zenqay {

/// Errors of the platform itself, with the numbers that logs show.
enum class PlatformFault : std::int32_t {
  InvalidCall = 5,
  Overflow = 6,
  SubscriptOutOfRange = 9,
  TypeMismatch = 13,
  BadFileNumber = 52,
  FileNotFound = 53,
  FileAlreadyOpen = 55,
  DiskFull = 61,
  PermissionDenied = 70,
  PathAccess = 75,
  PathNotFound = 76,
  ObjectNotSet = 91,
  InvalidUseOfNull = 94,
  CannotCreateObject = 429,
  NoSuchOperation = 438,
  Automation = 440,
  WrongNumberOfArguments = 450,
};

/// The source of the platform's own errors.
inline constexpr const char* kPlatformSource = "ZenqayDBSync";

class RuntimeError : public std::exception {
 public:
  RuntimeError(std::int32_t number, Text source, Text description);

  /// One of the platform's own errors. `about` names the thing it was about (a class id, an operation, a file) and
  /// stands behind ": " when it is not empty.
  explicit RuntimeError(PlatformFault fault, std::string_view about = {}, Text source = kPlatformSource);

  std::int32_t number() const noexcept { return number_; }
  const Text& source() const noexcept { return source_; }
  const Text& description() const noexcept { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::int32_t number_;
  Text source_;
  Text description_;
};

/// What the platform says of a fault, without the thing it was about.
const char* FaultText(PlatformFault fault);

}  // namespace zenqay
