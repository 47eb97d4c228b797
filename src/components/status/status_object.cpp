#include "components/status/status_object.h"

#include "base/runtime_error.h"

namespace zenqay {

Value StatusObject::Call(std::string_view operation, Arguments arguments) {
  const auto text = [&](std::size_t place) { return arguments[place].value().AsText(); };
  const auto number = [&](std::size_t place) { return arguments[place].value().AsInt32(); };
  if (EqualsIgnoringCase(operation, "writeToMessageBox")) {
    RequireArguments(operation, arguments, 2, kStatusClass);
    Message(text(0), text(1));
  } else if (EqualsIgnoringCase(operation, "WriteToAlertBox")) {
    RequireArguments(operation, arguments, 2, kStatusClass);
    Alert(text(0), text(1));
  } else if (EqualsIgnoringCase(operation, "UpdateSyncStatus")) {
    RequireArguments(operation, arguments, 2, kStatusClass);
    SyncStatus(number(0), number(1));
  } else if (EqualsIgnoringCase(operation, "UpdateStatusByTable")) {
    RequireArguments(operation, arguments, 4, kStatusClass);
    TableStatus(number(0), number(1), number(2), text(3));
  } else {
    RaiseNoSuchOperation(operation, kStatusClass);
  }
  return {};
}

Value StatusInstanceHandle::Call(std::string_view operation, Arguments arguments) {
  if (!EqualsIgnoringCase(operation, "getInstance")) RaiseNoSuchOperation(operation, kStatusClass);
  RequireArguments(operation, arguments, 1, kStatusClass);
  return make_(arguments[0].value().AsInt16());
}

void StatusInstanceHandle::Put(std::string_view property, const Value& value) {
  if (!EqualsIgnoringCase(property, "CurrentInstanceNumber")) RaiseNoSuchOperation(property, kStatusClass);
  value.AsInt16();  // it must be a number; this process has the one instance that it asked for
}

Object CreateStatusHandle(const Text& classId, StatusInstanceHandle::MakeStatus make,
                          StatusInstanceHandle::RequireUsable require) {
  if (classId != kStatusClass) throw RuntimeError(PlatformFault::CannotCreateObject, classId, classId);
  return Object(std::make_shared<StatusInstanceHandle>(std::move(make), std::move(require)));
}

}  // namespace zenqay
