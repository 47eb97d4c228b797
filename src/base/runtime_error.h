// The one error type of the system: what a failure is while it travels to the failure path that handles it.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// Errors of the platform itself, with the numbers that logs show.
enum class PlatformFault : std::int32_t {
  InvalidCall = 5,
  Overflow = 6,
  OutOfMemory = 7,
  SubscriptOutOfRange = 9,
  TypeMismatch = 13,
  UserInterrupt = 18,
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

/// One thing that a database reported: its number, the driver's name, the driver's text, and what both come from.
struct ProviderError {
  std::int32_t Number = 0;
  Text Source;
  Text Description;
  Text SqlState;                 // five characters; empty where there is none
  std::int32_t NativeError = 0;  // the database's own number
};

/// What it holds never changes and is shared by all copies, so that no copy can fail.
class RuntimeError : public std::exception {
 public:
  RuntimeError(std::int32_t number, Text source, Text description);

  /// One of the platform's own errors. `about` names the thing it was about (a class id, an operation, a file) and
  /// stands behind ": " when it is not empty.
  explicit RuntimeError(PlatformFault fault, std::string_view about = {}, Text source = kPlatformSource);

  /// What a database reported, at least one item; the first speaks for all.
  explicit RuntimeError(std::vector<ProviderError> items);

  RuntimeError(const RuntimeError&) noexcept = default;
  RuntimeError& operator=(const RuntimeError&) noexcept = default;
  ~RuntimeError() override = default;

  std::int32_t number() const noexcept { return facts_->number; }
  const Text& source() const noexcept { return facts_->source; }
  const Text& description() const noexcept { return facts_->description; }
  const char* what() const noexcept override { return facts_->description.c_str(); }

  /// What the database said of it; empty and 0 for every other failure.
  const Text& sqlState() const noexcept;
  std::int32_t nativeError() const noexcept;
  const std::vector<ProviderError>& items() const noexcept { return facts_->items; }

  /// The statement that failed, as the job composed it, with all the values in it: it goes into no log. Empty where it
  /// was none.
  const Text& statement() const noexcept { return facts_->statement; }

  /// The operation of a component whose call failed, or the field whose value did not serve; empty where it was none.
  const Text& call() const noexcept { return facts_->call; }

  /// What is known of the key of the ERP row that was at hand; empty where none was.
  const Text& row() const noexcept { return facts_->row; }

  /// The same failure, about this statement; as it is where memory for that is missing.
  RuntimeError With(const Text& statement) const noexcept;

  /// The same failure, of this call or field, which stands behind the description unless it is named there already; as
  /// it is where a call is known, memory is missing, or the pass was broken off, which is nobody's fault.
  RuntimeError OfCall(std::string_view operation) const noexcept;

  /// The same failure, met at this row, which stands behind the description of a failed call: "Invalid use of Null:
  /// getCustomer of Location=A1". What a database reported keeps its description. As it is where the row is unknown, or
  /// memory is missing.
  RuntimeError OfRow(const Text& row) const noexcept;

 private:
  struct Facts {
    std::int32_t number = 0;
    Text source;
    Text description;
    std::vector<ProviderError> items;
    Text statement;
    Text call;
    Text row;
  };

  /// This failure with other facts, which `change` makes; as it is where memory for them is missing.
  template <typename Change>
  RuntimeError Changed(Change change) const noexcept;

  explicit RuntimeError(Facts facts);

  std::shared_ptr<const Facts> facts_;
};

/// The exception that is being handled, as what failure paths handle: a RuntimeError as it is, a lack of memory as 7,
/// every other exception of the library as 440 with its text. To be called in a handler. Where memory has run out, the
/// reserve is given back first, for what the handler does.
///
///     } catch (...) {
///       const RuntimeError error = ErrorInFlight();
RuntimeError ErrorInFlight() noexcept;

/// What `ask` gives; what it fails with names the operation.
template <typename Ask>
auto Naming(std::string_view operation, Ask ask) {
  try {
    return ask();
  } catch (...) {
    throw ErrorInFlight().OfCall(operation);
  }
}

/// What the platform says of a fault, without the thing it was about.
const char* FaultText(PlatformFault fault);

}  // namespace zenqay
