#include "base/runtime_error.h"

#include <new>
#include <utility>

#include "base/memory_reserve.h"

namespace zenqay {
namespace {

Text Described(PlatformFault fault, std::string_view about) {
  Text description = FaultText(fault);
  if (!about.empty()) description.append(": ").append(about);
  return description;
}

const Text kNoText;

/// Made while there is memory.
const RuntimeError kOutOfMemory(PlatformFault::OutOfMemory);

bool IsInterruption(std::int32_t number) {
  return number == static_cast<std::int32_t>(PlatformFault::UserInterrupt);
}

}  // namespace

RuntimeError::RuntimeError(Facts facts) : facts_(std::make_shared<const Facts>(std::move(facts))) {}

RuntimeError::RuntimeError(std::int32_t number, Text source, Text description)
    : RuntimeError(Facts{number, std::move(source), std::move(description), {}, {}, {}, {}}) {}

RuntimeError::RuntimeError(PlatformFault fault, std::string_view about, Text source)
    : RuntimeError(static_cast<std::int32_t>(fault), std::move(source), Described(fault, about)) {}

RuntimeError::RuntimeError(std::vector<ProviderError> items)
    : RuntimeError(
          Facts{items.front().Number, items.front().Source, items.front().Description, std::move(items), {}, {}, {}}) {}

const Text& RuntimeError::sqlState() const noexcept {
  return items().empty() ? kNoText : items().front().SqlState;
}

std::int32_t RuntimeError::nativeError() const noexcept {
  return items().empty() ? 0 : items().front().NativeError;
}

template <typename Change>
RuntimeError RuntimeError::Changed(Change change) const noexcept {
  try {
    Facts facts = *facts_;
    change(facts);
    return RuntimeError(std::move(facts));
  } catch (const std::bad_alloc&) {
    return *this;
  }
}

RuntimeError RuntimeError::With(const Text& statement) const noexcept {
  if (statement.empty()) return *this;
  return Changed([&](Facts& facts) { facts.statement = statement; });
}

RuntimeError RuntimeError::OfCall(std::string_view operation) const noexcept {
  if (!call().empty() || IsInterruption(number())) return *this;
  return Changed([&](Facts& facts) {
    facts.call = operation;
    const bool isNamed = facts.description.find(operation) != Text::npos;
    if (!isNamed) facts.description.append(": ").append(operation);
  });
}

RuntimeError RuntimeError::OfRow(const Text& row) const noexcept {
  if (row.empty() || IsInterruption(number())) return *this;
  return Changed([&](Facts& facts) {
    facts.row = row;
    if (facts.call.empty()) return;
    facts.description.append(facts.description.ends_with(facts.call) ? " of " : ": ").append(row);
  });
}

RuntimeError ErrorInFlight() noexcept {
  try {
    try {
      throw;
    } catch (const RuntimeError& error) {
      if (error.number() == kOutOfMemory.number()) GiveMemoryBack();
      return error;
    } catch (const std::bad_alloc&) {
      GiveMemoryBack();
      return kOutOfMemory;
    } catch (const std::exception& error) {
      return RuntimeError(PlatformFault::Automation, error.what());
    } catch (...) {
      return RuntimeError(PlatformFault::Automation);
    }
  } catch (...) {
    GiveMemoryBack();
    return kOutOfMemory;  // for the texts of the failure
  }
}

const char* FaultText(PlatformFault fault) {
  switch (fault) {
    case PlatformFault::InvalidCall:
      return "Invalid procedure call or argument";
    case PlatformFault::Overflow:
      return "Overflow";
    case PlatformFault::OutOfMemory:
      return "Out of memory";
    case PlatformFault::SubscriptOutOfRange:
      return "Subscript out of range";
    case PlatformFault::TypeMismatch:
      return "Type mismatch";
    case PlatformFault::UserInterrupt:
      return "User interrupt occurred";
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
