// What the objects of the ERP files have in common.
#pragma once

#include "base/runtime_error.h"
#include "contracts/value.h"

namespace zenqay {

/// An object whose errors name the class id that it was created by, or that it came from.
class FileComponent : public Component {
 public:
  explicit FileComponent(Text classId) : classId_(std::move(classId)) {}

  Value Get(std::string_view property) override { RaiseNoSuchOperation(property, classId_); }
  void Put(std::string_view property, const Value&) override { RaiseNoSuchOperation(property, classId_); }

 protected:
  const Text& classId() const { return classId_; }

 private:
  Text classId_;
};

}  // namespace zenqay
