#include "components/files/file_session.h"

#include <fstream>

#include "components/files/file_component.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

constexpr const char* kVersionFile = "adapter-version.txt";
constexpr const char* kDefaultVersion = "2.4";

class AdapterInfo : public FileComponent {
 public:
  explicit AdapterInfo(const std::filesystem::path& directory)
      : FileComponent(kAdapterInfoClass), path_(directory / kVersionFile) {}

  Value Call(std::string_view operation, Arguments) override { RaiseNoSuchOperation(operation, classId()); }

  Value Get(std::string_view property) override {
    return EqualsIgnoringCase(property, "getVersion") ? Version() : FileComponent::Get(property);
  }

 private:
  Value Version() const {
    std::error_code fault;
    if (!std::filesystem::exists(path_, fault) && !fault) return kDefaultVersion;
    std::ifstream file(path_, std::ios::binary);
    Text line;
    std::getline(file, line);
    if (!file.is_open() || file.bad()) throw RuntimeError(PlatformFault::PathAccess, kVersionFile, classId());
    if (line.ends_with('\r')) line.pop_back();
    return line;
  }

  std::filesystem::path path_;
};

class UserSession : public FileComponent {
 public:
  UserSession() : FileComponent(kAdapterAccessClass) {}

  /// The manager may be an empty reference, as it is under an ERP generation that lacks the entity.
  Value Call(std::string_view operation, Arguments arguments) override {
    if (!EqualsIgnoringCase(operation, "addManager")) RaiseNoSuchOperation(operation, classId());
    RequireArguments(operation, arguments, 1, classId());
    if (!arguments[0].value().Is<Object>()) {
      throw RuntimeError(PlatformFault::TypeMismatch, "addManager takes a manager", classId());
    }
    return {};
  }
};

/// An object with one property, which gives another object.
class Step : public FileComponent {
 public:
  Step(const char* property, Object next)
      : FileComponent(kAdapterAccessClass), property_(property), next_(std::move(next)) {}

  Value Call(std::string_view operation, Arguments) override { RaiseNoSuchOperation(operation, classId()); }

  Value Get(std::string_view property) override {
    if (!EqualsIgnoringCase(property, property_)) return FileComponent::Get(property);
    return next_;
  }

 private:
  const char* property_;
  Object next_;
};

}  // namespace

Object CreateAdapterInfo(const std::filesystem::path& directory) {
  return Object(std::make_shared<AdapterInfo>(directory));
}

Object CreateAdapterAccess() {
  const Object session(std::make_shared<UserSession>());
  const Object toolkit(std::make_shared<Step>("createUserSession", session));
  return Object(std::make_shared<Step>("kxiToolKit_getDefaultToolkit", toolkit));
}

}  // namespace zenqay
