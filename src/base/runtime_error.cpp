#include "base/runtime_error.h"

#include <utility>

namespace zenqay {
namespace {

Text Described(PlatformFault fault, std::string_view about) {
  Text description = FaultText(fault);
  if (!about.empty()) description.append(": ").append(about);
  return description;
}

}  // namespace

RuntimeError::RuntimeError(std::int32_t number, Text source, Text description)
    : number_(number), source_(std::move(source)), description_(std::move(description)) {}

RuntimeError::RuntimeError(PlatformFault fault, std::string_view about, Text source)
    : RuntimeError(static_cast<std::int32_t>(fault), std::move(source), Described(fault, about)) {}

const char* FaultText(PlatformFault fault) {
  switch (fault) {
    case PlatformFault::InvalidCall:
      return "Invalid procedure call or argument";
    case PlatformFault::Overflow:
      return "Overflow";
    case PlatformFault::SubscriptOutOfRange:
      return "Subscript out of range";
    case PlatformFault::TypeMismatch:
      return "Type mismatch";
    case PlatformFault::BadFileNumber:
      return "Bad file name or number";
    case PlatformFault::FileNotFound:
      return "File not found";
    case PlatformFault::FileAlreadyOpen:
      return "File already open";
    case PlatformFault::DiskFull:
      return "Disk full";
    case PlatformFault::PermissionDenied:
      return "Permission denied";
    case PlatformFault::PathAccess:
      return "Path/File access error";
    case PlatformFault::PathNotFound:
      return "Path not found";
    case PlatformFault::ObjectNotSet:
      return "Object variable not set";
    case PlatformFault::InvalidUseOfNull:
      return "Invalid use of Null";
    case PlatformFault::CannotCreateObject:
      return "Component can't create object";
    case PlatformFault::NoSuchOperation:
      return "Object doesn't support this property or method";
    case PlatformFault::Automation:
      return "Automation error";
    case PlatformFault::WrongNumberOfArguments:
      return "Wrong number of arguments";
  }
  return "Unknown error";
}

}  // namespace zenqay
