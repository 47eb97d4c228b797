// What all status components share: finding the operations by name, and the object that hands them out.
#pragma once

#include <functional>

#include "contracts/value.h"
#include "process/QTMDeclarations.h"

namespace zenqay {

/// A status object: its four operations, by their meaning. Times and texts come as they are shown.
class StatusObject : public Component {
 public:
  Value Call(std::string_view operation, Arguments arguments) final;

 private:
  virtual void Message(const Text& time, const Text& text) = 0;
  virtual void Alert(const Text& time, const Text& text) = 0;
  virtual void SyncStatus(std::int32_t tableId, std::int32_t status) = 0;
  virtual void TableStatus(std::int32_t handle, std::int32_t tableId, std::int32_t status, const Text& detail) = 0;
};

/// The object that the class id creates; it makes the status object of an instance.
class StatusInstanceHandle : public Component {
 public:
  using MakeStatus = std::function<Object(std::int16_t instance)>;
  using RequireUsable = std::function<void()>;

  /// `require` raises what keeps a status object from telling anything.
  explicit StatusInstanceHandle(MakeStatus make, RequireUsable require)
      : make_(std::move(make)), require_(std::move(require)) {}

  Value Call(std::string_view operation, Arguments arguments) override;
  void Put(std::string_view property, const Value& value) override;
  void RequireCallable(std::string_view, std::size_t) override {
    if (require_) require_();
  }

 private:
  MakeStatus make_;
  RequireUsable require_;
};

/// The handle, or 429 for any other class.
Object CreateStatusHandle(const Text& classId, StatusInstanceHandle::MakeStatus make,
                          StatusInstanceHandle::RequireUsable require = {});

}  // namespace zenqay
